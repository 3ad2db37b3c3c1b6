#include "apps/zulmap/layer_look.h"

#include <iterator>

namespace zulmap {
namespace {

constexpr std::int32_t kAreas[] = {0xF2E3BC, 0xD5E3BD, 0xF3D3B9, 0xDFD0E4,
                                   0xC8E0CF, 0xF7F1D0, 0xEECAC5, 0xE2D8C3};

PenSettings Pen(std::int32_t redGreenBlue, std::int32_t width = 1) {
    PenSettings pen;
    pen.color = Color(redGreenBlue);
    pen.width = width;
    return pen;
}

BrushSettings Brush(std::int32_t redGreenBlue) {
    BrushSettings brush;
    brush.color = Color(redGreenBlue);
    return brush;
}

}  // namespace

LayerLook::LayerLook()
    : shallows(Pen(0xD8EAF2, 5)),
      coast(Pen(0x7B9CAE)),
      border(Pen(0x9C8A78)),
      line(Pen(0x8A6F5C)),
      point(Pen(0x6B3A2E)),
      disc(Brush(0xC8664B)) {
    for (const std::int32_t color : kAreas) {
        areas.push_back(Brush(color));
    }
}

}  // namespace zulmap
