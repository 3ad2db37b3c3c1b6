/// \file
/// Files that come whole or not at all.
#pragma once

#include <string>

namespace zulmap {

/// A file that is written under a name beside its own and takes its place when it is kept. Until then, and
/// when it never comes to that, the place holds what it held before.
class PendingFile {
public:
    explicit PendingFile(const std::string& path);
    /// Removes the file unless it was kept.
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    /// Where to write.
    const std::string& GetName() const { return m_Name; }
    /// Puts the file, closed by now, in its place.
    void Keep();
    /// Says that the file, by its own name, cannot be written. \throws ToolError
    [[noreturn]] void Fail(const std::string& reason) const;
    /// For the reason that the system gives.
    [[noreturn]] void Fail() const;

private:
    std::string m_Path;
    std::string m_Name;
    bool m_Kept = false;
};

/// The bytes of a file. \throws ToolError when it cannot be read to its end
std::string ReadFile(const std::string& path);

}  // namespace zulmap
