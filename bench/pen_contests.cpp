#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>

#include "bench/contest.h"
#include "bench/surface.h"
#include "zul/canvas/canvas.h"

namespace zulbench {
namespace {

constexpr std::int32_t kPaper = 0xFFFFFF;
constexpr std::int32_t kPenWidth = 2;
constexpr std::int32_t kDashLength = 8;
/// No mark of this width reaches further from its line.
constexpr std::int32_t kReach = 8;

/// A road of many bends all over the surface, and how many pixels it takes.
struct Road {
    static constexpr std::size_t kPoints = 100'000;

    Road() {
        std::mt19937 random(43);
        std::uniform_int_distribution<std::int32_t> step(-6, 6);
        zul::TLongPoint at{kWidth / 2, kHeight / 2};
        while (points.size() < kPoints) {
            const zul::TLongPoint next{std::clamp(at.X + step(random), 0, kWidth - 1),
                                       std::clamp(at.Y + step(random), 0, kHeight - 1)};
            pixels += std::max(std::abs(next.X - at.X), std::abs(next.Y - at.Y));
            points.push_back(at = next);
        }
    }

    std::vector<zul::TLongPoint> points;
    double pixels = 0;
};

/// A picture with one pen.
struct PenPicture {
    PenPicture(zul::CPen::TPenType type, std::int32_t style) {
        zul::CCanvas& canvas = picture.GetCanvas();
        canvas.GetBrush().SetColor(kPaper);
        canvas.FillRect(0, 0, kWidth, kHeight, nullptr);
        canvas.GetPen().Create(type, style, kPenWidth, 0x603010, 0, kDashLength, 0x40A0E0);
        canvas.GetPen().Validate(&canvas);
    }
    void Draw(const Road& road) {
        picture.GetCanvas().Polyline(road.points.data(), static_cast<std::int32_t>(road.points.size()));
    }
    bool IsDrawn(std::int32_t x, std::int32_t y) { return picture.GetCanvas().GetPixel(x, y) != kPaper; }

    Surface picture;
};

struct PenBench {
    PenBench(std::shared_ptr<const Road> aRoad, std::int32_t style)
        : road(std::move(aRoad)), ours(zul::CPen::PenExtended, style), plain(zul::CPen::PenSolid, 0) {}

    /// The share of the style's pixels that are not near the plain line; all when there are none.
    double Difference() {
        double drawn = 0, astray = 0;
        for (std::int32_t y = 0; y < kHeight; ++y) {
            for (std::int32_t x = 0; x < kWidth; ++x) {
                if (!ours.IsDrawn(x, y)) continue;
                ++drawn;
                astray += !IsNearPlain(x, y);
            }
        }
        return drawn == 0 ? 1 : astray / drawn;
    }
    bool IsNearPlain(std::int32_t x, std::int32_t y) {
        if (plain.IsDrawn(x, y)) return true;
        for (std::int32_t dy = -kReach; dy <= kReach; ++dy) {
            for (std::int32_t dx = -kReach; dx <= kReach; ++dx) {
                const std::int32_t nearX = x + dx, nearY = y + dy;
                if (nearX < 0 || nearY < 0 || nearX >= kWidth || nearY >= kHeight) continue;
                if (plain.IsDrawn(nearX, nearY)) return true;
            }
        }
        return false;
    }

    std::shared_ptr<const Road> road;
    PenPicture ours, plain;
};

}  // namespace

std::vector<Contest> PenContests() {
    const auto road = std::make_shared<const Road>();
    std::vector<Contest> contests;
    // Dashes, ticks, both together, two colours, two widths, casings, arrows, ticks on both sides.
    for (const std::int32_t style : {0, 8, 10, 14, 19, 20, 24, 29, 31, 37}) {
        const auto bench = std::make_shared<PenBench>(road, style);
        contests.push_back({"pen style " + std::to_string(style) + ", 100,000 points",
                            "pixel",
                            road->pixels,
                            0.0,
                            {{Side::Classes, "", [bench] { bench->ours.Draw(*bench->road); }},
                             {Side::Peer, "plain pen", [bench] { bench->plain.Draw(*bench->road); },
                              [bench] { return bench->Difference(); }}}});
    }
    return contests;
}

}  // namespace zulbench
