#include <cairo.h>

#include <cstddef>

#include "bench/peers/peers.h"

namespace zulbench {
namespace {

/// Cairo sorts all crossings of a stroke; in short strokes it is fastest.
constexpr std::size_t kStroke = 256;

class CairoPainter : public Painter {
public:
    CairoPainter()
        : m_Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight)),
          m_Cairo(cairo_create(m_Surface.get())) {
        cairo_set_antialias(m_Cairo.get(), CAIRO_ANTIALIAS_NONE);
        cairo_set_fill_rule(m_Cairo.get(), CAIRO_FILL_RULE_EVEN_ODD);
    }

    Side GetSide() const override { return Side::Peer; }
    const char* GetName() const override { return "Cairo"; }

    bool Prepare(const Line& line, COLORREF color, Shape /*shape*/) override {
        cairo_t* cairo = m_Cairo.get();
        const bool wide = line.width > 1;
        cairo_set_line_width(cairo, line.width);
        cairo_set_line_join(cairo, wide ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_BEVEL);
        cairo_set_line_cap(cairo, wide ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
        static constexpr double kDashes[] = {18.0, 6.0};
        cairo_set_dash(cairo, kDashes, line.dashed ? 2 : 0, 0.0);
        m_HasLine = line.width > 0;
        m_Color = color;
        SetColor(color);
        return !line.inverting;
    }

    void Polyline(Figure& figure) override {
        cairo_t* cairo = m_Cairo.get();
        for (std::size_t i = 0; i < figure.device.size(); ++i) {
            const zul::TLongPoint at = figure.device[i];
            cairo_line_to(cairo, at.X + 0.5, at.Y + 0.5);
            if (i % kStroke == kStroke - 1) {
                cairo_stroke(cairo);
                cairo_move_to(cairo, at.X + 0.5, at.Y + 0.5);
            }
        }
        cairo_stroke(cairo);
    }

    void Polygon(Figure& figure) override {
        cairo_t* cairo = m_Cairo.get();
        for (const zul::TLongPoint at : figure.device)
            cairo_line_to(cairo, at.X + 0.5, at.Y + 0.5);
        cairo_close_path(cairo);
        SetColor(figure.fill);
        if (!m_HasLine) {
            cairo_fill(cairo);
            return;
        }
        cairo_fill_preserve(cairo);
        SetColor(m_Color);
        cairo_stroke(cairo);
    }

    void FillRect(const RECT& rect, COLORREF color) override {
        cairo_rectangle(m_Cairo.get(), rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
        SetColor(color);
        cairo_fill(m_Cairo.get());
        SetColor(m_Color);
    }

    Picture GetPicture() override {
        cairo_surface_flush(m_Surface.get());
        Picture picture{kWidth, kHeight, {}};
        const auto* pixels =
            reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(m_Surface.get()));
        picture.pixels.assign(pixels, pixels + std::ptrdiff_t{kWidth} * kHeight);
        for (std::uint32_t& pixel : picture.pixels)
            pixel &= 0xFFFFFFu;
        return picture;
    }

private:
    template <auto destroy>
    struct Destroy {
        template <typename T>
        void operator()(T* object) const {
            destroy(object);
        }
    };

    void SetColor(COLORREF color) {
        cairo_set_source_rgb(m_Cairo.get(), GetRValue(color) / 255.0, GetGValue(color) / 255.0,
                             GetBValue(color) / 255.0);
    }

    std::unique_ptr<cairo_surface_t, Destroy<cairo_surface_destroy>> m_Surface;
    std::unique_ptr<cairo_t, Destroy<cairo_destroy>> m_Cairo;
    bool m_HasLine = true;
    COLORREF m_Color = 0;
};

}  // namespace

std::shared_ptr<Painter> MakeCairoPainter() {
    return std::make_shared<CairoPainter>();
}

}  // namespace zulbench
