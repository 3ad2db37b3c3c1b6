/// \file
/// Graphs of stored objects from hostile bytes, loaded, drawn with and stored again.
///
/// An input is a list of records, each a byte for the class, two for the length, and that many bytes of
/// stored form. The references in them lead to records by their place in the list, from 1 on. Whatever they
/// hold, an object that was read must write itself in a form that reads back to the same form.

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

#include "apps/zulmap/world/map_records.h"
#include "fuzz/frame/fuzzing.h"
#include "fuzz/frame/tool_blocks.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/message.h"
#include "zul/kernel/object_source.h"
#include "zul/kernel/stream.h"
#include "zul/raster/image.h"
#include "zul/scaler/length.h"
#include "zul/scaler/projective_scaler.h"

namespace {

using fuzz::Require;

constexpr const char16_t* kClasses[] = {u"CRect",
                                        u"CPoint",
                                        u"CLength",
                                        u"CBrush",
                                        u"CPen",
                                        u"CFont",
                                        u"CRegion",
                                        u"CPalette",
                                        u"CGradient",
                                        u"CBackground",
                                        u"CScaler",
                                        u"CBitmap",
                                        u"CDibSection",
                                        u"CCanvas",
                                        u"CImage",
                                        u"CAnyBuffer",
                                        u"CFloat",
                                        u"CInteger",
                                        u"CProjectiveScaler",
                                        u"CAnyArray",
                                        u"CAnyDictionary",
                                        u"zulmap::MapRecord",
                                        u"zulmap::LayerRecord",
                                        u"zulmap::FeatureRecord",
                                        u"zulmap::PartRecord",
                                        u"zulmap::RasterRecord"};
constexpr int kSide = 60;

/// Also of classes that are no part of the registry.
void RegisterAll() {
    zulmap::RegisterRecords();
    zul::CClass::Register(new zul::CFactory<zul::CProjectiveScaler>, u"<class name='CProjectiveScaler'/>");
    zul::CClass::Register(new zul::CFactory<zul::CAnyArray>, u"<class name='CAnyArray'/>");
    zul::CClass::Register(new zul::CFactory<zul::CAnyDictionary>, u"<class name='CAnyDictionary'/>");
}

/// The records as a store.
class Records : public zul::CObjectSource {
public:
    Records(const std::uint8_t* data, std::size_t size) {
        while (size >= 3) {
            const std::size_t length = std::min<std::size_t>(size - 3, data[1] | data[2] << 8);
            m_Records.push_back({kClasses[data[0] % std::size(kClasses)], data + 3, length});
            data += 3 + length;
            size -= 3 + length;
        }
    }
    std::int64_t Count() const { return static_cast<std::int64_t>(m_Records.size()); }

    zul::CAnyRef LoadLocal(std::int64_t id) override {
        zul::CAnyRef found = FindInMemory(id);
        if (found.Peek() != nullptr || id < 1 || id > Count()) return found;
        const Record& record = m_Records[static_cast<std::size_t>(id - 1)];
        found.DoAdoptInstance(zul::CClass::Create(record.name));
        Assign(found.Peek(), id);
        Stream stream(*this, record.bytes, record.length);
        found.Peek()->DoUnserialize(&stream);
        return found;
    }
    bool Save(zul::CAnyObject*) override { return false; }
    bool OnBegin() override { return false; }
    bool OnCommit() override { return false; }
    void OnRollback(const zul::CTransaction&) override {}

private:
    struct Record {
        const char16_t* name;
        const std::uint8_t* bytes;
        std::size_t length;
    };
    class Stream : public zul::CMemoryStream {
    public:
        Stream(const Records& records, const std::uint8_t* bytes, std::size_t length)
            : CMemoryStream(bytes, length), m_Records(records) {}
        std::int64_t FromStoredId(std::int64_t stored) override { return m_Records.ToProcessId(stored); }

    private:
        const Records& m_Records;
    };

    std::vector<Record> m_Records;
};

void RequireSameForm(zul::CAnyObject& object) {
    zul::CMemoryStream first, second;
    object.DoSerialize(&first);
    first.SetPosition(0);
    object.DoUnserialize(&first);
    object.DoSerialize(&second);
    Require(std::equal(first.GetBuffer(), first.GetBuffer() + first.GetSize(), second.GetBuffer(),
                       second.GetBuffer() + second.GetSize()),
            "a stored form reads back to itself");
}

void RequireSameClone(zul::CAnyObject& object) {
    const std::unique_ptr<zul::CAnyObject> clone(zul::CClass::Create(*zul::CClass::GetName(&object)));
    zul::CMemoryStream first, second;
    if (!object.Clone(clone.get())) return;
    object.ObjectToBuffer(&first);
    clone->ObjectToBuffer(&second);
    Require(std::equal(first.GetBuffer(), first.GetBuffer() + first.GetSize(), second.GetBuffer(),
                       second.GetBuffer() + second.GetSize()),
            "a clone is the same");
}

/// Of a tool.
void RequireSameText(zul::CAnyObject& object) {
    if (auto* pen = dynamic_cast<zul::CPen*>(&object)) fuzz::RequireSameBlock(*pen);
    if (auto* brush = dynamic_cast<zul::CBrush*>(&object)) fuzz::RequireSameBlock(*brush);
    if (auto* font = dynamic_cast<zul::CFont*>(&object)) fuzz::RequireSameBlock(*font);
    if (auto* background = dynamic_cast<zul::CBackground*>(&object)) fuzz::RequireSameBlock(*background);
}

/// Sends every message that has a number.
void SendMessages(zul::CAnyObject& object) {
    for (std::int32_t code = 10000; code < 10200; ++code) {
        zul::CMessage message(code);
        object.DoMessage(&message);
    }
}

/// Draws every kind of figure with what the canvas was given.
void Draw(zul::CCanvas& canvas, zul::CBitmap* bitmap) {
    canvas.Line(1, 1, 50, 40);
    canvas.Rectangle(-20, 3, 300, 30);
    canvas.Ellipse(5, 5, 40, 30);
    const zul::TPoint ring[] = {{3, 3}, {55, 10}, {20, 50}, {-3000, 20}};
    canvas.Polygon(ring, 4);
    canvas.Polyline(ring, 4);
    const zul::CString text(u"Ab\u00C4");
    canvas.OutText(&text, 10, 20);
    if (bitmap != nullptr && bitmap != canvas.GetBitmap()) {
        canvas.BitBlt(bitmap, 0, 0, kSide, kSide, 0, 0, zul::CBitmap::RopSourceCopy);
        bitmap->StretchBlt(&canvas, 3, 3, 20, 20, 0, 0, 7, 9, zul::CBitmap::RopSourceInvert);
    }
}

/// Asks what draws nothing by itself.
void Ask(zul::CAnyObject& object) {
    if (auto* domain = dynamic_cast<zul::CAnyDomain*>(&object)) {
        zul::CString text;
        domain->ToString(text, nullptr);
        domain->GetInscription(text);
        domain->GetIntegerValue();
        domain->Compare(domain);
    }
    if (auto* array = dynamic_cast<zul::CAnyArray*>(&object)) {
        for (std::uint32_t i = 0; i < 4; ++i)
            array->DoGetInstance(i);
    }
    if (auto* dictionary = dynamic_cast<zul::CAnyDictionary*>(&object)) dictionary->DoGetInstance(u"a");
    if (auto* layer = dynamic_cast<zulmap::LayerRecord*>(&object); layer != nullptr && layer->IsSound())
        layer->GetLayer();
}

void Use(zul::CAnyObject& object, zul::CCanvas& canvas) {
    if (auto* brush = dynamic_cast<zul::CBrush*>(&object)) canvas.GetBrush().ApplyBrush(brush, true);
    if (auto* pen = dynamic_cast<zul::CPen*>(&object)) canvas.GetPen().ApplyPen(pen);
    if (auto* font = dynamic_cast<zul::CFont*>(&object)) canvas.GetFont().ApplyFont(font);
    if (auto* background = dynamic_cast<zul::CBackground*>(&object))
        canvas.GetBackground().ApplyBackground(background);
    if (auto* scaler = dynamic_cast<zul::CScaler*>(&object)) canvas.SetScaler(scaler);
    if (auto* gradient = dynamic_cast<zul::CGradient*>(&object)) {
        canvas.SetGradient(gradient);
        for (std::uint32_t i = 0; i < gradient->GetCount() && i < 100; ++i)
            gradient->GetColor(i);
    }
    if (auto* palette = dynamic_cast<zul::CPalette*>(&object)) {
        canvas.SetPalette(palette);
        palette->GetNearestIndex(0x123456);
        std::int32_t colors[4] = {};
        palette->GetEntries(colors, 1, 4);
        zul::CPalette().ApplyPalette(palette);
    }
    if (auto* other = dynamic_cast<zul::CCanvas*>(&object)) canvas.ApplyCanvas(other, true);
    if (auto* bitmap = dynamic_cast<zul::CBitmap*>(&object)) {
        bitmap->GetBits();
        bitmap->GetPaletteEntries();
        bitmap->GetBitmapMaskColor();
        bitmap->GetHandle();
    }
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    static const bool registered = (RegisterAll(), true);
    Require(registered, "all classes are known");
    Records records(data, size);
    std::vector<zul::CAnyRef> objects;
    zul::CBitmap surface;
    surface.Create(kSide, kSide, 32, nullptr);
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&surface);
    for (std::int64_t id = 1; id <= records.Count() && id < 10; ++id) {
        objects.push_back(records.LoadLocal(id));
        zul::CAnyObject& object = *objects.back().Peek();
        RequireSameForm(object);
        RequireSameClone(object);
        Ask(object);
        Use(object, canvas);
        if (id > 3) continue;  // what takes longer
        RequireSameText(object);
        Draw(canvas, dynamic_cast<zul::CBitmap*>(&object));
        SendMessages(object);
    }
    canvas.AssignBitmap(nullptr);
    canvas.Release(true);
}
