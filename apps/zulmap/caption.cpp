#include "apps/zulmap/caption.h"

#include <string>

#include "apps/zulmap/pixel_coordinates.h"

namespace zulmap {
namespace {

void UseFont(zul::CFont& font, CaptionFont settings, std::int32_t color) {
    font.Create(settings.isFixed ? u"Liberation Mono" : u"Liberation Sans", settings.points, color, 0);
    font.SetStyle(settings.isBold ? zul::CFont::StyleBold : 0);
    font.Invalidate();
}

zul::CString FromUtf8(std::string_view text) {
    return zul::CString(std::string(text).c_str());
}

}  // namespace

void DrawCaption(zul::CCanvas& canvas, zul::TLongPoint position, std::string_view text, CaptionFont font,
                 std::int32_t color) {
    UseFont(canvas.GetFont(), font, color);
    const zul::CString characters = FromUtf8(text);
    const PixelCoordinates pixels(canvas);
    canvas.OutText(&characters, position.X, position.Y);
}

zul::TSize GetCaptionSize(std::string_view text, CaptionFont font) {
    zul::CFont settings;
    UseFont(settings, font, 0);
    zul::TSize size{};
    const zul::CString characters = FromUtf8(text);
    settings.GetTextSize(&characters, size.Width, size.Height);
    return size;
}

}  // namespace zulmap
