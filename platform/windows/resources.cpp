#include "platform/gdi.h"

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the system's characters are the library's");

/// The system takes a name without a module for one of its own bitmaps, unless told that it is a path.
HANDLE LoadImageW(HINSTANCE module, const char16_t* name, UINT type, int width, int height, UINT flags) {
    if (module == nullptr) flags |= LR_LOADFROMFILE;
    return LoadImageW(module, reinterpret_cast<const wchar_t*>(name), type, width, height, flags);
}

HRSRC FindResourceW(HMODULE module, const char16_t* name, const void* type) {
    return FindResourceW(module, reinterpret_cast<const wchar_t*>(name), static_cast<const wchar_t*>(type));
}
