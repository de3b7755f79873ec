#include "stats/StatsUnderTest.h"
#include "tools/Process.h"

#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace Tolen::Tests {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

/// A square that fills a picture of 64 x 64 pixels, seen by rays that go straight down.
std::string WriteScene() {
    WriteTemporary("flat.klsl", R"(
class Camera {
    int GetRayCount() { return 1; }
    void Render() { spawnRay(vec3(kl_PixelCoord, 5.0), vec3(0.0, 0.0, -1.0)); }
}
class Flat {
    input float gain = 1.0;
    void Shade() { accumulate(o_color, vec3(gain)); }
})");
    return WriteTemporary("scene.json", R"({
        "libraries": ["flat.klsl"],
        "shaders": [{"name": "camera", "class": "Camera"}, {"name": "flat", "class": "Flat"}],
        "effects": [{"name": "camera", "kind": "renderer", "root": "camera"},
                    {"name": "flat", "kind": "surface", "root": "flat"}],
        "primitives": [{"name": "square", "shape": "plane", "size": [200, 200], "effect": "flat"}],
        "renderer": "camera",
        "outputs": [{"name": "o_color", "type": "vec3", "attachment": 0}],
        "size": [64, 64], "samples": 32})");
}

std::vector<std::string> GetArguments(std::vector<std::string> more = {}) {
    more.insert(more.begin(), {WriteScene(), "-o", GetTemporary("out.png"), "-q"});
    return more;
}

TEST(TolenRenderStatistics, AreToldInTotalAndOfTheLastStep) {
    const Ended ended = RunProgram("tolen-render", GetArguments({"--stats", "--threads", "1"}));
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("statistics                          total        last "
                                        "slot\n"));
    // 4 tiles of 2 passes make 8 steps, of 1024 pixels and 16 samples each.
    EXPECT_THAT(ended.output, HasSubstr("\ncamera rays                        131072            "
                                        "16384\n"));
    EXPECT_THAT(ended.output, HasSubstr("\nframe batches                         512            "
                                        "   64\n"));
    EXPECT_THAT(ended.output, HasSubstr("\nvertex invocations                      4            "
                                        "    0\n"));
    EXPECT_THAT(ended.output, ContainsRegex("\nshade +[0-9]+\\.[0-9]+ ms +[0-9]+\\.[0-9]+ ms\n"));
    EXPECT_THAT(ended.output, Not(ContainsRegex("\nlink +0.000 ms")));
    EXPECT_THAT(ended.output, HasSubstr("\nlanes filled, frame               100.0 %          "
                                        "100.0 %\n"));
    EXPECT_EQ(RunProgram("tolen-render", GetArguments()).output, "");
}

TEST(TolenRenderStatistics, OfAnAnimation_HaveASlotForEachPicture) {
    const std::string file = GetTemporary("statistics.jsonl");
    std::vector<nlohmann::json> lines;
    {
        const StatsEnvironment environment(nullptr, file.c_str());
        const Ended ended = RunProgram(
            "tolen-render", GetArguments({"--animate", "flat.gain=0:1", "--frames", "70", "--size",
                                          "8x8", "--samples", "1", "--stats"}));
        EXPECT_EQ(ended.status, 0) << ended.errors;
        EXPECT_THAT(ended.output, ContainsRegex("\ncamera rays +4480 +64\n"));
        EXPECT_THAT(ended.output, ContainsRegex("\nprograms linked +2 +0\n"));
    }
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(nlohmann::json::parse(line));
    }
    ASSERT_EQ(lines.size(), 70u);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (const nlohmann::json& statistic : lines[i]) {
            ASSERT_EQ(statistic.at("value").size(), 1u) << i;
            if (statistic.at("name") == "camera rays") {
                EXPECT_EQ(statistic.at("value").at(0), 64) << i;
            } else if (statistic.at("name") == "programs linked") {
                EXPECT_EQ(statistic.at("value").at(0), i == 0 ? 2 : 0) << i;
            }
        }
    }
}

TEST(TolenRenderStatistics, OfASinglePicture_GoIntoTheFileByItsSteps) {
    const std::string file = GetTemporary("statistics.jsonl");
    const StatsEnvironment environment(nullptr, file.c_str());
    EXPECT_EQ(RunProgram("tolen-render", GetArguments({"--samples", "256"})).status, 0);
    std::ifstream stream(file);
    const nlohmann::json list = nlohmann::json::parse(stream);
    ASSERT_FALSE(list.empty());
    for (const nlohmann::json& statistic : list) {
        EXPECT_EQ(statistic.at("value").size(), 32u);
        if (statistic.at("name") == "camera rays") {
            std::int64_t sum = 0;
            for (const nlohmann::json& value : statistic.at("value")) {
                EXPECT_GT(value, 0);
                sum += value.get<std::int64_t>();
            }
            EXPECT_EQ(sum, 256 * 64 * 64);
        }
    }
}

TEST(TolenRenderStatistics, CanBeReadWhileAPictureIsRendered) {
    const StatsEnvironment environment("1", nullptr);
    const BackgroundProgram renderer("tolen-render", GetArguments({"--samples", "10000000"}));
    const Ended table = RunProgram("tolen-stats", {"--wait", "20"});
    EXPECT_EQ(table.status, 0) << table.errors;
    for (const char* name : {"camera rays", "ray batches", "uniform writes"}) {
        EXPECT_THAT(table.output, HasSubstr(std::string("  hit count  ") + name + "\n"));
    }
    for (const char* name : {"link", "intersect", "shade"}) {
        EXPECT_THAT(table.output, HasSubstr(std::string("  time       ") + name + "\n"));
    }
    EXPECT_THAT(RunProgram("tolen-stats", {"--wait", "20", "--json"}).output,
                HasSubstr("\"name\": \"shade\""));
}

TEST(TolenRenderStatistics, AClientThatStays_HoldsNoEndUp) {
    const StatsEnvironment environment("1", nullptr);
    BackgroundProgram renderer("tolen-render", GetArguments({"--samples", "400"}));
    IPCWrapperTCPIP client("localhost", StatsProtocol::kPort, StatsProtocol::kPort);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!client.IsConnected() && std::chrono::steady_clock::now() < end) {
        if (client.GetSocket() == -1) {
            client.Connect();
        }
        client.Poll();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_TRUE(client.IsConnected());
    EXPECT_EQ(renderer.Wait(), 0);
}

} // namespace
} // namespace Tolen::Tests
