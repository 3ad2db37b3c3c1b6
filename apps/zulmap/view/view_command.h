/// \file
/// `zulmap view`: maps in a window.
#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "apps/zulmap/render_command.h"

namespace zulmap {

struct ViewRequest : MapRequest {
    std::optional<std::string> script;  ///< see ViewScript
};

/// The keys and the lines of a script.
std::string GetViewHelp();

/// Shows the maps until the user quits. What a script prints goes to \p report; progress and the number of
/// reported drawing errors go to standard error.
/// \throws ToolError when maps or script cannot be read, and when there is no display
void View(const ViewRequest& request, std::ostream& report);

}  // namespace zulmap
