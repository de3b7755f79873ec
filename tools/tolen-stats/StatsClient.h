#pragma once

#include "StatsList.h"

#include <string>

namespace Tolen::StatsTool {

/// Gets the list of the program that offers its statistics on a machine.
/// @param wait seconds in which to try again while nobody listens
/// @throws StatsError
StatsList GetStatistics(const std::string& host, double wait);

} // namespace Tolen::StatsTool
