#include "apps/zulmap/whole_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "apps/zulmap/tool_error.h"

namespace zulmap {

PendingFile::PendingFile(const std::string& path)
    : m_Path(path), m_Name(path + "." + std::to_string(getpid()) + ".part") {}

PendingFile::~PendingFile() {
    if (!m_Kept) std::remove(m_Name.c_str());
}

void PendingFile::Keep() {
    std::error_code error;
    std::filesystem::rename(m_Name, m_Path, error);
    if (error) Fail(error.message());
    m_Kept = true;
}

void PendingFile::Fail(const std::string& reason) const {
    throw ToolError(m_Path + " cannot be written: " + reason);
}

void PendingFile::Fail() const {
    Fail(std::strerror(errno));
}

std::string ReadFile(const std::string& path) {
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, Closer> file(std::fopen(path.c_str(), "rb"));
    std::string text;
    char bytes[4096];
    for (std::size_t size = sizeof bytes; file != nullptr && size == sizeof bytes;) {
        size = std::fread(bytes, 1, sizeof bytes, file.get());
        text.append(bytes, size);
    }
    if (file == nullptr || std::ferror(file.get()) != 0)
        throw ToolError(path + " cannot be read: " + std::strerror(errno));
    return text;
}

}  // namespace zulmap
