/// \file
/// What an object was before a change.
#pragma once

#include <vector>

#include "zul/kernel/references.h"
#include "zul/kernel/stream.h"

namespace zul {

/// An object's state at some time, to put it back. Keeps the objects that the state refers to: what changes
/// afterwards may take away their last other reference.
class CObjectImage {
public:
    CObjectImage() = default;  ///< Of nothing.
    /// Of \p object, which is not null. Throws std::bad_alloc when memory is short.
    explicit CObjectImage(CAnyObject* object) {
        m_Object.DoSetInstance(object);
        object->DoSerialize(&m_Bytes);
    }

    CAnyObject* GetObject() const { return m_Object.Peek(); }  ///< Null when it is gone.

    /// Without an object nothing happens. Throws std::bad_alloc when an object needs memory and there is
    /// none; it may be tried again.
    void PutBack() {
        if (GetObject() == nullptr) return;
        m_Bytes.SetPosition(0);
        GetObject()->DoUnserialize(&m_Bytes);
    }

private:
    class CBytes : public CMemoryStream {
    public:
        void OnReference(const CAnyObject* object) override { m_Kept.emplace_back(object); }

    private:
        std::vector<CAnyRef> m_Kept;
    };

    CAnyRef m_Object;
    CBytes m_Bytes;
};

}  // namespace zul
