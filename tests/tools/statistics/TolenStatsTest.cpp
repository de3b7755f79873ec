#include "stats/StatsUnderTest.h"
#include "tools/Process.h"
#include "tools/statistics/ScriptedServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <limits>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Ended Ask(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.end(), {"--wait", "20"});
    return RunProgram("tolen-stats", arguments);
}

Ended AskFor(const std::string& script,
             ScriptedServer::End end = ScriptedServer::kEnd_WhenClientDoes) {
    const ScriptedServer server(script, end);
    return Ask();
}

TEST(TolenStats, ARunningProgram_IsListedByIdentifiers) {
    StatsUnderTest stats("1");
    stats.CreateNewStat("rays", "", Stat::kKind_HitCount);
    stats.CreateNewStat("shade", "", Stat::kKind_Time);
    stats.CreateNewStat("", "", 7);
    const Ended ended = Ask();
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_EQ(ended.output, "   id  kind       name\n"
                            "    0  hit count  rays\n"
                            "    1  time       shade\n"
                            "    2  kind 8     \n");
    EXPECT_EQ(ended.errors, "");
    // The program listens again.
    EXPECT_EQ(Ask().output, ended.output);
}

TEST(TolenStats, ARunningProgramWithoutStatistics_IsNotWaitedForLong) {
    const StatsUnderTest stats("1");
    const auto begin = std::chrono::steady_clock::now();
    const Ended ended = Ask();
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output, "no statistics\n");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(Ask({"--json"}).output, "{\n  \"statistics\": []\n}\n");
}

TEST(TolenStats, ManyStatistics_AllArrive) {
    StatsUnderTest stats("1");
    for (int i = 0; i < 20000; ++i) {
        stats.CreateNewStat("a statistic with a name of some length", "", Stat::kKind_Time);
    }
    const auto list = nlohmann::json::parse(Ask({"--json"}).output).at("statistics");
    ASSERT_EQ(list.size(), 20000u);
    EXPECT_EQ(list.at(19999).at("id"), 19999);
}

TEST(TolenStats, Json_HasTheSameList) {
    const ScriptedServer server(NewStatistic(1, "sh\"ade", StatsProtocol::kKind_Time) +
                                NewStatistic(0, "rays \xff"));
    EXPECT_EQ(nlohmann::json::parse(Ask({"--json"}).output), nlohmann::json::parse(R"({
        "statistics": [{"id": 0, "kind": "hit count", "name": "rays )"
                                                                                   "\xef\xbf\xbd"
                                                                                   R"("},
                       {"id": 1, "kind": "time", "name": "sh\"ade"}]})"));
}

TEST(TolenStats, ValuesThatAreSent_ArePrinted) {
    const std::string script =
        NewStatistic(1, "shade", StatsProtocol::kKind_Time) + NewStatistic(0, "rays") +
        NewStatistic(2, "idle") + StatisticData<std::int32_t>(0, {3, -5}) +
        StatisticData<double>(1, {0.5, 0.25}) + StatisticData<std::int32_t>(2, {}) +
        StatisticData<std::int32_t>(0, {2147483647});
    EXPECT_EQ(AskFor(script).output, "   id  kind       name   values, times in ms\n"
                                     "    0  hit count  rays   3 -5 2147483647\n"
                                     "    1  time       shade  500.000 250.000\n"
                                     "    2  hit count  idle\n");
    const ScriptedServer server(script, ScriptedServer::kEnd_AtOnce);
    const auto list = nlohmann::json::parse(Ask({"--json"}).output).at("statistics");
    EXPECT_EQ(list.at(0).at("values").dump(), "[3,-5,2147483647]");
    EXPECT_EQ(list.at(1).at("values").dump(), "[0.5,0.25]");
    EXPECT_FALSE(list.at(2).contains("values"));
}

TEST(TolenStats, OfManyValues_TheLatestStay) {
    std::string script = NewStatistic(0, "rays");
    for (std::int32_t frame = 0; frame < 1000; ++frame) {
        script += StatisticData<std::int32_t>(0, {frame});
    }
    const ScriptedServer server(script);
    const auto values =
        nlohmann::json::parse(Ask({"--json"}).output).at("statistics").at(0).at("values");
    ASSERT_EQ(values.size(), 64u);
    EXPECT_EQ(values.at(0), 1000 - 64);
    EXPECT_EQ(values.at(63), 999);
}

TEST(TolenStats, ControlCharactersOfNames_ReachNoTerminal) {
    EXPECT_THAT(AskFor(NewStatistic(0, "\x1b[2J\nred\x7f")).output,
                HasSubstr("hit count  \\x1b[2J\\x0ared\\x7f\n"));
}

TEST(TolenStats, WhatIsNoSuchProtocol_IsRefusedWithAReason) {
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    const struct {
        const char* name;
        std::string script;
        const char* reason;
    } cases[] = {
        {"another protocol", "HTTP/1.1 400 Bad Request\r\n", "there is no message 72"},
        {"no message", std::string(1, '\0'), "there is no message 0"},
        {"a name without end", '\1' + Bytes(kMost), "a name of 2147483647 bytes"},
        {"a name above the limit", '\1' + Integer(1025), "a name of 1025 bytes"},
        {"a negative length", '\1' + Bytes(-1), "a name of -1 bytes"},
        {"an absurd identifier", NewStatistic(kMost, "a"), "the identifier 2147483647"},
        {"a negative identifier", NewStatistic(-2, "a"), "the identifier -2"},
        {"a list above the limit", NewStatistic(65536, "a"), "the identifier 65536"},
        {"an identifier twice", NewStatistic(4, "a") + NewStatistic(4, "a"),
         "the identifier 4 for a second time"},
        {"values of nothing", NewStatistic(0, "a") + StatisticData<std::int32_t>(1, {1}),
         "values of 1, which it never told of"},
        {"a part of a value", NewStatistic(0, "a") + StatisticData<char>(0, {'1'}),
         "1 bytes of values of 0"},
        {"too many values",
         NewStatistic(0, "a") + StatisticData<std::int32_t>(0, std::vector<std::int32_t>(65)),
         "260 bytes of values of 0"},
        {"values of no length", NewStatistic(0, "a") + '\2' + Integer(0) + Bytes(-4),
         "-4 bytes of values of 0"},
        {"values of another kind", NewStatistic(0, "a", 9) + StatisticData<std::int32_t>(0, {1}),
         "4 bytes of values of 0"},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.name);
        const Ended ended = AskFor(bad.script);
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.output, "");
        EXPECT_THAT(ended.errors, StartsWith("tolen-stats: what listens there sends no "
                                             "statistics: "));
        EXPECT_THAT(ended.errors, HasSubstr(bad.reason));
    }
}

TEST(TolenStats, NamesAtTheLimit_AreTaken) {
    const std::string name(1024, 'n');
    EXPECT_THAT(AskFor(NewStatistic(0, name)).output, HasSubstr(name));
}

TEST(TolenStats, AnEndAtAnyByte_IsToldWithHowFarItCame) {
    const std::string script = NewStatistic(1, "b") + NewStatistic(0, "a");
    for (std::size_t length = 1; length < script.size(); ++length) {
        const Ended ended = AskFor(script.substr(0, length), ScriptedServer::kEnd_AtOnce);
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.errors, length < script.size() / 2
                                    ? "tolen-stats: the connection ended early, with 0 of 0 "
                                      "statistics told\n"
                                    : "tolen-stats: the connection ended early, with 1 of 2 "
                                      "statistics told\n")
            << length;
    }
    EXPECT_EQ(AskFor(script, ScriptedServer::kEnd_AtOnce).status, 0);
}

TEST(TolenStats, AServerThatStopsInTheMiddle_IsGivenUp) {
    const Ended ended = AskFor(NewStatistic(5, "a") + '\1');
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors, "tolen-stats: no more comes from the program, with 1 of 6 statistics "
                            "told\n");
}

TEST(TolenStats, AConnectionThatEndsAtOnce_IsTriedAgainWhileThereIsTime) {
    {
        const ScriptedServer server("", ScriptedServer::kEnd_AtOnce);
        const Ended ended = RunProgram("tolen-stats", {"--wait", "0.5"});
        EXPECT_EQ(ended.status, 1);
    }
    const ScriptedServer closing("", ScriptedServer::kEnd_AtOnce);
    const ScriptedServer next(NewStatistic(0, "rays"));
    EXPECT_THAT(Ask().output, HasSubstr("rays"));
}

TEST(TolenStats, WithNobodyThere_SaysSo) {
    const Ended ended = RunProgram("tolen-stats", {});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors, "tolen-stats: nobody listens on port 8881 of 'localhost'\n");
    EXPECT_EQ(RunProgram("tolen-stats", {"--host", "no such machine"}).errors,
              "tolen-stats: nobody listens on port 8881 of 'no such machine'\n");
}

TEST(TolenStats, Misuse_EndsWithStatus2) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"file"},
                                                      {"--wait", "-1"},
                                                      {"--wait", "long"},
                                                      {"--port", "1"}}) {
        EXPECT_EQ(RunProgram("tolen-stats", arguments).status, 2);
    }
    EXPECT_EQ(RunProgram("tolen-stats", {"--help"}).status, 0);
}

} // namespace
} // namespace Tolen::Tests
