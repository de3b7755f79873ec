#include "RecordingIPC.h"
#include "StatsUnderTest.h"
#include "TolenEffects/StatsProtocol.h"
#include "support/CapturedConsole.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

std::string Integer(std::int32_t value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

std::string NewStatistic(const std::string& name, char kind, int id) {
    return '\1' + Integer(static_cast<std::int32_t>(name.size())) + name + kind + Integer(id);
}

template <class T>
std::string Data(int id, const std::vector<T>& values) {
    const auto size = static_cast<std::int32_t>(values.size() * sizeof(T));
    const std::string bytes(reinterpret_cast<const char*>(values.data()),
                            static_cast<std::size_t>(size));
    return '\2' + Integer(id) + Integer(size) + bytes;
}

class MgrStatsTest : public testing::Test {
protected:
    Stat* Make(const char* name, int kind = Stat::kKind_HitCount) {
        return stats.CreateNewStat(name, "group", kind);
    }
    void Hit(Stat* stat, int count) {
        for (int i = 0; i < count; ++i) {
            stat->Trigger();
        }
    }

    StatsUnderTest stats;
    RecordingIPC wrapper;
};

TEST_F(MgrStatsTest, GetMgrStats_AlwaysAnswersTheSameObject) {
    EXPECT_NE(MgrStats::GetMgrStats(), nullptr);
    EXPECT_EQ(MgrStats::GetMgrStats(), MgrStats::GetMgrStats());
}

TEST_F(MgrStatsTest, NewStatistics_AreListedFromTheNewestToTheOldest) {
    EXPECT_EQ(stats.GetHead(), nullptr);
    Stat* const first = Make("first");
    Stat* const second = Make("second", Stat::kKind_Time);
    EXPECT_EQ(stats.GetHead(), second);
    EXPECT_EQ(second->GetNext(), first);
    EXPECT_EQ(first->GetNext(), nullptr);
    EXPECT_EQ(first->GetId(), 0);
    EXPECT_EQ(second->GetId(), 1);
    EXPECT_EQ(second->GetName(), "second");
    EXPECT_EQ(second->GetKind(), Stat::kKind_Time);
    EXPECT_EQ(Make(nullptr)->GetName(), "");
}

TEST_F(MgrStatsTest, Trigger_CountsInTheCurrentSlotOnly) {
    Stat* const hits = Make("hits");
    Stat* const time = Make("time", Stat::kKind_Time);
    Hit(hits, 3);
    stats.AdvanceSlot();
    Hit(hits, 1);
    time->Trigger(0.5);
    time->Trigger(0.25);
    EXPECT_EQ(hits->GetHitCount(0), 3);
    EXPECT_EQ(hits->GetHitCount(1), 1);
    EXPECT_EQ(time->GetHitCount(0), 0);
    EXPECT_EQ(time->GetHitCount(1), 2);
    EXPECT_EQ(time->GetTime(1), 0.75);
    time->Clear();
    EXPECT_EQ(time->GetHitCount(1), 0);
    EXPECT_EQ(time->GetTime(1), 0.0);
    EXPECT_EQ(hits->GetHitCount(0), 3);
}

TEST_F(MgrStatsTest, TriggerTimes_CountsManyAtOnce) {
    Stat* const hits = Make("hits");
    hits->TriggerTimes(40);
    hits->TriggerTimes(0);
    hits->Trigger();
    EXPECT_EQ(hits->GetHitCount(0), 41);
    EXPECT_EQ(hits->GetTime(0), 0.0);
}

TEST_F(MgrStatsTest, ACountThatPassesTheLargest_GoesOnFromTheSmallest) {
    Stat* const hits = Make("hits");
    hits->TriggerTimes(std::numeric_limits<int>::max());
    hits->Trigger();
    EXPECT_EQ(hits->GetHitCount(0), std::numeric_limits<int>::min());
}

TEST_F(MgrStatsTest, AdvanceSlot_ComesRoundAfter64FramesAndClearsNothing) {
    Stat* const hits = Make("hits");
    Hit(hits, 2);
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(stats.GetSlot(), i);
        stats.AdvanceSlot();
    }
    EXPECT_EQ(stats.GetSlot(), 0);
    Hit(hits, 1);
    EXPECT_EQ(hits->GetHitCount(0), 3);
}

TEST_F(MgrStatsTest, DumpOfOneNumber_IsTextAndResetsItUnlessToldNotTo) {
    Stat* const time = Make("time", Stat::kKind_Time);
    time->Trigger(1.5);
    time->SetClearAfterDump(false);
    time->DumpTime(&wrapper, 0);
    time->DumpHitCount(&wrapper, 0);
    EXPECT_EQ(wrapper.text, "1.5000001");
    time->SetClearAfterDump(true);
    time->DumpTime(&wrapper, 64);
    EXPECT_EQ(time->GetTime(0), 0.0);
    EXPECT_EQ(time->GetHitCount(0), 1);
    time->DumpHitCount(&wrapper, 0);
    EXPECT_EQ(time->GetHitCount(0), 0);
    wrapper.text.clear();
    time->Trigger(-1e300);
    time->DumpTime(&wrapper, 0);
    EXPECT_EQ(wrapper.text.size(), 1u + 301u + 7u);
}

TEST_F(MgrStatsTest, DumpStats_WithNothingNew_WritesNothing) {
    Hit(Make("hits"), 3);
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "");
    stats.AdvanceSlot();
    stats.DumpStats(&wrapper);
    EXPECT_NE(wrapper.text, "");
    wrapper.text.clear();
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "");
}

TEST_F(MgrStatsTest, DumpStats_WritesHitCountsOfAllFramesSinceTheLast) {
    Stat* const hits = Make("hits");
    Stat* const time = Make("time", Stat::kKind_Time);
    Hit(hits, 3);
    stats.AdvanceSlot();
    Hit(hits, 1);
    time->Trigger(7.0);
    stats.AdvanceSlot();
    Hit(hits, 9);
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "{ \"name\" : \"time\", \"value\":[0,1]},"
                            "{ \"name\" : \"hits\", \"value\":[3,1]}");
    EXPECT_EQ(hits->GetHitCount(0), 0);
    EXPECT_EQ(hits->GetHitCount(2), 9);
    wrapper.text.clear();
    stats.AdvanceSlot();
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "{ \"name\" : \"time\", \"value\":[0]},"
                            "{ \"name\" : \"hits\", \"value\":[9]}");
}

TEST_F(MgrStatsTest, DumpStats_OfARangePastTheLastSlot_WritesInTheOrderOfTheRing) {
    Stat* const hits = Make("hits");
    stats.AdvanceTo(62);
    stats.DumpStats(&wrapper);
    wrapper.text.clear();
    for (int i = 1; i <= 4; ++i) {
        Hit(hits, i);
        stats.AdvanceSlot();
    }
    EXPECT_EQ(stats.GetSlot(), 2);
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "{ \"name\" : \"hits\", \"value\":[1,2,3,4]}");
}

TEST_F(MgrStatsTest, DumpStats_After64Frames_WritesNothing) {
    Hit(Make("hits"), 3);
    for (int i = 0; i < 64; ++i) {
        stats.AdvanceSlot();
    }
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "");
}

TEST_F(MgrStatsTest, DumpStat_SendsTheKindOfNumberThatItIs) {
    Stat* const hits = Make("hits");
    Stat* const time = Make("time", Stat::kKind_Time);
    Stat* const other = Make("other", 7);
    Hit(hits, 2);
    time->Trigger(0.5);
    stats.AdvanceSlot();
    Hit(hits, 5);
    time->Trigger(0.25);
    stats.DumpStat(&wrapper, hits, 2);
    EXPECT_EQ(wrapper.text, Data<std::int32_t>(0, {2, 5}));
    wrapper.text.clear();
    stats.DumpStat(&wrapper, time, 2);
    EXPECT_EQ(wrapper.text, Data<double>(1, {0.5, 0.25}));
    wrapper.text.clear();
    stats.DumpStat(&wrapper, other, 2);
    EXPECT_EQ(wrapper.text, Data<double>(2, {}));
    EXPECT_EQ(hits->GetHitCount(0), 2);
}

TEST_F(MgrStatsTest, DumpStat_OfNoFrames_SendsAnEmptyMessage) {
    Stat* const hits = Make("hits");
    stats.AdvanceTo(5);
    stats.DumpStats(&wrapper);
    wrapper.text.clear();
    for (const int end : {5, 4, 0, -1}) {
        stats.DumpStat(&wrapper, hits, end);
        EXPECT_EQ(wrapper.text, Data<std::int32_t>(0, {})) << end;
        wrapper.text.clear();
    }
    stats.DumpStat(&wrapper, hits, 1000);
    EXPECT_EQ(wrapper.text, Data(0, std::vector<std::int32_t>(64 - 5)));
}

TEST_F(MgrStatsTest, SendNewStats_AnnouncesWhatWasMadeAfterTheOneGiven) {
    Stat* const first = Make("first");
    stats.SendNewStats(&wrapper, nullptr);
    EXPECT_EQ(wrapper.text, NewStatistic("first", 1, 0));
    wrapper.text.clear();
    stats.SendNewStats(&wrapper, first);
    EXPECT_EQ(wrapper.text, "");
    Make("a", Stat::kKind_Time);
    Make("");
    stats.SendNewStats(&wrapper, first);
    EXPECT_EQ(wrapper.text, NewStatistic("", 1, 2) + NewStatistic("a", 2, 1));
}

TEST_F(MgrStatsTest, NobodyToWriteTo_IsNoReasonToFail) {
    Stat* const hits = Make("hits");
    Hit(hits, 1);
    stats.AdvanceSlot();
    stats.DumpStats(nullptr);
    stats.DumpStat(nullptr, hits, 1);
    stats.DumpStat(&wrapper, nullptr, 1);
    stats.SendNewStats(nullptr, nullptr);
    stats.Dump();
    EXPECT_EQ(wrapper.text, "");
    stats.DumpStats(&wrapper);
    EXPECT_EQ(wrapper.text, "{ \"name\" : \"hits\", \"value\":[1]}");
}

TEST_F(MgrStatsTest, ManyThreadsThatMakeStatistics_LoseNoneAndKeepThemInOrder) {
    constexpr int kThreads = 4;
    constexpr int kEach = 500;
    std::atomic<bool> isDone{false};
    std::thread reader([&] {
        while (!isDone) {
            RecordingIPC other;
            stats.SendNewStats(&other, nullptr);
        }
    });
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([this] {
            for (int k = 0; k < kEach; ++k) {
                Make("stat");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    stats.SendNewStats(&wrapper, nullptr);
    isDone = true;
    reader.join();
    int id = kThreads * kEach;
    for (const Stat* stat = stats.GetHead(); stat != nullptr; stat = stat->GetNext()) {
        ASSERT_EQ(stat->GetId(), --id);
    }
    EXPECT_EQ(id, 0);
}

TEST(StatsFile, WithoutTheVariable_IsNotOpened) {
    StatsUnderTest stats;
    EXPECT_FALSE(stats.HasThread());
    EXPECT_EQ(MgrStats::GetDumpFile(), nullptr);
}

TEST(StatsFile, NamedByItsVariable_IsMadeEmpty) {
    const std::string file = testing::TempDir() + "/stats_file_test.dump";
    std::filesystem::remove(file);
    {
        StatsUnderTest stats(nullptr, file.c_str());
        EXPECT_FALSE(stats.HasThread());
        EXPECT_TRUE(std::filesystem::exists(file));
        stats.Shutdown();
        stats.Shutdown();
        EXPECT_EQ(MgrStats::GetDumpFile(), nullptr);
    }
    EXPECT_EQ(std::filesystem::file_size(file), 0u);
    std::filesystem::remove(file);
}

TEST(StatsFile, TakesWhatTheProgramWrites) {
    const std::string file = testing::TempDir() + "/stats_written_test.dump";
    StatsUnderTest stats(nullptr, file.c_str());
    ASSERT_NE(MgrStats::GetDumpFile(), nullptr);
    std::fputs("[]", MgrStats::GetDumpFile());
    stats.Shutdown();
    EXPECT_EQ(std::filesystem::file_size(file), 2u);
    std::filesystem::remove(file);
}

TEST(StatsFile, ThatCannotBeOpened_IsToldOfAndLeftAlone) {
    Tolen::Tests::CapturedConsole console;
    StatsUnderTest stats(nullptr, "/no/such/folder/file");
    EXPECT_EQ(console.GetGeneral(), "MgrStats::MgrStats Open File /no/such/folder/file\n");
    Stat* const hits = stats.CreateNewStat("hits", "", Stat::kKind_HitCount);
    hits->Trigger();
    EXPECT_EQ(hits->GetHitCount(0), 1);
}

} // namespace
