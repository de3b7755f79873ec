#pragma once

#include "Positions.h"
#include "Source.h"

#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// What @p source declares, as "textDocument/documentSymbol" answers.
/// @param isHierarchical whether the client knows symbols inside each other; otherwise each tells
///        the name of what it is in
Json ListSymbols(const Source& source, const Positions& positions, bool isHierarchical);

/// Symbols of all sources whose names hold the letters of @p query in their order, whatever their
/// case, as "workspace/symbol" answers.
Json FindSymbols(const std::vector<SourcePtr>& sources, const Positions& positions,
                 const std::string& query);

} // namespace Tolen::LanguageServer
