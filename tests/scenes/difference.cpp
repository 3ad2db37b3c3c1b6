#include "tests/scenes/difference.h"

#include <algorithm>
#include <cstring>

namespace scenes {
namespace {

/// Whether what \p picture drew at a place is drawn in \p other there or at one of the eight places around.
bool IsFoundIn(const TPicture& other, const TPicture& before, const TPicture& picture, int x, int y) {
    const int right = std::min(x + 1, other.Width - 1), bottom = std::min(y + 1, other.Height - 1);
    for (int nearY = std::max(y - 1, 0); nearY <= bottom; ++nearY) {
        for (int nearX = std::max(x - 1, 0); nearX <= right; ++nearX) {
            const bool drawn = !other.SameAt(nearX, nearY, before, nearX, nearY);
            if (drawn && picture.SameAt(x, y, other, nearX, nearY)) return true;
        }
    }
    return false;
}

}  // namespace

bool TPicture::SameAt(int x, int y, const TPicture& other, int otherX, int otherY) const {
    return std::memcmp(At(x, y), other.At(otherX, otherY), 3) == 0;
}

TDifference Compare(const TPicture& before, const TPicture& expected, const TPicture& got) {
    TDifference result;
    for (int y = 0; y < expected.Height; ++y) {
        for (int x = 0; x < expected.Width; ++x) {
            const bool wanted = !expected.SameAt(x, y, before, x, y);
            if (wanted) ++result.Drawn;
            if (expected.SameAt(x, y, got, x, y)) continue;
            if (result.Differing++ == 0) {
                result.FirstX = x;
                result.FirstY = y;
            }
            const bool put = !got.SameAt(x, y, before, x, y);
            if (wanted && !IsFoundIn(got, before, expected, x, y)) result.Close = false;
            if (put && !IsFoundIn(expected, before, got, x, y)) result.Close = false;
        }
    }
    return result;
}

}  // namespace scenes
