#include <functional>
#include <random>

#include "tests/store/store_testing.h"
#include "zul/canvas/canvas.h"

namespace zul {
namespace {

using StoreTransactionTest = StoreTest;

TEST_F(StoreTransactionTest, CommitWritesChangedObjectsAndWhatTheyNewlyReferTo) {
    CNode node(1), added(9);
    const CObjectID id = m_Store.Store(&node);
    {
        CNamedTransaction transaction;
        CRef<CNode> loaded = m_Store.Load<CNode>(id);
        loaded->SetValue(2);
        loaded->Link(&added);
        ASSERT_TRUE(transaction.Commit());
    }
    EXPECT_EQ(node.Committed, 1);
    Reopen();
    EXPECT_EQ(m_Store.GetCount(), 2u);
    CRef<CNode> loaded = m_Store.Load<CNode>(id);
    ASSERT_EQ(loaded->GetValue(), 2);
    EXPECT_EQ(loaded->GetLink(0)->GetValue(), 9);
    {
        // Nothing but the transaction holds the object while it waits to be written.
        CNamedTransaction transaction;
        loaded->GetLink(0)->SetValue(10);
        loaded.DoSetInstance(nullptr);
        ASSERT_TRUE(transaction.Commit());
    }
    Reopen();
    EXPECT_EQ(m_Store.Load<CNode>(id)->GetLink(0)->GetValue(), 10);
}

TEST_F(StoreTransactionTest, AChangedMemberIsWrittenWithItsOwner) {
    CCanvas canvas;
    const CObjectID id = m_Store.Store(&canvas);
    {
        CNamedTransaction transaction;
        canvas.GetBrush().SetColor(0x123456);
        ASSERT_TRUE(transaction.Commit());
    }
    Reopen();
    EXPECT_EQ(m_Store.Load<CCanvas>(id)->GetBrush().GetColor(), 0x123456);
}

TEST_F(StoreTransactionTest, RollbackBringsFileAndMemoryBack) {
    CNode kept(1), changed(2), removed(3);
    for (CNode* node : {&kept, &changed, &removed})
        m_Store.Store(node);
    const CObjectID changedId = m_Store.GetId(&changed), removedId = m_Store.GetId(&removed);
    CNode added(4);
    {
        CNamedTransaction transaction;
        changed.SetValue(20);
        EXPECT_EQ(m_Store.Store(&changed), changedId);
        const CObjectID addedId = m_Store.Store(&added);
        EXPECT_EQ(m_Store.Load<CNode>(addedId).Get(), &added);
        EXPECT_TRUE(m_Store.Remove(removedId));
        EXPECT_FALSE(m_Store.Load(removedId).IsExist());
        m_Store.SetRoot(u"name", &kept);
        m_Store.Place(changedId, {0, 0, 1, 1});
        ASSERT_TRUE(transaction.Rollback());
    }
    EXPECT_EQ(changed.GetValue(), 2);
    EXPECT_TRUE(m_Store.GetId(&added).IsNull());
    EXPECT_EQ(m_Store.Load<CNode>(removedId).Get(), &removed);
    EXPECT_EQ(m_Store.GetCount(), 3u);
    EXPECT_TRUE(m_Store.GetRootNames().empty());
    EXPECT_TRUE(m_Store.FindInBox({0, 0, 1, 1}).empty());
    EXPECT_FALSE(m_Store.Store(&added).IsNull());
    Reopen();
    EXPECT_EQ(m_Store.Load<CNode>(changedId)->GetValue(), 2);
    EXPECT_EQ(m_Store.GetCount(), 4u);
    EXPECT_EQ(m_Store.Check(), CString());
}

TEST_F(StoreTransactionTest, AnObjectReadFromARowThatIsUndoneIsReadAgain) {
    CObjectID id;
    {
        CNode node(1);
        id = m_Store.Store(&node);
    }
    CNamedTransaction transaction;
    {
        CRef<CNode> passing = m_Store.Load<CNode>(id);
        passing->ObjectFromBuffer(std::make_unique<CMemoryStream>("\0\0\0\0\5\0\0\0", 8).get());
        m_Store.Store(passing.Get());
    }
    CRef<CNode> loaded = m_Store.Load<CNode>(id);
    EXPECT_EQ(loaded->GetValue(), 5);
    ASSERT_TRUE(transaction.Rollback());
    EXPECT_EQ(loaded->GetValue(), 1);
}

// Random nests of transactions beside a plain model of what they should leave.
TEST_F(StoreTransactionTest, NestsOfCommitsAndRollbacksLeaveWhatAModelSays) {
    using TModel = std::map<std::int64_t, std::int32_t>;
    std::mt19937 random(7);
    const auto choose = [&](std::size_t count) { return random() % count; };
    TModel model;
    for (int round = 0; round < 60; ++round) {
        const std::function<void(int)> run = [&](int depth) {
            const TModel before = model;
            CEnclosedTransaction transaction;
            for (std::size_t steps = choose(6); steps > 0; --steps) {
                auto chosen = model.begin();
                if (!model.empty()) std::advance(chosen, static_cast<std::ptrdiff_t>(choose(model.size())));
                const auto value = static_cast<std::int32_t>(random() % 1000);
                switch (model.empty() ? 0 : choose(5)) {
                    case 0: {
                        CNode node(value);
                        model[m_Store.Store(&node).GetValue()] = value;
                        break;
                    }
                    case 1:
                        ASSERT_TRUE(m_Store.Remove(CObjectID(chosen->first)));
                        model.erase(chosen);
                        break;
                    case 2:
                        if (depth < 5) run(depth + 1);
                        break;
                    default: {
                        CRef<CNode> node = m_Store.Load<CNode>(CObjectID(chosen->first));
                        ASSERT_NE(node.Get(), nullptr);
                        ASSERT_EQ(node->GetValue(), chosen->second);
                        node->SetValue(value);
                        chosen->second = value;
                        if (choose(2) == 0) m_Store.Store(node.Get());
                    }
                }
            }
            if (choose(2) == 0) {
                ASSERT_TRUE(transaction.Commit());
            } else {
                ASSERT_TRUE(transaction.Rollback());
                model = before;
            }
        };
        run(0);
        if (round % 10 == 9) Reopen();
        ASSERT_EQ(m_Store.GetCount(), model.size()) << round;
        for (const auto& [id, value] : model) {
            const CRef<CNode> node = m_Store.Load<CNode>(CObjectID(id));
            ASSERT_NE(node.Get(), nullptr) << round << ": " << id;
            ASSERT_EQ(node->GetValue(), value) << round << ": " << id;
        }
    }
    EXPECT_EQ(m_Store.Check(), CString());
}

TEST_F(StoreTransactionTest, ClosingUndoesWhatIsOpenAndTheTransactionGoesOn) {
    CNode node(1), later(2);
    CNamedTransaction transaction;
    m_Store.Store(&node);
    m_Store.Close();
    Reopen();
    EXPECT_EQ(m_Store.GetCount(), 0u);
    m_Store.Store(&later);
    ASSERT_TRUE(transaction.Commit());
    EXPECT_EQ(m_Store.GetCount(), 1u);
}

TEST_F(StoreTransactionTest, AThrowingHandlerLeavesNothingOpen) {
    CThrowingErrorHandler throwing;
    const CErrorHandlerScope scope(&throwing);
    CNode inner, outer;
    inner.RefusesToWrite = true;
    outer.Link(&inner);
    EXPECT_THROW(m_Store.Store(&outer), CRunError);
    EXPECT_EQ(CTransaction::GetCurrent(), nullptr);
    inner.RefusesToWrite = false;
    EXPECT_FALSE(m_Store.Store(&outer).IsNull());
    EXPECT_EQ(m_Store.GetCount(), 2u);
}

}  // namespace
}  // namespace zul
