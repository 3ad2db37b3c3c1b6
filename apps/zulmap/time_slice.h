/// \file
/// Long work in pieces.
#pragma once

#include <chrono>

namespace zulmap {

/// The time that a piece of work may take. A new one never ends.
class TimeSlice {
public:
    TimeSlice() = default;
    explicit TimeSlice(std::chrono::steady_clock::duration length)
        : m_End(std::chrono::steady_clock::now() + length) {}

    bool IsOver() const {
        return m_End != std::chrono::steady_clock::time_point::max() &&
               std::chrono::steady_clock::now() >= m_End;
    }

private:
    std::chrono::steady_clock::time_point m_End = std::chrono::steady_clock::time_point::max();
};

}  // namespace zulmap
