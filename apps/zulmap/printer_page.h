/// \file
/// A sheet of paper in a raster printer.
#pragma once

#include <cstdint>

#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/tool_settings.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// White paper, of which a canvas covers the part that the printer reaches. All figures are the device's own
/// answers.
class PrinterPage {
public:
    /// \throws ToolError for a page larger than pictures may be, and when there is no memory for it
    explicit PrinterPage(const PageSettings& settings);

    zul::CCanvas& GetCanvas() { return m_Canvas; }
    /// Of the canvas, pixels.
    zul::TSize GetPrintableSize() const;
    /// Of the whole sheet, pixels.
    zul::TSize GetPaperSize() const;
    double GetPixelsPerSm() const;
    /// Pixels of the page to one of a screen, in whole numbers from 1 on: what is measured in pixels looks as
    /// large on paper.
    std::int32_t GetMagnification() const;
    /// Shows the whole sheet in a picture of its size.
    void CopyTo(MemoryPicture& paper);

private:
    zul::CCanvas m_Canvas;
};

}  // namespace zulmap
