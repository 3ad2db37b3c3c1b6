#include "zul/store/database.h"

#include "zul/kernel/any_object.h"
#include "zul/kernel/buffer.h"

namespace zul {

// --- CDatabase ---

bool CDatabase::Open(const std::string& path, int flags) {
    sqlite3* handle = nullptr;
    // A store belongs to one thread at a time: the engine need not lock each call.
    const int result = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    m_Handle.reset(handle);  // there is one even after most failures, to ask what was wrong
    if (result != SQLITE_OK) return false;
    // The file may have been made by anyone: it brings no code of its own, and nothing in it is believed.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
    return Run("PRAGMA cell_size_check=ON; PRAGMA mmap_size=0; PRAGMA temp_store=MEMORY");
}

bool CDatabase::Run(const char* sql) {
    return sqlite3_exec(Get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::optional<std::int64_t> CDatabase::Ask(const char* sql) {
    CStatement statement(sql);
    CQuery query(*this, statement);
    if (!query.Next()) return std::nullopt;
    return query.GetInteger(0);
}

bool CDatabase::Fail(const char16_t* what, const char16_t* member) const {
    const char* const message = Get() != nullptr ? sqlite3_errmsg(Get()) : "no memory";
    CAnyObject::RunError(ErrorFailed, CString::Format(u"%s: %S <zul::CStore::%s()>", what, message, member));
    return false;
}

// --- CQuery ---

bool CStatement::Prepare(const CDatabase& database) {
    if (m_Handle != nullptr) return true;
    sqlite3_stmt* handle = nullptr;
    const int result =
        sqlite3_prepare_v3(database.Get(), m_Sql, -1, SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    m_Handle.reset(handle);
    return result == SQLITE_OK;
}

CQuery::CQuery(const CDatabase& database, CStatement& statement) {
    if (!statement.Prepare(database)) m_Result = sqlite3_errcode(database.Get());
    m_Handle = statement.m_Handle.get();
}

CQuery::~CQuery() {
    sqlite3_reset(m_Handle);
}

CQuery& CQuery::Bind(int place, std::int64_t value) {
    Note(sqlite3_bind_int64(m_Handle, place, value));
    return *this;
}
CQuery& CQuery::Bind(int place, double value) {
    Note(sqlite3_bind_double(m_Handle, place, value));
    return *this;
}
CQuery& CQuery::BindText(int place, const char* text) {
    Note(sqlite3_bind_text(m_Handle, place, text, -1, SQLITE_STATIC));
    return *this;
}
CQuery& CQuery::BindBytes(int place, const void* data, std::size_t size) {
    // Null would be stored as no value at all.
    Note(sqlite3_bind_blob64(m_Handle, place, size != 0 ? data : "", size, SQLITE_STATIC));
    return *this;
}

bool CQuery::Next() {
    if (m_Result == SQLITE_OK || m_Result == SQLITE_ROW) m_Result = sqlite3_step(m_Handle);
    NeedMemory((m_Result & 0xFF) != SQLITE_NOMEM);
    return m_Result == SQLITE_ROW;
}

std::string_view CQuery::GetBytes(int column) const {
    const void* const data = sqlite3_column_blob(m_Handle, column);
    const int size = sqlite3_column_bytes(m_Handle, column);
    // What is no text yet is made one, which may lack memory.
    NeedMemory(data != nullptr || sqlite3_errcode(sqlite3_db_handle(m_Handle)) != SQLITE_NOMEM);
    if (data == nullptr || size <= 0) return {};
    return {static_cast<const char*>(data), static_cast<std::size_t>(size)};
}

}  // namespace zul
