/// \file
/// Lines one pixel wide, solid and dashed.
///
/// The rule. A line takes one pixel per step along its longer axis (the x axis when both are equal), from its
/// first point on and without its last one. The other coordinate is the ideal line's, rounded to the nearest
/// pixel; half-way cases go to the smaller coordinate, whichever way the line runs. So the segments of a
/// polyline meet without painting their joints twice, and what a clip shows of a line are the very pixels
/// that the whole line has there.
///
/// Coordinates may be any 32-bit values. A line that is not visible as a whole is entered at its first
/// visible pixel by exact integer arithmetic, so the time taken depends on what is visible alone.
#pragma once

#include "platform/software/ink.h"
#include "platform/software/path.h"

namespace device {

/// Draws the segments of \p path. \p ink is solid.
void StrokeThin(const Ink& ink, const Clip& clip, const Path& path);

/// The same with a pattern of 18 pixels marked and 6 left that runs along the whole path.
/// \param gap the ink of what the pattern leaves; an empty one keeps those pixels.
void StrokeDashed(const Ink& mark, const Ink& gap, const Clip& clip, const Path& path);

}  // namespace device
