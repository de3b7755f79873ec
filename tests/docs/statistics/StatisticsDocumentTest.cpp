// What docs/statistics.md shows, compiled and run. Every C++ block of the document stands here line
// by line, with any indentation, and the texts are what comes out.

#include "docs/Markdown.h"
#include "stats/StatsUnderTest.h"
#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdio>
#include <future>
#include <sstream>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;

constexpr const char* kDocument = "docs/statistics.md";

std::vector<std::string> GetTexts(const std::string& language, const std::string& mark = "") {
    std::vector<std::string> texts;
    for (const CodeBlock& block : ReadCodeBlocks(kDocument)) {
        if (block.language == language &&
            (mark.empty() ? block.marks.empty() : block.HasMark(mark))) {
            texts.push_back(block.text);
        }
    }
    return texts;
}

/// Without blank lines and indentation.
std::string Flatten(const std::string& code) {
    std::istringstream lines(code);
    std::string flat;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find_first_not_of(' ');
        flat += first == std::string::npos ? "" : line.substr(first) + "\n";
    }
    return flat;
}

class Text : public IPCWrapper {
public:
    void Stop() override {}
    void Listen() override {}
    void Connect() override {}
    int BytesAvailable() override { return 0; }
    void Poll() override {}
    void Close() override {}
    int Read(void*, int) override { return -1; }
    int Write(const void* buffer, int count) override {
        text.append(static_cast<const char*>(buffer), static_cast<std::size_t>(count));
        return count;
    }

    std::string text;
};

TEST(StatisticsDocument, ShowsCodeThatIsCompiledHere) {
    const std::string source =
        Flatten(ReadText(SourceFolder() + "/tests/docs/statistics/StatisticsDocumentTest.cpp"));
    const std::vector<std::string> blocks = GetTexts("cpp");
    EXPECT_GT(blocks.size(), 5u);
    for (const std::string& block : blocks) {
        EXPECT_THAT(source, HasSubstr(Flatten(block)));
    }
}

TEST(StatisticsDocument, ShowsWhatIsCountedAndWritten) {
    MgrStats* const manager = MgrStats::GetMgrStats();
    Stat* const rays = manager->CreateNewStat("rays", "", Stat::kKind_HitCount);
    Stat* const shade = manager->CreateNewStat("shade", "", Stat::kKind_Time);

    rays->Trigger();        // once
    rays->TriggerTimes(41); // many times
    shade->Trigger(0.25);   // seconds; counts as once

    manager->AdvanceSlot();
    rays->Clear();
    shade->Clear();

    testing::internal::CaptureStdout();
    const int last = (manager->GetSlot() + Stat::kCountSlots - 1) % Stat::kCountSlots;
    std::printf("%d rays, %.0f ms\n", rays->GetHitCount(last), shade->GetTime(last) * 1000.0);
    EXPECT_EQ(GetTexts("text"), std::vector{testing::internal::GetCapturedStdout()});

    Text written;
    manager->DumpStats(&written);
    EXPECT_EQ(GetTexts("json"), std::vector{written.text + "\n"});
    EXPECT_EQ(nlohmann::json::parse("[" + written.text + "]").size(), 2u);
}

TEST(StatisticsDocument, ShowsWhatTolenStatsPrints) {
    const std::vector<std::string> tables = GetTexts("text", "tolen-stats");
    ASSERT_EQ(tables.size(), 2u);
    {
        StatsUnderTest stats("1");
        stats.CreateNewStat("rays", "", Stat::kKind_HitCount);
        stats.CreateNewStat("shade", "", Stat::kKind_Time);
        EXPECT_EQ(RunProgram("tolen-stats", {"--wait", "20"}).output, tables[0]);
    }
    StatsUnderTest stats;
    StatsUnderTest* const manager = &stats;
    Stat* const rays = manager->CreateNewStat("rays", "", Stat::kKind_HitCount);
    Stat* const shade = manager->CreateNewStat("shade", "", Stat::kKind_Time);
    rays->TriggerTimes(42);
    shade->Trigger(0.25);
    manager->AdvanceSlot();
    auto output = std::async(std::launch::async, [] {
        return RunProgram("tolen-stats", {"--wait", "20"}).output;
    });
    {
        IPCWrapperTCPIP connection("localhost", StatsProtocol::kPort, StatsProtocol::kPort);
        connection.Listen(); // waits for a client
        manager->SendNewStats(&connection, nullptr);
        for (Stat* stat : {rays, shade}) {
            manager->DumpStat(&connection, stat, manager->GetSlot());
        }
    }
    EXPECT_EQ(output.get(), tables[1]);
}

TEST(StatisticsDocument, ListsTheOptionsOfTolenStats) {
    const std::string document = ReadText(SourceFolder() + "/" + kDocument);
    const std::string help = RunProgram("tolen-stats", {"--help"}).output;
    for (const char* option : {"--host", "--wait", "--json"}) {
        EXPECT_THAT(document, HasSubstr("| `" + std::string(option)));
        EXPECT_THAT(help, HasSubstr(option));
    }
}

} // namespace
} // namespace Tolen::Tests
