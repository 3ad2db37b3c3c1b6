/// \file
/// Bitmap resources. Where no linker puts them into a module, the program registers them for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/gdi.h"

namespace device {

/// Makes a bitmap resource known to FindResourceW and LoadImageW: \p size bytes at \p bytes, a packed image,
/// are copied; the header of a BMP file in front of it is left out, as a resource compiler does. \p module is
/// any value but null that names the module; \p name is a text or a number (MAKEINTRESOURCEW). A resource of
/// the same name is replaced; whoever still reads it keeps its bytes. \returns false for null arguments and
/// when memory is short.
ZUL_PLATFORM_API bool RegisterBitmapResource(HMODULE module, LPCWSTR name, const void* bytes,
                                             std::size_t size);
/// Forgets a module's resources; its resource handles go stale and the bytes of those loaded are freed.
ZUL_PLATFORM_API void RemoveBitmapResources(HMODULE module);

/// What a resource holds, for as long as somebody reads it.
using ResourceBytes = std::shared_ptr<const std::vector<std::uint8_t>>;
/// Null when the module has no such bitmap.
ResourceBytes FindBitmapResource(HMODULE module, LPCWSTR name);

}  // namespace device
