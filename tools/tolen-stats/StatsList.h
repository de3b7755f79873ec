#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Tolen::StatsTool {

/// What a program has told of one of its statistics.
struct Statistic {
    std::string name;
    std::uint8_t kind = 0;      ///< a StatsProtocol::Kind, or what else was sent
    std::vector<double> values; ///< by frames, the latest last; times in seconds
};

/// The statistics of a program by their identifiers.
struct StatsList {
    std::map<std::int32_t, Statistic> statistics;

    /// Whether there is an identifier and each one below it.
    bool IsComplete() const { return !statistics.empty() && GetAnnounced() == statistics.size(); }
    /// How many there must be, as far as is known.
    std::size_t GetAnnounced() const {
        return statistics.empty() ? 0 : static_cast<std::size_t>(statistics.rbegin()->first) + 1;
    }
};

} // namespace Tolen::StatsTool
