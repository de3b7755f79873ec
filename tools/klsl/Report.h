#pragma once

#include "language/Diagnostic.h"

#include <vector>

namespace Tolen::Klsl {

/// Shows diagnostics on stderr, in colors when that is a terminal and NO_COLOR isn't set.
/// @return whether there was an error among them
bool Report(const std::vector<Language::Diagnostic>& diagnostics);

} // namespace Tolen::Klsl
