#pragma once

#include "CheckProcess.h"
#include "Documents.h"
#include "MessageWriter.h"
#include "Positions.h"
#include "Workspace.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// Checks the workspace when nobody has typed for a moment, and tells the client what is wrong:
/// about open documents always, about other files while there is something to tell. The document
/// that has changed is checked first, with what it needs, and then all files.
class DiagnosticsPublisher {
public:
    using Clock = std::chrono::steady_clock;

    /// How long nothing changes before a check begins.
    static constexpr std::chrono::milliseconds kPause{150};

    /// All borrowed.
    DiagnosticsPublisher(const Documents& documents, const Workspace& workspace,
                         const Positions& positions, MessageWriter& writer)
        : _documents(documents), _workspace(workspace), _positions(positions), _writer(writer) {}

    /// Whether the client shows other places that belong to a message.
    void SetRelatedInformation(bool isKnown) { _hasRelatedInformation = isKnown; }

    void SetClientNames(const Language::ClientNames& names) { _names = names; }

    /// Something has changed: a check that is under way is given up, and another one comes.
    /// @param uri of a document to check first; empty for none
    void Schedule(const std::string& uri);

    /// When to call Start; none while nothing is to be checked.
    std::optional<Clock::time_point> GetStart() const { return _start; }
    void Start();

    /// When there is something for Read; -1 while no check is under way.
    int GetFile() const { return _pCheck == nullptr ? -1 : _pCheck->GetFile(); }
    void Read();

private:
    using Reports = std::map<std::string, Json>; ///< by URI

    void _StartCheck(const std::vector<SourcePtr>& sources);
    void _Publish(const std::vector<Language::Diagnostic>& diagnostics);
    void _PublishFirst(const std::vector<Language::Diagnostic>& diagnostics);
    Reports _MakeReports(const std::vector<Language::Diagnostic>& diagnostics) const;
    SourcePtr _FindSource(const std::string& path) const;
    Json _MakeDiagnostic(const Source& source, const Language::Diagnostic& diagnostic) const;
    Json _MakeRange(const Source& source, int line, const Language::SourceRange& columns) const;
    void _Send(const std::string& uri, const Json& diagnostics);

    const Documents& _documents;
    const Workspace& _workspace;
    const Positions& _positions;
    MessageWriter& _writer;
    bool _hasRelatedInformation = false;
    Language::ClientNames _names;
    std::optional<Clock::time_point> _start;
    std::string _first; ///< URI of the document that is checked first; empty for none
    std::unique_ptr<CheckProcess> _pCheck;
    std::map<std::string, SourcePtr> _checked; ///< by path, as they are being checked
    std::set<std::string> _told;               ///< URIs about which the client has messages
};

} // namespace Tolen::LanguageServer
