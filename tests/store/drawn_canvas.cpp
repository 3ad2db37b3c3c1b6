#include "tests/store/drawn_canvas.h"

namespace zul {
namespace {

constexpr std::int32_t Side = 200;

/// FNV-1a.
class CHash {
public:
    void Add(std::int64_t value) {
        for (int shift = 0; shift < 64; shift += 8)
            m_Value = (m_Value ^ (static_cast<std::uint64_t>(value) >> shift & 0xFF)) * 0x100000001B3;
    }
    std::uint64_t Get() const { return m_Value; }

private:
    std::uint64_t m_Value = 0xCBF29CE484222325;
};

}  // namespace

void SetUpCanvas(CCanvas& canvas, CBitmap& pattern, CScaler& scaler, CGradient& gradient, CPalette& palette) {
    // Packed: that is what is stored of a bitmap.
    const struct {
        BITMAPINFOHEADER Header{sizeof(BITMAPINFOHEADER), 8, 8, 1, 1, BI_RGB, 32, 0, 0, 2, 0};
        std::uint32_t Colors[2] = {0xFFFFFF, 0xC04020};
        std::uint32_t Rows[8] = {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81};
    } packed;
    pattern.Create(&packed, sizeof packed);
    scaler.InitScaler({0, 0, 1000, 1000}, {Side, Side}, {Side, Side}, 40.0, 1.0, 0.001);
    gradient.Append(3, 4, 0x112233);
    gradient.Append(5, 6, 0x445566);
    palette.Append(0x0000FF);
    palette.Append(0x00FF00);
    canvas.GetPen().SetColor(0x2040C0);
    canvas.GetPen().SetWidth(3);
    canvas.GetBrush().SetPattern(&pattern);
    canvas.GetBrush().SetType(CBrush::BrushPattern);
    canvas.GetBrush().SetColor(0x30A050);
    canvas.GetFont().SetName(u"Liberation Serif");
    canvas.GetFont().SetHeight(24);
    canvas.GetFont().SetTextColor(0x800000);
    canvas.GetBackground().SetColor(0x60C0F0);
    canvas.SetScaler(&scaler);
    canvas.SetGradient(&gradient);
}

std::uint64_t HashOfPicture(CCanvas& canvas, CPalette* palette) {
    CBitmap surface;
    surface.Create(Side, Side, 32, nullptr);
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&surface);
    canvas.SetPalette(palette);
    ::PatBlt(canvas.GetHandle(), 0, 0, Side, Side, WHITENESS);
    canvas.Rectangle(100, 100, 700, 500);
    const TPoint ring[] = {{300, 300}, {900, 400}, {600, 900}};
    canvas.Polygon(ring, 3);
    canvas.Line(0, 0, 1000, 700);
    const CString text(u"Zur Ägäis 17");
    canvas.OutText(&text, 200, 800);
    CHash hash;
    for (std::int32_t y = 0; y < Side; ++y) {
        for (std::int32_t x = 0; x < Side; ++x)
            hash.Add(canvas.GetPixel(x, y));
    }
    canvas.AssignBitmap(nullptr);
    canvas.Release(true);
    for (std::uint32_t i = 0; canvas.GetGradient() != nullptr && i < canvas.GetGradient()->GetCount(); ++i)
        hash.Add(canvas.GetGradient()->GetColor(i));
    for (std::int32_t i = 0; palette != nullptr && i < palette->GetCount(); ++i)
        hash.Add(palette->GetColor(i));
    return hash.Get();
}

}  // namespace zul
