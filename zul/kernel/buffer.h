/// \file
/// Growable byte blocks: one to embed in objects, one typed, one that is an object itself.
#pragma once

#include <cstdint>
#include <new>
#include <type_traits>

#include "zul/kernel/any_object.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/references.h"

namespace zul {

/// A block of up to 4 GiB that grows by doubling, so that appending costs constant time and allocates only
/// when the block grows. New bytes are zero. Positions and sizes are in bytes and checked: what would pass 4
/// GiB, and what memory does not allow, fails and changes nothing. The block does no bracketing: its owner
/// opens the bracket and calls `DoModify` before it changes the block. A copy takes the bytes and no owner,
/// and throws std::bad_alloc where it cannot.
class ZUL_KERNEL_API CAnyMemoryBuffer {
public:
    CAnyMemoryBuffer() = default;
    /// Takes the bytes over, and no owner; empty when there is no memory for them.
    CAnyMemoryBuffer(const CAnyMemoryBuffer& other);
    CAnyMemoryBuffer(CAnyMemoryBuffer&& other) noexcept;
    CAnyMemoryBuffer& operator=(const CAnyMemoryBuffer& other);
    CAnyMemoryBuffer& operator=(CAnyMemoryBuffer&& other) noexcept;
    ~CAnyMemoryBuffer();

    /// Copies bytes between blocks that may overlap. Null pointers and size 0 do nothing.
    static void Copy(void* to, const void* from, std::uint32_t size);

    // --- query ---

    /// Null when nothing was ever stored; valid until the next change of size.
    void* GetBuffer() { return m_Block; }
    const void* GetBuffer() const { return m_Block; }
    std::uint32_t GetSize() const { return m_Size; }          ///< Bytes.
    std::uint32_t GetReserved() const { return m_Reserved; }  ///< Bytes that it can hold without growing.

    // --- change ---

    /// The object whose change a change of this block is. It may die first.
    void SetOwner(const CAnyObject* owner) { m_Owner.DoSetInstance(owner); }

    /// Says that the block is about to change inside an open bracket: a bracket on no object becomes one on
    /// the block's owner.
    void DoModify(CModificator& modificator) {
        if (CAnyObject* owner = m_Owner.DoGetInstance()) modificator.Attribute(owner);
    }

    /// Empties the block. A small one keeps its memory for the next use.
    void Clear();
    bool Reserve(std::uint32_t size);  ///< Makes room for so many bytes; never gives any back.
    /// Sets the size. With \p keep the old bytes stay, otherwise all are zero. \returns the block, null when
    /// it is empty or could not grow.
    void* Resize(std::uint32_t size, bool keep);
    /// Overwrites; beyond the end the block grows. The source may lie in the block. Null or size 0 does
    /// nothing.
    bool Write(std::uint32_t position, std::uint32_t size, const void* data);
    /// Makes room at \p position (beyond the end: as `Write`) and fills it. Null or size 0 does nothing.
    bool DoInsert(std::uint32_t position, std::uint32_t size, const void* data);
    /// Takes out what lies inside the block.
    void DoDelete(std::uint32_t position, std::uint32_t size);

    // --- persist: 32-bit size, then the bytes ---

    /// An excluded block is stored with size 0.
    void SetAsNotSerializable(bool excluded) { m_fNotSerializable = excluded; }
    bool ObjectToBuffer(CStream* stream) const;
    /// A size that the stream cannot hold gives an empty block and false; one that memory does not allow
    /// throws std::bad_alloc, and the block stays as it was.
    bool ObjectFromBuffer(CStream* stream);
    std::uint32_t GetPreferredSize() const;  ///< Bytes of the stored form.

private:
    bool Grow(std::uint64_t size);
    bool Reallocate(std::uint32_t size);
    bool Contains(const void* data) const;

    std::uint8_t* m_Block = nullptr;
    std::uint32_t m_Size = 0;
    std::uint32_t m_Reserved = 0;
    CAnyPtr m_Owner;
    bool m_fNotSerializable = false;
};

/// For those who have no other way to say that a block could not grow: throws std::bad_alloc.
inline void NeedMemory(bool had) {
    if (!had) throw std::bad_alloc();
}

/// The block as a list of plain records.
template <class T>
class CBuffer : public CAnyMemoryBuffer {
    static_assert(std::is_trivially_copyable_v<T>, "records are copied byte by byte");

public:
    /// The records, valid until the next change of size; null when there are none.
    T* GetBuffer() { return static_cast<T*>(CAnyMemoryBuffer::GetBuffer()); }
    const T* GetBuffer() const { return static_cast<const T*>(CAnyMemoryBuffer::GetBuffer()); }
    /// Whole records.
    std::uint32_t GetCount() const { return GetSize() / static_cast<std::uint32_t>(sizeof(T)); }
    /// The index is not checked.
    T& operator[](std::uint32_t index) { return GetBuffer()[index]; }
    const T& operator[](std::uint32_t index) const { return GetBuffer()[index]; }

    /// \returns the records, null when there are none or they do not fit.
    T* SetCount(std::uint32_t count, bool keep) {
        const std::uint64_t size = std::uint64_t{count} * sizeof(T);
        if (size > UINT32_MAX) return nullptr;
        return static_cast<T*>(Resize(static_cast<std::uint32_t>(size), keep));
    }
    /// False when there is no room for it.
    bool Append(const T& record) { return Write(GetSize(), static_cast<std::uint32_t>(sizeof(T)), &record); }
};

/// A block that is an object: it is referred to, stored and shared by itself. Its changing operations open
/// their own bracket; those that change nothing or fail record nothing.
class ZUL_KERNEL_API CAnyBuffer : public CAnyObject {
public:
    /// As of the block.
    void* GetBuffer() { return m_Buffer.GetBuffer(); }
    const void* GetBuffer() const { return m_Buffer.GetBuffer(); }
    std::uint32_t GetSize() const { return m_Buffer.GetSize(); }

    /// As of the block, each inside a bracket where it changes something.
    void Clear();
    bool Reserve(std::uint32_t size) { return m_Buffer.Reserve(size); }
    void* Resize(std::uint32_t size, bool keep);
    bool Write(std::uint32_t position, std::uint32_t size, const void* data);
    bool DoInsert(std::uint32_t position, std::uint32_t size, const void* data);
    void DoDelete(std::uint32_t position, std::uint32_t size);

    void SetAsNotSerializable(bool excluded) override;
    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override { return m_Buffer.GetPreferredSize(); }

private:
    CAnyMemoryBuffer m_Buffer;
};

}  // namespace zul
