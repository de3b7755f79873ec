#pragma once

#include "CompletionList.h"

#include <cstddef>

namespace Tolen::LanguageServer {

/// What can be typed at @p offset, as "textDocument/completion" answers. All of it, also what
/// doesn't begin as the word there does: choosing is the client's work.
Json MakeCompletions(const Resolver& resolver, const Workspace& workspace,
                     const Positions& positions, const CompletionStyle& style, std::size_t offset);

} // namespace Tolen::LanguageServer
