#pragma once

#include "Protocol.h"

#include <string>

namespace Tolen::LanguageServer {

/// What can be done about messages that the server has published about a document, as
/// "textDocument/codeAction" answers: to write the name that was most likely meant.
/// @param diagnostics as the client gives them back
Json MakeCodeActions(const std::string& uri, const Json& diagnostics);

} // namespace Tolen::LanguageServer
