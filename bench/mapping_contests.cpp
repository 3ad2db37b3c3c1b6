#include <cstddef>
#include <memory>
#include <random>

#include "bench/contest.h"
#include "bench/plain_mapping.h"
#include "bench/surface.h"
#include "zul/geometry/coordinates.h"
#include "zul/scaler/projective_scaler.h"
#include "zul/scaler/scaler.h"

namespace zulbench {
namespace {

constexpr std::int32_t kPoints = 16'000'000;
constexpr std::int32_t kReachX = 32767, kReachY = 24575;  // the picture's shape

struct MappingBench {
    MappingBench() : map(kPoints), ours(kPoints), peer(kPoints) {
        std::mt19937 random(1);
        std::uniform_int_distribution<int> x(-kReachX, kReachX), y(-kReachY, kReachY);
        for (zul::TPoint& point : map)
            point = {static_cast<zul::TCoord>(x(random)), static_cast<zul::TCoord>(y(random))};
        for (zul::CScaler* view : {&scaler, static_cast<zul::CScaler*>(&perspective)}) {
            const zul::TSize size{kWidth, kHeight};
            view->InitScaler({-kReachX, -kReachY, kReachX, kReachY}, size, size, 37.8, 1.0, 0.0);
        }
    }

    void MapOurs() {
        std::int32_t count = kPoints;
        scaler.MapToScreen(ours.data(), map.data(), count);
    }

    void MapPlain() {
        const PlainMapping plain(scaler);
        for (std::size_t i = 0; i < map.size(); ++i)
            peer[i] = plain(map[i]);
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

    /// What has to be read and written, and no more.
    void Widen() {
        for (std::size_t i = 0; i < map.size(); ++i)
            peer[i] = {map[i].X, map[i].Y};
    }

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
    const auto difference = [bench] { return bench->Difference(); };
    return {
        {"map 16-bit points to screen (16 M points)",
         "point",
         kPoints,
         0.8 / 1.8,
         {{Side::Classes, "", [bench] { bench->MapOurs(); }},
          {Side::Limit, "", [bench] { bench->Widen(); }},
          {Side::Peer, "plain loop", [bench] { bench->MapPlain(); }, difference}}},
        {"16 M points in perspective",
         "point",
         kPoints,
         0.0,
         {{Side::Classes, "", [bench] { bench->MapPerspective(); }},
          {Side::Peer, "one by one", [bench] { bench->MapPerspectivePlain(); }, difference}}},
    };
}

}  // namespace zulbench
