/// \file
/// Fonts and texts of all kinds, drawn and measured through the device and through a canvas.
///
/// An input is a program: each byte chooses a step, and what follows it are the step's arguments. Whatever
/// the steps were, nothing may be drawn outside the clip, extents must add up, and no handle may be left.

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "platform/gdi.h"
#include "platform/software/display.h"
#include "zul/canvas/canvas.h"
#include "zul/raster/bitmap.h"
#include "zul/scaler/projective_scaler.h"

namespace {

using fuzz::Input;
using fuzz::Require;

constexpr int kSide = 90;

/// Tenths of a degree.
int Angle(Input& input) {
    return input.Flag() ? 0 : input.Flag() ? input.Below(3600) : input.Number(2 * kSide);
}

std::u16string Text(Input& input) {
    return input.Text(input.Below(16) == 0 ? 3000 : 20);
}

std::u16string Face(Input& input) {
    constexpr const char16_t* kFaces[] = {u"",
                                          u"Liberation Sans",
                                          u"Liberation Serif",
                                          u"DejaVu Sans Mono",
                                          u"No such face",
                                          u"\xD800\xDC00\xDC00"};
    return input.OneOf(kFaces);
}

/// A memory context with a picture of some depth.
class Picture {
public:
    explicit Picture(int bits)
        : m_Bits(bits),
          m_RowBytes((kSide * bits + 31) / 32 * 4),
          m_BottomUp(bits == 24),
          m_Dc(::CreateCompatibleDC(nullptr)) {
        struct {
            BITMAPINFOHEADER header{};
            RGBQUAD colors[256]{};
        } info;
        info.header.biSize = sizeof info.header;
        info.header.biWidth = kSide;
        info.header.biHeight = m_BottomUp ? kSide : -kSide;
        info.header.biPlanes = 1;
        info.header.biBitCount = static_cast<WORD>(bits);
        for (int i = 0; i < 256; ++i) {
            const auto level = static_cast<BYTE>(i * (bits == 1 ? 255 : bits == 4 ? 17 : 1));
            info.colors[i] = {level, level, static_cast<BYTE>(255 - level), 0};
        }
        m_Bitmap = ::CreateDIBSection(m_Dc, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS,
                                      &m_Memory, nullptr, 0);
        m_Old = ::SelectObject(m_Dc, m_Bitmap);
    }
    ~Picture() {
        ::SelectObject(m_Dc, m_Old);
        ::DeleteDC(m_Dc);
        ::DeleteObject(m_Bitmap);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    HDC Dc() const { return m_Dc; }

    /// Runs \p draw and requires that it left alone what the clip excludes.
    template <class Draw>
    void Guard(Draw&& draw) {
        const HRGN clip = ::CreateRectRgn(0, 0, 0, 0);
        const bool clipped = ::GetClipRgn(m_Dc, clip) == 1;
        std::vector<std::uint32_t> outside;
        const auto forOutside = [&](auto use) {
            for (int y = 0; clipped && y < kSide; y += 3) {
                for (int x = 0; x < kSide; x += 2)
                    if (!::PtInRegion(clip, x, y)) use(PixelAt(x, y));
            }
        };
        forOutside([&](std::uint32_t pixel) { outside.push_back(pixel); });
        draw();
        std::size_t next = 0;
        forOutside([&](std::uint32_t pixel) { Require(pixel == outside[next++], "the clip"); });
        ::DeleteObject(clip);
    }

private:
    /// Read past the clip, which GetPixel respects.
    std::uint32_t PixelAt(int x, int y) const {
        const int row = m_BottomUp ? kSide - 1 - y : y;
        const auto* bytes = static_cast<const std::uint8_t*>(m_Memory) + row * m_RowBytes;
        if (m_Bits < 8) return (bytes[x * m_Bits / 8] >> (8 - m_Bits - x * m_Bits % 8)) & ((1 << m_Bits) - 1);
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, bytes + x * (m_Bits / 8), static_cast<std::size_t>(m_Bits / 8));
        return pixel;
    }

    int m_Bits, m_RowBytes;
    bool m_BottomUp;
    HDC m_Dc;
    HBITMAP m_Bitmap = nullptr;
    HGDIOBJ m_Old = nullptr;
    void* m_Memory = nullptr;
};

/// The settings of a font's look, as bits.
constexpr int kStyles = 0x7FF;

class Program {
public:
    explicit Program(Input& input) : m_Input(input), m_Picture(Depth(input)), m_Rest(m_Picture.Dc()) {
        m_Canvas.AttachToDevice(m_Picture.Dc());
        SetFont();
    }
    ~Program() {
        m_Canvas.SetScaler(nullptr);
        m_Canvas.Release();
        m_Rest.Drop();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void Step() {
        using Method = void (Program::*)();
        constexpr Method kSteps[] = {&Program::SelectFont,     &Program::SetColors, &Program::SetClip,
                                     &Program::Write,          &Program::Write,     &Program::Measure,
                                     &Program::SetCache,       &Program::SetFont,   &Program::SetView,
                                     &Program::SetModes,       &Program::OutText,   &Program::OutText,
                                     &Program::MeasureOnCanvas};
        (this->*kSteps[m_Input.Below(std::size(kSteps))])();
    }

private:
    /// The device font that the program selected last, beside the canvas's own.
    class SelectedFont {
    public:
        explicit SelectedFont(HDC dc) : m_Dc(dc) {}
        ~SelectedFont() { Drop(); }
        SelectedFont(const SelectedFont&) = delete;
        SelectedFont& operator=(const SelectedFont&) = delete;

        void Select(const LOGFONTW& asked) {
            const HFONT font = ::CreateFontIndirectW(&asked);
            ::SelectObject(m_Dc, font);
            ::DeleteObject(m_Font);
            m_Font = font;
        }
        void Drop() {
            ::SelectObject(m_Dc, ::GetStockObject(SYSTEM_FONT));
            ::DeleteObject(std::exchange(m_Font, nullptr));
        }

    private:
        HDC m_Dc;
        HFONT m_Font = nullptr;
    };

    static int Depth(Input& input) {
        constexpr int kDepths[] = {1, 4, 8, 16, 24, 32};
        return kDepths[input.Below(std::size(kDepths))];
    }

    int Number() { return m_Input.Number(2 * kSide); }

    // --- by the device's calls ---

    void SelectFont() {
        LOGFONTW asked{};
        asked.lfHeight = Number();
        asked.lfWidth = m_Input.Flag() ? 0 : Number();
        asked.lfEscapement = Angle(m_Input);
        asked.lfWeight = 100 * m_Input.Below(12);
        asked.lfItalic = m_Input.Flag();
        asked.lfUnderline = m_Input.Flag();
        asked.lfStrikeOut = m_Input.Flag();
        asked.lfQuality = m_Input.Flag() ? NONANTIALIASED_QUALITY : DEFAULT_QUALITY;
        asked.lfPitchAndFamily = static_cast<BYTE>(m_Input.Below(256));
        const std::u16string face = Face(m_Input);
        std::copy(face.begin(), face.end(), asked.lfFaceName);
        m_Rest.Select(asked);
    }
    void SetColors() {
        ::SetTextColor(m_Picture.Dc(), static_cast<COLORREF>(Number()));
        ::SetBkColor(m_Picture.Dc(), static_cast<COLORREF>(Number()));
        ::SetBkMode(m_Picture.Dc(), m_Input.Flag() ? OPAQUE : TRANSPARENT);
    }
    void SetClip() {
        const HRGN clip = ::CreateRectRgn(Number(), Number(), Number(), Number());
        for (int left = m_Input.Below(6); left > 0; --left) {
            const HRGN more = ::CreateRectRgn(m_Input.Below(kSide), m_Input.Below(kSide),
                                              m_Input.Below(kSide), m_Input.Below(kSide));
            ::CombineRgn(clip, clip, more, RGN_XOR);
            ::DeleteObject(more);
        }
        ::SelectClipRgn(m_Picture.Dc(), m_Input.Below(4) == 0 ? nullptr : clip);
        ::DeleteObject(clip);
    }
    void Write() {
        const std::u16string text = Text(m_Input);
        const int x = Number(), y = Number();
        m_Picture.Guard([&] {
            ::ExtTextOutW(m_Picture.Dc(), x, y, 0, nullptr, text.data(), static_cast<UINT>(text.size()),
                          nullptr);
        });
    }
    void Measure() {
        const std::u16string text = Text(m_Input);
        const int room = Number(), count = static_cast<int>(text.size());
        std::vector<int> ends(text.size());
        int fit = -1;
        SIZE size{}, same{};
        ::GetTextExtentExPointW(m_Picture.Dc(), text.data(), count, room, &fit, ends.data(), &size);
        ::GetTextExtentExPointW(m_Picture.Dc(), text.data(), count, 0, nullptr, nullptr, &same);
        Require(size.cx == same.cx && size.cy == same.cy, "a size depends on what else is asked");
        Require(std::is_sorted(ends.begin(), ends.end()), "extents grow");
        Require(size.cx == (ends.empty() ? 0 : ends.back()), "the last extent is the width");
        const auto within = std::count_if(ends.begin(), ends.end(), [=](int end) { return end <= room; });
        Require(fit == (room < 0 ? count : within), "what fits");
    }
    void SetCache() {
        constexpr std::size_t kBytes[] = {0, 1000, 30000, std::size_t{4} << 20};
        device::SetTextSettings({kBytes[m_Input.Below(std::size(kBytes))], m_Input.Below(4) != 0});
    }

    // --- by the canvas ---

    void SetFont() {
        zul::CFont& font = m_Canvas.GetFont();
        font.Create(Face(m_Input).c_str(), Number(), Number(), Angle(m_Input));
        font.SetStyle(m_Input.Below(kStyles + 1));
        font.SetAlignment(m_Input.Below(64));
        font.SetOreolColor(Number());
    }
    void SetView() {
        zul::CScaler* const scaler = m_Input.Flag() ? &m_Flat : &m_Projective;
        const int width = Number(), height = Number();
        scaler->InitScaler({Number(), Number(), Number(), Number()}, {kSide, kSide}, {width, height},
                           Number() / 10.0, Number() / 10.0, Number() / 100.0);
        scaler->SetVisibleBox(Number(), Number(), Number(), Number(), m_Input.Flag());
        scaler->SetRotationAngle(m_Input.Flag() ? 0 : Number() / 3.0);
        m_Canvas.SetScaler(m_Input.Below(4) == 0 ? nullptr : scaler);
    }
    void SetModes() {
        m_Canvas.SetPretranslation(m_Input.Flag());
        m_Canvas.SetBlackLinesMode(m_Input.Flag());
        m_Canvas.GetBackground().SetMode(m_Input.Below(3));
        m_Canvas.GetBackground().SetColor(Number());
        m_Canvas.GetBackground().SetRop(m_Input.Below(6) == 0);
    }
    void OutText() {
        const zul::CString text(Text(m_Input).c_str());
        const int x = Number(), y = Number(), right = Number(), top = Number();
        const bool atPoint = m_Input.Flag();
        m_Picture.Guard([&] {
            if (atPoint) {
                m_Canvas.OutText(&text, x, y);
            } else {
                m_Canvas.OutText(x, y, right, top, &text);
            }
        });
    }
    void MeasureOnCanvas() {
        const std::u16string text = Text(m_Input);
        int width = -1, height = -1;
        m_Canvas.GetTextSize(text.c_str(), m_Input.Below(static_cast<int>(text.size()) + 1), width, height);
        Require(width >= 0 && height >= 0, "a size is not negative");
    }

    Input& m_Input;
    Picture m_Picture;
    SelectedFont m_Rest;
    zul::CScaler m_Flat;
    zul::CProjectiveScaler m_Projective;
    zul::CCanvas m_Canvas;
};

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    device::SetTextSettings({});
    Input input(data, size);
    Program program(input);
    while (input.IsLeft())
        program.Step();
}
