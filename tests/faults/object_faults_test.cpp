// What keeps, changes, loads and saves objects, when memory runs out.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <vector>

#include "platform/software/resources.h"
#include "tests/faults/memory_faults.h"
#include "tests/faults/stored_state.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/attribute_bag.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/library.h"
#include "zul/kernel/message.h"
#include "zul/kernel/system/text_file.h"
#include "zul/kernel/transaction.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/image.h"

namespace faults {
namespace {

using namespace zul;
namespace fs = std::filesystem;

constexpr char16_t LongName[] = u"A name that is too long to live in its text";

/// Objects come from an allocator that answers null.
bool Append(CArray<CInteger>& array) {
    CInteger* const made = new CInteger(3);
    if (made != nullptr) array.DoAppend(made);
    return made != nullptr;
}
bool Append(CAnyDictionary& dictionary, const CString& key) {
    CInteger* const made = new CInteger(3);
    if (made != nullptr) dictionary.DoAppend(key, made);
    return made != nullptr;
}

/// One of many kinds of objects, with values that are not the first ones, and a file.
class CShelf : public CStage {
public:
    CShelf() {
        Font.SetName(LongName);
        Font.SetStyle(CFont::StyleItalic);
        Pen.SetWidth(7);
        for (TCoord i = 0; i < 40; ++i)
            Points.Append(i, static_cast<TCoord>(i * i));
        Append(Array);
        Append(Dictionary, LongName);
        for (std::int32_t i = 0; i < 9; ++i) {
            Palette.Append(i);
            Gradient.Append(i, i, i);
        }
        constexpr std::uint8_t bytes[300] = {1, 2, 3};
        Buffer.Write(0, sizeof bytes, bytes);
        Packed.Create(Dib(), DibSize);
        Section.Create(9, 9, 32, nullptr);
        Canvas.GetFont().SetName(LongName);
        Bag.SetAttribute(u"name", u"Another name that is long enough");
        Bag.SetAttribute(u"height", u"33");
        Wipe();
    }
    ~CShelf() override { fs::remove(Path); }

    std::string State() override {
        CStateStream stream;
        Points.ObjectToBuffer(&stream);
        Text.ObjectToBuffer(&stream);
        Bytes.ObjectToBuffer(&stream);
        return StateOf({&Font, &Pen, &Brush, &Array, &Dictionary, &Palette, &Gradient, &Buffer, &Packed,
                        &Plain, &Section, &Image, &Canvas, &Number}) +
               HashOf(stream.GetBuffer(), stream.GetSize()) + std::to_string(Packed.GetWidth()) +
               std::to_string(Plain.GetWidth()) + std::to_string(Section.GetWidth());
    }
    std::string Picture() override {
        std::ifstream file(Path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        return HashOf(bytes.data(), bytes.size()) + HashOf(Out.GetBuffer(), Out.GetSize());
    }
    void Wipe() override {
        Out.Clear();
        std::ofstream(Path, std::ios::binary) << Settings();
    }

    /// A parameter block and what else files may hold.
    static std::string Settings() {
        return "      Name : 'A text that is longer than any short one'\n      Height : 44\n    EndBlock\n";
    }
    static const void* Dib() {
        static const struct {
            BITMAPINFOHEADER Header{sizeof(BITMAPINFOHEADER), 8, 8, 1, 1, BI_RGB, 32, 0, 0, 2, 0};
            std::uint32_t Colors[2] = {0xFFFFFF, 0xC04020};
            std::uint32_t Rows[8] = {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81};
        } packed;
        return &packed;
    }
    static constexpr std::uint32_t DibSize = sizeof(BITMAPINFOHEADER) + 40;

    CFont Font;
    CPen Pen;
    CBrush Brush;
    CPoints Points{true};
    CArray<CInteger> Array;
    CAnyDictionary Dictionary;
    CPalette Palette;
    CGradient Gradient;
    CAnyBuffer Buffer;
    CBitmap Packed, Plain;
    CDibSection Section;
    CImage Image;
    CCanvas Canvas;
    CInteger Number{5};
    CString Text{LongName};
    CAnyMemoryBuffer Bytes;
    CAttributeBag Bag;
    CStateStream Out;
    CBuffer<std::int32_t> Triangles;
    fs::path Path = Folder() / "faults.bin";

    static const fs::path& Folder();
};

/// Goes with the program.
const fs::path& CShelf::Folder() {
    static const struct TFolder {
        TFolder() { fs::create_directories(Path); }
        ~TFolder() { fs::remove_all(Path); }
        fs::path Path = fs::temp_directory_path() / ("zul-faults-" + std::to_string(std::random_device()()));
    } folder;
    return folder.Path;
}

bool Save(CShelf& s, CAnyObject& object) {
    return object.ObjectToBuffer(&s.Out);
}

/// Takes over another object's value through its stored form.
template <class T>
bool Load(T& object, void (*change)(T&)) {
    T other;
    change(other);
    return other.Clone(&object);
}

template <class T>
bool Export(CShelf& s, const T& tool, bool asElement) {
    zulsys::CTextFile file;
    if (!file.Create(s.Path.u16string().c_str())) return false;
    asElement ? tool.ExportParametersEx(file) : tool.ExportParameters(file);
    return file.Disconnect();
}

struct TCall {
    const char* Name;
    bool (*Call)(CShelf&);
    bool KeepsState = true;
};

const TCall ObjectCalls[] = {
    // --- stored forms ---
    {"save a font", [](CShelf& s) { return Save(s, s.Font); }},
    {"save a pen", [](CShelf& s) { return Save(s, s.Pen); }},
    {"save a brush", [](CShelf& s) { return Save(s, s.Brush); }},
    {"save an array", [](CShelf& s) { return Save(s, s.Array); }},
    {"save a palette", [](CShelf& s) { return Save(s, s.Palette); }},
    {"save a gradient", [](CShelf& s) { return Save(s, s.Gradient); }},
    {"save a buffer", [](CShelf& s) { return Save(s, s.Buffer); }},
    {"save an image", [](CShelf& s) { return Save(s, s.Image); }},
    {"load a font",
     [](CShelf& s) { return Load<CFont>(s.Font, [](CFont& f) { f.SetName(u"Some other long name"); }); }},
    {"load a pen", [](CShelf& s) { return Load<CPen>(s.Pen, [](CPen& p) { p.SetWidth(99); }); }},
    {"load a palette",
     [](CShelf& s) {
         return Load<CPalette>(s.Palette, [](CPalette& p) {
             p.SetType(1);
             for (int i = 0; i < 99; ++i)
                 p.Append(i);
         });
     }},
    {"load a gradient",
     [](CShelf& s) {
         return Load<CGradient>(s.Gradient, [](CGradient& g) {
             for (int i = 0; i < 99; ++i)
                 g.Append(i, 1, 1);
         });
     }},
    {"load a buffer",
     [](CShelf& s) { return Load<CAnyBuffer>(s.Buffer, [](CAnyBuffer& b) { b.Resize(4000, false); }); }},
    {"load an array",
     [](CShelf& s) {
         CArray<CInteger> other;
         return Append(other) && Append(other) && other.Clone(&s.Array);
     }},
    {"load a dictionary",
     [](CShelf& s) {
         CAnyDictionary other;
         return Append(other, LongName + 1) && other.Clone(&s.Dictionary);
     }},
    {"load an image",
     [](CShelf& s) {
         CMemoryStream stream;
         const CString path(LongName);
         path.ObjectToBuffer(&stream);
         stream.SetPosition(0);
         return s.Image.ObjectFromBuffer(&stream);
     }},
    {"load a canvas",
     [](CShelf& s) {
         return Load<CCanvas>(s.Canvas, [](CCanvas& c) {
             c.GetPen().SetWidth(55);
             c.GetFont().SetName(u"The name of a canvas's font");
         });
     }},
    {"load points",
     [](CShelf& s) {
         CPoints other(true);
         for (TCoord i = 0; i < 300; ++i)
             other.Append(i, i);
         CMemoryStream stream;
         other.ObjectToBuffer(&stream);
         stream.SetPosition(0);
         return s.Points.ObjectFromBuffer(&stream);
     }},
    {"a stream of a file",
     [](CShelf& s) {
         CFileStream file(s.Path.u16string().c_str(), u"wb");
         return file.IsOpen() && s.Font.ObjectToBuffer(&file);
     }},
    // --- settings as text ---
    {"export a block", [](CShelf& s) { return Export(s, s.Font, false); }},
    {"export an element", [](CShelf& s) { return Export(s, s.Font, true); }},
    {"import a block",
     [](CShelf& s) {
         zulsys::CTextFile file;
         if (!file.Connect(s.Path.u16string().c_str())) return false;
         s.Font.ImportParameters(file);
         return true;
     }},
    {"import an element", [](CShelf& s) { return s.Font.ImportParametersEx(&s.Bag), true; }},
    // --- values ---
    {"SetName", [](CShelf& s) { return s.Font.SetName(u"Some other long name"), true; }},
    {"Append to a text", [](CShelf& s) { return s.Text.Append(LongName), true; }},
    {"Format",
     [](CShelf& s) { return s.Text.SetBuffer(CString::Format(u"%s %40d %.20f", LongName, 7, 0.5)), true; }},
    {"narrow text", [](CShelf& s) { return s.Text.SetBuffer(s.Text.GetBufferAnsi()), true; }},
    {"Append points", [](CShelf& s) { return s.Points.Append(s.Points.GetPoints(), 40, true), true; }},
    {"Insert a point",
     [](CShelf& s) {
         for (int i = 0; i < 40; ++i)
             s.Points.Insert(1, 7, 7);
         return true;
     },
     false},
    {"SetPoints", [](CShelf& s) { return s.Points.SetPoints(CPoints(s.Points).GetPoints(), 3), true; }},
    {"points and an array",
     [](CShelf& s) {
         CArray<CPoint> array;
         s.Points.GetPoints(&array);
         s.Points.Move(1, 1);
         s.Points.SetPoints(&array);
         return true;
     },
     false},
    {"ClipByRect", [](CShelf& s) { return s.Points.ClipByRect(3, 3, 20, 200, s.Points, true), true; }},
    {"copy bytes", [](CShelf& s) { return s.Bytes = s.Points, true; }},
    {"Write", [](CShelf& s) { return s.Bytes.Write(5000, 8, LongName); }},
    {"DoInsert", [](CShelf& s) { return s.Buffer.DoInsert(5, 200, s.Buffer.GetBuffer()); }},
    {"Append a colour",
     [](CShelf& s) {
         for (int i = 0; i < 99; ++i)
             s.Palette.Append(i);
         return true;
     },
     false},
    {"ApplyPalette",
     [](CShelf& s) {
         CPalette other;
         other.Append(77);
         s.Palette.ApplyPalette(&other);
         return true;
     }},
    {"CreateRadial",
     [](CShelf& s) { return s.Gradient.CreateRadial(&s.Points, 5, 5, 1, 2, s.Triangles) != 0; }},
    {"ApplyGradient",
     [](CShelf& s) {
         CGradient other;
         other.Append(7, 7, 7);
         s.Gradient.ApplyGradient(&other);
         return true;
     }},
    {"Append to an array", [](CShelf& s) { return Append(s.Array); }},
    {"Append to a dictionary", [](CShelf& s) { return Append(s.Dictionary, u"A key that is not short"); }},
    {"SetAttribute",
     [](CShelf& s) {
         s.Bag.SetAttribute(u"a further attribute", LongName);
         CString value;
         const bool isThere =
             s.Bag.RunMessage(u"GetAttributeValue", &s.Bag, nullptr,
                              CMessage::FromPointer(u"a further attribute"), CMessage::FromPointer(&value));
         s.Text = value;
         return isThere;
     }},
    // --- bitmaps ---
    {"create a packed bitmap", [](CShelf& s) { return s.Plain.Create(CShelf::Dib(), CShelf::DibSize); }},
    {"make its handle", [](CShelf& s) { return s.Packed.GetHandle() != nullptr; }},
    {"create a bitmap", [](CShelf& s) { return s.Plain.Create(9, 9, 32, nullptr); }},
    {"create a compatible bitmap", [](CShelf& s) { return s.Plain.CreateCompatible(9, 9, nullptr); }},
    {"save a bitmap", [](CShelf& s) { return s.Packed.SaveToFile(s.Path.u16string().c_str()); }},
    {"save and load a bitmap",
     [](CShelf& s) {
         const std::u16string path = s.Path.u16string();
         return s.Packed.SaveToFile(path.c_str()) && s.Plain.Create(path.c_str());
     },
     false},
    {"stretch a bitmap",
     [](CShelf& s) {
         if (!s.Packed.GetHandle()) return false;
         const std::unique_ptr<CBitmap> made(s.Packed.Stretch(20, 20));
         return made && made->GetWidth() == 20;
     }},
    {"extract a bitmap",
     [](CShelf& s) {
         const std::unique_ptr<CBitmap> made(s.Packed.ExtractBitmap(1, 1, 5, 5));
         return made && made->GetWidth() == 5;
     }},
    {"create a section", [](CShelf& s) { return s.Section.Create(20, 20, 4, nullptr); }, false},
    {"save a section", [](CShelf& s) { return s.Section.SaveToFile(s.Path.u16string().c_str()); }},
    {"save and load a section",
     [](CShelf& s) {
         const std::u16string path = s.Path.u16string();
         return s.Section.SaveToFile(path.c_str()) && s.Section.Create(path.c_str());
     },
     false},
    {"store a section", [](CShelf& s) { return Save(s, s.Section); }, false},
    // --- transactions and the registry ---
    {"commit",
     [](CShelf& s) {
         CNamedTransaction transaction(LongName);
         s.Number.SetValue(77);
         return transaction.Commit();
     }},
    {"roll back",
     [](CShelf& s) {
         CNamedTransaction transaction(LongName);
         s.Number.SetValue(77);
         return transaction.Rollback();
     }},
    {"commit a step",
     [](CShelf& s) {
         CNamedTransaction transaction(u"outer");
         s.Number.SetValue(76);
         {
             CEnclosedTransaction step;
             s.Number.SetValue(77);
             s.Pen.SetWidth(66);
             if (!step.Commit()) return false;
         }
         return transaction.Commit();
     }},
    {"a step undone",
     [](CShelf& s) {
         CNamedTransaction transaction(u"outer");
         s.Number.SetValue(76);
         {
             CEnclosedTransaction step;
             s.Pen.SetWidth(66);
         }
         return transaction.Commit();
     }},
    {"register and create",
     [](CShelf& s) {
         const CString document(u"<class   name='CInteger'   title='Integer'>");
         CClass::Register(new CFactory<CInteger>, document);
         CAnyRef made;
         made.DoAdoptInstance(CClass::Create(u"CInteger"));
         if (!made.IsExist()) return false;
         s.Number.SetValue(9);
         return true;
     }},
};

TEST(MemoryFaults, OfObjects) {
    AutoRegister();
    std::vector<TPath> paths;
    for (const TCall& row : ObjectCalls) {
        paths.push_back({row.Name, [] { return std::make_unique<CShelf>(); },
                         [&row](CStage& stage) { return row.Call(static_cast<CShelf&>(stage)); },
                         row.KeepsState});
    }
    FailEachAllocation(paths);
}

/// Packed bitmaps and resources of a depth, and what is made of them.
TEST(MemoryFaults, OfBitmapsOfAllDepths) {
    static const auto module = reinterpret_cast<HMODULE>(std::uintptr_t{0x1000});
    constexpr std::uint32_t side = 8;
    struct TResource {
        std::u16string Name;
        std::vector<std::uint8_t> Bytes;
    };
    static std::vector<TResource> packed;
    std::vector<TPath> paths;
    for (const std::uint16_t depth : std::initializer_list<std::uint16_t>{1, 4, 8, 16, 24, 32}) {
        const std::uint32_t colors = depth <= 8 ? 1U << depth : 0;
        BITMAPINFOHEADER header{};
        header.biSize = sizeof header;
        header.biWidth = header.biHeight = side;
        header.biPlanes = 1;
        header.biBitCount = depth;
        std::vector<std::uint8_t> bytes(sizeof header + colors * 4 + (side * depth + 31) / 32 * 4 * side);
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<std::uint8_t>(i * i);
        std::memcpy(bytes.data(), &header, sizeof header);
        packed.push_back({u"Picture " + std::u16string(1, static_cast<char16_t>('a' + depth)), bytes});
    }
    for (const TResource& resource : packed) {
        ASSERT_TRUE(device::RegisterBitmapResource(module, resource.Name.c_str(), resource.Bytes.data(),
                                                   resource.Bytes.size()));
        const auto add = [&](const char* name, std::function<bool(CShelf&)> call) {
            paths.push_back({name + (" of " + std::to_string(resource.Bytes.size())) + " bytes",
                             [] { return std::make_unique<CShelf>(); },
                             [call](CStage& stage) { return call(static_cast<CShelf&>(stage)); }, false});
        };
        add("a packed bitmap", [&resource](CShelf& s) {
            return s.Plain.Create(resource.Bytes.data(), static_cast<std::uint32_t>(resource.Bytes.size())) &&
                   s.Plain.GetHandle() != nullptr;
        });
        add("a bitmap from a resource", [&resource](CShelf& s) {
            return s.Plain.Create(module, resource.Name.c_str()) && s.Plain.GetHandle() != nullptr;
        });
        add("a section from a resource",
            [&resource](CShelf& s) { return s.Section.Create(module, resource.Name.c_str()); });
        add("a stretched bitmap", [&resource](CShelf& s) {
            s.Plain.Create(resource.Bytes.data(), static_cast<std::uint32_t>(resource.Bytes.size()));
            if (!s.Plain.GetHandle()) return false;
            const std::unique_ptr<CBitmap> made(s.Plain.Stretch(5, 11));
            return made && made->GetWidth() == 5;
        });
    }
    FailEachAllocation(paths);
    device::RemoveBitmapResources(module);
}

}  // namespace
}  // namespace faults
