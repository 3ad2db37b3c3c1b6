#include "zul/kernel/object_table.h"

#include <random>

#include "zul/kernel/references.h"

namespace zul {

CObjectTable& CObjectTable::Get() {
    // Lives until the process ends: objects of other libraries die after this one's statics would.
    static CObjectTable* table = new CObjectTable;
    return *table;
}

CObjectTable::CObjectTable() {
    std::random_device random;
    m_LastId = static_cast<std::int64_t>(random() & 0x3FFFFFFFu) << 32;
}

void CObjectTable::Add(CControlCell* cell, std::atomic<std::int64_t>& id) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    if (id != 0) return;
    m_Cells.emplace(m_LastId + 1, cell);
    id = ++m_LastId;
}

void CObjectTable::Remove(std::int64_t id) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    m_Cells.erase(id);
}

CControlCell* CObjectTable::FindAndHold(std::int64_t id) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    const auto found = m_Cells.find(id);
    if (found == m_Cells.end()) return nullptr;
    found->second->Hold();
    return found->second;
}

}  // namespace zul
