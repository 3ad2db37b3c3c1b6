#include "zul/kernel/object_table.h"

#include <algorithm>

#include "zul/kernel/object_source.h"
#include "zul/kernel/references.h"

namespace zul {
namespace {

constexpr std::int64_t SpaceOf(std::int64_t id) {
    return id & ~CObjectSource::MaxLocalId;
}

}  // namespace

CObjectTable& CObjectTable::Get() {
    // Lives until the process ends: objects of other libraries die after this one's statics would.
    static CObjectTable* table = new CObjectTable;
    return *table;
}

CObjectTable::CObjectTable() : m_Random(std::random_device()()) {
    m_LastId = OwnIds | static_cast<std::int64_t>(m_Random() & 0x3FFFFFFFu) << 32;
}

void CObjectTable::Add(CControlCell* cell) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    if (cell->GetId() != 0) return;
    m_Cells.emplace(m_LastId + 1, cell);
    cell->m_Id = ++m_LastId;
}

void CObjectTable::Assign(CControlCell* cell, std::int64_t id) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    const std::int64_t former = cell->GetId();
    const bool staysMain = former == id || SourceOf(former) != nullptr;
    const std::int64_t alias = former == id ? 0 : staysMain ? id : former;
    CControlCell*& place = m_Cells[id];
    try {
        if (alias != 0) m_Aliases.emplace(cell, alias);
    } catch (...) {
        if (place == nullptr) m_Cells.erase(id);
        throw;
    }
    place = cell;
    if (!staysMain) cell->m_Id = id;
}

void CObjectTable::Withdraw(std::int64_t id) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    const auto found = m_Cells.find(id);
    if (found == m_Cells.end()) return;
    CControlCell* const cell = found->second;
    m_Cells.erase(found);
    if (cell->GetId() != id) return DropAlias(cell, id);
    const auto alias = m_Aliases.find(cell);
    cell->m_Id = alias != m_Aliases.end() ? alias->second : 0;
    if (alias != m_Aliases.end()) m_Aliases.erase(alias);
}

void CObjectTable::Remove(CControlCell* cell) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    m_Cells.erase(cell->GetId());
    if (m_Aliases.empty()) return;
    const auto [first, last] = m_Aliases.equal_range(cell);
    for (auto alias = first; alias != last; ++alias)
        m_Cells.erase(alias->second);
    m_Aliases.erase(first, last);
}

void CObjectTable::DropAlias(CControlCell* cell, std::int64_t id) {
    const auto [first, last] = m_Aliases.equal_range(cell);
    for (auto alias = first; alias != last; ++alias) {
        if (alias->second != id) continue;
        m_Aliases.erase(alias);
        return;
    }
}

CControlCell* CObjectTable::FindAndHold(std::int64_t id) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    const auto found = m_Cells.find(id);
    if (found == m_Cells.end()) return nullptr;
    found->second->Hold();
    return found->second;
}

std::int64_t CObjectTable::FindIdIn(const CControlCell& cell, std::int64_t space) {
    const std::int64_t main = cell.GetId();
    if (main == 0) return 0;  // then there is no other either
    if (SpaceOf(main) == space) return main;
    const std::lock_guard<std::mutex> lock(m_Guard);
    const auto [first, last] = m_Aliases.equal_range(&cell);
    for (auto alias = first; alias != last; ++alias) {
        if (SpaceOf(alias->second) == space) return alias->second;
    }
    return 0;
}

std::vector<CObjectSource*> CObjectTable::FindSourcesOf(const CControlCell& cell) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    std::vector<CObjectSource*> sources;
    if (CObjectSource* source = SourceOf(cell.GetId())) sources.push_back(source);
    const auto [first, last] = m_Aliases.equal_range(&cell);
    for (auto alias = first; alias != last; ++alias) {
        if (CObjectSource* source = SourceOf(alias->second)) sources.push_back(source);
    }
    return sources;
}

std::vector<CAnyRef> CObjectTable::GetObjectsOf(std::int64_t space) {
    const auto isWanted = [space](std::int64_t id) {
        return IsSourceId(id) && (space == 0 || SpaceOf(id) == space);
    };
    std::vector<CControlCell*> held;
    std::vector<CAnyRef> objects;
    {
        const std::lock_guard<std::mutex> lock(m_Guard);
        // Room comes first: what is held must be let go.
        const auto count = std::count_if(m_Cells.begin(), m_Cells.end(),
                                         [&](const auto& entry) { return isWanted(entry.first); });
        held.reserve(static_cast<std::size_t>(count));
        objects.reserve(static_cast<std::size_t>(count));
        for (const auto& [id, cell] : m_Cells) {
            if (!isWanted(id)) continue;
            cell->Hold();
            held.push_back(cell);
        }
    }
    for (CControlCell* cell : held) {
        objects.emplace_back(cell->GetInstance());
        cell->Release();
    }
    return objects;
}

std::int64_t CObjectTable::AddSource(CObjectSource* source) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    std::int64_t space = 0;
    do {
        space = static_cast<std::int64_t>(m_Random() & (OwnIds - 1)) & ~CObjectSource::MaxLocalId;
    } while (space == 0 || !m_Sources.emplace(space, source).second);
    return space;
}

void CObjectTable::RemoveSource(std::int64_t space) {
    const std::lock_guard<std::mutex> lock(m_Guard);
    m_Sources.erase(space);
}

CObjectSource* CObjectTable::FindSource(std::int64_t id) {
    if (!IsSourceId(id)) return nullptr;
    const std::lock_guard<std::mutex> lock(m_Guard);
    return SourceOf(id);
}

CObjectSource* CObjectTable::SourceOf(std::int64_t id) const {
    if (!IsSourceId(id)) return nullptr;
    const auto found = m_Sources.find(SpaceOf(id));
    return found != m_Sources.end() ? found->second : nullptr;
}

}  // namespace zul
