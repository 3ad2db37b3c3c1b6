/// \file
/// Runs rows and times their ways in turn.
#pragma once

#include <string>
#include <vector>

#include "bench/allocations.h"
#include "bench/contest.h"

namespace zulbench {

/// As much as the medians of two ways that do the very same are apart.
constexpr double kNoise = 1.05;

/// A timed row. Times are nanoseconds a unit, one for each way.
struct Timing {
    std::string name;
    std::string unit;
    double goal = 0.0;
    std::vector<Side> sides;
    std::vector<std::string> names;
    std::vector<double> times;
    std::vector<Allocations> memory;  ///< of one more run each
    double elsewhere = -1.0;  ///< of the same calls to another device, in another run; negative: not known

    /// The quickest way of a side; none: a negative time.
    double TimeOf(Side side) const;
    /// What the library's classes take; without such a way, the device's calls.
    double OurTime() const;
    /// Our time over the best peer's; without a peer, over the limit; 0 without either.
    double Ratio() const;
    bool IsJudged() const { return goal > 0.0 && TimeOf(Side::Peer) > 0.0; }
    bool IsMet() const { return Ratio() <= goal * kNoise; }
};

/// As the JSON table says it.
const char* SideName(Side side);

/// Runs every way once and tells on standard error which results are not alike.
bool Agree(const Contest& contest);

/// Times the ways in turn, round by round, so that what else the machine does hits all of them, and takes
/// each way's median. Time is the processor's, so that it counts little what else runs. At least three
/// rounds are done; more begin while \p seconds have not passed.
Timing Measure(const Contest& contest, double seconds);

}  // namespace zulbench
