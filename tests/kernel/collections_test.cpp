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
    kept.DoSetInstance(nullptr);
    EXPECT_EQ(CProbe::Living, living);
}

TEST(ArrayTest, AnObjectOfAnotherClassReadsAsNull) {
    CArray<CProbe> array;
    static_cast<CAnyArray&>(array).DoAppend(new CFloat);
    EXPECT_EQ(array.DoGetInstance(0), nullptr);
    EXPECT_NE(array.CAnyArray::DoGetInstance(0), nullptr);
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
}

}  // namespace
}  // namespace zul
