#include <map>
#include <random>

#include "tests/store/store_testing.h"
#include "zul/kernel/domain.h"
#include "zul/tools/brush.h"

namespace zul {
namespace {

using GraphTest = StoreTest;

TEST_F(GraphTest, AnyGraphComesBackWithItsRingsAndSharedObjects) {
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        std::mt19937 random(seed);
        constexpr std::int32_t Count = 200;
        std::vector<std::vector<std::int32_t>> links(Count);
        {
            std::vector<CNode> nodes(Count);
            for (std::int32_t i = 0; i < Count; ++i) {
                auto& node = nodes[static_cast<std::size_t>(i)];
                node.SetValue(i);
                // A chain, so that all are in reach, and links to and fro.
                if (i + 1 < Count) links[static_cast<std::size_t>(i)].push_back(i + 1);
                for (unsigned extra = random() % 4; extra > 0; --extra)
                    links[static_cast<std::size_t>(i)].push_back(static_cast<std::int32_t>(random() % Count));
                for (const std::int32_t target : links[static_cast<std::size_t>(i)])
                    node.Link(&nodes[static_cast<std::size_t>(target)]);
            }
            ASSERT_TRUE(m_Store.SetRoot(u"graph", &nodes[0]));
        }
        const int before = CProbe::Living;
        Reopen(CStore::ReadOnly);
        EXPECT_TRUE(m_Store.IsReadOnly());
        EXPECT_EQ(m_Store.GetCounts().ObjectsRead, 0u);
        {
            const CRef<CNode> root = m_Store.GetRoot<CNode>(u"graph");
            std::map<std::int32_t, CNode*> seen;
            std::vector<CNode*> work{root.Get()};
            while (!work.empty()) {
                CNode* const node = work.back();
                work.pop_back();
                ASSERT_NE(node, nullptr);
                if (!seen.emplace(node->GetValue(), node).second) {
                    ASSERT_EQ(seen[node->GetValue()], node) << "one object came twice";
                    continue;
                }
                const auto& expected = links[static_cast<std::size_t>(node->GetValue())];
                for (std::size_t i = 0; i < expected.size(); ++i) {
                    work.push_back(node->GetLink(i));
                    ASSERT_EQ(work.back()->GetValue(), expected[i]);
                }
                EXPECT_EQ(node->GetLink(expected.size()), nullptr);
            }
            EXPECT_EQ(seen.size(), static_cast<std::size_t>(Count));
        }
        if (seed % 2 == 0) {
            m_Store.Close();
        } else {
            EXPECT_EQ(m_Store.Collect(), static_cast<std::size_t>(Count));
        }
        EXPECT_EQ(CProbe::Living, before) << "rings stay behind";
        Reopen();
    }
}

TEST_F(GraphTest, OnlyWhatIsAskedForIsRead) {
    CNode nodes[3] = {CNode(1), CNode(2), CNode(3)};
    nodes[0].Link(&nodes[1]);
    nodes[1].Link(&nodes[2]);
    const CObjectID id = m_Store.Store(&nodes[0]);
    Reopen();
    CRef<CNode> first = m_Store.Load<CNode>(id);
    EXPECT_EQ(m_Store.GetCounts().ObjectsRead, 1u);
    first->SetValue(10);
    EXPECT_EQ(m_Store.Store(first.Get()), id);
    EXPECT_EQ(m_Store.GetCounts().ObjectsRead, 1u) << "storing loads nothing";
    EXPECT_EQ(first->GetLink(0)->GetLink(0)->GetValue(), 3);
    EXPECT_EQ(m_Store.GetCounts().ObjectsRead, 3u);
    EXPECT_EQ(m_Store.Load<CNode>(id).Get(), first.Get()) << "one object for an id";
}

TEST_F(GraphTest, IdsLeadToObjectsInEveryFormAndNowhereElse) {
    CNode node(7), other(8);
    const CObjectID id = m_Store.Store(&node);
    const CObjectID next = m_Store.Store(&other);
    EXPECT_EQ(next.GetValue(), id.GetValue() + 1);
    EXPECT_EQ(m_Store.GetId(&node), id);
    EXPECT_EQ(m_Store.Load<CNode>(CRef<CNode>(&node).GetObjectID()).Get(), &node);
    for (const std::int64_t stranger : {std::int64_t{0}, std::int64_t{-1}, next.GetValue() + 1, INT64_MIN,
                                        INT64_MAX, std::int64_t{1} << 41, (std::int64_t{1} << 62) + 1}) {
        EXPECT_FALSE(m_Store.Load(CObjectID(stranger)).IsExist()) << stranger;
        EXPECT_FALSE(m_Store.Remove(CObjectID(stranger))) << stranger;
    }
    EXPECT_FALSE(m_Store.Load<CInteger>(id).IsExist()) << "another class";
    EXPECT_EQ(m_Store.FindByClass(u"CNode").size(), 2u);
    EXPECT_EQ(m_Store.FindByClass(u"CInteger").size(), 0u);
}

TEST_F(GraphTest, ReferencesToAnotherClassOrToNothingAreEmpty) {
    CBrush brush;
    CNode node;
    node.Link(&brush);
    CNode gone;
    node.Link(&gone);
    const CObjectID id = m_Store.Store(&node);
    ASSERT_TRUE(m_Store.Remove(m_Store.GetId(&gone)));
    Reopen();
    CRef<CNode> loaded = m_Store.Load<CNode>(id);
    EXPECT_EQ(loaded->GetLink(0), nullptr);
    EXPECT_TRUE(loaded->GetReference(0).IsExist());
    EXPECT_FALSE(loaded->GetReference(1).IsExist());
}

TEST_F(GraphTest, WhatCannotBeStoredLeavesNothingBehind) {
    class CStranger : public CAnyObject {};
    CStranger stranger;
    CNode refusing, excluded, middle, root(1);
    refusing.RefusesToWrite = true;
    excluded.SetAsNotSerializable(true);
    for (CAnyObject* obstacle : {static_cast<CAnyObject*>(&stranger), static_cast<CAnyObject*>(&refusing)}) {
        CNode inner, outer;
        inner.Link(obstacle);
        outer.Link(&inner);
        for (const bool inside : {false, true}) {
            std::unique_ptr<CTransaction> transaction;
            if (inside) transaction = std::make_unique<CNamedTransaction>();
            EXPECT_TRUE(m_Store.Store(&outer).IsNull());
            EXPECT_NE(m_Reports.Take(), "");
            EXPECT_TRUE(!inside || transaction->Commit());
            EXPECT_EQ(m_Store.GetCount(), 0u);
            EXPECT_TRUE(m_Store.GetId(&outer).IsNull());
            EXPECT_TRUE(m_Store.GetId(&inner).IsNull());
        }
    }
    EXPECT_TRUE(m_Store.Store(nullptr).IsNull());
    EXPECT_TRUE(m_Store.Store(&excluded).IsNull());
    EXPECT_FALSE(m_Store.SetRoot(u"", &root));
    EXPECT_NE(m_Reports.Take(), "");
    root.Link(&excluded);
    EXPECT_FALSE(m_Store.Store(&root).IsNull());
    EXPECT_EQ(m_Store.GetCount(), 1u);
}

TEST_F(GraphTest, AnObjectLivesInSeveralStoresAndAGraphMovesFromOneToAnother) {
    CNode nodes[2] = {CNode(1), CNode(2)};
    nodes[0].Link(&nodes[1]);
    const CObjectID id = m_Store.Store(&nodes[0]);
    Reopen();
    CStore second;
    ASSERT_TRUE(second.Open(u":memory:", CStore::Create));
    CNode before;
    second.Store(&before);
    CRef<CNode> loaded = m_Store.Load<CNode>(id);
    const CObjectID copy = second.Store(loaded.Get());
    EXPECT_EQ(second.GetCount(), 3u) << "what was not in memory came along";
    EXPECT_EQ(m_Store.GetId(loaded.Get()), id);
    EXPECT_NE(copy, id);
    {
        CNamedTransaction transaction;
        loaded->SetValue(5);
        ASSERT_TRUE(transaction.Commit());
    }
    m_Store.Close();
    loaded.DoSetInstance(nullptr);
    EXPECT_EQ(second.Load<CNode>(copy)->GetValue(), 5);
    EXPECT_EQ(second.Load<CNode>(copy)->GetLink(0)->GetValue(), 2);
    Reopen();
    EXPECT_EQ(m_Store.Load<CNode>(id)->GetValue(), 5) << "a change goes to both";
}

TEST_F(GraphTest, ADeadObjectOfTheCallerIsFoundInTheStore) {
    CNode root;
    {
        CNode passing(6);
        root.Link(&passing);
        m_Store.Store(&root);
    }
    ASSERT_NE(root.GetLink(0), nullptr);
    EXPECT_EQ(root.GetLink(0)->GetValue(), 6);
}

TEST_F(GraphTest, NamesLeadToObjectsUntilTheyAreTakenAway) {
    CNode first(1), second(2);
    EXPECT_TRUE(m_Store.SetRoot(u"b", &first));
    EXPECT_TRUE(m_Store.SetRoot(u"\u00E4 'x\"; DROP TABLE roots", &first));
    EXPECT_TRUE(m_Store.SetRoot(u"b", &second));
    EXPECT_EQ(m_Store.GetRoot(u"b").Peek(), &second);
    EXPECT_FALSE(m_Store.GetRoot(u"B").IsExist());
    EXPECT_EQ(m_Store.GetRootNames(), (std::vector<CString>{u"b", u"\u00E4 'x\"; DROP TABLE roots"}));
    EXPECT_TRUE(m_Store.RemoveRoot(u"b"));
    EXPECT_FALSE(m_Store.RemoveRoot(u"b"));
    EXPECT_TRUE(m_Store.Remove(m_Store.GetId(&first)));
    EXPECT_TRUE(m_Store.GetRootNames().empty());
    EXPECT_TRUE(m_Store.IsStored(m_Store.GetId(&second)));
    EXPECT_EQ(m_Store.Check(), CString());
}

}  // namespace
}  // namespace zul
