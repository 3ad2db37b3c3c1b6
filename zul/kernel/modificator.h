/// \file
/// Brackets around changes of objects, and what is told about them.
#pragma once

#include <cstdint>

#include "zul/kernel/any_object.h"
#include "zul/kernel/references.h"

namespace zul {

class CTransaction;

/// One recorded change.
struct TModification {
    CObjectID Id;                ///< null for an object that never needed one
    CString Class;               ///< as registered; empty for a class that is not
    std::uint64_t Sequence = 0;  ///< counts the calling thread's recorded changes
    bool HasValues = false;      ///< whether the bracket was given the two values
    double OldValue = 0.0;       ///< with HasValues only
    double NewValue = 0.0;       ///< with HasValues only
};

/// Is told of each recorded change, on the thread that made it, after the change is complete. Installed with
/// `CClient::AddObserver`.
class CModificationObserver {
public:
    virtual ~CModificationObserver() = default;
    virtual void OnModified(const TModification& modification) noexcept = 0;  ///< Must not throw.
};

/// Brackets one change of one object: opened before, closed by the destructor. Of brackets nested on one
/// object only the outermost records: it calls `DoModify` when it opens, and when it closes it counts, adds
/// to the current transaction and tells the observers. Without transaction and observers that is a few
/// nanoseconds, and nothing is allocated. A bracket may outlive its object; it then records nothing.
class ZUL_KERNEL_API CModificator {
public:
    /// Null opens a bracket that records nothing until it is attributed to an object.
    CModificator(CAnyObject* object = nullptr) {
        if (object != nullptr) Open(object);
    }
    /// With the values before and after, for the log.
    CModificator(CAnyObject* object, double oldValue, double newValue)
        : m_HasValues(true), m_OldValue(oldValue), m_NewValue(newValue) {
        if (object != nullptr) Open(object);
    }
    ~CModificator() {
        if (m_Object != nullptr) Close();
    }
    CModificator(const CModificator&) = delete;
    CModificator& operator=(const CModificator&) = delete;

    /// Cancels this bracket: it records nothing, and an outermost one calls `DoUnmodify`.
    void Clear();

    /// Makes a bracket that was opened on no object the bracket of \p object. No effect on a bracket that has
    /// or had an object, on a cancelled one, and with null.
    void Attribute(CAnyObject* object);

private:
    friend class CAnyObject;

    void Open(CAnyObject* object);
    void Close();
    void Unlink() {
        CModificator** link = &m_Object->m_OpenBracket;
        while (*link != this)
            link = &(*link)->m_Outer;
        *link = m_Outer;
        m_Object = nullptr;
    }
    /// Adds to the transaction and tells the observers; called only when there are such.
    void Record(CAnyObject* object) const;

    CAnyObject* m_Object = nullptr;    // emptied by the object when it dies first
    CModificator* m_Outer = nullptr;   // the next bracket outward on the same object
    CTransaction* m_Imaged = nullptr;  // the transaction that keeps a before-image for this bracket's sake
    bool m_Records = false;            // the outermost one
    bool m_Settled = false;            // was opened or cancelled
    bool m_HasValues = false;
    double m_OldValue = 0.0;
    double m_NewValue = 0.0;
};

}  // namespace zul
