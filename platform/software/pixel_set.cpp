#include "platform/software/pixel_set.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

namespace device {
namespace {

pixman_box32_t ToPixman(const Box& box) {
    return {box.left, box.top, box.right, box.bottom};
}

Box FromPixman(const pixman_box32_t& box) {
    return {box.x1, box.y1, box.x2, box.y2};
}

void Check(pixman_bool_t done) {
    if (!done) throw std::bad_alloc();
}

constexpr std::int64_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t Highest = std::numeric_limits<std::int32_t>::max();

std::int32_t Cut(std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp(value, Lowest, Highest));
}

}  // namespace

PixelSet::PixelSet(const Box& box) noexcept : PixelSet() {
    if (box.IsEmpty()) return;
    const pixman_box32_t extents = ToPixman(box);
    pixman_region32_init_with_extents(&m_Region, &extents);
}

PixelSet::PixelSet(const std::vector<Box>& boxes) : PixelSet() {
    if (boxes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) throw std::bad_alloc();
    std::vector<pixman_box32_t> rects;
    rects.reserve(boxes.size());
    for (const Box& box : boxes) {
        if (!box.IsEmpty()) rects.push_back(ToPixman(box));
    }
    pixman_region32_fini(&m_Region);
    Check(pixman_region32_init_rects(&m_Region, rects.data(), static_cast<int>(rects.size())));
}

PixelSet::PixelSet(const PixelSet& other) : PixelSet() {
    Check(pixman_region32_copy(&m_Region, &other.m_Region));
}

bool PixelSet::operator==(const PixelSet& other) const {
    return pixman_region32_equal(&m_Region, &other.m_Region) != 0;
}

void PixelSet::Swap(PixelSet& other) noexcept {
    std::swap(m_Region, other.m_Region);
}

bool PixelSet::Has(std::int32_t x, std::int32_t y) const {
    return pixman_region32_contains_point(&m_Region, x, y, nullptr) != 0;
}

std::int32_t PixelSet::CountBoxes() const {
    return pixman_region32_n_rects(&m_Region);
}

std::vector<Box> PixelSet::Boxes() const {
    int count = 0;
    const pixman_box32_t* const rects = pixman_region32_rectangles(&m_Region, &count);
    std::vector<Box> boxes;
    boxes.reserve(static_cast<std::size_t>(count));
    std::transform(rects, rects + count, std::back_inserter(boxes), FromPixman);
    return boxes;
}

Box PixelSet::Bounds() const {
    return IsEmpty() ? Box{} : FromPixman(*pixman_region32_extents(&m_Region));
}

void PixelSet::Move(std::int32_t dx, std::int32_t dy) {
    const Box stay{Cut(Lowest - dx), Cut(Lowest - dy), Cut(Highest - dx), Cut(Highest - dy)};
    const Box bounds = Bounds();
    const Box staying = Intersect(bounds, stay);
    if (staying.left != bounds.left || staying.top != bounds.top || staying.right != bounds.right ||
        staying.bottom != bounds.bottom) {
        *this = Intersection(*this, PixelSet(stay));
    }
    pixman_region32_translate(&m_Region, dx, dy);
}

PixelSet Intersection(const PixelSet& a, const PixelSet& b) {
    PixelSet result;
    Check(pixman_region32_intersect(&result.m_Region, &a.m_Region, &b.m_Region));
    return result;
}

PixelSet Union(const PixelSet& a, const PixelSet& b) {
    PixelSet result;
    Check(pixman_region32_union(&result.m_Region, &a.m_Region, &b.m_Region));
    return result;
}

PixelSet Difference(const PixelSet& a, const PixelSet& b) {
    PixelSet result;
    Check(pixman_region32_subtract(&result.m_Region, &a.m_Region, &b.m_Region));
    return result;
}

PixelSet SymmetricDifference(const PixelSet& a, const PixelSet& b) {
    return Union(Difference(a, b), Difference(b, a));
}

}  // namespace device
