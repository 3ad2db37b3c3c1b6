/// \file
/// stored_files (write | read) DIR
///
/// Writes objects of every class to files, or reads what another host has written and tells which files hold
/// other bytes than would be written here, or do not read back to the same bytes. The objects are drawn by
/// lot, the same on every host, and stored: the tools also as parameter blocks and as XML.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/scenes/random.h"
#include "tests/tools/written_element.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/client.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/library.h"
#include "zul/kernel/references.h"
#include "zul/kernel/stream.h"
#include "zul/kernel/system/text_file.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/image.h"
#include "zul/scaler/length.h"
#include "zul/scaler/projective_scaler.h"

namespace {

using scenes::CRandom;
using zul::CAnyObject;
using Path = std::filesystem::path;

constexpr int kObjectsEach = 20;

/// What was made so far: some of it is referred to by what follows.
std::vector<zul::CAnyRef> g_Objects;

/// The last object of a class that was made before.
template <class T>
T* Latest() {
    for (auto object = g_Objects.rbegin(); object != g_Objects.rend(); ++object)
        if (auto* const found = dynamic_cast<T*>(object->Peek())) return found;
    return nullptr;
}

std::int32_t Any(CRandom& random) {
    return static_cast<std::int32_t>(random.Bits()) >> random.In(0, 31);
}
double AnyDouble(CRandom& random) {
    const double over = Any(random);
    return over / (1 + random.In(0, 999));
}
zul::TCoord AnyCoord(CRandom& random) {
    return zul::WrapToCoord(Any(random));
}

void Fill(zul::CFloat& number, CRandom& random) {
    number.SetValue(AnyDouble(random));
}
void Fill(zul::CInteger& number, CRandom& random) {
    number.SetValue(std::int64_t{Any(random)} << random.In(0, 32));
}
void Fill(zul::CPoint& point, CRandom& random) {
    point.SetX(AnyCoord(random));
    point.SetY(AnyCoord(random));
}
void Fill(zul::CRect& rect, CRandom& random) {
    rect.SetMinX(AnyCoord(random));
    rect.SetMaxX(AnyCoord(random));
    rect.SetMinY(AnyCoord(random));
    rect.SetMaxY(AnyCoord(random));
}
void Fill(zul::CAnyBuffer& buffer, CRandom& random) {
    for (std::uint32_t at = 0; !random.OneIn(9); at += 4) {
        const std::uint32_t bits = random.Bits();
        buffer.Write(at, 4, &bits);
    }
}
void Fill(zul::CPalette& palette, CRandom& random) {
    palette.SetType(random.In(0, 3));
    while (!random.OneIn(9))
        palette.Append(Any(random));
}
void Fill(zul::CGradient& gradient, CRandom& random) {
    while (!random.OneIn(9)) {
        const std::int32_t x = Any(random), y = Any(random);
        gradient.Append(x, y, Any(random));
    }
}
void Fill(zul::CPen& pen, CRandom& random) {
    pen.SetType(random.In(0, 5));
    pen.SetStyle(random.In(0, 42));
    pen.SetWidth(Any(random));
    pen.SetColor(Any(random));
    pen.SetEndType(Any(random));
    pen.SetDashLength(Any(random));
    pen.SetExtraColor(Any(random));
    pen.SetScaled(random.OneIn(2));
}
void Fill(zul::CBrush& brush, CRandom& random) {
    brush.SetType(random.In(0, 5));
    brush.SetStyle(random.In(-1, 9));
    brush.SetColor(Any(random));
    brush.SetPattern(random.OneIn(2) ? Latest<zul::CBitmap>() : nullptr);
}
void Fill(zul::CFont& font, CRandom& random) {
    static constexpr const char16_t* names[] = {u"", u"Liberation Sans", u"\u0416\u00E4 '&<",
                                                u"a\xD83D\xDE00"};
    font.SetName(names[random.In(0, 3)]);
    font.SetHeight(Any(random));
    font.SetStyle(Any(random));
    font.SetAngle(Any(random));
    font.SetTextColor(Any(random));
    font.SetOreolColor(Any(random));
    font.SetAlignment(Any(random));
}
void Fill(zul::CBackground& background, CRandom& random) {
    background.SetColor(Any(random));
    background.SetMode(Any(random));
    background.SetRop(Any(random));
}
void Fill(zul::CScaler& scaler, CRandom& random) {
    const std::int32_t x = random.In(-30000, 0), y = random.In(-30000, 0), width = random.In(1, 2000);
    const zul::TSize screen{width, random.In(1, 2000)};
    const double pixelsPerSm = random.In(1, 999) / 7.0, metresInUnit = random.In(1, 999) / 300.0;
    scaler.InitScaler({x, y, x + random.In(1, 60000), y + 20000}, screen, screen, pixelsPerSm, metresInUnit,
                      0.001);
    scaler.SetRotationAngle(AnyDouble(random));
    scaler.SetReviewDepth(random.In(1, 9999), nullptr);
}
void Fill(zul::CBitmap& bitmap, CRandom& random) {
    const int depth = 1 << random.In(0, 3);
    struct {
        BITMAPINFOHEADER Header{sizeof(BITMAPINFOHEADER), 8, 8, 1, 0, BI_RGB, 0, 0, 0, 0, 0};
        std::uint32_t Rest[256 + 16];
    } packed;
    packed.Header.biBitCount = static_cast<WORD>(depth);
    for (std::uint32_t& word : packed.Rest)
        word = random.Color();
    const std::size_t words =
        (std::size_t{1} << depth) + static_cast<std::size_t>(8 * ((8 * depth + 31) / 32));
    bitmap.Create(&packed, static_cast<std::uint32_t>(sizeof packed.Header + 4 * words));
}
void Fill(zul::CDibSection& section, CRandom& random) {
    static constexpr int depths[] = {1, 4, 8, 16, 24, 32};
    const int depth = depths[random.In(0, 5)], width = random.In(1, 40);
    section.zul::CDibSection::Create(width, 9, depth, nullptr);
    for (int x = 0; x < width; ++x)
        section.SetPixel(x, x % 9, Any(random));
}
void Fill(zul::CImage& image, CRandom& random) {
    image.Create(random.OneIn(2) ? u"none.bmp" : u"\u0416.bmp");
}
void Fill(zul::CAnyArray& array, CRandom& random) {
    while (!random.OneIn(9))
        array.DoAppend(random.OneIn(5) ? nullptr : Latest<zul::CPoint>());
}
void Fill(zul::CAnyDictionary& dictionary, CRandom& random) {
    for (char16_t key[] = u"\u0416a"; !random.OneIn(9); ++key[1])
        dictionary.DoAppend(key, Latest<zul::CRect>());
}
void Fill(zul::CCanvas& canvas, CRandom& random) {
    Fill(canvas.GetPen(), random);
    Fill(canvas.GetBrush(), random);
    Fill(canvas.GetFont(), random);
    Fill(canvas.GetBackground(), random);
    canvas.SetScaler(random.OneIn(2) ? Latest<zul::CScaler>() : nullptr);
    canvas.SetPalette(random.OneIn(2) ? Latest<zul::CPalette>() : nullptr);
    canvas.SetGradient(random.OneIn(2) ? Latest<zul::CGradient>() : nullptr);
}
void Fill(zul::CRegion&, CRandom&) {}

std::string Bytes(const Path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// A way to store an object in a file and to read it back.
struct TForm {
    const char* Ending;
    bool (*Write)(CAnyObject& object, const Path& path);
    bool (*Read)(CAnyObject& object, const Path& path);
};

/// References stand for objects by their places among all: the ids of two processes have nothing in common.
class CPlacedStream : public zul::CFileStream {
public:
    using CFileStream::CFileStream;

    std::int64_t ToStoredId(const CAnyObject* object) override { return PlaceOf(IdOf(object)); }
    std::int64_t ToStoredId(const zul::CObjectID& id) override { return PlaceOf(id.GetValue()); }
    std::int64_t FromStoredId(std::int64_t stored) override {
        return stored > 0 ? IdOf(g_Objects.at(static_cast<std::size_t>(stored - 1)).Peek()) : 0;
    }

private:
    static std::int64_t IdOf(const CAnyObject* object) { return object->GetControlCell()->NeedId(); }
    static std::int64_t PlaceOf(std::int64_t id) {
        std::int64_t place = 1;
        for (const zul::CAnyRef& object : g_Objects) {
            if (IdOf(object.Peek()) == id) return place;
            ++place;
        }
        return -1;
    }
};

bool WriteStored(CAnyObject& object, const Path& path) {
    CPlacedStream stream(path.u16string().c_str(), u"wb");
    return object.ObjectToBuffer(&stream);
}
bool ReadStored(CAnyObject& object, const Path& path) {
    CPlacedStream stream(path.u16string().c_str(), u"rb");
    return object.ObjectFromBuffer(&stream) && stream.GetRemaining() == 0;
}

template <class T, void (T::*Export)(zulsys::CTextFile&) const>
bool WriteText(CAnyObject& object, const Path& path) {
    zulsys::CTextFile file;
    if (!file.Create(path.u16string().c_str())) return false;
    (dynamic_cast<T&>(object).*Export)(file);
    return file.Disconnect();
}
template <class T>
bool ReadBlock(CAnyObject& object, const Path& path) {
    zulsys::CTextFile file;
    if (!file.Connect(path.u16string().c_str())) return false;
    dynamic_cast<T&>(object).ImportParameters(file);
    return true;
}
template <class T>
bool ReadXml(CAnyObject& object, const Path& path) {
    zultest::ReadElement(Bytes(path), dynamic_cast<T&>(object));
    return true;
}

struct TKind {
    const char16_t* Name;
    void (*Fill)(CAnyObject& object, CRandom& random);
    std::vector<TForm> Forms;
};

template <class T>
TKind Kind(const char16_t* name) {
    return {name,
            [](CAnyObject& object, CRandom& random) { Fill(dynamic_cast<T&>(object), random); },
            {{".stored", WriteStored, ReadStored}}};
}
template <class T>
TKind Tool(const char16_t* name) {
    TKind kind = Kind<T>(name);
    kind.Forms.push_back({".txt", WriteText<T, &T::ExportParameters>, ReadBlock<T>});
    kind.Forms.push_back({".xml", WriteText<T, &T::ExportParametersEx>, ReadXml<T>});
    return kind;
}

/// Those that are referred to come first.
const std::vector<TKind>& Kinds() {
    static const std::vector<TKind> kinds = {
        Kind<zul::CFloat>(u"CFloat"),       Kind<zul::CFloat>(u"CLength"),
        Kind<zul::CInteger>(u"CInteger"),   Kind<zul::CPoint>(u"CPoint"),
        Kind<zul::CRect>(u"CRect"),         Kind<zul::CAnyBuffer>(u"CAnyBuffer"),
        Kind<zul::CPalette>(u"CPalette"),   Kind<zul::CGradient>(u"CGradient"),
        Kind<zul::CScaler>(u"CScaler"),     Kind<zul::CScaler>(u"CProjectiveScaler"),
        Kind<zul::CBitmap>(u"CBitmap"),     Kind<zul::CDibSection>(u"CDibSection"),
        Kind<zul::CImage>(u"CImage"),       Kind<zul::CRegion>(u"CRegion"),
        Kind<zul::CAnyArray>(u"CAnyArray"), Kind<zul::CAnyDictionary>(u"CAnyDictionary"),
        Tool<zul::CPen>(u"CPen"),           Tool<zul::CBrush>(u"CBrush"),
        Tool<zul::CFont>(u"CFont"),         Tool<zul::CBackground>(u"CBackground"),
        Kind<zul::CCanvas>(u"CCanvas"),
    };
    return kinds;
}

CAnyObject& Make(const char16_t* name, zul::CAnyRef& holder) {
    holder.DoAdoptInstance(zul::CClass::Create(name));
    return *holder.Peek();
}

/// What is wrong with a file that holds \p made, or null. \p scratch is a file that may be written.
const char* Fault(const TKind& kind, const TForm& form, CAnyObject& made, const Path& path,
                  const Path& scratch) {
    if (!form.Write(made, scratch)) return "cannot be written";
    const std::string given = Bytes(path);
    if (given != Bytes(scratch)) return "is written otherwise here";
    zul::CAnyRef holder;
    CAnyObject& fresh = Make(kind.Name, holder);
    if (!form.Read(fresh, path)) return "cannot be read";
    if (!form.Write(fresh, scratch) || given != Bytes(scratch)) return "does not come back";
    return nullptr;
}

class CSilent : public zul::CErrorHandler {
    void OnError(const zul::TErrorReport&) override {}
};

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc == 3 ? argv[1] : "";
    if (mode != "write" && mode != "read") {
        std::fprintf(stderr, "stored_files (write | read) DIR\n");
        return 2;
    }
    CSilent silent;  // images are not there, only their names
    const zul::CErrorHandlerScope scope(&silent);
    AutoRegister();
    zul::CClass::Register(new zul::CFactory<zul::CProjectiveScaler>, u"<class name='CProjectiveScaler'/>");
    zul::CClass::Register(new zul::CFactory<zul::CAnyArray>, u"<class name='CAnyArray'/>");
    zul::CClass::Register(new zul::CFactory<zul::CAnyDictionary>, u"<class name='CAnyDictionary'/>");
    const Path folder = argv[2], scratch = folder / "scratch";
    CRandom random(20);
    int files = 0, faults = 0;
    for (const TKind& kind : Kinds()) {
        for (int i = 0; i < kObjectsEach; ++i) {
            CAnyObject& made = Make(kind.Name, g_Objects.emplace_back());
            kind.Fill(made, random);
            for (const TForm& form : kind.Forms) {
                const Path path = folder / (Path(kind.Name).string() + std::to_string(i) + form.Ending);
                const char* fault = nullptr;
                if (mode == "read")
                    fault = Fault(kind, form, made, path, scratch);
                else if (!form.Write(made, path))
                    fault = "cannot be written";
                if (fault != nullptr) std::printf("%s: %s\n", path.string().c_str(), fault);
                faults += fault != nullptr ? 1 : 0;
                ++files;
            }
        }
    }
    std::filesystem::remove(scratch);
    std::printf("%d stored files, %d faults\n", files, faults);
    g_Objects.clear();
    return faults == 0 ? 0 : 1;
}
