#include "zul/store/store_format.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <random>
#include <string_view>

#include "zul/kernel/any_object.h"
#include "zul/kernel/system/file.h"
#include "zul/store/store.h"

namespace fs = std::filesystem;

namespace zul {
namespace {

constexpr std::uint32_t ApplicationId = 0x5A554C31;

struct TTable {
    const char* Name;
    const char* Sql;
};

// As SQLite keeps their texts; tables that the index makes for itself have texts of SQLite's own.
constexpr TTable Tables[] = {
    {"classes", "CREATE TABLE classes(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE)"},
    {"sqlite_autoindex_classes_1", nullptr},
    {"objects", "CREATE TABLE objects(id INTEGER PRIMARY KEY, class INTEGER NOT NULL, bytes BLOB NOT NULL)"},
    {"roots", "CREATE TABLE roots(name TEXT PRIMARY KEY, object INTEGER NOT NULL) WITHOUT ROWID"},
    {"counters", "CREATE TABLE counters(name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID"},
    {"boxes", "CREATE VIRTUAL TABLE boxes USING rtree(id, min_x, max_x, min_y, max_y, min_layer, max_layer)"},
    {"boxes_node", nullptr},
    {"boxes_parent", nullptr},
    {"boxes_rowid", nullptr},
};

fs::path ToPath(const std::string& utf8) {
    return fs::u8path(utf8);
}

std::uint32_t ReadBigEndian(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
           bytes[3];
}

/// A file that goes away with its owner.
class CTemporaryFile {
public:
    explicit CTemporaryFile(const std::string& beside)
        : m_Path(beside + ".new-" + std::to_string(std::random_device()())),
          m_Parts{ToPath(m_Path), ToPath(m_Path + "-journal"), ToPath(m_Path + "-wal"),
                  ToPath(m_Path + "-shm")} {}
    ~CTemporaryFile() {
        std::error_code ignored;
        for (const fs::path& part : m_Parts)
            fs::remove(part, ignored);
    }
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    const std::string& GetPath() const { return m_Path; }

private:
    std::string m_Path;
    std::array<fs::path, 4> m_Parts;  // named before, since their going must need no memory
};

}  // namespace

std::optional<std::string> ToStorePath(const char16_t* path) {
    if (path == nullptr || *path == 0) return std::nullopt;
    try {
        std::string utf8 = fs::path(path).u8string();
        std::replace(utf8.begin(), utf8.end(), '\\', '/');
        return utf8;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

bool DoesFileExist(const std::string& path) {
    std::error_code ignored;
    return fs::exists(ToPath(path), ignored);
}

bool HasUnfinishedChanges(const std::string& path) {
    std::error_code missing;
    const auto size = fs::file_size(ToPath(path + "-wal"), missing);
    return !missing && size > 0;
}

bool LayTables(CDatabase& database) {
    if (!database.Run("BEGIN")) return false;
    for (const TTable& table : Tables) {
        if (table.Sql != nullptr && !database.Run(table.Sql)) return false;
    }
    const std::string marks = "PRAGMA application_id=" + std::to_string(ApplicationId) +
                              "; PRAGMA user_version=" + std::to_string(CStore::FormatVersion);
    return database.Run("INSERT INTO counters VALUES('next', 1)") && database.Run(marks.c_str()) &&
           database.Run("COMMIT");
}

bool MakeStoreFile(const std::string& path) {
    // Made beside and moved in place: whoever looks sees a whole store or none.
    const CTemporaryFile made(path);
    {
        CDatabase database;
        // Nobody else knows the file, so nothing need be undone in it.
        if (!database.Open(made.GetPath(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) ||
            !database.Run("PRAGMA journal_mode=OFF") || !LayTables(database) ||
            !database.Run("PRAGMA journal_mode=WAL")) {
            return database.Fail(u"Can't make store", u"Open");
        }
    }
    std::error_code error;
    fs::create_hard_link(ToPath(made.GetPath()), ToPath(path), error);
    if (!error || error == std::errc::file_exists) return true;
    fs::rename(ToPath(made.GetPath()), ToPath(path), error);
    if (!error) return true;
    CAnyObject::RunError(
        ErrorFailed, CString::Format(u"Can't make store: %S <zul::CStore::Open()>", error.message().c_str()));
    return false;
}

CString FindObjection(const std::string& path) {
    constexpr std::size_t HeaderSize = 100;
    std::array<std::uint8_t, HeaderSize> header{};
    zulsys::CFile file;
    if (!file.Connect(ToPath(path).u16string().c_str())) {
        return DoesFileExist(path) ? u"it cannot be read" : u"there is no such file";
    }
    constexpr std::string_view Magic("SQLite format 3\0", 16);
    if (!file.Read(header.data(), HeaderSize) ||
        std::memcmp(header.data(), Magic.data(), Magic.size()) != 0 ||
        ReadBigEndian(&header[68]) != ApplicationId) {
        return u"it is no store";
    }
    const std::uint32_t version = ReadBigEndian(&header[60]);
    if (version > static_cast<std::uint32_t>(CStore::FormatVersion)) {
        return CString::Format(u"it has format %u, and formats up to %d are known", version,
                               CStore::FormatVersion);
    }
    if (version == 0) return u"it is no store";
    std::error_code error;
    const std::uint64_t pageSize = ReadBigEndian(&header[16]) >> 16;  // in the upper half
    const std::uint64_t whole = pageSize * ReadBigEndian(&header[28]);
    const bool isShort = fs::file_size(ToPath(path), error) < whole && !HasUnfinishedChanges(path);
    return isShort ? u"it is cut short" : u"";
}

bool HasStoreTables(CDatabase& database) {
    CStatement statement("SELECT name, sql FROM sqlite_schema");
    CQuery query(database, statement);
    std::size_t found = 0;
    while (query.Next()) {
        const std::string name(query.GetBytes(0));
        const auto* const table = std::find_if(std::begin(Tables), std::end(Tables),
                                               [&](const TTable& each) { return name == each.Name; });
        if (table == std::end(Tables)) return false;
        if (table->Sql != nullptr && query.GetBytes(1) != table->Sql) return false;
        ++found;
    }
    return query.IsDone() && found == std::size(Tables);
}

}  // namespace zul
