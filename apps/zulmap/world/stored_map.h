/// \file
/// A map in a store.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_source.h"
#include "apps/zulmap/world/map_records.h"
#include "zul/kernel/client.h"
#include "zul/store/store.h"

namespace zulmap {

/// Makes a ToolError of what a store reports while it is in use.
class StoreErrors : public zul::CErrorHandler {
public:
    explicit StoreErrors(std::string path) : m_Path(std::move(path)), m_Scope(this) {}
    void OnError(const zul::TErrorReport& report) override;

private:
    std::string m_Path;
    zul::CErrorHandlerScope m_Scope;
};

/// Whether the file is a store, judged by its name: it ends in .zul.
bool IsStoreName(const std::string& path);

/// \throws ToolError when the map is of another version than this program's
void CheckVersion(const MapRecord& map, const std::string& path);

/// Opens the store in \p path, makes sure of its map and its layers, and hands it out.
/// \throws ToolError when the file cannot be opened, holds no map, a damaged one, or one of a newer version
zul::CRef<MapRecord> OpenStoredMap(zul::CStore& store, const std::string& path, zul::CStore::TMode mode);

/// Reads what a box touches, and no more.
class StoredMap : public MapSource {
public:
    /// \p nameField: as ReadMaps has it. \p rasters: lie on top of the store's own.
    /// \throws ToolError as OpenStoredMap and ReadMaps do
    StoredMap(const std::string& path, const std::optional<std::string>& nameField,
              const std::vector<RasterFile>& rasters);

    const MapFacts& GetFacts() const override { return m_Facts; }
    std::shared_ptr<const MapData> Read(const Box& held) override;
    std::uint64_t GetRowsRead() const override { return m_Store.GetCounts().ObjectsRead; }
    zul::CStore& GetStore() { return m_Store; }
    /// Reads what touches the box, and counts the points of each layer. \throws ToolError as Read does
    std::vector<std::uint64_t> CountPoints(const Box& held);

private:
    std::vector<zul::CRef<PartRecord>> LoadParts(const Box& held);
    void AddParts(const Box& held, MapData& map);
    void AddPart(PartRecord& part, Feature& feature) const;
    zul::CString ReadName(const PartRecord& part);
    void AddRasters(const Box& held, MapData& map);
    [[noreturn]] void FailAsDamaged() const;

    std::string m_Path;
    zul::CStore m_Store;
    MapData m_Facts;  ///< with the rasters that are not the store's
    std::vector<PointGrid> m_Grids;
    std::vector<int> m_NameFields;  ///< of the layers; -1: none
};

}  // namespace zulmap
