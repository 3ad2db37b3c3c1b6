#include "platform/software/pixel_set.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

#include "platform/software/extent.h"

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

bool Fits(std::int64_t value) {
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max();
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
    const Box bounds = Bounds();
    if (Fits(std::int64_t{bounds.left} + dx) && Fits(std::int64_t{bounds.right} + dx) &&
        Fits(std::int64_t{bounds.top} + dy) && Fits(std::int64_t{bounds.bottom} + dy)) {
        pixman_region32_translate(&m_Region, dx, dy);
        return;
    }
    std::vector<Box> boxes = Boxes();
    for (Box& box : boxes) {
        box = ExtentBox(std::int64_t{box.left} + dx, std::int64_t{box.top} + dy,
                        std::int64_t{box.right} - box.left, std::int64_t{box.bottom} - box.top);
    }
    *this = PixelSet(boxes);
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
