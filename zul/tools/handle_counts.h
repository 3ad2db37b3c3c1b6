/// \file
/// Diagnostic counters of device objects.
#pragma once

#include <atomic>
#include <cstdint>

namespace zul {

/// Device objects of one kind that the tools made and deleted. Kept for leak diagnostics; tools of different
/// threads count together.
struct THandleCounts {
    std::atomic<std::uint64_t> Made{0};     ///< since the process began
    std::atomic<std::uint64_t> Deleted{0};  ///< never more than were made
};

}  // namespace zul
