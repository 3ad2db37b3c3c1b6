/// \file
/// A bitmap as the surface of a memory canvas.
#pragma once

#include "zul/canvas/canvas.h"

namespace zul {

/// A memory canvas that draws on a bitmap, or lets others read it, and gives it back at its end.
class CBitmapCanvas : public CCanvas {
public:
    /// Null: the canvas draws on a single pixel.
    explicit CBitmapCanvas(CBitmap* bitmap) {
        CreateMemoryCanvas();
        AssignBitmap(bitmap);
    }
    ~CBitmapCanvas() override { AssignBitmap(nullptr); }
};

}  // namespace zul
