#include <agg_font_cache_manager.h>
#include <agg_font_freetype.h>
#include <agg_pixfmt_rgba.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <stdexcept>

#include "bench/labels.h"
#include "platform/software/display.h"

namespace zulbench {
namespace {

/// The file of the labels' face. \throws std::runtime_error
std::string FontFile() {
    FcPattern* const asked = FcNameParse(reinterpret_cast<const FcChar8*>(kLabelFace));
    FcConfigSubstitute(nullptr, asked, FcMatchPattern);
    FcDefaultSubstitute(asked);
    FcResult result{};
    FcPattern* const match = FcFontMatch(nullptr, asked, &result);
    FcPatternDestroy(asked);
    FcChar8* file = nullptr;
    std::string path;
    if (match != nullptr && FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch)
        path = reinterpret_cast<const char*>(file);
    if (match != nullptr) FcPatternDestroy(match);
    if (path.empty()) throw std::runtime_error("there is no font");
    return path;
}

/// Rows of 32-bit pixels from top to bottom.
Picture PictureOf(const std::uint32_t* pixels) {
    Picture picture{kWidth, kHeight, {pixels, pixels + std::size_t{kWidth} * kHeight}};
    for (std::uint32_t& pixel : picture.pixels)
        pixel &= 0xFFFFFFu;
    return picture;
}

/// The scaled font is made once, and the characters' glyphs are looked up beforehand.
class CairoLetterer : public Letterer {
public:
    CairoLetterer(const std::string& file, bool hard)
        : m_Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight)),
          m_Cairo(cairo_create(m_Surface)) {
        if (FT_Init_FreeType(&m_Library) != 0 || FT_New_Face(m_Library, file.c_str(), 0, &m_Face) != 0)
            throw std::runtime_error("the font cannot be read: " + file);
        cairo_font_face_t* const face = cairo_ft_font_face_create_for_ft_face(m_Face, 0);
        cairo_font_options_t* const options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, hard ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_style(options, hard ? CAIRO_HINT_STYLE_FULL : CAIRO_HINT_STYLE_SLIGHT);
        cairo_matrix_t size, unit;
        cairo_matrix_init_scale(&size, kLabelPixels, kLabelPixels);
        cairo_matrix_init_identity(&unit);
        m_Font = cairo_scaled_font_create(face, &size, &unit, options);
        cairo_font_options_destroy(options);
        cairo_font_face_destroy(face);
        cairo_set_scaled_font(m_Cairo, m_Font);
        for (std::size_t c = 0; c < m_Glyphs.size(); ++c)
            m_Glyphs[c] = FT_Get_Char_Index(m_Face, c);
    }
    ~CairoLetterer() override {
        cairo_destroy(m_Cairo);
        cairo_surface_destroy(m_Surface);
        cairo_scaled_font_destroy(m_Font);
        FT_Done_FreeType(m_Library);
    }
    CairoLetterer(const CairoLetterer&) = delete;
    CairoLetterer& operator=(const CairoLetterer&) = delete;

    Side GetSide() const override { return Side::Peer; }
    const char* GetName() const override { return "Cairo"; }

    void Draw(const LabelWork& work, std::size_t count) override {
        cairo_set_source_rgb(m_Cairo, (work.color & 255) / 255.0, (work.color >> 8 & 255) / 255.0,
                             (work.color >> 16) / 255.0);
        std::array<cairo_glyph_t, kLongestLabel> glyphs;
        for (std::size_t i = 0; i < count; ++i) {
            const Label& label = work.labels[i];
            std::size_t used = 0;
            std::int32_t x = label.at.X;
            for (const char character : label.ascii) {
                const auto c = static_cast<unsigned char>(character);
                glyphs[used++] = {m_Glyphs[c], static_cast<double>(x),
                                  static_cast<double>(label.at.Y + work.ascent)};
                x += work.advances[c];
            }
            cairo_show_glyphs(m_Cairo, glyphs.data(), static_cast<int>(used));
        }
    }
    double Measure(const LabelWork& work) override {
        double sum = 0;
        for (const Label& label : work.labels) {
            cairo_text_extents_t extents;
            cairo_scaled_font_text_extents(m_Font, label.ascii.c_str(), &extents);
            sum += extents.x_advance;
        }
        return sum;
    }
    void Wipe() override {
        cairo_set_source_rgb(m_Cairo, 0, 0, 0);
        cairo_paint(m_Cairo);
    }
    Picture GetPicture() override {
        cairo_surface_flush(m_Surface);
        return PictureOf(reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(m_Surface)));
    }

private:
    cairo_surface_t* m_Surface;
    cairo_t* m_Cairo;
    FT_Library m_Library = nullptr;
    FT_Face m_Face = nullptr;
    cairo_scaled_font_t* m_Font = nullptr;
    std::array<unsigned long, 128> m_Glyphs{};
};

/// Its engine on FreeType with its cache of glyphs, which are pictures of the font's own rasteriser.
class AggLetterer : public Letterer {
public:
    AggLetterer(const std::string& file, bool hard) {
        const agg::glyph_rendering kind = hard ? agg::glyph_ren_native_mono : agg::glyph_ren_native_gray8;
        if (!m_Engine.load_font(file.c_str(), 0, kind))
            throw std::runtime_error("the font cannot be read: " + file);
        m_Engine.hinting(true);
        m_Engine.height(kLabelPixels);
        m_Engine.width(kLabelPixels);
        m_Engine.flip_y(true);
    }

    Side GetSide() const override { return Side::Peer; }
    const char* GetName() const override { return "AGG"; }

    void Draw(const LabelWork& work, std::size_t count) override {
        const agg::rgba8 color(work.color & 255, work.color >> 8 & 255, work.color >> 16);
        m_Hard.color(color);
        m_Smooth.color(color);
        for (std::size_t i = 0; i < count; ++i) {
            const Label& label = work.labels[i];
            std::int32_t x = label.at.X;
            for (const char character : label.ascii) {
                const auto c = static_cast<unsigned char>(character);
                const agg::glyph_cache* const glyph = m_Glyphs.glyph(c);
                if (glyph == nullptr) continue;
                m_Glyphs.init_embedded_adaptors(glyph, x, label.at.Y + work.ascent);
                if (glyph->data_type == agg::glyph_data_mono) {
                    agg::render_scanlines(m_Glyphs.mono_adaptor(), m_Glyphs.mono_scanline(), m_Hard);
                } else {
                    agg::render_scanlines(m_Glyphs.gray8_adaptor(), m_Glyphs.gray8_scanline(), m_Smooth);
                }
                x += work.advances[c];
            }
        }
    }
    double Measure(const LabelWork& work) override {
        double sum = 0;
        for (const Label& label : work.labels) {
            for (const char character : label.ascii) {
                const agg::glyph_cache* const glyph = m_Glyphs.glyph(static_cast<unsigned char>(character));
                if (glyph != nullptr) sum += glyph->advance_x;
            }
        }
        return sum;
    }
    void Wipe() override { std::fill(m_Memory.begin(), m_Memory.end(), 0u); }
    Picture GetPicture() override { return PictureOf(m_Memory.data()); }

private:
    using Base = agg::renderer_base<agg::pixfmt_bgra32>;

    std::vector<std::uint32_t> m_Memory = std::vector<std::uint32_t>(std::size_t{kWidth} * kHeight);
    agg::rendering_buffer m_Rows{reinterpret_cast<agg::int8u*>(m_Memory.data()), kWidth, kHeight, kWidth * 4};
    agg::pixfmt_bgra32 m_Pixels{m_Rows};
    Base m_Base{m_Pixels};
    agg::renderer_scanline_bin_solid<Base> m_Hard{m_Base};
    agg::renderer_scanline_aa_solid<Base> m_Smooth{m_Base};
    agg::font_engine_freetype_int32 m_Engine;
    agg::font_cache_manager<agg::font_engine_freetype_int32> m_Glyphs{m_Engine};
};

}  // namespace

Letterers PeerLetterers(bool hard) {
    const std::string file = FontFile();
    return {std::make_shared<CairoLetterer>(file, hard), std::make_shared<AggLetterer>(file, hard)};
}

EdgeSetting::EdgeSetting(bool hard) : m_Holds(true) {
    device::DisplaySettings settings = device::GetDisplay();
    settings.smoothText = !hard;
    device::SetDisplay(settings);
}

EdgeSetting::~EdgeSetting() {
    device::DisplaySettings settings = device::GetDisplay();
    settings.smoothText = true;
    device::SetDisplay(settings);
}

}  // namespace zulbench
