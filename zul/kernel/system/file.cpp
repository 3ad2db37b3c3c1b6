#include "zul/kernel/system/file.h"

#include <limits>

#include "platform/crt.h"

namespace zulsys {

bool CFile::Connect(const char16_t* path, bool, const char16_t*, int, int) {
    m_File.reset(zul_wfopen(path, u"rb"));
    return m_File != nullptr;
}

bool CFile::Read(void* data, std::int64_t size) {
    if (m_File == nullptr || size < 0) return false;
    if (size == 0) return true;
    if (data == nullptr || static_cast<std::uint64_t>(size) > std::numeric_limits<std::size_t>::max())
        return false;
    const auto wanted = static_cast<std::size_t>(size);
    return std::fread(data, 1, wanted, m_File.get()) == wanted;
}

}  // namespace zulsys
