/// \file
/// The display behind a null window, and raster printer pages: what a program that runs on the software
/// device can settle about them. Programs written for the platform alone never include this.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/gdi.h"

namespace device {

/// Size and resolution of a display or of a printer's page.
struct DisplaySettings {
    /// Pixels, at least 1.
    std::int32_t width = 1024, height = 768;
    int bitsPerPixel = 32;  ///< 1, 4, 8, 16 (565), 24 or 32
    /// Pixels per inch, at least 1.
    int dpiX = 96, dpiY = 96;
    /// Of the glass or the printable part of the paper, not negative.
    int widthMm = 271, heightMm = 203;
    /// Of a printer's page: pixels of paper that nothing reaches, to the left as to the right, above as
    /// below, 0 to 100000. The context begins inside them.
    int marginX = 0, marginY = 0;
    bool smoothText = true;  ///< false: characters have hard edges, as they always have in one bit
};

/// Replaces the display by an all-black one. Contexts that are open keep the old one until they end.
/// False, and nothing changes, for settings out of range or when memory is short.
ZUL_PLATFORM_API bool SetDisplay(const DisplaySettings& settings);
ZUL_PLATFORM_API DisplaySettings GetDisplay();  ///< The settings of the present one.

/// A context on a blank (white) page of its own, which tells that it is a raster printer. Ended by DeleteDC,
/// and its page with it. Null for settings out of range or when memory is short.
ZUL_PLATFORM_API HDC CreatePrinterPage(const DisplaySettings& page);

/// What all text of the program has in common.
struct TextSettings {
    /// What a thread that draws text may keep of its characters' pictures. Each thread keeps its own, so that
    /// none waits for another.
    std::size_t cacheBytes = std::size_t{4} << 20;
    bool fontFiles = true;  ///< false: as on a host without fonts, boxes stand for the characters
};
/// Fonts that have been drawn with already keep the face that they found.
ZUL_PLATFORM_API void SetTextSettings(const TextSettings& settings);
ZUL_PLATFORM_API TextSettings GetTextSettings();  ///< As they are now.

/// How many objects of a type (OBJ_*; 0: of all types) live, for leak tests; stock objects do not count. As
/// many as there are take part in the count: not for each figure.
ZUL_PLATFORM_API int LiveHandles(DWORD type = 0);

}  // namespace device
