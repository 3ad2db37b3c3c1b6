#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "apps/zulmap/memory_picture.h"
#include "bench/contest.h"
#include "platform/gdi.h"

namespace zulbench {
namespace {

constexpr std::int32_t kWidth = 800;
constexpr std::int32_t kHeight = 600;
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
    ClipBench(std::size_t count, std::int32_t reach)
        : clipped(kWidth, kHeight), whole(kWidth, kHeight), triangles(count) {
        std::mt19937 random(4);
        std::uniform_int_distribution<std::int32_t> x(0, kWidth), y(0, kHeight), offset(-reach, reach);
        std::uniform_int_distribution<std::int32_t> color(0, 0xFFFFFF);
        for (Triangle& triangle : triangles) {
            const zul::TLongPoint at{x(random), y(random)};
            for (zul::TLongPoint& corner : triangle.corners)
                corner = {at.X + offset(random), at.Y + offset(random)};
            triangle.color = color(random);
        }
        for (zulmap::MemoryPicture* picture : {&clipped, &whole}) {
            zul::CCanvas& canvas = picture->GetCanvas();
            canvas.GetPen().SetType(zul::CPen::PenNone);
            PatBlt(canvas.GetHandle(), 0, 0, kWidth, kHeight, WHITENESS);
        }
        ClipToCells(clipped.GetCanvas().GetHandle());
    }

    void Draw(zulmap::MemoryPicture& picture) const {
        zul::CCanvas& canvas = picture.GetCanvas();
        for (const Triangle& triangle : triangles) {
            canvas.GetBrush().SetColor(triangle.color);
            canvas.Polygon(triangle.corners.data(), 3);
        }
    }

    /// Through the clip the same must show, and nothing beside it.
    double Difference() const {
        std::int64_t wrong = 0;
        for (std::int32_t y = 0; y < kHeight; ++y) {
            for (std::int32_t x = 0; x < kWidth; ++x) {
                const std::ptrdiff_t at = std::ptrdiff_t{y} * kWidth + x;
                const std::uint32_t wanted = IsShown(x, y) ? whole.GetView().pixels[at] : kPaper;
                if ((clipped.GetView().pixels[at] & 0xFFFFFF) != (wanted & 0xFFFFFF)) ++wrong;
            }
        }
        return static_cast<double>(wrong) / (std::int64_t{kWidth} * kHeight);
    }

    struct Triangle {
        std::array<zul::TLongPoint, 3> corners;
        std::int32_t color;
    };
    zulmap::MemoryPicture clipped, whole;
    std::vector<Triangle> triangles;
};

Contest ContestOf(const std::string& name, std::size_t count, std::int32_t reach) {
    const auto bench = std::make_shared<ClipBench>(count, reach);
    return {name, [bench] { bench->Draw(bench->clipped); }, [bench] { bench->Draw(bench->whole); },
            [bench] { return bench->Difference(); }, 0.0};
}

}  // namespace

std::vector<Contest> ClipContests() {
    return {
        ContestOf("10,000 triangles, 10,000 clip boxes", 10'000, 40),
        ContestOf("500 large triangles, as many boxes", 500, 400),
    };
}

}  // namespace zulbench
