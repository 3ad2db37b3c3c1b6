#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "bench/contest.h"
#include "bench/surface.h"
#include "platform/gdi.h"

namespace zulbench {
namespace {

constexpr std::int32_t kCells = 100;  ///< rectangles of the clip, in each direction
constexpr std::int32_t kPaper = 0xFFFFFF;

/// Whether the clip shows a pixel: in every cell all but the last column and the last row.
bool IsShown(std::int32_t x, std::int32_t y) {
    constexpr std::int32_t cellWidth = kWidth / kCells, cellHeight = kHeight / kCells;
    return x % cellWidth != cellWidth - 1 && y % cellHeight != cellHeight - 1;
}

/// Takes the bars between the cells out of a region of the whole surface.
void ClipToCells(HDC device) {
    const HRGN region = CreateRectRgn(0, 0, kWidth, kHeight);
    const auto cut = [region](int left, int top, int right, int bottom) {
        const HRGN bar = CreateRectRgn(left, top, right, bottom);
        CombineRgn(region, region, bar, RGN_DIFF);
        DeleteObject(bar);
    };
    for (int i = 1; i <= kCells; ++i) {
        const int x = i * kWidth / kCells, y = i * kHeight / kCells;
        cut(x - 1, 0, x, kHeight);
        cut(0, y - 1, kWidth, y);
    }
    SelectClipRgn(device, region);
    DeleteObject(region);
}

/// Triangles through the clip, and the same on a surface without one.
struct ClipBench {
    ClipBench(std::size_t count, std::int32_t reach) : triangles(count) {
        std::mt19937 random(4);
        std::uniform_int_distribution<std::int32_t> x(0, kWidth), y(0, kHeight), offset(-reach, reach);
        std::uniform_int_distribution<std::int32_t> color(0, 0xFFFFFF);
        for (Triangle& triangle : triangles) {
            const zul::TLongPoint at{x(random), y(random)};
            for (zul::TLongPoint& corner : triangle.corners)
                corner = {at.X + offset(random), at.Y + offset(random)};
            triangle.color = color(random);
        }
        for (Surface* picture : {&clipped, &whole}) {
            zul::CCanvas& canvas = picture->GetCanvas();
            canvas.GetPen().SetType(zul::CPen::PenNone);
            PatBlt(canvas.GetHandle(), 0, 0, kWidth, kHeight, WHITENESS);
        }
        ClipToCells(clipped.GetCanvas().GetHandle());
    }

    void Draw(Surface& picture) const {
        zul::CCanvas& canvas = picture.GetCanvas();
        for (const Triangle& triangle : triangles) {
            canvas.GetBrush().SetColor(triangle.color);
            canvas.Polygon(triangle.corners.data(), 3);
        }
    }

    /// Through the clip the same must show, and nothing beside it.
    double Difference() const {
        Picture wanted = whole.GetPicture();
        for (std::int32_t y = 0; y < kHeight; ++y)
            for (std::int32_t x = 0; x < kWidth; ++x)
                if (!IsShown(x, y)) wanted.pixels[static_cast<std::size_t>(y * kWidth + x)] = kPaper;
        return Unlike(clipped.GetPicture(), wanted);
    }

    struct Triangle {
        std::array<zul::TLongPoint, 3> corners;
        std::int32_t color;
    };
    Surface clipped, whole;
    std::vector<Triangle> triangles;
};

Contest ContestOf(const std::string& name, std::size_t count, std::int32_t reach) {
    const auto bench = std::make_shared<ClipBench>(count, reach);
    return {name,
            "triangle",
            static_cast<double>(count),
            0.0,
            {{Side::Classes, "", [bench] { bench->Draw(bench->clipped); }},
             {Side::Peer, "no clip", [bench] { bench->Draw(bench->whole); },
              [bench] { return bench->Difference(); }}}};
}

}  // namespace

std::vector<Contest> ClipContests() {
    return {
        ContestOf("10,000 triangles, 10,000 clip boxes", 10'000, 40),
        ContestOf("500 large triangles, as many boxes", 500, 400),
    };
}

}  // namespace zulbench
