#include "zul/geometry/points.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "zul/geometry/point.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"

namespace zul {

namespace {

constexpr std::uint32_t PointSize = sizeof(TPoint);
constexpr std::uint64_t MaxCount = UINT32_MAX / PointSize;
constexpr TRect EmptyMbr = {MaxCoord, MaxCoord, MinCoord, MinCoord};

// Picks from..to as the range operations take it: a negative `to` means `from` alone, any order.
void OrderRange(std::int32_t& from, std::int32_t& to) {
    if (to < 0) to = from;
    if (to < from) std::swap(from, to);
}

TPoint Shifted(const TPoint& p, std::int32_t dx, std::int32_t dy) {
    return WrapToPoint(std::int64_t{p.X} + dx, std::int64_t{p.Y} + dy);
}

}  // namespace

// --- construct ---

CPoints::CPoints(bool serializable) : m_Mbr(EmptyMbr) {
    SetAsNotSerializable(!serializable);
}

// --- query ---

bool CPoints::GetFirst(TCoord& x, TCoord& y) const {
    if (GetCount() == 0) return false;
    GetPoint(0, x, y);
    return true;
}

bool CPoints::GetLast(TCoord& x, TCoord& y, std::uint32_t* index) const {
    if (GetCount() == 0) return false;
    const std::uint32_t last = GetCount() - 1;
    GetPoint(last, x, y);
    if (index) *index = last;
    return true;
}

std::uint32_t CPoints::GetNextPoint(std::uint32_t index, TCoord& x, TCoord& y, bool forward) const {
    const std::uint32_t count = GetCount();
    if (index >= count) return 0;
    const TPoint* points = GetPoints();
    std::uint32_t next = index;
    do {
        if (forward) {
            next = next + 1 == count ? 0 : next + 1;
        } else {
            next = next == 0 ? count - 1 : next - 1;
        }
    } while (next != index && points[next] == points[index]);
    GetPoint(next, x, y);
    return next;
}

void CPoints::GetPoint(std::uint32_t index, TCoord& x, TCoord& y) const {
    x = GetPointX(index);
    y = GetPointY(index);
}

void CPoints::GetPoint(std::uint32_t index, TPoint& point) const {
    GetPoint(index, point.X, point.Y);
}

void CPoints::GetPoint(std::uint32_t index, TLongPoint& point) const {
    point = {GetPointX(index), GetPointY(index)};
}

TCoord CPoints::GetPointX(std::uint32_t index) const {
    return index < GetCount() ? GetPoints()[index].X : TCoord{0};
}

TCoord CPoints::GetPointY(std::uint32_t index) const {
    return index < GetCount() ? GetPoints()[index].Y : TCoord{0};
}

TPoint* CPoints::GetPoints() {
    return static_cast<TPoint*>(GetBuffer());
}

const TPoint* CPoints::GetPoints() const {
    return static_cast<const TPoint*>(GetBuffer());
}

void CPoints::GetPoints(CArray<CPoint>* points) const {
    if (!points) return;
    for (std::uint32_t i = 0; i < GetCount(); ++i) {
        auto* const made = new CPoint(GetPointX(i), GetPointY(i));
        NeedMemory(made != nullptr);
        points->DoAppend(made);
    }
}

bool CPoints::IsEqual(const CPoints& other) const {
    const std::uint32_t count = GetCount();
    return count == other.GetCount() && std::equal(GetPoints(), GetPoints() + count, other.GetPoints());
}

bool CPoints::GetMbr(TRect& mbr) const {
    mbr = m_Mbr;
    return true;
}

bool CPoints::GetMbr(CRect& mbr) const {
    mbr.SetValue(m_Mbr.MinX, m_Mbr.MinY, m_Mbr.MaxX, m_Mbr.MaxY, false);
    return true;
}

void CPoints::GetMbr(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) const {
    minX = m_Mbr.MinX;
    minY = m_Mbr.MinY;
    maxX = m_Mbr.MaxX;
    maxY = m_Mbr.MaxY;
}

bool CPoints::Find(TCoord x, TCoord y, std::int32_t& index, std::int32_t tolerance) const {
    const TPoint* first = GetPoints();
    const TPoint* end = first + GetCount();
    const TPoint* hit =
        std::find_if(first, end, [&](const TPoint& p) { return CRect::IsNear(x, y, p.X, p.Y, tolerance); });
    if (hit == end) return false;
    index = static_cast<std::int32_t>(hit - first);
    return true;
}

// --- change ---

void CPoints::Clear() {
    CModificator modificator(nullptr);
    DoModify(modificator);
    CAnyMemoryBuffer::Clear();
    m_Mbr = EmptyMbr;
}

void CPoints::Reserve(std::int32_t count, bool clear) {
    if (count < 0 || static_cast<std::uint32_t>(count) > MaxCount) return;
    if (clear) Clear();
    NeedMemory(CAnyMemoryBuffer::Reserve(static_cast<std::uint32_t>(count) * PointSize));
}

void CPoints::Resize(std::int32_t count) {
    if (count < 0 || static_cast<std::uint32_t>(count) > MaxCount) return;
    NeedMemory(CAnyMemoryBuffer::Resize(static_cast<std::uint32_t>(count) * PointSize, true) || count == 0);
}

TPoint* CPoints::GrowBy(std::uint32_t count) {
    const std::uint32_t old = GetCount();
    if (std::uint64_t{old} + count > MaxCount) return nullptr;
    const std::uint32_t size = (old + count) * PointSize;
    NeedMemory(CAnyMemoryBuffer::Resize(size, true) || size == 0);
    return GetPoints() + old;
}

bool CPoints::IsOwn(const TPoint* points) const {
    // Only std::less orders pointers into different blocks.
    const std::less<const TPoint*> isBefore;
    const TPoint* own = GetPoints();
    return !isBefore(points, own) && isBefore(points, own + GetCount());
}

void CPoints::Append(TCoord x, TCoord y) {
    const TPoint point = {x, y};
    NeedMemory(DoInsert(GetSize(), PointSize, &point));
    UpdateMbr(x, y);
}

void CPoints::Append(const TPoint* points, std::uint32_t count, bool reverse) {
    if (!points || count == 0 || count > MaxCount) return;
    if (IsOwn(points)) {
        const std::vector<TPoint> copy(points, points + count);
        Append(copy.data(), count, reverse);
        return;
    }
    TPoint* added = GrowBy(count);
    if (!added) return;
    if (reverse) {
        std::reverse_copy(points, points + count, added);
    } else {
        std::copy(points, points + count, added);
    }
    UpdateMbr();
}

void CPoints::Append(const TLongPoint* points, std::uint32_t count, bool updateMbr) {
    if (!points || count == 0) return;
    TPoint* added = GrowBy(count);
    if (!added) return;
    std::transform(points, points + count, added, [](const TLongPoint& p) { return WrapToPoint(p.X, p.Y); });
    if (updateMbr) UpdateMbr();
}

void CPoints::Insert(std::uint32_t index, TCoord x, TCoord y) {
    if (index > GetCount()) return;
    const TPoint point = {x, y};
    NeedMemory(DoInsert(index * PointSize, PointSize, &point));
    UpdateMbr(x, y);
}

void CPoints::Delete(std::uint32_t index) {
    if (index >= GetCount()) return;
    DoDelete(index * PointSize, PointSize);
    UpdateMbr();
}

bool CPoints::Delete(std::int32_t from, std::int32_t to) {
    OrderRange(from, to);
    if (from < 0 || static_cast<std::uint32_t>(to) >= GetCount()) return false;
    const auto first = static_cast<std::uint32_t>(from);
    DoDelete(first * PointSize, (static_cast<std::uint32_t>(to) - first + 1) * PointSize);
    UpdateMbr();
    return true;
}

void CPoints::Reverse() {
    CModificator modificator(nullptr);
    DoModify(modificator);
    std::reverse(GetPoints(), GetPoints() + GetCount());
}

void CPoints::SetPoint(std::uint32_t index, TCoord x, TCoord y) {
    if (index >= GetCount() || GetPoints()[index] == TPoint{x, y}) return;
    CModificator modificator(nullptr);
    DoModify(modificator);
    GetPoints()[index] = {x, y};
    UpdateMbr();
}

void CPoints::SetPointX(std::uint32_t index, TCoord x) {
    SetPoint(index, x, GetPointY(index));
}

void CPoints::SetPointY(std::uint32_t index, TCoord y) {
    SetPoint(index, GetPointX(index), y);
}

void CPoints::SetPoints(const TPoint* points, std::uint32_t count) {
    if ((!points && count != 0) || count > MaxCount) return;
    if (count != 0 && IsOwn(points)) {
        const std::vector<TPoint> copy(points, points + count);
        SetPoints(copy.data(), count);
        return;
    }
    // Written before the rest is dropped: without memory the list stays as it was.
    NeedMemory(Write(0, count * PointSize, points));
    CAnyMemoryBuffer::Resize(count * PointSize, true);
    UpdateMbr();
}

void CPoints::SetPoints(CArray<CPoint>* points) {
    if (!points) return;
    std::vector<TPoint> copy(points->GetCount());
    for (std::uint32_t i = 0; i < points->GetCount(); ++i) {
        // An empty place in the array stays the point (0, 0).
        if (const CPoint* point = points->DoGetInstance(i)) point->GetValue(copy[i].X, copy[i].Y);
    }
    CModificator modificator(nullptr);
    DoModify(modificator);
    SetPoints(copy.data(), static_cast<std::uint32_t>(copy.size()));
}

bool CPoints::Move(std::int32_t dx, std::int32_t dy, std::int32_t from, std::int32_t to) {
    OrderRange(from, to);
    const std::int64_t count = GetCount();
    // An index equal to the count passes on purpose: callers rely on the answer. No point stands there.
    if (from < 0 || to > count) return false;
    CModificator modificator(nullptr);
    DoModify(modificator);
    const std::int64_t end = std::min<std::int64_t>(std::int64_t{to} + 1, count);
    for (std::int64_t i = from; i < end; ++i)
        GetPoints()[i] = Shifted(GetPoints()[i], dx, dy);
    UpdateMbr();
    return true;
}

void CPoints::Move(std::int32_t dx, std::int32_t dy) {
    if (GetCount() == 0) return;
    CModificator modificator(nullptr);
    DoModify(modificator);
    TRect moved = m_Mbr;
    CPoint::Move(moved.MinX, moved.MinY, dx, dy);
    CPoint::Move(moved.MaxX, moved.MaxY, dx, dy);
    std::for_each(GetPoints(), GetPoints() + GetCount(), [=](TPoint& p) { p = Shifted(p, dx, dy); });
    m_Mbr = moved;
}

void CPoints::Scale(TCoord cx, TCoord cy, double kx, double ky) {
    if (GetCount() == 0) return;
    CModificator modificator(nullptr);
    DoModify(modificator);
    TRect scaled = m_Mbr;
    CPoint::Scale(scaled.MinX, scaled.MinY, cx, cy, kx, ky);
    CPoint::Scale(scaled.MaxX, scaled.MaxY, cx, cy, kx, ky);
    m_Mbr = scaled;
    CRect::Normalize(m_Mbr.MinX, m_Mbr.MinY, m_Mbr.MaxX, m_Mbr.MaxY);
    const auto stretched = [](TCoord v, TCoord centre, double factor) {
        return RoundToCoord((static_cast<double>(v) - centre) * factor + centre);
    };
    std::for_each(GetPoints(), GetPoints() + GetCount(), [&](TPoint& point) {
        point = {stretched(point.X, cx, kx), stretched(point.Y, cy, ky)};
    });
}

// --- bounding box ---

void CPoints::CalculateMbr(TCoord& minX, TCoord& minY, TCoord& maxX, TCoord& maxY) const {
    TRect box = EmptyMbr;
    std::for_each(GetPoints(), GetPoints() + GetCount(), [&box](const TPoint& point) {
        box.MinX = std::min(box.MinX, point.X);
        box.MinY = std::min(box.MinY, point.Y);
        box.MaxX = std::max(box.MaxX, point.X);
        box.MaxY = std::max(box.MaxY, point.Y);
    });
    minX = box.MinX;
    minY = box.MinY;
    maxX = box.MaxX;
    maxY = box.MaxY;
}

void CPoints::UpdateMbr() {
    CModificator modificator(nullptr);
    DoModify(modificator);
    CalculateMbr(m_Mbr.MinX, m_Mbr.MinY, m_Mbr.MaxX, m_Mbr.MaxY);
}

void CPoints::UpdateMbr(TCoord x, TCoord y) {
    CModificator modificator(nullptr);
    DoModify(modificator);
    const TRect old = m_Mbr;
    m_Mbr = {std::min(old.MinX, x), std::min(old.MinY, y), std::max(old.MaxX, x), std::max(old.MaxY, y)};
    // Cancelled when the box grows and recorded when it does not: the other way round than a rectangle does
    // it, kept on purpose because owners count on the records they get.
    if (std::memcmp(&old, &m_Mbr, sizeof(old)) != 0) modificator.Clear();
}

// --- persist ---

bool CPoints::ObjectToBuffer(CStream* stream) const {
    if (!stream) return false;
    CAnyMemoryBuffer::ObjectToBuffer(stream);
    stream->Write(&m_Mbr, sizeof(m_Mbr));
    return true;
}

bool CPoints::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    const bool whole = CAnyMemoryBuffer::ObjectFromBuffer(stream);
    CAnyMemoryBuffer::Resize(GetCount() * PointSize, true);  // a foreign size may end within a point
    if (!whole || !stream->Read(&m_Mbr, sizeof(m_Mbr))) {
        CalculateMbr(m_Mbr.MinX, m_Mbr.MinY, m_Mbr.MaxX, m_Mbr.MaxY);
    }
    return true;
}

std::uint32_t CPoints::GetPreferredSize() const {
    return CAnyMemoryBuffer::GetPreferredSize() + static_cast<std::uint32_t>(sizeof(m_Mbr));
}

}  // namespace zul
