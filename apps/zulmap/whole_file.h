/// \file
/// Files that come whole or not at all.
#pragma once

#include <string>

#include "zul/kernel/system/new_file.h"

namespace zulmap {

/// The library's new file under the names and with the errors of the program.
class PendingFile {
public:
    /// \throws ToolError for a name that is not UTF-8
    explicit PendingFile(const std::string& path);

    /// Where to write.
    const std::string& GetName() const { return m_Name; }
    /// Puts the file, closed by now, in its place. \throws ToolError
    void Keep();
    /// Says that the file, by its own name, cannot be written. \throws ToolError
    [[noreturn]] void Fail(const std::string& reason) const;
    /// For the reason that the system gives.
    [[noreturn]] void Fail() const;

private:
    std::string m_Path;
    zulsys::CNewFile m_File;
    std::string m_Name;
};

/// The bytes of a file. \throws ToolError when it cannot be read to its end
std::string ReadFile(const std::string& path);

}  // namespace zulmap
