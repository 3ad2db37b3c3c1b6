#include <algorithm>
#include <cstdlib>
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

using TFigure = void (*)(HDC dc, CRandom& random, const CTools& tools);

/// One to three figures, each with tools of its own.
void DrawSome(CBoard& board, CRandom& random, const TToolLot& lot, TFigure figure) {
    for (int rest = random.In(1, 3); rest != 0; --rest) {
        const CTools tools(board.Get(), random, lot);
        figure(board.Get(), random, tools);
    }
}

void Lines(HDC dc, CRandom& random, const CTools&) {
    const std::vector<POINT> points = SomePoints(random, 2, 6);
    ::MoveToEx(dc, points[0].x, points[0].y, nullptr);
    for (const POINT& point : points)
        ::LineTo(dc, point.x, point.y);
}

void Polylines(HDC dc, CRandom& random, const CTools&) {
    const std::vector<POINT> points = SomePoints(random, 2, 9);
    ::Polyline(dc, points.data(), static_cast<int>(points.size()));
}

void Polygons(HDC dc, CRandom& random, const CTools&) {
    const std::vector<POINT> points = SomePoints(random, 2, 9);
    ::Polygon(dc, points.data(), static_cast<int>(points.size()));
}

void Rectangles(HDC dc, CRandom& random, const CTools&) {
    const std::vector<POINT> corners = SomePoints(random, 2, 2);
    ::Rectangle(dc, corners[0].x, corners[0].y, corners[1].x, corners[1].y);
}

void Ellipses(HDC dc, CRandom& random, const CTools& tools) {
    std::vector<POINT> corners = SomePoints(random, 2, 2);
    // The system leaves fill rows of tall thin ellipses undefined: they hold what was in memory.
    if (tools.Fills()) {
        const int width = static_cast<int>(std::abs(corners[1].x - corners[0].x));
        const int height = static_cast<int>(std::abs(corners[1].y - corners[0].y));
        if (height > width * 2) std::swap(corners[0].y, corners[1].x);
        if (std::abs(corners[1].y - corners[0].y) > std::abs(corners[1].x - corners[0].x) * 2) return;
    }
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
