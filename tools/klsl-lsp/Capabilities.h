#pragma once

#include "Positions.h"

namespace Tolen::LanguageServer {

/// What the server offers, as "initialize" answers.
Json MakeCapabilities(const Positions& positions);

} // namespace Tolen::LanguageServer
