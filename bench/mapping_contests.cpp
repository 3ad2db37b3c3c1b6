#include <cstddef>
#include <cstring>
#include <memory>
#include <random>

#include "bench/contest.h"
#include "zul/geometry/coordinates.h"
#include "zul/scaler/projective_scaler.h"
#include "zul/scaler/scaler.h"

namespace zulbench {
namespace {

constexpr std::int32_t kPoints = 16'000'000;

struct MappingBench {
    MappingBench() : map(kPoints), ours(kPoints), peer(kPoints) {
        std::mt19937 random(1);
        std::uniform_int_distribution<int> coordinate(-32768, 32767);
        for (zul::TPoint& point : map) {
            point = {static_cast<zul::TCoord>(coordinate(random)),
                     static_cast<zul::TCoord>(coordinate(random))};
        }
        for (zul::CScaler* view : {&scaler, static_cast<zul::CScaler*>(&perspective)}) {
            view->InitScaler({-32767, -16384, 32767, 16384}, {1600, 800}, {1600, 800}, 37.8, 1.0, 0.0);
        }
    }

    void MapOurs() {
        std::int32_t count = kPoints;
        scaler.MapToScreen(ours.data(), map.data(), count);
    }

    /// The rule as anybody would write it down.
    void MapPlain() {
        const double scale = scaler.GetScreenToVisible();
        zul::TLongRect view{};
        scaler.GetVisibleBox(view);
        const auto round = [](double value) {
            return static_cast<std::int32_t>(value > 0.0 ? value + 0.5 : value - 0.5);
        };
        for (std::size_t i = 0; i < map.size(); ++i) {
            peer[i] = {round((map[i].X - view.MinX) * scale), round((view.MaxY - map[i].Y) * scale)};
        }
    }

    void MapPerspective() {
        std::int32_t count = kPoints;
        perspective.MapToScreen(ours.data(), map.data(), count);
    }

    void MapPerspectivePlain() {
        for (std::size_t i = 0; i < map.size(); ++i) {
            perspective.MapToScreen(map[i].X, map[i].Y, peer[i].X, peer[i].Y);
        }
    }

    void CopyResult() { std::memcpy(peer.data(), ours.data(), ours.size() * sizeof ours[0]); }

    double Difference() const {
        std::size_t unlike = 0;
        for (std::size_t i = 0; i < map.size(); ++i) {
            unlike += ours[i] != peer[i];
        }
        return static_cast<double>(unlike) / kPoints;
    }

    zul::CScaler scaler;
    zul::CProjectiveScaler perspective;
    std::vector<zul::TPoint> map;
    std::vector<zul::TLongPoint> ours;
    std::vector<zul::TLongPoint> peer;
};

}  // namespace

std::vector<Contest> MappingContests() {
    const auto bench = std::make_shared<MappingBench>();
    const auto ours = [bench] { bench->MapOurs(); };
    const auto difference = [bench] { return bench->Difference(); };
    return {
        {"map 16M points (plain loop)", ours, [bench] { bench->MapPlain(); }, difference, 0.0},
        {"perspective 16M points (one by one)", [bench] { bench->MapPerspective(); },
         [bench] { bench->MapPerspectivePlain(); }, difference, 0.0},
        {"map 16M points (memcpy of result)", ours, [bench] { bench->CopyResult(); }, difference, 0.0},
    };
}

}  // namespace zulbench
