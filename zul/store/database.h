/// \file
/// The engine of the store's files, SQLite, as owning objects. Inside of the store.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "zul/kernel/string.h"

namespace zul {

/// A connection to one file. Hostile files are expected: what SQLite can be told to distrust it is told.
class CDatabase {
public:
    /// \param path UTF-8. \param flags of `sqlite3_open_v2`. \returns false when it cannot be opened; most
    /// faults of a file show at the first statement only.
    bool Open(const std::string& path, int flags);
    void Close() { m_Handle.reset(); }
    sqlite3* Get() const { return m_Handle.get(); }

    /// Runs statements that answer nothing.
    bool Run(const char* sql);
    /// The first column of the first row as a number; nothing without a row and on errors.
    std::optional<std::int64_t> Ask(const char* sql);
    bool HasTransaction() const { return sqlite3_get_autocommit(Get()) == 0; }
    bool IsReadOnly() const { return sqlite3_db_readonly(Get(), "main") == 1; }

    /// Reports what SQLite says last, as "<what>: <message> <zul::CStore::member()>". \returns false.
    bool Fail(const char16_t* what, const char16_t* member) const;

private:
    struct TCloser {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };
    std::unique_ptr<sqlite3, TCloser> m_Handle;
};

/// A prepared statement, compiled on first use and kept. To be used through CQuery.
class CStatement {
public:
    explicit CStatement(const char* sql) : m_Sql(sql) {}
    /// Compiles it now, so that the run will need no memory for that.
    bool Prepare(const CDatabase& database);
    /// Before the database closes.
    void Drop() { m_Handle.reset(); }

private:
    friend class CQuery;
    struct TCloser {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };
    const char* m_Sql;
    std::unique_ptr<sqlite3_stmt, TCloser> m_Handle;
};

/// One run of a statement: bind from 1 on, step, read columns from 0 on. Frees the statement for the next run
/// when it goes; runs of one statement do not nest.
class CQuery {
public:
    CQuery(const CDatabase& database, CStatement& statement);
    ~CQuery();
    CQuery(const CQuery&) = delete;
    CQuery& operator=(const CQuery&) = delete;

    CQuery& Bind(int place, std::int64_t value);
    CQuery& Bind(int place, double value);
    /// Texts and bytes must stay until the run ends.
    CQuery& BindText(int place, const char* text);
    CQuery& BindBytes(int place, const void* data, std::size_t size);

    /// True when there is a row. False at the end and on errors; IsDone tells which. Throws std::bad_alloc,
    /// which is neither.
    bool Next();
    bool IsDone() const { return m_Result == SQLITE_DONE; }
    /// Runs a statement that answers nothing.
    bool Run() { return !Next() && IsDone(); }

    std::int64_t GetInteger(int column) const { return sqlite3_column_int64(m_Handle, column); }
    double GetDouble(int column) const { return sqlite3_column_double(m_Handle, column); }
    bool IsNull(int column) const { return sqlite3_column_type(m_Handle, column) == SQLITE_NULL; }
    bool IsInteger(int column) const { return sqlite3_column_type(m_Handle, column) == SQLITE_INTEGER; }
    /// Empty for what has no text. Until the next step.
    std::string_view GetBytes(int column) const;

private:
    void Note(int result) {
        if (m_Result == SQLITE_OK) m_Result = result;
    }

    sqlite3_stmt* m_Handle = nullptr;
    int m_Result = SQLITE_OK;
};

}  // namespace zul
