/// \file
/// The numbers that a scene is made of: the same on every host for the same seed.
#pragma once

#include <cstdint>

namespace scenes {

/// Calls must be sequenced by the caller: arguments of one function are evaluated in an order of the
/// compiler's own.
class CRandom {
public:
    explicit CRandom(std::uint64_t seed) : m_State(seed) {}

    std::uint32_t Bits() {
        // SplitMix64 (Steele, Lea, Flood 2014): every seed is a good one.
        std::uint64_t z = m_State += 0x9E3779B97F4A7C15u;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return static_cast<std::uint32_t>((z ^ (z >> 31)) >> 32);
    }
    /// \p low to \p high, both included.
    int In(int low, int high) {
        return low + static_cast<int>(Bits() % static_cast<std::uint32_t>(high - low + 1));
    }
    bool OneIn(int n) { return In(1, n) == 1; }
    std::uint32_t Color() { return Bits() & 0xFFFFFF; }

private:
    std::uint64_t m_State;
};

}  // namespace scenes
