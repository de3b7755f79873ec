#include "support/CapturedConsole.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

namespace Tolen::Tests {
namespace {

TEST(Result, Add_FormatsAndAppends) {
    Result result;
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_EQ(result.GetLast(), "");
    EXPECT_TRUE(result.Add("%s: %d", "a", 1));
    EXPECT_TRUE(result.Add("b"));
    EXPECT_EQ(result.GetCount(), 2u);
    EXPECT_EQ(result.GetMessage(0), "a: 1");
    EXPECT_EQ(result.GetLast(), "b");
}

TEST(Result, AddOfAnother_AppendsAllOfItsMessagesInOrder) {
    Result first;
    Result second;
    first.Add("1");
    second.Add("2");
    second.Add("3 %%");
    EXPECT_TRUE(first.Add(second));
    EXPECT_EQ(first.GetMessages(), (std::vector<std::string>{"1", "2", "3 %"}));
    EXPECT_EQ(second.GetCount(), 2u);
}

TEST(Result, AddOfItself_DoublesTheList) {
    Result result;
    for (int i = 0; i < 9; ++i) {
        result.Add("%d", i);
    }
    EXPECT_TRUE(result.Add(result));
    ASSERT_EQ(result.GetCount(), 18u);
    EXPECT_EQ(result.GetMessage(9), "0");
    EXPECT_EQ(result.GetLast(), "8");
}

TEST(Result, ReportToConsole_PrintsOneErrorLineNewestFirst) {
    CapturedConsole console;
    Result result;
    result.Add("oldest");
    result.Add("100%% middle");
    result.Add("newest");
    result.ReportToConsole(console.Get());
    EXPECT_EQ(console.GetErrors(), "newest: 100% middle: oldest\n");
    EXPECT_EQ(console.GetAll(), console.GetErrors());
}

TEST(Result, ReportToConsole_WithoutMessagesPrintsNothing) {
    CapturedConsole console;
    Result result;
    result.Add("x");
    result.Clear();
    result.ReportToConsole(console.Get());
    EXPECT_EQ(console.GetAll(), "");
}

TEST(Result, ReportToConsole_WithoutAConsoleTakesThatOfTheProcess) {
    CapturedConsole console;
    Result result;
    result.Add("x");
    result.ReportToConsole(nullptr);
    EXPECT_EQ(console.GetErrors(), "x\n");
    IMgrConsole* const previous = SetMgrConsole(nullptr);
    result.ReportToConsole(nullptr);
    SetMgrConsole(previous);
    EXPECT_EQ(console.GetErrors(), "x\n");
}

} // namespace
} // namespace Tolen::Tests
