#include "TolenCore/Console.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace Tolen::Tests {
namespace {

class Sink : public IConsoleSink {
public:
    void Write(Channel channel, const std::string& text) override {
        messages.emplace_back(channel, text);
    }
    std::vector<std::pair<Channel, std::string>> messages;
};

using Messages = std::vector<std::pair<IConsoleSink::Channel, std::string>>;

TEST(Console, EachChannel_HandsTheFormattedMessageToTheSink) {
    Sink sink;
    MgrConsole console(&sink);
    console.Print("%s %d\n", "a", 1);
    console.Warning("%s", "100%");
    console.Error("e\n");
    EXPECT_EQ(sink.messages, (Messages{{IConsoleSink::kChannel_General, "a 1\n"},
                                       {IConsoleSink::kChannel_Warning, "100%"},
                                       {IConsoleSink::kChannel_Error, "e\n"}}));
}

TEST(Console, ALongMessage_ArrivesWhole) {
    Sink sink;
    MgrConsole console(&sink);
    const std::string text(100000, 'x');
    console.Print("%s\n", text.c_str());
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].second, text + "\n");
}

TEST(Console, SetSink_AnswersTheOneBefore) {
    Sink first;
    Sink second;
    MgrConsole console(&first);
    EXPECT_EQ(console.SetSink(&second), &first);
    console.Print("x");
    EXPECT_TRUE(first.messages.empty());
    EXPECT_EQ(second.messages.size(), 1u);
    EXPECT_EQ(console.SetSink(nullptr), &second);
}

TEST(Console, WithoutASink_MessagesGoToStderr) {
    MgrConsole console;
    testing::internal::CaptureStderr();
    console.Print("general\n");
    console.Error("%d\n", 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "general\n7\n");
}

TEST(Console, TheConsoleOfTheProcess_IsThereAndCanBeReplaced) {
    MgrConsole console;
    IMgrConsole* const previous = SetMgrConsole(&console);
    EXPECT_NE(previous, nullptr);
    EXPECT_EQ(GetMgrConsole(), &console);
    EXPECT_EQ(SetMgrConsole(previous), &console);
    EXPECT_EQ(GetMgrConsole(), previous);
}

} // namespace
} // namespace Tolen::Tests
