#include "apps/zulmap/map_reader.h"

#include <cpl_error.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <utility>

#include "apps/zulmap/antimeridian.h"
#include "apps/zulmap/map_scheme.h"
#include "apps/zulmap/path_cutting.h"
#include "apps/zulmap/raster_file.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/whole_file.h"

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

    /// To the last of the map's layers. \p feature has a name and values, if any.
    void Add(const OGRGeometry& geometry, Feature feature) {
        feature.layer = static_cast<std::uint32_t>(m_Map.layers.size() - 1);
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

/// Reads of features what the user wants to know about them.
class FieldReader {
public:
    explicit FieldReader(const FieldRequest& request) : m_Request(request) {}

    /// \returns what is known of the layer.
    MapLayer Enter(OGRLayer& layer) {
        const OGRFeatureDefn& definition = *layer.GetLayerDefn();
        MapLayer described;
        described.name = layer.GetName();
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            described.fields.emplace_back(definition.GetFieldDefn(i)->GetNameRef());
        }
        m_Index = m_Request.name ? FindField(described, *m_Request.name) : -1;
        m_IsKnown = m_IsKnown || m_Index >= 0;
        return described;
    }
    Feature Read(const OGRFeature& source) const {
        Feature feature;
        if (m_Index >= 0) feature.name = TidyName(ValueOf(source, m_Index));
        if (!m_Request.withValues) return feature;
        for (int i = 0; i < source.GetFieldCount(); ++i) {
            feature.values.emplace_back(ValueOf(source, i));
        }
        return feature;
    }
    /// \throws ToolError when no layer had the field
    void CheckKnown(const MapFacts& map) const {
        if (m_Request.name && !m_IsKnown) throw UnknownField(map, *m_Request.name);
    }

private:
    static const char* ValueOf(const OGRFeature& feature, int field) {
        return feature.IsFieldSetAndNotNull(field) ? feature.GetFieldAsString(field) : "";
    }

    const FieldRequest& m_Request;
    int m_Index = -1;  ///< in the present layer
    bool m_IsKnown = false;
};

/// What GDAL is to open for a map. JSON is read for it: its own reader takes a read that failed for the end
/// of the file and keeps silent about all that is missing then. Such maps have no files beside them.
class MapFile {
public:
    explicit MapFile(const std::string& path) : m_Name(path) {
        const std::filesystem::path file(path);
        const std::string ending = file.extension().string();
        std::error_code ignored;
        const bool isJson = ending == ".geojson" || ending == ".topojson" || ending == ".json";
        if (!isJson || !std::filesystem::is_regular_file(file, ignored)) return;
        m_Bytes = ReadFile(path);
        m_Name = "/vsimem/zulmap/" + file.filename().string();
        VSILFILE* const made = VSIFileFromMemBuffer(m_Name.c_str(), reinterpret_cast<GByte*>(m_Bytes.data()),
                                                    m_Bytes.size(), FALSE);
        if (made == nullptr) throw ToolError("there is no memory for " + path);
        m_IsInMemory = true;
        VSIFCloseL(made);
    }
    ~MapFile() {
        if (m_IsInMemory) VSIUnlink(m_Name.c_str());
    }
    MapFile(const MapFile&) = delete;
    MapFile& operator=(const MapFile&) = delete;

    const std::string& GetName() const { return m_Name; }

private:
    std::string m_Name;
    std::string m_Bytes;
    bool m_IsInMemory = false;
};

GDALDatasetUniquePtr Open(const std::string& path, const MapFile& file) {
    CPLErrorReset();
    GDALDatasetUniquePtr dataset(
        GDALDataset::Open(file.GetName().c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR));
    if (dataset == nullptr) {
        VSIStatBufL status;
        if (VSIStatExL(path.c_str(), &status, VSI_STAT_EXISTS_FLAG) != 0) {
            throw ToolError(path + ": no such file");
        }
        throw ToolError(path + " cannot be read as a map: " + LastGdalMessage());
    }
    return dataset;
}

void ReadVectors(const std::string& path, CommonSystem& common, FieldReader& fields, MapData& map,
                 const ReadProgress& progress) {
    FeatureBuilder builder(map);
    const MapFile file(path);
    const GDALDatasetUniquePtr dataset = Open(path, file);
    std::size_t count = 0;
    for (OGRLayer* layer : dataset->GetLayers()) {
        const auto way = common.From(layer->GetSpatialRef(), path);
        CPLErrorReset();
        map.layers.push_back(fields.Enter(*layer));
        for (const OGRFeatureUniquePtr& feature : *layer) {
            if (count++ % kProgressStep == 0) progress(path, count);
            OGRGeometry* geometry = feature->GetGeometryRef();
            if (geometry == nullptr) continue;
            if (way != nullptr && geometry->transform(way.get()) != OGRERR_NONE) {
                throw ToolError(path + " cannot be brought into the reference system of the first map: " +
                                LastGdalMessage());
            }
            builder.Add(*geometry, fields.Read(*feature));
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

zul::CString TidyName(const char* text) {
    const zul::CString raw(text);
    std::u16string tidy;
    for (const char16_t* c = raw.GetBuffer(); *c != 0; ++c) {
        const bool isBlank = *c <= u' ' || (*c >= 0x7F && *c <= 0xA0);
        if (isBlank && (tidy.empty() || tidy.back() == u' ')) continue;
        tidy += isBlank ? u' ' : *c;
    }
    if (!tidy.empty() && tidy.back() == u' ') tidy.pop_back();
    return tidy.size() > kLongestName ? zul::CString() : zul::CString(tidy.c_str());
}

void AddRasters(MapData& map, const std::vector<RasterFile>& rasters) {
    for (const RasterFile& raster : rasters) {
        AddRaster(map, ReadRaster(raster.path, raster.place));
    }
}

int FindField(const MapLayer& layer, const std::string& name) {
    const auto isName = [&name](const std::string& field) { return EQUAL(field.c_str(), name.c_str()); };
    const auto found = std::find_if(layer.fields.begin(), layer.fields.end(), isName);
    return found == layer.fields.end() ? -1 : static_cast<int>(found - layer.fields.begin());
}

ToolError UnknownField(const MapFacts& map, const std::string& field) {
    std::vector<std::string> known;
    for (const MapLayer& layer : map.layers) {
        for (const std::string& name : layer.fields) {
            if (std::find(known.begin(), known.end(), name) == known.end()) known.push_back(name);
        }
    }
    std::string list;
    for (const std::string& name : known) {
        list += (list.empty() ? "; known are " : ", ") + name;
    }
    return ToolError("labels: the maps have no field '" + field + "'" +
                     (list.empty() ? " and no other" : list));
}

MapData ReadMaps(const std::vector<std::string>& paths, const ReadProgress& progress,
                 const std::vector<RasterFile>& rasters, const FieldRequest& request) {
    // Failures come back as our own errors; warnings about details of a file help nobody who wants a picture.
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    GDALAllRegister();

    MapData map;
    CommonSystem common;
    FieldReader fields(request);
    for (const std::string& path : paths) {
        if (IsRasterName(path)) {
            AddRaster(map, ReadRaster(path));
        } else {
            ReadVectors(path, common, fields, map, progress);
        }
    }
    AddRasters(map, rasters);
    if (map.features.empty() && map.rasters.empty()) {
        throw ToolError((paths.size() == 1 ? paths.front() : "the given maps") +
                        (paths.size() == 1 ? " holds" : " hold") + std::string(" nothing that can be drawn"));
    }
    fields.CheckKnown(map);
    map.hasNames = request.name.has_value();
    common.Describe(map);
    if (map.isInDegrees) CutAtAntimeridian(map);
    map.scheme = MakeScheme(map);
    return map;
}

}  // namespace zulmap
