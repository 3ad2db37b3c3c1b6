/// \file
/// Pointers and references to objects. All of them go empty by themselves when their object dies.
#pragma once

#include <atomic>
#include <cstdint>

#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"

namespace zul {

class CAnyFactory;

/// The identity of an object: 64 bits, 0 for none. Given when the object is first referred to in a stored
/// form.
class CObjectID {
public:
    CObjectID() = default;
    explicit CObjectID(std::int64_t value) : m_Value(value) {}  ///< 0 is no object.

    /// 0 is no object.
    std::int64_t GetValue() const { return m_Value; }
    bool IsNull() const { return m_Value == 0; }
    bool operator==(const CObjectID& other) const { return m_Value == other.m_Value; }
    bool operator!=(const CObjectID& other) const { return m_Value != other.m_Value; }

private:
    std::int64_t m_Value = 0;
};

/// What an object shares with those that refer to it. It lives until the object and all of them are gone; the
/// object empties it in its destructor. Nobody else keeps a raw pointer to an object.
class ZUL_KERNEL_API CControlCell {
public:
    explicit CControlCell(CAnyObject* object) : m_Object(object) {}  ///< Made by the object, for itself.

    /// Null once the object is dead.
    CAnyObject* GetInstance() const { return m_Object.load(std::memory_order_acquire); }
    /// 0 as long as nothing needed an id.
    std::int64_t GetId() const { return m_Id.load(std::memory_order_relaxed); }
    /// The object's id, given now if it had none.
    std::int64_t NeedId();

    /// Makes the object belong to its references: the last one to let go destroys it.
    void Adopt() { m_Owned.store(true, std::memory_order_relaxed); }
    /// Whether it belongs to its references.
    bool IsAdopted() const { return m_Owned.load(std::memory_order_relaxed); }
    /// Those that hold strongly.
    std::uint32_t GetReferenceCount() const { return m_References.load(std::memory_order_relaxed); }

    /// Pointers hold the cell; references hold it strongly, and with it an object that was adopted.
    void Hold() { m_Holders.fetch_add(1, std::memory_order_relaxed); }
    void Release();
    void HoldStrongly();
    void ReleaseStrongly();
    /// The object is gone.
    void Empty();

private:
    friend class CObjectTable;

    std::atomic<CAnyObject*> m_Object;
    std::atomic<std::int64_t> m_Id{0};
    std::atomic<std::uint32_t> m_Holders{1};  // the object itself is one
    std::atomic<std::uint32_t> m_References{0};
    std::atomic<bool> m_Owned{false};
};

/// A pointer to an object. Only `Remove` destroys the object; setting another one, and the pointer's own end,
/// let go of it and no more.
class ZUL_KERNEL_API CAnyPtr {
public:
    CAnyPtr() = default;
    /// Null is an empty pointer.
    CAnyPtr(const CAnyObject* object) { DoSetInstance(object); }
    CAnyPtr(const CAnyPtr& other) { DoSetInstance(other.DoGetInstance()); }
    CAnyPtr& operator=(const CAnyPtr& other);
    ~CAnyPtr() { DoSetInstance(nullptr); }

    /// An object that is dead counts as null.
    bool IsExist() const { return DoGetInstance() != nullptr; }
    bool IsEqual(const CAnyObject* object) const { return DoGetInstance() == object; }
    CAnyObject* DoGetInstance() const { return m_Cell != nullptr ? m_Cell->GetInstance() : nullptr; }

    void DoSetInstance(const CAnyObject* object);  ///< Destroys nothing.
    /// Destroys the object and empties the pointer.
    void Remove();

private:
    CControlCell* m_Cell = nullptr;
};

/// `CAnyPtr` to objects of one class.
template <class T>
class CPtr : public CAnyPtr {
public:
    CPtr() = default;
    CPtr(const T* object) : CAnyPtr(object) {}  ///< Null is an empty pointer.

    /// As of CAnyPtr; what is dereferenced must exist.
    T* Get() const { return static_cast<T*>(DoGetInstance()); }
    T* operator->() const { return Get(); }
    T& operator*() const { return *Get(); }
    void DoSetInstance(const T* object) { CAnyPtr::DoSetInstance(object); }
};

/// What references have in common: the id of an object and, once found, the object itself. An object that a
/// reference created or loaded lives as long as references to it do; an object of the caller is not kept
/// alive. An object of a store that is not in memory, or is no more, is loaded when it is asked for.
class ZUL_KERNEL_API CAbstractRef {
public:
    /// Whether there is an object, which is loaded if need be.
    bool IsExist() const { return Resolve() != nullptr; }
    /// True when this is what the reference refers to; null equals an empty reference.
    bool IsEqual(const CAnyObject* object) const { return Resolve() == object; }

    /// The object referred to. Without one and with \p create, \p factory makes it (null factory: null).
    CAnyObject* DoGetInstance(CAnyFactory* factory = nullptr, bool create = false);
    void DoSetInstance(const CAnyObject* object);  ///< Lets go of the former object.
    /// Refers to an object made with `new` and takes it over: it is destroyed with its last reference, or now
    /// when there is no memory to refer to it (std::bad_alloc).
    void DoAdoptInstance(CAnyObject* object);

    /// The object if it is in memory: nothing is loaded.
    CAnyObject* Peek() const;

    /// The id stored for this reference; null for an empty reference, for an object without an id, and for a
    /// dead one that lives in no store.
    CObjectID GetObjectID() const;

protected:
    CAbstractRef() = default;
    /// Refers to the same object.
    CAbstractRef(const CAbstractRef& other) { CopyFrom(other); }
    CAbstractRef& operator=(const CAbstractRef& other);
    ~CAbstractRef() { SetCell(nullptr); }

    /// The living object, looked up or loaded by its id if need be; null when there is none.
    CAnyObject* Resolve() const {
        CAnyObject* const object = m_Cell != nullptr ? m_Cell->GetInstance() : nullptr;
        return object != nullptr ? object : Find(true);
    }
    /// Refers to the object with this id, which is looked for when it is asked for.
    void SetId(std::int64_t id);

    /// The object as its class, once CRef has checked it; reset whenever the reference changes.
    mutable void* m_Typed = nullptr;

private:
    CAnyObject* Find(bool load) const;
    void CopyFrom(const CAbstractRef& other);
    void SetCell(CControlCell* cell) const;

    mutable CControlCell* m_Cell = nullptr;
    std::int64_t m_Id = 0;  // of an object that was not found yet
};

/// A reference that is stored as exactly eight bytes, the object's id.
class ZUL_KERNEL_API CAnyRef : public CAbstractRef {
public:
    CAnyRef() = default;
    CAnyRef(const CAnyObject* object) { DoSetInstance(object); }  ///< Null is an empty reference.

    /// Gives the object an id if it has none. An empty reference is stored as 0. Loads nothing.
    bool ObjectToBuffer(CStream* stream);
    /// A short stream leaves an empty reference.
    bool ObjectFromBuffer(CStream* stream);
    std::uint32_t GetPreferredSize() const { return 8; }  ///< Always 8.
};

/// `CAnyRef` to objects of one class: an id that leads to an object of another class is an empty reference.
template <class T>
class CRef : public CAnyRef {
public:
    CRef() = default;
    CRef(const T* object) : CAnyRef(object) {}  ///< Null is an empty reference.

    /// As of CAnyRef, for objects of this class only.
    bool IsExist() const { return Get() != nullptr; }
    bool IsEqual(const T* object) const { return Get() == object; }

    /// Null for an empty reference; what is dereferenced must exist.
    T* Get() const {
        CAnyObject* object = Resolve();
        if (object == nullptr) return nullptr;
        if (m_Typed == nullptr) m_Typed = dynamic_cast<T*>(object);
        return static_cast<T*>(m_Typed);
    }
    T* operator->() const { return Get(); }
    T& operator*() const { return *Get(); }

    /// As of CAnyRef, for objects of this class only.
    T* DoGetInstance(CAnyFactory* factory = nullptr, bool create = false) {
        if (T* found = Get()) return found;
        if (create) {
            CAnyRef::DoSetInstance(nullptr);
            CAnyRef::DoGetInstance(factory, true);
        }
        return Get();
    }
    void DoSetInstance(const T* object) { CAnyRef::DoSetInstance(object); }
};

}  // namespace zul
