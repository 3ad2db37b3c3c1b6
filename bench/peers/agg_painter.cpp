#include <agg_clip_liang_barsky.h>
#include <agg_conv_dash.h>
#include <agg_conv_stroke.h>
#include <agg_gamma_functions.h>
#include <agg_path_storage.h>
#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_outline.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_renderer_primitives.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_bin.h>

#include <cstddef>
#include <utility>
#include <vector>

#include "bench/peers/peers.h"

namespace zulbench {
namespace {

using PaintingPixels = agg::pixfmt_bgra32;

/// Pixels that are inverted instead of painted over, in any colour.
class InvertingPixels : public PaintingPixels {
public:
    using PaintingPixels::PaintingPixels;
    void blend_pixel(int x, int y, const color_type& /*color*/, agg::int8u /*cover*/) {
        auto* pixel = reinterpret_cast<std::uint32_t*>(pix_ptr(x, y));
        *pixel ^= 0xFFFFFFu;
    }
};

/// Bresenham's lines, clipped pixel by pixel.
template <typename Pixels>
class ThinLines {
public:
    explicit ThinLines(agg::rendering_buffer& buffer)
        : m_Pixels(buffer), m_Base(m_Pixels), m_Primitives(m_Base), m_Outline(m_Primitives) {}
    void SetColor(agg::rgba8 color) { m_Primitives.line_color(color); }

    void Draw(const std::vector<zul::TLongPoint>& points) {
        m_Primitives.move_to(Scaled(points[0].X), Scaled(points[0].Y));
        for (std::size_t i = 1; i < points.size(); ++i)
            m_Primitives.line_to(Scaled(points[i].X), Scaled(points[i].Y));
    }
    /// The way around, without the sides that lie off the picture as a whole.
    void DrawClosed(const std::vector<zul::TLongPoint>& points) {
        static const agg::rect_i kSurface(0, 0, kWidth - 1, kHeight - 1);
        zul::TLongPoint from = points.back();
        unsigned outside = agg::clipping_flags(from.X, from.Y, kSurface);
        for (const zul::TLongPoint to : points) {
            const unsigned before = std::exchange(outside, agg::clipping_flags(to.X, to.Y, kSurface));
            if ((before & outside) == 0)
                m_Primitives.line(Scaled(from.X), Scaled(from.Y), Scaled(to.X), Scaled(to.Y));
            from = to;
        }
    }
    template <typename Source>
    void DrawPath(Source& source) {
        m_Outline.add_path(source);
    }

private:
    using Base = agg::renderer_base<Pixels>;
    using Primitives = agg::renderer_primitives<Base>;

    static int Scaled(std::int32_t value) { return value * agg::line_bresenham_interpolator::subpixel_scale; }

    Pixels m_Pixels;
    Base m_Base;
    Primitives m_Primitives;
    agg::rasterizer_outline<Primitives> m_Outline;
};

class AggPainter : public Painter {
public:
    AggPainter()
        : m_Memory(std::size_t{kWidth} * kHeight),
          m_Buffer(reinterpret_cast<agg::int8u*>(m_Memory.data()), kWidth, kHeight, kWidth * 4),
          m_Pixels(m_Buffer),
          m_Base(m_Pixels),
          m_Thin(m_Buffer),
          m_Inverting(m_Buffer) {
        m_Rasterizer.filling_rule(agg::fill_even_odd);
        m_Rasterizer.gamma(agg::gamma_threshold(0.5));
        m_Rasterizer.clip_box(0, 0, kWidth, kHeight);
    }

    Side GetSide() const override { return Side::Peer; }
    const char* GetName() const override { return "AGG"; }

    bool Prepare(const Line& line, COLORREF color, Shape /*shape*/) override {
        m_Line = line;
        m_Color = ColorOf(color);
        m_Thin.SetColor(m_Color);
        return !line.inverting || line.width == 1;
    }

    void Polyline(Figure& figure) override {
        if (m_Line.width > 1) {
            Stroke(figure.device);
        } else if (m_Line.dashed) {
            agg::path_storage path = PathOf(figure.device, 0.0);
            agg::conv_dash<agg::path_storage> dashes(path);
            dashes.add_dash(18.0, 6.0);
            m_Thin.DrawPath(dashes);
        } else if (m_Line.inverting) {
            m_Inverting.Draw(figure.device);
        } else {
            m_Thin.Draw(figure.device);
        }
    }

    void Polygon(Figure& figure) override {
        m_Rasterizer.reset();
        m_Rasterizer.move_to(Centre(figure.device[0].X), Centre(figure.device[0].Y));
        for (std::size_t i = 1; i < figure.device.size(); ++i)
            m_Rasterizer.line_to(Centre(figure.device[i].X), Centre(figure.device[i].Y));
        Fill(ColorOf(figure.fill));
        if (m_Line.width > 0) m_Thin.DrawClosed(figure.device);
    }

    void FillRect(const RECT& rect, COLORREF color) override {
        m_Base.copy_bar(rect.left, rect.top, rect.right - 1, rect.bottom - 1, ColorOf(color));
    }
    Picture GetPicture() override {
        Picture picture{kWidth, kHeight, m_Memory};
        for (std::uint32_t& pixel : picture.pixels)
            pixel &= 0xFFFFFFu;
        return picture;
    }

private:
    static agg::rgba8 ColorOf(COLORREF color) {
        return agg::rgba8(GetRValue(color), GetGValue(color), GetBValue(color));
    }
    /// Of a pixel, in the rasterizer's fractions.
    static int Centre(std::int32_t value) {
        return value * agg::poly_subpixel_scale + agg::poly_subpixel_scale / 2;
    }
    static agg::path_storage PathOf(const std::vector<zul::TLongPoint>& points, double shift) {
        agg::path_storage path;
        path.move_to(points[0].X + shift, points[0].Y + shift);
        for (std::size_t i = 1; i < points.size(); ++i)
            path.line_to(points[i].X + shift, points[i].Y + shift);
        return path;
    }
    void Stroke(const std::vector<zul::TLongPoint>& points) {
        agg::path_storage path = PathOf(points, 0.5);
        agg::conv_stroke<agg::path_storage> stroke(path);
        stroke.width(m_Line.width);
        stroke.line_cap(agg::round_cap);
        stroke.line_join(agg::round_join);
        m_Rasterizer.filling_rule(agg::fill_non_zero);
        m_Rasterizer.reset();
        m_Rasterizer.add_path(stroke);
        Fill(m_Color);
        m_Rasterizer.filling_rule(agg::fill_even_odd);
    }
    void Fill(agg::rgba8 color) { agg::render_scanlines_bin_solid(m_Rasterizer, m_Scanline, m_Base, color); }

    std::vector<std::uint32_t> m_Memory;
    agg::rendering_buffer m_Buffer;
    PaintingPixels m_Pixels;
    agg::renderer_base<PaintingPixels> m_Base;
    ThinLines<PaintingPixels> m_Thin;
    ThinLines<InvertingPixels> m_Inverting;
    agg::rasterizer_scanline_aa<> m_Rasterizer;
    agg::scanline_bin m_Scanline;
    Line m_Line;
    agg::rgba8 m_Color;
};

}  // namespace

std::shared_ptr<Painter> MakeAggPainter() {
    return std::make_shared<AggPainter>();
}

}  // namespace zulbench
