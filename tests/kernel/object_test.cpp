#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/kernel/kernel_testing.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/attribute_bag.h"
#include "zul/kernel/client.h"
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
    EXPECT_FALSE(probe.DoSerialize(nullptr));
    EXPECT_FALSE(probe.DoUnserialize(nullptr));
}

TEST(MessageTest, NamedMessagesReachTheirTargetWhateverTheCase) {
    CAdder sender, target;
    std::int64_t result = -1;
    EXPECT_TRUE(sender.RunMessage(u"ADD", &target, &result, 1, 2, 3, INT64_C(1) << 40));
    EXPECT_EQ(result, (INT64_C(1) << 40) + 6);
    EXPECT_FALSE(sender.RunMessage(u"Subtract", &target, &result, 1));
    EXPECT_FALSE(sender.RunMessage(u"Add", nullptr, &result, 1));
}

TEST(AttributeBagTest, AnswersForAttributesItHas) {
    CAttributeBag bag;
    bag.SetAttribute(u"width", u"3");
    CString value;
    const auto ask = [&](const char16_t* name, CString* out) {
        return bag.RunMessage(u"getattributevalue", &bag, nullptr, CMessage::FromPointer(name),
                              CMessage::FromPointer(out));
    };
    EXPECT_FALSE(ask(u"Width", &value));
    EXPECT_FALSE(ask(nullptr, &value));
    EXPECT_FALSE(ask(u"width", nullptr));
    EXPECT_TRUE(ask(u"width", &value));
    EXPECT_EQ(value, CString(u"3"));
    EXPECT_FALSE(bag.DoMessage(nullptr));
}

TEST(DefaultErrorHandlerTest, PrintsOneLineForEachReportAndReturns) {
    CClient::ClearErrors();
    CProbe probe;
    testing::internal::CaptureStderr();
    CAnyObject::RunError(ErrorOverflow, u"Exceeds TCoord limits: Point::Move", &probe);
    CClient::RaiseException(&probe, u"internal.assert", u"%s\n failed at %d", u"Check", 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zul: error 5: Exceeds TCoord limits: Point::Move\n"
              "zul: internal.assert: Check  failed at 7\n");
    EXPECT_EQ(CClient::GetErrors().at(0).Type, ErrorOverflow);
    EXPECT_EQ(CClient::GetErrors().at(0).Object.DoGetInstance(), &probe);
}

TEST(DefaultErrorHandlerTest, KeepsTheLatestAndCountsAll) {
    CClient::ClearErrors();
    testing::internal::CaptureStderr();
    for (std::size_t i = 0; i < CClient::MaxErrors + 10; ++i) {
        CProbe passing;
        CAnyObject::RunError(ErrorFailed, CString::Format(u"%d", i), &passing);
    }
    testing::internal::GetCapturedStderr();
    const auto errors = CClient::GetErrors();
    ASSERT_EQ(errors.size(), CClient::MaxErrors);
    EXPECT_EQ(errors.front().Text, CString(u"10"));
    EXPECT_FALSE(errors.back().Object.IsExist());
    EXPECT_EQ(CClient::GetErrorCount(), CClient::MaxErrors + 10);
}

TEST(ThrowingErrorHandlerTest, ThrowsWhatWasReported) {
    CClient::ClearErrors();
    CThrowingErrorHandler handler;
    const CErrorHandlerScope scope(&handler);
    auto probe = std::make_unique<CProbe>();
    try {
        CAnyObject::RunError(ErrorUnsupported, u"FloodFill is not supported", probe.get());
        FAIL() << "nothing was thrown";
    } catch (const CRunError& error) {
        EXPECT_EQ(error.GetType(), ErrorUnsupported);
        EXPECT_STREQ(error.what(), "FloodFill is not supported");
        EXPECT_EQ(error.GetInstance(), probe.get());
        probe.reset();
        EXPECT_EQ(error.GetInstance(), nullptr);
    }
    EXPECT_THROW(CClient::RaiseException(nullptr, u"internal.Brush", u"Handle is in use"), CInternalError);
    EXPECT_EQ(CClient::GetErrorCount(), 0u);
}

}  // namespace
}  // namespace zul
