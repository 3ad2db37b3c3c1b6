#include "zul/kernel/collections.h"

#include <gtest/gtest.h>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/client.h"
#include "zul/kernel/domain.h"

namespace zul {
namespace {

TEST(ArrayTest, OwnsItsObjectsTogetherWithTheirReferences) {
    const int living = CProbe::Living;
    CRef<CProbe> kept;
    {
        CArray<CProbe> array;
        array.DoAppend(new CProbe);
        array.DoAppend(nullptr);
        array.DoAppend(new CProbe);
        EXPECT_EQ(array.GetCount(), 3u);
        EXPECT_EQ(array.DoGetInstance(1), nullptr);
        EXPECT_EQ(array.DoGetInstance(3), nullptr);
        EXPECT_EQ(array.DoGetInstance(UINT32_MAX), nullptr);
        kept = array.DoGetInstance(2);
        EXPECT_EQ(CProbe::Living, living + 2);
    }
    EXPECT_EQ(CProbe::Living, living + 1);
    EXPECT_TRUE(kept.IsExist());
    kept.DoSetInstance(nullptr);
    EXPECT_EQ(CProbe::Living, living);
}

TEST(ArrayTest, AnObjectOfAnotherClassReadsAsNull) {
    CArray<CProbe> array;
    static_cast<CAnyArray&>(array).DoAppend(new CFloat);
    EXPECT_EQ(array.DoGetInstance(0), nullptr);
    EXPECT_NE(array.CAnyArray::DoGetInstance(0), nullptr);
}

TEST(ArrayTest, ReadsBackTheSameObjects) {
    CArray<CProbe> array;
    array.DoAppend(new CProbe);
    array.DoAppend(new CProbe);
    CMemoryStream stream;
    ASSERT_TRUE(array.ObjectToBuffer(&stream));
    EXPECT_EQ(stream.GetSize(), array.GetPreferredSize());
    for (int i = 0; i < 2; ++i) {
        stream.SetPosition(0);
        CArray<CProbe> back;
        CArray<CProbe>& target = i == 0 ? back : array;  // into another one, and into itself
        CProbe* const second = array.DoGetInstance(1);
        ASSERT_TRUE(target.ObjectFromBuffer(&stream));
        ASSERT_EQ(target.GetCount(), 2u);
        EXPECT_EQ(target.DoGetInstance(1), second);
    }
}

TEST(ArrayTest, AStoredCountThatTheStreamCannotHoldGivesAnEmptyArray) {
    for (const auto& bytes : {std::string("\xFF\xFF\xFF\xFF        ", 12),
                              std::string("\x02\0\0\0        ", 12), std::string("\x01\0", 2)}) {
        CMemoryStream stream(bytes.data(), bytes.size());
        CAnyArray array;
        array.DoAppend(new CProbe);
        EXPECT_FALSE(array.ObjectFromBuffer(&stream));
        EXPECT_EQ(array.GetCount(), 0u);
    }
}

TEST(DictionaryTest, AKnownKeyGetsTheNewObject) {
    const int living = CProbe::Living;
    CAnyDictionary dictionary;
    const std::uint64_t before = CClient::GetModificationCount();
    dictionary.DoAppend(u"CPoints", new CProbe);
    dictionary.DoAppend(u"CPoints", new CInteger(24));
    dictionary.DoAppend(u"cpoints", new CInteger(25));
    EXPECT_EQ(CClient::GetModificationCount(), before + 3);
    EXPECT_EQ(CProbe::Living, living);
    EXPECT_EQ(dictionary.GetCount(), 2u);
    auto* const size = dynamic_cast<CInteger*>(dictionary.DoGetInstance(u"CPoints"));
    ASSERT_NE(size, nullptr);
    EXPECT_EQ(size->GetValue(), 24);
    EXPECT_EQ(dictionary.DoGetInstance(u"CPoint"), nullptr);
    EXPECT_FALSE(dictionary.IsExist(u"CPoint"));
    EXPECT_TRUE(dictionary.IsExist(u"cpoints"));
}

TEST(DictionaryTest, ReadsBackAndRefusesWhatIsCutShort) {
    CAnyDictionary dictionary;
    dictionary.DoAppend(u"one", new CInteger(1));
    dictionary.DoAppend(u"two", new CInteger(2));
    CMemoryStream stream;
    ASSERT_TRUE(dictionary.ObjectToBuffer(&stream));
    ASSERT_EQ(stream.GetSize(), dictionary.GetPreferredSize());
    for (std::size_t size = 0; size <= stream.GetSize(); ++size) {
        CMemoryStream cut(stream.GetBuffer(), size);
        CAnyDictionary back;
        const bool whole = size == stream.GetSize();
        EXPECT_EQ(back.ObjectFromBuffer(&cut), whole) << size;
        EXPECT_EQ(back.GetCount(), whole ? 2u : 0u) << size;
        EXPECT_EQ(back.DoGetInstance(u"two"), whole ? dictionary.DoGetInstance(u"two") : nullptr) << size;
    }
}

}  // namespace
}  // namespace zul
