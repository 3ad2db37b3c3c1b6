/// \file
/// A label on the screen, and how it is measured and drawn.
#pragma once

#include <cstdint>
#include <vector>

#include "apps/zulmap/labels/turned_box.h"
#include "apps/zulmap/tool_settings.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/string.h"

namespace zulmap {

/// A name in its place.
struct Label {
    std::vector<zul::CString> lines;
    std::vector<double> widths;  ///< of the lines, pixels
    std::int32_t height;         ///< of the font, points or metres
    TurnedBox text;              ///< around the lines, without halo and frame; pixels
};

/// Measures and draws labels in one style. The canvas keeps its scaler, which a font in metres needs, but
/// labels are given in pixels.
class LabelWriter {
public:
    /// \p magnification  device pixels for each of the halo. The canvas outlives the writer.
    LabelWriter(zul::CCanvas& canvas, const FontSettings& settings, std::int32_t magnification);

    double MeasureWidth(const zul::CString& text, std::int32_t height);
    /// The height of a line, pixels.
    double MeasureLine(std::int32_t height);
    /// A label about the middle of nowhere: its size is right, its place not yet.
    Label Compose(const std::vector<zul::CString>& lines, std::int32_t height, const Turn& turn);
    /// With halo and frame.
    TurnedBox GetOutline(const Label& label) const;

    void Draw(const Label& label);

private:
    void UseFont(std::int32_t height, double degrees);
    HalfSize GetFrameMargin(const Label& label) const;
    void DrawFrame(const Label& label);

    zul::CCanvas& m_Canvas;
    FontSettings m_Settings;
    std::int32_t m_Magnification;
};

}  // namespace zulmap
