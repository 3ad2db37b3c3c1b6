// Clipping of point lists by a rectangle.
#include <algorithm>

#include "zul/geometry/points.h"
#include "zul/geometry/rect.h"

namespace zul {

namespace {

/// Collects points in a list's buffer; the box is found once, at the end. Without memory the list ends empty.
class CPointWriter {
public:
    explicit CPointWriter(CPoints& out) : m_Out(out) { m_Out.Clear(); }
    ~CPointWriter() {
        if (!m_IsFinished) m_Out.Clear();
    }
    CPointWriter(const CPointWriter&) = delete;
    CPointWriter& operator=(const CPointWriter&) = delete;

    bool IsEmpty() const { return m_Count == 0; }

    void Put(const TPoint& point) {
        if (m_Count == m_Room && !Grow()) return;
        m_Points[m_Count++] = point;
    }

    /// Leaves out a point that repeats the one before.
    void PutOther(const TPoint& point) {
        if (m_Count == 0 || m_Points[m_Count - 1] != point) Put(point);
    }

    void Finish(bool closed) {
        while (closed && m_Count > 1 && m_Points[m_Count - 1] == m_Points[0])
            --m_Count;
        m_Out.Resize(m_Count);
        m_Out.UpdateMbr();
        m_IsFinished = true;
    }

private:
    bool Grow() {
        constexpr std::int32_t maxRoom = INT32_MAX / 2;  // what a list can hold
        const std::int32_t room = std::clamp(2 * m_Room, 64, maxRoom);
        m_Out.Resize(room);
        m_Room = static_cast<std::int32_t>(m_Out.GetCount());
        m_Points = m_Out.GetPoints();
        return m_Count < m_Room;
    }

    CPoints& m_Out;
    TPoint* m_Points = nullptr;
    std::int32_t m_Count = 0;
    std::int32_t m_Room = 0;
    bool m_IsFinished = false;
};

/// How far the end of a segment lies outside, as a part (Depth / Length) of the segment, and the edge to cut
/// at.
struct TCut {
    std::int64_t Depth = 0;
    std::int64_t Length = 1;
    bool IsVertical = false;  // the edge
    TCoord Edge = 0;
};

/// Walks along a list and writes what a rectangle leaves of it.
///
/// Around the frame lie eight zones, numbered clockwise as TDotToRect does; the same numbers name the places
/// on its border: odd ones are the corners, even ones the edges between them. While the walk is outside,
/// pushing every point of it to the nearest point of the frame makes it run along the border. Only how many
/// zones that run goes on, signed, counted through full turns, says which corners it takes; going to and fro
/// cancels out. Pushing moves no point across the inside, so the run encloses there what the walk enclosed.
class CRectClipper {
public:
    CRectClipper(const TRect& frame, CPoints& out) : m_Frame(frame), m_Writer(out) {}

    void ClipLine(const TPoint* points, std::uint32_t count) {
        Start(points[0]);
        for (std::uint32_t i = 1; i < count; ++i)
            Walk(points[i - 1], points[i]);
        m_Writer.Finish(false);
    }

    void ClipRing(const TPoint* points, std::uint32_t count) {
        m_Closed = true;
        Start(points[0]);
        for (std::uint32_t i = 1; i < count; ++i)
            Walk(points[i - 1], points[i]);
        Walk(points[count - 1], points[0]);
        if (m_Writer.IsEmpty()) {
            // Never inside: what counts is how often the ring went around, which takes in all corners.
            LayCorners(0, m_Turn);
        } else if (m_Zone != TDotToRect::Inside) {
            LayCorners(m_ExitZone, m_Turn + m_LeadTurn);
        }
        m_Writer.Finish(true);
    }

private:
    TDotToRect ZoneOf(const TPoint& p) const {
        return CRect::AnalizePoint(p.X, p.Y, m_Frame.MinX, m_Frame.MinY, m_Frame.MaxX, m_Frame.MaxY);
    }

    void Start(const TPoint& first) {
        m_Zone = ZoneOf(first);
        if (m_Zone == TDotToRect::Inside) m_Writer.Put(first);
    }

    /// Goes on from one vertex, whose visit is done, to the next.
    void Walk(const TPoint& from, const TPoint& to) {
        const TDotToRect fromZone = m_Zone;
        const TDotToRect toZone = ZoneOf(to);
        m_Zone = toZone;
        const bool fromInside = fromZone == TDotToRect::Inside;
        const bool toInside = toZone == TDotToRect::Inside;
        if (fromInside && toInside) {
            m_Writer.Put(to);
            return;
        }
        TCut fromCut;
        TCut toCut;
        if (!IsVisible(from, to, fromCut, toCut)) {
            if (m_Closed) m_Turn += StepsPast(from, fromZone, to, toZone);
            return;
        }
        TPoint entry = from;
        if (!fromInside) {
            entry = CrossingPoint(from, to, fromCut);
            Enter(static_cast<int>(fromZone), entry);
        }
        if (!toInside) {
            Leave(CrossingPoint(from, to, toCut), static_cast<int>(toZone));
        } else if (fromInside || to != entry) {
            m_Writer.Put(to);
        }
    }

    void Enter(int fromZone, const TPoint& entry) {
        const int entryZone = BorderZone(entry);
        m_Turn += Nearest(entryZone - fromZone);
        if (m_Writer.IsEmpty()) {
            m_LeadTurn = m_Turn;
        } else {
            LayCorners(m_ExitZone, m_Closed ? m_Turn : ShorterTurn(m_Exit, entry));
        }
        m_Writer.PutOther(entry);
    }

    void Leave(const TPoint& exit, int toZone) {
        m_Writer.PutOther(exit);
        m_Exit = exit;
        m_ExitZone = BorderZone(exit);
        m_Turn = Nearest(toZone - m_ExitZone);
    }

    /// Whether a segment with at least one end outside has a point in the frame; then the cuts say where it
    /// enters and leaves. Exact: all products fit 64 bits.
    bool IsVisible(const TPoint& from, const TPoint& to, TCut& fromCut, TCut& toCut) const {
        const bool beside = std::max(from.X, to.X) < m_Frame.MinX || std::min(from.X, to.X) > m_Frame.MaxX ||
                            std::max(from.Y, to.Y) < m_Frame.MinY || std::min(from.Y, to.Y) > m_Frame.MaxY;
        if (beside) return false;
        const std::int64_t width = std::abs(to.X - from.X);
        const std::int64_t height = std::abs(to.Y - from.Y);
        fromCut = CutAt(from, width, height);
        toCut = CutAt(to, width, height);
        return fromCut.Depth * toCut.Length + toCut.Depth * fromCut.Length <= fromCut.Length * toCut.Length;
    }

    TCut CutAt(const TPoint& end, std::int64_t width, std::int64_t height) const {
        const TCoord x = std::clamp(end.X, m_Frame.MinX, m_Frame.MaxX);
        const TCoord y = std::clamp(end.Y, m_Frame.MinY, m_Frame.MaxY);
        const std::int64_t depthX = std::abs(end.X - x);
        const std::int64_t depthY = std::abs(end.Y - y);
        if (depthX == 0 && depthY == 0) return {};
        if (depthX * height >= depthY * width && depthX != 0) return {depthX, width, true, x};
        return {depthY, height, false, y};
    }

    static TPoint CrossingPoint(const TPoint& from, const TPoint& to, const TCut& cut) {
        const TCoord other = CPoints::FindInters(from, to, cut.Edge, !cut.IsVertical);
        return cut.IsVertical ? TPoint{cut.Edge, other} : TPoint{other, cut.Edge};
    }

    /// The place of a point on the border. A frame without width is all left edge, one without height all
    /// upper edge.
    int BorderZone(const TPoint& p) const {
        TDotToRect zone = TDotToRect::Right;
        if (p.X == m_Frame.MinX) {
            zone = p.Y == m_Frame.MaxY   ? TDotToRect::UpperLeft
                   : p.Y == m_Frame.MinY ? TDotToRect::LowerLeft
                                         : TDotToRect::Left;
        } else if (p.Y == m_Frame.MaxY) {
            zone = p.X == m_Frame.MaxX ? TDotToRect::UpperRight : TDotToRect::Above;
        } else if (p.Y == m_Frame.MinY) {
            zone = p.X == m_Frame.MaxX ? TDotToRect::LowerRight : TDotToRect::Below;
        }
        return static_cast<int>(zone);
    }

    /// The difference of two zones taken the shorter way around: -3 to 4.
    static int Nearest(int steps) {
        const int clockwise = steps & 7;
        return clockwise > 4 ? clockwise - 8 : clockwise;
    }

    /// How many zones a segment that misses the frame goes on.
    int StepsPast(const TPoint& from, TDotToRect fromZone, const TPoint& to, TDotToRect toZone) const {
        const int steps = Nearest(static_cast<int>(toZone) - static_cast<int>(fromZone));
        if (steps != 4) return steps;
        // From corner to opposite corner it passes on either side of the frame: clockwise has it on the
        // right.
        const TDotToLine side = CPoints::DotToLine(from.X, from.Y, to.X, to.Y, m_Frame.MinX, m_Frame.MinY);
        return side == TDotToLine::Right ? 4 : -4;
    }

    /// The zones to go on along the border from one of its points to another, the shorter way.
    int ShorterTurn(const TPoint& from, const TPoint& to) const {
        const int clockwise = (BorderZone(to) - BorderZone(from)) & 7;
        if (clockwise == 0) return 0;
        const int width = m_Frame.MaxX - m_Frame.MinX;
        const int height = m_Frame.MaxY - m_Frame.MinY;
        const int around = 2 * (width + height);
        const int length = (PlaceOnBorder(to) - PlaceOnBorder(from) + around) % around;
        return 2 * length <= around ? clockwise : clockwise - 8;
    }

    /// The way along the border, clockwise from its lower left corner.
    int PlaceOnBorder(const TPoint& p) const {
        const int width = m_Frame.MaxX - m_Frame.MinX;
        const int height = m_Frame.MaxY - m_Frame.MinY;
        switch (static_cast<TDotToRect>(BorderZone(p))) {
            case TDotToRect::LowerLeft:
            case TDotToRect::Left:
            case TDotToRect::UpperLeft:
                return p.Y - m_Frame.MinY;
            case TDotToRect::Above:
            case TDotToRect::UpperRight:
                return height + (p.X - m_Frame.MinX);
            case TDotToRect::Right:
            case TDotToRect::LowerRight:
                return height + width + (m_Frame.MaxY - p.Y);
            case TDotToRect::Below:
            case TDotToRect::Inside:
                break;
        }
        return 2 * height + width + (m_Frame.MaxX - p.X);
    }

    /// Puts the corners strictly between a zone and the one `turn` further on.
    void LayCorners(int zone, std::int64_t turn) {
        const int step = turn < 0 ? -1 : 1;
        for (std::int64_t i = step; i * step < turn * step; i += step) {
            const auto place = static_cast<int>((zone + i) & 7);
            if (place % 2 != 0) m_Writer.PutOther(Corner(place));
        }
    }

    TPoint Corner(int zone) const {
        const bool left = zone == 1 || zone == 7;
        const bool upper = zone == 1 || zone == 3;
        return {left ? m_Frame.MinX : m_Frame.MaxX, upper ? m_Frame.MaxY : m_Frame.MinY};
    }

    const TRect m_Frame;
    CPointWriter m_Writer;
    bool m_Closed = false;
    TDotToRect m_Zone = TDotToRect::Inside;  // of the vertex that the walk has come to
    std::int64_t m_Turn = 0;      // zones gone on since the exit, or since the start before the first visit
    std::int64_t m_LeadTurn = 0;  // zones gone on from the start of a ring to its first visit
    TPoint m_Exit = {};
    int m_ExitZone = 0;
};

}  // namespace

void CPoints::ClipByRect(TCoord minX, TCoord minY, TCoord maxX, TCoord maxY, CPoints& result,
                         bool closed) const {
    if (&result == this) {
        CPoints clipped(false);
        ClipByRect(minX, minY, maxX, maxY, clipped, closed);
        result.SetPoints(clipped.GetPoints(), clipped.GetCount());
        return;
    }
    const std::uint32_t count = GetCount();
    if (count == 0 || minX > maxX || minY > maxY) {
        result.Clear();
        return;
    }
    CRectClipper clipper({minX, minY, maxX, maxY}, result);
    if (closed) {
        clipper.ClipRing(GetPoints(), count);
    } else {
        clipper.ClipLine(GetPoints(), count);
    }
}

}  // namespace zul
