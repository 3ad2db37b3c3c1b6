/// \file
/// Small signs with text on top of a map.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/zulmap/view/map_view.h"
#include "apps/zulmap/view/pixel_rect.h"
#include "zul/canvas/canvas.h"

namespace zulmap {

/// Lines of text on a light ground, beside or below them a bar of some length.
struct Panel {
    PixelRect place{};
    std::vector<std::string> lines;
    std::int32_t bar = 0;  ///< pixels; 0 for none

    bool operator==(const Panel& other) const;
    bool operator!=(const Panel& other) const { return !(*this == other); }
};

enum class Corner { UpperLeft, UpperRight, LowerLeft, LowerRight };

/// A panel as large as its contents, in a corner of the screen.
Panel MakePanel(std::vector<std::string> lines, std::int32_t bar, Corner corner, zul::TSize screen);

/// A bar of a round length on the ground, about a sixth of the screen. In perspective it holds at the near
/// edge, in degrees from north to south.
Panel MakeScalePanel(const MapView& view);

/// Where a pixel lies on the map, as finely as a pixel is.
Panel MakePositionPanel(const MapView& view, zul::TLongPoint pixel);

/// Draws in pixels. Leaves its own settings in the canvas's tools.
void DrawPanel(zul::CCanvas& canvas, const Panel& panel);

}  // namespace zulmap
