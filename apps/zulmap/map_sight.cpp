#include "apps/zulmap/map_sight.h"

#include <algorithm>

#include "apps/zulmap/made_object.h"
#include "apps/zulmap/tool_error.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_scaler.h"

namespace zulmap {
namespace {

/// Part of the near box by which more than the trapezoid is held, on every side.
constexpr double kMargin = 1.0 / 8.0;

/// A box of the picture's shape, in the map's coordinates.
struct NearBox {
    TDoublePoint center;
    double width;
    double height;
};

TDoublePoint MiddleOf(const Box& box) {
    return {box.minX + box.Width() / 2.0, box.minY + box.Height() / 2.0};
}

Box BoxAbout(const TDoublePoint& center, double width, double height) {
    return {center.X - width / 2.0, center.Y - height / 2.0, center.X + width / 2.0, center.Y + height / 2.0};
}

/// The map's units in one pixel at a scale.
double PixelAt(double scale, double pixelsPerSm, double metresInUnit) {
    return scale / pixelsPerSm / metresInUnit;
}

/// The box that the flat view is to show; none for the whole map.
std::optional<Box> FlatBox(const MapFacts& map, const SightRequest& request, zul::TSize size) {
    if (request.box || !(request.center || request.scale)) return request.box;
    const Box whole = WholeOf(map);
    const TDoublePoint center = request.center.value_or(MiddleOf(whole));
    if (!request.scale) return BoxAbout(center, whole.Width(), whole.Height());
    const double pixel = PixelAt(*request.scale, request.pixelsPerSm, map.metresInUnit);
    return BoxAbout(center, size.Width * pixel, size.Height * pixel);
}

TDoublePoint TurnedClockwise(const TDoublePoint& point, double degrees) {
    const double radians = zul::CAngle::DegreeToRadian(-degrees);
    return {point.X * zul::Cosine(radians) - point.Y * zul::Sine(radians),
            point.X * zul::Sine(radians) + point.Y * zul::Cosine(radians)};
}

NearBox FindNearBox(const MapFacts& map, const SightRequest& request, zul::TSize size, double depthFactor) {
    const double shape = static_cast<double>(size.Width) / size.Height;
    if (request.box) {
        const double width = std::max(request.box->Width(), request.box->Height() * shape);
        return {MiddleOf(*request.box), width, width / shape};
    }
    const double height = request.scale
                              ? size.Height * PixelAt(*request.scale, request.pixelsPerSm, map.metresInUnit)
                              : *request.depth / map.metresInUnit / depthFactor;
    const TDoublePoint eye = request.center.value_or(MiddleOf(WholeOf(map)));
    const TDoublePoint ahead = TurnedClockwise({0.0, height / 2.0}, request.degrees);
    return {{eye.X + ahead.X, eye.Y + ahead.Y}, height * shape, height};
}

/// The box around the trapezoid that is seen.
Box BoxInSight(const NearBox& box, double degrees, const zul::CProjectiveScaler& scaler, double depthFactor) {
    const double nearX = box.width / 2.0;
    const double farX = nearX + box.width * scaler.GetSideFactor();
    const double nearY = -box.height / 2.0;
    const double farY = box.height / 2.0 + box.height * depthFactor;
    Box sight;
    for (const TDoublePoint& corner :
         {TDoublePoint{-nearX, nearY}, {-farX, farY}, {farX, farY}, {nearX, nearY}}) {
        const TDoublePoint turned = TurnedClockwise(corner, degrees);
        sight.Include({box.center.X + turned.X, box.center.Y + turned.Y});
    }
    return sight;
}

Sight MakeFlatSight(const MapFacts& map, const SightRequest& request, zul::TSize size) {
    Sight sight{MapSpace(WholeOf(map), FlatBox(map, request, size), size.Width, size.Height, request.degrees),
                MakeObject<zul::CScaler>()};
    sight.scaler->InitScaler(sight.space.GetVisibleBox(), size, size, request.pixelsPerSm,
                             sight.space.GetUnit() * map.metresInUnit, 0.0);
    return sight;
}

Sight MakePerspectiveSight(const MapFacts& map, const SightRequest& request, zul::TSize size) {
    auto scaler = MakeObject<zul::CProjectiveScaler>();
    double depthFactor = scaler->GetDepthFactor();
    const NearBox box = FindNearBox(map, request, size, depthFactor);
    const bool isSizeGiven = request.box || request.scale;
    if (isSizeGiven) {
        depthFactor =
            std::clamp(*request.depth / map.metresInUnit / box.height,
                       zul::CProjectiveScaler::LeastDepthFactor, zul::CProjectiveScaler::GreatestDepthFactor);
    }
    const Box seen = BoxInSight(box, request.degrees, *scaler, depthFactor);
    const double half =
        std::max(seen.Width(), seen.Height()) / 2.0 + std::max(box.width, box.height) * kMargin;
    const double unit = half / zul::MaxCoord;
    if (!std::isnormal(unit)) throw ToolError("the part of the map to show is too large or too small");
    const TDoublePoint middle = MiddleOf(seen);
    MapSpace space = MapSpace::Around(middle, unit);

    const double x = (box.center.X - middle.X) / unit;
    const double y = (box.center.Y - middle.Y) / unit;
    const double halfWidth = std::max(0.5, box.width / 2.0 / unit);
    const double halfHeight = std::max(0.5, box.height / 2.0 / unit);
    const double metresInUnit = unit * map.metresInUnit;
    scaler->InitScaler({zul::RoundToLong(x - halfWidth), zul::RoundToLong(y - halfHeight),
                        zul::RoundToLong(x + halfWidth), zul::RoundToLong(y + halfHeight)},
                       size, size, request.pixelsPerSm, metresInUnit, 0.0);
    scaler->SetHorizonFraction(kSky);
    if (isSizeGiven) scaler->SetSlopeDepth(zul::RoundToLong(depthFactor * 2.0 * halfHeight * metresInUnit));
    return {space, std::move(scaler)};
}

}  // namespace

Sight MakeSight(const MapFacts& map, const SightRequest& request, zul::TSize size) {
    Sight sight =
        request.depth ? MakePerspectiveSight(map, request, size) : MakeFlatSight(map, request, size);
    if (request.degrees != 0.0) sight.scaler->SetRotationAngle(request.degrees);
    return sight;
}

}  // namespace zulmap
