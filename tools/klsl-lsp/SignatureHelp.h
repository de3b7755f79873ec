#pragma once

#include "Description.h"
#include "Resolver.h"

#include <cstddef>

namespace Tolen::LanguageServer {

/// The signatures that the call around @p offset may mean, as "textDocument/signatureHelp" answers;
/// null outside of calls.
Json MakeSignatureHelp(const Resolver& resolver, TextFormat format, std::size_t offset);

} // namespace Tolen::LanguageServer
