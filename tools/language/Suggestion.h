#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// The candidate that differs least from @p name by letters that were changed, left out, put in or
/// swapped, when that is few for a name of this length; the first of several. Letters that differ
/// in case alone count less. @return empty when none comes close, or @p name is itself a candidate
std::string Suggest(std::string_view name, const std::vector<std::string>& candidates);

} // namespace Tolen::Language
