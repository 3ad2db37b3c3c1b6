/// \file
/// What a piece of work takes from the heap.
#pragma once

#include <cstdint>
#include <functional>

namespace zulbench {

struct Allocations {
    std::int64_t count = 0;  ///< how often memory was asked for; negative: nobody counted
    std::int64_t peak = 0;   ///< bytes held at once beyond those held before
};

/// Counts for the calling process, whatever library asks. On Windows nobody counts.
Allocations CountAllocations(const std::function<void()>& work);

}  // namespace zulbench
