/// \file
/// Point lists edited, searched, measured, clipped and stored, beside a plain list that must stay equal; and
/// the arithmetic on lines and rectangles.
///
/// An input is a program: each step is an operation, and what follows it are its arguments.

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "tests/geometry/ring_measures.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/point.h"
#include "zul/geometry/points.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/stream.h"

namespace {

using fuzz::Require;
using zul::CPoints;
using zul::CRect;
using zul::TCoord;
using zul::TPoint;
using List = zul::testing::List;

constexpr int kMaxSteps = 200;
constexpr std::size_t kMaxPoints = 400;

class Program {
public:
    explicit Program(fuzz::Input& input) : m_Input(input) {}

    void Step() {
        using Method = void (Program::*)();
        static constexpr Method kSteps[] = {
            &Program::Append,    &Program::Append,    &Program::AppendMany, &Program::AppendMany,
            &Program::AppendOwn, &Program::Insert,    &Program::Delete,     &Program::DeleteRange,
            &Program::Change,    &Program::Replace,   &Program::MoveSome,   &Program::MoveOrScale,
            &Program::Resize,    &Program::Look,      &Program::Find,       &Program::Store,
            &Program::ClipRing,  &Program::ClipRing,  &Program::ClipLine,   &Program::ClipLine,
            &Program::ClipHalf,  &Program::MeetLines, &Program::Rectangles,
        };
        (this->*kSteps[m_Input.Below(std::size(kSteps))])();
        Require(Read(m_List) == m_Model, "the list holds what the plain one holds");
        CheckBox();
        if (m_Model.size() > kMaxPoints) Clear();
    }

private:
    // --- arguments ---

    TCoord Coord() { return zul::WrapToCoord(m_Input.Number(100)); }
    TPoint Point() {
        const TCoord x = Coord();
        return {x, Coord()};
    }
    List Points() {
        List points(static_cast<std::size_t>(m_Input.Below(12)));
        for (TPoint& point : points)
            point = Point();
        return points;
    }
    /// Mostly a place in the list or next to it.
    std::int32_t Index() {
        if (m_Input.Below(8) == 0) return m_Input.Number(100);
        return m_Input.Below(static_cast<int>(m_Model.size()) + 2);
    }
    bool Has(std::int64_t index) const { return index >= 0 && index < std::int64_t(m_Model.size()); }
    static List Read(const CPoints& points) {
        return List(points.GetPoints(), points.GetPoints() + points.GetCount());
    }
    void CheckBox() const {
        zul::TRect box{}, expected{zul::MaxCoord, zul::MaxCoord, zul::MinCoord, zul::MinCoord};
        m_List.GetMbr(box);
        for (const TPoint& point : m_Model)
            expected = {std::min(expected.MinX, point.X), std::min(expected.MinY, point.Y),
                        std::max(expected.MaxX, point.X), std::max(expected.MaxY, point.Y)};
        Require(box.MinX == expected.MinX && box.MinY == expected.MinY && box.MaxX == expected.MaxX &&
                    box.MaxY == expected.MaxY,
                "the box follows the points");
    }

    // --- editing ---

    void Clear() {
        m_List.Clear();
        m_Model.clear();
    }
    void Append() {
        const TPoint point = Point();
        m_List.Append(point.X, point.Y);
        m_Model.push_back(point);
    }
    void AppendMany() {
        List points = Points();
        const auto count = static_cast<std::uint32_t>(points.size());
        if (m_Input.Flag()) {
            std::vector<zul::TLongPoint> large;
            for (const TPoint& point : points)
                large.push_back({point.X + 65536 * m_Input.Below(3), point.Y - 65536});
            m_List.Append(large.data(), count, true);
        } else {
            const bool reverse = m_Input.Flag();
            m_List.Append(points.data(), count, reverse);
            if (reverse) std::reverse(points.begin(), points.end());
        }
        m_Model.insert(m_Model.end(), points.begin(), points.end());
        m_List.Append(static_cast<const TPoint*>(nullptr), count, false);
    }
    /// A part of the list at its own end.
    void AppendOwn() {
        const auto first = static_cast<std::size_t>(m_Input.Below(static_cast<int>(m_Model.size()) + 1));
        const bool reverse = m_Input.Flag();
        List part(m_Model.begin() + static_cast<std::ptrdiff_t>(first), m_Model.end());
        m_List.Append(m_List.GetPoints() + first, static_cast<std::uint32_t>(part.size()), reverse);
        if (reverse) std::reverse(part.begin(), part.end());
        m_Model.insert(m_Model.end(), part.begin(), part.end());
        if (m_Input.Below(4) != 0 || first == m_Model.size()) return;
        m_List.SetPoints(m_List.GetPoints() + first, m_List.GetCount() - static_cast<std::uint32_t>(first));
        m_Model.erase(m_Model.begin(), m_Model.begin() + static_cast<std::ptrdiff_t>(first));
    }
    void Insert() {
        const std::int32_t index = Index();
        const TPoint point = Point();
        m_List.Insert(static_cast<std::uint32_t>(index), point.X, point.Y);
        if (Has(index) || index == std::int64_t(m_Model.size()))
            m_Model.insert(m_Model.begin() + index, point);
    }
    void Delete() {
        const std::int32_t index = Index();
        m_List.Delete(static_cast<std::uint32_t>(index));
        if (Has(index)) m_Model.erase(m_Model.begin() + index);
    }
    void DeleteRange() {
        const std::int32_t from = Index(), to = Index(), end = to < 0 ? from : to;
        const bool there = Has(from) && Has(end);
        Require(m_List.Delete(from, to) == there, "a range is deleted when both ends are there");
        if (there)
            m_Model.erase(m_Model.begin() + std::min(from, end), m_Model.begin() + std::max(from, end) + 1);
    }
    void Change() {
        const std::int32_t index = Index();
        const TPoint point = Point();
        const int which = m_Input.Below(3);
        if (which == 0) m_List.SetPoint(static_cast<std::uint32_t>(index), point.X, point.Y);
        if (which == 1) m_List.SetPointX(static_cast<std::uint32_t>(index), point.X);
        if (which == 2) m_List.SetPointY(static_cast<std::uint32_t>(index), point.Y);
        if (!Has(index)) return;
        TPoint& there = m_Model[static_cast<std::size_t>(index)];
        if (which != 2) there.X = point.X;
        if (which != 1) there.Y = point.Y;
    }
    void Replace() {
        switch (m_Input.Below(3)) {
            case 0:
                return Clear();
            case 1:
                m_List.Reverse();
                return std::reverse(m_Model.begin(), m_Model.end());
            default:
                m_Model = Points();
                m_List.SetPoints(m_Model.data(), static_cast<std::uint32_t>(m_Model.size()));
        }
    }
    void MoveSome() {
        const std::int32_t dx = m_Input.Number(100), dy = m_Input.Number(100), from = Index(), to = Index();
        const std::int32_t end = to < 0 ? from : to;
        const auto reaches = [&](std::int32_t index) {
            return Has(index) || index == std::int64_t(m_Model.size());
        };
        const bool there = reaches(from) && reaches(end);
        Require(m_List.Move(dx, dy, from, to) == there, "a range is moved when both ends are there");
        if (!there) return;
        for (std::int32_t i = std::min(from, end); i <= std::max(from, end) && Has(i); ++i)
            Shift(m_Model[static_cast<std::size_t>(i)], dx, dy);
    }
    static void Shift(TPoint& point, std::int32_t dx, std::int32_t dy) {
        point = zul::WrapToPoint(std::int64_t{point.X} + dx, std::int64_t{point.Y} + dy);
    }
    /// These leave a box of their own.
    void MoveOrScale() {
        if (m_Input.Flag()) {
            const std::int32_t dx = m_Input.Number(100), dy = m_Input.Number(100);
            m_List.Move(dx, dy);
            for (TPoint& point : m_Model)
                Shift(point, dx, dy);
        } else {
            const TPoint center = Point();
            const double kx = m_Input.Real(3), ky = m_Input.Real(3);
            m_List.Scale(center.X, center.Y, kx, ky);
            for (TPoint& point : m_Model)
                zul::CPoint::Scale(point.X, point.Y, center.X, center.Y, kx, ky);
        }
        m_List.UpdateMbr();
    }
    void Resize() {
        constexpr std::int32_t kImpossible[] = {-1, -2147483647 - 1, 2147483647};
        m_List.Resize(m_Input.OneOf(kImpossible));
        m_List.Reserve(m_Input.OneOf(kImpossible), false);
        const std::int32_t count = m_Input.Below(40);
        m_List.Reserve(count, false);
        m_List.Resize(count);
        m_Model.resize(static_cast<std::size_t>(count), TPoint{});
        m_List.UpdateMbr();
    }

    // --- asking ---

    void Look() {
        const auto index = static_cast<std::uint32_t>(Index());
        TCoord x = 0, y = 0;
        TPoint point{};
        zul::TLongPoint large{};
        m_List.GetPoint(index, point);
        m_List.GetPoint(index, large);
        Require(point == (Has(index) ? m_Model[index] : TPoint{}), "a point reads as it was set");
        Require(large == zul::TLongPoint{point.X, point.Y}, "both records read alike");
        Require(m_List.GetFirst(x, y) == !m_Model.empty() && m_List.GetLast(x, y) == !m_Model.empty(),
                "ends");
        const std::uint32_t next = m_List.GetNextPoint(index, x, y, m_Input.Flag());
        if (Has(index))
            Require(Has(next) && m_Model[next] == TPoint{x, y}, "the next point is one of the list");
    }
    void Find() {
        const TPoint at = Point();
        const std::int32_t tolerance = m_Input.Number(50);
        std::int32_t found = -1;
        m_List.Find(at.X, at.Y, found, tolerance);
        const auto first = std::find_if(m_Model.begin(), m_Model.end(), [&](const TPoint& point) {
            return CRect::IsNear(at.X, at.Y, point.X, point.Y, tolerance);
        });
        Require(found == (first == m_Model.end() ? -1 : first - m_Model.begin()),
                "the first near one is found");
    }
    void Store() {
        zul::CMemoryStream stream;
        m_List.ObjectToBuffer(&stream);
        stream.SetPosition(0);
        CPoints same(true);
        Require(same.ObjectFromBuffer(&stream) && same.IsEqual(m_List), "a stored list comes back");
        zul::CMemoryStream cut(
            stream.GetBuffer(),
            static_cast<std::size_t>(m_Input.Below(static_cast<int>(stream.GetSize()) + 1)));
        same.ObjectFromBuffer(&cut);
    }

    // --- clipping ---

    zul::TRect Frame() {
        const TPoint a = Point(), b = Point();
        if (m_Input.Below(8) == 0) return {a.X, a.Y, b.X, b.Y};
        return {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
    }
    List Clip(const zul::TRect& frame, bool closed) {
        CPoints result(true);
        m_List.ClipByRect(frame.MinX, frame.MinY, frame.MaxX, frame.MaxY, result, closed);
        const List clipped = Read(result);
        const CRect rect(frame);
        const auto isInside = [&](const TPoint& point) { return rect.IsInside(point.X, point.Y); };
        Require(std::all_of(clipped.begin(), clipped.end(), isInside), "what is clipped lies inside");
        Require(clipped.size() <= 6 * m_Model.size() + 8, "what is clipped is not much longer");
        CPoints again(true);
        result.ClipByRect(frame.MinX, frame.MinY, frame.MaxX, frame.MaxY, again, closed);
        Require(Read(again) == clipped, "clipping once is enough");
        return clipped;
    }
    void ClipRing() {
        const zul::TRect frame = Frame();
        const List clipped = Clip(frame, true);
        if (frame.MinX >= frame.MaxX || frame.MinY >= frame.MaxY) return;
        // Off the whole coordinates, so that no point lies on a border.
        const double x = frame.MinX + m_Input.Below(frame.MaxX - frame.MinX) + 0.5;
        const double y = frame.MinY + m_Input.Below(frame.MaxY - frame.MinY) + 0.5;
        // A crossing point is rounded by half a unit at most, and so is the way of what follows it.
        if (zul::testing::DistanceTo(m_Model, x, y) <= 0.5 + 1e-6) return;
        Require(zul::testing::WindingNumber(clipped, x, y) == zul::testing::WindingNumber(m_Model, x, y),
                "a clipped ring encloses what the ring did");
    }
    void ClipLine() {
        const zul::TRect frame = Frame();
        const CRect rect(frame);
        const List clipped = Clip(frame, false);
        auto next = clipped.begin();
        for (const TPoint& point : m_Model) {
            if (!rect.IsInside(point.X, point.Y)) continue;
            next = std::find(next, clipped.end(), point);
            Require(next != clipped.end(), "points inside stay, in their order");
        }
    }
    void ClipHalf() {
        CPoints result(true);
        m_List.Append(result.GetPoints(), 0, false);
        const TPoint a = Point(), b = Point();
        CPoints::ClipByLine(m_List.GetPoints(), m_List.GetCount(), a, b, result);
        Require(result.GetCount() <= 2 * m_List.GetCount(), "a half plane adds a point a segment at most");
    }

    // --- lines, angles, rectangles ---

    void MeetLines() {
        const TPoint a = Point(), b = Point(), c = Point(), d = Point();
        const auto cross = std::int64_t{b.X - a.X} * (c.Y - a.Y) - std::int64_t{b.Y - a.Y} * (c.X - a.X);
        const auto side = static_cast<std::int32_t>(CPoints::DotToLine(a.X, a.Y, b.X, b.Y, c.X, c.Y));
        Require(side == (cross < 0) - (cross > 0), "left and right of a line");
        TPoint out{};
        double k = m_Input.Real(9), shift = m_Input.Real(100);
        CPoints::FindInters(a, b, c, d, out);
        CPoints::FindInters(a, b, k, shift, out);
        CPoints::FindInters(a, b, c.X, m_Input.Flag());
        const TDoublePoint da{m_Input.Real(100), shift}, db{k, m_Input.Real(100)}, dc{double(c.X), k};
        TDoublePoint there{};
        CPoints::FindInters(da, db, k, shift, there);
        CPoints::FindInters(da, db, dc, da, out);
        CPoints::LineParams(da, db, k, shift);
        TPoint e = a, f = b;
        CPoints::OffsetLine(a, b, m_Input.Real(100), e, f);
        CPoints::OffsetPoint(a, b, m_Input.Real(100), e.X, e.Y);
        zul::CPoint::Rotate(e.X, e.Y, b.X, b.Y, m_Input.Real(360));
        std::int32_t ax = 0, ay = 0, bx = 0, by = 0;
        zul::CAngle::FindDxDy(m_Input.Number(100), ax, bx, m_Input.Number(100), m_Input.Real(50), ax, ay, bx,
                              by, m_Input.Number(360), m_Input.Flag());
        const double angle = m_Input.Real(720), turned = zul::CAngle::GetAngle360(angle);
        Require(!std::isfinite(angle) || (turned >= 0 && turned <= 360), "an angle within a turn");
        zul::CAngle::GetAngle180(turned);
    }
    void Rectangles() {
        const CRect a(Frame()), b(Frame());
        CRect both(a), common(a);
        both.Unite(&b);
        common.Intersect(&b);
        const bool sane = a.GetWidth() >= 0 && a.GetHeight() >= 0 && b.GetWidth() >= 0 && b.GetHeight() >= 0;
        const auto isIn = [](const CRect& outer, const CRect& inner) {
            return outer.IsInside(inner.GetMinX(), inner.GetMinY(), inner.GetMaxX(), inner.GetMaxY(), true);
        };
        if (sane) Require(isIn(both, a) && isIn(both, b) && isIn(a, common), "united and common parts");
        const TPoint at = Point();
        Require(!sane || a.IsInside(at.X, at.Y) == (a.AnalizePoint(at.X, at.Y) == zul::TDotToRect::Inside),
                "inside is one thing");
        CRect changed(a);
        changed.Move(m_Input.Number(100), m_Input.Number(100));
        changed.Scale(at.X, at.Y, m_Input.Real(3), m_Input.Real(3));
        changed.Rotate(at.X, at.Y, m_Input.Real(360));
        const std::int32_t dx = m_Input.Number(100), dy = m_Input.Number(100);
        changed.CheckCoordBounds(dx, dy);
        changed.Inflate(dx, dy);
        CPoints spots(true);
        changed.GetHotPoints(spots);
        std::int32_t corner = 0, box[] = {m_Input.Number(99), m_Input.Number(99), m_Input.Number(99), dy};
        changed.Find(at.X, at.Y, corner, dx);
        CRect::GetProportional(m_Input.Number(99), m_Input.Number(99), box[0], box[1], box[2], box[3]);
    }

    fuzz::Input& m_Input;
    CPoints m_List{true};
    List m_Model;
};

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Program program(input);
    for (int step = 0; step < kMaxSteps && input.IsLeft(); ++step)
        program.Step();
}
