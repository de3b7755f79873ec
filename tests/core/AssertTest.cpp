#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"

#include "TolenCore/Assert.h"

#include <gtest/gtest.h>

namespace Tolen::Tests {
namespace {

class IgnoringHandler : public IAssertHandler {
public:
    Response OnAssert(const char*, int, const char*) override {
        ++calls;
        return kResponse_IgnoreSite;
    }
    int calls = 0;
};

bool CheckPositive(int value) {
    return TOLEN_CHECK(value > 0, "Source/Test");
}

TEST(Assert, ACheckThatHolds_TellsNobodyAndIsTrue) {
    CapturedChecks checks;
    EXPECT_TRUE(CheckPositive(1));
    EXPECT_TRUE(checks.IsEmpty());
}

TEST(Assert, ACheckThatFails_TellsTheHandlerTextLineAndSourceEachTime) {
    CapturedChecks checks;
    EXPECT_FALSE(CheckPositive(0));
    EXPECT_FALSE(CheckPositive(-1));
    ASSERT_EQ(checks.Get().size(), 2u);
    EXPECT_EQ(checks.Get()[0].expression, "value > 0");
    EXPECT_EQ(checks.Get()[0].source, "Source/Test");
    EXPECT_GT(checks.Get()[0].line, 0);
    EXPECT_EQ(checks.Get()[1].line, checks.Get()[0].line);
}

TEST(Assert, AnIgnoredSite_IsNotAskedAgainWhileOthersAre) {
    const auto first = [] { return TOLEN_CHECK(false, "Source/Test"); };
    const auto second = [] { return TOLEN_CHECK(false, "Source/Test"); };
    IgnoringHandler handler;
    IAssertHandler* const previous = SetActiveAssertHandler(&handler);
    EXPECT_FALSE(first());
    EXPECT_FALSE(first());
    EXPECT_EQ(handler.calls, 1);
    EXPECT_FALSE(second());
    EXPECT_EQ(handler.calls, 2);
    EXPECT_EQ(SetActiveAssertHandler(previous), &handler);
}

TEST(Assert, WithoutAHandler_ACheckIsStillFalse) {
    IAssertHandler* const previous = SetActiveAssertHandler(nullptr);
    EXPECT_EQ(GetActiveAssertHandler(), nullptr);
    EXPECT_FALSE(TOLEN_CHECK(false, "Source/Test"));
    SetActiveAssertHandler(previous);
}

TEST(Assert, ATextOfItsOwn_ReplacesTheExpression) {
    CapturedChecks checks;
    EXPECT_FALSE(TOLEN_CHECK_TEXT(false, "p != NULL", "Source/Test"));
    EXPECT_TRUE(checks.Contains("p != NULL", "Source/Test"));
}

TEST(Assert, TheInitialHandler_PrintsOnceForEachSite) {
    ASSERT_NE(GetActiveAssertHandler(), nullptr);
    CapturedConsole console;
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(TOLEN_CHECK(i > 5, "Source/Test"));
    }
    EXPECT_EQ(console.GetErrors().find("Check failed: i > 5 (Source/Test, line "), 0u);
    EXPECT_EQ(console.GetErrors().find("i > 5", 20), std::string::npos);
}

} // namespace
} // namespace Tolen::Tests
