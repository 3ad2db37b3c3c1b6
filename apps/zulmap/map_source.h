/// \file
/// Where a map comes from.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "apps/zulmap/map_data.h"

namespace zulmap {

/// A map of which any part can be had.
class MapSource {
public:
    MapSource() = default;
    virtual ~MapSource() = default;
    MapSource(const MapSource&) = delete;
    MapSource& operator=(const MapSource&) = delete;

    virtual const MapFacts& GetFacts() const = 0;
    /// The map with all that touches the box, and perhaps more.
    /// \throws ToolError when it cannot be read
    virtual std::shared_ptr<const MapData> Read(const Box& held) = 0;
    /// Rows read up to now, of a source that has such.
    virtual std::uint64_t GetRowsRead() const { return 0; }
};

/// A map that is in memory whole.
class LoadedMap : public MapSource {
public:
    explicit LoadedMap(MapData map) : LoadedMap(std::make_shared<const MapData>(std::move(map))) {}
    explicit LoadedMap(std::shared_ptr<const MapData> map) : m_Map(std::move(map)) {}

    const MapFacts& GetFacts() const override { return *m_Map; }
    std::shared_ptr<const MapData> Read(const Box&) override { return m_Map; }

private:
    std::shared_ptr<const MapData> m_Map;
};

}  // namespace zulmap
