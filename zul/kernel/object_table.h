/// \file
/// Which living object has which id, and which sources there are. Part of the kernel's inside.
#pragma once

#include <cstdint>
#include <mutex>
#include <random>
#include <unordered_map>
#include <vector>

#include "zul/kernel/export.h"

namespace zul {

class CAnyRef;
class CControlCell;
class CObjectSource;

/// The ids of this process:
///
///     bit 62 set: given here;  the rest starts at a random place and counts up
///     bit 62 clear: a source's;  bits 41 to 61 its number, drawn at random;  bits 0 to 40 its local id
///
/// So a reference stored by another process finds nothing here rather than a stranger. An object has one main
/// id, a source's if it lives in one; the others it was ever known by here lead to it too.
class ZUL_KERNEL_API CObjectTable {
public:
    static CObjectTable& Get();

    /// Whether a source, not this process, gave the id.
    static bool IsSourceId(std::int64_t id) { return id > 0 && (id & OwnIds) == 0; }

    /// Gives the cell's object an id of this process unless it has one.
    void Add(CControlCell* cell);
    /// Gives it a source's id, which becomes its main one unless it has that of another that is there.
    void Assign(CControlCell* cell, std::int64_t id);
    /// Takes a source's id from whichever object has it.
    void Withdraw(std::int64_t id);
    /// The object is gone; its cell keeps the main id.
    void Remove(CControlCell* cell);

    /// The cell of the living object with this id, held for the caller; null when there is none.
    CControlCell* FindAndHold(std::int64_t id);
    /// The object's id in the given number space; 0 when it has none.
    std::int64_t FindIdIn(const CControlCell& cell, std::int64_t space);
    /// Every source that the object lives in.
    std::vector<CObjectSource*> FindSourcesOf(const CControlCell& cell);
    /// The living objects of one source, or with 0 of all sources.
    std::vector<CAnyRef> GetObjectsOf(std::int64_t space);

    /// \returns the number space of the source, as the upper bits of its ids.
    std::int64_t AddSource(CObjectSource* source);
    void RemoveSource(std::int64_t space);
    /// Null for ids that no source gave and for sources that are gone.
    CObjectSource* FindSource(std::int64_t id);

private:
    static constexpr std::int64_t OwnIds = std::int64_t{1} << 62;

    CObjectTable();
    void DropAlias(CControlCell* cell, std::int64_t id);
    CObjectSource* SourceOf(std::int64_t id) const;

    std::mutex m_Guard;
    std::mt19937_64 m_Random;
    std::int64_t m_LastId;
    std::unordered_map<std::int64_t, CControlCell*> m_Cells;
    std::unordered_multimap<const CControlCell*, std::int64_t> m_Aliases;  // ids beside the main one
    std::unordered_map<std::int64_t, CObjectSource*> m_Sources;            // by number space
};

}  // namespace zul
