/// \file
/// Classes by name: factories, description documents, sizes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <typeinfo>

#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"

namespace zul {

class CAnyDictionary;

/// Makes objects of one class.
class ZUL_KERNEL_API CAnyFactory {
public:
    /// Constructs an object in storage of the caller, which must have `GetObjectSize()` bytes and the
    /// alignment of `std::max_align_t`. Null storage gives null.
    virtual CAnyObject* CreateInstance(void* place);
    /// Constructs an object with storage of its own; the caller deletes it. Null when there is no memory.
    virtual CAnyObject* CreateInstance();
    virtual std::size_t GetObjectSize() const;  ///< Bytes of an object.
    virtual ~CAnyFactory() = default;
    /// The class of the objects, by which the registry tells an object's name.
    virtual const std::type_info& GetObjectType() const;

    /// Null instead of an exception when there is no memory.
    static void* operator new(std::size_t size) noexcept;
    static void operator delete(void* storage) noexcept;
};

/// How a factory constructs a `T`. Specialised for classes whose default state needs arguments.
template <class T>
struct CFactoryTraits {
    /// In storage that is large enough and aligned.
    static T* Construct(void* place) { return new (place) T; }
};

/// The factory of one class, which `CFactoryTraits` may tell how to construct it.
template <class T>
class CFactory : public CAnyFactory {
    static_assert(alignof(T) <= alignof(std::max_align_t), "object storage has the default alignment");

public:
    CAnyObject* CreateInstance(void* place) override {
        return place != nullptr ? CFactoryTraits<T>::Construct(place) : nullptr;
    }
    CAnyObject* CreateInstance() override {
        void* storage = CAnyObject::operator new(sizeof(T));
        if (storage == nullptr) return nullptr;
        try {
            return CFactoryTraits<T>::Construct(storage);
        } catch (...) {
            CAnyObject::operator delete(storage);
            throw;
        }
    }
    std::size_t GetObjectSize() const override { return sizeof(T); }
    const std::type_info& GetObjectType() const override { return typeid(T); }
};

/// The registry of classes. Registration belongs to start-up, before other threads use it.
class ZUL_KERNEL_API CClass {
public:
    /// Registers the class that \p document names with the `name` attribute of its `class` element. The
    /// registry owns the factory from now on, whatever happens. A null factory registers a class that cannot
    /// be created; a name that is known replaces its factory and document; a document without a name is
    /// reported and dropped.
    static void Register(CAnyFactory* factory, const CString& document);

    /// A new object, initialised; the caller deletes it. Null for unknown names and classes without a
    /// factory.
    static CAnyObject* Create(const CString& name);
    /// Null for unknown names and classes without a factory. Stays the registry's.
    static CAnyFactory* GetFactory(const CString& name);
    /// Null for unknown names.
    static const CString* GetDocument(const CString& name);
    /// Bytes of an object; 0 for unknown names and classes without a factory.
    static std::size_t GetSize(const CString& name);
    /// The registered name of the object's class; null when it is not registered or the object is null.
    static const CString* GetName(const CAnyObject* object);

    /// Sizes of plain structures by name, each a `CInteger`.
    static CAnyDictionary* GetStructureRegistry();
};

}  // namespace zul
