// What the store's tests share: a class of nodes that refer to each other, files of their own, kept reports.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/client.h"
#include "zul/kernel/library.h"
#include "zul/kernel/references.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"

namespace zul {

/// A number and links to others.
class CNode : public CProbe {
public:
    explicit CNode(std::int32_t value = 0) { SetValue(value); }
    void Link(CAnyObject* target) {
        CModificator modificator(this);
        m_Links.emplace_back(target);
    }
    CNode* GetLink(std::size_t index) {
        return index < m_Links.size() ? dynamic_cast<CNode*>(m_Links[index].DoGetInstance()) : nullptr;
    }
    CAnyRef& GetReference(std::size_t index) { return m_Links[index]; }

    bool ObjectToBuffer(CStream* stream) override {
        const auto count = static_cast<std::uint32_t>(m_Links.size());
        bool isWritten = !RefusesToWrite && stream->Write(&count, sizeof count);
        for (CAnyRef& link : m_Links)
            isWritten = isWritten && link.ObjectToBuffer(stream);
        return isWritten && (WritesHalf || CProbe::ObjectToBuffer(stream));
    }
    bool ObjectFromBuffer(CStream* stream) override {
        std::uint32_t count = 0;
        if (!stream->Read(&count, sizeof count) || count > stream->GetRemaining() / 8) return false;
        std::vector<CAnyRef> links(count);
        for (CAnyRef& link : links)
            link.ObjectFromBuffer(stream);
        m_Links.swap(links);
        return CProbe::ObjectFromBuffer(stream);
    }

    bool RefusesToWrite = false, WritesHalf = false;

private:
    std::vector<CAnyRef> m_Links;
};

inline void RegisterNodes() {
    CClass::Register(new CFactory<CNode>, u"<class   name='CNode'   title=''>");
}

/// Nodes that are stored in one transaction, with one more that links to them.
constexpr std::int32_t BatchSize = 50;

/// Keeps reports instead of printing them.
class CReports : public CErrorHandler {
public:
    CReports() : m_Scope(this) {}
    void OnError(const TErrorReport& report) override { m_Texts.emplace_back(report.Text.GetBufferAnsi()); }
    /// The reports since the last time, in one text.
    std::string Take() {
        std::string all;
        for (const std::string& text : m_Texts)
            all += text + '\n';
        m_Texts.clear();
        return all;
    }

private:
    std::vector<std::string> m_Texts;
    CErrorHandlerScope m_Scope;
};

/// A folder of its own and a store in it.
class StoreTest : public testing::Test {
protected:
    StoreTest() {
        AutoRegister();
        RegisterNodes();
        std::filesystem::create_directories(m_Folder.Get());
        EXPECT_TRUE(m_Store.Open(GetPath().c_str(), CStore::Create));
    }
    ~StoreTest() override { EXPECT_EQ(m_Reports.Take(), ""); }

    std::u16string GetPath() const { return (m_Folder.Get() / "test.zul").u16string(); }
    std::string GetNarrowPath() const { return (m_Folder.Get() / "test.zul").string(); }
    void Reopen(CStore::TMode mode = CStore::ReadWrite) {
        ASSERT_TRUE(m_Store.Open(GetPath().c_str(), mode));
    }

    CScratchPath m_Folder;
    CReports m_Reports;
    CStore m_Store;
};

}  // namespace zul
