#pragma once

#include "Positions.h"
#include "Resolver.h"

#include <cstddef>
#include <vector>

namespace Tolen::LanguageServer {

/// Lists of places, as "textDocument/definition" and its siblings answer.
/// @{
/// Where what a name means is declared, or the file that a directive names.
Json FindDefinitions(const Resolver& resolver, const Workspace& workspace,
                     const Positions& positions, std::size_t offset);

/// Of an interface the classes with it, of its methods theirs; of others the definition.
Json FindImplementations(const Resolver& resolver, const std::vector<SourcePtr>& sources,
                         const Positions& positions, std::size_t offset);
/// @}

} // namespace Tolen::LanguageServer
