#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <random>

#include "tests/store/drawn_canvas.h"
#include "tests/store/store_testing.h"

namespace zul {
namespace {

/// The worker program at one of its tasks; killed when it is still at it in the end.
class CWorker {
public:
    explicit CWorker(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), ZUL_STORE_WORKER);
        std::vector<char*> list;
        for (std::string& argument : arguments)
            list.push_back(argument.data());
        list.push_back(nullptr);
        EXPECT_EQ(posix_spawn(&m_Process, ZUL_STORE_WORKER, nullptr, nullptr, list.data(), environ), 0);
    }
    ~CWorker() {
        if (m_Process > 0) Kill();
    }
    void Kill() {
        ::kill(m_Process, SIGKILL);
        Wait();
    }
    /// \returns the exit code, or -1 for another end.
    int Wait() {
        int status = 0;
        ::waitpid(m_Process, &status, 0);
        m_Process = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_Process = 0;
};

using ProcessTest = StoreTest;

TEST_F(ProcessTest, ACanvasDrawsTheSamePictureInAnotherProcess) {
    std::uint64_t expected = 0, other = 0;
    {
        CBitmap pattern;
        CScaler scaler;
        CGradient gradient;
        CPalette palette;
        CCanvas canvas;
        SetUpCanvas(canvas, pattern, scaler, gradient, palette);
        ASSERT_TRUE(m_Store.SetRoot(u"canvas", &canvas));
        ASSERT_TRUE(m_Store.SetRoot(u"palette", &palette));
        expected = HashOfPicture(canvas, &palette);
        canvas.GetBrush().SetPattern(nullptr);
        other = HashOfPicture(canvas, &palette);
    }
    m_Store.Close();
    EXPECT_NE(expected, other) << "else the hash says nothing of the pattern";
    const std::string command = std::string(ZUL_STORE_WORKER) + " draw " + GetNarrowPath();
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    unsigned long long drawn = 0;
    ASSERT_EQ(std::fscanf(pipe, "%llx", &drawn), 1);
    EXPECT_EQ(::pclose(pipe), 0);
    EXPECT_EQ(drawn, expected);
}

TEST_F(ProcessTest, AKilledWriterLeavesWholeTransactions) {
    m_Store.Close();
    std::mt19937 random(11);
    std::size_t batches = 0;
    for (int round = 0; round < 40; ++round) {
        if (round % 8 == 0) {
            batches = 0;
            for (const char* part : {"", "-wal", "-shm"})
                std::filesystem::remove(GetNarrowPath() + part);
        }
        {
            CWorker worker({"fill", GetNarrowPath()});
            ::usleep(static_cast<useconds_t>(random() % 250'000));
            worker.Kill();
        }
        if (batches == 0 && !std::filesystem::exists(GetNarrowPath())) continue;
        Reopen();
        ASSERT_EQ(m_Store.Check(), CString()) << round;
        const std::vector<CString> names = m_Store.GetRootNames();
        ASSERT_GE(names.size(), batches) << "what was committed is gone";
        batches = names.size();
        ASSERT_EQ(m_Store.GetCount(), batches * (BatchSize + 1));
        for (const CString& name : names) {
            const CRef<CNode> head = m_Store.GetRoot<CNode>(name);
            ASSERT_TRUE(head.IsExist());
            for (std::int32_t i = 0; i < BatchSize; ++i)
                ASSERT_EQ(head->GetLink(static_cast<std::size_t>(i))->GetValue(), i);
        }
        m_Store.Close();
    }
    EXPECT_GT(batches, 0u) << "no kill came late enough";
}

TEST_F(ProcessTest, ReadersSeeWholeStatesWhileOthersWrite) {
    CNode first(0), second(0);
    m_Store.SetRoot(u"first", &first);
    m_Store.SetRoot(u"second", &second);
    CWorker readers[] = {CWorker({"watch", GetNarrowPath(), "8"}), CWorker({"watch", GetNarrowPath(), "8"})};
    for (std::int32_t value = 1; value < 400; ++value) {
        CNamedTransaction transaction;
        first.SetValue(value);
        second.SetValue(-value);
        ASSERT_TRUE(transaction.Commit());
        ::usleep(2000);
    }
    for (CWorker& reader : readers)
        EXPECT_EQ(reader.Wait(), 0);

    // A second connection reads the old state until it refreshes, and cannot write while one is held.
    CStore other;
    ASSERT_TRUE(other.Open(GetPath().c_str(), CStore::ReadWrite));
    other.SetBusyTimeout(1);
    const CRef<CNode> seen = other.GetRoot<CNode>(u"first");
    EXPECT_FALSE(other.Refresh());
    {
        const CStoreReading reading(other);
        CNamedTransaction transaction;
        first.SetValue(1000);
        ASSERT_TRUE(transaction.Commit());
        EXPECT_FALSE(other.Refresh());
        EXPECT_TRUE(other.Store(seen.Get()).IsNull());
        EXPECT_NE(m_Reports.Take(), "");
    }
    EXPECT_EQ(seen->GetValue(), 399);
    EXPECT_TRUE(other.Refresh());
    EXPECT_EQ(seen->GetValue(), 1000);
    // What came damaged does not take the object along.
    first.WritesHalf = true;
    m_Store.Store(&first);
    EXPECT_TRUE(other.Refresh());
    EXPECT_NE(m_Reports.Take().find("damaged"), std::string::npos);
    EXPECT_EQ(seen->GetValue(), 1000);
    CNamedTransaction holding;
    m_Store.Store(&first);
    {
        // Another thread's, as it were: this store is not part of the transaction above.
        CNamedTransaction waiting;
        EXPECT_TRUE(other.Store(seen.Get()).IsNull());
        EXPECT_NE(m_Reports.Take().find("locked"), std::string::npos);
        waiting.Rollback();
    }
    EXPECT_TRUE(holding.Commit());
}

TEST_F(ProcessTest, AWriteProtectedPlaceWillDoForReading) {
    CNode node(5);
    m_Store.SetRoot(u"node", &node);
    m_Store.Close();
    const auto protect = [&](bool on) {
        ::chmod(GetNarrowPath().c_str(), on ? 0444 : 0644);
        ::chmod(m_Folder.Get().c_str(), on ? 0555 : 0755);
    };
    // Nothing is protected from the superuser: another user looks.
    const bool isRoot = ::geteuid() == 0;
    protect(true);
    ASSERT_TRUE(!isRoot || ::seteuid(65534) == 0);
    CStore reader;
    const bool isOpen = reader.Open(GetPath().c_str(), CStore::ReadOnly);
    const CRef<CNode> read = isOpen ? reader.GetRoot<CNode>(u"node") : CRef<CNode>();
    const bool isWritable = CStore().Open(GetPath().c_str(), CStore::ReadWrite);
    const CObjectID written = isOpen ? reader.Store(&node) : CObjectID();
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    protect(false);
    ASSERT_TRUE(isOpen);
    ASSERT_TRUE(read.IsExist());
    EXPECT_EQ(read->GetValue(), 5);
    EXPECT_FALSE(isWritable);
    EXPECT_TRUE(written.IsNull());
    const std::string reports = m_Reports.Take();
    EXPECT_NE(reports.find("write-protected"), std::string::npos) << reports;
    EXPECT_NE(reports.find("reading only"), std::string::npos) << reports;
}

}  // namespace
}  // namespace zul
