#pragma once

#include <string>

namespace Tolen::StatsTool {

struct StatsList;

/// A line for each statistic, by identifiers, below a line of titles; "no statistics" for none.
/// Times are in milliseconds. Control characters in names are escaped.
std::string PrintTable(const StatsList& list);

/// {"statistics": [{"id": 0, "kind": "time", "name": "render", "values": [0.5]}]}, with values only
/// when the program has sent some; times are in seconds.
std::string PrintJson(const StatsList& list);

} // namespace Tolen::StatsTool
