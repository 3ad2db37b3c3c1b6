#include "apps/zulmap/pens/sheet_painter.h"

#include <algorithm>

#include "apps/zulmap/caption.h"
#include "zul/geometry/points.h"

namespace zulmap {
namespace {

constexpr std::int32_t kPaper = Color(0xFDFCFA);
constexpr std::int32_t kBand = Color(0xF5F3EE);
constexpr std::int32_t kRule = Color(0xD2CCC4);
constexpr std::int32_t kInk = Color(0x333A46);
constexpr std::int32_t kSoftInk = Color(0x6A7480);
constexpr std::int32_t kAreaFill = Color(0xDDEBD3);

constexpr CaptionFont kTitle{20, true};
constexpr CaptionFont kHeading{12};
constexpr CaptionFont kText{9};

constexpr std::int32_t kMargin = 36;
constexpr std::int32_t kHeadingTop = kMargin + 48;
constexpr std::int32_t kSampleNameTop = kHeadingTop + 22;
constexpr std::int32_t kRowsTop = kSampleNameTop + 22;
constexpr std::int32_t kRowHeight = 54;
constexpr std::int32_t kNoteRoom = 30;

constexpr std::int32_t kCaptionGap = 16;
constexpr std::int32_t kBlockGap = 40;
constexpr std::int32_t kSampleGap = 34;
/// Half the height of a bent and a closed figure.
constexpr std::int32_t kReach = 14;

/// A corner of a figure, in hundredths of its box: 0 to 100 across, -100 (top) to 100 down.
struct Corner {
    std::int32_t across;
    std::int32_t down;
};

constexpr Corner kStraight[] = {{0, 0}, {100, 0}};
constexpr Corner kBent[] = {{0, 80}, {32, -90}, {62, 40}, {100, -60}};
constexpr Corner kClosed[] = {{0, 10}, {30, -100}, {100, -70}, {86, 100}, {40, 84}};

/// Where a figure goes: pixels, or map units, whose y axis points up.
struct Place {
    std::int32_t left;
    std::int32_t middle;
    std::int32_t width;
    bool isMap;
};

template <std::size_t N>
zul::CPoints Placed(const Corner (&corners)[N], const Place& place) {
    zul::CPoints points(false);
    for (const Corner& corner : corners) {
        const std::int32_t down = corner.down * kReach / 100;
        points.Append(zul::SaturateToCoord(place.left + corner.across * place.width / 100),
                      zul::SaturateToCoord(place.middle + (place.isMap ? -down : down)));
    }
    return points;
}

void FillBox(zul::CCanvas& canvas, const zul::TLongRect& box, std::int32_t color) {
    canvas.GetBrush().SetType(zul::CBrush::BrushSolid);
    canvas.GetBrush().SetColor(color);
    canvas.FillRect(box.MinX, box.MinY, box.MaxX, box.MaxY, nullptr);
}

void DrawFigure(zul::CCanvas& canvas, SheetSample::Figure figure, const Place& place) {
    using Figure = SheetSample::Figure;
    zul::CPoints points = figure == Figure::Straight ? Placed(kStraight, place)
                          : figure == Figure::Bent   ? Placed(kBent, place)
                                                     : Placed(kClosed, place);
    if (figure == Figure::Closed) {
        canvas.Polygon(&points);
    } else {
        canvas.Polyline(&points);
    }
}

}  // namespace

SheetPainter::SheetPainter(const PenSheet& sheet) : m_Sheet(sheet) {
    std::int32_t labels = 0;
    std::int32_t captions = 0;
    for (const SheetRow& row : sheet.rows) {
        labels = std::max(labels, GetCaptionSize(row.label, kHeading).Width);
        captions = std::max(captions, GetCaptionSize(row.caption, kText).Width);
    }
    m_LabelRight = kMargin + labels;
    m_CaptionLeft = m_LabelRight + kCaptionGap;

    std::int32_t left = m_CaptionLeft + captions + kBlockGap;
    for (const SheetBlock& block : sheet.blocks) {
        for (const SheetSample& sample : sheet.samples) {
            m_Columns.push_back({left, sample.width * block.percent / 100});
            left += m_Columns.back().width + kSampleGap;
        }
        left += kBlockGap - kSampleGap;
    }
    m_Size = {left - kBlockGap + kMargin, GetRowTop(sheet.rows.size()) + kNoteRoom + kMargin};
}

const SheetPainter::Column& SheetPainter::GetColumn(std::size_t block, std::size_t sample) const {
    return m_Columns.at(block * m_Sheet.samples.size() + sample);
}

std::int32_t SheetPainter::GetRowTop(std::size_t row) const {
    return kRowsTop + static_cast<std::int32_t>(row) * kRowHeight;
}

zul::TLongRect SheetPainter::GetCell(std::size_t row, std::size_t block, std::size_t sample) const {
    const Column& column = GetColumn(block, sample);
    const std::int32_t top = GetRowTop(row);
    return {column.left - kSampleGap / 2, top, column.left + column.width + kSampleGap / 2, top + kRowHeight};
}

void SheetPainter::Paint(zul::CCanvas& canvas) const {
    canvas.SetScaler(nullptr);
    PaintGround(canvas);
    PaintHeadings(canvas);
    PaintLabels(canvas);
    for (std::size_t block = 0; block < m_Sheet.blocks.size(); ++block) {
        PaintBlock(canvas, block);
    }
    canvas.SetScaler(nullptr);
}

void SheetPainter::PaintGround(zul::CCanvas& canvas) const {
    const std::int32_t right = m_Size.Width - kMargin / 2;
    FillBox(canvas, {0, 0, m_Size.Width, m_Size.Height}, kPaper);
    for (std::size_t row = 0; row < m_Sheet.rows.size(); row += 2) {
        FillBox(canvas, {kMargin / 2, GetRowTop(row), right, GetRowTop(row + 1)}, kBand);
    }
    for (const std::int32_t y : {GetRowTop(0) - 1, GetRowTop(m_Sheet.rows.size())}) {
        FillBox(canvas, {kMargin / 2, y, right, y + 1}, kRule);
    }
    for (std::size_t block = 0; block < m_Sheet.blocks.size(); ++block) {
        const std::int32_t x = GetColumn(block, 0).left - kBlockGap / 2;
        FillBox(canvas, {x, kHeadingTop, x + 1, GetRowTop(m_Sheet.rows.size())}, kRule);
    }
}

void SheetPainter::PaintHeadings(zul::CCanvas& canvas) const {
    DrawCaption(canvas, {kMargin, kMargin}, m_Sheet.title, kTitle, kInk);
    for (std::size_t block = 0; block < m_Sheet.blocks.size(); ++block) {
        DrawCaption(canvas, {GetColumn(block, 0).left, kHeadingTop}, m_Sheet.blocks[block].heading, kHeading,
                    kInk);
        for (std::size_t sample = 0; sample < m_Sheet.samples.size(); ++sample) {
            DrawCaption(canvas, {GetColumn(block, sample).left, kSampleNameTop},
                        m_Sheet.samples[sample].heading, kText, kSoftInk);
        }
    }
    DrawCaption(canvas, {kMargin, GetRowTop(m_Sheet.rows.size()) + kNoteRoom / 2}, m_Sheet.note, kText,
                kSoftInk);
}

void SheetPainter::PaintLabels(zul::CCanvas& canvas) const {
    for (std::size_t i = 0; i < m_Sheet.rows.size(); ++i) {
        const SheetRow& row = m_Sheet.rows[i];
        const std::int32_t middle = GetRowTop(i) + kRowHeight / 2;
        const zul::TSize label = GetCaptionSize(row.label, kHeading);
        const zul::TSize caption = GetCaptionSize(row.caption, kText);
        DrawCaption(canvas, {m_LabelRight - label.Width, middle - label.Height / 2}, row.label, kHeading,
                    kInk);
        DrawCaption(canvas, {m_CaptionLeft, middle - caption.Height / 2}, row.caption, kText, kSoftInk);
    }
}

void SheetPainter::PaintBlock(zul::CCanvas& canvas, std::size_t index) const {
    const SheetBlock& block = m_Sheet.blocks[index];
    zul::CScaler scaler;
    const bool hasScale = block.metresInPixel > 0.0;
    if (hasScale) {
        // A map unit is a pixel, so that only the widths in metres feel the scale.
        constexpr double pixelsPerSm = 96.0 / 2.54;
        scaler.InitScaler({0, 0, m_Size.Width, m_Size.Height}, m_Size, m_Size, pixelsPerSm,
                          block.metresInPixel, 0.0);
        canvas.SetScaler(&scaler);
    }
    for (std::size_t row = 0; row < m_Sheet.rows.size(); ++row) {
        const std::int32_t middle = GetRowTop(row) + kRowHeight / 2;
        for (std::size_t i = 0; i < m_Sheet.samples.size(); ++i) {
            PenSettings pen = m_Sheet.rows[row].pen;
            if (block.penWidth != 0) pen.width = block.penWidth;
            if (m_Sheet.samples[i].type != 0) pen.type = m_Sheet.samples[i].type;
            pen.endType |= m_Sheet.samples[i].endType;
            UsePen(canvas.GetPen(), pen);
            canvas.GetBrush().SetType(zul::CBrush::BrushSolid);
            canvas.GetBrush().SetColor(kAreaFill);
            const Column& column = GetColumn(index, i);
            DrawFigure(canvas, m_Sheet.samples[i].figure,
                       {column.left, hasScale ? m_Size.Height - middle : middle, column.width, hasScale});
        }
    }
    canvas.SetScaler(nullptr);
}

}  // namespace zulmap
