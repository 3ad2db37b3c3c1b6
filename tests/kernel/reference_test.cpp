#include "zul/kernel/references.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/buffer.h"

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
        EXPECT_TRUE(reference.IsEqual(&probe));
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
    EXPECT_EQ(first.DoGetInstance(nullptr, true), nullptr);
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
    EXPECT_EQ(second.Get(), buffer);
    EXPECT_EQ(first.GetObjectID(), original.GetObjectID());

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
    EXPECT_EQ(ReadBack<CRef<CProbe>>(stored).Get(), &probe);
    CFactory<CAnyBuffer> factory;
    EXPECT_NE(other.DoGetInstance(&factory, true), nullptr);
    EXPECT_TRUE(other.IsExist());
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

}  // namespace
}  // namespace zul
