#include "apps/zulmap/labels/label_writer.h"

#include <algorithm>
#include <cmath>

#include "apps/zulmap/pixel_coordinates.h"
#include "zul/kernel/numeric.h"

namespace zulmap {
namespace {

/// The same way on either side of 0, so that a label that moves by whole pixels keeps its form.
zul::TLongPoint PixelOf(const TDoublePoint& point) {
    return {zul::ToLong(std::floor(point.X + 0.5)), zul::ToLong(std::floor(point.Y + 0.5))};
}

}  // namespace

LabelWriter::LabelWriter(zul::CCanvas& canvas, const MapFacts& map, const MapStyle& style)
    : m_Canvas(canvas), m_Magnification(style.magnification) {
    for (const MapLayer& layer : map.layers) {
        m_Fonts.push_back(style.font.value_or(layer.look.font));
        std::int32_t& halo = m_Fonts.back().halo;
        halo = std::min(halo * m_Magnification, std::int32_t{zul::CFont::StyleOreolMask});
    }
}

void LabelWriter::UseFont(std::uint32_t layer, std::int32_t height, double degrees) {
    zulmap::UseFont(m_Canvas.GetFont(), m_Fonts[layer], height, degrees);
}

double LabelWriter::MeasureWidth(const zul::CString& text, std::uint32_t layer, std::int32_t height) {
    UseFont(layer, height, 0.0);
    return m_Canvas.GetTextWidth(text.GetBuffer(), zul::SaturateToLong(text.GetLength()));
}

/// Pixels.
double LabelWriter::MeasureLine(std::uint32_t layer, std::int32_t height) {
    UseFont(layer, height, 0.0);
    return m_Canvas.GetTextHeight(u"X", 1);
}

Label LabelWriter::Compose(const std::vector<zul::CString>& lines, std::uint32_t layer, std::int32_t height,
                           const Turn& turn) {
    Label label{lines, {}, layer, height, {{}, {0.0, 0.0}, turn}};
    for (const zul::CString& line : lines) {
        label.widths.push_back(MeasureWidth(line, layer, height));
    }
    const double widest = *std::max_element(label.widths.begin(), label.widths.end());
    label.text.half = {widest / 2.0, MeasureLine(layer, height) * static_cast<double>(lines.size()) / 2.0};
    return label;
}

HalfSize LabelWriter::GetFrameMargin(const Label& label) const {
    if (m_Fonts[label.layer].framed == 0) return {0.0, 0.0};
    const double line = 2.0 * label.text.half.height / static_cast<double>(label.lines.size());
    return {std::ceil(line / 4.0), std::ceil(line / 8.0)};
}

TurnedBox LabelWriter::GetOutline(const Label& label) const {
    // The frame has an edge of a pixel, and the halo belongs to the text within it.
    const HalfSize margin = GetFrameMargin(label);
    TurnedBox outline = label.text;
    outline.half.width += std::max<double>(margin.width + 1.0, m_Fonts[label.layer].halo);
    outline.half.height += std::max<double>(margin.height + 1.0, m_Fonts[label.layer].halo);
    return outline;
}

void LabelWriter::Draw(const Label& label) {
    const PixelCoordinates pixels(m_Canvas);
    if (m_Fonts[label.layer].framed != 0) DrawFrame(label);
    UseFont(label.layer, label.height, label.text.turn.GetDegrees());
    const double count = static_cast<double>(label.lines.size());
    for (std::size_t i = 0; i < label.lines.size(); ++i) {
        // A text hangs on its upper left corner, and turns about it.
        const zul::TLongPoint place = PixelOf(label.text.CornerAt(
            -label.widths[i] / (2.0 * label.text.half.width), 2.0 * static_cast<double>(i) / count - 1.0));
        m_Canvas.OutText(&label.lines[i], place.X, place.Y);
    }
}

void LabelWriter::DrawFrame(const Label& label) {
    const FontSettings& font = m_Fonts[label.layer];
    TurnedBox frame = label.text;
    const HalfSize margin = GetFrameMargin(label);
    frame.half.width += margin.width;
    frame.half.height += margin.height;
    m_Canvas.GetPen().Create(zul::CPen::PenSolid, 0, m_Magnification, font.color, 0, 0, 0);
    m_Canvas.GetPen().SetScaled(false);
    m_Canvas.GetBrush().SetType(font.halo > 0 ? zul::CBrush::BrushSolid : zul::CBrush::BrushNone);
    m_Canvas.GetBrush().SetColor(font.haloColor);
    const zul::TLongPoint corners[] = {PixelOf(frame.CornerAt(-1.0, -1.0)),
                                       PixelOf(frame.CornerAt(1.0, -1.0)), PixelOf(frame.CornerAt(1.0, 1.0)),
                                       PixelOf(frame.CornerAt(-1.0, 1.0))};
    m_Canvas.Polygon(corners, 4);
}

}  // namespace zulmap
