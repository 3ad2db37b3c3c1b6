/// \file
/// Who draws the figures of the rows.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "bench/contest.h"
#include "bench/surface.h"
#include "zul/geometry/coordinates.h"
#include "zul/geometry/points.h"

namespace zulbench {

/// A line or an area, in the form that each painter likes best.
struct Figure {
    zul::CPoints map{false};              ///< without a scaler: the same pixels
    std::vector<zul::TLongPoint> device;  ///< pixels
    COLORREF fill = 0;
};

enum class Shape { Polyline, Triangle, Ring };

/// The line of a polyline or around a polygon.
struct Line {
    std::int32_t width = 1;  ///< pixels; 0: none. Wide ones have round ends and corners.
    bool dashed = false;     ///< 18 pixels and gaps of 6
    bool inverting = false;  ///< what is there, instead of painting over it
};

constexpr RECT kWholeSurface{0, 0, kWidth, kHeight};

/// Draws on a picture of kWidth x kHeight pixels without antialiasing, each as its library does it fastest.
class Painter {
public:
    virtual ~Painter() = default;
    virtual Side GetSide() const = 0;
    virtual const char* GetName() const { return ""; }
    /// \returns false when it cannot draw such lines or shapes.
    virtual bool Prepare(const Line& line, COLORREF color, Shape shape) = 0;
    virtual void Polyline(Figure& figure) = 0;
    /// Fills with the figure's colour by the even-odd rule, and draws the line that was prepared around it.
    virtual void Polygon(Figure& figure) = 0;
    /// Called at the end of a run, for painters that put things off.
    virtual void Finish() {}
    /// Right and bottom excluded.
    virtual void FillRect(const RECT& rect, COLORREF color) = 0;
    virtual Picture GetPicture() = 0;
};

using Painters = std::vector<std::shared_ptr<Painter>>;

/// The classes, the device's calls, and the classes at 16 bits a pixel.
Painters OurPainters();
/// The second of them, on a surface that others look at.
std::shared_ptr<Painter> MakeDevicePainter(std::shared_ptr<Surface> surface);
/// Those of other libraries.
Painters PeerPainters();

}  // namespace zulbench
