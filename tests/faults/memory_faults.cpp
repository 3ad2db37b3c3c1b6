#include "tests/faults/memory_faults.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <thread>

#include "platform/software/display.h"
#include "tests/faults/allocation_faults.h"
#include "zul/kernel/client.h"

namespace faults {
namespace {

struct TFigures {
    std::uint64_t Paths = 0, Runs = 0, Failed = 0, Violations = 0;
} g_Figures;

struct TPlace {
    const char* Path = "";
    std::uint64_t Nth = 0;
    Failing Kind = Failing::One;
} g_Place;

std::string Describe(const TPlace& place) {
    return std::string(place.Path) + ", allocation " + std::to_string(place.Nth) +
           (place.Kind == Failing::One ? "" : " and all that follow");
}

/// Counts reports without allocating.
class CReportCounter : public zul::CErrorHandler {
public:
    CReportCounter() : m_Scope(this) {}
    void OnError(const zul::TErrorReport&) override { ++Count; }

    int Count = 0;

private:
    zul::CErrorHandlerScope m_Scope;
};

struct TRun {
    std::uint64_t Failed;  ///< allocations
    bool IsReported;
};

TRun Run(const TPath& path, CStage& stage, std::uint64_t nth, Failing kind) {
    CReportCounter reports;
    bool isGood = false;
    Arm(nth, kind);
    try {
        isGood = path.Call(stage);
    } catch (const std::bad_alloc&) {
    }
    const std::uint64_t failed = Disarm();
    return {failed, !isGood || reports.Count > 0};
}

void InThread(const std::function<void()>& task) {
    std::thread(task).join();
}

struct TResult {
    std::string State, Picture;
    bool operator!=(const TResult& other) const { return State != other.State || Picture != other.Picture; }
};

std::string Differences(const TResult& is, const TResult& wanted) {
    std::string text;
    if (is.State != wanted.State) text += "  state " + is.State + "\n  not   " + wanted.State + "\n";
    if (is.Picture != wanted.Picture)
        text += "  picture " + is.Picture + "\n  not     " + wanted.Picture + "\n";
    return text;
}

TResult Look(CStage& stage) {
    return {stage.State(), stage.Picture()};
}

/// What is wrong after the run; empty when nothing is.
std::string Judge(const TPath& path, const TResult& wanted, bool& isOver) {
    std::unique_ptr<CStage> stage = path.MakeStage();
    const std::string before = stage->State();
    const TRun run = Run(path, *stage, g_Place.Nth, g_Place.Kind);
    isOver = run.Failed == 0;
    ++g_Figures.Runs;
    g_Figures.Failed += run.Failed;
    if (!run.IsReported) {
        if (const TResult is = Look(*stage); is != wanted)
            return "no report, but\n" + Differences(is, wanted);
        stage = path.MakeStage();
    } else if (isOver) {
        return "a report without a fault";
    } else if (!path.KeepsState) {
        stage = path.MakeStage();
    } else if (const std::string state = stage->State(); state != before) {
        return "reported, but\n" + Differences({state, ""}, {before, ""});
    }
    stage->Wipe();
    if (Run(path, *stage, 0, Failing::One).IsReported) return "fails afterwards, too";
    const TResult is = Look(*stage);
    return is != wanted ? "afterwards\n" + Differences(is, wanted) : "";
}

void FailEachAllocation(const TPath& path) {
    ++g_Figures.Paths;
    TResult wanted;
    g_Place = {path.Name.c_str(), 0, Failing::One};
    for (int round = 0; round < 2; ++round) {  // the first one fills what the process keeps for good
        InThread([&] {
            const std::unique_ptr<CStage> stage = path.MakeStage();
            EXPECT_FALSE(Run(path, *stage, 0, Failing::One).IsReported) << path.Name;
            wanted = Look(*stage);
        });
    }
    int violations = 0;
    const std::uint64_t step = std::getenv("ZUL_FAULTS_ALL") != nullptr ? 1 : path.Step;
    for (const Failing kind : {Failing::One, Failing::Rest}) {
        bool isOver = false;
        for (std::uint64_t nth = 1; !isOver; nth += step) {
            g_Place = {path.Name.c_str(), nth, kind};
            const int handles = device::LiveHandles();
            std::string wrong;
            std::int64_t left = 1;
            for (int time = 0; time < 2 && left > 0; ++time) {  // what the process needs once, it keeps
                const std::int64_t blocks = LiveBlocks();
                InThread([&] { wrong = Judge(path, wanted, isOver); });
                left = LiveBlocks() - blocks - (wrong.capacity() > std::string().capacity() ? 1 : 0);
            }
            if (left > 0) wrong += std::to_string(left) + " blocks are left\n";
            if (device::LiveHandles() != handles) wrong += "device objects are left\n";
            if (wrong.empty()) continue;
            ++g_Figures.Violations;
            if (++violations <= 3) ADD_FAILURE() << Describe(g_Place) << ": " << wrong;
        }
    }
    if (violations > 3) ADD_FAILURE() << path.Name << ": " << violations << " in all";
}

[[noreturn]] void TellWhere() {
    std::fprintf(stderr, "%s: the program was ended\n", Describe(g_Place).c_str());
    std::abort();
}

class CFigures : public testing::Environment {
public:
    void SetUp() override {
        std::set_terminate(TellWhere);
        // The table of handles has its full size then: it never gives memory back.
        std::vector<HBRUSH> brushes(4096);
        for (HBRUSH& brush : brushes)
            brush = ::CreateSolidBrush(0);
        for (const HBRUSH brush : brushes)
            ::DeleteObject(brush);
    }
    void TearDown() override {
        std::printf("%llu paths, %llu runs, %llu failed allocations, %llu violations\n",
                    static_cast<unsigned long long>(g_Figures.Paths),
                    static_cast<unsigned long long>(g_Figures.Runs),
                    static_cast<unsigned long long>(g_Figures.Failed),
                    static_cast<unsigned long long>(g_Figures.Violations));
    }
};
[[maybe_unused]] testing::Environment* const g_Environment = testing::AddGlobalTestEnvironment(new CFigures);

}  // namespace

void FailEachAllocation(const std::vector<TPath>& paths) {
    const char* const chosen = std::getenv("ZUL_FAULTS_IN");  // to look at some paths only
    for (const TPath& path : paths) {
        if (chosen == nullptr || path.Name.find(chosen) != std::string::npos) FailEachAllocation(path);
    }
}

}  // namespace faults
