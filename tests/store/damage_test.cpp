#include <fstream>
#include <random>

#include "tests/store/drawn_canvas.h"
#include "tests/store/store_testing.h"

namespace zul {
namespace {

/// A file with all kinds of contents, and damaged copies of it.
class DamageTest : public StoreTest {
protected:
    DamageTest() {
        CBitmap pattern;
        CScaler scaler;
        CGradient gradient;
        CPalette palette;
        CCanvas canvas;
        SetUpCanvas(canvas, pattern, scaler, gradient, palette);
        m_Store.SetRoot(u"canvas", &canvas);
        CNamedTransaction transaction;
        for (std::int32_t i = 0; i < 400; ++i) {
            CNode node(i);
            for (int link = 0; link < 4; ++link)
                node.Link(m_Store.Load(CObjectID(i)).Peek());
            m_Store.Place(m_Store.Store(&node), {double(i), 0, double(i + 3), 5});
        }
        transaction.Commit();
        m_Store.Close();
        std::ifstream file(GetNarrowPath(), std::ios::binary);
        m_Bytes.assign(std::istreambuf_iterator<char>(file), {});
    }
    void Write(const std::string& bytes) {
        for (const char* part : {"-wal", "-shm"})
            std::filesystem::remove(GetNarrowPath() + part);
        std::ofstream(GetNarrowPath(), std::ios::binary | std::ios::trunc) << bytes;
    }
    /// Asks everything of the file as it is and changes it. \returns false when it was refused.
    bool UseAll() {
        if (!m_Store.Open(GetPath().c_str(), CStore::ReadWrite)) return false;
        const CRef<CCanvas> canvas = m_Store.GetRoot<CCanvas>(u"canvas");
        if (canvas.IsExist()) HashOfPicture(*canvas.Get(), nullptr);
        for (const CObjectID id : m_Store.FindByClass(u"CNode")) {
            const CRef<CNode> node = m_Store.Load<CNode>(id);
            for (std::size_t i = 0; node.IsExist() && i < 5; ++i)
                node->GetLink(i);
        }
        const std::vector<CObjectID> found = m_Store.FindInBox({0, 0, 200, 10});
        m_Store.GetRootNames();
        CNamedTransaction transaction;
        CNode added(1);
        const CObjectID id = m_Store.Store(&added);
        m_Store.Place(id, {1, 1, 2, 2});
        if (!found.empty()) m_Store.Remove(found.front());
        transaction.Commit();
        m_IsSound = m_Store.Check().IsEmpty();
        return true;
    }

    std::string m_Bytes;
    bool m_IsSound = false;  // in the end, as the store sees it
};

TEST_F(DamageTest, ChangedBytesOnAnyPageEndInReports) {
    std::mt19937 random(2);
    const std::size_t page = 4096;
    std::size_t reported = 0, tries = 0;
    for (std::size_t start = 0; start < m_Bytes.size(); start += page) {
        for (int round = 0; round < 12; ++round, ++tries) {
            std::string bytes = m_Bytes;
            // The head of a page says what it is; the middle holds contents.
            for (int flips = 1 + static_cast<int>(random() % 3); flips > 0; --flips)
                bytes[start + random() % (round < 8 ? 64 : page)] = static_cast<char>(random());
            Write(bytes);
            UseAll();
            reported += m_Reports.Take().empty() && m_IsSound ? 0 : 1;
            m_Store.Close();
        }
    }
    EXPECT_GT(reported, tries / 4) << "the damage is not where it hurts";
}

TEST_F(DamageTest, ShortFilesAreRefusedOrReported) {
    std::mt19937 random(4);
    for (std::size_t size = 0; size < m_Bytes.size(); size += 1 + random() % 3000) {
        Write(m_Bytes.substr(0, size));
        const bool isOpen = UseAll();
        EXPECT_NE(m_Reports.Take(), "") << size;
        EXPECT_FALSE(isOpen && size < 4096) << size;
        m_Store.Close();
    }
    Write(m_Bytes);
    EXPECT_TRUE(UseAll());
    EXPECT_EQ(m_Store.Check(), CString());
}

TEST_F(DamageTest, StrangersAndNewerFormatsAreRefusedUntouched) {
    std::string newer = m_Bytes, foreign = m_Bytes;
    newer[63] = 2;     // the format
    foreign[68] ^= 1;  // whose file it is
    const struct {
        std::string Bytes;
        const char* Reason;
    } cases[] = {
        {newer, "format 2"},
        {foreign, "no store"},
        {"", "no store"},
        {std::string(5000, 'x'), "no store"},
        {m_Bytes.substr(0, 99), "no store"},
    };
    for (const auto& each : cases) {
        for (const CStore::TMode mode : {CStore::ReadOnly, CStore::ReadWrite, CStore::Create}) {
            Write(each.Bytes);
            EXPECT_FALSE(m_Store.Open(GetPath().c_str(), mode));
            EXPECT_NE(m_Reports.Take().find(each.Reason), std::string::npos) << each.Reason;
            std::ifstream file(GetNarrowPath(), std::ios::binary);
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), each.Bytes) << each.Reason;
            EXPECT_FALSE(std::filesystem::exists(GetNarrowPath() + "-wal"));
        }
    }
    const char16_t half[] = {u'/', 0xD800, 0};
    const std::u16string folder = m_Folder.Get().u16string();
    const std::u16string nowhere = folder + u"/no/such.zul";
    for (const char16_t* path :
         {static_cast<const char16_t*>(nullptr), u"", half, folder.c_str(), nowhere.c_str()}) {
        for (const CStore::TMode mode : {CStore::ReadOnly, CStore::ReadWrite, CStore::Create}) {
            EXPECT_FALSE(m_Store.Open(path, mode));
            EXPECT_NE(m_Reports.Take(), "");
        }
    }
    EXPECT_FALSE(m_Store.IsOpen());
    EXPECT_TRUE(m_Store.Store(nullptr).IsNull());
    EXPECT_NE(m_Reports.Take().find("No store is open"), std::string::npos);
}

}  // namespace
}  // namespace zul
