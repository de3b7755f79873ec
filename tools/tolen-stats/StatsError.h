#pragma once

#include <stdexcept>

namespace Tolen::StatsTool {

/// Why there is no list. It ends the run, so it travels as an exception up to main.
class StatsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The connection was refused or ended before a first byte, which another try may change.
class NobodyServes : public StatsError {
public:
    using StatsError::StatsError;
};

} // namespace Tolen::StatsTool
