#pragma once

/// @file
/// What a program with statistics sends to who connects to it.

#include <cstdint>

/// The bytes that a program with statistics sends to who connects to it.
///
/// The program listens on TCP port StatsProtocol::kPort of its machine, for one client at a time.
/// It sends one NewStatistic message for each statistic, the most recently created first, and then
/// waits for a byte or for the end of the connection; after either it listens afresh. Identifiers
/// count from 0 in the order of creation, so the first message has the highest, and the list is
/// complete with identifier 0. Nothing is sent when there are no statistics.
///
/// Messages have no padding; integers are 32 bits wide and, as floating-point numbers are, in the
/// order of bytes of the machine that sends.
///
/// | NewStatistic       | StatisticData            |
/// |--------------------|--------------------------|
/// | 1 byte: 1          | 1 byte: 2                |
/// | 4 bytes: length n  | 4 bytes: identifier      |
/// | n bytes: name      | 4 bytes: length n        |
/// | 1 byte: kind       | n bytes: values          |
/// | 4 bytes: identifier|                          |
///
/// Values are one `int` for each frame of a hit count, and one `double` for each frame of a time,
/// in seconds. The server of MgrStats sends no StatisticData; programs send it with
/// MgrStats::DumpStat.
namespace StatsProtocol {

/// The TCP port on which a program with statistics listens.
constexpr int kPort = 8881;

/// The first byte of a message.
enum Message : std::uint8_t {
    kMessage_NewStatistic = 1,  ///< a statistic: its name, kind and identifier
    kMessage_StatisticData = 2, ///< values of a statistic
};

/// The kind of a statistic, as messages tell it.
enum Kind : std::uint8_t {
    kKind_HitCount = 1, ///< a Stat::kKind_HitCount
    kKind_Time = 2,     ///< a Stat::kKind_Time
};

} // namespace StatsProtocol
