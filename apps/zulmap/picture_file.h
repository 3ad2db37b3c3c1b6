/// \file
/// Pictures as files: PNG and BMP.
#pragma once

#include <cstdint>
#include <string>

namespace zulmap {

/// Pixels that somebody else owns: 0x00RRGGBB, rows from top to bottom without gaps.
struct PictureView {
    std::int32_t width = 0;
    std::int32_t height = 0;
    const std::uint32_t* pixels = nullptr;
};

enum class PictureFormat { Png, Bmp };

/// The format that the ending of \p path names, in either case.
/// \throws ToolError for any other ending.
PictureFormat PictureFormatOf(const std::string& path);

/// Writes the picture under a temporary name beside \p path and renames it when it is complete, so that
/// \p path holds the whole picture or what it held before.
/// \throws ToolError when that fails; the temporary file is gone then.
void WritePicture(const std::string& path, const PictureView& picture);

}  // namespace zulmap
