/// \file
/// Where objects live that are not in memory. Stores derive from it; applications use the stores.
#pragma once

#include <cstdint>
#include <vector>

#include "zul/kernel/export.h"
#include "zul/kernel/references.h"

namespace zul {

class CTransaction;

/// A keeper of objects beyond the process. While it lives, references to its objects find them, and
/// transactions bring their changes to it.
///
/// Its objects have local ids from 1 to `MaxLocalId`. Within the process these are joined with a number that
/// each source draws at random, so that sources do not meet, and a reference that outlives its source, or its
/// process, finds nothing rather than a stranger.
class ZUL_KERNEL_API CObjectSource {
public:
    /// What a local id may be; the bits above are those of the source.
    static constexpr int LocalBits = 41;
    static constexpr std::int64_t MaxLocalId = (std::int64_t{1} << LocalBits) - 1;

    CObjectSource(const CObjectSource&) = delete;
    CObjectSource& operator=(const CObjectSource&) = delete;

    /// The id by which references of this process know a local object; 0 for what is no local id.
    std::int64_t ToProcessId(std::int64_t localId) const {
        return localId > 0 && localId <= MaxLocalId ? m_Space | localId : 0;
    }
    /// 0 for ids of others.
    std::int64_t ToLocalId(std::int64_t processId) const {
        return Owns(processId) ? processId & MaxLocalId : 0;
    }
    /// Whether the id is one of this source.
    bool Owns(std::int64_t processId) const {
        return processId > 0 && (processId & ~MaxLocalId) == m_Space && processId != m_Space;
    }

    /// The local id of an object in memory; 0 for null and for one that does not live here.
    std::int64_t GetLocalId(const CAnyObject* object) const;

    /// Brings an object that is not in memory. Empty when there is none or it is damaged.
    virtual CAnyRef LoadLocal(std::int64_t localId) = 0;
    /// Writes an object that lives here as it is now, inside the current transaction.
    virtual bool Save(CAnyObject* object) = 0;

    // --- the steps of a transaction, innermost last; false undoes all of it ---

    /// Begins a step; ends one, keeping what was saved in it.
    virtual bool OnBegin() = 0;
    virtual bool OnCommit() = 0;
    /// Called when the objects changed under brackets have their former state again.
    virtual void OnRollback(const CTransaction& undone) = 0;

protected:
    CObjectSource();
    virtual ~CObjectSource();

    /// From now on the object is the one with this local id.
    void Assign(CAnyObject* object, std::int64_t localId);
    /// Whatever object has this local id lives here no more.
    void Withdraw(std::int64_t localId);
    /// Empty when the object is not in memory.
    CAnyRef FindInMemory(std::int64_t localId) const;
    std::vector<CAnyRef> GetObjectsInMemory() const;  ///< All that live here.

private:
    std::int64_t m_Space;
};

}  // namespace zul
