#include "DiagnosticsPublisher.h"

#include <cstdio>
#include <exception>
#include <string_view>
#include <utility>

namespace Tolen::LanguageServer {

using Language::Diagnostic;
using Language::SourceRange;

void DiagnosticsPublisher::Schedule() {
    _pCheck.reset();
    _start = Clock::now() + kPause;
}

void DiagnosticsPublisher::Start() {
    _start.reset();
    CheckProcess::Task task;
    _checked.clear();
    for (const SourcePtr& pSource : _workspace.GetSources()) {
        task.files.push_back(pSource->path);
        if (_documents.IsOpen(pSource->uri)) {
            task.texts.emplace(pSource->path, pSource->text.GetText());
        }
        _checked.emplace(pSource->path, pSource);
    }
    task.searchPaths = _workspace.GetSearchPaths();
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
    try {
        _Publish(pEnded->GetDiagnostics());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "klsl-lsp: %s\n", error.what());
    }
}

void DiagnosticsPublisher::_Publish(const std::vector<Diagnostic>& diagnostics) {
    std::map<std::string, Json> reports;
    for (const SourcePtr& pSource : _documents.GetAll()) {
        reports.emplace(pSource->uri, Json::array());
    }
    for (const Diagnostic& diagnostic : diagnostics) {
        const SourcePtr pSource = _FindSource(diagnostic.file);
        if (pSource == nullptr) {
            std::fprintf(stderr, "klsl-lsp: %s: %s\n", diagnostic.file.c_str(),
                         diagnostic.text.c_str());
            continue;
        }
        Json& report = reports.emplace(pSource->uri, Json::array()).first->second;
        report.push_back(_MakeDiagnostic(*pSource, diagnostic));
    }
    for (const std::string& uri : std::exchange(_told, {})) {
        reports.emplace(uri, Json::array());
    }
    for (auto& [uri, report] : reports) {
        _Send(uri, std::move(report));
    }
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
            related.push_back(
                {{"location",
                  {{"uri", pSource->uri}, {"range", _MakeRange(*pSource, note.line, note.columns)}}},
                 {"message", note.text}});
        }
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

void DiagnosticsPublisher::_Send(const std::string& uri, Json diagnostics) {
    if (!diagnostics.empty()) {
        _told.insert(uri);
    }
    Json parameters = {{"uri", uri}, {"diagnostics", std::move(diagnostics)}};
    if (_documents.IsOpen(uri)) {
        parameters["version"] = _documents.GetVersion(uri);
    }
    _writer.Write(MakeNotification("textDocument/publishDiagnostics", std::move(parameters)));
}

} // namespace Tolen::LanguageServer
