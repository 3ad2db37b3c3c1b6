#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "zul/geometry/points.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"

namespace zulbench {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kFeatures = 100'000;
constexpr std::int32_t kPlaced = 20'000;
constexpr std::int32_t kPointsInFeature = 20;
constexpr int kWindows = 1000;
constexpr double kWindowSide = 1.0;  // degrees of 360 by 180

/// What a map's feature is to an application: points and a name.
class Feature : public zul::CAnyObject {
public:
    bool ObjectToBuffer(zul::CStream* stream) override {
        return name.ObjectToBuffer(stream) && points.ObjectToBuffer(stream);
    }
    bool ObjectFromBuffer(zul::CStream* stream) override {
        return name.ObjectFromBuffer(stream) && points.ObjectFromBuffer(stream);
    }
    zul::CString name;
    zul::CPoints points{true};
};

/// A database of the peer's: the same tables and settings as a store's, and nothing around them.
class PlainDatabase {
public:
    explicit PlainDatabase(const fs::path& path) {
        Check(sqlite3_open(path.string().c_str(), &m_Handle));
        Run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-32768;"
            "CREATE TABLE IF NOT EXISTS objects(id INTEGER PRIMARY KEY, class INTEGER NOT NULL, bytes BLOB "
            "NOT "
            "NULL);"
            "CREATE VIRTUAL TABLE IF NOT EXISTS boxes USING rtree(id, min_x, max_x, min_y, max_y, min_layer, "
            "max_layer)");
    }
    ~PlainDatabase() { sqlite3_close(m_Handle); }
    PlainDatabase(const PlainDatabase&) = delete;
    PlainDatabase& operator=(const PlainDatabase&) = delete;

    static void Check(int result) {
        if (result != SQLITE_OK && result != SQLITE_DONE && result != SQLITE_ROW)
            throw std::runtime_error(sqlite3_errstr(result));
    }
    void Run(const char* sql) { Check(sqlite3_exec(m_Handle, sql, nullptr, nullptr, nullptr)); }

    class Statement {
    public:
        Statement(PlainDatabase& database, const char* sql) {
            Check(sqlite3_prepare_v2(database.m_Handle, sql, -1, &m_Handle, nullptr));
        }
        ~Statement() { sqlite3_finalize(m_Handle); }
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;
        sqlite3_stmt* Get() const { return m_Handle; }
        bool Next() const {
            const int result = sqlite3_step(m_Handle);
            Check(result);
            return result == SQLITE_ROW;
        }

    private:
        sqlite3_stmt* m_Handle = nullptr;
    };

private:
    sqlite3* m_Handle = nullptr;
};

class StoreBench {
public:
    StoreBench()
        : m_Folder(fs::temp_directory_path() / ("zulbench-" + std::to_string(std::random_device()()))) {
        zul::CClass::Register(new zul::CFactory<Feature>, u"<class   name='BenchFeature'>");
        fs::create_directories(m_Folder);
        std::mt19937 random(5);
        std::uniform_real_distribution<double> x(-180.0, 179.9), y(-90.0, 89.9), size(0.001, 0.1);
        for (std::int32_t i = 0; i < kFeatures; ++i) {
            const double left = x(random), low = y(random);
            m_Boxes.push_back({left, low, left + size(random), low + size(random)});
        }
        for (int i = 0; i < kWindows; ++i) {
            const double left = x(random), low = y(random);
            m_Windows.push_back({left, low, left + kWindowSide, low + kWindowSide});
        }
        m_Feature.name = u"Neuchatel";
        for (int i = 0; i < kPointsInFeature; ++i)
            m_Feature.points.Append(static_cast<zul::TCoord>(random()), static_cast<zul::TCoord>(random()));
        zul::CMemoryStream stream;
        m_Feature.ObjectToBuffer(&stream);
        m_Bytes.assign(stream.GetBuffer(), stream.GetBuffer() + stream.GetSize());
    }
    ~StoreBench() {
        m_Full.Close();
        m_PlainFull.reset();
        std::error_code ignored;
        fs::remove_all(m_Folder, ignored);
    }
    StoreBench(const StoreBench&) = delete;
    StoreBench& operator=(const StoreBench&) = delete;

    // --- storing: new objects, one transaction ---

    void Store() {
        zul::CStore store;
        OpenNew(store, "ours.zul");
        zul::CNamedTransaction transaction(u"features");
        for (std::int32_t i = 0; i < kFeatures; ++i) {
            Feature feature;
            feature.name = m_Feature.name;
            feature.points = m_Feature.points;
            if (store.Store(&feature).IsNull()) throw std::runtime_error("not stored");
        }
        transaction.Commit();
        m_Stored[0] = store.GetCount();
    }
    void StorePlain() {
        Forget("plain.db");
        PlainDatabase database(m_Folder / "plain.db");
        database.Run("BEGIN IMMEDIATE");
        {
            const PlainDatabase::Statement insert(database, "INSERT INTO objects VALUES(?, 1, ?)");
            for (std::int32_t i = 1; i <= kFeatures; ++i) {
                sqlite3_bind_int64(insert.Get(), 1, i);
                sqlite3_bind_blob(insert.Get(), 2, m_Bytes.data(), static_cast<int>(m_Bytes.size()),
                                  SQLITE_STATIC);
                insert.Next();
                sqlite3_reset(insert.Get());
            }
        }
        database.Run("COMMIT");
        const PlainDatabase::Statement count(database, "SELECT count(*) FROM objects");
        count.Next();
        m_Stored[1] = static_cast<std::uint64_t>(sqlite3_column_int64(count.Get(), 0));
    }
    double StoredDifference() const {
        return m_Stored[0] == kFeatures && m_Stored[1] == kFeatures ? 0.0 : 1.0;
    }

    // --- placing ---

    void Place() {
        zul::CStore store;
        OpenNew(store, "ours.zul");
        zul::CNamedTransaction transaction(u"features");
        Feature feature;
        for (std::int32_t i = 0; i < kPlaced; ++i) {
            Feature each;
            store.Place(store.Store(&each), m_Boxes[static_cast<std::size_t>(i)], 1);
        }
        transaction.Commit();
    }
    void PlacePlain() {
        Forget("plain.db");
        PlainDatabase database(m_Folder / "plain.db");
        database.Run("BEGIN IMMEDIATE");
        {
            Feature empty;
            zul::CMemoryStream bytes;
            empty.ObjectToBuffer(&bytes);
            const PlainDatabase::Statement insert(database, "INSERT INTO objects VALUES(?, 1, ?)");
            const PlainDatabase::Statement place(database, "INSERT INTO boxes VALUES(?, ?, ?, ?, ?, 1, 1.5)");
            for (std::int32_t i = 1; i <= kPlaced; ++i) {
                sqlite3_bind_int64(insert.Get(), 1, i);
                sqlite3_bind_blob(insert.Get(), 2, bytes.GetBuffer(), static_cast<int>(bytes.GetSize()),
                                  SQLITE_STATIC);
                insert.Next();
                sqlite3_reset(insert.Get());
                PlacePlain(place, i);
            }
        }
        database.Run("COMMIT");
    }

    // --- reading a file of a million, each placed ---

    void Fill() {
        if (m_Full.IsOpen()) return;
        OpenNew(m_Full, "full.zul");
        zul::CNamedTransaction transaction(u"features");
        for (const zul::TWorldBox& box : m_Boxes) {
            Feature feature;
            feature.name = m_Feature.name;
            feature.points = m_Feature.points;
            m_Full.Place(m_Full.Store(&feature), box, 1);
        }
        transaction.Commit();
        m_PlainFull = std::make_unique<PlainDatabase>(m_Folder / "full.zul");
    }
    void Load() {
        Fill();
        const zul::CStoreReading reading(m_Full);
        m_Sum[0] = 0;
        for (std::int64_t id = 1; id <= kFeatures; ++id)
            m_Sum[0] += m_Full.Load<Feature>(zul::CObjectID(id))->points.GetCount();
    }
    void LoadPlain() {
        Fill();
        m_PlainFull->Run("BEGIN");
        m_Sum[1] = 0;
        const PlainDatabase::Statement select(*m_PlainFull, "SELECT class, bytes FROM objects WHERE id=?");
        for (std::int64_t id = 1; id <= kFeatures; ++id)
            m_Sum[1] += ReadPlain(select, id);
        m_PlainFull->Run("COMMIT");
    }
    void Query() {
        Fill();
        const zul::CStoreReading reading(m_Full);
        m_Sum[0] = 0;
        for (const zul::TWorldBox& window : m_Windows) {
            for (const zul::CObjectID id : m_Full.FindInBox(window))
                m_Sum[0] += m_Full.Load<Feature>(id)->points.GetCount();
        }
    }
    void QueryPlain() {
        Fill();
        m_PlainFull->Run("BEGIN");
        m_Sum[1] = 0;
        const PlainDatabase::Statement query(
            *m_PlainFull,
            "SELECT id FROM boxes WHERE max_x>=? AND min_x<=? AND max_y>=? AND "
            "min_y<=? AND max_layer>=0 AND min_layer<=9");
        const PlainDatabase::Statement select(*m_PlainFull, "SELECT class, bytes FROM objects WHERE id=?");
        std::vector<std::int64_t> found;
        for (const zul::TWorldBox& window : m_Windows) {
            const double ends[] = {window.MinX, window.MaxX, window.MinY, window.MaxY};
            for (int i = 0; i < 4; ++i)
                sqlite3_bind_double(query.Get(), i + 1, ends[i]);
            found.clear();
            while (query.Next())
                found.push_back(sqlite3_column_int64(query.Get(), 0));
            sqlite3_reset(query.Get());
            for (const std::int64_t id : found)
                m_Sum[1] += ReadPlain(select, id);
        }
        m_PlainFull->Run("COMMIT");
    }
    double SumDifference() const { return m_Sum[0] == m_Sum[1] && m_Sum[0] > 0 ? 0.0 : 1.0; }

private:
    void Forget(const char* name) {
        for (const char* part : {"", "-wal", "-shm"})
            fs::remove((m_Folder / name).string() + part);
    }
    void OpenNew(zul::CStore& store, const char* name) {
        Forget(name);
        if (!store.Open((m_Folder / name).u16string().c_str(), zul::CStore::Create))
            throw std::runtime_error("no store");
    }
    void PlacePlain(const PlainDatabase::Statement& place, std::int64_t id) const {
        const zul::TWorldBox& box = m_Boxes[static_cast<std::size_t>(id - 1)];
        const double ends[] = {box.MinX, box.MaxX, box.MinY, box.MaxY};
        sqlite3_bind_int64(place.Get(), 1, id);
        for (int i = 0; i < 4; ++i)
            sqlite3_bind_double(place.Get(), i + 2, ends[i]);
        place.Next();
        sqlite3_reset(place.Get());
    }
    /// Copies the bytes out, as everyone must who wants to keep them. \returns the points in them.
    std::uint64_t ReadPlain(const PlainDatabase::Statement& select, std::int64_t id) {
        sqlite3_bind_int64(select.Get(), 1, id);
        if (!select.Next()) return 0;
        const auto* const bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(select.Get(), 1));
        m_Read.assign(bytes, bytes + sqlite3_column_bytes(select.Get(), 1));
        sqlite3_reset(select.Get());
        return m_Read.size() == m_Bytes.size() ? kPointsInFeature : 0;
    }

    fs::path m_Folder;
    std::vector<zul::TWorldBox> m_Boxes, m_Windows;
    Feature m_Feature;
    std::vector<std::uint8_t> m_Bytes, m_Read;
    zul::CStore m_Full;
    std::unique_ptr<PlainDatabase> m_PlainFull;
    std::uint64_t m_Stored[2] = {}, m_Sum[2] = {};
};

}  // namespace

std::vector<Contest> StoreContests() {
    const auto bench = std::make_shared<StoreBench>();
    const auto stored = [bench] { return bench->StoredDifference(); };
    const auto sum = [bench] { return bench->SumDifference(); };
    const auto peer = "SQLite";
    return {
        {"store objects of 20 points (100,000, one transaction)",
         "object",
         kFeatures,
         1.5,
         {{Side::Classes, "", [bench] { bench->Store(); }, stored},
          {Side::Peer, peer, [bench] { bench->StorePlain(); }, stored}}},
        {"store and place objects (20,000, one transaction)",
         "object",
         kPlaced,
         1.2,
         {{Side::Classes, "", [bench] { bench->Place(); }},
          {Side::Peer, peer, [bench] { bench->PlacePlain(); }}}},
        {"load objects of 20 points (100,000 by id)",
         "object",
         kFeatures,
         1.5,
         {{Side::Classes, "", [bench] { bench->Load(); }, sum},
          {Side::Peer, peer, [bench] { bench->LoadPlain(); }, sum}}},
        {"find and load what lies in a window (1,000 windows)",
         "window",
         kWindows,
         1.5,
         {{Side::Classes, "", [bench] { bench->Query(); }, sum},
          {Side::Peer, peer, [bench] { bench->QueryPlain(); }, sum}}},
    };
}

}  // namespace zulbench
