/// \file
/// Streams that stored objects are written to and read from: the abstract one, one over memory, one over a
/// file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zul/kernel/export.h"
#include "zul/kernel/system/file_handle.h"

namespace zul {

class CAnyObject;
class CObjectID;

/// Bytes in order. A read is all or nothing: when fewer bytes remain than asked for, the target is left
/// untouched, the stream is at its end from then on, and false comes back.
class ZUL_KERNEL_API CStream {
public:
    virtual ~CStream() = default;

    /// Copies the next \p size bytes to \p data. Size 0 succeeds and touches nothing; null data fails.
    virtual bool Read(void* data, std::uint32_t size) = 0;

    /// Appends or overwrites \p size bytes at the position. Size 0 succeeds; null data fails.
    virtual bool Write(const void* data, std::uint32_t size) = 0;

    /// Bytes between the position and the end. Lengths read from the stream are checked against it before
    /// anything is allocated.
    virtual std::uint64_t GetRemaining() const = 0;

    /// Told of the object that a reference just written leads to. A stream that is to bring objects back
    /// later keeps them in reach; others do nothing.
    virtual void OnReference(const CAnyObject* object);

    // What stands in the stream for a reference: the id within the process, unless a stream says otherwise.

    /// Gives the object an id if it has none.
    virtual std::int64_t ToStoredId(const CAnyObject* object);
    /// Of a reference whose object is not in memory.
    virtual std::int64_t ToStoredId(const CObjectID& id);
    /// The id within the process that was written as \p stored; 0 for none.
    virtual std::int64_t FromStoredId(std::int64_t stored);

protected:
    CStream() = default;
    /// For classes that can be copied.
    CStream(const CStream&) = default;
    CStream& operator=(const CStream&) = default;
};

/// A stream over memory of its own, which grows as it is written. One position serves reading and writing.
class ZUL_KERNEL_API CMemoryStream : public CStream {
public:
    CMemoryStream() = default;

    /// Holds a copy of \p size bytes, positioned at the first. Null data gives an empty stream.
    CMemoryStream(const void* data, std::size_t size);

    bool Read(void* data, std::uint32_t size) override;
    bool Write(const void* data, std::uint32_t size) override;
    std::uint64_t GetRemaining() const override { return m_Bytes.size() - m_Position; }

    /// All bytes, and where the next is read or written; valid until the next change.
    const std::uint8_t* GetBuffer() const { return m_Bytes.data(); }
    std::size_t GetSize() const { return m_Bytes.size(); }
    std::size_t GetPosition() const { return m_Position; }

    /// Moves the position; past the end means the end.
    void SetPosition(std::size_t position);

    /// Empties the stream.
    void Clear();

private:
    std::vector<std::uint8_t> m_Bytes;
    std::size_t m_Position = 0;
};

/// A stream over a regular file that nobody else changes meanwhile. Every operation on a stream whose file
/// could not be opened fails, and so does every one after a write that failed. Objects do not look whether
/// their reads and writes succeed; Close tells whether all of them did. An object that is to stay as it was
/// when its file fails is read in a transaction:
///
///     CFileStream file(path, u"rb");
///     CNamedTransaction transaction;
///     {
///         CModificator modificator(&object);
///         object.DoUnserialize(&file);
///     }
///     if (file.Close()) transaction.Commit();
class ZUL_KERNEL_API CFileStream : public CStream {
public:
    /// \param mode as in the C library: u"rb" reads, u"wb" creates or empties, u"r+b" changes in place,
    /// u"ab" appends.
    CFileStream(const char16_t* path, const char16_t* mode);

    bool IsOpen() const { return m_File != nullptr; }  ///< False when the file could not be opened.

    /// Of a read beyond `LargeRead` bytes that the device breaks off, the target holds what came.
    bool Read(void* data, std::uint32_t size) override;
    /// Bytes wait in memory and are written together: a full disk may show later, at the latest in Close.
    bool Write(const void* data, std::uint32_t size) override;
    std::uint64_t GetRemaining() const override { return m_Size - m_Position; }
    static constexpr std::uint32_t LargeRead = 512;  ///< Up to here a read is all or nothing.

    /// Closes the file. \returns whether there was one, every read and write on it succeeded, and all that
    /// was written is stored. The destructor closes, too, and has nobody to tell.
    bool Close();

private:
    enum TOperation { Nothing, Reading, Writing };

    bool ReadAll(void* data, std::uint32_t size);
    bool WriteAll(const void* data, std::uint32_t size);
    bool SwitchTo(TOperation operation);

    zulsys::FileHandle m_File;
    std::uint64_t m_Size = 0;
    std::uint64_t m_Position = 0;
    TOperation m_LastOperation = Nothing;
    bool m_AllRead = true;
    bool m_AllWritten = true;
};

}  // namespace zul
