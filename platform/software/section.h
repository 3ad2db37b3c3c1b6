/// \file
/// Making bitmaps in memory, before anybody has a handle to them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/software/context.h"

namespace device {

/// A bitmap of zero pixels; null, with the error set, for sizes that are refused or when memory is short.
std::unique_ptr<Bitmap> MakeBitmap(std::int32_t width, std::int32_t height, Format format, bool bottomUp);

/// Gives the bitmap a colour table of its own. False when memory is short.
bool OwnTable(Bitmap& bitmap, const ColorTable& table);

/// The layout with these masks of red, green and blue; none when the device has no such layout.
std::optional<Format> FormatOfMasks(int bitsPixel, const std::array<std::uint32_t, 3>& masks);

/// A section of zero pixels with the colours or masks that stand behind the header; null, with the error set,
/// when the device has no such layout or memory is short.
std::unique_ptr<Bitmap> MakeSection(const BITMAPINFO* info);

}  // namespace device
