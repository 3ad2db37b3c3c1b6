/// \file
/// Sets of pixels: what regions and clips hold.
#pragma once

#include <pixman.h>

#include <cstdint>
#include <vector>

#include "platform/software/surface.h"

namespace device {

/// Any set of pixels, kept as boxes in bands: boxes of a band share top and bottom, do not touch, and follow
/// one another from left to right; bands follow from top to bottom, and no two that touch hold the same
/// columns. So a set has one form only.
///
/// Operations are exact up to the ends of 32 bits. They throw std::bad_alloc when memory is short and then
/// have changed nothing.
class PixelSet {
public:
    PixelSet() noexcept { pixman_region32_init(&m_Region); }
    /// A box without pixels gives the empty set.
    explicit PixelSet(const Box& box) noexcept;
    /// The pixels of all boxes, which may overlap and come in any order.
    explicit PixelSet(const std::vector<Box>& boxes);
    PixelSet(const PixelSet& other);
    PixelSet(PixelSet&& other) noexcept : PixelSet() { Swap(other); }
    PixelSet& operator=(PixelSet other) noexcept {
        Swap(other);
        return *this;
    }
    ~PixelSet() { pixman_region32_fini(&m_Region); }

    bool IsEmpty() const { return CountBoxes() == 0; }
    bool Has(std::int32_t x, std::int32_t y) const;
    std::int32_t CountBoxes() const;
    std::vector<Box> Boxes() const;
    /// Of all pixels; zero when there are none.
    Box Bounds() const;
    bool operator==(const PixelSet& other) const;

    friend PixelSet Intersection(const PixelSet& a, const PixelSet& b);
    friend PixelSet Union(const PixelSet& a, const PixelSet& b);
    friend PixelSet Difference(const PixelSet& a, const PixelSet& b);

    /// Pixels that would leave 32 bits are dropped.
    void Move(std::int32_t dx, std::int32_t dy);

private:
    void Swap(PixelSet& other) noexcept;

    pixman_region32_t m_Region;
};

PixelSet Intersection(const PixelSet& a, const PixelSet& b);
PixelSet Union(const PixelSet& a, const PixelSet& b);
/// The pixels of \p a that are not in \p b.
PixelSet Difference(const PixelSet& a, const PixelSet& b);
/// The pixels that are in one of the two only.
PixelSet SymmetricDifference(const PixelSet& a, const PixelSet& b);

}  // namespace device
