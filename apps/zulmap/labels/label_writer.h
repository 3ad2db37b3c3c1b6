/// \file
/// A label on the screen, and how it is measured and drawn.
#pragma once

#include <cstdint>
#include <vector>

#include "apps/zulmap/labels/turned_box.h"
#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/tool_settings.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/string.h"

namespace zulmap {

/// A name in its place.
struct Label {
    std::vector<zul::CString> lines;
    std::vector<double> widths;  ///< of the lines, pixels
    std::uint32_t layer;         ///< whose font it has
    std::int32_t height;         ///< of the font, points or metres
    TurnedBox text;              ///< around the lines, without halo and frame; pixels
};

/// Measures and draws labels, each in the font of its layer. The canvas keeps its scaler, which a font in
/// metres needs, but labels are given in pixels.
class LabelWriter {
public:
    /// For the labels of a map. The canvas outlives the writer.
    LabelWriter(zul::CCanvas& canvas, const MapFacts& map, const MapStyle& style);

    const FontSettings& GetFont(std::uint32_t layer) const { return m_Fonts[layer]; }
    double MeasureWidth(const zul::CString& text, std::uint32_t layer, std::int32_t height);
    /// A label about the middle of nowhere: its size is right, its place not yet.
    Label Compose(const std::vector<zul::CString>& lines, std::uint32_t layer, std::int32_t height,
                  const Turn& turn);
    /// With halo and frame.
    TurnedBox GetOutline(const Label& label) const;

    void Draw(const Label& label);

private:
    void UseFont(std::uint32_t layer, std::int32_t height, double degrees);
    double MeasureLine(std::uint32_t layer, std::int32_t height);
    HalfSize GetFrameMargin(const Label& label) const;
    void DrawFrame(const Label& label);

    zul::CCanvas& m_Canvas;
    std::vector<FontSettings> m_Fonts;  ///< of the layers
    std::int32_t m_Magnification;
};

}  // namespace zulmap
