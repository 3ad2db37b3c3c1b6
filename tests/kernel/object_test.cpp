#include "zul/kernel/any_object.h"

#include <gtest/gtest.h>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/attribute_bag.h"
#include "zul/kernel/message.h"

namespace zul {
namespace {

// Answers "Add" and code 10001 with the sum of its parameters.
class CAdder : public CAnyObject {
public:
    bool DoMessage(CMessage* message) override {
        if (!message->IsNamed(u"Add") && message->GetCode() != 10001) return CAnyObject::DoMessage(message);
        message->SetResult(message->GetParam1() + message->GetParam2() + message->GetParam3() +
                           message->GetParam4());
        return true;
    }
};

TEST(ObjectTest, ADerivedObjectIsDestroyedThroughItsBase) {
    const int before = CProbe::Living;
    CAnyObject* object = new CProbe;
    delete object;
    alignas(CProbe) unsigned char place[sizeof(CProbe)];
    object = new (place) CProbe;
    EXPECT_EQ(static_cast<void*>(object), static_cast<void*>(place));
    object->~CAnyObject();
    delete[] new CProbe[3];
    EXPECT_EQ(CProbe::Living, before);
    EXPECT_EQ(new (static_cast<void*>(nullptr)) CProbe, nullptr);
}

TEST(ObjectTest, ClonesIntoAnObjectOfItsClassOnly) {
    CProbe source, target;
    CAdder other;
    source.SetValue(42);
    EXPECT_TRUE(source.Clone(&target));
    EXPECT_EQ(target.GetValue(), 42);
    EXPECT_FALSE(source.Clone(&source));
    EXPECT_FALSE(source.Clone(&other));
    EXPECT_FALSE(source.Clone(nullptr));
}

TEST(ObjectTest, AnExcludedObjectIsNotSerialized) {
    CProbe probe;
    CMemoryStream stream;
    probe.SetAsNotSerializable(true);
    EXPECT_TRUE(probe.DoSerialize(&stream));
    EXPECT_TRUE(probe.DoUnserialize(&stream));
    EXPECT_EQ(stream.GetSize(), 0u);
    probe.SetAsNotSerializable(false);
    EXPECT_TRUE(probe.DoSerialize(&stream));
    EXPECT_EQ(stream.GetSize(), 4u);
    EXPECT_FALSE(probe.DoUnserialize(&stream));  // at its end
    EXPECT_FALSE(probe.DoSerialize(nullptr));
    EXPECT_FALSE(probe.DoUnserialize(nullptr));
}

TEST(MessageTest, NamedMessagesReachTheirTargetWhateverTheCase) {
    CAdder sender, target;
    std::int64_t result = -1;
    EXPECT_TRUE(sender.RunMessage(u"ADD", &target, &result, 1, 2, 3, INT64_C(1) << 40));
    EXPECT_EQ(result, (INT64_C(1) << 40) + 6);
    EXPECT_TRUE(sender.RunMessage(u"Add", &target, nullptr));
    EXPECT_FALSE(sender.RunMessage(u"Subtract", &target, &result, 1));
    EXPECT_FALSE(sender.RunMessage(u"Add", nullptr, &result, 1));
}

TEST(MessageTest, HasACodeOrAName) {
    CMessage coded(10001, 20, -30);
    EXPECT_EQ(coded.GetName(), nullptr);
    EXPECT_FALSE(coded.IsNamed(u""));
    CAdder target;
    ASSERT_TRUE(target.DoMessage(&coded));
    EXPECT_EQ(coded.GetResult(), -10);
    EXPECT_EQ(CMessage(u"Draw").GetCode(), 0);
}

TEST(AttributeBagTest, AnswersForAttributesItHas) {
    CAttributeBag bag;
    bag.SetAttribute(u"width", u"3");
    CString value(u"before");
    const auto ask = [&](const char16_t* name, CString* out) {
        return bag.RunMessage(u"getattributevalue", &bag, nullptr, CMessage::FromPointer(name),
                              CMessage::FromPointer(out));
    };
    EXPECT_FALSE(ask(u"Width", &value));
    EXPECT_FALSE(ask(nullptr, &value));
    EXPECT_FALSE(ask(u"width", nullptr));
    EXPECT_EQ(value, CString(u"before"));
    EXPECT_TRUE(ask(u"width", &value));
    EXPECT_EQ(value, CString(u"3"));
    EXPECT_FALSE(bag.DoMessage(nullptr));
}

}  // namespace
}  // namespace zul
