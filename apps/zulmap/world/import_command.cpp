#include "apps/zulmap/world/import_command.h"

#include <cstdio>
#include <filesystem>
#include <limits>
#include <optional>
#include <ostream>

#include "apps/zulmap/made_object.h"
#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/render_command.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/whole_file.h"
#include "apps/zulmap/world/map_records.h"
#include "apps/zulmap/world/stored_map.h"
#include "apps/zulmap/world/stored_path.h"
#include "platform/gdi.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"

namespace zulmap {
namespace {

constexpr std::size_t kProgressStep = 1024;
constexpr const char16_t* kFeatureClass = u"zulmap::FeatureRecord";

Box BoxOf(const std::vector<Path>& paths) {
    Box box;
    for (const Path& path : paths) {
        for (const TDoublePoint& point : path) {
            box.Include(point);
        }
    }
    return box;
}

/// Hears what an object that writes itself refers to.
class ReferenceList : public zul::CStream {
public:
    explicit ReferenceList(const zul::CStore& store) : m_Store(store) {}

    bool Read(void*, std::uint32_t) override { return false; }
    bool Write(const void*, std::uint32_t) override { return true; }
    std::uint64_t GetRemaining() const override { return 0; }
    void OnReference(const zul::CAnyObject* object) override { m_Ids.push_back(m_Store.GetId(object)); }
    std::int64_t ToStoredId(const zul::CAnyObject*) override { return 0; }
    std::int64_t ToStoredId(const zul::CObjectID& id) override {
        m_Ids.push_back(id);
        return 0;
    }

    const std::vector<zul::CObjectID>& GetIds() const { return m_Ids; }

private:
    const zul::CStore& m_Store;
    std::vector<zul::CObjectID> m_Ids;
};

/// Stored sections come back without a handle, and nothing can be drawn from them: what is stored is a
/// bitmap.
zul::CRef<zul::CBitmap> MakeBitmap(const Raster& raster) {
    const auto size = static_cast<std::size_t>(raster.width) * static_cast<std::size_t>(raster.height) * 4;
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = raster.width;
    header.biHeight = raster.height;
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biSizeImage = static_cast<std::uint32_t>(size);
    const auto* const head = reinterpret_cast<const std::uint8_t*>(&header);
    const auto* const pixels = static_cast<const std::uint8_t*>(raster.picture->GetDIBBits());
    std::vector<std::uint8_t> packed(head, head + sizeof header);
    packed.insert(packed.end(), pixels, pixels + size);
    zul::CRef<zul::CBitmap> made = MakeReferred<zul::CBitmap>();
    if (!made->Create(packed.data(), static_cast<std::uint32_t>(packed.size())))
        throw ToolError("a raster is too large to be stored");
    return made;
}

/// Puts a map into a store.
class MapWriter {
public:
    MapWriter(const MapData& map, zul::CStore& store, const ProgressLine& progress)
        : m_Map(map), m_Store(store), m_Progress(progress) {}

    void Write() {
        RemoveFormer();
        for (std::uint32_t i = 0; i < m_Map.layers.size(); ++i) {
            m_Layers.push_back(NewLayer(m_Map.layers[i]));
            m_Layers.back()->grid = FindGrid(m_Map, i);
        }
        m_Ranks.resize(m_Map.features.size());
        for (std::size_t rank = 0; rank < m_Map.scheme.order.size(); ++rank) {
            m_Ranks[m_Map.scheme.order[rank]] = rank;
        }
        for (std::size_t i = 0; i < m_Map.features.size(); ++i) {
            if (i % kProgressStep == 0) m_Progress.ShowBar("storing", i, m_Map.features.size());
            WriteFeature(i);
        }
        WriteRasters();
        WriteMap();
    }
    const MapRecord& GetMap() const { return m_Record; }

private:
    static zul::CRef<LayerRecord> NewLayer(const MapLayer& layer) { return MakeReferred<LayerRecord>(layer); }

    /// The rows of the former map, and no others: other programs may keep objects in the same store.
    void RemoveFormer() {
        for (const char16_t* name : {u"zulmap::MapRecord", u"zulmap::LayerRecord", u"zulmap::RasterRecord"}) {
            for (const zul::CObjectID id : m_Store.FindByClass(name)) {
                RemoveWithReferences(id);
            }
        }
        for (const char16_t* name : {kFeatureClass, u"zulmap::PartRecord"}) {
            for (const zul::CObjectID id : m_Store.FindByClass(name)) {
                m_Store.Remove(id);
            }
        }
    }
    void RemoveWithReferences(zul::CObjectID id) {
        zul::CAnyRef object = m_Store.Load(id);
        if (object.Peek() == nullptr) return;
        ReferenceList references(m_Store);
        object.Peek()->DoSerialize(&references);
        m_Store.Remove(id);
        for (const zul::CObjectID each : references.GetIds()) {
            RemoveWithReferences(each);
        }
    }

    void WriteFeature(std::size_t index) {
        const Feature& feature = m_Map.features[index];
        FeatureRecord record;
        record.values = feature.values;
        PartRecord part;
        part.layer = feature.layer;
        part.feature = static_cast<std::uint32_t>(index);
        part.rank = static_cast<std::uint32_t>(m_Ranks[index]);
        part.color = static_cast<std::uint8_t>(m_Map.scheme.colors[m_Ranks[index]]);
        part.record = m_Store.Store(&record).GetValue();
        ++m_Layers[feature.layer]->features;
        for (const Area& area : feature.areas) {
            WritePart(part, PartRecord::kArea, area.rings);
        }
        for (const Path& line : feature.lines) {
            WritePart(part, PartRecord::kLine, {line});
        }
        if (!feature.points.empty()) WritePart(part, PartRecord::kPoints, {feature.points});
    }

    void WritePart(const PartRecord& like, PartRecord::Kind kind, const std::vector<Path>& paths) {
        LayerRecord& layer = *m_Layers[like.layer];
        PartRecord part;
        part.kind = kind;
        part.color = like.color;
        part.layer = like.layer;
        part.feature = like.feature;
        part.rank = like.rank;
        part.number = m_Number++;
        part.record = like.record;
        for (const Path& path : paths) {
            if (!WritePath(part.paths, path, layer.grid)) throw ToolError("there is no memory for the map");
            layer.points += path.size();
        }
        const Box box = BoxOf(paths);
        layer.box.Include({box.minX, box.minY});
        layer.box.Include({box.maxX, box.maxY});
        m_Store.Place(m_Store.Store(&part), {box.minX, box.minY, box.maxX, box.maxY}, like.layer);
    }

    void WriteRasters() {
        std::uint32_t number = 0;
        for (const Raster& raster : m_Map.rasters) {
            RasterRecord record;
            record.number = number++;
            record.place = raster.place;
            record.picture = MakeBitmap(raster);
            m_Store.Place(m_Store.Store(&record),
                          {raster.place.minX, raster.place.minY, raster.place.maxX, raster.place.maxY},
                          kRasterLayer);
        }
    }

    void WriteMap() {
        m_Record.extent = m_Map.extent;
        m_Record.isInDegrees = m_Map.isInDegrees;
        m_Record.metresInUnit = m_Map.metresInUnit;
        m_Record.features = m_Map.features.size();
        m_Record.layers = m_Layers;
        m_Store.SetRoot(kMapRoot, &m_Record);
    }

    const MapData& m_Map;
    zul::CStore& m_Store;
    const ProgressLine& m_Progress;
    std::vector<zul::CRef<LayerRecord>> m_Layers;
    std::vector<std::size_t> m_Ranks;  ///< of the features
    std::uint32_t m_Number = 0;        ///< of the next part
    MapRecord m_Record;
};

std::uint64_t CountPoints(const MapRecord& map) {
    std::uint64_t points = 0;
    for (const zul::CRef<LayerRecord>& layer : map.layers) {
        points += layer->points;
    }
    return points;
}

std::uintmax_t SizeOfFile(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return error ? 0 : size;
}

/// Where a map goes: into the store that is there, or into a new one, which takes its place when it is
/// complete.
class Destination {
public:
    explicit Destination(const std::string& path) : m_Path(path) {
        std::error_code ignored;
        if (std::filesystem::status(path, ignored).type() != std::filesystem::file_type::not_found) return;
        if (SizeOfFile(path + kChanges) > 0) {
            throw ToolError(path + " is gone, but for changes that belong to it in " + path + kChanges);
        }
        m_New.emplace(path);
        m_Beside = {m_New->GetName() + kChanges, m_New->GetName() + "-shm"};
    }
    ~Destination() {
        for (const std::string& beside : m_Beside) {
            std::remove(beside.c_str());
        }
    }
    Destination(const Destination&) = delete;
    Destination& operator=(const Destination&) = delete;

    const std::string& GetName() const { return m_New ? m_New->GetName() : m_Path; }
    /// When the store is closed.
    void Keep() {
        if (!m_New) return;
        // Changes that stand beside the store would be left behind.
        if (SizeOfFile(m_New->GetName() + kChanges) > 0)
            m_New->Fail("what was stored cannot be brought together");
        m_New->Keep();
    }

private:
    static constexpr const char* kChanges = "-wal";

    std::string m_Path;
    std::optional<PendingFile> m_New;
    std::vector<std::string> m_Beside;  ///< files that the store in the making may have
};

/// Needs no memory but what \p report takes: what is told may be done already.
void Describe(const MapRecord& map, std::uint64_t rows, const std::filesystem::path& path,
              std::ostream& report) {
    const std::uint64_t points = CountPoints(map);
    const std::uintmax_t bytes = SizeOfFile(path);
    report << path.native() << ": version " << map.version << ", " << bytes << " bytes, " << rows << " rows, "
           << map.features << " features, " << points << " points";
    if (points > 0) report << ", " << static_cast<double>(bytes * 10 / points) / 10.0 << " bytes a point";
    report << "\nextent " << map.extent.minX << ' ' << map.extent.minY << ' ' << map.extent.maxX << ' '
           << map.extent.maxY << (map.isInDegrees ? " degrees" : "") << '\n';
    for (const zul::CRef<LayerRecord>& layer : map.layers) {
        report << "layer " << layer->name << ": " << layer->features << " features, " << layer->points
               << " points";
        if (!layer->box.IsEmpty()) {
            report << ", box " << layer->box.minX << ' ' << layer->box.minY << ' ' << layer->box.maxX << ' '
                   << layer->box.maxY;
        }
        report << "\n  fields";
        for (const std::string& field : layer->fields) {
            report << ' ' << field;
        }
        report << '\n';
    }
}

/// Reads all that there is of a map, and counts it.
void CheckMap(const MapRecord& map, StoredMap& whole, const std::string& path) {
    zul::CStore& store = whole.GetStore();
    const zul::CString complaint = store.Check();
    if (!complaint.IsEmpty()) throw ToolError(path + " is damaged: " + complaint.GetBufferAnsi());
    const std::vector<zul::CObjectID> features = store.FindByClass(kFeatureClass);
    if (features.size() != map.features) throw ToolError(path + " is damaged: features are missing");
    for (const zul::CObjectID id : features) {
        const auto feature = store.Load<FeatureRecord>(id);
        if (!feature.IsExist() || !feature->IsSound())
            throw ToolError(path + " is damaged: a feature cannot be read");
    }
    constexpr double kEverywhere = std::numeric_limits<double>::infinity();
    const std::vector<std::uint64_t> points =
        whole.CountPoints({-kEverywhere, -kEverywhere, kEverywhere, kEverywhere});
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i] == map.layers[i]->points) continue;
        throw ToolError(path + " is damaged: of " + std::to_string(map.layers[i]->points) +
                        " points of the layer " + map.layers[i]->name + " there are " +
                        std::to_string(points[i]));
    }
}

}  // namespace

void Import(const ImportRequest& request, std::ostream& report) {
    if (!IsStoreName(request.output)) throw ToolError("output '" + request.output + "' must end in .zul");
    std::vector<RasterFile> rasters;
    for (const std::string& raster : request.rasters) {
        rasters.push_back(ParseRaster(raster));
    }
    const ProgressLine progress;
    FieldRequest fields;
    fields.withValues = true;
    const MapData map = ReadMaps(
        request.maps, [&](const std::string& path, std::size_t count) { progress.ShowReading(path, count); },
        rasters, fields);
    StoreMap(map, request.output, report);
}

void StoreMap(const MapData& map, const std::string& output, std::ostream& report) {
    const ProgressLine progress;
    const std::filesystem::path path(output);
    Destination destination(output);
    std::optional<MapRecord> stored;
    std::uint64_t rows = 0;
    {
        const StoreErrors errors(output);
        RegisterRecords();
        zul::CStore store;
        store.Open(zul::CString(destination.GetName().c_str()).GetBuffer(), zul::CStore::Create);
        const auto former = store.GetRoot<MapRecord>(kMapRoot);
        if (former.IsExist()) CheckVersion(*former, output);
        zul::CNamedTransaction transaction(u"import");
        MapWriter writer(map, store, progress);
        writer.Write();
        rows = store.GetCount();
        stored = writer.GetMap();
        progress.Show("writing " + output);
        if (!transaction.Commit()) throw ToolError(output + " cannot be written");
    }
    destination.Keep();
    progress.Show({});
    Describe(*stored, rows, path, report);
}

void ShowInfo(const std::string& path, std::ostream& report) {
    StoredMap whole(path, {}, {});
    const StoreErrors errors(path);
    const zul::CStoreReading oneState(whole.GetStore());
    const auto map = whole.GetStore().GetRoot<MapRecord>(kMapRoot);
    if (!map.IsExist()) throw ToolError(path + " holds no map");
    CheckMap(*map, whole, path);
    Describe(*map, whole.GetStore().GetCount(), path, report);
    report << "sound\n";
}

}  // namespace zulmap
