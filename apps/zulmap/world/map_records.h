/// \file
/// What a store holds of a map: the persistent classes of the program.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/zulmap/layer_look.h"
#include "apps/zulmap/map_data.h"
#include "apps/zulmap/world/point_grid.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/references.h"
#include "zul/kernel/stream.h"
#include "zul/raster/bitmap.h"
#include "zul/store/store.h"
#include "zul/tools/brush.h"
#include "zul/tools/font.h"
#include "zul/tools/pen.h"

namespace zulmap {

/// The root of a map's objects has this name.
constexpr const char16_t* kMapRoot = u"map";

/// In the store's spatial index pictures have this number, layers their own.
constexpr std::uint32_t kRasterLayer = zul::CStore::MaxLayer;

/// The newest form of these records. A file of a newer one is refused.
constexpr std::int32_t kMapVersion = 1;

/// A persistent object of the program.
class Record : public zul::CAnyObject {
public:
    bool ObjectToBuffer(zul::CStream* stream) override;
    bool ObjectFromBuffer(zul::CStream* stream) override;
    /// Whether the last ObjectFromBuffer found all that it wanted, and nothing impossible.
    bool IsSound() const { return m_IsSound; }

private:
    virtual bool Write(zul::CStream& stream) = 0;
    virtual bool Read(zul::CStream& stream) = 0;

    bool m_IsSound = true;
};

/// The tools of a layer. They are objects of their own, which other programs can load.
class LayerRecord : public Record {
public:
    LayerRecord() = default;
    /// Makes the tools of the layer's look, which belong to the record.
    explicit LayerRecord(const MapLayer& layer);

    /// Name, fields and look. Tools that cannot be loaded are those of the program.
    MapLayer GetLayer() const;

    /// A tool and what it is for: the name of its element in documents.
    struct Pen {
        const char* name;
        zul::CRef<zul::CPen> LayerRecord::*tool;
        PenSettings LayerLook::*settings;
    };
    static const std::vector<Pen>& GetPens();

    std::string name;
    std::vector<std::string> fields;
    PointGrid grid;
    std::uint64_t features = 0;
    std::uint64_t points = 0;
    Box box;

    zul::CRef<zul::CPen> shallows;
    zul::CRef<zul::CPen> coast;
    zul::CRef<zul::CPen> border;
    zul::CRef<zul::CPen> line;
    zul::CRef<zul::CPen> point;
    zul::CRef<zul::CBrush> disc;
    std::vector<zul::CRef<zul::CBrush>> areas;
    zul::CRef<zul::CFont> font;

private:
    bool Write(zul::CStream& stream) override;
    bool Read(zul::CStream& stream) override;
};

/// What holds for the map as a whole.
class MapRecord : public Record {
public:
    std::int32_t version = kMapVersion;
    Box extent;
    bool isInDegrees = false;
    double metresInUnit = 1.0;
    std::uint64_t features = 0;
    std::vector<zul::CRef<LayerRecord>> layers;

private:
    bool Write(zul::CStream& stream) override;
    bool Read(zul::CStream& stream) override;
};

/// What a feature says about itself.
class FeatureRecord : public Record {
public:
    std::vector<std::string> values;  ///< of its layer's fields

private:
    bool Write(zul::CStream& stream) override;
    bool Read(zul::CStream& stream) override;
};

/// A piece of a feature that is drawn by itself: an area, a line, or all of its points. Placed in the index
/// with its box and the number of its layer.
class PartRecord : public Record {
public:
    enum Kind : std::uint8_t { kArea = 0, kLine = 1, kPoints = 2 };

    Kind kind = kArea;
    std::uint8_t color = 0;  ///< of the map's scheme
    std::uint32_t layer = 0;
    std::uint32_t feature = 0;  ///< its number, in the order of the source
    std::uint32_t rank = 0;     ///< of the feature in the map's scheme
    std::uint32_t number = 0;   ///< among the feature's parts of the same kind
    std::int64_t record = 0;    ///< the store's id of the FeatureRecord
    zul::CMemoryStream paths;   ///< see stored_path.h: with the grid of the layer, up to the end

private:
    bool Write(zul::CStream& stream) override;
    bool Read(zul::CStream& stream) override;
};

/// A picture and what it covers. Placed in the index.
class RasterRecord : public Record {
public:
    std::uint32_t number = 0;  ///< from the bottom to the top
    Box place;
    zul::CRef<zul::CBitmap> picture;

private:
    bool Write(zul::CStream& stream) override;
    bool Read(zul::CStream& stream) override;
};

/// Makes the library's and the program's classes known to the registry. Again and again, if it must be.
void RegisterRecords();

}  // namespace zulmap
