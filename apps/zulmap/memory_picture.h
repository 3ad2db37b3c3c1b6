/// \file
/// A picture in memory with a canvas that draws on it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "apps/zulmap/picture_file.h"
#include "platform/gdi.h"
#include "zul/canvas/canvas.h"
#include "zul/raster/bitmap.h"

namespace zulmap {

constexpr double kScreenDpi = 96.0;
/// Pixels a centimetre of a picture: those of a screen.
constexpr double kPixelsPerSm = kScreenDpi / 2.54;

/// \throws ToolError, about \p what, unless each side has 1 to 32000 pixels and both at most 100 million
void CheckPictureSize(zul::TSize size, const std::string& what);

/// 32 bits a pixel, black at first. Owns the pixels and puts them down when it ends; the canvas needs no
/// care.
class MemoryPicture {
public:
    /// \throws ToolError when there is no memory for \p width x \p height pixels
    MemoryPicture(std::int32_t width, std::int32_t height);
    MemoryPicture(const MemoryPicture&) = delete;
    MemoryPicture& operator=(const MemoryPicture&) = delete;

    zul::CCanvas& GetCanvas() { return m_Canvas; }
    /// The pixels as they are now; they change as the canvas draws.
    PictureView GetView() const { return {m_Width, m_Height, m_Pixels}; }

private:
    struct SectionDeleter {
        using pointer = HBITMAP;
        void operator()(HBITMAP section) const { ::DeleteObject(section); }
    };

    std::int32_t m_Width;
    std::int32_t m_Height;
    const std::uint32_t* m_Pixels = nullptr;
    std::unique_ptr<void, SectionDeleter> m_Section;  ///< goes when bitmap and canvas have let go of it
    zul::CBitmap m_Bitmap;
    zul::CCanvas m_Canvas;
};

}  // namespace zulmap
