#include "apps/zulmap/raster_painter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "zul/canvas/bitmap_canvas.h"
#include "zul/kernel/numeric.h"
#include "zul/raster/dib_section.h"
#include "zul/scaler/projective_scaler.h"

namespace zulmap {
namespace {

/// Map units beyond which a block would have more pixels than the device counts.
constexpr double kFarthestUnit = 1 << 28;

/// The indices of the cells that hold some of [low, high], of \p count cells from \p start on.
void CoverCells(double start, double cell, std::int32_t count, double low, double high, std::int32_t& first,
                std::int32_t& end) {
    first = static_cast<std::int32_t>(std::clamp(std::floor((low - start) / cell), 0.0, double(count)));
    end = static_cast<std::int32_t>(std::clamp(std::ceil((high - start) / cell), 0.0, double(count)));
}

}  // namespace

RasterPainter::RasterPainter(const Raster& raster, const MapSpace& space, zul::CCanvas& canvas,
                             zul::TSize frame)
    : m_Raster(raster),
      m_Space(space),
      m_Canvas(canvas),
      m_Frame(frame),
      m_Scaler(*canvas.GetScaler()),
      m_PixelWidth(raster.place.Width() / raster.width),
      m_PixelHeight(raster.place.Height() / raster.height) {}

void RasterPainter::PaintBand(std::int32_t top) {
    Block block;
    if (IsFlat() && FindBlock(block)) {
        if (top == 0) PaintBlock(block);
        return;
    }
    zul::CDibSection strip;
    strip.Create(m_Frame.Width, 1, 32, nullptr);
    auto* pixels = static_cast<std::uint32_t*>(strip.GetDIBBits());
    if (pixels == nullptr) return;
    zul::CBitmapCanvas stripCanvas(&strip);
    Corners upper = MapCorners(top);
    for (std::int32_t row = top; row < std::min(top + kBand, m_Frame.Height); ++row) {
        Corners lower = MapCorners(row + 1);
        PaintRow(row, upper, lower, stripCanvas, pixels);
        upper = std::move(lower);
    }
}

bool RasterPainter::IsFlat() const {
    return m_Scaler.GetRotationAngle() == 0.0 &&
           dynamic_cast<const zul::CProjectiveScaler*>(&m_Scaler) == nullptr;
}

bool RasterPainter::FindBlock(Block& block) const {
    const Box& place = m_Raster.place;
    const Box& held = m_Space.GetHeld();
    zul::TLongRect& cut = block.pixels;
    CoverCells(place.minX, m_PixelWidth, m_Raster.width, held.minX, held.maxX, cut.MinX, cut.MaxX);
    CoverCells(-place.maxY, m_PixelHeight, m_Raster.height, -held.maxY, -held.minY, cut.MinY, cut.MaxY);

    bool fits = true;
    const auto toUnits = [&](double coordinate, double middle) {
        const double units = std::round((coordinate - middle) / m_Space.GetUnit());
        fits = fits && std::abs(units) <= kFarthestUnit;
        return zul::RoundToLong(units);
    };
    const TDoublePoint& center = m_Space.GetCenter();
    block.units = {toUnits(place.minX + cut.MinX * m_PixelWidth, center.X),
                   toUnits(place.maxY - cut.MaxY * m_PixelHeight, center.Y),
                   toUnits(place.minX + cut.MaxX * m_PixelWidth, center.X),
                   toUnits(place.maxY - cut.MinY * m_PixelHeight, center.Y)};
    return fits;
}

void RasterPainter::PaintBlock(const Block& block) {
    const zul::TLongRect& source = block.pixels;
    if (source.MinX >= source.MaxX || source.MinY >= source.MaxY) return;
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;
    m_Scaler.MapToScreen(block.units.MinX, block.units.MaxY, left, top);
    m_Scaler.MapToScreen(block.units.MaxX, block.units.MinY, right, bottom);
    m_Raster.picture->StretchBlt(&m_Canvas, left, top, right - left, bottom - top, source.MinX, source.MinY,
                                 source.MaxX - source.MinX, source.MaxY - source.MinY,
                                 zul::CBitmap::RopSourceCopy);
}

void RasterPainter::PaintRow(std::int32_t row, const Corners& upper, const Corners& lower,
                             zul::CCanvas& strip, std::uint32_t* pixels) {
    // A raster has no notches: what a row shows of it is one piece.
    std::int32_t begin = 0;
    std::int32_t end = 0;
    for (std::int32_t x = 0; x < m_Frame.Width; ++x) {
        const auto i = static_cast<std::size_t>(x);
        const std::uint32_t* pixel = FindPixel(upper[i], lower[i + 1]);
        if (pixel == nullptr) continue;
        pixels[x] = *pixel;
        if (end == 0) begin = x;
        end = x + 1;
    }
    if (end > 0) m_Canvas.BitBlt(begin, row, end - begin, 1, &strip, begin, 0, zul::CBitmap::RopSourceCopy);
}

RasterPainter::Corners RasterPainter::MapCorners(std::int32_t row) const {
    Corners corners;
    corners.reserve(static_cast<std::size_t>(m_Frame.Width) + 1);
    for (std::int32_t x = 0; x <= m_Frame.Width; ++x) {
        zul::TLongPoint corner{x, row};
        m_Scaler.ScreenToMapEx(corner.X, corner.Y);
        corners.push_back(corner);
    }
    return corners;
}

const std::uint32_t* RasterPainter::FindPixel(zul::TLongPoint a, zul::TLongPoint b) const {
    if (!m_Scaler.IsInFront(a.X, a.Y) || !m_Scaler.IsInFront(b.X, b.Y)) return nullptr;
    const TDoublePoint& center = m_Space.GetCenter();
    const double halfUnit = m_Space.GetUnit() / 2.0;
    const double east = center.X + (static_cast<double>(a.X) + b.X) * halfUnit;
    const double north = center.Y + (static_cast<double>(a.Y) + b.Y) * halfUnit;
    const double column = std::floor((east - m_Raster.place.minX) / m_PixelWidth);
    const double line = std::floor((north - m_Raster.place.minY) / m_PixelHeight);
    if (!(column >= 0.0 && column < m_Raster.width && line >= 0.0 && line < m_Raster.height)) return nullptr;
    const auto* pixels = static_cast<const std::uint32_t*>(m_Raster.picture->GetDIBBits());
    return pixels + static_cast<std::ptrdiff_t>(line) * m_Raster.width + static_cast<std::ptrdiff_t>(column);
}

}  // namespace zulmap
