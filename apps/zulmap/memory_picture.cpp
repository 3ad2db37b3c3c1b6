#include "apps/zulmap/memory_picture.h"

#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

constexpr std::int32_t kMostPixelsASide = 32000;
constexpr std::int64_t kMostPixels = 100'000'000;

}  // namespace

void CheckPictureSize(zul::TSize size, const std::string& what) {
    const bool fits = size.Width >= 1 && size.Height >= 1 && size.Width <= kMostPixelsASide &&
                      size.Height <= kMostPixelsASide &&
                      std::int64_t{size.Width} * size.Height <= kMostPixels;
    if (fits) return;
    throw ToolError(what + " of " + std::to_string(size.Width) + "x" + std::to_string(size.Height) +
                    " pixels is out of range: 1 to " + std::to_string(kMostPixelsASide) +
                    " pixels a side, at most " + std::to_string(kMostPixels) + " together");
}

MemoryPicture::MemoryPicture(std::int32_t width, std::int32_t height) : m_Width(width), m_Height(height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    m_Section.reset(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (m_Section == nullptr) throw ToolError("there is no memory for a picture of that size");
    m_Pixels = static_cast<const std::uint32_t*>(bits);
    m_Bitmap.AttachHandle(m_Section.get());
    m_Canvas.CreateMemoryCanvas();
    m_Canvas.AssignBitmap(&m_Bitmap);
}

}  // namespace zulmap
