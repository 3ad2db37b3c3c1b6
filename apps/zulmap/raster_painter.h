/// \file
/// Draws a raster of the map on a canvas.
#pragma once

#include <cstdint>
#include <vector>

#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_space.h"
#include "zul/canvas/canvas.h"

namespace zulmap {

/// Draws the part of a raster that a frame shows: in one stretched block where the canvas's scaler shows the
/// map flat and unturned, else row by row, each pixel with what lies under its middle. Either way the
/// nearest pixel of the raster is taken.
class RasterPainter {
public:
    /// Rows that are painted at a time.
    static constexpr std::int32_t kBand = 32;

    /// All outlive the painter. The canvas has a scaler that shows some part of \p space.
    RasterPainter(const Raster& raster, const MapSpace& space, zul::CCanvas& canvas, zul::TSize frame);

    /// Paints rows \p top to \p top + kBand of the frame; with the first band all of them when it is one
    /// block.
    void PaintBand(std::int32_t top);

private:
    /// Whole pixels of the raster, and the map units that they cover.
    struct Block {
        zul::TLongRect pixels{};
        zul::TLongRect units{};
    };

    using Corners = std::vector<zul::TLongPoint>;  ///< in map units

    bool IsFlat() const;
    /// \returns false when its corners do not fit the units of a block.
    bool FindBlock(Block& block) const;
    void PaintBlock(const Block& block);
    void PaintRow(std::int32_t row, const Corners& upper, const Corners& lower, zul::CCanvas& strip,
                  std::uint32_t* pixels);
    /// The upper left corners of a row's pixels and the last one's upper right.
    Corners MapCorners(std::int32_t row) const;
    /// The raster's pixel under the middle between two opposite corners of a pixel; null when there is none.
    const std::uint32_t* FindPixel(zul::TLongPoint a, zul::TLongPoint b) const;

    const Raster& m_Raster;
    const MapSpace& m_Space;
    zul::CCanvas& m_Canvas;
    zul::TSize m_Frame;
    zul::CScaler& m_Scaler;
    double m_PixelWidth;  ///< of the raster, in the file's units
    double m_PixelHeight;
};

}  // namespace zulmap
