#pragma once

#include "TolenEffects/Syntax.h"

#include <string>

namespace Tolen::Effects {

/// Where a node stands, for messages: the name of the file without its folders, ":" and the first
/// line. A range without a file gives "<generated>" for the name.
std::string LocationText(const LocationRange& range);

} // namespace Tolen::Effects
