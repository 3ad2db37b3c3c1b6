/// \file
/// Two pictures of one scene held against each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace scenes {

struct TPicture {
    int Width = 0, Height = 0;
    std::vector<std::uint8_t> Bytes;  ///< red, green, blue; rows from the top

    const std::uint8_t* At(int x, int y) const {
        return &Bytes[(static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                       static_cast<std::size_t>(x)) *
                      3];
    }
    bool SameAt(int x, int y, const TPicture& other, int otherX, int otherY) const;
};

struct TDifference {
    int Drawn = 0;                 ///< pixels that the scene changed in the expected picture
    int Differing = 0;             ///< pixels of different colours
    int FirstX = -1, FirstY = -1;  ///< the topmost of them, and of those in its row the leftmost
    /// Every pixel that was drawn in one picture only, or in another colour, has a drawn one of its own
    /// colour next to its place in the other picture.
    bool Close = true;

    /// Whether the pictures may count as the same where a rounding of curves is not known: some pixels
    /// differ, no more than one in two hundred of the drawn ones, and none is further than a pixel from where
    /// it should be. Pictures of equal colours are not near: what differs in them is no figure's border.
    bool IsNear() const { return Differing > 0 && Close && std::int64_t{Differing} * 200 <= Drawn; }
};

/// \param before the surface that both were drawn on. All three have the same size.
TDifference Compare(const TPicture& before, const TPicture& expected, const TPicture& got);

}  // namespace scenes
