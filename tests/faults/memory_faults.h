// Runs calls with every single one of their allocations failing, and looks at what is left.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace faults {

/// The objects that a call works on.
class CStage {
public:
    virtual ~CStage() = default;
    /// Of objects and device: what a call that reports a failure leaves as it was.
    virtual std::string State() = 0;
    /// What was drawn or written.
    virtual std::string Picture() = 0;
    /// Takes away what was drawn or written.
    virtual void Wipe() = 0;
};

/// A call, which answers false when it says that it failed.
struct TPath {
    std::string Name;
    std::function<std::unique_ptr<CStage>()> MakeStage;
    std::function<bool(CStage&)> Call;
    bool KeepsState = true;  ///< false: documented to stop where it stands
    /// Of calls with thousands of allocations only each so manieth fails, unless ZUL_FAULTS_ALL is set.
    std::uint64_t Step = 1;
};

/// Fails each allocation of each call in turn, alone and together with all that follow it, every time on a
/// new stage and in a thread of its own, since that finds the device's caches empty. Holds them to this:
/// - a call that does not report, by its answer, to the error handler or with std::bad_alloc, did what it
/// does
///   undisturbed;
/// - after one that reports the state is the old one;
/// - the same call without a fault does then what it does undisturbed;
/// - no device object and no memory is left behind.
void FailEachAllocation(const std::vector<TPath>& paths);

}  // namespace faults
