#include "apps/zulmap/world/map_records.h"

#include <algorithm>
#include <cmath>

#include "apps/zulmap/made_object.h"
#include "apps/zulmap/world/stored_values.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/library.h"

namespace zulmap {
namespace {

/// Layers, and brushes of a layer, beyond which a record is damaged.
constexpr std::uint32_t kMostLayers = 1U << 20;
constexpr std::uint32_t kMostBrushes = 256;

template <class Stream>
bool WriteBox(Stream& stream, const Box& box) {
    return WriteValues(stream, box.minX, box.minY, box.maxX, box.maxY);
}

/// Finite, or empty.
bool ReadBox(zul::CStream& stream, Box& box) {
    if (!ReadValues(stream, box.minX, box.minY, box.maxX, box.maxY)) return false;
    if (box.IsEmpty()) return !std::isnan(box.minX) && !std::isnan(box.minY);
    const double sides[] = {box.minX, box.minY, box.maxX, box.maxY};
    return std::all_of(std::begin(sides), std::end(sides),
                       [](double side) { return std::abs(side) <= kFarthestCoordinate; });
}

template <class T>
bool WriteReferences(zul::CStream& stream, std::vector<zul::CRef<T>>& references) {
    bool isWritten = WriteValues(stream, static_cast<std::uint32_t>(references.size()));
    for (zul::CRef<T>& reference : references) {
        isWritten = isWritten && reference.ObjectToBuffer(&stream);
    }
    return isWritten;
}

template <class T>
bool ReadReferences(zul::CStream& stream, std::vector<zul::CRef<T>>& references, std::uint32_t most) {
    std::uint32_t count = 0;
    if (!ReadValues(stream, count) || count > most || count > stream.GetRemaining() / 8) return false;
    references.resize(count);
    for (zul::CRef<T>& reference : references) {
        if (!reference.ObjectFromBuffer(&stream)) return false;
    }
    return true;
}

zul::CRef<zul::CPen> MakePen(const PenSettings& settings) {
    zul::CRef<zul::CPen> pen = MakeReferred<zul::CPen>();
    UsePen(*pen, settings);
    return pen;
}

zul::CRef<zul::CBrush> MakeBrush(const BrushSettings& settings) {
    zul::CRef<zul::CBrush> brush = MakeReferred<zul::CBrush>();
    brush->Create(static_cast<zul::CBrush::TBrushType>(settings.type), settings.color, 0);
    return brush;
}

template <class Class>
void Register(const char16_t* document) {
    const zul::CString text(document);  // what may fail comes before what is handed over
    zul::CClass::Register(new zul::CFactory<Class>, text);
}

}  // namespace

bool Record::ObjectToBuffer(zul::CStream* stream) {
    return stream != nullptr && Write(*stream) && CAnyObject::ObjectToBuffer(stream);
}

bool Record::ObjectFromBuffer(zul::CStream* stream) {
    m_IsSound = stream != nullptr && Read(*stream);
    return m_IsSound && CAnyObject::ObjectFromBuffer(stream);
}

// --- layers ---

const std::vector<LayerRecord::Pen>& LayerRecord::GetPens() {
    static const std::vector<Pen> pens = {
        {"Shallows", &LayerRecord::shallows, &LayerLook::shallows},
        {"Coast", &LayerRecord::coast, &LayerLook::coast},
        {"Border", &LayerRecord::border, &LayerLook::border},
        {"Line", &LayerRecord::line, &LayerLook::line},
        {"Point", &LayerRecord::point, &LayerLook::point},
    };
    return pens;
}

LayerRecord::LayerRecord(const MapLayer& layer)
    : name(layer.name), fields(layer.fields), disc(MakeBrush(layer.look.disc)) {
    for (const Pen& pen : GetPens()) {
        this->*pen.tool = MakePen(layer.look.*pen.settings);
    }
    for (const BrushSettings& brush : layer.look.areas) {
        areas.push_back(MakeBrush(brush));
    }
    font = MakeReferred<zul::CFont>();
    UseFont(*font, layer.look.font, layer.look.font.height, layer.look.font.angle);
    font->SetFramed(layer.look.font.framed != 0);
}

MapLayer LayerRecord::GetLayer() const {
    MapLayer layer;
    layer.name = name;
    layer.fields = fields;
    for (const Pen& pen : GetPens()) {
        if (const zul::CPen* tool = (this->*pen.tool).Get()) layer.look.*pen.settings = SettingsOf(*tool);
    }
    if (const zul::CBrush* tool = disc.Get()) layer.look.disc = SettingsOf(*tool);
    std::vector<BrushSettings> brushes;
    for (const zul::CRef<zul::CBrush>& area : areas) {
        if (const zul::CBrush* tool = area.Get()) brushes.push_back(SettingsOf(*tool));
    }
    if (!brushes.empty()) layer.look.areas = brushes;
    if (zul::CFont* tool = font.Get()) layer.look.font = SettingsOf(*tool);
    return layer;
}

bool LayerRecord::Write(zul::CStream& stream) {
    bool isWritten = WriteText(stream, name) && WriteTexts(stream, fields) &&
                     WriteValues(stream, grid.x, grid.y, features, points) && WriteBox(stream, box);
    for (const Pen& pen : GetPens()) {
        isWritten = isWritten && (this->*pen.tool).ObjectToBuffer(&stream);
    }
    return isWritten && disc.ObjectToBuffer(&stream) && WriteReferences(stream, areas) &&
           font.ObjectToBuffer(&stream);
}

bool LayerRecord::Read(zul::CStream& stream) {
    bool isRead = ReadText(stream, name) && ReadTexts(stream, fields) &&
                  ReadValues(stream, grid.x, grid.y, features, points) && ReadBox(stream, box);
    for (const Pen& pen : GetPens()) {
        isRead = isRead && (this->*pen.tool).ObjectFromBuffer(&stream);
    }
    return isRead && disc.ObjectFromBuffer(&stream) && ReadReferences(stream, areas, kMostBrushes) &&
           font.ObjectFromBuffer(&stream);
}

// --- the map ---

bool MapRecord::Write(zul::CStream& stream) {
    return WriteValues(stream, version) && WriteBox(stream, extent) &&
           WriteValues(stream, isInDegrees, metresInUnit, features) && WriteReferences(stream, layers);
}

bool MapRecord::Read(zul::CStream& stream) {
    if (!ReadValues(stream, version)) return false;
    // Nothing else is known of a newer one, and all of it has to be read.
    if (version != kMapVersion) {
        std::vector<std::uint8_t> unknown(static_cast<std::size_t>(stream.GetRemaining()));
        return stream.Read(unknown.data(), static_cast<std::uint32_t>(unknown.size()));
    }
    std::uint8_t degrees = 0;
    if (!ReadBox(stream, extent) || !ReadValues(stream, degrees, metresInUnit, features)) return false;
    isInDegrees = degrees != 0;
    return metresInUnit > 0.0 && metresInUnit <= kFarthestCoordinate &&
           ReadReferences(stream, layers, kMostLayers);
}

// --- features ---

bool FeatureRecord::Write(zul::CStream& stream) {
    return WriteTexts(stream, values);
}

bool FeatureRecord::Read(zul::CStream& stream) {
    return ReadTexts(stream, values);
}

bool PartRecord::Write(zul::CStream& stream) {
    return WriteValues(stream, kind, color, layer, feature, rank, number, record) &&
           stream.Write(paths.GetBuffer(), static_cast<std::uint32_t>(paths.GetSize()));
}

bool PartRecord::Read(zul::CStream& stream) {
    std::uint8_t stored = 0;
    if (!ReadValues(stream, stored, color, layer, feature, rank, number, record)) return false;
    if (stored > kPoints || color >= MapScheme::kColors) return false;
    kind = static_cast<Kind>(stored);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(stream.GetRemaining()));
    if (!stream.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()))) return false;
    paths = zul::CMemoryStream(bytes.data(), bytes.size());
    return true;
}

bool RasterRecord::Write(zul::CStream& stream) {
    return WriteValues(stream, number) && WriteBox(stream, place) && picture.ObjectToBuffer(&stream);
}

bool RasterRecord::Read(zul::CStream& stream) {
    return ReadValues(stream, number) && ReadBox(stream, place) && !place.IsEmpty() &&
           picture.ObjectFromBuffer(&stream);
}

// --- registration ---

void RegisterRecords() {
    AutoRegister();
    Register<MapRecord>(u"<class name='zulmap::MapRecord'/>");
    Register<LayerRecord>(u"<class name='zulmap::LayerRecord'/>");
    Register<FeatureRecord>(u"<class name='zulmap::FeatureRecord'/>");
    Register<PartRecord>(u"<class name='zulmap::PartRecord'/>");
    Register<RasterRecord>(u"<class name='zulmap::RasterRecord'/>");
}

}  // namespace zulmap
