/// \file
/// Every method of the canvas, its region, its tools and its bitmaps, in any order, with arguments of all
/// kinds.
///
/// An input is a program: each step is a call, and what follows it are the call's arguments; those that mean
/// nothing to one another are drawn by their type. The canvas is attached to a picture, a memory device, a
/// printer or nothing. Whatever the steps were, nothing may be drawn outside a clip, and no handle may be
/// left, be it that reports throw or not.

#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "fuzz/frame/picture.h"
#include "fuzz/frame/reporting.h"
#include "fuzz/frame/views.h"
#include "platform/software/display.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/rect.h"
#include "zul/raster/dib_section.h"

namespace {

using fuzz::Picture;
using fuzz::Require;
using zul::CCanvas;
using zul::CString;

constexpr int kNear = 2 * Picture::kSide;
constexpr int kMaxSteps = 60;
constexpr int kMaxPoints = 10;

class Program {
public:
    explicit Program(fuzz::Input& input)
        : m_Input(input), m_Picture(Picture::SomeDepth(input)), m_Reporting(input.Below(4) == 0) {
        m_Canvas.AttachToDevice(m_Picture.Dc());
        m_Other.CreateMemoryCanvas();
        m_Bitmap.Create(Picture::kSide, 9, 32, nullptr);
        m_Section.Create(9, Picture::kSide, Picture::SomeDepth(input), nullptr);
        m_Other.AssignBitmap(&m_Section);
    }
    ~Program() {
        for (CCanvas* canvas : {&m_Canvas, &m_Other}) {
            fuzz::Reporting::Try([&] { canvas->AssignBitmap(nullptr); });
            canvas->Release();
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Step();

private:
    /// A method of some object, with arguments drawn by their types.
    template <auto Method>
    void Call() {
        CallWith(Method);
    }
    template <class Result, class Class, class... Arguments>
    void CallWith(Result (Class::*method)(Arguments...)) {
        CallOn<Arguments...>(One<Class>(), method);
    }
    template <class Result, class Class, class... Arguments>
    void CallWith(Result (Class::*method)(Arguments...) const) {
        CallOn<Arguments...>(One<Class>(), method);
    }
    template <class... Arguments, class Class, class Method>
    void CallOn(Class& object, Method method) {
        std::tuple<Room<Arguments>...> arguments;
        std::apply([&](auto&... each) { (this->Draw(each), ...); }, arguments);
        if (m_Canvas.GetFont().IsClipping()) fuzz::Reporting::Try([&] { fuzz::TakeOverClip(m_Canvas); });
        m_Picture.Guard([&] {
            fuzz::Reporting::Try([&] {
                std::apply([&](auto&... each) { static_cast<void>((object.*method)(each...)); }, arguments);
            });
        });
    }
    /// Where an argument lies that may be handed over by reference.
    template <class T>
    using Room = std::remove_const_t<std::remove_reference_t<T>>;

    template <class Class>
    Class& One() {
        CCanvas& canvas = Canvas();
        if constexpr (std::is_same_v<Class, zul::CPen>) {
            return canvas.GetPen();
        } else if constexpr (std::is_same_v<Class, zul::CBrush>) {
            return canvas.GetBrush();
        } else if constexpr (std::is_same_v<Class, zul::CFont>) {
            return canvas.GetFont();
        } else if constexpr (std::is_same_v<Class, zul::CBackground>) {
            return canvas.GetBackground();
        } else if constexpr (std::is_same_v<Class, zul::CRegion>) {
            return canvas.GetRegion();
        } else if constexpr (std::is_same_v<Class, zul::CPalette>) {
            return m_Palette;
        } else if constexpr (std::is_same_v<Class, zul::CGradient>) {
            return m_Gradient;
        } else if constexpr (std::is_same_v<Class, zul::CBitmap>) {
            return Bitmap();
        } else if constexpr (std::is_same_v<Class, zul::CDibSection>) {
            return m_Section;
        } else {
            return canvas;
        }
    }
    CCanvas& Canvas() { return m_Input.Below(4) == 3 ? m_Other : m_Canvas; }
    zul::CBitmap& Bitmap() { return m_Input.Flag() ? m_Bitmap : m_Section; }

    using Method = void (Program::*)();
    template <auto Function>
    static constexpr Method kCall = &Program::Call<Function>;

    // --- arguments by their type ---

    void Draw(std::int32_t& value) {
        value = m_Input.Below(4) == 0 ? m_Input.Below(24) : m_Input.Number(kNear);
    }
    void Draw(std::uint32_t& value) { value = static_cast<std::uint32_t>(m_Input.Number(20)); }
    void Draw(std::int16_t& value) { value = zul::WrapToCoord(m_Input.Number(kNear)); }
    void Draw(bool& value) { value = m_Input.Flag(); }
    void Draw(double& value) { value = m_Input.Real(kNear); }
    template <class T, std::enable_if_t<std::is_enum_v<T>, int> = 0>
    void Draw(T& value) {
        value = static_cast<T>(m_Input.Below(9) == 8 ? m_Input.Number(kNear) : m_Input.Below(8));
    }
    void Draw(zul::TLongPoint& point) { DrawAll(point.X, point.Y); }
    void Draw(zul::TLongRect& rect) { DrawAll(rect.MinX, rect.MinY, rect.MaxX, rect.MaxY); }
    void Draw(zul::CGradient::TBlend& blend) {
        blend = {m_Input.Any<std::uint8_t>(), 0, m_Input.Any<std::uint8_t>(), 0};
    }
    void Draw(CString& text) { text = CString(m_Input.Text(20).c_str()); }
    template <class... Values>
    void DrawAll(Values&... values) {
        (this->Draw(values), ...);
    }

    void Draw(const CString*& text) {
        Draw(m_Text);
        text = OrNull(&m_Text);
    }
    void Draw(CCanvas*& canvas) { canvas = OrNull(&Canvas()); }
    void Draw(zul::CBitmap*& bitmap) { bitmap = OrNull(&Bitmap()); }
    void Draw(zul::CBrush*& brush) { brush = OrNull(&Canvas().GetBrush()); }
    void Draw(zul::CPalette*& palette) { palette = OrNull(&m_Palette); }
    void Draw(zul::CGradient*& gradient) { gradient = OrNull(&m_Gradient); }
    void Draw(const zul::CPen*& pen) { pen = OrNull(&Canvas().GetPen()); }
    void Draw(const zul::CFont*& font) { font = OrNull(&Canvas().GetFont()); }
    void Draw(const zul::CBackground*& background) { background = OrNull(&Canvas().GetBackground()); }
    void Draw(const zul::CRegion*& region) { region = OrNull(&Canvas().GetRegion()); }
    void Draw(const zul::CPalette*& palette) { palette = OrNull(&m_Palette); }
    void Draw(const zul::CGradient*& gradient) { gradient = OrNull(&m_Gradient); }
    void Draw(zul::CPoints*& points) {
        m_List.Clear();
        for (int left = m_Input.Below(kMaxPoints); left > 0; --left) {
            zul::TCoord x, y;
            DrawAll(x, y);
            m_List.Append(x, y);
        }
        points = OrNull(&m_List);
    }
    void Draw(std::int32_t*& number) {
        Draw(m_Number);
        number = OrNull(&m_Number);
    }
    void Draw(const zul::CPoints*& points) {
        zul::CPoints* list;
        Draw(list);
        points = list;
    }
    template <class T>
    T* OrNull(T* object) {
        return m_Input.Below(8) == 7 ? nullptr : object;
    }

    // --- calls whose arguments depend on one another ---

    void Attach() {
        CCanvas& canvas = Canvas();
        device::DisplaySettings page;
        page.width = page.height = Picture::kSide;
        page.bitsPerPixel = Picture::SomeDepth(m_Input);
        switch (m_Input.Below(8)) {
            case 0:
                return canvas.Release();
            case 1:
                return canvas.CreateMemoryCanvas();
            case 2:
                return canvas.AttachToDevice(device::CreatePrinterPage(page), true);
            case 3: {
                const HDC former = canvas.GetHandle();
                canvas.AttachToDevice(::CreateCompatibleDC(nullptr), true, false, true);
                if (former != m_Picture.Dc()) ::DeleteDC(former);  // which is ours now, if it is still there
                return;
            }
            default:
                return m_Canvas.AttachToDevice(m_Picture.Dc());
        }
    }
    void SetView() { m_Canvas.SetScaler(m_Views.Change(m_Input)); }
    void MakeBitmap() {
        const int width = m_Input.Number(40), height = m_Input.Number(40);
        // What is larger takes its time by right, unless it is refused.
        if (std::abs(std::int64_t{width} * height) > 10000) return;
        Bitmap().Create(width, height,
                        m_Input.Below(4) == 0 ? m_Input.Number(40) : Picture::SomeDepth(m_Input), nullptr);
    }
    void MakeNoise() {
        const int width = 1 + m_Input.Below(40), height = 1 + m_Input.Below(40),
                  bits = Picture::SomeDepth(m_Input);
        std::string pixels = m_Input.Bytes(64);
        pixels.resize(static_cast<std::size_t>((width * bits + 31) / 32 * 4 * height), '\x35');
        m_Bitmap.Create(width, height, bits, pixels.data());
        m_Canvas.GetBrush().SetPattern(&m_Bitmap);
        if (m_Input.Flag()) m_Canvas.GetBrush().SetType(zul::CBrush::BrushPattern);
    }
    void MakeCompatible() {
        const int width = m_Input.Below(50), height = m_Input.Below(50);
        CCanvas* canvas;
        Draw(canvas);
        Bitmap().CreateCompatible(width, height, canvas);
    }
    void Extract() {
        std::int32_t x, y;
        DrawAll(x, y);
        const int width = m_Input.Number(40), height = m_Input.Number(40);
        if (std::abs(std::int64_t{width} * height) > 10000) return;
        const std::unique_ptr<zul::CBitmap> made(m_Input.Flag() ? Bitmap().ExtractBitmap(x, y, width, height)
                                                                : Bitmap().Stretch(width, height));
        m_Canvas.BitBlt(made.get(), 0, 0, kNear, kNear, x, y, zul::CBitmap::RopSourceCopy);
    }
    void Handles() {
        const HBITMAP handle = m_Bitmap.DetachHandle();
        if (m_Input.Flag()) {
            m_Bitmap.AttachHandle(handle);
            m_Bitmap.Clear();
        }
        ::DeleteObject(handle);
    }
    void Lists() {
        std::vector<zul::TLongPoint> points(static_cast<std::size_t>(m_Input.Below(kMaxPoints)));
        for (zul::TLongPoint& point : points)
            Draw(point);
        std::vector<zul::TPoint> small;
        for (const zul::TLongPoint& point : points)
            small.push_back(zul::WrapToPoint(point.X, point.Y));
        const auto count = static_cast<std::int32_t>(points.size());
        const int half[] = {count / 2, count - count / 2};
        const int which = m_Input.Below(5);
        m_Picture.GuardCut(m_Input, [&] {
            fuzz::Reporting::Try([&] {
                switch (which) {
                    case 0:
                        return m_Canvas.Polyline(small.data(), count);
                    case 1:
                        return m_Canvas.Polygon(small.data(), count);
                    case 2:
                        return m_Canvas.Polyline(points.data(), count);
                    case 3:
                        return m_Canvas.Polygon(points.data(), count);
                    default:
                        return m_Canvas.PolyPolygon(points.data(), half, 2);
                }
            });
        });
    }
    void Gradient() {
        zul::CPoints* list = nullptr;
        Draw(list);
        std::int32_t x, y, edge, center;
        DrawAll(x, y, edge, center);
        zul::CBuffer<std::int32_t> corners;
        const std::int32_t count = m_Gradient.CreateRadial(list, x, y, edge, center, corners);
        if (m_Input.Flag() && corners.GetCount() != 0)
            corners[static_cast<std::uint32_t>(m_Input.Below(static_cast<int>(corners.GetCount())))] =
                m_Input.Number(20);
        const std::int32_t* const figures = OrNull(corners.GetBuffer());
        const auto mode = static_cast<zul::CGradient::TMode>(m_Input.Below(4));
        m_Picture.GuardCut(m_Input, [&] {
            fuzz::Reporting::Try([&] { m_Canvas.DrawGradient(&m_Gradient, figures, count, mode); });
        });
    }
    void PaletteEntries() {
        std::vector<std::int32_t> colors(static_cast<std::size_t>(m_Input.Below(20)));
        m_Palette.GetEntries(colors.data(), m_Input.Number(20), static_cast<std::int32_t>(colors.size()));
    }
    void Paint() {
        zul::CRect rect(0, 0, 0, 0);
        std::int16_t x1, y1, x2, y2;
        DrawAll(x1, y1, x2, y2);
        rect.SetValue(x1, y1, x2, y2, m_Input.Flag());
        m_Canvas.Draw(&rect, nullptr);
        m_Canvas.FillRect(rect, nullptr);
        m_Canvas.Draw(&Bitmap(), nullptr);
    }

    fuzz::Input& m_Input;
    Picture m_Picture;
    fuzz::Reporting m_Reporting;
    fuzz::Views m_Views;
    zul::CBitmap m_Bitmap;
    zul::CDibSection m_Section;
    zul::CPalette m_Palette;
    zul::CGradient m_Gradient;
    zul::CPoints m_List{true};
    CString m_Text;
    std::int32_t m_Number = 0;
    CCanvas m_Canvas, m_Other;
};

/// Shorter names for what has overloads.
using Long = std::int32_t;
template <class... Arguments>
using OfCanvas = void (CCanvas::*)(Arguments...);

void Program::Step() {
    using P = Program;
    using zul::CBackground;
    using zul::CBitmap;
    using zul::CBrush;
    using zul::CDibSection;
    using zul::CFont;
    using zul::CGradient;
    using zul::CPalette;
    using zul::CPen;
    using zul::CPoints;
    using zul::CRegion;
    static constexpr Method kSteps[] = {
        // device, modes, tools
        &P::Attach, &P::SetView, &P::SetView, kCall<&CCanvas::AssignBitmap>, kCall<&CCanvas::SetPalette>,
        kCall<&CCanvas::SetGradient>, kCall<&CCanvas::ApplyCanvas>, kCall<&CCanvas::SetTextColor>,
        kCall<&CCanvas::SetPretranslation>, kCall<&CCanvas::SetLinesOnlyMode>,
        kCall<&CCanvas::SetBlackLinesMode>, kCall<&CCanvas::SetListClipping>, kCall<&CCanvas::GetDeviceCaps>,
        kCall<&CCanvas::GetDeviceSize>, kCall<&CCanvas::GetResolution>, kCall<&CCanvas::GetPhysicalOffset>,
        kCall<&CCanvas::GetPhysicalSize>, kCall<&CCanvas::GetDPI>, kCall<&CCanvas::GetBitsPixel>,
        kCall<&CPen::Create>, kCall<&CPen::SetScaled>, kCall<&CPen::ApplyPen>, kCall<&CPen::Validate>,
        kCall<&CPen::Release>, kCall<&CBrush::Create>, kCall<&CBrush::CreateXor>,
        kCall<&CBrush::CreateSysColorBrush>, kCall<&CBrush::SetPattern>, kCall<&CBrush::SetOrigin>,
        kCall<&CBrush::ApplyBrush>, kCall<&CBrush::GetHandle>, kCall<&CBrush::Validate>,
        kCall<&CBrush::Release>, kCall<&CFont::SetHeight>, kCall<&CFont::SetStyle>, kCall<&CFont::SetAngle>,
        kCall<&CFont::SetAlignment>, kCall<&CFont::ApplyFont>, kCall<&CFont::GetHandle>,
        kCall<&CFont::Validate>, kCall<&CFont::Release>, kCall<&CFont::MetersToLogical>,
        kCall<&CBackground::SetColor>, kCall<&CBackground::SetMode>, kCall<&CBackground::SetRop>,
        kCall<&CBackground::ApplyBackground>, kCall<&CBackground::Validate>,
        // region
        kCall<static_cast<void (CRegion::*)(Long, Long, Long, Long, CCanvas*, CRegion::TCombine)>(
            &CRegion::Create)>,
        kCall<static_cast<void (CRegion::*)(CPoints*, CCanvas*, CRegion::TCombine)>(&CRegion::Create)>,
        kCall<static_cast<void (CRegion::*)(CBitmap*, Long, CCanvas*, CRegion::TCombine)>(&CRegion::Create)>,
        kCall<&CRegion::ApplyRegion>, kCall<&CRegion::Offset>, kCall<&CRegion::ExcludeClipRect>,
        kCall<&CRegion::SetNullRegion>, kCall<&CRegion::SaveRegion>, kCall<&CRegion::RestoreRegion>,
        kCall<&CRegion::IsInside>, kCall<&CRegion::GetRegionBox>,
        // palette, gradient
        kCall<&CPalette::SetType>, kCall<&CPalette::Append>, kCall<&CPalette::Append>,
        kCall<&CPalette::Delete>, kCall<&CPalette::SetColor>, kCall<&CPalette::Clear>,
        kCall<&CPalette::ApplyPalette>, kCall<&CPalette::Select>, kCall<&CPalette::Realize>,
        kCall<&CPalette::Release>, kCall<&CPalette::GetNearestIndex>, &P::PaletteEntries,
        kCall<&CGradient::Append>, kCall<&CGradient::SetVertex>, kCall<&CGradient::GetColor>,
        kCall<&CGradient::ApplyGradient>, kCall<&CCanvas::GradientFill>, &P::Gradient,
        // bitmaps
        &P::MakeBitmap, &P::MakeNoise, &P::MakeNoise, &P::MakeCompatible, &P::Extract, &P::Handles,
        kCall<&CBitmap::Clear>, kCall<&CBitmap::ExtractBitsFromHandle>, kCall<&CBitmap::GetHandle>,
        kCall<&CBitmap::GetBits>, kCall<&CBitmap::GetBitmapMaskColor>, kCall<&CBitmap::Fill>,
        kCall<&CBitmap::StretchBlt>,
        kCall<static_cast<void (CBitmap::*)(CCanvas*, Long, Long, Long, Long, Long, Long, CBitmap::TRop)>(
            &CBitmap::BitBlt)>,
        kCall<static_cast<void (CBitmap::*)(CBitmap*, Long, Long, Long, Long, Long, Long, CBitmap::TRop)>(
            &CBitmap::BitBlt)>,
        kCall<&CBitmap::Transparent>, kCall<&CBitmap::AlphaBlend>, kCall<&CBitmap::AlphaFade>,
        kCall<&CDibSection::GetPixel>, kCall<&CDibSection::SetPixel>,
        // navigation, coordinates
        kCall<&CCanvas::Zoom>, kCall<&CCanvas::PlaceToCenter>, kCall<&CCanvas::Scroll>,
        kCall<static_cast<OfCanvas<Long&, Long&>>(&CCanvas::PreparePoint)>, kCall<&CCanvas::PrepareLength>};
    static constexpr Method kDrawing[] = {
        // figures
        &P::Lists, &P::Lists, &P::Lists, &P::Gradient, &P::Paint, kCall<&CCanvas::MoveTo>,
        kCall<&CCanvas::LineTo>, kCall<&CCanvas::Line>,
        kCall<static_cast<OfCanvas<CPoints*>>(&CCanvas::Polyline)>,
        kCall<static_cast<OfCanvas<CPoints*>>(&CCanvas::Polygon)>, kCall<&CCanvas::Rectangle>,
        kCall<&CCanvas::Ellipse>, kCall<&CCanvas::Circle>,
        kCall<static_cast<OfCanvas<Long, Long, Long, Long, CBrush*>>(&CCanvas::FillRect)>,
        kCall<&CCanvas::PatBlt>, kCall<&CCanvas::XorLine>, kCall<&CCanvas::XorSector>,
        kCall<&CCanvas::XorPolygon>, kCall<&CCanvas::XorRectangle>, kCall<&CCanvas::XorEllipse>,
        kCall<&CCanvas::DrawEdge>, kCall<&CCanvas::Arc>, kCall<&CCanvas::AngleArc>, kCall<&CCanvas::Pie>,
        kCall<&CCanvas::Chord>, kCall<&CCanvas::PolyBezier>, kCall<&CCanvas::FloodFill>,
        // pixels and blocks
        kCall<&CCanvas::GetPixel>, kCall<&CCanvas::SetPixel>, kCall<&CCanvas::Pixel>,
        kCall<static_cast<OfCanvas<Long, Long, Long, Long, CCanvas*, Long, Long, CBitmap::TRop>>(
            &CCanvas::BitBlt)>,
        kCall<static_cast<OfCanvas<CBitmap*, Long, Long, Long, Long, Long, Long, CBitmap::TRop>>(
            &CCanvas::BitBlt)>,
        kCall<static_cast<OfCanvas<Long, Long, Long, Long, CCanvas*, Long, Long, Long, Long, CBitmap::TRop>>(
            &CCanvas::StretchBlt)>,
        kCall<static_cast<OfCanvas<CBitmap*, Long, Long, Long, Long, Long, Long, Long, Long, CBitmap::TRop>>(
            &CCanvas::StretchBlt)>,
        kCall<&CCanvas::Transparent>, kCall<&CCanvas::AlphaBlend>,
        // text
        kCall<static_cast<OfCanvas<const CString*, Long, Long>>(&CCanvas::OutText)>,
        kCall<static_cast<OfCanvas<Long, Long, Long, Long, const CString*>>(&CCanvas::OutText)>,
        kCall<static_cast<OfCanvas<const CString*, Long&, Long&>>(&CCanvas::GetTextSize)>,
        kCall<static_cast<Long (CCanvas::*)(const CString*)>(&CCanvas::GetTextHeight)>};
    const Method step = m_Input.Flag() ? m_Input.OneOf(kDrawing) : m_Input.OneOf(kSteps);
    fuzz::Reporting::Try([&] { (this->*step)(); });
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Program program(input);
    for (int step = 0; step < kMaxSteps && input.IsLeft(); ++step)
        program.Step();
}
