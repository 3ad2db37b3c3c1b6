#include "apps/zulmap/map_reader.h"

#include <cpl_error.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <memory>
#include <utility>

#include "apps/zulmap/antimeridian.h"
#include "apps/zulmap/path_cutting.h"
#include "apps/zulmap/raster_file.h"
#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

constexpr double kMetresInEquatorDegree = 111319.49079327357;
constexpr std::size_t kProgressStep = 256;

/// The library's last words on one line.
std::string LastGdalMessage() {
    std::string message = CPLGetLastErrorMsg();
    for (char& c : message) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    return message.empty() ? "no reader knows its format" : message;
}

bool IsUsable(const TDoublePoint& point) {
    return std::abs(point.X) <= kFarthestCoordinate && std::abs(point.Y) <= kFarthestCoordinate;
}

/// Turns geometries into the features of one map.
class FeatureBuilder {
public:
    explicit FeatureBuilder(MapData& map) : m_Map(map) {}

    void Add(const OGRGeometry& geometry) {
        Feature feature;
        Append(geometry, feature);
        if (feature.areas.empty() && feature.lines.empty() && feature.points.empty()) return;
        m_Map.features.push_back(std::move(feature));
    }

private:
    void Append(const OGRGeometry& geometry, Feature& feature) {
        if (OGR_GT_IsNonLinear(geometry.getGeometryType())) {
            const std::unique_ptr<OGRGeometry> linear(geometry.getLinearGeometry());
            // What stays curved although its lines were asked for has none.
            if (linear != nullptr && !OGR_GT_IsNonLinear(linear->getGeometryType())) Append(*linear, feature);
            return;
        }
        switch (wkbFlatten(geometry.getGeometryType())) {
            case wkbPoint: {
                Path points;
                AppendPoint(*geometry.toPoint(), points);
                feature.points.insert(feature.points.end(), points.begin(), points.end());
                break;
            }
            case wkbLineString:
                AppendLine(*geometry.toLineString(), feature);
                break;
            case wkbPolygon:
            case wkbTriangle:
                AppendArea(*geometry.toPolygon(), feature);
                break;
            case wkbMultiPoint:
            case wkbMultiLineString:
            case wkbMultiPolygon:
            case wkbGeometryCollection:
                for (const OGRGeometry* part : *geometry.toGeometryCollection()) {
                    Append(*part, feature);
                }
                break;
            case wkbPolyhedralSurface:
            case wkbTIN:
                for (const OGRGeometry* part : *geometry.toPolyhedralSurface()) {
                    Append(*part, feature);
                }
                break;
            default:  // the linear types above are all that hold coordinates
                break;
        }
    }

    void AppendPoint(const OGRPoint& point, Path& path) {
        const TDoublePoint place{point.getX(), point.getY()};
        if (point.IsEmpty() || !IsUsable(place)) return;
        path.push_back(place);
        m_Map.extent.Include(place);
    }

    Path ReadPath(const OGRSimpleCurve& curve) {
        Path path;
        path.reserve(static_cast<std::size_t>(curve.getNumPoints()));
        for (const OGRPoint& point : curve) {
            AppendPoint(point, path);
        }
        return path;
    }

    void AppendLine(const OGRLineString& line, Feature& feature) {
        Path path = ReadPath(line);
        if (path.size() >= 2) feature.lines.push_back(std::move(path));
    }

    void AppendArea(const OGRPolygon& polygon, Feature& feature) {
        Area area;
        for (const OGRLinearRing* ring : polygon) {
            Path path = ReadPath(*ring);
            while (path.size() > 1 && path.front().X == path.back().X && path.front().Y == path.back().Y) {
                path.pop_back();
            }
            const bool isOuter = area.rings.empty();
            // Without its outer ring a hole is a hole in nothing.
            if (path.empty() && isOuter) return;
            if (path.empty()) continue;
            Orient(path, isOuter);
            area.rings.push_back(std::move(path));
        }
        if (!area.rings.empty()) feature.areas.push_back(std::move(area));
    }

    MapData& m_Map;
};

/// The reference system that all layers are brought into: the first that any of them names.
class CommonSystem {
public:
    /// The way from \p system to the common one; null when there is nothing to do.
    std::unique_ptr<OGRCoordinateTransformation> From(const OGRSpatialReference* system,
                                                      const std::string& path) {
        if (system == nullptr) return nullptr;
        OGRSpatialReference ordered(*system);
        ordered.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
        if (!m_IsKnown) {
            m_System = ordered;
            m_IsKnown = true;
        }
        if (m_System.IsSame(&ordered)) return nullptr;
        std::unique_ptr<OGRCoordinateTransformation> way(
            OGRCreateCoordinateTransformation(&ordered, &m_System));
        if (way == nullptr) {
            throw ToolError(
                path + " cannot be brought into the reference system of the first map: " + LastGdalMessage());
        }
        return way;
    }

    void Describe(MapData& map) const {
        // Where nobody said, what fits on the globe's net is taken for degrees.
        map.isInDegrees =
            m_IsKnown ? m_System.IsGeographic() != 0 : Box{-360.0, -90.0, 360.0, 90.0}.Contains(map.extent);
        map.metresInUnit = map.isInDegrees ? kMetresInEquatorDegree
                           : m_IsKnown     ? m_System.GetLinearUnits()
                                           : 1.0;
    }

private:
    OGRSpatialReference m_System;
    bool m_IsKnown = false;
};

GDALDatasetUniquePtr Open(const std::string& path) {
    CPLErrorReset();
    GDALDatasetUniquePtr dataset(
        GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR));
    if (dataset == nullptr) {
        VSIStatBufL status;
        if (VSIStatExL(path.c_str(), &status, VSI_STAT_EXISTS_FLAG) != 0) {
            throw ToolError(path + ": no such file");
        }
        throw ToolError(path + " cannot be read as a map: " + LastGdalMessage());
    }
    return dataset;
}

void ReadVectors(const std::string& path, CommonSystem& common, MapData& map, const ReadProgress& progress) {
    FeatureBuilder builder(map);
    const GDALDatasetUniquePtr dataset = Open(path);
    std::size_t count = 0;
    for (OGRLayer* layer : dataset->GetLayers()) {
        const auto way = common.From(layer->GetSpatialRef(), path);
        CPLErrorReset();
        for (const OGRFeatureUniquePtr& feature : *layer) {
            if (count++ % kProgressStep == 0) progress(path, count);
            OGRGeometry* geometry = feature->GetGeometryRef();
            if (geometry == nullptr) continue;
            if (way != nullptr && geometry->transform(way.get()) != OGRERR_NONE) {
                throw ToolError(path + " cannot be brought into the reference system of the first map: " +
                                LastGdalMessage());
            }
            builder.Add(*geometry);
        }
        // Layers end silently where their file breaks off; only the error tells.
        if (CPLGetLastErrorType() >= CE_Failure) {
            throw ToolError(path + " cannot be read to its end: " + LastGdalMessage());
        }
    }
}

void AddRaster(MapData& map, Raster raster) {
    map.extent.Include({raster.place.minX, raster.place.minY});
    map.extent.Include({raster.place.maxX, raster.place.maxY});
    map.rasters.push_back(std::move(raster));
}

}  // namespace

MapData ReadMaps(const std::vector<std::string>& paths, const ReadProgress& progress,
                 const std::vector<RasterFile>& rasters) {
    // Failures come back as our own errors; warnings about details of a file help nobody who wants a picture.
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    GDALAllRegister();

    MapData map;
    CommonSystem common;
    for (const std::string& path : paths) {
        if (IsRasterName(path)) {
            AddRaster(map, ReadRaster(path));
        } else {
            ReadVectors(path, common, map, progress);
        }
    }
    for (const RasterFile& raster : rasters) {
        AddRaster(map, ReadRaster(raster.path, raster.place));
    }
    if (map.features.empty() && map.rasters.empty()) {
        throw ToolError((paths.size() == 1 ? paths.front() : "the given maps") +
                        (paths.size() == 1 ? " holds" : " hold") + std::string(" nothing that can be drawn"));
    }
    common.Describe(map);
    if (map.isInDegrees) CutAtAntimeridian(map);
    return map;
}

}  // namespace zulmap
