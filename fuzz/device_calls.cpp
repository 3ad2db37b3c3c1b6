/// \file
/// Every call of the device, with handles, coordinates, modes and records of all kinds.
///
/// An input is a program: each step is a call, and what follows it are the call's arguments. Arguments are
/// drawn by their type: handles that are live, stale, stock, of another type, bent or null, records that are
/// there or null, lists of exactly the length that is told. Whatever the calls were, nothing may be drawn
/// outside a clip or in the padding of a row, a clip must change nothing inside it, and no handle may be
/// left.

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <tuple>
#include <type_traits>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "fuzz/frame/picture.h"
#include "platform/gdi.h"
#include "platform/software/display.h"
#include "platform/software/resources.h"
#include "platform/software/trace.h"

namespace {

using fuzz::Require;

constexpr int kSide = fuzz::Picture::kSide;
constexpr int kNear = 2 * kSide;
constexpr int kMaxSteps = 200;
/// A bitmap of more pixels would take its time by right.
constexpr std::int64_t kMaxPixels = 1 << 14;

const HMODULE kModule = reinterpret_cast<HMODULE>(std::uintptr_t{0x123450000});

/// The type of object that a typed handle among the arguments leads to; 0 for other types.
template <class T>
constexpr DWORD kTypeOf = 0;
template <>
constexpr DWORD kTypeOf<HDC> = OBJ_DC;
template <>
constexpr DWORD kTypeOf<HBRUSH> = OBJ_BRUSH;
template <>
constexpr DWORD kTypeOf<HBITMAP> = OBJ_BITMAP;
template <>
constexpr DWORD kTypeOf<HRGN> = OBJ_REGION;
template <>
constexpr DWORD kTypeOf<HPALETTE> = OBJ_PAL;

struct Header {
    BITMAPINFOHEADER header{};
    RGBQUAD colors[256]{};
};

class Program {
public:
    explicit Program(fuzz::Input& input) : m_Input(input), m_Picture(fuzz::Picture::SomeDepth(input)) {
        if (m_Input.Below(8) == 0) m_Recorder.emplace();
        Keep(m_Picture.Dc());
        Keep(m_Picture.Bitmap());
    }
    ~Program() {
        for (const Known& known : m_Known)
            if (known.type == OBJ_DC && !::DeleteDC(static_cast<HDC>(known.handle)))
                ::ReleaseDC(nullptr, static_cast<HDC>(known.handle));
        for (const Known& known : m_Known)
            ::DeleteObject(known.handle);
        device::RemoveBitmapResources(kModule);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Step();

private:
    struct Known {
        DWORD type;
        HGDIOBJ handle;
    };

    /// A call whose arguments mean nothing to one another.
    template <auto Function>
    void Call() {
        CallWith(Function, [this](auto&& call) { m_Picture.Guard(call); });
    }
    /// The same for one that may be made twice.
    template <auto Function>
    void CallTwice() {
        CallWith(Function, [this](auto&& call) { m_Picture.GuardCut(m_Input, call); });
    }
    template <class Result, class... Arguments, class Guard>
    void CallWith(Result (*function)(Arguments...), Guard&& guard) {
        std::tuple<Arguments...> arguments;
        std::apply([&](auto&... each) { (this->Draw(each), ...); }, arguments);
        guard([&] { Keep(std::apply(function, arguments)); });
    }

    using Method = void (Program::*)();
    template <auto Function>
    static constexpr Method kCall = &Program::Call<Function>;
    template <auto Function>
    static constexpr Method kTwice = &Program::CallTwice<Function>;

    // --- arguments by their type ---

    void Draw(int& value) { value = m_Input.Below(4) == 0 ? m_Input.Below(24) : m_Input.Number(kNear); }
    void Draw(UINT& value) {
        switch (m_Input.Below(4)) {
            case 0:
                value = static_cast<UINT>(m_Input.Below(24));
                break;
            case 1:
                value = static_cast<UINT>(m_Input.Below(256)) << 16;  // a raster operation
                break;
            case 2:
                value = static_cast<UINT>(m_Input.Below(3)) << 24 | static_cast<UINT>(m_Input.Below(300));
                break;
            default:
                value = m_Input.Any<UINT>();
        }
    }
    void Draw(HGDIOBJ& handle) { handle = Handle(static_cast<DWORD>(m_Input.Below(OBJ_MEMDC + 1))); }
    template <class T, std::enable_if_t<kTypeOf<T> != 0, int> = 0>
    void Draw(T& handle) {
        handle = static_cast<T>(Handle(kTypeOf<T>));
    }
    void Draw(HWND& window) { window = reinterpret_cast<HWND>(std::uintptr_t{m_Input.Below(8) == 7}); }
    void Draw(HMODULE& module) { module = m_Input.Below(8) == 7 ? nullptr : kModule; }
    void Draw(HRSRC& resource) {
        resource = m_Input.Below(4) == 0 ? reinterpret_cast<HRSRC>(m_Input.Any<std::uintptr_t>()) : m_Found;
    }
    void Draw(POINT& point) {
        Draw(point.x);
        Draw(point.y);
    }
    void Draw(RECT& rect) {
        Draw(rect.left);
        Draw(rect.top);
        Draw(rect.right);
        Draw(rect.bottom);
    }
    template <class T>
    void DrawRecord(T*& record, std::remove_const_t<T>& room) {
        record = m_Input.Below(8) == 7 ? nullptr : &room;
        if (record != nullptr) Draw(room);
    }
    void Draw(POINT*& point) { DrawRecord(point, m_Point); }
    void Draw(RECT*& rect) { DrawRecord(rect, m_Rect); }
    void Draw(const RECT*& rect) { DrawRecord(rect, m_Rects[m_NextRect++ % std::size(m_Rects)]); }

    /// Numbers and texts as names.
    void Draw(LPCWSTR& name) {
        name = m_Input.Flag() ? MAKEINTRESOURCEW(m_Input.Below(4)) : m_Input.Flag() ? u"#2" : u"Some\xD800";
    }

    HGDIOBJ Handle(DWORD type) {
        switch (m_Input.Below(40)) {
            case 0:
                return nullptr;
            case 1:
                return reinterpret_cast<HGDIOBJ>(std::uintptr_t{m_Input.Any<std::uint32_t>()});
            case 2:
                return reinterpret_cast<HGDIOBJ>(static_cast<std::uintptr_t>(m_Input.Below(32)));
            case 3:
                return ::GetStockObject(m_Input.Below(DEFAULT_PALETTE + 2));
            case 4:
                return OneKnown();
            case 5:
                return reinterpret_cast<HGDIOBJ>(reinterpret_cast<std::uintptr_t>(OneKnown()) ^
                                                 std::uintptr_t{1} << m_Input.Below(64));
            default:
                if (type == OBJ_DC && m_Input.Flag()) return m_Picture.Dc();
                return Newest(type);
        }
    }
    HGDIOBJ OneKnown() {
        return m_Known[static_cast<std::size_t>(m_Input.Below(static_cast<int>(m_Known.size())))].handle;
    }
    /// One of the last few of a type.
    HGDIOBJ Newest(DWORD type) {
        int skip = m_Input.Below(4);
        HGDIOBJ found = nullptr;
        for (auto known = m_Known.rbegin(); known != m_Known.rend() && skip >= 0; ++known)
            if (known->type == type && skip-- >= 0) found = known->handle;
        return found;
    }

    // --- results ---

    template <class T>
    void Keep(T result) {
        if constexpr (std::is_pointer_v<T>) KeepHandle(result);
    }
    void Keep(HRSRC found) { m_Found = found; }
    void KeepHandle(HGDIOBJ handle) {
        const DWORD type = ::GetObjectType(handle);
        const auto same = [handle](const Known& known) { return known.handle == handle; };
        if (type == 0 || std::any_of(m_Known.begin(), m_Known.end(), same)) return;
        m_Known.push_back({type == OBJ_MEMDC ? OBJ_DC : type, handle});
    }

    // --- lists and sizes ---

    WORD Depth() {
        return m_Input.Below(8) == 0 ? m_Input.Any<WORD>()
                                     : static_cast<WORD>(fuzz::Picture::SomeDepth(m_Input));
    }
    /// Any two numbers, but none that make a picture too large to handle fast and not so large that there is
    /// none.
    void DrawSize(int& width, int& height) {
        constexpr std::int64_t kNoPicture = std::int64_t{1} << 36;
        width = m_Input.Number(kSide);
        height = m_Input.Number(kSide);
        const auto area = [&] { return std::abs(std::int64_t{width}) * std::abs(std::int64_t{height}); };
        if (area() > kMaxPixels && area() < kNoPicture) width %= 128;
        if (area() > kMaxPixels && area() < kNoPicture) height %= 128;
    }
    std::vector<std::uint8_t> Bytes(std::size_t size) {
        std::string given = m_Input.Bytes(std::min<std::size_t>(size, 64));
        given.resize(size, '\x35');
        return {given.begin(), given.end()};
    }
    Header DrawHeader() {
        Header info;
        info.header.biSize = m_Input.Below(8) == 0 ? m_Input.Any<DWORD>() : sizeof info.header;
        DrawSize(info.header.biWidth, info.header.biHeight);
        info.header.biPlanes = m_Input.Below(8) == 0 ? m_Input.Any<WORD>() : 1;
        info.header.biBitCount = Depth();
        info.header.biCompression = static_cast<DWORD>(m_Input.Below(8) == 0 ? m_Input.Below(6) : 0);
        info.header.biClrUsed = m_Input.Below(4) == 0 ? m_Input.Any<DWORD>() : 0;
        const std::vector<std::uint8_t> colors = Bytes(sizeof info.colors);
        std::memcpy(info.colors, colors.data(), colors.size());
        return info;
    }

    // --- calls whose arguments depend on one another ---

    void SetDisplay() {
        device::DisplaySettings settings = SomeDisplay();
        device::SetDisplay(settings);
    }
    void OpenPrinter() { Keep(device::CreatePrinterPage(SomeDisplay())); }
    device::DisplaySettings SomeDisplay() {
        device::DisplaySettings settings;
        DrawSize(settings.width, settings.height);
        settings.bitsPerPixel = Depth();
        settings.dpiX = m_Input.Number(300);
        settings.dpiY = m_Input.Number(300);
        settings.widthMm = m_Input.Number(300);
        settings.heightMm = m_Input.Number(300);
        settings.marginX = m_Input.Number(9);
        settings.marginY = m_Input.Number(9);
        settings.smoothText = m_Input.Flag();
        return settings;
    }
    void GetObject() {
        HGDIOBJ object;
        Draw(object);
        std::vector<std::uint8_t> room(static_cast<std::size_t>(m_Input.Below(128)));
        ::GetObjectW(object, m_Input.Flag() ? static_cast<int>(room.size()) : -m_Input.Below(3),
                     m_Input.Below(8) == 0 ? nullptr : room.data());
    }
    void MakeBitmap() {
        int width, height;
        DrawSize(width, height);
        const UINT planes = m_Input.Below(8) == 0 ? m_Input.Any<UINT>() : 1, bits = Depth();
        const bool sane = width > 0 && height > 0 && bits <= 32 && std::int64_t{width} * height <= kMaxPixels;
        const auto pixels = Bytes(sane ? (static_cast<std::size_t>(width) * bits + 31) / 32 * 4 *
                                             static_cast<std::size_t>(height)
                                       : 0);
        Keep(::CreateBitmap(width, height, planes, bits, sane && m_Input.Flag() ? pixels.data() : nullptr));
    }
    void MakeCompatible() {
        HDC dc;
        Draw(dc);
        int width, height;
        DrawSize(width, height);
        Keep(::CreateCompatibleBitmap(dc, width, height));
    }
    void MakeSection() {
        HDC dc;
        Draw(dc);
        const Header info = DrawHeader();
        void* bits = nullptr;
        const HBITMAP made = ::CreateDIBSection(
            dc, m_Input.Below(16) == 0 ? nullptr : reinterpret_cast<const BITMAPINFO*>(&info),
            static_cast<UINT>(m_Input.Below(16) == 0), m_Input.Flag() ? &bits : nullptr, nullptr, 0);
        BITMAP description{};
        if (bits != nullptr && ::GetObjectW(made, sizeof description, &description) != 0) {
            Require(description.bmBits == bits, "a section tells where its pixels are");
            std::memset(bits, m_Input.Below(256),
                        static_cast<std::size_t>(description.bmWidthBytes) *
                            static_cast<std::size_t>(description.bmHeight));
        }
        Keep(made);
    }
    void Select() {
        ::SelectObject(m_Input.Flag() ? m_Picture.Dc() : static_cast<HDC>(Newest(OBJ_DC)), OneKnown());
    }
    // --- what callers make and use at once ---

    HBITMAP Noise() {
        const int width = 1 + m_Input.Below(40), height = 1 + m_Input.Below(40),
                  bits = fuzz::Picture::SomeDepth(m_Input);
        const auto pixels = Bytes(static_cast<std::size_t>((width * bits + 31) / 32 * 4 * height));
        const HBITMAP made = ::CreateBitmap(width, height, 1, static_cast<UINT>(bits), pixels.data());
        Keep(made);
        return made;
    }
    void Equip() {
        UINT color;
        Draw(color);
        HGDIOBJ tool = nullptr;
        switch (m_Input.Below(4)) {
            case 0:
                tool = ::CreatePen(m_Input.Flag() ? PS_DASH : PS_SOLID, m_Input.Below(2), color);
                break;
            case 1:
                tool = ::CreatePen(PS_SOLID, m_Input.Below(20), color);
                break;
            case 2:
                tool = ::CreateSolidBrush(color);
                break;
            default:
                tool = ::CreatePatternBrush(Noise());
        }
        Keep(tool);
        ::SelectObject(m_Picture.Dc(), tool);
    }
    void MakeSource() {
        const HDC dc = ::CreateCompatibleDC(nullptr);
        Keep(dc);
        ::SelectObject(dc, Noise());
    }
    void Clip() {
        const HRGN clip = ::CreateRectRgn(0, 0, kSide, kSide);
        for (int left = m_Input.Below(9); left > 0; --left) {
            const int x = m_Input.Below(kSide), y = m_Input.Below(kSide);
            const HRGN more = ::CreateRectRgn(x, y, x + m_Input.Below(kSide), y + m_Input.Below(kSide));
            ::CombineRgn(clip, clip, more, RGN_XOR);
            ::DeleteObject(more);
        }
        ::SelectClipRgn(m_Picture.Dc(), clip);
        ::DeleteObject(clip);
    }
    void MakePalette() {
        const std::size_t count =
            static_cast<std::size_t>(m_Input.Below(m_Input.Below(16) == 0 ? 65536 : 300));
        std::vector<std::uint8_t> bytes = Bytes(4 + 4 * count);
        auto* const description = reinterpret_cast<LOGPALETTE*>(bytes.data());
        description->palNumEntries = static_cast<WORD>(count);
        Keep(::CreatePalette(m_Input.Below(16) == 0 ? nullptr : description));
    }
    void PaletteEntries() {
        HPALETTE palette;
        Draw(palette);
        UINT start;
        Draw(start);
        std::vector<PALETTEENTRY> entries(static_cast<std::size_t>(m_Input.Below(300)));
        PALETTEENTRY* const list = m_Input.Below(8) == 0 ? nullptr : entries.data();
        const auto count = static_cast<UINT>(entries.size());
        if (m_Input.Flag()) {
            ::GetPaletteEntries(palette, start, count, list);
        } else {
            ::SetPaletteEntries(palette, start, count, list);
        }
    }
    void MakeFont() {
        LOGFONTW asked{};
        asked.lfHeight = m_Input.Below(80) - 40;
        asked.lfWidth = m_Input.Below(4) == 0 ? m_Input.Number(20) : 0;
        asked.lfEscapement = m_Input.Flag() ? 0 : m_Input.Number(3600);
        asked.lfWeight = 100 * m_Input.Below(12);
        asked.lfItalic = m_Input.Flag();
        asked.lfUnderline = m_Input.Flag();
        asked.lfStrikeOut = m_Input.Flag();
        asked.lfQuality = m_Input.Flag() ? NONANTIALIASED_QUALITY : DEFAULT_QUALITY;
        std::fill(std::begin(asked.lfFaceName), std::end(asked.lfFaceName), m_Input.Flag() ? u'x' : u'\0');
        Keep(::CreateFontIndirectW(m_Input.Below(16) == 0 ? nullptr : &asked));
    }
    void MeasureText() {
        HDC dc;
        Draw(dc);
        const std::u16string text = m_Input.Text(30);
        const std::vector<char16_t> units(text.begin(), text.end());
        std::vector<int> extents(units.size());
        int fit = 0, count = static_cast<int>(units.size());
        SIZE size{};
        if (m_Input.Below(16) == 0) count = -count;
        ::GetTextExtentExPointW(dc, m_Input.Below(16) == 0 ? nullptr : units.data(), count,
                                m_Input.Number(90), m_Input.Flag() ? &fit : nullptr,
                                m_Input.Flag() ? extents.data() : nullptr,
                                m_Input.Below(16) == 0 ? nullptr : &size);
    }
    void WriteText() {
        HDC dc;
        Draw(dc);
        const std::u16string text = m_Input.Text(30);
        const std::vector<char16_t> units(text.begin(), text.end());
        int x, y;
        Draw(x);
        Draw(y);
        const auto options = static_cast<UINT>(m_Input.Below(16) == 0);
        const char16_t* const list = m_Input.Below(16) == 0 ? nullptr : units.data();
        m_Picture.GuardCut(m_Input, [&] {
            ::ExtTextOutW(dc, x, y, options, nullptr, list, static_cast<UINT>(units.size()), nullptr);
        });
    }
    void AddResource() {
        const Header info = DrawHeader();
        std::vector<std::uint8_t> bytes = Bytes(sizeof info + 512);
        std::memcpy(bytes.data(), &info, sizeof info);
        bytes.resize(static_cast<std::size_t>(m_Input.Below(static_cast<int>(bytes.size()))));
        LPCWSTR name;
        Draw(name);
        device::RegisterBitmapResource(kModule, name, bytes.data(), bytes.size());
    }
    void ReadResource() {
        HMODULE module;
        Draw(module);
        LPCWSTR name;
        Draw(name);
        const HRSRC found = ::FindResourceW(module, name, RT_BITMAP);
        const auto* const bytes =
            static_cast<const std::uint8_t*>(::LockResource(::LoadResource(module, found)));
        int sum = 0;
        for (DWORD i = 0; bytes != nullptr && i < ::SizeofResource(module, found); ++i)
            sum += bytes[i];
        m_Point.x = sum;
    }
    void LoadImage() {
        HMODULE module;
        Draw(module);
        LPCWSTR name;
        Draw(name);
        int width = 0, height = 0;
        if (m_Input.Flag()) DrawSize(width, height);
        Keep(::LoadImageW(module, name, static_cast<UINT>(m_Input.Below(16) == 0), width, height,
                          m_Input.Flag() ? LR_CREATEDIBSECTION : LR_DEFAULTCOLOR));
    }
    void MakeRegion() {
        const std::size_t count = static_cast<std::size_t>(m_Input.Below(20));
        std::vector<std::uint8_t> bytes(sizeof(RGNDATAHEADER) + count * sizeof(RECT));
        RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, static_cast<DWORD>(count), 0, {}};
        if (m_Input.Below(8) == 0) Draw(header.dwSize);
        if (m_Input.Below(8) == 0) Draw(header.iType);
        if (m_Input.Below(8) == 0) Draw(header.nCount);
        std::memcpy(bytes.data(), &header, sizeof header);
        for (std::size_t i = 0; i < count; ++i) {
            RECT rect;
            Draw(rect);
            std::memcpy(bytes.data() + sizeof header + i * sizeof rect, &rect, sizeof rect);
        }
        if (m_Input.Below(8) == 0) bytes.resize(static_cast<std::size_t>(m_Input.Below(60)));
        Keep(::ExtCreateRegion(
            nullptr, static_cast<DWORD>(bytes.size()),
            m_Input.Below(16) == 0 ? nullptr : reinterpret_cast<const RGNDATA*>(bytes.data())));
    }
    void RegionData() {
        HRGN region;
        Draw(region);
        const DWORD size = ::GetRegionData(region, 0, nullptr);
        std::vector<std::uint8_t> room(m_Input.Below(4) == 0 ? static_cast<DWORD>(m_Input.Below(100)) : size);
        const DWORD written =
            ::GetRegionData(region, static_cast<DWORD>(room.size()), reinterpret_cast<RGNDATA*>(room.data()));
        if (size == 0 || room.size() < size) return;
        Require(written == size, "a region takes the bytes that it told");
        const HRGN same = ::ExtCreateRegion(nullptr, size, reinterpret_cast<const RGNDATA*>(room.data()));
        Require(::CombineRgn(same, region, same, RGN_XOR) == NULLREGION, "a region comes back from its data");
        ::DeleteObject(same);
    }
    void Poly() {
        HDC dc;
        Draw(dc);
        std::vector<POINT> points(static_cast<std::size_t>(m_Input.Below(24)));
        for (POINT& point : points)
            Draw(point);
        const int count = m_Input.Below(16) == 0 ? -m_Input.Below(3) : static_cast<int>(points.size());
        const POINT* const list = m_Input.Below(16) == 0 ? nullptr : points.data();
        const auto draw = m_Input.Flag() ? &::Polyline : &::Polygon;
        m_Picture.GuardCut(m_Input, [&] { draw(dc, list, count); });
    }
    void Gradient() {
        HDC dc;
        Draw(dc);
        std::vector<TRIVERTEX> vertices(static_cast<std::size_t>(m_Input.Below(9)));
        for (TRIVERTEX& vertex : vertices) {
            Draw(vertex.x);
            Draw(vertex.y);
            vertex.Red = m_Input.Any<COLOR16>();
            vertex.Green = m_Input.Any<COLOR16>();
            vertex.Blue = m_Input.Any<COLOR16>();
        }
        const auto mode = static_cast<ULONG>(m_Input.Below(4)), count = static_cast<ULONG>(m_Input.Below(6));
        std::vector<ULONG> mesh(count * (mode == GRADIENT_FILL_TRIANGLE ? 3 : 2));
        for (ULONG& corner : mesh)
            corner = static_cast<ULONG>(
                m_Input.Below(64) == 63 ? 8 : m_Input.Below(std::max(1, static_cast<int>(vertices.size()))));
        TRIVERTEX* const corners = m_Input.Below(16) == 0 ? nullptr : vertices.data();
        ULONG* const figures = m_Input.Below(16) == 0 ? nullptr : mesh.data();
        m_Picture.GuardCut(m_Input, [&] {
            ::GradientFill(dc, corners, static_cast<ULONG>(vertices.size()), figures, count, mode);
        });
    }

    fuzz::Input& m_Input;
    std::vector<Known> m_Known;
    fuzz::Picture m_Picture;
    HRSRC m_Found = nullptr;
    std::optional<device::Recorder> m_Recorder;
    POINT m_Point{};
    RECT m_Rect{}, m_Rects[2]{};
    unsigned m_NextRect = 0;
};

void Program::Step() {
    using P = Program;
    static constexpr Method kSteps[] = {
        // contexts and objects
        kCall<CreateCompatibleDC>, kCall<DeleteDC>, kCall<GetDC>, kCall<ReleaseDC>, kCall<GetDeviceCaps>,
        kCall<SelectObject>, &P::Select, kCall<GetCurrentObject>, kCall<DeleteObject>, kCall<GetStockObject>,
        kCall<GetObjectType>, &P::GetObject, kCall<GetLastError>, &P::SetDisplay, &P::OpenPrinter,
        // state
        kCall<SetROP2>, kCall<GetROP2>, kCall<SetBkMode>, kCall<GetBkMode>, kCall<SetBkColor>,
        kCall<GetBkColor>, kCall<SetTextColor>, kCall<GetTextColor>, kCall<SetStretchBltMode>,
        kCall<GetStretchBltMode>, kCall<SetBrushOrgEx>, kCall<GetBrushOrgEx>, kCall<GetSysColor>,
        kCall<GetSysColorBrush>,
        // tools, bitmaps, palettes
        kCall<CreatePen>, kCall<CreateSolidBrush>, kCall<CreatePatternBrush>, &P::MakeBitmap,
        &P::MakeCompatible, &P::MakeSection, kCall<GdiFlush>, &P::MakePalette, kCall<SelectPalette>,
        kCall<RealizePalette>, &P::PaletteEntries, kCall<GetNearestPaletteIndex>, kCall<GetNearestColor>,
        // text, images, resources
        &P::MakeFont, &P::MeasureText, &P::WriteText, &P::LoadImage, &P::AddResource, &P::ReadResource,
        kCall<FindResourceW>, kCall<LoadResource>, kCall<SizeofResource>,
        // regions and clips
        kCall<CreateRectRgn>, &P::MakeRegion, &P::RegionData, kCall<CombineRgn>, kCall<OffsetRgn>,
        kCall<PtInRegion>, kCall<GetRgnBox>, kCall<SelectClipRgn>, kCall<GetClipRgn>, kCall<GetClipBox>,
        kCall<ExcludeClipRect>};
    static constexpr Method kDrawing[] = {// what draws, and what it draws with
                                          &P::Equip,          &P::Equip,          &P::MakeSource,
                                          &P::Clip,           &P::Select,         kCall<MoveToEx>,
                                          kCall<LineTo>,      kCall<LineTo>,      &P::Poly,
                                          &P::Poly,           kTwice<Rectangle>,  kTwice<Ellipse>,
                                          kTwice<FillRect>,   kTwice<PatBlt>,     kCall<GetPixel>,
                                          kTwice<SetPixel>,   kTwice<BitBlt>,     kTwice<BitBlt>,
                                          kTwice<StretchBlt>, kTwice<StretchBlt>, kTwice<TransparentImage>,
                                          &P::Gradient,       kTwice<DrawEdge>,   kCall<ScrollDC>};
    const Method step = m_Input.Flag() ? m_Input.OneOf(kDrawing) : m_Input.OneOf(kSteps);
    (this->*step)();
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    device::DisplaySettings display;
    display.width = display.height = kSide;
    device::SetDisplay(display);
    Input input(data, size);
    Program program(input);
    for (int step = 0; step < kMaxSteps && input.IsLeft(); ++step)
        program.Step();
}
