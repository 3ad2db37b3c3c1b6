/// \file
/// Arrays and dictionaries of objects.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "zul/kernel/any_object.h"
#include "zul/kernel/references.h"

namespace zul {

/// Objects in order. An appended object must come from `new` and belongs to the array (and to any references
/// that share it) from then on. Stored as a 32-bit count and 8 bytes for each reference.
class ZUL_KERNEL_API CAnyArray : public CAnyObject {
public:
    /// Null appends an empty place.
    void DoAppend(CAnyObject* object);
    /// Null past the end, for an empty place, and for an object that is gone.
    CAnyObject* DoGetInstance(std::uint32_t index) const;
    /// Places, empty ones included.
    std::uint32_t GetCount() const { return static_cast<std::uint32_t>(m_Items.size()); }
    void Clear();  ///< Lets go of every object.

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override { return 4 + 8 * GetCount(); }

private:
    mutable std::vector<CAnyRef> m_Items;
};

/// `CAnyArray` of one class; an object of another class reads as null.
template <class T>
class CArray : public CAnyArray {
public:
    /// As of the base class.
    void DoAppend(T* object) { CAnyArray::DoAppend(object); }
    T* DoGetInstance(std::uint32_t index) const { return dynamic_cast<T*>(CAnyArray::DoGetInstance(index)); }
};

/// Objects by name, the names distinguished by case. Ownership as in `CAnyArray`. Stored as a 32-bit count,
/// then each name with its reference.
class ZUL_KERNEL_API CAnyDictionary : public CAnyObject {
public:
    /// A known key gets the new object in place of the old one.
    void DoAppend(const CString& key, CAnyObject* object);
    /// Null for an unknown key and an object that is gone.
    CAnyObject* DoGetInstance(const CString& key) const;
    /// Also when the object of that name is gone.
    bool IsExist(const CString& key) const { return m_Items.count(key) != 0; }
    /// Names.
    std::uint32_t GetCount() const { return static_cast<std::uint32_t>(m_Items.size()); }
    void Clear();  ///< Lets go of every object.

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    mutable std::map<CString, CAnyRef> m_Items;
};

}  // namespace zul
