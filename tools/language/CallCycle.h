#pragma once

#include "language/PlacedMessage.h"
#include "language/SourceIndex.h"

#include <optional>
#include <string>

namespace Tolen::Language {

/// Finds what the linker means by a message about functions that call one another. However it came
/// to them, they are told from the first by file and line, so that they are told once. Of long
/// cycles the linker tells a part; these begin where it began.
/// @return nothing for other messages, and when a function is in no library that is known
std::optional<PlacedMessage> PlaceCallCycle(const std::string& text, SourceIndex& index);

} // namespace Tolen::Language
