/// \file
/// `zulbench`: times the library against its peers and prints a table.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "bench/contest.h"

namespace zulbench {
namespace {

constexpr double kSeconds = 0.3;
constexpr int kRepetitions = 3;
constexpr double kMillisecondsInSecond = 1000.0;
constexpr double kNanosecondsInSecond = 1e9;

/// Collects the best time of each way; what else runs on the machine only ever adds to a time.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
            const double time = run.real_accumulated_time / static_cast<double>(run.iterations);
            const auto known = m_Times.emplace(run.run_name.function_name, time).first;
            known->second = std::min(known->second, time);
        }
    }

    void Print(const std::vector<Contest>& contests) const {
        std::printf("%-36s %12s %12s %8s\n", "name", "ours, ms", "peer, ms", "ratio");
        for (const Contest& contest : contests) {
            const auto ours = m_Times.find(contest.name + "/ours");
            const auto peer = m_Times.find(contest.name + "/peer");
            if (ours == m_Times.end() || peer == m_Times.end()) continue;
            std::printf("%-36s %12.3f %12.3f %8.2f", contest.name.c_str(),
                        ours->second * kMillisecondsInSecond, peer->second * kMillisecondsInSecond,
                        ours->second / peer->second);
            if (contest.pixels > 0) {
                std::printf("   ns a pixel: %.2f, %.2f", ours->second * kNanosecondsInSecond / contest.pixels,
                            peer->second * kNanosecondsInSecond / contest.pixels);
            }
            std::printf("\n");
        }
        std::printf("ratio: our time over the peer's, so below 1 is faster\n");
    }

private:
    std::map<std::string, double> m_Times;  ///< seconds
};

/// A race between different results would mean nothing.
bool Agree(const Contest& contest) {
    contest.ours();
    contest.peer();
    const double difference = contest.difference();
    if (difference <= contest.allowedDifference) return true;
    std::fprintf(stderr, "%s: %.2f%% of the results differ\n", contest.name.c_str(), difference * 100.0);
    return false;
}

void Register(const std::string& name, const std::function<void()>& work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [&work](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state) {
                                         work();
                                         benchmark::ClobberMemory();
                                     }
                                 })
        ->MinTime(kSeconds)
        ->Repetitions(kRepetitions);
}

int Main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

    std::vector<Contest> contests;
    for (const std::vector<Contest>& group :
         {MappingContests(), FigureContests(), PenContests(), ClipContests(), MapContests(ZULBENCH_MAP),
          BlockContests(), CopyContests()}) {
        contests.insert(contests.end(), group.begin(), group.end());
    }
    // All are looked at, so that one call names everything that is wrong.
    if (std::count_if(contests.begin(), contests.end(),
                      [](const Contest& contest) { return !Agree(contest); }) > 0) {
        return 1;
    }
    for (const Contest& contest : contests) {
        Register(contest.name + "/ours", contest.ours);
        Register(contest.name + "/peer", contest.peer);
    }
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.Print(contests);
    return 0;
}

}  // namespace
}  // namespace zulbench

int main(int argc, char** argv) {
    try {
        return zulbench::Main(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "zulbench: " << error.what() << '\n';
        return 2;
    }
}
