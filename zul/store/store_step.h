/// \file
/// One change of a store. Inside of the store.
#pragma once

#include <optional>

#include "zul/kernel/object_source.h"
#include "zul/kernel/transaction.h"

namespace zul {

/// Runs a step when it goes, whatever happened.
template <class Step>
class CFinally {
public:
    explicit CFinally(Step step) : m_Step(step) {}
    ~CFinally() { m_Step(); }
    CFinally(const CFinally&) = delete;
    CFinally& operator=(const CFinally&) = delete;

private:
    Step m_Step;
};

/// Puts what a call writes into the current transaction, or into one of its own when there is none, or when
/// it is several statements that come together or not at all.
class CStoreStep {
public:
    explicit CStoreStep(CObjectSource& source, bool hasSeveral = false) {
        if (hasSeveral || CTransaction::GetCurrent() == nullptr) m_Own.emplace(u"store");
        m_IsReady = CTransaction::GetCurrent()->Enlist(&source);
    }
    /// False when the store cannot be written to, which has been reported.
    bool IsReady() const { return m_IsReady; }
    /// Ends a transaction of its own, for good or (\p isGood false) for nothing. \returns whether all is
    /// well.
    bool End(bool isGood) {
        if (!m_Own) return isGood;
        if (isGood) return m_Own->Commit();
        m_Own->Rollback();
        return false;
    }

private:
    std::optional<CNamedTransaction> m_Own;
    bool m_IsReady = false;
};

}  // namespace zul
