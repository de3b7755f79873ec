#include "StatsClient.h"

#include "StatsError.h"
#include "StatsReader.h"

#include "TolenEffects/IPCWrapperTCPIP.h"
#include "TolenEffects/StatsProtocol.h"

#include "TolenCore/Format.h"

#include <chrono>
#include <poll.h>
#include <thread>

namespace Tolen::StatsTool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// What is behind a wall that swallows all is not waited for any longer.
constexpr milliseconds kPatience(5'000);
constexpr milliseconds kBetweenTries(20);

/// @throws NobodyServes
void _Connect(IPCWrapperTCPIP& connection, const std::string& host) {
    const Clock::time_point end = Clock::now() + kPatience;
    connection.Connect();
    while (!connection.IsConnected() && connection.GetSocket() != -1 && Clock::now() < end) {
        pollfd waited{connection.GetSocket(), POLLOUT, 0};
        poll(&waited, 1, static_cast<int>(kBetweenTries.count()));
        connection.Poll();
    }
    if (!connection.IsConnected()) {
        throw NobodyServes(
            Format("nobody listens on port %d of '%s'", StatsProtocol::kPort, host.c_str()));
    }
}

} // namespace

StatsList GetStatistics(const std::string& host, double wait) {
    const Clock::time_point end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                     std::chrono::duration<double>(wait));
    for (;;) {
        IPCWrapperTCPIP connection(host, StatsProtocol::kPort, StatsProtocol::kPort);
        try {
            _Connect(connection, host);
            return StatsReader(connection).ReadList();
        } catch (const NobodyServes&) {
            if (Clock::now() >= end) {
                throw;
            }
        }
        std::this_thread::sleep_for(kBetweenTries);
    }
}

} // namespace Tolen::StatsTool
