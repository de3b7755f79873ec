#include "render/ExactSum.h"
#include "render/Framebuffer.h"
#include "render/PixelSampler.h"
#include "render/RadixSort.h"
#include "render/Surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numeric>
#include <random>
#include <set>

namespace Tolen::OpenKL {
namespace {

TEST(ExactSum, Additions_InAnyOrder_GiveTheSameSum) {
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> exponent(-30.0f, 30.0f);
    std::vector<float> values;
    values.reserve(1000);
    for (int i = 0; i < 1000; ++i) {
        values.push_back((i % 2 == 0 ? 1.0f : -1.0f) * std::exp2(exponent(generator)));
    }
    const auto sum = [&] {
        ExactSum result;
        for (const float value : values) {
            result.Add(value);
        }
        return result;
    };
    const ExactSum first = sum();
    for (int i = 0; i < 10; ++i) {
        std::shuffle(values.begin(), values.end(), generator);
        EXPECT_EQ(first, sum());
    }
    double expected = std::accumulate(values.begin(), values.end(), 0.0);
    EXPECT_NEAR(expected, double{first.GetMean(1)}, std::fabs(expected) * 1e-6);
    EXPECT_NEAR(expected / 8.0, double{first.GetMean(8)}, std::fabs(expected) * 1e-6);
}

TEST(ExactSum, SingleValues_ComeBackOrAreHeldAndRounded) {
    struct Case {
        float value;
        float expected;
    };
    const float step = std::exp2(-56.0f);
    const float most = std::exp2(44.0f);
    const Case cases[] = {{0.0f, 0.0f},           {-0.0f, 0.0f},        {1.0f, 1.0f},
                          {-1.0f, -1.0f},         {0.1f, 0.1f},         {FLT_MIN, 0.0f},
                          {FLT_MAX, most},        {-FLT_MAX, -most},    {most, most},
                          {step, step},           {step * 0.75f, step}, {step * 0.25f, 0.0f},
                          {-step * 0.75f, -step}, {1.4e-45f, 0.0f},     {16777215.0f, 16777215.0f}};
    for (const Case& test : cases) {
        ExactSum sum;
        sum.Add(test.value);
        EXPECT_EQ(test.expected, sum.GetMean(1)) << test.value;
    }
}

TEST(ExactSum, HugeSums_StayAtTheBound) {
    ExactSum sum;
    sum.Add(std::exp2(44.0f));
    for (int i = 0; i < 60; ++i) {
        ExactSum copy = sum;
        sum.Add(copy);
    }
    EXPECT_EQ(std::exp2(70.0f), sum.GetMean(1));
}

TEST(Framebuffer, Attachments_ComeAndGo) {
    Framebuffer framebuffer(3, 2);
    float values[24];
    for (const int index : {-1, 16, 1000}) {
        EXPECT_FALSE(framebuffer.Attach(index));
        EXPECT_FALSE(framebuffer.Detach(index));
        EXPECT_FALSE(framebuffer.IsAttached(index));
        EXPECT_FALSE(framebuffer.Read(index, values));
    }
    EXPECT_FALSE(framebuffer.Read(15, values));
    EXPECT_TRUE(framebuffer.Attach(15));
    EXPECT_FALSE(framebuffer.Read(15, nullptr));
    EXPECT_TRUE(framebuffer.Read(15, values));
    const float light[] = {1, 2, 3, 4};
    framebuffer.Accumulate(15, 2, 1, 4, light);
    framebuffer.Accumulate(14, 2, 1, 4, light);
    framebuffer.AddSamples({2, 1, 1, 1}, 2);
    EXPECT_TRUE(framebuffer.Attach(15)) << "what is attached stays";
    EXPECT_TRUE(framebuffer.Read(15, values));
    EXPECT_EQ(0.5f, values[20]);
    EXPECT_EQ(2.0f, values[23]);
    EXPECT_EQ(0.0f, values[19]);
    EXPECT_EQ(2, framebuffer.GetSampleCount(2, 1));
    EXPECT_EQ(0, framebuffer.GetSampleCount(3, 1));
    EXPECT_EQ(0, framebuffer.GetSampleCount(0, -1));
    framebuffer.Clear();
    EXPECT_TRUE(framebuffer.IsAttached(15));
    EXPECT_EQ(0, framebuffer.GetSampleCount(2, 1));
    EXPECT_TRUE(framebuffer.Detach(15));
    EXPECT_FALSE(framebuffer.Detach(15));
}

TEST(Framebuffer, Add_OfAnotherSizeOrItself_IsRefused) {
    Framebuffer framebuffer(3, 2);
    EXPECT_FALSE(framebuffer.Add(framebuffer));
    EXPECT_FALSE(framebuffer.Add(Framebuffer(2, 3)));
    Framebuffer other(3, 2);
    EXPECT_TRUE(framebuffer.Attach(0));
    EXPECT_TRUE(other.Attach(1));
    other.AddSamples({0, 0, 3, 2}, 4);
    EXPECT_TRUE(framebuffer.Add(other)) << "attachments that one side lacks are passed over";
    EXPECT_EQ(4, framebuffer.GetSampleCount(1, 1));
    EXPECT_FALSE(framebuffer.IsAttached(1));
}

TEST(PixelSampler, Samples_OfAPixel_AreStratified) {
    const PixelSampler sampler(false);
    for (const std::uint32_t seed : {0u, 1u, 12345u, 0xffffffffu}) {
        // The first 16 samples fill a 4 x 4 grid, and every group of 16 behind does too.
        for (int group = 0; group < 4; ++group) {
            std::set<int> cells;
            std::set<int> columns;
            for (int i = 0; i < 16; ++i) {
                const auto position = sampler.GetPosition(10, 20, seed, group * 16 + i);
                const float u = position[0] - 10.0f;
                const float v = position[1] - 20.0f;
                ASSERT_TRUE(u >= 0.0f && u < 1.0f && v >= 0.0f && v < 1.0f);
                cells.insert(static_cast<int>(u * 4.0f) * 4 + static_cast<int>(v * 4.0f));
                columns.insert(static_cast<int>(u * 16.0f));
            }
            EXPECT_EQ(16u, cells.size());
            EXPECT_EQ(16u, columns.size());
        }
    }
    EXPECT_NE(sampler.GetPosition(0, 0, 1, 0), sampler.GetPosition(0, 0, 2, 0));
}

TEST(PixelSampler, FilteredSamples_FollowTheFilter) {
    const PixelSampler sampler(true);
    double mean = 0.0;
    double variance = 0.0;
    constexpr int count = 4096;
    for (int i = 0; i < count; ++i) {
        const double offset = double{sampler.GetPosition(0, 0, 7, i)[0]} - 0.5;
        ASSERT_LE(std::fabs(offset), 1.5);
        mean += offset / count;
        variance += offset * offset / count;
    }
    EXPECT_NEAR(0.0, mean, 0.002);
    // Of a Blackman-Harris window of this radius, by numerical integration.
    double weights = 0.0;
    double squares = 0.0;
    for (int i = 0; i < 3000; ++i) {
        const double x = (i + 0.5) / 1000.0 - 1.5;
        const double phase = M_PI * (x / 1.5 + 1.0);
        const double weight = 0.35875 - 0.48829 * std::cos(phase) + 0.14128 * std::cos(2 * phase) -
                              0.01168 * std::cos(3 * phase);
        weights += weight;
        squares += weight * x * x;
    }
    EXPECT_NEAR(squares / weights, variance, 0.002);
}

TEST(RadixSort, Keys_AreOrderedAndEqualOnesStay) {
    std::mt19937 generator(1);
    for (const std::uint32_t keys : {1u, 2u, 2048u, 2049u, 5000000u}) {
        std::vector<std::uint32_t> keyOf(3000);
        std::uniform_int_distribution<std::uint32_t> any(0, keys - 1);
        std::generate(keyOf.begin(), keyOf.end(), [&] { return any(generator); });
        std::vector<std::uint32_t> values(keyOf.size());
        std::iota(values.begin(), values.end(), 0u);
        std::vector<std::uint32_t> expected = values;
        std::stable_sort(expected.begin(), expected.end(),
                         [&](auto a, auto b) { return keyOf[a] < keyOf[b]; });
        std::vector<std::uint32_t> scratch;
        RadixSort(values, scratch, keys, [&](std::uint32_t value) { return keyOf[value]; });
        EXPECT_EQ(expected, values) << keys;
    }
}

TEST(Surface, Normalize_ScalesOrRefuses) {
    float direction[3] = {0.0f, 3e-30f, 4e-30f};
    EXPECT_TRUE(Normalize(direction));
    EXPECT_FLOAT_EQ(0.6f, direction[1]);
    float huge[3] = {FLT_MAX, FLT_MAX, 0.0f};
    EXPECT_TRUE(Normalize(huge));
    EXPECT_FLOAT_EQ(std::sqrt(0.5f), huge[0]);
    float none[3] = {0.0f, 0.0f, 0.0f};
    EXPECT_FALSE(Normalize(none));
    float bad[3] = {NAN, 0.0f, 1.0f};
    EXPECT_FALSE(Normalize(bad));
    float infinite[3] = {INFINITY, 0.0f, 1.0f};
    EXPECT_FALSE(Normalize(infinite));
}

TEST(Surface, LeaveSurface_MovesOriginsOnTheSurfaceToTheSideOfTheRay) {
    const float position[3] = {1.0f, -2.0f, 0.0f};
    const float normal[3] = {0.6f, 0.0f, 0.8f};
    for (const float side : {1.0f, -1.0f}) {
        const float direction[3] = {0.0f, 0.0f, side};
        float origin[3] = {1.0f, -2.0f, 0.0f};
        LeaveSurface(position, normal, direction, origin);
        EXPECT_GT(side * (origin[0] - 1.0f), 0.0f);
        EXPECT_LT(side * (origin[0] - 1.0f), 1e-4f);
        EXPECT_EQ(-2.0f, origin[1]);
        EXPECT_GT(side * origin[2], 0.0f);
    }
    const float up[3] = {0.0f, 0.0f, 1.0f};
    float away[3] = {1.0f, -2.0f, 0.001f};
    LeaveSurface(position, normal, up, away);
    EXPECT_EQ(0.001f, away[2]);
}

} // namespace
} // namespace Tolen::OpenKL
