#include "zul/kernel/client.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/kernel/kernel_testing.h"

namespace zul {
namespace {

TEST(DefaultErrorHandlerTest, PrintsOneLineForEachReportAndReturns) {
    CClient::ClearErrors();
    CProbe probe;
    testing::internal::CaptureStderr();
    CAnyObject::RunError(ErrorOverflow, u"Exceeds TCoord limits: Point::Move", &probe);
    CClient::RaiseException(&probe, u"internal.assert", u"%s\n failed at %d", u"Check", 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zul: error 5: Exceeds TCoord limits: Point::Move\n"
              "zul: internal.assert: Check  failed at 7\n");
    const auto errors = CClient::GetErrors();
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].Type, ErrorOverflow);
    EXPECT_EQ(errors[0].Object.DoGetInstance(), &probe);
    EXPECT_EQ(errors[1].Text, CString(u"Check\n failed at 7"));
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
    CClient::ClearErrors();
    EXPECT_TRUE(CClient::GetErrors().empty());
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
