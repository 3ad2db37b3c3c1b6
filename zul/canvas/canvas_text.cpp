#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <utility>

#include "zul/canvas/canvas.h"
#include "zul/geometry/point.h"
#include "zul/kernel/client.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/device_answers.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

/// As far as the first zero, which ends a text that is shorter than its caller says.
std::int64_t CountCharacters(const char16_t* text, std::int64_t length) {
    // No pointer goes as far as the caller says: that may be past the end of memory.
    std::int64_t count = 0;
    while (text && count < length && text[count] != u'\0')
        ++count;
    return count;
}

/// Looks at four characters at a time, the last ones perhaps twice.
bool HasZero(const char16_t* text, std::size_t count) {
    constexpr std::size_t Block = 4;
    if (count < Block) return std::find(text, text + count, u'\0') != text + count;
    constexpr std::uint64_t Ones = 0x0001000100010001u, Highs = 0x8000800080008000u;
    const auto zeros = [text](std::size_t at) {
        std::uint64_t units;
        std::memcpy(&units, text + at, sizeof units);
        return (units - Ones) & ~units & Highs;
    };
    std::uint64_t found = zeros(count - Block);
    for (std::size_t at = 0; at + Block < count; at += Block)
        found |= zeros(at);
    return found != 0;
}

/// Lines are passed on where they stand in the text, as far as their first zero; few have one.
int LengthOf(const char16_t* text, std::int64_t length) {
    const std::int64_t count = std::min<std::int64_t>(length, std::numeric_limits<int>::max());
    const bool whole = count < 1 || !HasZero(text, static_cast<std::size_t>(count));
    return static_cast<int>(whole ? std::max<std::int64_t>(count, 0) : CountCharacters(text, count));
}

TLongPoint Saturated(std::int64_t x, std::int64_t y) {
    return {SaturateToLong(x), SaturateToLong(y)};
}

void TurnAbout(TLongPoint& point, TCoord centreX, TCoord centreY, double degrees) {
    TCoord x = WrapToCoord(point.X);
    TCoord y = WrapToCoord(point.Y);
    CPoint::Rotate(x, y, centreX, centreY, degrees);
    point = {x, y};
}

/// What a text in a rectangle changes for its own time. It is put back too when an error handler throws.
class CBorrowedState {
public:
    explicit CBorrowedState(CCanvas& canvas) : m_Canvas(canvas) {}
    ~CBorrowedState() {
        try {
            PutBack();
        } catch (...) {
            // Another error is on its way already.
        }
    }
    CBorrowedState(const CBorrowedState&) = delete;
    CBorrowedState& operator=(const CBorrowedState&) = delete;

    void SaveHeight() {
        m_Height = m_Canvas.GetFont().GetHeight();
        m_HasHeight = true;
    }
    void SaveClip() {
        m_Canvas.GetRegion().SaveRegion(&m_Canvas);
        m_HasClip = true;
    }
    void PutBack() {
        if (std::exchange(m_HasClip, false)) m_Canvas.GetRegion().RestoreRegion(&m_Canvas);
        if (std::exchange(m_HasHeight, false)) m_Canvas.GetFont().SetHeight(m_Height);
    }
    /// What was changed stays so.
    void Leave() { m_HasClip = m_HasHeight = false; }

private:
    CCanvas& m_Canvas;
    std::int32_t m_Height = 0;
    bool m_HasHeight = false;
    bool m_HasClip = false;
};

}  // namespace

/// A text set into a rectangle, in map units where the canvas maps, else in pixels. What is worked out from
/// 32-bit numbers has 64 bits, so that sums and products fit.
struct CCanvas::TTextBlock {
    std::int64_t Left, Bottom, Right, Top;  ///< Bottom is y1 as given, so in pixels the upper side
    std::int64_t Width, Height;             ///< negative where the corners were given the other way round
    std::int32_t Angle;                     ///< of the lines, tenths of a degree
    double ViewAngle;                       ///< degrees by which the view turns the map
    /// Against the direction from one line to the next. A canvas with a scaler counts upwards even while it
    /// does not pretranslate, which callers rely on.
    std::int64_t Up;
    bool IsFramed;

    std::int64_t Lines = 0;
    TTextIterator Longest{};  ///< the first of equally long ones
    std::int64_t LongestIndex = 0;
    std::int64_t LongestWidth = 0;
    std::int64_t LineHeight = 0;

    std::int64_t CentreX = 0;
    std::int64_t StartY = 0;

    std::int64_t TotalHeight() const { return LineHeight * Lines; }

    void CountLines(const CString& text) {
        TTextIterator line;
        for (bool found = text.FindFirstLine(line); found; found = text.FindNextLine(line), ++Lines) {
            if (Lines > 0 && line.Length <= Longest.Length) continue;
            Longest = line;
            LongestIndex = Lines;
        }
    }
};

// --- measuring ---

inline TSize CCanvas::Measure(const char16_t* text, std::int64_t length) {
    if (!text || length < 1) return {0, 0};
    m_Font.Validate(this);
    SIZE size{0, 0};
    // A size that is not true would put the text somewhere else.
    NeedMemory(::GetTextExtentExPointW(m_Device, text, LengthOf(text, length), 0, nullptr, nullptr, &size) ||
               ::GetLastError() != ERROR_NOT_ENOUGH_MEMORY);
    return {size.cx, size.cy};
}

void CCanvas::GetTextSize(const CString* text, std::int32_t& width, std::int32_t& height) {
    const TSize size = text ? Measure(text->GetBuffer(), text->GetLength()) : TSize{0, 0};
    width = size.Width;
    height = size.Height;
}

std::int32_t CCanvas::GetTextWidth(const CString* text) {
    return text ? Measure(text->GetBuffer(), text->GetLength()).Width : 0;
}

std::int32_t CCanvas::GetTextHeight(const CString* text) {
    if (!text || text->IsEmpty()) return 0;
    m_Font.Validate(this);
    if (!m_Device) {
        CClient::RaiseException(this, u"internal", u"Device == NULL");
        return 0;
    }
    return Measure(text->GetBuffer(), text->GetLength()).Height;
}

void CCanvas::GetTextSize(const char16_t* text, std::int32_t length, std::int32_t& width,
                          std::int32_t& height) {
    const TSize size = Measure(text, CountCharacters(text, length));
    width = size.Width;
    height = size.Height;
}

std::int32_t CCanvas::GetTextWidth(const char16_t* text, std::int32_t length) {
    return Measure(text, CountCharacters(text, length)).Width;
}

std::int32_t CCanvas::GetTextHeight(const char16_t* text, std::int32_t length) {
    return Measure(text, CountCharacters(text, length)).Height;
}

// --- drawing ---

void CCanvas::DrawTextRun(TLongPoint at, const char16_t* text, std::int64_t length) {
    const auto count = static_cast<UINT>(LengthOf(text, length));
    const auto put = [&](std::int64_t dx, std::int64_t dy) {
        const TLongPoint place = Saturated(at.X + dx, at.Y + dy);
        return IsDone(::ExtTextOutW(m_Device, place.X, place.Y, 0, nullptr, text, count, nullptr), this,
                      u"CCanvas::OutText");
    };
    const std::int32_t halo = m_BlackLines ? 0 : m_Font.GetOreol();
    if (halo != 0) {
        const CTextColorSelection color(m_Device, m_Font.GetOreolColor(), m_Font.GetTextColor());
        for (std::int32_t i = 1; i <= halo; ++i) {
            if (!put(-i, 0) || !put(i, 0) || !put(0, -i) || !put(0, i)) return;
        }
    }
    put(0, 0);
}

void CCanvas::OutText(const CString* text, std::int32_t x, std::int32_t y) {
    if (!text || text->IsEmpty() || !IsInFront({x, y}, {x, y})) return;
    m_Background.Validate(this);
    m_Font.Validate(this);
    PreparePoint(x, y);
    DrawTextRun({x, y}, text->GetBuffer(), text->GetLength());
}

void CCanvas::OutText(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                      const CString* text) {
    if (!text || text->IsEmpty()) return;
    const std::int32_t angle = m_Font.GetAngle();
    const CScaler* scaler = GetMapping();
    TTextBlock block{x1,
                     y1,
                     x2,
                     y2,
                     std::int64_t{x2} - x1,
                     std::int64_t{y2} - y1,
                     m_PretranslateCoords ? angle : SaturateToLong(-std::int64_t{angle}),
                     scaler ? scaler->GetRotationAngle() : 0.0,
                     m_Scaler.IsExist() ? 1 : -1,
                     m_Font.GetFramed() && !m_Font.GetInscribed()};
    block.CountLines(*text);
    m_Background.Validate(this);

    const bool boxOnly = m_Background.GetRop() == CBackground::RopXor;
    if (boxOnly || (m_Font.GetFramed() && m_Font.GetInscribed())) DrawTextBox(block, {x1, y1}, {x2, y2});
    if (boxOnly) return;

    CBorrowedState state(*this);
    const char16_t* longest = text->GetBuffer() + block.Longest.Position;
    const TSize size = Measure(longest, block.Longest.Length);
    block.LongestWidth = ToOwnUnit(size.Width);
    block.LineHeight = ToOwnUnit(size.Height);
    if (m_Font.GetInscribed()) {
        state.SaveHeight();
        FitText(block, longest);
    }
    LayOutText(block);
    if (block.Angle == 0 && !block.IsFramed && m_Font.IsClipping()) {
        state.SaveClip();
        const TLongPoint low = Saturated(block.Left, block.Bottom);
        const TLongPoint high = Saturated(block.Right, block.Top);
        m_Region.Create(low.X, low.Y, high.X, high.Y, this, CRegion::CombineAnd);
    }
    if (DrawTextLines(block, *text)) {
        state.PutBack();
    } else {
        // Clip and height stay: callers that draw on in a perspective view have come to count on it.
        state.Leave();
    }
}

// --- setting a text into a rectangle ---

std::int64_t CCanvas::ToOwnUnit(std::int32_t pixels) {
    const CScaler* scaler = GetMapping();
    return scaler ? scaler->ScreenToMap(pixels) : pixels;
}

void CCanvas::FitText(TTextBlock& block, const char16_t* longest) {
    const std::int64_t total = block.TotalHeight();
    if (block.LongestWidth == 0 || total == 0) return;
    const double across = static_cast<double>(block.Width) / static_cast<double>(block.LongestWidth);
    const double down = static_cast<double>(block.Height) / static_cast<double>(total);
    const std::int64_t height = m_Font.GetHeight();
    const std::int64_t fitting =
        across > down ? height * block.Height / total : height * block.Width / block.LongestWidth;
    if (fitting == height) return;
    m_Font.SetHeight(SaturateToLong(fitting));
    block.LineHeight = ToOwnUnit(Measure(longest, block.Longest.Length).Height);
}

void CCanvas::LayOutText(TTextBlock& block) {
    const CScaler* scaler = GetMapping();
    block.CentreX = (block.Left + block.Right) >> 1;
    std::int64_t centreY = (block.Bottom + block.Top) >> 1;
    if (block.ViewAngle != 0.0 && scaler) {
        TLongPoint centre{WrapToCoord(block.CentreX), WrapToCoord(centreY)};
        TCoord pivotX = 0, pivotY = 0;
        scaler->GetPivotPoint(pivotX, pivotY);
        TurnAbout(centre, pivotX, pivotY, block.ViewAngle);
        block.CentreX = centre.X;
        centreY = centre.Y;
        block.Left = block.CentreX - (block.Width >> 1);
        block.Right = block.Left + block.Width;
        // Top comes out below bottom on purpose: turned maps have been labelled so.
        block.Top = centreY - (block.Height >> 1);
        block.Bottom = block.Top + block.Height;
    }

    const std::int32_t alignment = m_Font.GetAlignment();
    const bool atTop = (alignment & CFont::AlignTop) != 0;
    const bool atBottom = !atTop && (alignment & CFont::AlignBottom) != 0;
    const std::int64_t total = block.TotalHeight();
    // Turned letters reach above their line.
    const bool isOblique = block.Angle % 900 != 0;
    const std::int64_t lift = isOblique ? (block.LineHeight >> 3) + (block.LineHeight >> 5) : 0;
    if (scaler) {
        block.StartY = atTop ? block.Top : atBottom ? block.Bottom + total : centreY + (total >> 1);
        block.StartY += lift;
    } else {
        const std::int64_t lowest = block.Top - total;
        block.StartY = atTop ? block.Bottom : atBottom ? lowest : lowest - ((block.Height - total) >> 1);
        block.StartY -= lift;
    }
}

bool CCanvas::DrawTextLines(const TTextBlock& block, const CString& text) {
    const std::int32_t alignment = m_Font.GetAlignment();
    const TCoord cornerX = WrapToCoord(block.Left), cornerY = WrapToCoord(block.Top);
    TTextIterator line;
    std::int64_t index = 0;
    for (bool found = text.FindFirstLine(line); found; found = text.FindNextLine(line), ++index) {
        const char16_t* characters = text.GetBuffer() + line.Position;
        const std::int64_t y = block.StartY - block.Up * block.LineHeight * index;
        std::int64_t x = block.Left;
        if (!(alignment & CFont::AlignLeft)) {
            const std::int64_t width = ToOwnUnit(Measure(characters, line.Length).Width);
            x = alignment & CFont::AlignRight ? block.Right - width : block.CentreX - (width >> 1);
        }
        if (block.IsFramed && index == block.LongestIndex) DrawTextFrame(block, x, y);

        TLongPoint at = Saturated(x, y);
        if (block.Angle != 0) TurnAbout(at, cornerX, cornerY, block.Angle / 10.0);
        if (!IsInFront(at, at)) return false;
        if (const CScaler* mapping = GetMapping()) mapping->MapToScreen(at.X, at.Y, at.X, at.Y);
        const CScaler* scaler = GetScaler();
        if (scaler && !scaler->IsDepthVisible(at.Y)) return false;
        DrawTextRun(at, characters, line.Length);
    }
    return true;
}

/// Around the whole block, whose longest line starts at (x, y).
void CCanvas::DrawTextFrame(const TTextBlock& block, std::int64_t x, std::int64_t y) {
    const std::int32_t half = m_Font.GetHeight() / 2;
    const std::int64_t margin = m_Font.IsScaled() ? half : ToOwnUnit(half);
    const std::int64_t left = x - margin;
    const std::int64_t right = left + block.LongestWidth + 2 * margin;
    const std::int64_t first = y + block.Up * (block.LongestIndex * block.LineHeight + margin);
    const std::int64_t second = first - block.Up * (block.TotalHeight() + 2 * margin);
    DrawTextBox(block, Saturated(left, first), Saturated(right, second));
}

void CCanvas::DrawTextBox(const TTextBlock& block, TLongPoint a, TLongPoint b) {
    m_Brush.SetType(CBrush::BrushNone);
    if (!m_PretranslateCoords || (block.Angle == 0 && block.ViewAngle == 0.0)) {
        Rectangle(a.X, a.Y, b.X, b.Y);
        return;
    }
    TLongPoint corners[] = {a, {a.X, b.Y}, b, {b.X, a.Y}};
    const TCoord stillX = WrapToCoord(a.X), stillY = WrapToCoord(b.Y);
    TCoord pivotX = 0, pivotY = 0;
    if (const CScaler* scaler = GetMapping()) scaler->GetPivotPoint(pivotX, pivotY);
    TPoint points[4];
    for (std::size_t i = 0; i < 4; ++i) {
        if (block.Angle != 0 && i != 1) TurnAbout(corners[i], stillX, stillY, block.Angle / 10.0);
        // The polygon turns with the view by itself; that this comes on top is kept on purpose.
        if (block.ViewAngle != 0.0) TurnAbout(corners[i], pivotX, pivotY, block.ViewAngle);
        points[i] = {WrapToCoord(corners[i].X), WrapToCoord(corners[i].Y)};
    }
    Polygon(points, 4);
}

}  // namespace zul
