#include "bench/pictures.h"

#include <algorithm>
#include <cstddef>

namespace zulbench {
namespace {

constexpr std::uint32_t kColorBits = 0xFFFFFF;

std::uint32_t ColorAt(const zulmap::PictureView& picture, std::int32_t x, std::int32_t y) {
    return picture.pixels[static_cast<std::ptrdiff_t>(y) * picture.width + x] & kColorBits;
}

bool HasNear(const zulmap::PictureView& picture, std::int32_t x, std::int32_t y, std::uint32_t color) {
    for (std::int32_t row = std::max(y - 1, 0); row <= std::min(y + 1, picture.height - 1); ++row) {
        for (std::int32_t column = std::max(x - 1, 0); column <= std::min(x + 1, picture.width - 1);
             ++column) {
            if (ColorAt(picture, column, row) == color) return true;
        }
    }
    return false;
}

std::int64_t CountStrays(const zulmap::PictureView& from, const zulmap::PictureView& to) {
    std::int64_t strays = 0;
    for (std::int32_t y = 0; y < from.height; ++y) {
        for (std::int32_t x = 0; x < from.width; ++x) {
            if (!HasNear(to, x, y, ColorAt(from, x, y))) ++strays;
        }
    }
    return strays;
}

}  // namespace

CairoPicture::CairoPicture(std::int32_t width, std::int32_t height)
    : m_Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      m_Cairo(cairo_create(m_Surface.get())) {
    cairo_set_antialias(m_Cairo.get(), CAIRO_ANTIALIAS_NONE);
    cairo_set_fill_rule(m_Cairo.get(), CAIRO_FILL_RULE_EVEN_ODD);
    cairo_set_line_width(m_Cairo.get(), 1.0);
    cairo_set_line_join(m_Cairo.get(), CAIRO_LINE_JOIN_BEVEL);
}

zulmap::PictureView CairoPicture::GetView() const {
    cairo_surface_flush(m_Surface.get());
    return {cairo_image_surface_get_width(m_Surface.get()), cairo_image_surface_get_height(m_Surface.get()),
            reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(m_Surface.get()))};
}

void CairoPicture::SetColor(std::int32_t color) const {
    cairo_set_source_rgb(m_Cairo.get(), (color & 0xFF) / 255.0, (color >> 8 & 0xFF) / 255.0,
                         (color >> 16 & 0xFF) / 255.0);
}

double PicturePair::Difference() const {
    const zulmap::PictureView a = ours.GetView();
    const zulmap::PictureView b = peer.GetView();
    return static_cast<double>(CountStrays(a, b) + CountStrays(b, a)) / (2.0 * a.width * a.height);
}

}  // namespace zulbench
