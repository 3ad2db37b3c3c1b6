#include "apps/zulmap/world/stored_path.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "apps/zulmap/world/stored_values.h"
#include "zul/geometry/points.h"

namespace zulmap {
namespace {

enum Form : std::uint8_t { kDoubles = 0, kSheets = 1 };

struct Place {
    std::int32_t x;
    std::int32_t y;
};

bool IsWithinSheet(const Place& origin, const Place& place) {
    const auto isNear = [](std::int64_t from, std::int64_t to) {
        return std::abs(to - from) <= zul::MaxCoord;
    };
    return isNear(origin.x, place.x) && isNear(origin.y, place.y);
}

/// Empty when a point is not on the grid.
std::vector<Place> PlacesOf(const Path& path, const PointGrid& grid) {
    std::vector<Place> places;
    places.reserve(path.size());
    for (const TDoublePoint& point : path) {
        const auto x = grid.x.Find(point.X);
        const auto y = grid.y.Find(point.Y);
        if (!x || !y) return {};
        places.push_back({*x, *y});
    }
    return places;
}

bool WriteSheets(zul::CStream& stream, const std::vector<Place>& places) {
    std::vector<zul::TPoint> points;
    auto next = places.begin();
    while (next != places.end()) {
        const Place origin = *next;
        const auto end = std::find_if_not(
            next, places.end(), [&origin](const Place& place) { return IsWithinSheet(origin, place); });
        points.clear();
        for (; next != end; ++next) {
            points.push_back(
                {static_cast<zul::TCoord>(next->x - origin.x), static_cast<zul::TCoord>(next->y - origin.y)});
        }
        zul::CPoints list(true);
        list.SetPoints(points.data(), static_cast<std::uint32_t>(points.size()));
        if (!WriteValues(stream, origin.x, origin.y) || !list.ObjectToBuffer(&stream)) return false;
    }
    return true;
}

bool ReadSheet(zul::CStream& stream, Path& path, const PointGrid& grid) {
    Place origin{};
    if (!ReadValues(stream, origin.x, origin.y)) return false;
    zul::CPoints list(true);
    if (!list.ObjectFromBuffer(&stream) || list.GetCount() == 0) return false;
    for (std::uint32_t i = 0; i < list.GetCount(); ++i) {
        const zul::TPoint& point = list.GetPoints()[i];
        path.push_back(
            {grid.x.At(std::int64_t{origin.x} + point.X), grid.y.At(std::int64_t{origin.y} + point.Y)});
    }
    return true;
}

}  // namespace

bool WritePath(zul::CStream& stream, const Path& path, const PointGrid& grid) {
    const auto count = static_cast<std::uint32_t>(path.size());
    const std::vector<Place> places = PlacesOf(path, grid);
    if (!WriteValues(stream, places.empty() ? kDoubles : kSheets, count)) return false;
    if (!places.empty()) return WriteSheets(stream, places);
    return stream.Write(path.data(), static_cast<std::uint32_t>(path.size() * sizeof(TDoublePoint)));
}

bool ReadPath(zul::CStream& stream, Path& path, const PointGrid& grid) {
    std::uint8_t form = 0;
    std::uint32_t count = 0;
    if (!ReadValues(stream, form, count)) return false;
    path.clear();
    if (form == kDoubles) {
        if (count > stream.GetRemaining() / sizeof(TDoublePoint)) return false;
        path.resize(count);
        if (!stream.Read(path.data(), static_cast<std::uint32_t>(count * sizeof(TDoublePoint)))) return false;
    } else if (form == kSheets) {
        // Even a sheet of a single point takes more than that.
        if (count > stream.GetRemaining() / sizeof(zul::TPoint)) return false;
        path.reserve(count);
        while (path.size() < count) {
            if (!ReadSheet(stream, path, grid)) return false;
        }
        if (path.size() != count) return false;
    } else {
        return false;
    }
    return std::all_of(path.begin(), path.end(), [](const TDoublePoint& point) {
        return std::abs(point.X) <= kFarthestCoordinate && std::abs(point.Y) <= kFarthestCoordinate;
    });
}

}  // namespace zulmap
