#include "apps/zulmap/whole_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "apps/zulmap/tool_error.h"
#include "zul/kernel/string.h"

namespace zulmap {

PendingFile::PendingFile(const std::string& path)
    : m_Path(path),
      m_File(zul::CString(path.c_str()).GetBuffer()),
      m_Name(zul::CString(m_File.GetPath()).GetBufferAnsi()) {
    if (zul::CString(path.c_str()).GetBufferAnsi() != path) Fail("its name is not UTF-8");
}

void PendingFile::Keep() {
    if (!m_File.Keep()) Fail();
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
