#pragma once

#include "Positions.h"
#include "Source.h"

namespace Tolen::LanguageServer {

/// The edits that lay @p source out anew, as "textDocument/formatting" answers: one for the lines
/// between the first and the last that change, none when nothing does.
Json MakeFormatting(const Source& source, const Positions& positions);

} // namespace Tolen::LanguageServer
