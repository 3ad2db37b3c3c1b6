/// \file
/// Walking along a line in equal steps: what dashes, ticks and arrows have in common.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/gdi.h"
#include "zul/geometry/coordinates.h"

namespace zul {

/// One straight piece of a line. Distances along it are whole pixels, and so is its length, which is rounded:
/// a piece is divided evenly into as many pixels as it counts.
struct TLineSegment {
    TLineSegment(TLongPoint from, TLongPoint to);

    /// The pixel at \p distance from the start, which is not negative and at most a pen's half width more
    /// than the length. Found by integers and rounded, halves to the greater coordinate: on the surface that
    /// is away from zero, and left of it and above it is the same again when the view has been scrolled.
    TLongPoint At(std::int64_t distance) const;

    TLongPoint From, To;
    std::int32_t Length;
};

/// Marks that follow one another along a line: the first one Lead pixels from its start, the next ones Step
/// pixels further each, and every one Extent pixels long, at most Step. Corners do not interrupt them.
struct TLinePattern {
    std::int64_t Lead, Extent, Step;
};

/// Where marks can be seen: the device's clip box and as much around it as a mark may reach; closed bounds.
struct TLineWindow {
    /// Sees nothing on a device that shows nothing.
    TLineWindow(HDC device, std::int64_t reach);

    bool Contains(TLongPoint point) const {
        return MinX <= point.X && point.X <= MaxX && MinY <= point.Y && point.Y <= MaxY;
    }
    /// The distances between which a segment may be seen, a little generous. False when it cannot.
    bool Cut(const TLineSegment& segment, std::int64_t& from, std::int64_t& to) const;

    std::int64_t MinX = 0, MinY = 0, MaxX = -1, MaxY = -1;
};

/// Calls visit(segment, start, end, seen) for each part of a mark that may be seen, in order. \p start is
/// negative for a mark that began on an earlier segment; \p end is beyond the length for one that goes on on
/// the next. So that such a mark stays one, all its parts are visited, but \p seen only where they may be.
/// Other steps that cannot be seen are not taken one by one. A step below 1 makes no marks. \param closed  a
/// last segment leads from the last point to the first
template <class Visit>
void WalkLine(const TLongPoint* points, std::int32_t count, bool closed, const TLinePattern& pattern,
              const TLineWindow& window, Visit&& visit) {
    const std::int64_t step = pattern.Step;
    if (step < 1) return;
    const std::int64_t extent = std::clamp<std::int64_t>(pattern.Extent, 0, step);
    // Of marks that would begin before the line, the first one on it.
    std::int64_t next = pattern.Lead < 0 ? (step - -pattern.Lead % step) % step : pattern.Lead;
    const std::int32_t segments = closed ? count : count - 1;
    for (std::int32_t i = 0; i < segments; ++i) {
        const TLineSegment segment(points[i], points[i + 1 < count ? i + 1 : 0]);
        if (next > segment.Length) {
            next -= segment.Length;
            continue;
        }
        // What is due on a repeated point comes with the next segment, which has a direction.
        if (segment.Length == 0) continue;
        const std::int64_t last = (segment.Length - next) / step;
        std::int64_t seenFrom = 0, seenTo = 0, first = 0, stop = -1;
        if (window.Cut(segment, seenFrom, seenTo)) {
            const std::int64_t before = seenFrom - extent - next;  // what ends before it is not seen
            first = before <= 0 ? 0 : (before + step - 1) / step;
            stop = seenTo < next ? -1 : std::min(last, (seenTo - next) / step);
        }
        const auto take = [&](std::int64_t k) {
            visit(segment, next + k * step, next + k * step + extent, first <= k && k <= stop);
        };
        const std::int64_t start = next + last * step;
        const bool goesOn = start + extent > segment.Length;
        const bool isLastSeen = first <= last && last <= stop;
        if (next < 0 && (first > 0 || stop < 0)) take(0);
        for (std::int64_t k = first; k <= stop; ++k)
            take(k);
        if (goesOn && !isLastSeen && (last > 0 || next >= 0)) take(last);
        next = (goesOn ? start : start + step) - segment.Length;
    }
}

}  // namespace zul
