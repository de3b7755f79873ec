#include "TolenCore/Clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace Tolen::Tests {
namespace {

TEST(Clock, TheCounter_RunsAtItsFrequency) {
    const long long start = ReadCounter();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const double seconds =
        static_cast<double>(ReadCounter() - start) / static_cast<double>(CounterFrequency());
    EXPECT_GE(seconds, 0.02);
    EXPECT_LT(seconds, 20.0);
}

TEST(Clock, DebuggerOutput_GoesToStderrAsItStands) {
    testing::internal::CaptureStderr();
    WriteDebuggerOutput("100%s\n");
    WriteDebuggerOutput(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "100%s\n");
}

} // namespace
} // namespace Tolen::Tests
