/// \file
/// Fonts and texts of all kinds, drawn and measured through the device and through a canvas.
///
/// An input is a program: each byte chooses a step, and what follows it are the step's arguments. Whatever
/// the steps were, nothing may be drawn outside the clip, extents must add up, and no handle may be left.

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "fuzz/frame/picture.h"
#include "fuzz/frame/views.h"
#include "platform/gdi.h"
#include "platform/software/display.h"
#include "zul/canvas/canvas.h"
#include "zul/raster/bitmap.h"

namespace {

using fuzz::Input;
using fuzz::Require;

constexpr int kSide = fuzz::Picture::kSide;

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

/// The settings of a font's look, as bits.
constexpr int kStyles = 0x7FF;

class Program {
public:
    explicit Program(Input& input)
        : m_Input(input), m_Picture(fuzz::Picture::SomeDepth(input)), m_Rest(m_Picture.Dc()) {
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
        fuzz::TakeOverClip(m_Canvas);
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
    void SetView() { m_Canvas.SetScaler(m_Views.Change(m_Input)); }
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
    fuzz::Picture m_Picture;
    SelectedFont m_Rest;
    fuzz::Views m_Views;
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
