#include "Capabilities.h"

namespace Tolen::LanguageServer {

Json MakeCapabilities(const Positions& positions) {
    constexpr int incremental = 2;
    return {
        {"positionEncoding", positions.GetEncodingName()},
        {"textDocumentSync",
         {{"openClose", true}, {"change", incremental}, {"save", {{"includeText", false}}}}},
        {"definitionProvider", true},
        {"declarationProvider", true},
        {"implementationProvider", true},
        {"hoverProvider", true},
        {"completionProvider", {{"triggerCharacters", Json::array({".", "#", "\"", "/"})}}},
        {"signatureHelpProvider", {{"triggerCharacters", Json::array({"(", ","})}}},
        {"documentSymbolProvider", true},
        {"workspaceSymbolProvider", true},
        {"documentFormattingProvider", true},
        {"referencesProvider", true},
        {"documentHighlightProvider", true},
        {"codeActionProvider", {{"codeActionKinds", Json::array({"quickfix"})}}},
        {"renameProvider", {{"prepareProvider", true}}},
        {"workspace", {{"workspaceFolders", {{"supported", true}, {"changeNotifications", true}}}}},
    };
}

} // namespace Tolen::LanguageServer
