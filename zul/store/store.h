/// \file
/// The object store: a file that objects, and the maps made of them, live in.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "zul/kernel/any_object.h"
#include "zul/kernel/references.h"
#include "zul/kernel/string.h"
#include "zul/store/export.h"

namespace zul {

class CStoreSession;

/// A box in the coordinates of the store's spatial index. They are whatever the application says: degrees,
/// metres, a world grid that sheets of 16-bit map units are laid out in. Both ends belong to the box.
struct TWorldBox {
    /// In the coordinates of the application.
    double MinX = 0.0;
    double MinY = 0.0;
    double MaxX = 0.0;
    double MaxY = 0.0;
};

/// What a store did since it was opened, to see that a view reads what it needs and no more.
struct TStoreCounts {
    std::uint64_t ObjectsRead = 0;     ///< from the file
    std::uint64_t BytesRead = 0;       ///< of the stored forms of those objects
    std::uint64_t ObjectsWritten = 0;  ///< to the file
    std::uint64_t BytesWritten = 0;    ///< of the stored forms of those objects
    std::uint64_t BoxesFound = 0;      ///< index entries answered by FindInBox
};

/// One store file, open. Objects are kept by id with their class and stored form; names lead to some of them,
/// and boxes in a spatial index to any that the application placed there.
///
/// A map in a store, for instance: a class of the application for features, derived from CAnyObject and
/// registered with CClass::Register, holds points and attributes; each feature is stored and placed with its
/// box and the number of its layer; an object for each layer, with its pen, brush and font, is reachable from
/// a root. A view calls FindInBox and loads what it answers.
///
///     store.Open(u"world.zul", CStore::Create);
///     CNamedTransaction transaction(u"import");
///     const CObjectID id = store.Store(&feature);
///     store.Place(id, box, layer);
///     transaction.Commit();
///
/// **In memory.** A loaded object belongs to its references: it goes when the last one does. There is one
/// object in memory for an id at a time; references read from the file load theirs when they are first asked,
/// through the factory that its class is registered with, and are empty when the object is of another class
/// than they want, gone, or damaged. Objects of the caller may be stored too and stay the caller's. An object
/// may live in several stores.
///
/// **Transactions** are the kernel's (CNamedTransaction, CEnclosedTransaction), nested as deep as one likes.
/// Whatever a store writes belongs to the calling thread's innermost one, and without one is a transaction by
/// itself. When the outermost commits, objects of the store that were changed under brackets are written by
/// themselves, with what they newly refer to; changes outside of transactions are written by the next Store.
/// What is rolled back has its stored state again, in the file and in memory. A process that is killed, and a
/// disk that fills, leave the state of the last commit.
///
/// **Processes.** Any number may read while one writes. Each call sees whole commits, and all calls while a
/// CStoreReading lives see the same ones. A second writer waits (see SetBusyTimeout); the last to write an
/// object wins. Refresh brings objects in memory up to date.
///
/// **Errors** are reported through CAnyObject::RunError with type 3 and a text that says what the file's
/// engine said; the call then answers as stated and nothing has changed. Hostile and damaged files are errors
/// like others: they end in reports and empty references.
///
/// A store, and the objects that live in it, belong to one thread at a time.
class ZUL_STORE_API CStore {
public:
    /// How a file is opened.
    enum TMode : std::int32_t {
        ReadOnly = 0,
        ReadWrite = 1,  ///< the file must exist
        Create = 2,     ///< reads and writes; makes the file when there is none
    };
    /// Layers are numbers from 0 to this.
    static constexpr std::uint32_t MaxLayer = 0x3FFFFF;
    /// The latest format of files, which is the one that is made. Newer ones are refused.
    static constexpr std::int32_t FormatVersion = 1;

    CStore();
    ~CStore();
    CStore(const CStore&) = delete;
    CStore& operator=(const CStore&) = delete;

    // --- the file ---

    /// Opens a store in place of the one that is open. u":memory:" with Create makes one without a file. A
    /// file that is no store, of a newer format, or write-protected and not opened ReadOnly, is refused
    /// untouched. A write-protected place will do for ReadOnly, unless a writer left changes beside the file.
    bool Open(const char16_t* path, TMode mode = ReadWrite);
    /// Undoes what open transactions did here and lets go of the file. Objects in memory stay as long as
    /// references from outside the store's own objects do. Without an open store nothing happens.
    void Close();
    bool IsOpen() const { return m_Session != nullptr; }  ///< Whether Open() succeeded, up to Close().
    bool IsReadOnly() const;                              ///< False without an open store.
    /// How long to wait for another process that writes; 5000 at first.
    void SetBusyTimeout(std::int32_t milliseconds);
    /// Looks the whole file through. \returns an empty text when it is sound, else what is wrong with it.
    CString Check();

    // --- objects ---

    /// Writes the object as it is now and every object in memory that it refers to, near or far. Those
    /// without an id in this store get one. Objects that are excluded from persistence are left out, and
    /// references to them are stored as empty. \returns the object's id; null when the object or one in its
    /// reach is of a class that is not registered, and on other errors: nothing is stored then.
    CObjectID Store(CAnyObject* object);
    /// The object with this id, which may be one that Store returned in another process, or that of a
    /// reference in this one. An object that is in memory is answered as it is there. Empty without a report
    /// when there is none.
    CAnyRef Load(CObjectID id);
    /// As Load; empty when the object is of another class.
    template <class T>
    CRef<T> Load(CObjectID id) {
        CAnyRef found = Load(id);
        return CRef<T>(dynamic_cast<T*>(found.DoGetInstance()));
    }
    /// The object's id in this store: positive, growing in the order of storing, never given twice. Null for
    /// an object that does not live here.
    CObjectID GetId(const CAnyObject* object) const;
    bool IsStored(CObjectID id);  ///< Whether an object with this id lives here.
    /// Takes the object out of the store, with its box and its names; in memory it stays. References to it
    /// will lead nowhere. \returns false when there was none.
    bool Remove(CObjectID id);
    std::uint64_t GetCount();  ///< Objects in the store.
    /// The ids of the objects of exactly this class, growing.
    std::vector<CObjectID> FindByClass(const CString& name);

    // --- roots: objects by name; case matters ---

    /// Stores the object under the name, in place of the one that had it. \returns false as Store does, and
    /// for an empty name.
    bool SetRoot(const CString& name, CAnyObject* object);
    /// Empty when there is no such name.
    CAnyRef GetRoot(const CString& name);
    template <class T>
    CRef<T> GetRoot(const CString& name) {
        CAnyRef found = GetRoot(name);
        return CRef<T>(dynamic_cast<T*>(found.DoGetInstance()));
    }
    /// Takes the name away; its object stays in the store.
    bool RemoveRoot(const CString& name);
    /// In the order of their bytes.
    std::vector<CString> GetRootNames();

    // --- the spatial index ---

    /// Says where a stored object lies. Each object has one place; a new one replaces it. Refused are boxes
    /// with an end before its start, with coordinates beyond 1e30 or NaN, and unknown ids.
    bool Place(CObjectID id, const TWorldBox& box, std::uint32_t layer = 0);
    bool RemovePlace(CObjectID id);  ///< False when it had none.
    /// The ids of the objects whose boxes touch this one, growing. The index keeps coordinates as 32-bit
    /// floating numbers, rounded outward: an object that misses the box by less than that may be among the
    /// answers, none is left out. Infinite ends are allowed.
    std::vector<CObjectID> FindInBox(const TWorldBox& box, std::uint32_t firstLayer = 0,
                                     std::uint32_t lastLayer = MaxLayer);
    /// The box around all boxes of the layers, outward as above. \returns false when there are none.
    bool GetBounds(TWorldBox& box, std::uint32_t firstLayer = 0, std::uint32_t lastLayer = MaxLayer);

    // --- upkeep ---

    /// Reads objects in memory again if another process wrote to the file meanwhile. Changes that were not
    /// stored are lost. Does nothing inside a transaction that wrote. \returns whether there was news. An
    /// object whose bytes are damaged is reported and stays as it is. When an exception leaves the call all
    /// objects are as before; one for which there is no memory even for that may be new, and the next call
    /// reads all again.
    bool Refresh();
    /// Lets go of loaded objects that only other loaded objects hold: rings of references never end by
    /// themselves. \returns how many went. Close does it, too.
    std::size_t Collect();
    const TStoreCounts& GetCounts() const;  ///< All zero without an open store.

private:
    friend class CStoreReading;

    bool IsReady(const char16_t* member) const;

    std::unique_ptr<CStoreSession> m_Session;
};

/// While one lives, the store reads the file as it was at first, whatever other processes write, and cannot
/// be written to. To be held around a whole view: its loads then share the locks that each would take. Inside
/// a transaction that wrote it makes no difference. They nest. The store stays open meanwhile.
class ZUL_STORE_API CStoreReading {
public:
    explicit CStoreReading(CStore& store);  ///< Without an open store it does nothing.
    ~CStoreReading();
    CStoreReading(const CStoreReading&) = delete;
    CStoreReading& operator=(const CStoreReading&) = delete;

private:
    CStoreSession* m_Session = nullptr;  // null when there is nothing to end
};

}  // namespace zul
