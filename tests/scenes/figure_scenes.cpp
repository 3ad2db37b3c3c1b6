#include <cstdint>
#include <utility>
#include <vector>

#include "tests/scenes/kinds.h"
#include "tests/scenes/tools.h"

namespace scenes {
namespace {

constexpr TToolLot kThin{1, 1, false, true, false};
constexpr TToolLot kWide{2, 20, false, false, false};
constexpr TToolLot kDashed{1, 1, true, false, false};
constexpr TToolLot kAnything{1, 3, false, true, true};

// The system documents 27 bits for figures. It takes time for each row of a sloped figure and for each pixel
// of an ellipse's border, on the surface or not.
constexpr TFarthest kFarLines{27, 27};
constexpr TFarthest kFarAreas{27, 20};
constexpr TFarthest kFarWideLines{25, 20};
constexpr TFarthest kFarBoxes{31, 31};
constexpr TFarthest kFarEllipses{15, 15};

using TFigure = void (*)(HDC dc, CRandom& random, const CTools& tools);

/// One to three figures, each with tools of its own.
void DrawSome(CBoard& board, CRandom& random, const TToolLot& lot, TFigure figure) {
    for (int rest = random.In(1, 3); rest != 0; --rest) {
        const CTools tools(board.Get(), random, lot);
        figure(board.Get(), random, tools);
    }
}

void Lines(HDC dc, CRandom& random, const CTools& tools) {
    const std::vector<POINT> points = SomePoints(random, 2, 6, tools.IsWide() ? kFarWideLines : kFarLines);
    ::MoveToEx(dc, points[0].x, points[0].y, nullptr);
    for (const POINT& point : points)
        ::LineTo(dc, point.x, point.y);
}

void Polylines(HDC dc, CRandom& random, const CTools& tools) {
    const std::vector<POINT> points = SomePoints(random, 2, 9, tools.IsWide() ? kFarWideLines : kFarLines);
    ::Polyline(dc, points.data(), static_cast<int>(points.size()));
}

void Polygons(HDC dc, CRandom& random, const CTools& tools) {
    const std::vector<POINT> points = SomePoints(random, 2, 9, tools.IsWide() ? kFarWideLines : kFarAreas);
    ::Polygon(dc, points.data(), static_cast<int>(points.size()));
}

std::int64_t Extent(std::int64_t a, std::int64_t b) {
    return a < b ? b - a : a - b;
}

void Rectangles(HDC dc, CRandom& random, const CTools&) {
    const std::vector<POINT> corners = SomePoints(random, 2, 2, kFarBoxes);
    // Of a rectangle of one pixel the system draws nothing.
    if (Extent(corners[0].x, corners[1].x) == 1 && Extent(corners[0].y, corners[1].y) == 1) return;
    ::Rectangle(dc, corners[0].x, corners[0].y, corners[1].x, corners[1].y);
}

void Ellipses(HDC dc, CRandom& random, const CTools& tools) {
    std::vector<POINT> corners = SomePoints(random, 2, 2, kFarEllipses);
    // The system leaves fill rows of tall thin ellipses undefined: they hold what was in memory.
    const auto isTall = [&corners] {
        return Extent(corners[0].y, corners[1].y) > 2 * Extent(corners[0].x, corners[1].x);
    };
    if (tools.Fills() && isTall()) std::swap(corners[0].y, corners[1].x);
    if (tools.Fills() && isTall()) return;
    ::Ellipse(dc, corners[0].x, corners[0].y, corners[1].x, corners[1].y);
}

void AnyFigure(HDC dc, CRandom& random, const CTools& tools) {
    static constexpr TFigure figures[] = {Lines, Polylines, Polygons, Rectangles, Ellipses};
    figures[random.In(0, 4)](dc, random, tools);
}

}  // namespace

void DrawLines(CBoard& board, CRandom& random) {
    DrawSome(board, random, kThin, Lines);
}
void DrawPolylines(CBoard& board, CRandom& random) {
    DrawSome(board, random, kThin, Polylines);
}
void DrawWideLines(CBoard& board, CRandom& random) {
    DrawSome(board, random, kWide, Polylines);
}
void DrawDashes(CBoard& board, CRandom& random) {
    DrawSome(board, random, kDashed, random.OneIn(2) ? Polylines : Lines);
}
void DrawPolygons(CBoard& board, CRandom& random) {
    DrawSome(board, random, kThin, Polygons);
}
void DrawRectangles(CBoard& board, CRandom& random) {
    DrawSome(board, random, kThin, Rectangles);
}
void DrawEllipses(CBoard& board, CRandom& random) {
    DrawSome(board, random, kThin, Ellipses);
}
void DrawEveryRop(CBoard& board, CRandom& random) {
    DrawSome(board, random, kAnything, AnyFigure);
}

}  // namespace scenes
