#pragma once

#include "Description.h"
#include "Positions.h"
#include "Resolver.h"

#include <cstddef>

namespace Tolen::LanguageServer {

/// What the name at @p offset means, as "textDocument/hover" answers; null when nothing is known.
Json MakeHover(const Resolver& resolver, const Positions& positions, TextFormat format,
               std::size_t offset);

} // namespace Tolen::LanguageServer
