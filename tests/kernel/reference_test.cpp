#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/client.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/references.h"

namespace zul {
namespace {

CMemoryStream StoredForm(CAnyRef& reference) {
    CMemoryStream stream;
    EXPECT_TRUE(reference.ObjectToBuffer(&stream));
    EXPECT_EQ(stream.GetSize(), 8u);
    stream.SetPosition(0);
    return stream;
}

template <class Reference>
Reference ReadBack(CMemoryStream stream) {
    Reference reference;
    EXPECT_TRUE(reference.ObjectFromBuffer(&stream));
    return reference;
}

TEST(PointerTest, OnlyRemoveDestroys) {
    const int living = CProbe::Living;
    const int finalized = CProbe::Finalized;
    auto* const probe = new CProbe;
    CPtr<CProbe> first(probe);
    {
        CPtr<CProbe> passing(probe);
        first.DoSetInstance(nullptr);
        first = passing;
    }
    EXPECT_EQ(CProbe::Living, living + 1);
    const CAnyPtr second(first);
    first.Remove();
    EXPECT_EQ(CProbe::Living, living);
    EXPECT_EQ(CProbe::Finalized, finalized + 1);
    EXPECT_FALSE(first.IsExist());
    EXPECT_FALSE(second.IsExist());
    first.Remove();
}

TEST(PointerTest, GoesEmptyWhenItsObjectDies) {
    CPtr<CProbe> pointer;
    CRef<CProbe> reference;
    {
        CProbe probe;
        pointer = &probe;
        reference = &probe;
    }
    EXPECT_FALSE(pointer.IsExist());
    EXPECT_TRUE(reference.IsEqual(nullptr));
    EXPECT_TRUE(reference.GetObjectID().IsNull());
}

TEST(ReferenceTest, ACreatedObjectLivesAsLongAsItsReferences) {
    const int living = CProbe::Living;
    const int finalized = CProbe::Finalized;
    CFactory<CProbe> factory;
    CRef<CProbe> first;
    EXPECT_EQ(first.DoGetInstance(&factory, false), nullptr);
    CProbe* const made = first.DoGetInstance(&factory, true);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->Initialized, 1);
    EXPECT_EQ(first.DoGetInstance(&factory, true), made);
    {
        CRef<CProbe> second(first);
        CRef<CProbe> third;
        third = second;
        first.DoSetInstance(nullptr);
        EXPECT_EQ(third.Get(), made);
        EXPECT_EQ(CProbe::Living, living + 1);
        third = CRef<CProbe>();
        EXPECT_EQ(second.Get(), made);
    }
    EXPECT_EQ(CProbe::Living, living);
    EXPECT_EQ(CProbe::Finalized, finalized + 1);
}

TEST(ReferenceTest, TwoReferencesReadFromTheSameBytesShareTheObject) {
    CFactory<CAnyBuffer> factory;
    CRef<CAnyBuffer> original;
    CAnyBuffer* const buffer = original.DoGetInstance(&factory, true);
    const auto stored = StoredForm(original);
    auto first = ReadBack<CRef<CAnyBuffer>>(stored);
    auto second = ReadBack<CRef<CAnyBuffer>>(stored);
    EXPECT_EQ(first.Get(), buffer);

    // What was read keeps the object alive, too; once all are gone the id leads nowhere.
    original.DoSetInstance(nullptr);
    first.DoSetInstance(nullptr);
    EXPECT_EQ(second.Get(), buffer);
    second.DoSetInstance(nullptr);
    EXPECT_FALSE(ReadBack<CRef<CAnyBuffer>>(stored).IsExist());
}

TEST(ReferenceTest, AnIdThatLeadsNowhereIsEmptyAndWrittenBack) {
    const std::int64_t unknown = 0x7FFFFFFFFFFFFFF0;
    CMemoryStream stream(&unknown, sizeof unknown);
    CRef<CProbe> reference;
    ASSERT_TRUE(reference.ObjectFromBuffer(&stream));
    EXPECT_FALSE(reference.IsExist());
    EXPECT_EQ(reference.GetObjectID().GetValue(), unknown);
    EXPECT_EQ(std::memcmp(StoredForm(reference).GetBuffer(), &unknown, 8), 0);
}

TEST(ReferenceTest, AnIdOfAnotherClassIsAnEmptyReference) {
    CProbe probe;
    CRef<CProbe> original(&probe);
    const auto stored = StoredForm(original);
    auto other = ReadBack<CRef<CAnyBuffer>>(stored);
    EXPECT_FALSE(other.IsExist());
    CFactory<CAnyBuffer> factory;
    EXPECT_NE(other.DoGetInstance(&factory, true), nullptr);
}

TEST(ReferenceTest, ACopiedObjectHasAnIdentityOfItsOwn) {
    CProbe probe;
    CRef<CProbe> reference(&probe);
    StoredForm(reference);
    const CProbe copy(probe);
    CRef<CProbe> ofCopy(&copy);
    StoredForm(ofCopy);
    EXPECT_NE(ofCopy.GetObjectID(), reference.GetObjectID());
    probe = copy;
    EXPECT_EQ(reference.Get(), &probe);
}

// An object that refers to itself through a reference and hands out more while it dies.
class CSelfish : public CProbe {
public:
    ~CSelfish() override { const CRef<CSelfish> passing(this); }
    void DoFinalize() override { const CAnyRef passing(this); }
};

TEST(ReferenceTest, ReferencesMadeDuringDestructionDoNotDestroyAgain) {
    const int living = CProbe::Living;
    CFactory<CSelfish> factory;
    CRef<CSelfish> reference;
    ASSERT_NE(reference.DoGetInstance(&factory, true), nullptr);
    reference.DoSetInstance(nullptr);
    EXPECT_EQ(CProbe::Living, living);
}

TEST(ReferenceTest, ThreadsMayReferToOneSharedObject) {
    CProbe shared;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&shared] {
            for (int i = 0; i < 20000; ++i) {
                CRef<CProbe> reference(&shared);
                CMemoryStream stream;
                reference.ObjectToBuffer(&stream);
                const CPtr<CProbe> pointer(reference.Get());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    CRef<CProbe> reference(&shared);
    EXPECT_EQ(ReadBack<CRef<CProbe>>(StoredForm(reference)).Get(), &shared);
}

TEST(ArrayTest, OwnsItsObjectsTogetherWithTheirReferences) {
    const int living = CProbe::Living;
    CRef<CProbe> kept;
    {
        CArray<CProbe> array;
        array.DoAppend(new CProbe);
        array.DoAppend(nullptr);
        array.DoAppend(new CProbe);
        EXPECT_EQ(array.DoGetInstance(3), nullptr);
        EXPECT_EQ(array.DoGetInstance(UINT32_MAX), nullptr);
        kept = array.DoGetInstance(2);
        EXPECT_EQ(CProbe::Living, living + 2);
        array.Clear();
        EXPECT_EQ(CProbe::Living, living + 1) << "one is referred to";
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
    EXPECT_EQ(dynamic_cast<CInteger&>(*dictionary.DoGetInstance(u"CPoints")).GetValue(), 24);
    EXPECT_EQ(dictionary.DoGetInstance(u"CPoint"), nullptr);
    dictionary.Clear();
    EXPECT_EQ(dictionary.GetCount(), 0u);
}

}  // namespace
}  // namespace zul
