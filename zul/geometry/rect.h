/// \file
/// A rectangle as a persistent value: bounding boxes, hit tests and frames in map units.
#pragma once

#include <cstdint>
#include <new>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/export.h"
#include "zul/kernel/message.h"
#include "zul/kernel/stream.h"

namespace zul {

class CCanvas;
class CPoints;

/// Where a point lies beside a rectangle, y pointing up. The numbers run clockwise around it; 9 is not used.
///
///     1 | 2  | 3
///     --+----+--
///     8 | 10 | 4
///     --+----+--
///     7 | 6  | 5
enum class TDotToRect : std::int32_t {
    UpperLeft = 1,
    Above = 2,
    UpperRight = 3,
    Right = 4,
    LowerRight = 5,
    Below = 6,
    LowerLeft = 7,
    Left = 8,
    Inside = 10,  ///< edges included
};

/// A rectangle with closed bounds: a point on an edge is inside. It holds its members in the order they are
/// given; only what says so normalises (puts min before max). Where an operation overflows 16 bits and says
/// nothing about it, the low 16 bits are stored.
class ZUL_API CRect : public CAnyDomain {
public:
    /// The bounds as they are given; nothing is normalised.
    CRect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY);
    explicit CRect(const TRect& rect);
    explicit CRect(const TLongRect& rect);  ///< Keeps the low 16 bits of each bound.
    ~CRect() override;

    // --- query ---

    /// In map units.
    TCoord GetMinX() const { return m_MinX; }
    TCoord GetMinY() const { return m_MinY; }
    TCoord GetMaxX() const { return m_MaxX; }
    TCoord GetMaxY() const { return m_MaxY; }
    void GetValue(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) const;
    void GetValue(TRect& rect) const;
    void GetValue(TLongRect& rect) const;

    /// Differences of the bounds: a rectangle of one point has width 0, an inverted one a negative width.
    std::int32_t GetWidth() const { return m_MaxX - m_MinX; }
    std::int32_t GetHeight() const { return m_MaxY - m_MinY; }
    TSize GetSize() const { return {GetWidth(), GetHeight()}; }
    std::int64_t GetArea() const;
    static std::int64_t GetArea(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY);

    /// The middle, halves towards minus infinity.
    void GetCenterPoint(TCoord& x, TCoord& y) const;

    /// No width or no height; an inverted rectangle is not empty.
    bool IsEmpty() const { return m_MinX == m_MaxX || m_MinY == m_MaxY; }

    /// The other rectangle is given by its bounds or as an object; null is no rectangle: false.
    bool IsEqual(const CRect* other) const;
    bool IsEqual(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) const;

    bool IsInside(TCoord x, TCoord y) const;  ///< Edges count.
    /// Whether the other lies within this one; without `touchAllowed` it must not share an edge's coordinate.
    bool IsInside(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, bool touchAllowed) const;
    bool IsInside(const CRect* other, bool touchAllowed) const;
    /// Whether this one lies within the other.
    bool IsInsideOf(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, bool touchAllowed) const;
    bool IsInsideOf(const CRect* other, bool touchAllowed) const;
    /// Whether they have a point in common; touching is enough.
    bool IsIntersect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) const;
    bool IsIntersect(const CRect* other) const;
    /// Whether an edge of one has the coordinate of a parallel edge of the other. Coordinates only:
    /// rectangles far apart touch when they have one in common. Callers rely on it.
    bool IsTouch(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY) const;
    bool IsTouch(const CRect* other) const;

    /// Whether (x, y) lies in the box spanned by two corners given in any order.
    static bool IsBelong(TCoord x1, TCoord y1, TCoord x2, TCoord y2, TCoord x, TCoord y);
    /// Whether (x, y) lies in the square that reaches `tolerance` to every side of (cx, cy); its bounds wrap
    /// to 16 bits.
    static bool IsNear(TCoord x, TCoord y, TCoord cx, TCoord cy, std::int32_t tolerance);

    /// Of a normalised rectangle: where beside it the point lies.
    TDotToRect AnalizePoint(TCoord x, TCoord y) const;
    static TDotToRect AnalizePoint(TCoord x, TCoord y, TCoord minX, TCoord minY, TCoord maxX, TCoord maxY);

    /// Whether `Inflate(dx, dy)` would not have to cut a bound.
    bool CheckCoordBounds(std::int32_t dx, std::int32_t dy) const;

    /// Looks for a corner within `tolerance` of (x, y). True gives the first of 0 (MinX, MinY), 1 (MinX,
    /// MaxY), 2 (MaxX, MaxY), 3 (MaxX, MinY); false leaves `corner`.
    bool Find(TCoord x, TCoord y, std::int32_t& corner, std::int32_t tolerance) const;

    /// Replaces the list by eight handles: corners and edge middles, up the left edge from (MinX, MinY) and
    /// on around.
    void GetHotPoints(CPoints& points) const;

    /// Copies the rectangle; always true.
    virtual bool GetMbr(TRect& mbr);
    virtual bool GetMbr(CRect& mbr);

    // --- change: one modification a call; a setter that changes nothing records none ---

    using CAnyDomain::SetValue;
    /// The other bounds stay; nothing is normalised.
    void SetMinX(TCoord minX);
    void SetMinY(TCoord minY);
    void SetMaxX(TCoord maxX);
    void SetMaxY(TCoord maxY);
    /// Four values equal to the present ones do nothing, not even normalise.
    void SetValue(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, bool normalize);
    void SetValue(const CRect& other);
    /// Always a modification. A minimum below the 16-bit range and a maximum above it are cut to the range;
    /// past the opposite end each wraps. Callers rely on the asymmetry.
    void SetValue(const TLongRect& rect);

    virtual void Clear();  ///< All four to 0; always a modification.
    void Normalize();      ///< Records no modification by itself.
    /// Exchanges bounds that are the wrong way round.
    static void Normalize(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY);

    /// Moves each edge outwards, cut at the ends of the 16-bit range. Negative distances move edges inwards;
    /// a rectangle narrower than that turns inside out.
    void Inflate(std::int32_t dx, std::int32_t dy);

    /// Keeps what the two have in common; rectangles with nothing in common leave this one as it is.
    void Intersect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY);
    void Intersect(const CRect* other);
    /// Grows to hold both. The rectangle (0, 0, 0, 0) is a point like any other.
    void Unite(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY);
    void Unite(const CRect* other);

    /// Corner by corner with `CPoint::Move` and `CPoint::Scale` and their reports; a report that throws
    /// leaves the rectangle as it was. A negative factor leaves it inverted.
    void Move(std::int32_t dx, std::int32_t dy);
    void Scale(TCoord cx, TCoord cy, double kx, double ky);

    /// Becomes the bounding box of itself turned about (cx, cy), never narrower or lower than it was.
    void Rotate(TCoord cx, TCoord cy, double degrees);

    // --- operate ---

    /// Draws the rectangle on a canvas with the canvas's tools; false only for a null canvas.
    virtual bool DoPaint(CCanvas* canvas, CAnyObject* parameter);

    /// Enlarges a box, about its middle, to the aspect ratio w : h.
    static void GetProportional(std::int32_t w, std::int32_t h, std::int32_t& minX, std::int32_t& minY,
                                std::int32_t& maxX, std::int32_t& maxY);

    /// Answers "GetMbr" (parameter 1: address of a `TRect` to fill) and "Draw" (parameter 1: address of a
    /// `CCanvas`). What stands at an address cannot be checked; a null one is left to the base class.
    bool DoMessage(CMessage* message) override;

    // --- persist: the four bounds, 2 bytes each; a stream cut short leaves what it does not deliver ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

    /// A rectangle has no text form: false, the text is left as it is.
    bool ToString(CString& text, const char16_t* format) override;

private:
    /// Always a modification.
    void Store(const TRect& rect);

    TCoord m_MinX;
    TCoord m_MinY;
    TCoord m_MaxX;
    TCoord m_MaxY;
};

/// A factory makes the rectangle of four zeros.
template <>
struct CFactoryTraits<CRect> {
    static CRect* Construct(void* place) { return new (place) CRect(0, 0, 0, 0); }  ///< Four zeros.
};

}  // namespace zul
