/// \file
/// The base of every persistent class.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "zul/kernel/export.h"
#include "zul/kernel/string.h"

namespace zul {

class CAnyObject;
class CClient;
class CControlCell;
class CMessage;
class CModificator;
class CStream;

/// What a recoverable error is about. Hosts see these numbers.
enum TErrorType {
    ErrorInternal = 0,  ///< an internal fault, reported through `CClient::RaiseException`
    ErrorFailed = 3,  ///< a platform handle that cannot be made, an abstract operation, an index out of range
    ErrorUnsupported = 4,  ///< an operation that the platform does not have
    ErrorOverflow = 5      ///< a coordinate beyond its 16 bits
};

/// Where an enumeration of sub-objects stands.
struct TSubObjectIterator {
    std::uint32_t Position = 0;  ///< 0 before the first
};

/// An object with an identity: it can be referred to, stored, changed under brackets, and sent messages.
///
/// References see the object's end through a control cell that is made when the first of them needs it.
/// Identity, open brackets and the persistence mark belong to the object and not to its value: a copy starts
/// without them and an assignment leaves them alone.
class ZUL_KERNEL_API CAnyObject {
public:
    CAnyObject() = default;
    /// Takes nothing over.
    CAnyObject(const CAnyObject&) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned.
    /// Takes nothing over.
    CAnyObject& operator=(const CAnyObject&) { return *this; }

    virtual ~CAnyObject() {
        if (m_OpenBracket != nullptr || m_Cell.load(std::memory_order_relaxed) != nullptr) Depart();
    }

    /// Excludes the object from `DoSerialize`, and so from transactions and stores, or takes it in again.
    virtual void SetAsNotSerializable(bool excluded);
    bool IsSerializable() const { return !m_fNotSerializable; }  ///< Whether it is not excluded.

    /// Makes \p target equal to this object, through the stored form.
    /// \returns false when \p target is null, this object, or of another class.
    virtual bool Clone(CAnyObject* target);

    /// Writes the class's own fields in declaration order, then those of the base.
    /// CAnyObject has none.
    virtual bool ObjectToBuffer(CStream* stream);
    /// Reads back what `ObjectToBuffer` wrote. Opens no modification bracket.
    virtual bool ObjectFromBuffer(CStream* stream);

    /// What the kernel calls to store an object: `ObjectToBuffer`, or nothing for an excluded one.
    virtual bool DoSerialize(CStream* stream);
    /// What the kernel calls to read a stored object: `ObjectFromBuffer`, or nothing for an excluded one.
    virtual bool DoUnserialize(CStream* stream);

    /// A text to show for the object. \returns false when it has none.
    virtual bool GetInscription(CString& text);
    virtual bool SetInscription(const char16_t* text);  ///< False when it takes none.

    /// How many bytes the class itself writes in `ObjectToBuffer`.
    virtual std::uint32_t GetPreferredSize();
    virtual std::uint32_t GetReservedSize();  ///< As GetPreferredSize(); nothing here asks.

    /// The next owned sub-object, null at the end.
    virtual CAnyObject* EnumSubObjects(TSubObjectIterator& iterator, void*& context, std::int32_t kind);

    virtual void DoRemoveFromDB();  ///< before the object leaves its store
    virtual void DoCommitObject();  ///< when the outermost transaction that changed the object is committed
    virtual void DoInitialize();    ///< after a factory made the object
    virtual void DoFinalize();      ///< before a pointer or the last reference destroys the object
    virtual void DoModify();        ///< when the outermost modification bracket opens
    virtual void DoUnmodify();      ///< when that bracket is cancelled, and after a rollback

    /// \returns true when the message was handled. Classes pass what they do not know to their base.
    virtual bool DoMessage(CMessage* message);

    static CClient* GetClient();  ///< The kernel as the host sees it.

    /// Reports a recoverable error to the host's error handler, which may return or throw.
    static void RunError(TErrorType type, const CString& text, const CAnyObject* object = nullptr);

    /// Sends a named message. \returns what the target answered, false for a null target. The result is
    /// copied out only when \p result is given and the message was handled.
    bool RunMessage(const CString& name, CAnyObject* target, std::int64_t* result, std::int64_t param1 = 0,
                    std::int64_t param2 = 0, std::int64_t param3 = 0, std::int64_t param4 = 0);

    /// Storage for objects; null instead of an exception when there is none.
    static void* operator new(std::size_t size) noexcept;
    static void* operator new(std::size_t size, void* place) noexcept;
    static void* operator new[](std::size_t size) noexcept;
    static void operator delete(void* storage) noexcept;
    static void operator delete(void* storage, void* place) noexcept;
    static void operator delete[](void* storage) noexcept;

    /// The cell through which references watch this object; made on first need.
    CControlCell* GetControlCell() const;

private:
    friend class CModificator;

    void Depart();

    mutable std::atomic<CControlCell*> m_Cell{nullptr};
    CModificator* m_OpenBracket = nullptr;  // innermost open bracket; they chain outward
    bool m_fNotSerializable = false;
};

}  // namespace zul
