#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <random>
#include <utility>

#include "bench/contest.h"
#include "bench/painted_work.h"

namespace zulbench {
namespace {

constexpr COLORREF kInk = 0x633110;  // five bits a colour hold it
/// Everybody counts dashes in steps of their own, and Cairo's slanted thin lines are thicker: how much is
/// drawn must be near.
constexpr double kDashInk = 0.2;
constexpr std::size_t kPointsInCall = 1000;

Figure FigureOf(std::vector<zul::TLongPoint> points, COLORREF fill) {
    Figure figure;
    figure.map.Append(points.data(), static_cast<std::uint32_t>(points.size()), true);
    figure.device = std::move(points);
    figure.fill = fill;
    return figure;
}

/// Lines that wander over the whole surface in short steps, as coasts and roads do.
std::vector<Figure> ShortSteps(std::size_t lines) {
    std::mt19937 random(2);
    std::uniform_int_distribution<std::int32_t> step(-6, 6), x(0, kWidth - 1), y(0, kHeight - 1);
    std::vector<Figure> figures;
    while (figures.size() < lines) {
        zul::TLongPoint at{x(random), y(random)};
        std::vector<zul::TLongPoint> points;
        while (points.size() < kPointsInCall) {
            points.push_back(at);
            at.X = std::clamp(at.X + step(random), 0, kWidth - 1);
            at.Y = std::clamp(at.Y + step(random), 0, kHeight - 1);
        }
        figures.push_back(FigureOf(std::move(points), 0));
    }
    return figures;
}

/// Lines from anywhere to anywhere on the surface.
std::vector<Figure> LongSteps(std::size_t lines) {
    std::mt19937 random(6);
    std::uniform_int_distribution<std::int32_t> x(0, kWidth - 1), y(0, kHeight - 1);
    std::vector<Figure> figures;
    while (figures.size() < lines) {
        std::vector<zul::TLongPoint> points(kPointsInCall);
        for (zul::TLongPoint& at : points)
            at = {x(random), y(random)};
        figures.push_back(FigureOf(std::move(points), 0));
    }
    return figures;
}

/// Of about 50 pixels each way, in many colours.
std::vector<Figure> Triangles(std::size_t count) {
    std::mt19937 random(3);
    std::uniform_int_distribution<std::int32_t> x(0, kWidth), y(0, kHeight), offset(-40, 40);
    std::vector<Figure> figures;
    while (figures.size() < count) {
        const zul::TLongPoint at{x(random), y(random)};
        std::vector<zul::TLongPoint> corners(3);
        for (zul::TLongPoint& corner : corners)
            corner = {at.X + offset(random), at.Y + offset(random)};
        figures.push_back(FigureOf(std::move(corners), ColorOf(static_cast<std::uint32_t>(random()))));
    }
    return figures;
}

/// The plainest line there is: every point is known to lie on the surface, every pixel is addressed anew.
template <typename Put>
void DrawPlain(std::uint32_t* pixels, const std::vector<zul::TLongPoint>& points, Put put) {
    for (std::size_t i = 1; i < points.size(); ++i) {
        const std::int32_t dx = points[i].X - points[i - 1].X, dy = points[i].Y - points[i - 1].Y;
        const std::ptrdiff_t across = dx < 0 ? -1 : 1, down = dy < 0 ? -kWidth : kWidth;
        const bool flat = std::abs(dx) >= std::abs(dy);
        const std::int32_t longer = std::max(std::abs(dx), std::abs(dy));
        const std::int32_t shorter = std::min(std::abs(dx), std::abs(dy));
        const std::ptrdiff_t along = flat ? across : down, aside = flat ? down : across;
        std::uint32_t* pixel = pixels + std::ptrdiff_t{points[i - 1].Y} * kWidth + points[i - 1].X;
        std::int32_t error = longer / 2;
        for (std::int32_t n = longer; n > 0; --n) {
            put(*pixel);
            pixel += along;
            error -= shorter;
            const std::int32_t steps = error >> 31;  // all ones when it is time to step aside
            pixel += aside & steps;
            error += longer & steps;
        }
    }
}

/// What a line takes that is only put down.
Way PlainLines(const std::shared_ptr<Work>& work) {
    const auto pixels = std::make_shared<std::vector<std::uint32_t>>(std::size_t{kWidth} * kHeight);
    const auto run = [work, pixels] {
        for (const Figure& figure : work->figures) {
            if (work->line.inverting) {
                DrawPlain(pixels->data(), figure.device, [](std::uint32_t& pixel) { pixel ^= 0xFFFFFFu; });
            } else {
                DrawPlain(pixels->data(), figure.device, [](std::uint32_t& pixel) { pixel = kInk; });
            }
        }
    };
    return {Side::Limit, "", run};
}

struct LineRow {
    const char* name;
    Line line;
    bool shortSteps;
    double goal;
    bool limited;  ///< whether a plain line does the same work
};

Contest LineContest(const LineRow& row) {
    const auto work = std::make_shared<Work>();
    work->figures = row.shortSteps ? ShortSteps(100) : LongSteps(10);
    work->line = row.line;
    work->color = kInk;
    // As much as can be told apart.
    work->sample = row.shortSteps ? 4 : 1;
    std::vector<Way> ways =
        row.line.dashed ? PaintedWays(work, InkDifference, kDashInk) : PaintedWays(work, Strays, 0.01);
    if (row.limited) ways.push_back(PlainLines(work));
    const auto segments = static_cast<double>(work->figures.size() * (kPointsInCall - 1));
    return {row.name, "segment", segments, row.goal, std::move(ways)};
}

Contest TriangleContest() {
    const auto work = std::make_shared<Work>();
    work->figures = Triangles(10'000);
    work->shape = Shape::Triangle;
    work->line.width = 0;
    std::vector<Way> ways = PaintedWays(work, Strays, 0.01);
    const auto runs = std::make_shared<PixelRuns>(*work);
    const auto pixels = std::make_shared<std::vector<std::uint32_t>>(std::size_t{kWidth} * kHeight);
    ways.push_back({Side::Limit, "", [runs, pixels] { runs->PutDown(pixels->data()); }});
    return {"10,000 triangles of about 50 pixels", "triangle", 10'000, 800.0 / 1556.0, std::move(ways)};
}

}  // namespace

std::vector<Contest> FigureContests() {
    static const LineRow kRows[] = {
        {"1-pixel polyline, short steps, 1000 points a call", {}, true, 22.0 / 43.0, true},
        {"1-pixel polyline, short steps, exclusive-or", {1, false, true}, true, 24.0 / 83.0, true},
        {"long random lines", {}, false, 510.0 / 522.0, true},
        {"5-pixel polyline, short steps", {5}, true, 400.0 / 555.0, false},
        {"dashed polyline, short steps", {1, true}, true, 60.0 / 80.0, false},
    };
    std::vector<Contest> contests;
    for (const LineRow& row : kRows)
        contests.push_back(LineContest(row));
    contests.push_back(TriangleContest());
    return contests;
}

}  // namespace zulbench
