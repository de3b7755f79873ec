#pragma once

#include "CompletionList.h"
#include "DiagnosticsPublisher.h"
#include "Dispatcher.h"
#include "Documents.h"
#include "MessageWriter.h"
#include "Positions.h"
#include "Workspace.h"

#include <optional>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// What a client's messages do: keeps its documents and workspace, and answers about them.
class Server {
public:
    /// @param writer borrowed
    /// @param searchPaths folders where included files are looked up before others
    Server(MessageWriter& writer, std::vector<std::string> searchPaths);

    /// Does what a message asks for, and answers it.
    void Handle(const Json& message);

    DiagnosticsPublisher& GetPublisher() { return _publisher; }
    std::optional<int> GetExitStatus() const { return _dispatcher.GetExitStatus(); }

private:
    /// A place in a document that a request names.
    struct Place {
        Resolver resolver;
        std::size_t offset;
    };

    void _AddLifecycle();
    void _AddDocuments();
    void _AddWorkspace();
    void _AddFeatures();
    void _AddReferences();

    Json _Initialize(const Json& parameters);
    void _SetWorkspace(const Json& parameters);
    void _SetClientNames(const Json& parameters);
    void _ChangeFolders(const Json& change);
    void _WatchFiles();
    void _Rescan();

    SourcePtr _FindSource(const Json& parameters) const;
    Place _FindPlace(const Json& parameters) const;

    MessageWriter& _writer;
    Positions _positions;
    Documents _documents{_positions};
    Workspace _workspace{_documents};
    DiagnosticsPublisher _publisher;
    Dispatcher _dispatcher;

    std::vector<std::string> _searchPaths;
    bool _hasSymbolTrees = false;
    bool _canWatchFiles = false;
    TextFormat _hoverFormat = TextFormat::Plain;
    TextFormat _signatureFormat = TextFormat::Plain;
    CompletionStyle _completionStyle;
};

} // namespace Tolen::LanguageServer
