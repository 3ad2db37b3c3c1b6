#include "zul/kernel/modificator.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/client.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/transaction.h"

namespace zul {
namespace {

class CRecorder : public CModificationObserver {
public:
    CRecorder() { CClient::AddObserver(this); }
    ~CRecorder() override { CClient::RemoveObserver(this); }
    void OnModified(const TModification& modification) noexcept override { Seen.push_back(modification); }
    std::vector<TModification> Seen;
};

TEST(ModificatorTest, OnlyTheOutermostBracketOfAnObjectRecords) {
    CProbe probe, other;
    const std::uint64_t before = CClient::GetModificationCount();
    {
        CModificator outer(&probe);
        probe.SetValue(1);
        other.SetValue(1);
        CModificator inner(&probe);
        EXPECT_EQ(CClient::GetModificationCount(), before + 1);  // the other object's
    }
    EXPECT_EQ(CClient::GetModificationCount(), before + 2);
    EXPECT_EQ(probe.Modified, 1);
}

TEST(ModificatorTest, ACancelledBracketRecordsNothing) {
    CProbe probe;
    const std::uint64_t before = CClient::GetModificationCount();
    {
        CModificator modificator(&probe);
        modificator.Clear();
        CModificator next(&probe);  // stands by itself
        CModificator inner(&probe);
        inner.Clear();
    }
    EXPECT_EQ(CClient::GetModificationCount(), before + 1);
    EXPECT_EQ(probe.Unmodified, 1);
}

TEST(ModificatorTest, ABracketOnNothingIsAttributedOnce) {
    CProbe probe, late;
    {
        CModificator modificator(nullptr);
        modificator.Attribute(nullptr);
        modificator.Attribute(&probe);
        modificator.Attribute(&late);
        CModificator cancelled(nullptr);
        cancelled.Clear();
        cancelled.Attribute(&late);
    }
    EXPECT_EQ(probe.Modified, 1);
    EXPECT_EQ(late.Modified, 0);
}

TEST(ModificatorTest, ABracketMayOutliveItsObject) {
    auto probe = std::make_unique<CProbe>();
    const std::uint64_t before = CClient::GetModificationCount();
    {
        CModificator outer(probe.get());
        CModificator inner(probe.get());
        probe.reset();
        inner.Clear();
    }
    EXPECT_EQ(CClient::GetModificationCount(), before);
}

class CRefuser : public CProbe {
public:
    void DoModify() override { RunError(ErrorFailed, u"locked", this); }
};

TEST(ModificatorTest, AHookThatThrowsLeavesNoBracketOpen) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    CRefuser object;
    for (int i = 0; i < 2; ++i)
        EXPECT_THROW(object.SetValue(1), CRunError);
    EXPECT_EQ(object.GetValue(), 0);
}

TEST(ObserverTest, IsToldWhoChangedInOrder) {
    CFloat number(2.5);
    CProbe probe;
    CRecorder recorder;
    probe.SetValue(7);
    number.SetValue(3.5);
    ASSERT_EQ(recorder.Seen.size(), 2u);
    const TModification& last = recorder.Seen[1];
    EXPECT_EQ(last.Class, CString(u"CFloat"));
    EXPECT_EQ(last.Id, CRef<CFloat>(&number).GetObjectID());
    EXPECT_EQ(last.Sequence, recorder.Seen[0].Sequence + 1);
    EXPECT_TRUE(last.HasValues && last.OldValue == 2.5 && last.NewValue == 3.5);
}

TEST(ObserverTest, LeavingWhileToldCostsNoOtherItsReport) {
    class CLeaver : public CModificationObserver {
    public:
        void OnModified(const TModification&) noexcept override { CClient::RemoveObserver(this); }
    };
    CProbe probe;
    CLeaver leaver;
    CClient::AddObserver(&leaver);
    CRecorder recorder;
    probe.SetValue(1);
    probe.SetValue(2);
    EXPECT_EQ(recorder.Seen.size(), 2u);
}

TEST(TransactionTest, RollbackGivesBackTheFormerState) {
    CProbe first, untouched, excluded;
    excluded.SetAsNotSerializable(true);
    auto gone = std::make_unique<CProbe>();
    first.SetValue(1);
    CNamedTransaction transaction(u"edit");
    gone->SetValue(20);
    first.SetValue(10);
    first.SetValue(11);
    excluded.SetValue(5);
    for (CProbe* probe : {&first, &untouched})
        CModificator(probe).Clear();
    gone.reset();
    EXPECT_EQ(transaction.GetRecords().size(), 4u);
    EXPECT_TRUE(transaction.Rollback());
    EXPECT_EQ(first.GetValue(), 1);
    EXPECT_EQ(first.Unmodified, 2);
    EXPECT_EQ(untouched.Unmodified, 1) << "by the cancelled bracket alone";
    EXPECT_EQ(excluded.GetValue(), 5);
    EXPECT_FALSE(transaction.Rollback());
    EXPECT_FALSE(transaction.Commit());
}

TEST(TransactionTest, EndsInsideOutAndRollsBackWhenForgotten) {
    CProbe probe;
    auto outer = std::make_unique<CNamedTransaction>(u"outer");
    probe.SetValue(2);
    CEnclosedTransaction inner;
    probe.SetValue(4);
    EXPECT_FALSE(outer->Commit());
    EXPECT_EQ(CTransaction::GetCurrent(), &inner);
    outer.reset();  // takes the inner one with it
    EXPECT_FALSE(inner.IsOpen());
    EXPECT_EQ(probe.GetValue(), 0);
    EXPECT_EQ(CTransaction::GetCurrent(), nullptr);
}

TEST(TransactionTest, OnlyTheOutermostCommitIsFinal) {
    for (const bool keeps : {false, true}) {
        CProbe both, innerOnly;
        CNamedTransaction outer(u"outer");
        both.SetValue(1);
        {
            CEnclosedTransaction inner;
            CProbe passing;
            passing.SetValue(1);
            both.SetValue(2);
            innerOnly.SetValue(3);
            EXPECT_TRUE(inner.Commit());
        }
        EXPECT_EQ(both.Committed, 0);
        EXPECT_EQ(outer.GetRecords().size(), 4u);
        EXPECT_TRUE(keeps ? outer.Commit() : outer.Rollback());
        EXPECT_EQ(both.GetValue(), keeps ? 2 : 0);
        EXPECT_EQ(innerOnly.GetValue(), keeps ? 3 : 0);
        EXPECT_EQ(both.Committed, keeps ? 1 : 0);
    }
}

// Refers to a buffer that nobody else refers to.
class CHolder : public CAnyObject {
public:
    void Fill(const char* text) {
        CModificator modificator(this);
        CFactory<CAnyBuffer> factory;
        Buffer.DoSetInstance(nullptr);
        Buffer.DoGetInstance(&factory, true)->Write(0, 4, text);
    }
    bool ObjectToBuffer(CStream* stream) override { return Buffer.ObjectToBuffer(stream); }
    bool ObjectFromBuffer(CStream* stream) override { return Buffer.ObjectFromBuffer(stream); }
    CRef<CAnyBuffer> Buffer;
};

TEST(TransactionTest, RollbackFindsTheObjectsThatWereReferredTo) {
    CHolder holder;
    holder.Fill("old");
    const CPtr<CAnyBuffer> old(holder.Buffer.Get());
    {
        CNamedTransaction transaction;
        holder.Fill("new");
        transaction.Rollback();
    }
    ASSERT_TRUE(holder.Buffer.IsEqual(old.Get()));
    EXPECT_STREQ(static_cast<const char*>(old->GetBuffer()), "old");
    {
        CNamedTransaction transaction;
        holder.Fill("new");
        transaction.Commit();
    }
    EXPECT_FALSE(old.IsExist());
}

// Fails when it is read back.
class CUnreadable : public CProbe {
public:
    bool ObjectFromBuffer(CStream*) override {
        RunError(ErrorFailed, u"unreadable", this);
        return false;
    }
};

TEST(TransactionTest, OneFailureDoesNotKeepTheOthersFromBeingRestored) {
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    CProbe before, after;
    CUnreadable broken;
    for (const bool isForgotten : {false, true}) {
        CNamedTransaction transaction;
        before.SetValue(1);
        broken.SetValue(1 + isForgotten);
        after.SetValue(1);
        if (isForgotten) continue;
        EXPECT_THROW(transaction.Rollback(), CRunError);
        EXPECT_EQ(after.GetValue(), 0);
    }
    EXPECT_EQ(before.GetValue(), 0);
}

}  // namespace
}  // namespace zul
