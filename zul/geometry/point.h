/// \file
/// A point as a persistent value, and the arithmetic on bare coordinates that all geometry shares.
#pragma once

#include <cstdint>
#include <new>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/export.h"
#include "zul/kernel/stream.h"

namespace zul {

class CRect;

/// A point in map units that can be stored, and whose changes are recorded: one modification for every call
/// that really changes something.
class ZUL_API CPoint : public CAnyDomain {
public:
    /// In map units.
    CPoint(TCoord x, TCoord y);
    ~CPoint() override;

    // --- query ---

    /// In map units.
    TCoord GetX() const { return m_X; }
    TCoord GetY() const { return m_Y; }
    void GetValue(TCoord& x, TCoord& y) const;

    /// Fills a rectangle that holds just this point; always true.
    virtual bool GetMbr(TRect& mbr);
    virtual bool GetMbr(CRect& mbr);

    // --- change ---

    using CAnyDomain::SetValue;
    /// Equal values record nothing.
    void SetX(TCoord x);
    void SetY(TCoord y);
    void SetValue(TCoord x, TCoord y);
    void SetValue(const CPoint& other);

    /// Back to (0, 0). Counts as a modification even when the point is there already.
    virtual void Clear();

    // --- operate on bare coordinates: the caller's variables are changed in place ---

    /// Turns (x, y) about (cx, cy), counter-clockwise with y pointing up. Out of range wraps to the low 16
    /// bits without a report.
    static void Rotate(TCoord& x, TCoord& y, TCoord cx, TCoord cy, double degrees);
    static void RotateEx(TCoord& x, TCoord& y, TCoord cx, TCoord cy, double sine, double cosine);

    /// Stretches (x, y) away from (cx, cy). Each coordinate that leaves the 16-bit range is reported as error
    /// 5, "Exceeds TCoord limits: Point::Scale", and then stored wrapped; x is finished before y is looked
    /// at.
    static void Scale(TCoord& x, TCoord& y, TCoord cx, TCoord cy, double kx, double ky);

    /// Shifts (x, y). Each sum that leaves the 16-bit range is reported as error 5, "Exceeds TCoord limits:
    /// Point::Move"; after both tests the low 16 bits are stored.
    static void Move(TCoord& x, TCoord& y, std::int32_t dx, std::int32_t dy);

    /// Whether (x, y) stays in the 16-bit range when pushed away from the origin by the distances (dx, dy).
    static bool CheckPointBounds(TCoord x, TCoord y, std::int32_t dx, std::int32_t dy);

    // --- persist: x and y, 2 bytes each; a stream cut short leaves what it does not deliver ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

    /// A point has no text form: false, the text is left as it is.
    bool ToString(CString& text, const char16_t* format) override;

private:
    TCoord m_X;
    TCoord m_Y;
};

/// A factory makes the point at the origin.
template <>
struct CFactoryTraits<CPoint> {
    static CPoint* Construct(void* place) { return new (place) CPoint(0, 0); }  ///< At (0, 0).
};

}  // namespace zul
