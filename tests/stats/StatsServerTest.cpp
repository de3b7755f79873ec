#include "StatsUnderTest.h"
#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kPort = StatsProtocol::kPort;

/// Whether the first byte of a list comes. One who waits in the queue when the server takes another
/// client loses the connection.
bool IsServed(IPCWrapper& client) {
    for (int i = 0; i < 200 && client.BytesAvailable() == 0; ++i) {
        std::this_thread::sleep_for(milliseconds(1));
    }
    return client.BytesAvailable() > 0;
}

/// Connects as soon as somebody listens. @return null when nobody does within @p patience
std::unique_ptr<IPCWrapperTCPIP> Connect(Clock::duration patience = seconds(20)) {
    const auto end = Clock::now() + patience;
    auto client = std::make_unique<IPCWrapperTCPIP>("localhost", kPort, kPort);
    while (!client->IsConnected()) {
        if (client->GetSocket() == -1) {
            if (Clock::now() > end) {
                return nullptr;
            }
            std::this_thread::sleep_for(milliseconds(1));
            client->Connect();
        }
        client->Poll();
        if (client->IsConnected() && !IsServed(*client)) {
            client->Close();
        }
    }
    return client;
}

struct Announced {
    std::string name;
    int kind;
    int id;

    bool operator==(const Announced&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Announced& announced) {
    return stream << announced.id << ' ' << announced.name << ' ' << announced.kind;
}

template <class T>
T Read(IPCWrapper& client) {
    T value{};
    EXPECT_EQ(client.Read(&value, sizeof value), static_cast<int>(sizeof value));
    return value;
}

Announced ReadStatistic(IPCWrapper& client) {
    EXPECT_EQ(Read<std::uint8_t>(client), StatsProtocol::kMessage_NewStatistic);
    std::string name(static_cast<std::size_t>(Read<std::int32_t>(client)), '\0');
    client.Read(name.data(), static_cast<int>(name.size()));
    const int kind = Read<std::uint8_t>(client);
    return {name, kind, Read<std::int32_t>(client)};
}

std::vector<Announced> ReadList(IPCWrapper& client) {
    std::vector<Announced> list;
    do {
        list.push_back(ReadStatistic(client));
    } while (!testing::Test::HasFailure() && list.back().id != 0);
    return list;
}

/// How long it takes from the call of Shutdown to the end of the server's thread.
double SecondsToEnd(std::unique_ptr<StatsUnderTest> stats) {
    const auto begin = Clock::now();
    stats->Shutdown();
    stats.reset();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

class StatsServerTest : public testing::Test {
protected:
    StatsServerTest() : stats(std::make_unique<StatsUnderTest>("")) {
        stats->CreateNewStat("rays", "", Stat::kKind_HitCount);
        stats->CreateNewStat("time", "", Stat::kKind_Time);
    }

    const std::vector<Announced> list = {{"time", StatsProtocol::kKind_Time, 1},
                                         {"rays", StatsProtocol::kKind_HitCount, 0}};
    std::unique_ptr<StatsUnderTest> stats;
};

TEST_F(StatsServerTest, AClient_GetsTheListAndEndsWithAByte) {
    EXPECT_TRUE(stats->HasThread());
    const auto client = Connect();
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(ReadList(*client), list);
    EXPECT_EQ(client->BytesAvailable(), 0);
    const char byte = 'x';
    EXPECT_EQ(client->Write(&byte, 1), 1);
    char rest = 0;
    EXPECT_EQ(client->Read(&rest, 1), -1);
}

TEST_F(StatsServerTest, AClientThatLeavesAtOnce_MakesRoomForTheNext) {
    ASSERT_NE(Connect(), nullptr);
    const auto client = Connect();
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(ReadList(*client), list);
}

TEST_F(StatsServerTest, NewStatistics_ComeWithTheNextConnection) {
    EXPECT_EQ(ReadList(*Connect()).size(), 2u);
    stats->CreateNewStat("more", "", Stat::kKind_HitCount);
    EXPECT_EQ(ReadList(*Connect()).size(), 3u);
}

TEST_F(StatsServerTest, AThousandClients_AreServedOneAfterAnother) {
    for (int i = 0; i < 1000; ++i) {
        const auto client = Connect();
        ASSERT_NE(client, nullptr) << i;
        if (i % 100 == 0) {
            ASSERT_EQ(ReadList(*client), list);
        }
    }
}

TEST_F(StatsServerTest, AFloodOfBytes_EndsTheConnectionAndNothingElse) {
    {
        const auto client = Connect();
        ASSERT_NE(client, nullptr);
        const std::vector<char> bytes(1 << 20, 'x');
        for (int i = 0; i < 16 && client->Write(bytes.data(), 1 << 20) > 0; ++i) {
        }
    }
    EXPECT_EQ(ReadList(*Connect()), list);
}

TEST_F(StatsServerTest, AClientThatNeverReads_HoldsNoShutdownUp) {
    const std::string name(1 << 16, 'n');
    for (int i = 0; i < 1000; ++i) {
        stats->CreateNewStat(name.c_str(), "", Stat::kKind_HitCount);
    }
    const auto client = Connect();
    ASSERT_NE(client, nullptr);
    while (client->BytesAvailable() < 1000) {
        std::this_thread::sleep_for(milliseconds(1));
    }
    EXPECT_LT(SecondsToEnd(std::move(stats)), 1.0);
}

TEST_F(StatsServerTest, Shutdown_WakesAServerThatWaitsForAByte) {
    const auto client = Connect();
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(ReadList(*client), list);
    EXPECT_LT(SecondsToEnd(std::move(stats)), 1.0);
    char byte = 0;
    EXPECT_EQ(client->Read(&byte, 1), -1);
}

TEST_F(StatsServerTest, Shutdown_WakesAServerThatWaitsForAClient) {
    ASSERT_NE(Connect(), nullptr);
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_LT(SecondsToEnd(std::move(stats)), 1.0);
    EXPECT_EQ(Connect(milliseconds(50)), nullptr);
}

TEST_F(StatsServerTest, Shutdown_AtOnceAndTwice_IsFine) {
    for (int i = 0; i < 20; ++i) {
        stats->Shutdown();
        EXPECT_FALSE(stats->HasThread());
        EXPECT_LT(SecondsToEnd(std::move(stats)), 1.0);
        stats = std::make_unique<StatsUnderTest>("");
    }
}

TEST_F(StatsServerTest, TheFile_IsNotOpenedBesidesTheServer) {
    const std::string file = testing::TempDir() + "/stats_server_test.dump";
    std::filesystem::remove(file);
    stats.reset();
    stats = std::make_unique<StatsUnderTest>("1", file.c_str());
    EXPECT_TRUE(stats->HasThread());
    EXPECT_FALSE(std::filesystem::exists(file));
}

/// Holds the port as another program would.
class PortHolder {
public:
    PortHolder() {
        while (_other.GetPortFound() == -1) {
            std::this_thread::sleep_for(milliseconds(1));
        }
    }
    ~PortHolder() { _other.Stop(); }

private:
    IPCWrapperTCPIP _other{"localhost", kPort, kPort};
    std::future<void> _listening = std::async(std::launch::async, [this] {
        // The test before may be just about to give it back.
        do {
            _other.Listen();
        } while (_other.IsPortTaken());
    });
};

TEST(StatsServer, WithItsPortTaken_SaysSoOnceAndTakesItWhenItIsFree) {
    auto holder = std::make_unique<PortHolder>();
    testing::internal::CaptureStderr();
    auto stats = std::make_unique<StatsUnderTest>("1");
    stats->CreateNewStat("rays", "", Stat::kKind_HitCount)->Trigger();
    std::this_thread::sleep_for(milliseconds(1300));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "MgrStats::ServerLoop Port 8881 Is Taken\n");
    EXPECT_EQ(stats->GetHead()->GetHitCount(0), 1);
    holder.reset();
    EXPECT_EQ(ReadList(*Connect()).size(), 1u);
    EXPECT_LT(SecondsToEnd(std::move(stats)), 1.0);
}

TEST(StatsServer, ThatWaitsForItsPort_EndsAtOnce) {
    const PortHolder holder;
    testing::internal::CaptureStderr();
    auto stats = std::make_unique<StatsUnderTest>("1");
    std::this_thread::sleep_for(milliseconds(100));
    EXPECT_LT(SecondsToEnd(std::move(stats)), 0.9);
    testing::internal::GetCapturedStderr();
}

TEST(TcpConnection, CountsOfNothing_AnswerNothing) {
    IPCWrapperTCPIP connection("localhost", kPort, kPort);
    char byte = 0;
    EXPECT_EQ(connection.Read(&byte, 0), 0);
    EXPECT_EQ(connection.Write(&byte, 0), 0);
    EXPECT_EQ(connection.Read(&byte, 1), -1);
    EXPECT_EQ(connection.Write(&byte, 1), -1);
    EXPECT_EQ(connection.BytesAvailable(), 0);
    EXPECT_EQ(connection.GetSocket(), -1);
    connection.Poll();
    connection.Close();
    EXPECT_FALSE(connection.IsConnected());
}

TEST(TcpConnection, ToAMachineThatIsNone_StaysClosed) {
    IPCWrapperTCPIP connection("no such machine", kPort, kPort);
    connection.Connect();
    EXPECT_EQ(connection.GetSocket(), -1);
}

TEST(TcpConnection, OnAPortThatIsNone_NeitherListensNorConnects) {
    for (const int port : {0, -1, 65536, 65536 + kPort}) {
        IPCWrapperTCPIP connection("localhost", port, port);
        connection.Listen();
        EXPECT_EQ(connection.GetPortFound(), -1) << port;
        connection.Connect();
        EXPECT_EQ(connection.GetSocket(), -1) << port;
    }
}

TEST(TcpConnection, ThatWasStopped_NeitherListensNorConnects) {
    IPCWrapperTCPIP connection("localhost", kPort, kPort);
    connection.Stop();
    connection.Listen();
    EXPECT_EQ(connection.GetPortFound(), -1);
    connection.Connect();
    EXPECT_EQ(connection.GetSocket(), -1);
}

} // namespace
