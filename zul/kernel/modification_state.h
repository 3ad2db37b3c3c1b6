/// \file
/// What brackets, transactions and the client share. Part of the kernel's inside.
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

namespace zul {

class CModificationObserver;
class CTransaction;

/// One per thread.
struct TModificationState {
    std::uint64_t Count = 0;          // recorded changes
    CTransaction* Current = nullptr;  // innermost open transaction
};

TModificationState& GetModificationState();

struct TObservers {
    std::atomic<bool> Any{false};  // lets a bracket pass without looking at the list
    std::vector<CModificationObserver*> List;
};

TObservers& GetObservers();

}  // namespace zul
