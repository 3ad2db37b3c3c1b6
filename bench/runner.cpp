#include "bench/runner.h"

#include <time.h>

#include <algorithm>
#include <cstdio>

namespace zulbench {
namespace {

constexpr int kFewestRounds = 3;
constexpr double kShortestBatch = 0.004;  ///< seconds
/// Ticks of the clock in a batch at least: what it may be wrong by is one.
constexpr double kTicksInBatch = 10.0;
constexpr double kNanosecondsInSecond = 1e9;

double SecondsOf(const timespec& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / kNanosecondsInSecond;
}

/// Of the processor, spent in this process.
double Now() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return SecondsOf(now);
}

/// Long enough for the clock to tell.
double BatchLength() {
    timespec tick{};
    clock_getres(CLOCK_PROCESS_CPUTIME_ID, &tick);
    return std::max(kShortestBatch, kTicksInBatch * SecondsOf(tick));
}

double TimeBatch(const Way& way, int runs) {
    // A short run more beforehand: caches are full of what another way left there.
    if (runs > 1) way.run();
    const double start = Now();
    for (int i = 0; i < runs; ++i)
        way.run();
    return Now() - start;
}

/// How many runs make a batch.
int FindBatch(const Way& way) {
    const double wanted = BatchLength();
    int runs = 1;
    while (runs < 1 << 28) {
        const double taken = TimeBatch(way, runs);
        if (taken >= wanted) break;
        const double factor = taken > 0.0 ? std::min(1.2 * wanted / taken, 10.0) : 10.0;
        runs = std::max(runs + 1, static_cast<int>(runs * factor));
    }
    return runs;
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

double Timing::TimeOf(Side side) const {
    double best = -1.0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (sides[i] == side && (best < 0.0 || times[i] < best)) best = times[i];
    }
    return best;
}

double Timing::OurTime() const {
    const double classes = TimeOf(Side::Classes);
    return classes >= 0.0 ? classes : TimeOf(Side::Device);
}

double Timing::Ratio() const {
    const double peer = TimeOf(Side::Peer);
    const double other = peer > 0.0 ? peer : TimeOf(Side::Limit);
    return other > 0.0 ? OurTime() / other : 0.0;
}

const char* SideName(Side side) {
    switch (side) {
        case Side::Classes:
            return "classes";
        case Side::Device:
            return "device";
        case Side::Classes16:
            return "classes16";
        case Side::Peer:
            return "peer";
        case Side::Limit:
            return "limit";
    }
    return "";
}

bool Agree(const Contest& contest) {
    for (const Way& way : contest.ways)
        way.run();
    bool alike = true;
    for (const Way& way : contest.ways) {
        const double difference = way.difference ? way.difference() : 0.0;
        if (difference <= way.allowed) continue;
        std::fprintf(stderr, "%s, %s: %.2f%% of the results differ\n", contest.name.c_str(),
                     way.name.empty() ? SideName(way.side) : way.name.c_str(), difference * 100.0);
        alike = false;
    }
    return alike;
}

Timing Measure(const Contest& contest, double seconds) {
    Timing timing;
    timing.name = contest.name;
    timing.unit = contest.unit;
    timing.goal = contest.goal;
    std::vector<int> batches;
    for (const Way& way : contest.ways) {
        timing.sides.push_back(way.side);
        timing.names.push_back(way.name);
        batches.push_back(FindBatch(way));
        timing.memory.push_back(CountAllocations(way.run));
    }
    std::vector<std::vector<double>> rounds(contest.ways.size());
    const double start = Now();
    for (int round = 0; round < kFewestRounds || Now() - start < seconds; ++round) {
        for (std::size_t i = 0; i < contest.ways.size(); ++i)
            rounds[i].push_back(TimeBatch(contest.ways[i], batches[i]) / batches[i]);
    }
    for (std::vector<double>& times : rounds)
        timing.times.push_back(Median(std::move(times)) * kNanosecondsInSecond / contest.units);
    return timing;
}

}  // namespace zulbench
