#include "zul/store/store_session.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "zul/kernel/transaction.h"
#include "zul/store/store_format.h"
#include "zul/store/store_step.h"

namespace zul {
namespace {

constexpr std::int32_t DefaultBusyTimeout = 5000;

void Refuse(const char16_t* path, const CString& why) {
    CAnyObject::RunError(ErrorFailed, CString::Format(u"Can't open store %s: %s <zul::CStore::Open()>",
                                                      path != nullptr ? path : u"",
                                                      why.IsEmpty() ? u"no memory" : why.GetBuffer()));
}

/// The path as a URI that says: nobody writes there, so no locks and no files beside are needed.
std::string ToImmutableUri(const std::string& path) {
    constexpr char Digits[] = "0123456789ABCDEF";
    constexpr std::string_view Plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-";
    std::string uri = "file:";
    for (const char c : path) {
        if (Plain.find(c) != std::string_view::npos) {
            uri += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        uri += {'%', Digits[byte >> 4], Digits[byte & 15]};
    }
    return uri + "?immutable=1";
}

}  // namespace

// --- opening ---

CStoreSession::~CStoreSession() {
    try {
        if (m_IsOpen) Collect();
    } catch (...) {
        // Rings of objects stay then: there was no memory to find them.
    }
}

bool CStoreSession::Open(const char16_t* path, CStore::TMode mode) {
    if (mode == CStore::Create && path != nullptr && std::u16string_view(path) == u":memory:") {
        m_IsOpen =
            m_Database.Open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) && LayTables(m_Database);
        return m_IsOpen || Fail(u"Can't open store", u"Open");
    }
    const auto native = ToStorePath(path);
    if (!native) {
        Refuse(path, u"it is no path");
        return false;
    }
    if (mode == CStore::Create && !DoesFileExist(*native) && !MakeStoreFile(*native)) return false;
    CString objection = FindObjection(*native);
    if (objection.IsEmpty()) {
        const bool isOpen = OpenFile(*native, mode);
        if (mode != CStore::ReadOnly && m_Database.Get() != nullptr && IsReadOnly()) {
            objection = u"it is write-protected";
        } else if (!isOpen) {
            objection = m_Database.Get() != nullptr ? sqlite3_errmsg(m_Database.Get()) : "";
        } else if (!HasStoreTables(m_Database)) {
            objection = sqlite3_errcode(m_Database.Get()) == SQLITE_DONE ||
                                sqlite3_errcode(m_Database.Get()) == SQLITE_OK
                            ? "it does not have the tables of a store"
                            : sqlite3_errmsg(m_Database.Get());
        } else {
            m_IsOpen = true;
            m_DataVersion = m_Database.Ask("PRAGMA data_version").value_or(0);
            return true;
        }
    }
    Refuse(path, objection);
    return false;
}

bool CStoreSession::OpenFile(const std::string& path, CStore::TMode mode) {
    const bool writes = mode != CStore::ReadOnly;
    if (!m_Database.Open(path, writes ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY)) return false;
    SetBusyTimeout(DefaultBusyTimeout);
    // The cache's size is in KiB.
    constexpr char FirstLook[] = "PRAGMA cache_size=-32768; SELECT 1 FROM sqlite_schema LIMIT 1";
    if (writes) return m_Database.Run("PRAGMA synchronous=FULL") && m_Database.Run(FirstLook);
    if (m_Database.Run(FirstLook)) return true;
    // Readers keep a file beside the store to meet the writer in. Where none can be made there is no writer.
    const int reason = sqlite3_errcode(m_Database.Get()) & 0xFF;
    if ((reason != SQLITE_CANTOPEN && reason != SQLITE_READONLY) || HasUnfinishedChanges(path)) return false;
    return m_Database.Open(ToImmutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI) &&
           m_Database.Run(FirstLook);
}

void CStoreSession::SetBusyTimeout(std::int32_t milliseconds) {
    sqlite3_busy_timeout(m_Database.Get(), milliseconds);
}

CString CStoreSession::Check() {
    struct TQuestion {
        const char* Sql;
        const char* GoodAnswer;
        const char16_t* Otherwise;  // null: the answer itself says it
    };
    constexpr TQuestion Questions[] = {
        {"PRAGMA integrity_check(1)", "ok", nullptr},
        // The next one would take such parts for a lack of memory.
        {"SELECT count(*) FROM boxes_node WHERE typeof(data)<>'blob' OR length(data)=0", "0",
         u"empty parts of the index of boxes"},
        {"SELECT rtreecheck('boxes')", "ok", nullptr},
        {"SELECT count(*) FROM objects WHERE class NOT IN (SELECT id FROM classes)", "0",
         u"objects without a class"},
        {"SELECT count(*) FROM roots WHERE object NOT IN (SELECT id FROM objects)", "0",
         u"names without an object"},
        {"SELECT count(*) FROM boxes_rowid WHERE rowid NOT IN (SELECT id FROM objects)", "0",
         u"boxes without an object"},
        {"SELECT count(*) FROM objects WHERE id<1 OR id>=(SELECT value FROM counters WHERE name='next')", "0",
         u"ids that were never given"},
    };
    for (const TQuestion& question : Questions) {
        CStatement statement(question.Sql);
        CQuery query(m_Database, statement);
        if (!query.Next()) return sqlite3_errmsg(m_Database.Get());
        const std::string answer(query.GetBytes(0));
        if (answer == question.GoodAnswer) continue;
        if (question.Otherwise == nullptr) return answer.c_str();
        return CString::Format(u"%S %s", answer.c_str(), question.Otherwise);
    }
    return {};
}

bool CStoreSession::BeginReading() {
    if (!m_Levels.empty()) return false;
    if (m_Readings == 0) UndoLevel(true);
    // A state is held from the first look on, and letting go of it must not need memory.
    if (m_Readings == 0 &&
        !(m_Rollback.Prepare(m_Database) && m_Database.Run("BEGIN; SELECT 1 FROM counters"))) {
        const CFinally undo([this] { UndoLevel(true); });
        return Fail(u"Can't read the store", u"CStoreReading");
    }
    ++m_Readings;
    return true;
}

void CStoreSession::EndReading() {
    if (--m_Readings == 0 && !m_Database.Run("COMMIT")) UndoLevel(true);
}

// --- transactions ---

bool CStoreSession::OnBegin() {
    if (m_Readings > 0) {
        CAnyObject::RunError(ErrorFailed, u"The store is held as it is <zul::CStore::Store()>");
        return false;
    }
    if (IsReadOnly()) {
        CAnyObject::RunError(ErrorFailed, u"The store is open for reading only <zul::CStore::Store()>");
        return false;
    }
    const bool outermost = m_Levels.empty();
    // After a grave error the engine has undone the outermost transaction by itself: nothing may begin until
    // the kernel's is undone, too.
    if (!outermost && !m_Database.HasTransaction()) return Fail(u"The transaction is lost", u"Store");
    // The way back is laid out first: it must not need memory.
    m_Levels.reserve(m_Levels.size() + 1);
    const bool canUndo =
        m_Rollback.Prepare(m_Database) && m_UndoStep.Prepare(m_Database) && m_ReleaseStep.Prepare(m_Database);
    if (outermost) UndoLevel(true);
    if (!canUndo || !m_Database.Run(outermost ? "BEGIN IMMEDIATE" : "SAVEPOINT step")) {
        return Fail(u"Can't write to the store", u"Store");
    }
    if (outermost) {
        bool isReady = false;
        const CFinally undo([&] {
            if (!isReady) UndoLevel(true);
        });
        const auto next = m_Database.Ask("SELECT value FROM counters WHERE name='next'");
        if (!next) return Fail(u"Can't write to the store", u"Store");
        if (*next < 1 || *next > MaxLocalId) {
            CAnyObject::RunError(ErrorFailed, u"The store has no more ids <zul::CStore::Store()>");
            return false;
        }
        // Ids of an undone transaction are not given again while objects that had them may live here.
        m_NextId = std::max(m_NextId, *next);
        isReady = true;
    }
    m_Levels.push_back({m_NextId, m_Updated.size(), m_Removed.size()});
    return true;
}

bool CStoreSession::OnCommit() {
    if (!m_Database.HasTransaction()) return Fail(u"The transaction is lost", u"Store");
    if (m_Levels.size() > 1) {
        if (!m_Database.Run("RELEASE step")) return Fail(u"Can't keep changes", u"Store");
        m_Levels.pop_back();
        return true;
    }
    std::vector<std::int64_t> gone;  // and not stored again since
    for (const std::int64_t id : m_Removed) {
        const std::optional<bool> row = FindRow(id);
        if (!row) return false;
        if (!*row) gone.push_back(id);
    }
    CStatement statement("UPDATE counters SET value=? WHERE name='next'");
    if (!CQuery(m_Database, statement).Bind(1, m_NextId).Run() || !m_Database.Run("COMMIT")) {
        return Fail(u"Can't keep changes", u"Store");
    }
    for (const std::int64_t id : gone)
        Withdraw(id);
    m_Levels.clear();
    m_Updated.clear();
    m_Removed.clear();
    return true;
}

void CStoreSession::OnRollback(const CTransaction& undone) {
    if (m_Levels.empty()) return;
    const TLevel level = m_Levels.back();
    m_Levels.pop_back();
    UndoLevel(m_Levels.empty());
    m_ClassIds.clear();
    m_ClassNames.clear();
    m_Damaged.clear();
    WithdrawNewIds(level.FirstId);
    m_Removed.resize(level.RemovedBefore);
    const auto updated = m_Updated.begin() + static_cast<std::ptrdiff_t>(level.UpdatedBefore);
    std::sort(updated, m_Updated.end());
    m_Updated.erase(std::unique(updated, m_Updated.end()), m_Updated.end());
    while (m_Updated.size() > level.UpdatedBefore) {
        const std::int64_t id = m_Updated.back();
        m_Updated.pop_back();
        const CAnyRef found = FindInMemory(id);
        CAnyObject* const object = found.Peek();
        if (id >= level.FirstId || object == nullptr || undone.HasImageOf(object)) continue;
        std::optional<std::string> bytes;
        if (ReadRow(id, bytes) && bytes) ReadAgain(object, *bytes);
    }
}

void CStoreSession::UndoLevel(bool isOutermost) {
    if (!m_Database.HasTransaction()) return;
    const auto run = [this](CStatement& statement) {
        try {
            return CQuery(m_Database, statement).Run();
        } catch (const std::bad_alloc&) {
            return false;
        }
    };
    // A step that cannot be undone alone takes the whole along, which the commit will notice.
    if (isOutermost || !run(m_UndoStep) || !run(m_ReleaseStep)) run(m_Rollback);
}

void CStoreSession::WithdrawNewIds(std::int64_t first) {
    for (std::int64_t id = first; id < m_NextId; ++id)
        Withdraw(id);
}

}  // namespace zul
