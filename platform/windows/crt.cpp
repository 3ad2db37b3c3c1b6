#include "platform/crt.h"

#include <cwchar>

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the system's characters are the library's");

std::FILE* zul_wfopen(const char16_t* path, const char16_t* mode) {
    if (path == nullptr || mode == nullptr) return nullptr;
    return _wfopen(reinterpret_cast<const wchar_t*>(path), reinterpret_cast<const wchar_t*>(mode));
}

int zul_fseek(std::FILE* file, std::int64_t offset, int origin) {
    return _fseeki64(file, offset, origin);
}

std::int64_t zul_ftell(std::FILE* file) {
    return _ftelli64(file);
}
