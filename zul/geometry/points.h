/// \file
/// The vertex list of polylines and polygons, with its bounding box, its line geometry and its clipping.
#pragma once

#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/export.h"
#include "zul/kernel/stream.h"

namespace zul {

class CPoint;
class CRect;

/// The side of a directed line on which a point lies, y pointing up.
enum class TDotToLine : std::int32_t {
    Left = -1,
    On = 0,
    Right = 1,
};

/// A growable list of points in map units, packed as `TPoint`, with a cached bounding box (MBR). It is
/// embedded in other objects, not an object itself: the buffer's owner records its changes.
///
/// The box of an empty list is inverted: minima 32767, maxima -32768. It follows every change except where an
/// operation says otherwise. Indices out of range change nothing and read (0, 0); counts that are negative,
/// too large, or come with a null pointer are ignored. Points given from the list's own array are copied
/// first. Where memory is short std::bad_alloc comes and the list stays as it was.
class ZUL_API CPoints : public CAnyMemoryBuffer {
public:
    /// \param serializable  false keeps the points (not the box) out of the stored form
    explicit CPoints(bool serializable);
    /// A move would leave an empty list with a box: it copies.
    CPoints(const CPoints&) = default;
    CPoints& operator=(const CPoints&) = default;

    // --- query ---

    /// How many points there are.
    std::uint32_t GetCount() const { return GetSize() / static_cast<std::uint32_t>(sizeof(TPoint)); }
    bool GetFirst(TCoord& x, TCoord& y) const;  ///< False on an empty list.
    /// False on an empty list; else the last point and, where asked, its index.
    bool GetLast(TCoord& x, TCoord& y, std::uint32_t* index = nullptr) const;
    /// Goes around the list, which closes on itself, from `index` to the next point elsewhere than the point
    /// there: gives its index and coordinates. When all points are in one place it gives the start again; an
    /// `index` out of range gives 0 and leaves the coordinates.
    std::uint32_t GetNextPoint(std::uint32_t index, TCoord& x, TCoord& y, bool forward) const;
    /// (0, 0) for an index out of range.
    void GetPoint(std::uint32_t index, TCoord& x, TCoord& y) const;
    void GetPoint(std::uint32_t index, TPoint& point) const;
    void GetPoint(std::uint32_t index, TLongPoint& point) const;
    TCoord GetPointX(std::uint32_t index) const;
    TCoord GetPointY(std::uint32_t index) const;
    TPoint* GetPoints();              ///< The packed array; valid until the next change.
    const TPoint* GetPoints() const;  ///< The packed array; valid until the next change.
    void GetPoints(
        CArray<CPoint>* points) const;         ///< Appends a new `CPoint` for every vertex; null is ignored.
    bool IsEqual(const CPoints& other) const;  ///< Same points in the same order.

    bool GetMbr(TRect& mbr) const;  ///< The cached box; always true.
    bool GetMbr(CRect& mbr) const;  ///< The cached box; always true.
    void GetMbr(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) const;  ///< The cached box.

    /// The first vertex within `tolerance` of (x, y) in both directions; false leaves `index`. Segments
    /// between vertices are not looked at.
    bool Find(TCoord x, TCoord y, std::int32_t& index, std::int32_t tolerance) const;

    // --- change ---

    void Clear();  ///< The box becomes that of an empty list.
    void Reserve(std::int32_t count,
                 bool clear);         ///< Room for `count` points; with `clear` the list is emptied.
    void Resize(std::int32_t count);  ///< New points are (0, 0). The box is left as it is.
    void Append(TCoord x, TCoord y);  ///< Constant time.
    /// With `reverse` the last one comes first.
    void Append(const TPoint* points, std::uint32_t count, bool reverse);
    /// Keeps the low 16 bits of each coordinate. The box follows only with `updateMbr`.
    void Append(const TLongPoint* points, std::uint32_t count, bool updateMbr);
    void Insert(std::uint32_t index, TCoord x,
                TCoord y);             ///< Before `index`; beyond the count nothing happens.
    void Delete(std::uint32_t index);  ///< Out of range nothing happens.
    /// Deletes both ends and what lies between, given in any order; a negative `to` means `from` alone.
    /// False, nothing changed, unless both are indices of the list.
    bool Delete(std::int32_t from, std::int32_t to);
    void Reverse();  ///< The last point becomes the first.

    /// Out of range nothing happens; the box follows.
    void SetPoint(std::uint32_t index, TCoord x, TCoord y);
    void SetPointX(std::uint32_t index, TCoord x);
    void SetPointY(std::uint32_t index, TCoord y);
    /// Replaces the whole list. Null leaves it as it is, unless the count is 0.
    void SetPoints(const TPoint* points, std::uint32_t count);
    void SetPoints(CArray<CPoint>* points);

    /// Shifts the points from..to like `Delete` picks them, each wrapping to 16 bits. An index equal to the
    /// count is let through and touches nothing; beyond it, or a negative `from`, is false.
    bool Move(std::int32_t dx, std::int32_t dy, std::int32_t from, std::int32_t to);
    /// Shifts every point, wrapping to 16 bits. The box is shifted, not found anew; its corners are what
    /// reports the overflow, as `CPoint::Move` does.
    void Move(std::int32_t dx, std::int32_t dy);
    /// Stretches every point away from (cx, cy), wrapping to 16 bits. The box is stretched, not found anew;
    /// its corners are what reports the overflow, as `CPoint::Scale` does.
    void Scale(TCoord cx, TCoord cy, double kx, double ky);

    void UpdateMbr();  ///< Finds the box anew.

    // --- line geometry: results are rounded, halves away from zero ---

    /// Where (x, y) lies, seen on the way from (x1, y1) to (x2, y2).
    static TDotToLine DotToLine(TCoord x1, TCoord y1, TCoord x2, TCoord y2, TCoord x, TCoord y);

    /// The line through two points as y = k x + b; false for a vertical one, k and b left alone.
    static bool LineParams(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, double& k,
                           double& b);
    static bool LineParams(const TDoublePoint& p1, const TDoublePoint& p2, double& k, double& b);

    /// The other coordinate of the line through two points where its y (`byY`) or its x is `c`. A line
    /// parallel to that direction gives the first point's coordinate.
    static TCoord FindInters(TCoord x1, TCoord y1, TCoord x2, TCoord y2, TCoord c, bool byY);
    static TCoord FindInters(const TPoint& p1, const TPoint& p2, TCoord c, bool byY);
    /// Where the line through two points meets y = k x + b; false, `out` left alone, when it is vertical.
    /// Parallel lines are true and give a point without meaning, which the unrounded form may put at
    /// infinity.
    static bool FindInters(const TPoint& p1, const TPoint& p2, double k, double b, TPoint& out);
    static bool FindInters(const TDoublePoint& p1, const TDoublePoint& p2, double k, double b, TPoint& out);
    static bool FindInters(const TDoublePoint& p1, const TDoublePoint& p2, double k, double b,
                           TDoublePoint& out);
    /// Where two lines, each through two points, meet; false, `out` left alone, when both are vertical.
    static bool FindInters(const TPoint& a1, const TPoint& a2, const TPoint& b1, const TPoint& b2,
                           TPoint& out);
    static bool FindInters(const TDoublePoint& a1, const TDoublePoint& a2, const TDoublePoint& b1,
                           const TDoublePoint& b2, TPoint& out);

    /// The segment a-b shifted sideways, to the same side whichever way it runs: down for a level one. Only
    /// an upright one goes to the right of its way.
    static void OffsetLine(const TPoint& a, const TPoint& b, double distance, TPoint& outA, TPoint& outB);
    /// The point at `distance` from a in the direction of b; a itself when they are one.
    static void OffsetPoint(TPoint a, TPoint b, double distance, TCoord& x, TCoord& y);

    // --- clipping ---

    /// Appends to `out` what lies on the left of, or on, the directed line a-b. The sequence is open: the way
    /// from the last point back to the first is not looked at.
    static void ClipByLine(const TPoint* points, std::uint32_t count, const TPoint& a, const TPoint& b,
                           CPoints& out);

    /// Cuts the list to a rectangle and replaces `result` by what lies inside, in the list's order. Points on
    /// the border are inside. The list itself stays as it is, unless it is its own result.
    ///
    /// - A ring (`closed`; the last point need not repeat the first, and does not in the result) becomes a
    /// ring:
    ///   where it runs outside, it is laid along the border, around the corners that it passes, as often as
    ///   it passes around. So it encloses each inner point exactly as it did before, under either fill rule.
    /// - An open list becomes one open list: from where it leaves to where it comes back it runs along the
    /// border
    ///   the shorter way. What lies outside before its first and after its last visit is dropped.
    /// - Nothing inside, or an inverted rectangle: an empty result. (A ring around the rectangle has it
    /// inside.)
    ///
    /// A crossing point is found on the segment as it stands in the list and rounded to 16 bits, so it lies
    /// on the border at most half a unit from the true one. Time and result grow linearly with the list.
    void ClipByRect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, CPoints& result, bool closed) const;

    // --- persist: the points as the buffer stores itself, then the box, 8 bytes ---

    bool ObjectToBuffer(CStream* stream) const;  ///< False when the stream does not take it.
    /// The box is taken as stored. Where the stream ends too early, it is found anew.
    bool ObjectFromBuffer(CStream* stream);
    std::uint32_t GetPreferredSize() const;  ///< Bytes of the stored form.

protected:
    /// The box of the points as they are; inverted when there are none.
    void CalculateMbr(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) const;
    void UpdateMbr(TCoord x, TCoord y);  ///< Stretches the box to a point.

private:
    /// Where `count` new points at the end are; null, and nothing changed, when there is no room for them.
    TPoint* GrowBy(std::uint32_t count);
    bool IsOwn(const TPoint* points) const;

    TRect m_Mbr;
};

}  // namespace zul
