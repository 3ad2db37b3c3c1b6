// Streams, text files and pictures.
#include <filesystem>
#include <type_traits>

#include "tests/faults/files/file_faults.h"
#include "zul/canvas/bitmap_canvas.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/client.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"
#include "zul/kernel/system/text_file.h"
#include "zul/kernel/transaction.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/image.h"
#include "zul/scaler/projective_scaler.h"

namespace faults {
namespace {

using namespace zul;

constexpr std::int32_t kSide = 40;

/// More than any buffer of the C library holds.
std::string Noise() {
    std::string bytes(30000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * i % 251);
    return bytes;
}

std::string PixelsOf(CBitmap& bitmap) {
    std::int32_t width = 0, height = 0;
    bitmap.GetSize(width, height);
    CDibSection copy;
    copy.Create(kSide, kSide, 32, nullptr);
    CBitmapCanvas(&copy).BitBlt(&bitmap, 0, 0, kSide, kSide, 0, 0, CBitmap::RopSourceCopy);
    return std::to_string(width) + "x" + std::to_string(height) +
           std::string(static_cast<const char*>(copy.GetDIBBits()), kSide * kSide * 4);
}

void FillSection(CDibSection& section) {
    section.Create(kSide, kSide, 32, Noise().data());
}

// --- stored forms ---

/// An object is made from \p blank and changed.
template <class T, class... Blank>
void AddForms(std::vector<Path>& paths, const std::string& name, void (*change)(T&), Blank... blank) {
    paths.push_back(
        {"form saved: " + name, [change, blank...] {
             const auto object = Held<T>(blank...);
             change(*object);
             const auto save = [object] {
                 CFileStream file(u"out.bin", u"wb");
                 object->DoSerialize(&file);
                 return file.Close();
             };
             WriteWhole("out.bin", "");
             return Run{save, [] { return ReadWhole("out.bin"); }, [object] { return FormOf(*object); }};
         }});
    paths.push_back({"form loaded: " + name, [change, blank...] {
                         T source(blank...);
                         change(source);
                         const auto object = Held<T>(blank...);
                         WriteWhole("in.bin", FormOf(source));
                         const auto load = [object] {
                             CFileStream file(u"in.bin", u"rb");
                             CNamedTransaction transaction;
                             {
                                 CModificator modificator(object.get());
                                 object->DoUnserialize(&file);
                             }
                             return file.Close() && transaction.Commit();
                         };
                         return Run{load, [object] { return FormOf(*object); }};
                     }});
}

void AddAllForms(std::vector<Path>& paths) {
    AddForms<CAnyBuffer>(paths, "buffer", [](CAnyBuffer& buffer) {
        const std::string noise = Noise();
        buffer.Write(0, static_cast<std::uint32_t>(noise.size()), noise.data());
    });
    AddForms<CInteger>(paths, "integer", [](CInteger& number) { number.SetValue(std::int64_t{7}); });
    AddForms<CFloat>(paths, "number", [](CFloat& number) { number.SetValue(2.5); });
    AddForms<CAnyDictionary>(paths, "dictionary", [](CAnyDictionary& all) {
        for (std::int32_t i = 0; i < 500; ++i)
            all.DoAppend(CString::Format(u"key number %d", i), nullptr);
    });
    AddForms<CPoint>(
        paths, "point", [](CPoint& point) { point.SetX(3); }, TCoord{}, TCoord{});
    AddForms<CRect>(
        paths, "rect", [](CRect& rect) { rect.Move(1, 2); }, TRect{0, 0, 5, 5});
    AddForms<CPen>(paths, "pen", [](CPen& pen) { pen.Create(CPen::PenExtended, 2, 3, 4, 5, 6, 7); });
    AddForms<CBrush>(paths, "brush", [](CBrush& brush) { brush.SetColor(5); });
    AddForms<CFont>(paths, "font", [](CFont& font) { font.Create(u"Some Face", 14, 15, 16); });
    AddForms<CBackground>(paths, "background", [](CBackground& background) { background.SetColor(9); });
    AddForms<CPalette>(paths, "palette", [](CPalette& palette) {
        for (std::int32_t i = 0; i < 256; ++i)
            palette.Append(i);
    });
    AddForms<CGradient>(paths, "gradient", [](CGradient& gradient) {
        for (std::int32_t i = 0; i < 900; ++i)
            gradient.Append(i, i, i);
    });
    AddForms<CProjectiveScaler>(paths, "scaler", [](CProjectiveScaler& scaler) {
        scaler.InitScaler({0, 0, 1000, 1000}, {100, 100}, {100, 100}, 30.0, 1.0, 0.0);
    });
    AddForms<CCanvas>(paths, "canvas", [](CCanvas& canvas) { canvas.GetFont().SetHeight(99); });
    AddForms<CImage>(paths, "image", [](CImage& image) { image.Create(u"none.bmp"); });
}

// --- parameter blocks and elements ---

template <class T>
void AddBlocks(std::vector<Path>& paths, const std::string& name) {
    const auto save = [](void (T::*write)(zulsys::CTextFile&) const) {
        const auto tool = Held<T>();
        const auto act = [tool, write] {
            zulsys::CTextFile file;
            const bool isOpen = file.Create(u"out.txt");
            for (int i = 0; i < 40; ++i)
                ((*tool).*write)(file);
            return file.Disconnect() && isOpen;
        };
        WriteWhole("out.txt", "");
        return Run{act, [] { return ReadWhole("out.txt"); }, [tool] { return FormOf(*tool); }};
    };
    paths.push_back({"block written: " + name, [save] { return save(&T::ExportParameters); }});
    paths.push_back({"element written: " + name, [save] { return save(&T::ExportParametersEx); }});
    paths.push_back({"block read: " + name, [] {
                         zulsys::CTextFile made;
                         made.Create(u"made.txt");
                         T().ExportParameters(made);
                         made.Disconnect();
                         std::string block = ReadWhole("made.txt");
                         // Something else in every setting, and lines enough for several reads.
                         for (std::size_t at = 0; (at = block.find(" : ", at + 1)) != block.npos;)
                             block.insert(block.find_first_of("'\n", at + 4), "1");
                         for (int i = 0; i < 100; ++i)
                             block.insert(block.find("    EndBlock"),
                                          "      # " + std::string(80, '.') + "\n");
                         WriteWhole("in.txt", block);
                         const auto tool = Held<T>();
                         const auto act = [tool] {
                             zulsys::CTextFile file;
                             if (!file.Connect(u"in.txt")) return false;
                             tool->ImportParameters(file);
                             return file.Disconnect();
                         };
                         return Run{act, [tool] { return FormOf(*tool); }};
                     }});
}

// --- pictures ---

/// A section drops what it has before it loads.
template <class T>
void AddLoading(std::vector<Path>& paths, const std::string& name) {
    constexpr bool Drops = std::is_same_v<T, CDibSection>;
    paths.push_back({"picture loaded: " + name, [] {
                         CDibSection source;
                         FillSection(source);
                         std::filesystem::create_directory("resource");
                         source.SaveToFile(u"in.bmp");
                         source.SaveToFile(u"resource/in.bmp");
                         CClient::SetSysDBDir(u".");
                         const auto bitmap = Held<T>();
                         bitmap->Create(8, 8, 32, Noise().data());
                         const auto act = [bitmap] {
                             return bitmap->Create(u"in.bmp") && TakeReports() == 0;
                         };
                         const auto made = [bitmap] { return bitmap->GetHandle() ? PixelsOf(*bitmap) : ""; };
                         if (Drops) bitmap->Clear();
                         return Run{act, made};
                     }});
}

template <class T>
void AddSaving(std::vector<Path>& paths, const std::string& name, const std::string& old) {
    paths.push_back({"picture saved: " + name, [old] {
                         CDibSection source;
                         FillSection(source);
                         source.ExtractBitsFromHandle(nullptr);
                         CMemoryStream form;
                         source.ObjectToBuffer(&form);
                         form.SetPosition(0);
                         const auto bitmap = Held<T>();
                         bitmap->ObjectFromBuffer(&form);
                         if (!old.empty()) WriteWhole("out.bmp", old);
                         const auto act = [bitmap] {
                             return bitmap->SaveToFile(u"out.bmp") && TakeReports() == 0;
                         };
                         return Run{act, [bitmap] { return ReadWhole("out.bmp") + PixelsOf(*bitmap); }};
                     }});
}

}  // namespace

std::vector<Path> LibraryPaths() {
    std::vector<Path> paths;
    AddAllForms(paths);
    AddBlocks<CPen>(paths, "pen");
    AddBlocks<CBrush>(paths, "brush");
    AddBlocks<CFont>(paths, "font");
    AddBlocks<CBackground>(paths, "background");
    AddLoading<CBitmap>(paths, "bitmap");
    AddLoading<CDibSection>(paths, "section");
    AddLoading<CImage>(paths, "image");
    AddSaving<CBitmap>(paths, "new bitmap", "");
    AddSaving<CBitmap>(paths, "bitmap over an old one", "old");
    AddSaving<CDibSection>(paths, "new section", "");
    AddSaving<CDibSection>(paths, "section over an old one", "old");
    return paths;
}

}  // namespace faults
