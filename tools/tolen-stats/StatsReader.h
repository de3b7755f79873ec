#pragma once

#include "StatsList.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

class IPCWrapperTCPIP;

namespace Tolen::StatsTool {

/// Reads the messages of StatsProtocol.h from a connection, and trusts none of them: the names,
/// identifiers and lengths that it takes are limited, as is the time.
class StatsReader {
public:
    // Limits of what is taken for statistics.
    static constexpr std::int32_t kMaxStatistics = 65'536;
    static constexpr std::int32_t kMaxNameLength = 1'024;
    /// Values that are kept of each, and the most that one message may have: the frames that a
    /// program remembers.
    static constexpr std::size_t kMaxValues = 64;

    /// @param connection borrowed
    explicit StatsReader(IPCWrapperTCPIP& connection) : _connection(connection) {}

    /// Reads until the list is complete and nothing follows. A program without statistics sends
    /// nothing at all: its list is empty.
    /// @throws StatsError for what is no such protocol, and for a list that stays incomplete;
    ///         NobodyServes when the connection ends without a byte
    StatsList ReadList();

private:
    using Clock = std::chrono::steady_clock;

    bool _WaitForMessage() const;
    void _ReadMessage();
    void _ReadNewStatistic();
    void _ReadStatisticData();

    void _Read(void* data, std::size_t size);
    template <class T>
    T _Read() {
        T value;
        _Read(&value, sizeof value);
        return value;
    }
    template <class T>
    void _ReadValues(std::size_t count, Statistic& statistic);

    bool _WaitForBytes(Clock::time_point end) const;
    [[noreturn]] void _Fail(const char* reason) const;

    IPCWrapperTCPIP& _connection;
    StatsList _list;
    Clock::time_point _end; ///< of all patience
};

} // namespace Tolen::StatsTool
