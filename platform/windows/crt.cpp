#include "platform/crt.h"

#include <windows.h>

#include <cwchar>

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the system's characters are the library's");

namespace {

const wchar_t* ToNative(const char16_t* path) {
    return reinterpret_cast<const wchar_t*>(path);
}

}  // namespace

std::FILE* zul_wfopen(const char16_t* path, const char16_t* mode) {
    if (path == nullptr || mode == nullptr) return nullptr;
    return _wfopen(ToNative(path), ToNative(mode));
}

bool zul_wreplaceable(const char16_t* path) {
    if (path == nullptr || *path == 0) return false;
    const DWORD is = GetFileAttributesW(ToNative(path));
    if (is == INVALID_FILE_ATTRIBUTES) return GetLastError() == ERROR_FILE_NOT_FOUND;
    constexpr DWORD Kept = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE | FILE_ATTRIBUTE_REPARSE_POINT |
                           FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    return (is & Kept) == 0;
}

bool zul_wreplace(const char16_t* from, const char16_t* to) {
    return from != nullptr && to != nullptr &&
           MoveFileExW(ToNative(from), ToNative(to), MOVEFILE_REPLACE_EXISTING) != 0;
}

bool zul_wremove(const char16_t* path) {
    return path != nullptr && DeleteFileW(ToNative(path)) != 0;
}

int zul_fseek(std::FILE* file, std::int64_t offset, int origin) {
    return _fseeki64(file, offset, origin);
}

std::int64_t zul_ftell(std::FILE* file) {
    return _ftelli64(file);
}
