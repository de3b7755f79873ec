#include "Server.h"

#include "Capabilities.h"
#include "CodeActions.h"
#include "Completion.h"
#include "Formatting.h"
#include "Hover.h"
#include "Places.h"
#include "References.h"
#include "SignatureHelp.h"
#include "Symbols.h"
#include "Uri.h"

#include <cstdint>
#include <filesystem>
#include <utility>

namespace Tolen::LanguageServer {

namespace {

const std::string& GetUri(const Json& parameters) {
    return GetString(GetMember(parameters, "textDocument"), "uri");
}

/// Clients may leave the version open.
std::int64_t GetVersion(const Json& parameters) {
    const Json* const version = FindMember(parameters, "/textDocument/version");
    return version != nullptr && version->is_number_integer() ? version->get<std::int64_t>() : 0;
}

TextFormat GetFormat(const Json& capabilities, const char* path) {
    return Lists(capabilities, path, "markdown") ? TextFormat::Markdown : TextFormat::Plain;
}

/// The paths of a list of folders with URIs.
std::vector<std::string> GetFolders(const Json& parameters, const char* path) {
    std::vector<std::string> folders;
    const Json* const list = FindMember(parameters, path);
    if (list != nullptr && list->is_array()) {
        for (const Json& folder : *list) {
            if (std::optional<std::string> found = GetPathOfUri(GetString(folder, "uri"))) {
                folders.push_back(std::move(*found));
            }
        }
    }
    return folders;
}

/// The strings of a list; none when there is no list.
std::vector<std::string> GetStrings(const Json& parameters, const char* path) {
    std::vector<std::string> strings;
    const Json* const list = FindMember(parameters, path);
    if (list != nullptr && list->is_array()) {
        for (const Json& item : *list) {
            if (item.is_string()) {
                strings.push_back(item.get<std::string>());
            }
        }
    }
    return strings;
}

} // namespace

Server::Server(MessageWriter& writer, std::vector<std::string> searchPaths)
    : _writer(writer), _publisher(_documents, _workspace, _positions, writer),
      _searchPaths(std::move(searchPaths)) {
    _AddLifecycle();
    _AddDocuments();
    _AddWorkspace();
    _AddFeatures();
    _AddReferences();
}

void Server::Handle(const Json& message) {
    if (const std::optional<Json> answer = _dispatcher.Dispatch(message)) {
        _writer.Write(*answer);
    }
}

void Server::_AddLifecycle() {
    _dispatcher.OnRequest("initialize",
                          [this](const Json& parameters) { return _Initialize(parameters); });
    _dispatcher.OnRequest("shutdown", [](const Json&) { return Json(); });
    _dispatcher.OnNotification("initialized", [this](const Json&) { _WatchFiles(); });
}

Json Server::_Initialize(const Json& parameters) {
    const Json& capabilities = GetMember(parameters, "capabilities");
    _positions.Negotiate(capabilities);
    _hasSymbolTrees =
        IsSet(capabilities, "/textDocument/documentSymbol/hierarchicalDocumentSymbolSupport");
    _canWatchFiles = IsSet(capabilities, "/workspace/didChangeWatchedFiles/dynamicRegistration");
    _hoverFormat = GetFormat(capabilities, "/textDocument/hover/contentFormat");
    _signatureFormat = GetFormat(
        capabilities, "/textDocument/signatureHelp/signatureInformation/documentationFormat");
    _completionStyle = {
        GetFormat(capabilities, "/textDocument/completion/completionItem/documentationFormat"),
        IsSet(capabilities, "/textDocument/completion/completionItem/snippetSupport")};
    _publisher.SetRelatedInformation(
        IsSet(capabilities, "/textDocument/publishDiagnostics/relatedInformation"));
    _SetWorkspace(parameters);
    _SetClientNames(parameters);
    return {{"capabilities", MakeCapabilities(_positions)},
            {"serverInfo", {{"name", "klsl-lsp"}, {"version", TOLEN_VERSION}}}};
}

void Server::_SetWorkspace(const Json& parameters) {
    std::vector<std::string> folders = GetFolders(parameters, "/workspaceFolders");
    const Json* const root = FindMember(parameters, "/rootUri");
    if (folders.empty() && root != nullptr && root->is_string()) {
        if (std::optional<std::string> path = GetPathOfUri(root->get<std::string>())) {
            folders.push_back(std::move(*path));
        }
    }
    for (const std::string& folder : folders) {
        _workspace.AddFolder(folder);
    }
    // Relative search paths start at the first folder.
    const std::filesystem::path base = folders.empty() ? "" : folders.front();
    std::vector<std::string> searchPaths = _searchPaths;
    for (const std::string& path : GetStrings(parameters, "/initializationOptions/searchPaths")) {
        searchPaths.push_back((base / path).lexically_normal().string());
    }
    _workspace.SetSearchPaths(std::move(searchPaths));
    _workspace.Scan();
}

/// Variables that the renderer adds to the language, each as "vec3 name".
void Server::_SetClientNames(const Json& parameters) {
    Language::ClientNames names;
    const auto put = [&parameters](const char* path, std::vector<Language::ClientVariable>& list) {
        for (const std::string& text : GetStrings(parameters, path)) {
            Language::ClientVariable variable;
            if (!Language::ReadClientVariable(text, variable)) {
                throw RequestError(ErrorCode::InvalidParams,
                                   "expected a type and a name, found \"" + text + "\"");
            }
            Put(list, variable);
        }
    };
    put("/initializationOptions/rayAttributes", names.rayAttributes);
    put("/initializationOptions/globals", names.globals);
    _publisher.SetClientNames(names);
    _workspace.SetClientNames(names);
}

void Server::_AddDocuments() {
    _dispatcher.OnNotification("textDocument/didOpen", [this](const Json& parameters) {
        const std::string& text = GetString(GetMember(parameters, "textDocument"), "text");
        _documents.Open(GetUri(parameters), GetVersion(parameters), text);
        _workspace.Scan();
        _publisher.Schedule(GetUri(parameters));
    });
    _dispatcher.OnNotification("textDocument/didChange", [this](const Json& parameters) {
        _documents.Change(GetUri(parameters), GetVersion(parameters),
                          GetMember(parameters, "contentChanges"));
        _publisher.Schedule(GetUri(parameters));
    });
    _dispatcher.OnNotification("textDocument/didClose", [this](const Json& parameters) {
        _documents.Close(GetUri(parameters));
        _Rescan();
    });
    _dispatcher.OnNotification("textDocument/didSave", [this](const Json&) { _Rescan(); });
}

void Server::_AddWorkspace() {
    _dispatcher.OnNotification("workspace/didChangeWatchedFiles",
                               [this](const Json&) { _Rescan(); });
    _dispatcher.OnNotification("workspace/didChangeWorkspaceFolders",
                               [this](const Json& parameters) { _ChangeFolders(parameters); });
    _dispatcher.OnRequest("workspace/symbol", [this](const Json& parameters) {
        return FindSymbols(_workspace.GetSources(), _positions, GetString(parameters, "query"));
    });
}

void Server::_ChangeFolders(const Json& parameters) {
    for (const std::string& folder : GetFolders(parameters, "/event/removed")) {
        _workspace.RemoveFolder(folder);
    }
    for (const std::string& folder : GetFolders(parameters, "/event/added")) {
        _workspace.AddFolder(folder);
    }
    _Rescan();
}

/// Asks the client to tell when files change beside it.
void Server::_WatchFiles() {
    if (_canWatchFiles) {
        const Json watchers = Json::array({{{"globPattern", "**/*.klsl"}}});
        const Json registration = {{"id", "klsl-files"},
                                   {"method", "workspace/didChangeWatchedFiles"},
                                   {"registerOptions", {{"watchers", watchers}}}};
        _writer.Write({{"jsonrpc", "2.0"},
                       {"id", "klsl-lsp-1"},
                       {"method", "client/registerCapability"},
                       {"params", {{"registrations", Json::array({registration})}}}});
    }
}

void Server::_Rescan() {
    _workspace.Scan();
    _publisher.Schedule({});
}

void Server::_AddFeatures() {
    const auto findDefinitions = [this](const Json& parameters) {
        const Place place = _FindPlace(parameters);
        return FindDefinitions(place.resolver, _workspace, _positions, place.offset);
    };
    _dispatcher.OnRequest("textDocument/definition", findDefinitions);
    _dispatcher.OnRequest("textDocument/declaration", findDefinitions);
    _dispatcher.OnRequest("textDocument/implementation", [this](const Json& parameters) {
        const Place place = _FindPlace(parameters);
        return FindImplementations(place.resolver, _workspace.GetSources(), _positions,
                                   place.offset);
    });
    _dispatcher.OnRequest("textDocument/hover", [this](const Json& parameters) {
        const Place place = _FindPlace(parameters);
        return MakeHover(place.resolver, _positions, _hoverFormat, place.offset);
    });
    _dispatcher.OnRequest("textDocument/completion", [this](const Json& parameters) {
        const Place place = _FindPlace(parameters);
        return MakeCompletions(place.resolver, _workspace, _positions, _completionStyle,
                               place.offset);
    });
    _dispatcher.OnRequest("textDocument/signatureHelp", [this](const Json& parameters) {
        const Place place = _FindPlace(parameters);
        return MakeSignatureHelp(place.resolver, _signatureFormat, place.offset);
    });
    _dispatcher.OnRequest("textDocument/documentSymbol", [this](const Json& parameters) {
        return ListSymbols(*_FindSource(parameters), _positions, _hasSymbolTrees);
    });
    _dispatcher.OnRequest("textDocument/formatting", [this](const Json& parameters) {
        return MakeFormatting(*_FindSource(parameters), _positions);
    });
    _dispatcher.OnRequest("textDocument/codeAction", [](const Json& parameters) {
        const Json& context = GetMember(parameters, "context");
        return MakeCodeActions(GetUri(parameters), GetMember(context, "diagnostics"));
    });
}

void Server::_AddReferences() {
    // The same list of sources for all, since what they declare is told apart by where it lies.
    const auto find = [this](const Json& parameters, const auto& answer) {
        const std::vector<SourcePtr> sources = _workspace.GetSources();
        const Place place = _FindPlace(parameters);
        return answer(References(_workspace, sources, place.resolver, _positions, place.offset));
    };
    _dispatcher.OnRequest("textDocument/references", [find](const Json& parameters) {
        const bool withDeclarations = IsSet(parameters, "/context/includeDeclaration");
        return find(parameters, [withDeclarations](const References& references) {
            return references.List(withDeclarations);
        });
    });
    _dispatcher.OnRequest("textDocument/documentHighlight", [find](const Json& parameters) {
        return find(parameters,
                    [](const References& references) { return references.ListHighlights(); });
    });
    _dispatcher.OnRequest("textDocument/prepareRename", [find](const Json& parameters) {
        return find(parameters,
                    [](const References& references) { return references.PrepareRename(); });
    });
    _dispatcher.OnRequest("textDocument/rename", [find](const Json& parameters) {
        const std::string& name = GetString(parameters, "newName");
        return find(parameters,
                    [&name](const References& references) { return references.Rename(name); });
    });
}

SourcePtr Server::_FindSource(const Json& parameters) const {
    const std::string& uri = GetUri(parameters);
    SourcePtr pSource = _workspace.FindUri(uri);
    if (pSource == nullptr) {
        throw RequestError(ErrorCode::InvalidParams, "\"" + uri + "\" is not open");
    }
    return pSource;
}

Server::Place Server::_FindPlace(const Json& parameters) const {
    const SourcePtr pSource = _FindSource(parameters);
    const std::size_t offset =
        _positions.GetOffset(pSource->text, GetMember(parameters, "position"));
    return {Resolver(_workspace, _workspace.GetSources(), pSource), offset};
}

} // namespace Tolen::LanguageServer
