/// \file
/// Angles and directions: conversions, normalisation, and the offsets that place arrow wings.
#pragma once

#include <cstdint>

#include "zul/kernel/export.h"

namespace zul {

/// A home for functions on angles; it holds nothing and is never made. Angles are in degrees unless a name
/// says radians. Nothing here is reported: a direction without length gives offsets of 0, and doubles that do
/// not fit an integer result are cut to its range.
class ZUL_API CAngle {
public:
    CAngle() = delete;

    /// From one unit to the other; full turns are kept.
    static double DegreeToRadian(double degrees);
    static double RadianToDegree(double radians);

    /// The same direction from 0 up to 360. A negative angle too small to show beside 360 gives 360 itself.
    static double GetAngle360(double degrees);

    /// An angle from 0 to 360 turned into -180 to 180 (180 stays). Other angles are not normalised: below
    /// -180 they come back as they are, above 540 only one turn is taken off.
    static double GetAngle180(double degrees);

    /// Stretches the vector (a, b) to `length` and mirrors its second component, rounded.
    /// \param outLength  when given, gets the rounded length of (a, b)
    static void FindDxDy(double a, double b, double length, std::int32_t& outA, std::int32_t& outB,
                         std::int32_t* outLength = nullptr);

    /// The same without rounding the two components; `outLength` is rounded here too. A zero vector gives
    /// what double arithmetic gives: not a number.
    static void FindDxDy(double a, double b, double length, double& outA, double& outB,
                         double* outLength = nullptr);

    /// Places the wings of an arrow head whose tip is (x2, y2) on the line that comes from (x1, y1).
    /// \param length   from the tip to either wing
    /// \param degrees  between the line and a wing
    /// \param mirror   true puts the second wing on the other side; false puts both at one place
    /// A line without length puts both wings on the tip.
    static void FindDxDy(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, double length,
                         std::int32_t& ax, std::int32_t& ay, std::int32_t& bx, std::int32_t& by,
                         std::int32_t degrees, bool mirror);
};

}  // namespace zul
