#include "apps/zulmap/world/stored_map.h"

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <tuple>

#include "apps/zulmap/raster_file.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/world/stored_path.h"

namespace zulmap {
namespace {

zul::TWorldBox WorldBoxOf(const Box& box) {
    return {box.minX, box.minY, box.maxX, box.maxY};
}

std::vector<Path> ReadPaths(PartRecord& part, const PointGrid& grid) {
    std::vector<Path> paths;
    part.paths.SetPosition(0);
    while (part.paths.GetRemaining() > 0) {
        if (!ReadPath(part.paths, paths.emplace_back(), grid) || paths.back().empty()) return {};
    }
    return paths;
}

}  // namespace

void StoreErrors::OnError(const zul::TErrorReport& report) {
    throw ToolError(m_Path + ": " + zul::CString(report.Text).GetBufferAnsi());
}

bool IsStoreName(const std::string& path) {
    return std::filesystem::path(path).extension() == ".zul";
}

void CheckVersion(const MapRecord& map, const std::string& path) {
    if (map.version == kMapVersion) return;
    throw ToolError(path + " holds a map of version " + std::to_string(map.version) +
                    ", of which this program knows nothing");
}

zul::CRef<MapRecord> OpenStoredMap(zul::CStore& store, const std::string& path, zul::CStore::TMode mode) {
    const StoreErrors errors(path);
    RegisterRecords();
    if (!store.Open(zul::CString(path.c_str()).GetBuffer(), mode))
        throw ToolError(path + " cannot be opened");
    zul::CRef<MapRecord> map = store.GetRoot<MapRecord>(kMapRoot);
    if (!map.IsExist()) throw ToolError(path + " holds no map");
    CheckVersion(*map, path);
    if (!map->IsSound()) throw ToolError(path + " is damaged: its map cannot be read");
    for (const zul::CRef<LayerRecord>& layer : map->layers) {
        if (!layer.IsExist() || !layer->IsSound())
            throw ToolError(path + " is damaged: a layer cannot be read");
    }
    return map;
}

StoredMap::StoredMap(const std::string& path, const std::optional<std::string>& nameField,
                     const std::vector<RasterFile>& rasters)
    : m_Path(path) {
    const zul::CRef<MapRecord> map = OpenStoredMap(m_Store, path, zul::CStore::ReadOnly);
    const StoreErrors errors(path);
    m_Facts.extent = map->extent;
    m_Facts.isInDegrees = map->isInDegrees;
    m_Facts.metresInUnit = map->metresInUnit;
    m_Facts.hasNames = nameField.has_value();
    for (const zul::CRef<LayerRecord>& layer : map->layers) {
        m_Facts.layers.push_back(layer->GetLayer());
        m_Grids.push_back(layer->grid);
        m_NameFields.push_back(nameField ? FindField(m_Facts.layers.back(), *nameField) : -1);
    }
    const auto isKnown = [](int field) { return field >= 0; };
    if (nameField && std::none_of(m_NameFields.begin(), m_NameFields.end(), isKnown)) {
        throw UnknownField(m_Facts, *nameField);
    }
    zulmap::AddRasters(m_Facts, rasters);
    if (m_Facts.extent.IsEmpty()) throw ToolError(path + " holds nothing that can be drawn");
}

void StoredMap::FailAsDamaged() const {
    throw ToolError(m_Path + " is damaged: a part of its map cannot be read");
}

std::shared_ptr<const MapData> StoredMap::Read(const Box& held) {
    const StoreErrors errors(m_Path);
    const zul::CStoreReading oneState(m_Store);
    auto map = std::make_shared<MapData>();
    static_cast<MapFacts&>(*map) = m_Facts;
    AddParts(held, *map);
    AddRasters(held, *map);
    map->rasters.insert(map->rasters.end(), m_Facts.rasters.begin(), m_Facts.rasters.end());
    return map;
}

std::vector<std::uint64_t> StoredMap::CountPoints(const Box& held) {
    const StoreErrors errors(m_Path);
    std::vector<std::uint64_t> points(m_Facts.layers.size());
    for (zul::CRef<PartRecord>& part : LoadParts(held)) {
        const std::vector<Path> paths = ReadPaths(*part, m_Grids[part->layer]);
        if (paths.empty()) FailAsDamaged();
        for (const Path& path : paths) {
            points[part->layer] += path.size();
        }
    }
    MapData pictures;
    AddRasters(held, pictures);
    return points;
}

std::vector<zul::CRef<PartRecord>> StoredMap::LoadParts(const Box& held) {
    std::vector<zul::CRef<PartRecord>> parts;
    if (m_Facts.layers.empty()) return parts;
    const auto lastLayer = static_cast<std::uint32_t>(m_Facts.layers.size() - 1);
    for (const zul::CObjectID id : m_Store.FindInBox(WorldBoxOf(held), 0, lastLayer)) {
        parts.push_back(m_Store.Load<PartRecord>(id));
        const zul::CRef<PartRecord>& part = parts.back();
        if (!part.IsExist() || !part->IsSound() || part->layer > lastLayer) FailAsDamaged();
    }
    return parts;
}

void StoredMap::AddParts(const Box& held, MapData& map) {
    std::vector<zul::CRef<PartRecord>> parts = LoadParts(held);
    // As the source had them: the order of what is drawn is part of the picture.
    const auto place = [](const zul::CRef<PartRecord>& part) {
        return std::make_tuple(part->layer, part->feature, part->number);
    };
    std::stable_sort(parts.begin(), parts.end(),
                     [&place](const auto& a, const auto& b) { return place(a) < place(b); });

    std::vector<std::pair<std::uint32_t, std::size_t>> ranks;  // and colours
    const PartRecord* former = nullptr;
    for (zul::CRef<PartRecord>& part : parts) {
        if (former == nullptr || part->feature != former->feature) {
            map.features.emplace_back();
            map.features.back().layer = part->layer;
            map.features.back().name = ReadName(*part);
            ranks.emplace_back(part->rank, part->color);
        }
        AddPart(*part, map.features.back());
        former = part.Get();
    }
    map.scheme.order.resize(ranks.size());
    std::iota(map.scheme.order.begin(), map.scheme.order.end(), 0U);
    std::stable_sort(map.scheme.order.begin(), map.scheme.order.end(),
                     [&ranks](std::uint32_t a, std::uint32_t b) { return ranks[a].first < ranks[b].first; });
    for (const std::uint32_t feature : map.scheme.order) {
        map.scheme.colors.push_back(ranks[feature].second);
    }
}

void StoredMap::AddPart(PartRecord& part, Feature& feature) const {
    std::vector<Path> paths = ReadPaths(part, m_Grids[part.layer]);
    if (paths.empty()) FailAsDamaged();
    switch (part.kind) {
        case PartRecord::kArea:
            feature.areas.push_back({std::move(paths)});
            break;
        case PartRecord::kLine:
            feature.lines.insert(feature.lines.end(), paths.begin(), paths.end());
            break;
        case PartRecord::kPoints:
            feature.points = std::move(paths.front());
            break;
    }
}

zul::CString StoredMap::ReadName(const PartRecord& part) {
    const int field = m_NameFields[part.layer];
    if (field < 0) return {};
    const auto record = m_Store.Load<FeatureRecord>(zul::CObjectID(part.record));
    const auto index = static_cast<std::size_t>(field);
    if (!record.IsExist() || !record->IsSound() || index >= record->values.size()) FailAsDamaged();
    return TidyName(record->values[index].c_str());
}

void StoredMap::AddRasters(const Box& held, MapData& map) {
    std::vector<std::pair<std::uint32_t, Raster>> rasters;
    for (const zul::CObjectID id : m_Store.FindInBox(WorldBoxOf(held), kRasterLayer, kRasterLayer)) {
        const auto record = m_Store.Load<RasterRecord>(id);
        if (!record.IsExist() || !record->IsSound()) FailAsDamaged();
        zul::CBitmap* const picture = record->picture.Get();
        if (picture == nullptr) FailAsDamaged();
        Raster raster;
        picture->GetSize(raster.width, raster.height);
        if (raster.width < 1 || raster.height < 1) FailAsDamaged();
        raster.picture = MakePicture(*picture, m_Path);
        raster.place = record->place;
        rasters.emplace_back(record->number, std::move(raster));
    }
    std::stable_sort(rasters.begin(), rasters.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (auto& [number, raster] : rasters) {
        map.rasters.push_back(std::move(raster));
    }
}

}  // namespace zulmap
