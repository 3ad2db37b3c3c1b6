#include "apps/zulmap/label_sheet/label_sheet_painter.h"

#include <algorithm>
#include <vector>

#include "apps/zulmap/caption.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/tool_settings.h"
#include "zul/scaler/scaler.h"

namespace zulmap {
namespace {

constexpr std::int32_t kPaper = Color(0xFDFCFA);
constexpr std::int32_t kInk = Color(0x333A46);
constexpr std::int32_t kSoftInk = Color(0x6A7480);
constexpr std::int32_t kGround = Color(0xDCE8E4);
constexpr std::int32_t kRoad = Color(0xA9BFB8);
constexpr std::int32_t kRectangle = Color(0x5B9AA8);
constexpr std::int32_t kFrame = Color(0xC0392B);
constexpr std::int32_t kText = Color(0x14283C);
constexpr std::int32_t kHalo = Color(0xFFF6D5);
constexpr std::int32_t kOpaque = Color(0xF4D58D);

constexpr CaptionFont kTitle{18, true};
constexpr CaptionFont kBlockHeading{13, true};
constexpr CaptionFont kRowHeading{10, true};
constexpr CaptionFont kCaption{8};
constexpr std::int32_t kLabelPoints = 12;

constexpr std::int32_t kMargin = 30;
constexpr std::int32_t kTitleRoom = 46;
constexpr std::int32_t kBlockHeadingRoom = 34;
constexpr std::int32_t kRowHeadingRoom = 24;
constexpr std::int32_t kCaptionRoom = 26;
constexpr zul::TSize kCell{150, 132};
constexpr std::int32_t kCellGap = 10;
constexpr std::int32_t kRowHeight = kRowHeadingRoom + kCell.Height + kCaptionRoom;
constexpr std::int32_t kBlockGap = 22;

/// The rectangle of a sample that does not name a size.
constexpr zul::TSize kUsualSize{96, 72};
constexpr std::int32_t kUnitsInPixel = 4;
constexpr double kViewAngle = 20.0;

constexpr const char* kBlockHeadings[] = {"In pixels", "On a map, four units a pixel",
                                          "On the same map, turned by 20 degrees"};

/// A picture as large as a cell, whose canvas draws in the coordinates of a block.
class CellPicture {
public:
    explicit CellPicture(std::size_t block)
        : m_Unit(block == LabelSheetPainter::Pixels ? 1 : kUnitsInPixel),
          m_Picture(kCell.Width, kCell.Height) {
        if (block == LabelSheetPainter::Pixels) {
            GetCanvas().SetPretranslation(false);
            return;
        }
        const zul::TLongRect bounds{0, 0, kCell.Width * m_Unit, kCell.Height * m_Unit};
        m_Scaler.InitScaler(bounds, kCell, kCell, kPixelsPerSm, 1.0, 0.0);
        if (block == LabelSheetPainter::TurnedMap) m_Scaler.SetRotationAngle(kViewAngle);
        GetCanvas().SetScaler(&m_Scaler);
    }

    zul::CCanvas& GetCanvas() { return m_Picture.GetCanvas(); }

    /// A rectangle of so many pixels in the middle.
    zul::TLongRect Middle(zul::TSize size) const {
        const std::int32_t left = (kCell.Width - size.Width) / 2 * m_Unit;
        const std::int32_t low = (kCell.Height - size.Height) / 2 * m_Unit;
        return {left, low, left + size.Width * m_Unit, low + size.Height * m_Unit};
    }

private:
    std::int32_t m_Unit;
    zul::CScaler m_Scaler;
    MemoryPicture m_Picture;
};

zul::TSize SizeOf(const LabelSample& sample) {
    return sample.width == 0 ? kUsualSize : zul::TSize{sample.width, sample.height};
}

std::vector<zul::TPoint> CornersOf(const zul::TLongRect& box) {
    const auto at = [](std::int32_t x, std::int32_t y) {
        return zul::TPoint{zul::SaturateToCoord(x), zul::SaturateToCoord(y)};
    };
    return {at(box.MinX, box.MinY), at(box.MaxX, box.MinY), at(box.MaxX, box.MaxY), at(box.MinX, box.MaxY)};
}

/// A ground with two roads, so that halo and opaque ground show, and the outline of the rectangle.
void PaintGround(zul::CCanvas& canvas, const zul::TLongRect& box) {
    const bool isPretranslated = canvas.SetPretranslation(false);
    canvas.GetBackground().Default();
    canvas.GetBrush().Create(zul::CBrush::BrushSolid, kGround, 0);
    canvas.FillRect(0, 0, kCell.Width, kCell.Height, nullptr);
    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 3, kRoad, 0, 0, 0);
    canvas.Line(0, kCell.Height, kCell.Width, 0);
    canvas.Line(0, kCell.Height / 3, kCell.Width, kCell.Height * 2 / 3);
    canvas.SetPretranslation(isPretranslated);

    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 1, kRectangle, 0, 0, 0);
    canvas.GetBrush().SetType(zul::CBrush::BrushNone);
    canvas.Polygon(CornersOf(box).data(), 4);
}

void PaintSample(CellPicture& picture, const LabelSample& sample) {
    zul::CCanvas& canvas = picture.GetCanvas();
    const zul::TLongRect box = picture.Middle(SizeOf(sample));
    PaintGround(canvas, box);
    canvas.GetPen().SetColor(sample.isBoxOnly ? Color(0xFFFFFF) : kFrame);
    canvas.GetBackground().SetMode(sample.isOpaque ? zul::CBackground::ModeOpaque
                                                   : zul::CBackground::ModeTransparent);
    canvas.GetBackground().SetColor(kOpaque);
    if (sample.isBoxOnly) canvas.GetBackground().SetRop(zul::CBackground::RopXor);
    zul::CFont& font = canvas.GetFont();
    font.Create(u"Liberation Sans", kLabelPoints, kText, sample.angle);
    font.SetOreolColor(kHalo);
    font.SetAlignment(sample.alignment);
    font.SetStyle(sample.style);
    font.Invalidate();
    const zul::CString text(sample.text);
    canvas.OutText(box.MinX, box.MinY, box.MaxX, box.MaxY, &text);
}

}  // namespace

LabelSheetPainter::LabelSheetPainter() : m_Rows(MakeLabelRows()) {
    std::size_t most = 0;
    for (const LabelRow& row : m_Rows) {
        most = std::max(most, row.samples.size());
    }
    const auto columns = static_cast<std::int32_t>(most);
    m_Size = {2 * kMargin + columns * kCell.Width + (columns - 1) * kCellGap,
              GetBlockTop(BlockCount) - kBlockGap + kMargin};
}

std::int32_t LabelSheetPainter::GetBlockTop(std::size_t block) const {
    const auto rows = static_cast<std::int32_t>(m_Rows.size());
    return kMargin + kTitleRoom +
           static_cast<std::int32_t>(block) * (kBlockHeadingRoom + rows * kRowHeight + kBlockGap);
}

zul::TLongRect LabelSheetPainter::GetCell(std::size_t block, std::size_t row, std::size_t sample) const {
    const std::int32_t left = kMargin + static_cast<std::int32_t>(sample) * (kCell.Width + kCellGap);
    const std::int32_t top = GetBlockTop(block) + kBlockHeadingRoom +
                             static_cast<std::int32_t>(row) * kRowHeight + kRowHeadingRoom;
    return {left, top, left + kCell.Width, top + kCell.Height};
}

void LabelSheetPainter::Paint(zul::CCanvas& canvas) const {
    canvas.GetBackground().Default();
    canvas.GetBrush().Create(zul::CBrush::BrushSolid, kPaper, 0);
    canvas.FillRect(0, 0, m_Size.Width, m_Size.Height, nullptr);
    DrawCaption(canvas, {kMargin, kMargin}, "Labels in rectangles", kTitle, kInk);
    for (std::size_t block = 0; block < BlockCount; ++block) {
        DrawCaption(canvas, {kMargin, GetBlockTop(block)}, kBlockHeadings[block], kBlockHeading, kInk);
        for (std::size_t row = 0; row < m_Rows.size(); ++row) {
            const std::int32_t headingTop = GetCell(block, row, 0).MinY - kRowHeadingRoom + 4;
            DrawCaption(canvas, {kMargin, headingTop}, m_Rows[row].heading, kRowHeading, kInk);
            for (std::size_t i = 0; i < m_Rows[row].samples.size(); ++i) {
                const LabelSample& sample = m_Rows[row].samples[i];
                const zul::TLongRect cell = GetCell(block, row, i);
                CellPicture picture(block);
                PaintSample(picture, sample);
                canvas.BitBlt(cell.MinX, cell.MinY, kCell.Width, kCell.Height, &picture.GetCanvas(), 0, 0,
                              zul::CBitmap::RopSourceCopy);
                DrawCaption(canvas, {cell.MinX, cell.MaxY + 2}, sample.caption, kCaption, kSoftInk);
            }
        }
    }
}

}  // namespace zulmap
