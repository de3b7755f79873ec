#include "TolenEffects/Profiler.h"

#include "ProfileScope.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

namespace Tolen::Effects {
namespace {

TEST(Profiler, Samples_AreKeptByNameInTheirOrder) {
    Profiler profiler;
    profiler.AddTimeSample("b", 2.0f);
    profiler.AddTimeSample("a", 1.5f);
    profiler.AddTimeSample("b", 0.25f);
    EXPECT_EQ(profiler.GetTimeSamples(), (Profiler::Samples{{"a", {1.5f}}, {"b", {2.0f, 0.25f}}}));
}

TEST(Profiler, Dump_WritesALineForEachNameToTheDebuggerOutput) {
    Profiler profiler;
    profiler.AddTimeSample("Update 100%", 2.0f);
    profiler.AddTimeSample("Update 100%", 0.25f);
    profiler.AddTimeSample("Apply", 1.5f);
    testing::internal::CaptureStderr();
    profiler.Dump();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Apply (ms):1.5\nUpdate 100% (ms):2, 0.25\n");
}

TEST(ProfileScope, ItsEnd_AddsTheMillisecondsUnderItsName) {
    Profiler profiler;
    {
        auto name = std::make_unique<std::string>("scope");
        const ProfileScope scope(*name, &profiler);
        name.reset();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_TRUE(profiler.GetTimeSamples().empty());
    }
    ASSERT_EQ(profiler.GetTimeSamples().count("scope"), 1u);
    const float milliseconds = profiler.GetTimeSamples().at("scope").at(0);
    EXPECT_GE(milliseconds, 10.0f);
    EXPECT_LT(milliseconds, 10000.0f);
}

TEST(ProfileScope, WithoutAProfiler_NothingHappens) {
    const ProfileScope scope("scope", nullptr);
}

} // namespace
} // namespace Tolen::Effects
