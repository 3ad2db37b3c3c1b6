/// \file
/// A store while its file is open. Inside of the store.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "zul/kernel/object_source.h"
#include "zul/store/database.h"
#include "zul/store/store.h"
#include "zul/store/store_streams.h"

namespace zul {

/// Does the work of CStore. Sources: opening and transactions in `store_session.cpp`, objects in
/// `store_objects.cpp`, the spatial index in `store_index.cpp`. Ids are local ones here.
class CStoreSession : public CObjectSource {
public:
    CStoreSession() = default;
    ~CStoreSession() override;

    bool Open(const char16_t* path, CStore::TMode mode);
    bool IsReadOnly() const { return m_Database.IsReadOnly(); }
    void SetBusyTimeout(std::int32_t milliseconds);
    CString Check();
    /// False when there is nothing to end: within a transaction, and when the file cannot be read.
    bool BeginReading();
    void EndReading();

    // --- objects ---

    std::int64_t Store(CAnyObject* object, const char16_t* member);
    CAnyRef Load(std::int64_t id);
    bool Remove(std::int64_t id);
    bool HasRow(std::int64_t id) { return FindRow(id).value_or(false); }
    /// Nothing, reported, when the file cannot be read.
    std::optional<bool> FindRow(std::int64_t id);
    std::uint64_t GetCount();
    std::vector<CObjectID> FindByClass(const CString& name);

    bool SetRoot(const CString& name, CAnyObject* object);
    std::int64_t FindRoot(const CString& name);
    bool RemoveRoot(const CString& name);
    std::vector<CString> GetRootNames();

    // --- the spatial index ---

    bool Place(std::int64_t id, const TWorldBox& box, std::uint32_t layer);
    bool RemovePlace(std::int64_t id);
    std::vector<CObjectID> FindInBox(const TWorldBox& box, std::uint32_t firstLayer, std::uint32_t lastLayer);
    bool GetBounds(TWorldBox& box, std::uint32_t firstLayer, std::uint32_t lastLayer);

    // --- upkeep ---

    bool Refresh();
    std::size_t Collect();
    const TStoreCounts& GetCounts() const { return m_Counts; }
    /// The local id that an application means: one of this store, or of a reference to an object of it.
    std::int64_t ToLocal(CObjectID id) const;

    // --- for the streams ---

    /// The id under which a reference to the object is stored; 0 for one that is excluded. The object is
    /// written with the one that refers to it.
    std::int64_t Reach(CAnyObject* object);

    // --- of the kernel ---

    CAnyRef LoadLocal(std::int64_t id) override;
    bool Save(CAnyObject* object) override;
    bool OnBegin() override;
    bool OnCommit() override;
    void OnRollback(const CTransaction& undone) override;

private:
    /// Where a transaction began, to find the way back.
    struct TLevel {
        std::int64_t FirstId;       // objects from here on are new in it
        std::size_t UpdatedBefore;  // entries of m_Updated that are older
        std::size_t RemovedBefore;  // of m_Removed
    };
    /// Objects that load others while they are read may do so this deep.
    static constexpr std::size_t MaxLoadDepth = 64;

    bool Fail(const char16_t* what, const char16_t* member) {
        ++m_Faults;
        return m_Database.Fail(what, member);
    }
    bool OpenFile(const std::string& path, CStore::TMode mode);
    void WithdrawNewIds(std::int64_t first);
    void UndoLevel(bool isOutermost);
    /// \returns false, reported, when the bytes are damaged.
    bool ReadAgain(CAnyObject* object, const std::string& bytes);
    /// The stored form; nothing in \p bytes without a row. \returns false, reported, when the file cannot be
    /// read.
    bool ReadRow(std::int64_t id, std::optional<std::string>& bytes);

    bool StoreGraph(CAnyObject* root);
    /// 0, reported, for an object that cannot be stored.
    std::int64_t NeedId(CAnyObject* object);
    bool Serialize(CAnyObject* object);
    /// What was serialised last, as the row of that object.
    bool WriteRow(CAnyObject* object);
    std::int64_t NeedClass(const CString& name);
    /// \p name: null for a class that is not known. \returns as ReadRow.
    bool FindClass(std::int64_t classId, const CString*& name);
    CAnyRef MakeObject(std::int64_t id, const CString* name, const std::string& bytes);

    CDatabase m_Database;
    bool m_IsOpen = false;
    int m_Readings = 0;
    std::int64_t m_NextId = 1;
    std::vector<TLevel> m_Levels;
    std::vector<std::int64_t> m_Updated;  // rows older than their transaction that it wrote
    std::vector<std::int64_t> m_Removed;

    // Of the Store that is at work.
    CStoreWriter m_Writer{*this};
    const CAnyObject* m_Root = nullptr;
    std::int64_t m_FirstOfGraph = 0;  // ids from here on were given by it
    std::vector<CAnyRef> m_Reached;   // beside the root, in the order of writing
    std::unordered_set<const CAnyObject*> m_Visited;
    bool m_HasGap = false;  // an object that was reached cannot be stored

    std::array<std::string, MaxLoadDepth> m_LoadBytes;  // one for each object that is being read
    std::size_t m_LoadDepth = 0;
    std::unordered_set<std::int64_t> m_Damaged;  // reported once
    std::uint64_t m_Faults = 0;                  // of the file, so far

    std::unordered_map<const CString*, std::int64_t> m_ClassIds;  // by the registry's name
    std::unordered_map<std::int64_t, CString> m_ClassNames;
    std::int64_t m_DataVersion = 0;
    TStoreCounts m_Counts;

    CStatement m_SelectObject{"SELECT class, bytes FROM objects WHERE id=?"};
    CStatement m_InsertObject{"INSERT INTO objects VALUES(?, ?, ?)"};
    CStatement m_ReplaceObject{"INSERT OR REPLACE INTO objects VALUES(?, ?, ?)"};
    CStatement m_DeleteObject{"DELETE FROM objects WHERE id=?"};
    CStatement m_HasObject{"SELECT 1 FROM objects WHERE id=?"};
    CStatement m_InsertBox{"INSERT OR REPLACE INTO boxes VALUES(?, ?, ?, ?, ?, ?, ?)"};
    CStatement m_DeleteBox{"DELETE FROM boxes WHERE id=?"};
    CStatement m_SelectBoxes{
        "SELECT id FROM boxes WHERE max_x>=? AND min_x<=? AND max_y>=? AND min_y<=? AND max_layer>=? AND "
        "min_layer<=?"};
    CStatement m_SelectRoot{"SELECT object FROM roots WHERE name=?"};
    CStatement m_SelectDataVersion{"PRAGMA data_version"};
    CStatement m_Rollback{"ROLLBACK"};
    CStatement m_UndoStep{"ROLLBACK TO step"};
    CStatement m_ReleaseStep{"RELEASE step"};
};

}  // namespace zul
