/// \file
/// The C runtime's file calls, behind one set of names: paths are UTF-16 on every host.
#pragma once

#include <cstdint>
#include <cstdio>

#include "platform/export.h"

/// Opens \p path as `fopen` does. On Linux the path is converted to UTF-8 and each backslash becomes a slash.
/// \returns null when the path or the mode is null, the path is not valid UTF-16, or the file cannot be
/// opened.
ZUL_PLATFORM_API std::FILE* zul_wfopen(const char16_t* path, const char16_t* mode);

/// As `std::fseek`, in 64 bits where a `long` has fewer: files may be longer than 2 GiB.
ZUL_PLATFORM_API int zul_fseek(std::FILE* file, std::int64_t offset, int origin);

/// As `std::ftell`, in 64 bits. \returns a negative number when there is no position.
ZUL_PLATFORM_API std::int64_t zul_ftell(std::FILE* file);

// Paths as in zul_wfopen. Null and what is no path give false.

/// Whether a file may be moved to \p path: there is nothing, or a plain file that may be written, in a folder
/// that may be.
ZUL_PLATFORM_API bool zul_wreplaceable(const char16_t* path);
/// Moves the file \p from to \p to, in place of one that is there. \returns false when that fails, and
/// nothing has changed then.
ZUL_PLATFORM_API bool zul_wreplace(const char16_t* from, const char16_t* to);
/// \returns whether there was a file and it is gone. Needs no memory.
ZUL_PLATFORM_API bool zul_wremove(const char16_t* path);
