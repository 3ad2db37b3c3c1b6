#include "tests/canvas/canvas_testing.h"
#include "zul/geometry/rect.h"

namespace zultest {
namespace {

TEST(RectPaint, FrameIsDrawnHoweverItIsAsked) {
    const Picture frame = {"......", ".####.", ".#..#.", ".####.", "......"};
    Surface surface(6, 5);
    zul::CRect rect(1, 1, 4, 3);  // both edges belong to it
    EXPECT_TRUE(rect.DoPaint(&surface.Canvas, nullptr));
    EXPECT_EQ(surface.Look(), frame);
    surface.Wipe();
    zul::CMessage message(u"draw", zul::CMessage::FromPointer(&surface.Canvas));
    EXPECT_TRUE(rect.DoMessage(&message));
    EXPECT_EQ(surface.Look(), frame);
    surface.Wipe();
    EXPECT_TRUE(surface.Canvas.Draw(&rect, nullptr));
    EXPECT_EQ(surface.Look(), frame);
}

}  // namespace
}  // namespace zultest
