/// \file
/// The one kind of failure that the program reports to its user.
#pragma once

#include <stdexcept>

namespace zulmap {

/// A request that cannot be served. The text is one line, complete, and fit to be read by the user.
class ToolError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace zulmap
