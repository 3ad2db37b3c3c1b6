// What draws, when memory runs out: the device's calls on surfaces of several depths, then the canvas's.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/faults/memory_faults.h"
#include "tests/faults/stored_state.h"
#include "zul/canvas/canvas.h"
#include "zul/scaler/projective_scaler.h"

namespace faults {
namespace {

constexpr int Side = 64;

/// What calls borrow from a context, and its clip.
std::string Borrowed(HDC dc) {
    RECT box{};
    const int kind = ::GetClipBox(dc, &box);
    std::string text;
    for (const long value : {long{::GetROP2(dc)}, long{::GetStretchBltMode(dc)}, long{kind}, long{box.left},
                             long{box.top}, long{box.right}, long{box.bottom}})
        text += std::to_string(value) + ' ';
    return text;
}

/// A context with a wide dashed pen, a pattern, a ragged clip and a font that has not been looked up, beside
/// a source of noise.
class CDevice : public CStage {
public:
    CDevice(int depth, bool drawsAllOrNothing) : m_HasPictureInState(drawsAllOrNothing) {
        struct {
            BITMAPINFOHEADER Header{sizeof(BITMAPINFOHEADER), Side, Side, 1, 0, BI_RGB, 0, 0, 0, 0, 0};
            RGBQUAD Colors[256];
        } info;
        info.Header.biBitCount = static_cast<WORD>(depth);
        for (unsigned i = 0; i < 256; ++i)
            info.Colors[i] = {static_cast<BYTE>(i * 7), static_cast<BYTE>(i * 13), static_cast<BYTE>(255 - i),
                              0};
        const auto* const description = reinterpret_cast<const BITMAPINFO*>(&info);
        m_Size = static_cast<std::size_t>(Side * Side * depth / 8);
        m_Bitmap = ::CreateDIBSection(nullptr, description, DIB_RGB_COLORS, &m_Bits, nullptr, 0);
        info.Header.biBitCount = 8;
        void* bits = nullptr;
        m_SourceBitmap = ::CreateDIBSection(nullptr, description, DIB_RGB_COLORS, &bits, nullptr, 0);
        for (unsigned i = 0; i < Side * Side; ++i)
            static_cast<BYTE*>(bits)[i] = static_cast<BYTE>(i * i >> 4);
        ::SelectObject(Dc, m_Bitmap);
        ::SelectObject(Source, m_SourceBitmap);
        const std::uint32_t rows[8] = {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81};
        const HBITMAP tile = ::CreateBitmap(8, 8, 1, 1, rows);
        m_Tools[0] = ::CreatePatternBrush(tile);
        ::DeleteObject(tile);
        m_Tools[1] = ::CreatePen(PS_SOLID, 3, 0x2040C0);
        LOGFONTW font{};
        font.lfHeight = -14;
        m_Tools[2] = ::CreateFontIndirectW(&font);
        for (const HGDIOBJ tool : m_Tools)
            ::SelectObject(Dc, tool);
        ::SetTextColor(Dc, 0x803010);
        ::SetBkColor(Dc, 0xF0C0A0);
        Region = ::CreateRectRgn(0, 0, Side, Side);
        Notch = ::CreateRectRgn(20, 20, 30, 30);
        ::CombineRgn(Region, Region, Notch, RGN_DIFF);
        ::SelectClipRgn(Dc, Region);
        Wipe();
    }
    ~CDevice() override {
        ::DeleteDC(Dc);
        ::DeleteDC(Source);
        for (const HGDIOBJ object : {m_Tools[0], m_Tools[1], m_Tools[2], HGDIOBJ{m_Bitmap},
                                     HGDIOBJ{m_SourceBitmap}, HGDIOBJ{Region}, HGDIOBJ{Notch}, Made})
            ::DeleteObject(object);
    }
    std::string State() override {
        RECT box{}, notch{};
        const int kind = ::GetRgnBox(Region, &box) * 10 + ::GetRgnBox(Notch, &notch);
        std::string text = Borrowed(Dc) + std::to_string(kind) + ' ' + std::to_string(box.right) + ' ' +
                           std::to_string(notch.right) + ' ' + std::to_string(::GetObjectType(Made));
        for (const UINT type : {OBJ_PEN, OBJ_BRUSH, OBJ_FONT, OBJ_BITMAP})
            text += ::GetObjectType(::GetCurrentObject(Dc, type)) == type ? '+' : '-';
        return m_HasPictureInState ? text + Picture() : text;
    }
    std::string Picture() override { return HashOf(m_Bits, m_Size); }
    void Wipe() override { std::memset(m_Bits, 0xFF, m_Size); }

    const HDC Dc = ::CreateCompatibleDC(nullptr);
    const HDC Source = ::CreateCompatibleDC(nullptr);
    HRGN Region, Notch;
    HGDIOBJ Made = nullptr;  ///< by the call

private:
    bool m_HasPictureInState;
    HBITMAP m_Bitmap, m_SourceBitmap;
    void* m_Bits = nullptr;
    std::size_t m_Size;
    HGDIOBJ m_Tools[3];
};

bool Keep(CDevice& stage, HGDIOBJ made) {
    stage.Made = made;
    return made != nullptr;
}

constexpr POINT Star[] = {{3, 3}, {60, 50}, {5, 50}, {60, 5}, {30, 62}};

const struct {
    const char* Name;
    bool (*Call)(CDevice&);
} DeviceCalls[] = {
    {"Polyline", [](CDevice& s) { return ::Polyline(s.Dc, Star, 5) != 0; }},
    {"Polyline dashed",
     [](CDevice& s) {
         const HPEN pen = ::CreatePen(PS_DASH, 1, 0x2040C0);
         const HGDIOBJ old = ::SelectObject(s.Dc, pen);
         const bool drawn = pen != nullptr && ::Polyline(s.Dc, Star, 5) != 0;
         ::SelectObject(s.Dc, old);
         ::DeleteObject(pen);
         return drawn;
     }},
    {"LineTo", [](CDevice& s) { return ::MoveToEx(s.Dc, 2, 2, nullptr) && ::LineTo(s.Dc, 50, 60); }},
    {"Polygon", [](CDevice& s) { return ::Polygon(s.Dc, Star, 5) != 0; }},
    {"Rectangle", [](CDevice& s) { return ::Rectangle(s.Dc, 4, 4, 60, 40) != 0; }},
    {"Ellipse", [](CDevice& s) { return ::Ellipse(s.Dc, 4, 4, 60, 40) != 0; }},
    {"FillRect",
     [](CDevice& s) {
         const RECT area{4, 4, 60, 40};
         return ::FillRect(s.Dc, &area, static_cast<HBRUSH>(::GetCurrentObject(s.Dc, OBJ_BRUSH))) != 0;
     }},
    {"PatBlt", [](CDevice& s) { return ::PatBlt(s.Dc, 4, 4, 50, 50, PATINVERT) != 0; }},
    {"SetPixel", [](CDevice& s) { return ::SetPixel(s.Dc, 5, 5, 0x123456) != CLR_INVALID; }},
    {"BitBlt", [](CDevice& s) { return ::BitBlt(s.Dc, 3, 3, 50, 50, s.Source, 1, 1, SRCCOPY) != 0; }},
    {"BitBlt within", [](CDevice& s) { return ::BitBlt(s.Dc, 3, 3, 50, 50, s.Dc, 5, 1, SRCINVERT) != 0; }},
    {"StretchBlt larger",
     [](CDevice& s) { return ::StretchBlt(s.Dc, 3, 3, 60, 60, s.Source, 1, 1, 40, 33, SRCCOPY) != 0; }},
    {"StretchBlt smaller",
     [](CDevice& s) { return ::StretchBlt(s.Dc, 3, 3, -20, 20, s.Source, 1, 1, 40, 33, SRCAND) != 0; }},
    {"TransparentImage",
     [](CDevice& s) {
         return ::TransparentImage(s.Dc, 3, 3, 50, 50, s.Source, 1, 1, 40, 40, 0x00FF0000) != 0;
     }},
    {"GradientFill",
     [](CDevice& s) {
         TRIVERTEX vertices[] = {
             {2, 2, 0xFF00, 0, 0, 0}, {60, 10, 0, 0xFF00, 0, 0}, {30, 60, 0, 0, 0xFF00, 0}};
         ULONG mesh[] = {0, 1, 2};
         return ::GradientFill(s.Dc, vertices, 3, mesh, 1, GRADIENT_FILL_TRIANGLE) != 0;
     }},
    {"DrawEdge",
     [](CDevice& s) {
         RECT area{4, 4, 60, 40};
         return ::DrawEdge(s.Dc, &area, BDR_RAISEDOUTER | BDR_RAISEDINNER, BF_RECT) != 0;
     }},
    {"ScrollDC",
     [](CDevice& s) {
         const RECT all{0, 0, Side, Side};
         return ::ScrollDC(s.Dc, 5, -3, &all, &all, s.Region, nullptr) != 0;
     }},
    {"ExtTextOut",
     [](CDevice& s) { return ::ExtTextOutW(s.Dc, 3, 9, 0, nullptr, u"Äg\u4E2D", 3, nullptr) != 0; }},
    {"ExtTextOut huge",
     [](CDevice& s) {
         LOGFONTW font{};
         font.lfHeight = -300;
         const HFONT huge = ::CreateFontIndirectW(&font);
         const HGDIOBJ old = ::SelectObject(s.Dc, huge);
         const bool drawn = huge != nullptr && ::ExtTextOutW(s.Dc, 3, -99, 0, nullptr, u"g", 1, nullptr) != 0;
         ::SelectObject(s.Dc, old);
         ::DeleteObject(huge);
         return drawn;
     }},
    {"GetTextExtent",
     [](CDevice& s) {
         SIZE size{};
         const bool measured = ::GetTextExtentExPointW(s.Dc, u"Ägäis", 5, 0, nullptr, nullptr, &size) != 0;
         return measured && ::SetPixel(s.Dc, size.cx, size.cy, 0) != CLR_INVALID;
     }},
    {"regions",
     [](CDevice& s) {
         return ::CombineRgn(s.Notch, s.Region, s.Notch, RGN_XOR) != ERROR &&
                ::OffsetRgn(s.Notch, 3, 3) != ERROR;
     }},
    {"SelectClipRgn", [](CDevice& s) { return ::SelectClipRgn(s.Dc, s.Notch) != ERROR; }},
    {"ExcludeClipRect", [](CDevice& s) { return ::ExcludeClipRect(s.Dc, 40, 40, 70, 50) != ERROR; }},
    {"GetClipRgn", [](CDevice& s) { return ::GetClipRgn(s.Dc, s.Notch) == 1; }},
    {"CreateCompatibleDC",
     [](CDevice& s) {
         return Keep(s, ::CreateCompatibleDC(s.Dc)) &&
                ::DeleteDC(static_cast<HDC>(std::exchange(s.Made, nullptr)));
     }},
    {"CreateBitmap", [](CDevice& s) { return Keep(s, ::CreateBitmap(9, 9, 1, 32, nullptr)); }},
    {"CreateCompatibleBitmap", [](CDevice& s) { return Keep(s, ::CreateCompatibleBitmap(s.Dc, 9, 9)); }},
    {"CreatePatternBrush",
     [](CDevice& s) {
         const HBITMAP tile = ::CreateBitmap(8, 8, 1, 1, nullptr);
         const bool made = tile != nullptr && Keep(s, ::CreatePatternBrush(tile));
         ::DeleteObject(tile);
         return made;
     }},
    {"CreateRectRgn", [](CDevice& s) { return Keep(s, ::CreateRectRgn(1, 1, 5, 5)); }},
    {"ExtCreateRegion",
     [](CDevice& s) {
         struct {
             RGNDATAHEADER Header{sizeof(RGNDATAHEADER), RDH_RECTANGLES, 3, 0, {0, 0, 40, 40}};
             RECT Boxes[3] = {{1, 1, 9, 9}, {4, 4, 20, 20}, {30, 2, 40, 40}};
         } data;
         return Keep(s, ::ExtCreateRegion(nullptr, sizeof data, reinterpret_cast<const RGNDATA*>(&data)));
     }},
    {"CreatePalette",
     [](CDevice& s) {
         const LOGPALETTE one{0x300, 1, {{1, 2, 3, 0}}};
         return Keep(s, ::CreatePalette(&one));
     }},
};

TEST(MemoryFaults, OfDeviceCalls) {
    std::vector<TPath> paths;
    for (const int depth : {1, 4, 8, 16, 24, 32}) {
        for (const auto& row : DeviceCalls) {
            // Most of what text needs does not depend on the pixels.
            const bool isText = std::strstr(row.Name, "Text") != nullptr;
            if (isText && depth != 1 && depth != 8 && depth != 32) continue;
            paths.push_back({std::string(row.Name) + " on " + std::to_string(depth),
                             [depth, isText] { return std::make_unique<CDevice>(depth, !isText); },
                             [&row](CStage& stage) { return row.Call(static_cast<CDevice&>(stage)); }});
        }
    }
    FailEachAllocation(paths);
}

/// A canvas with everything that can be set on it.
class CDrawing : public CStage {
public:
    CDrawing() {
        constexpr std::uint32_t rows[8] = {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81};
        Tile.Create(8, 8, 1, rows);
        Other.Create(40, 40, 8, Noise());
        Surface.Create(Side, Side, 32, nullptr);
        for (zul::CScaler* scaler : {&Scaler, static_cast<zul::CScaler*>(&Perspective)})
            scaler->InitScaler({0, 0, 640, 640}, {Side, Side}, {Side, Side}, 40.0, 1.0, 0.001);
        for (const zul::TPoint& point : {zul::TPoint{30, 30}, {600, 500}, {50, 500}, {900, 50}, {300, 620}})
            Ring.Append(point.X, point.Y);
        Gradient.Append(20, 20, 0x112233);
        Gradient.Append(600, 100, 0xFF0044);
        Gradient.Append(300, 600, 0x00FF00);
        Palette.Append(0x0000FF);
        Palette.Append(0x00FF00);
        Canvas.CreateMemoryCanvas();
        Canvas.AssignBitmap(&Surface);
        Canvas.SetScaler(&Scaler);
        Canvas.SetGradient(&Gradient);
        Canvas.GetPen().SetWidth(3);
        Canvas.GetBrush().SetColor(0x30A050);
        Canvas.GetBrush().SetPattern(&Tile);
        Canvas.GetFont().Default();
        Source.CreateMemoryCanvas();
        Source.AssignBitmap(&Other);
        Wipe();
    }
    std::string State() override {
        CStateStream ring;
        Ring.ObjectToBuffer(&ring);
        const HRGN region = Canvas.GetRegion().GetHandle();
        return StateOf({&Canvas.GetPen(), &Canvas.GetBrush(), &Canvas.GetFont(), &Canvas.GetBackground(),
                        &Scaler, &Gradient, &Palette}) +
               HashOf(ring.GetBuffer(), ring.GetSize()) + Borrowed(Canvas.GetHandle()) +
               (region ? "region " : "") + (Canvas.GetBitmap() ? "bitmap " : "") +
               (Canvas.GetPalette() ? "palette " : "");
    }
    std::string Picture() override {
        std::vector<std::int32_t> pixels;
        for (int i = 0; i < Side * Side; ++i)
            pixels.push_back(Canvas.GetPixel(i % Side, i / Side));
        return HashOf(pixels.data(), pixels.size() * sizeof pixels[0]);
    }
    void Wipe() override { ::PatBlt(Canvas.GetHandle(), 0, 0, Side, Side, WHITENESS); }

    static const void* Noise() {
        static const std::vector<std::uint32_t> noise = [] {
            std::vector<std::uint32_t> made(40 * 40);
            for (std::uint32_t i = 0; i < made.size(); ++i)
                made[i] = i * 2654435761u;
            return made;
        }();
        return noise.data();
    }

    zul::CBitmap Tile, Other, Surface;
    zul::CScaler Scaler;
    zul::CProjectiveScaler Perspective;
    zul::CGradient Gradient;
    zul::CPalette Palette;
    zul::CPoints Ring{true};
    zul::CCanvas Canvas, Source;
};

template <std::int32_t Style, std::int32_t Angle>
void SetFont(CDrawing& s) {
    s.Canvas.GetFont().SetStyle(Style);
    s.Canvas.GetFont().SetAngle(Angle);
    s.Canvas.GetBrush().SetType(zul::CBrush::BrushNone);  // as a frame leaves it
    s.Canvas.GetRegion().Create(100, 100, 600, 600, &s.Canvas, zul::CRegion::CombineReplace);
}

void OutText(CDrawing& s) {
    const zul::CString text(u"Ä\nby");
    s.Canvas.OutText(50, 50, 500, 400, &text);
}

void DrawNothing(CDrawing&) {}
void LookAlong(CDrawing& s) {
    s.Perspective.SetHorizonFraction(0.3);
    s.Canvas.SetScaler(&s.Perspective);
}

const struct {
    const char* Name;
    void (*Draw)(CDrawing&);
    void (*Prepare)(CDrawing&) = DrawNothing;
    bool KeepsState = true;
} CanvasCalls[] = {
    {"Polyline", [](CDrawing& s) { s.Canvas.Polyline(&s.Ring); }},
    {"Line", [](CDrawing& s) { s.Canvas.Line(20, 20, 600, 500); }},
    {"Polygon", [](CDrawing& s) { s.Canvas.Polygon(&s.Ring); }},
    {"Polygon uncut", [](CDrawing& s) { s.Canvas.Polygon(&s.Ring); },
     [](CDrawing& s) {
         s.Canvas.SetListClipping(false);
         s.Canvas.GetPen().SetType(zul::CPen::PenDashed);
         s.Canvas.GetPen().SetWidth(1);
         s.Canvas.GetBrush().SetType(zul::CBrush::BrushPattern);
     }},
    {"Rectangle", [](CDrawing& s) { s.Canvas.Rectangle(30, 30, 500, 400); }},
    {"Ellipse", [](CDrawing& s) { s.Canvas.Ellipse(30, 30, 500, 400); }},
    {"Circle", [](CDrawing& s) { s.Canvas.Circle(300, 300, 200); }},
    {"FillRect", [](CDrawing& s) { s.Canvas.FillRect(30, 30, 500, 400, nullptr); }},
    {"PatBlt", [](CDrawing& s) { s.Canvas.PatBlt(30, 30, 500, 400, zul::CBitmap::RopPatternInvert); }},
    {"DrawGradient",
     [](CDrawing& s) { s.Canvas.DrawGradient(nullptr, nullptr, 0, zul::CGradient::Triangles); }},
    {"XorLine",
     [](CDrawing& s) {
         s.Canvas.XorLine({30, 30}, {500, 400}, true);
     }},
    {"XorPolygon", [](CDrawing& s) { s.Canvas.XorPolygon(&s.Ring, true, true); }},
    {"XorRectangle",
     [](CDrawing& s) {
         s.Canvas.XorRectangle({30, 30}, {500, 400}, true, true);
     }},
    {"XorEllipse",
     [](CDrawing& s) {
         s.Canvas.XorEllipse({30, 30}, {500, 400}, true);
     }},
    {"DrawEdge",
     [](CDrawing& s) { s.Canvas.DrawEdge(3, 3, 50, 40, zul::CCanvas::EdgeBump, zul::CCanvas::SideAll); }},
    {"Scroll",
     [](CDrawing& s) {
         s.Canvas.Scroll(3, 3, {0, 0, Side, Side});
     }},
    {"BitBlt from a canvas",
     [](CDrawing& s) { s.Canvas.BitBlt(3, 3, 30, 30, &s.Source, 0, 0, zul::CBitmap::RopSourceCopy); }},
    {"BitBlt from a bitmap",
     [](CDrawing& s) { s.Canvas.BitBlt(&s.Tile, 3, 3, 8, 8, 0, 0, zul::CBitmap::RopSourceInvert); }},
    {"StretchBlt",
     [](CDrawing& s) {
         s.Canvas.StretchBlt(3, 3, 50, 50, &s.Source, 0, 0, 40, 40, zul::CBitmap::RopSourceCopy);
     }},
    {"Transparent", [](CDrawing& s) { s.Canvas.Transparent(3, 3, 50, 50, &s.Source, 0, 0, 40, 40, 0); }},
    {"OutText",
     [](CDrawing& s) {
         const zul::CString text(u"Äg");
         s.Canvas.OutText(&text, 50, 500);
     },
     [](CDrawing& s) { s.Canvas.GetFont().SetOreol(2); }},
    {"OutText clipped", OutText, SetFont<zul::CFont::StyleClipping, 0>},
    {"OutText fitted and framed", OutText, SetFont<zul::CFont::StyleInscribed | zul::CFont::StyleFramed, 0>},
    {"OutText turned", OutText, SetFont<zul::CFont::StyleFramed | zul::CFont::StyleItalic, 300>},
    {"GetTextWidth", [](CDrawing& s) { s.Canvas.SetPixel(s.Canvas.GetTextWidth(u"Ägäis", 5), 9, 0); }},
    {"Polyline in perspective", [](CDrawing& s) { s.Canvas.Polyline(&s.Ring); }, LookAlong},
    {"Polygon in perspective", [](CDrawing& s) { s.Canvas.Polygon(&s.Ring); }, LookAlong},
    {"Ellipse in perspective", [](CDrawing& s) { s.Canvas.Ellipse(30, 30, 500, 400); }, LookAlong},
    {"OutText in perspective", OutText, LookAlong},
    {"Create a region",
     [](CDrawing& s) {
         s.Canvas.GetRegion().Create(30, 30, 500, 400, &s.Canvas, zul::CRegion::CombineReplace);
     }},
    {"Create a region of a bitmap",
     [](CDrawing& s) { s.Canvas.GetRegion().Create(&s.Tile, 0, &s.Canvas, zul::CRegion::CombineReplace); }},
    {"Move a region", [](CDrawing& s) { s.Canvas.GetRegion().Offset(3, 3, &s.Canvas); },
     [](CDrawing& s) {
         s.Canvas.GetRegion().Create(30, 30, 500, 400, &s.Canvas, zul::CRegion::CombineReplace);
         s.Canvas.GetRegion().Create(90, 90, 300, 200, &s.Canvas, zul::CRegion::CombineXor);
     }},
    {"Exclude from a region",
     [](CDrawing& s) { s.Canvas.GetRegion().ExcludeClipRect(&s.Canvas, 30, 30, 50, 50); }},
    {"ApplyCanvas", [](CDrawing& s) { s.Canvas.ApplyCanvas(&s.Source, true); },
     [](CDrawing& s) {
         s.Source.SetPalette(&s.Palette);
         s.Source.SetGradient(&s.Gradient);
         s.Source.GetFont().SetName(u"Some longer name");
         s.Canvas.SetGradient(nullptr);
     },
     false},
    {"SetPalette", [](CDrawing& s) { s.Canvas.SetPalette(&s.Palette); }},
    {"Select a palette",
     [](CDrawing& s) {
         s.Palette.Select(&s.Canvas);
         s.Palette.Realize(&s.Canvas);
     }},
    {"AssignBitmap", [](CDrawing& s) { s.Canvas.AssignBitmap(&s.Surface); },
     [](CDrawing& s) { s.Canvas.AssignBitmap(nullptr); }},
    {"CreateMemoryCanvas", [](CDrawing& s) { s.Canvas.CreateMemoryCanvas(); }, DrawNothing, false},
};

TPath MakePath(const std::string& name, void (*draw)(CDrawing&),
               const std::function<void(CDrawing&)>& prepare, bool keepsState = true) {
    const auto make = [prepare] {
        auto stage = std::make_unique<CDrawing>();
        prepare(*stage);
        return stage;
    };
    const auto call = [draw](CStage& stage) {
        draw(static_cast<CDrawing&>(stage));
        return true;
    };
    return {name, make, call, keepsState};
}

TEST(MemoryFaults, OfCanvasCalls) {
    std::vector<TPath> paths;
    for (const auto& row : CanvasCalls)
        paths.push_back(MakePath(row.Name, row.Draw, row.Prepare, row.KeepsState));
    FailEachAllocation(paths);
}

TEST(MemoryFaults, OfPens) {
    constexpr std::int32_t bothEnds = 0x3F;
    std::vector<TPath> paths;
    for (zul::CPen::TPenStyle style = 0; style < zul::CPen::GetExtendedStylesCount(); ++style) {
        const auto prepare = [style](CDrawing& s) {
            zul::CPen& pen = s.Canvas.GetPen();
            pen.Create(zul::CPen::PenExtended, style, 4, 0x2040C0, bothEnds, 3, 0xC08020);
            pen.Validate(&s.Canvas);  // a style that has no pen becomes a solid one
            pen.Release(&s.Canvas);
        };
        const std::string number = std::to_string(style);
        paths.push_back(MakePath(
            "Polyline of style " + number, [](CDrawing& s) { s.Canvas.Polyline(&s.Ring); }, prepare));
        paths.push_back(MakePath(
            "Rectangle of style " + number, [](CDrawing& s) { s.Canvas.Rectangle(30, 30, 500, 400); },
            prepare));
    }
    FailEachAllocation(paths);
}

}  // namespace
}  // namespace faults
