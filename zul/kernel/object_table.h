/// \file
/// Which living object has which id. Part of the kernel's inside.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace zul {

class CControlCell;

/// The ids given in this process. They start at a random place, so that a reference stored by another process
/// finds nothing here rather than a stranger.
class CObjectTable {
public:
    static CObjectTable& Get();

    /// Gives the cell's object a new id unless \p id holds one already.
    void Add(CControlCell* cell, std::atomic<std::int64_t>& id);
    void Remove(std::int64_t id);
    /// The cell of the living object with this id, held for the caller; null when there is none.
    CControlCell* FindAndHold(std::int64_t id);

private:
    CObjectTable();

    std::mutex m_Guard;
    std::int64_t m_LastId;
    std::unordered_map<std::int64_t, CControlCell*> m_Cells;
};

}  // namespace zul
