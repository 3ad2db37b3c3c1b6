#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <random>

#include "bench/contest.h"
#include "bench/pictures.h"
#include "zul/geometry/coordinates.h"

namespace zulbench {
namespace {

constexpr std::int32_t kWidth = 800;
constexpr std::int32_t kHeight = 600;
constexpr std::int32_t kInk = 0x603010;

/// A long line that wanders over the whole surface in short steps, as coasts and roads do.
struct PolylineBench {
    static constexpr std::size_t kPoints = 1'000'000;
    /// Cairo sorts all crossings of a stroke; in short strokes it is fastest.
    static constexpr std::size_t kStroke = 256;

    PolylineBench() : pictures(kWidth, kHeight) {
        std::mt19937 random(2);
        std::uniform_int_distribution<std::int32_t> step(-6, 6);
        zul::TLongPoint at{kWidth / 2, kHeight / 2};
        for (std::size_t i = 0; i < kPoints; ++i) {
            at.X = std::clamp(at.X + step(random), 0, kWidth - 1);
            at.Y = std::clamp(at.Y + step(random), 0, kHeight - 1);
            points.push_back(at);
        }
        pictures.ours.GetCanvas().GetPen().SetColor(kInk);
        pictures.ours.GetCanvas().GetPen().Validate(&pictures.ours.GetCanvas());
        pictures.peer.SetColor(kInk);
    }

    void DrawOurs() {
        pictures.ours.GetCanvas().Polyline(points.data(), static_cast<std::int32_t>(points.size()));
    }

    void DrawPeer() {
        cairo_t* cairo = pictures.peer.Get();
        for (std::size_t i = 0; i < points.size(); ++i) {
            cairo_line_to(cairo, points[i].X + 0.5, points[i].Y + 0.5);
            if (i % kStroke == kStroke - 1) {
                cairo_stroke(cairo);
                cairo_move_to(cairo, points[i].X + 0.5, points[i].Y + 0.5);
            }
        }
        cairo_stroke(cairo);
    }

    PicturePair pictures;
    std::vector<zul::TLongPoint> points;
};

struct TriangleBench {
    static constexpr std::size_t kTriangles = 10'000;

    TriangleBench() : pictures(kWidth, kHeight) {
        std::mt19937 random(3);
        std::uniform_int_distribution<std::int32_t> x(0, kWidth);
        std::uniform_int_distribution<std::int32_t> y(0, kHeight);
        std::uniform_int_distribution<std::int32_t> offset(-40, 40);
        std::uniform_int_distribution<std::int32_t> color(0, 0xFFFFFF);
        for (std::size_t i = 0; i < kTriangles; ++i) {
            const zul::TLongPoint at{x(random), y(random)};
            Triangle triangle{{}, color(random)};
            for (zul::TLongPoint& corner : triangle.corners) {
                corner = {at.X + offset(random), at.Y + offset(random)};
            }
            triangles.push_back(triangle);
        }
        pictures.ours.GetCanvas().GetPen().SetType(zul::CPen::PenNone);
    }

    void DrawOurs() {
        zul::CCanvas& canvas = pictures.ours.GetCanvas();
        for (const Triangle& triangle : triangles) {
            canvas.GetBrush().SetColor(triangle.color);
            canvas.Polygon(triangle.corners.data(), 3);
        }
    }

    void DrawPeer() {
        cairo_t* cairo = pictures.peer.Get();
        for (const Triangle& triangle : triangles) {
            pictures.peer.SetColor(triangle.color);
            for (const zul::TLongPoint& corner : triangle.corners) {
                cairo_line_to(cairo, corner.X, corner.Y);
            }
            cairo_fill(cairo);
        }
    }

    struct Triangle {
        std::array<zul::TLongPoint, 3> corners;
        std::int32_t color;
    };
    PicturePair pictures;
    std::vector<Triangle> triangles;
};

template <typename Bench>
Contest ContestOf(const std::string& name) {
    const auto bench = std::make_shared<Bench>();
    return {name, [bench] { bench->DrawOurs(); }, [bench] { bench->DrawPeer(); },
            [bench] { return bench->pictures.Difference(); }, 0.01};
}

}  // namespace

std::vector<Contest> FigureContests() {
    return {
        ContestOf<PolylineBench>("polyline of 1,000,000 points"),
        ContestOf<TriangleBench>("10,000 triangles"),
    };
}

}  // namespace zulbench
