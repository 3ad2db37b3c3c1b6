/// \file
/// Drawing in pixels on a canvas that has a scaler.
#pragma once

#include "zul/canvas/canvas.h"

namespace zulmap {

/// While it lives the canvas takes coordinates as pixels.
class PixelCoordinates {
public:
    explicit PixelCoordinates(zul::CCanvas& canvas)
        : m_Canvas(canvas), m_Former(canvas.SetPretranslation(false)) {}
    ~PixelCoordinates() { m_Canvas.SetPretranslation(m_Former); }
    PixelCoordinates(const PixelCoordinates&) = delete;
    PixelCoordinates& operator=(const PixelCoordinates&) = delete;

private:
    zul::CCanvas& m_Canvas;
    bool m_Former;
};

}  // namespace zulmap
