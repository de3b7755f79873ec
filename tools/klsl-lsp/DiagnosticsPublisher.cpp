#include "DiagnosticsPublisher.h"

#include "Needs.h"

#include <cstdio>
#include <exception>
#include <string_view>
#include <utility>

namespace Tolen::LanguageServer {

using Language::Diagnostic;
using Language::SourceRange;

void DiagnosticsPublisher::Schedule(const std::string& uri) {
    _pCheck.reset();
    _first = uri;
    _start = Clock::now() + kPause;
}

void DiagnosticsPublisher::Start() {
    _start.reset();
    const std::vector<SourcePtr> sources = _workspace.GetSources();
    if (const SourcePtr pFirst = _documents.Find(_first)) {
        const std::vector<SourcePtr> needed = FindNeeded(pFirst, sources, _workspace);
        if (needed.size() < sources.size()) {
            _StartCheck(needed);
            return;
        }
    }
    _first.clear();
    _StartCheck(sources);
}

void DiagnosticsPublisher::_StartCheck(const std::vector<SourcePtr>& sources) {
    CheckProcess::Task task;
    _checked.clear();
    for (const SourcePtr& pSource : sources) {
        task.files.push_back(pSource->path);
        _checked.emplace(pSource->path, pSource);
    }
    for (const SourcePtr& pSource : _documents.GetAll()) {
        task.texts.emplace(pSource->path, pSource->text.GetText());
    }
    task.searchPaths = _workspace.GetSearchPaths();
    task.names = _names;
    try {
        _pCheck = std::make_unique<CheckProcess>(task);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "klsl-lsp: can't check: %s\n", error.what());
    }
}

void DiagnosticsPublisher::Read() {
    if (_pCheck == nullptr || !_pCheck->Read()) {
        return;
    }
    const std::unique_ptr<CheckProcess> pEnded = std::move(_pCheck);
    const bool isFirst = !_first.empty();
    try {
        const std::vector<Diagnostic> diagnostics = pEnded->GetDiagnostics();
        isFirst ? _PublishFirst(diagnostics) : _Publish(diagnostics);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "klsl-lsp: %s\n", error.what());
    }
    if (isFirst) {
        _first.clear();
        _StartCheck(_workspace.GetSources());
    }
}

void DiagnosticsPublisher::_PublishFirst(const std::vector<Diagnostic>& diagnostics) {
    const Reports reports = _MakeReports(diagnostics);
    const auto found = reports.find(_first);
    _told.erase(_first);
    _Send(_first, found == reports.end() ? Json::array() : found->second);
}

void DiagnosticsPublisher::_Publish(const std::vector<Diagnostic>& diagnostics) {
    Reports reports = _MakeReports(diagnostics);
    for (const SourcePtr& pSource : _documents.GetAll()) {
        reports.emplace(pSource->uri, Json::array());
    }
    for (const std::string& uri : std::exchange(_told, {})) {
        reports.emplace(uri, Json::array());
    }
    for (const auto& [uri, report] : reports) {
        _Send(uri, report);
    }
}

DiagnosticsPublisher::Reports
DiagnosticsPublisher::_MakeReports(const std::vector<Diagnostic>& diagnostics) const {
    Reports reports;
    for (const Diagnostic& diagnostic : diagnostics) {
        if (const SourcePtr pSource = _FindSource(diagnostic.file)) {
            Json& report = reports.emplace(pSource->uri, Json::array()).first->second;
            report.push_back(_MakeDiagnostic(*pSource, diagnostic));
        } else {
            std::fprintf(stderr, "klsl-lsp: %s: %s\n", diagnostic.file.c_str(),
                         diagnostic.text.c_str());
        }
    }
    return reports;
}

SourcePtr DiagnosticsPublisher::_FindSource(const std::string& path) const {
    const auto found = _checked.find(path);
    return found != _checked.end() ? found->second : _workspace.FindFile(path);
}

Json DiagnosticsPublisher::_MakeDiagnostic(const Source& source,
                                           const Diagnostic& diagnostic) const {
    const bool isError = diagnostic.severity == Diagnostic::kSeverity_Error;
    std::string message = diagnostic.text;
    if (!diagnostic.suggestion.empty()) {
        message += "; did you mean '" + diagnostic.suggestion + "'?";
    }
    Json made = {{"range", _MakeRange(source, diagnostic.line, diagnostic.columns)},
                 {"severity", isError ? 1 : 2},
                 {"source", "klsl"},
                 {"message", std::move(message)}};
    Json related = Json::array();
    for (const Diagnostic::Note& note : diagnostic.notes) {
        if (const SourcePtr pSource = _FindSource(note.file)) {
            related.push_back({{"location",
                                {{"uri", pSource->uri},
                                 {"range", _MakeRange(*pSource, note.line, note.columns)}}},
                               {"message", note.text}});
        }
    }
    if (!diagnostic.suggestion.empty() && diagnostic.columns.GetLength() > 0) {
        made["data"] = {{"suggestion", diagnostic.suggestion}};
    }
    if (_hasRelatedInformation && !related.empty()) {
        made["relatedInformation"] = std::move(related);
    }
    return made;
}

/// The columns of a line, or the line without its indentation; the first one for the whole file.
Json DiagnosticsPublisher::_MakeRange(const Source& source, int line,
                                      const SourceRange& columns) const {
    const SourceRange all = source.text.GetLineRange(line == 0 ? 1 : line);
    const std::string_view text = source.text.GetText(all);
    SourceRange range = all;
    if (columns.GetLength() > 0 && columns.end <= all.GetLength()) {
        range = {all.begin + columns.begin, all.begin + columns.end};
    } else if (const std::size_t indentation = text.find_first_not_of(" \t");
               indentation != std::string_view::npos) {
        range.begin += indentation;
    }
    return _positions.MakeRange(source.text, range);
}

void DiagnosticsPublisher::_Send(const std::string& uri, const Json& diagnostics) {
    if (!diagnostics.empty()) {
        _told.insert(uri);
    }
    Json parameters = {{"uri", uri}, {"diagnostics", diagnostics}};
    if (_documents.IsOpen(uri)) {
        parameters["version"] = _documents.GetVersion(uri);
    }
    _writer.Write(MakeNotification("textDocument/publishDiagnostics", std::move(parameters)));
}

} // namespace Tolen::LanguageServer
