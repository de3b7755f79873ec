#include "Session.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace Tolen::Klsl {

namespace {

bool HasError(const std::vector<Diagnostic>& diagnostics) {
    return std::any_of(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
        return diagnostic.severity == Diagnostic::kSeverity_Error;
    });
}

/// Whether @p text is one of the few words that the evaluation of defaults leaves at each level on
/// its way out, such as "Initializer" or the name of an input.
bool IsFragment(const std::string& text) {
    return std::count(text.begin(), text.end(), ' ') < 3 &&
           text.find_first_of("\"'.(") == std::string::npos;
}

/// Makes diagnostics of the messages of @p result, the newest first, since those of the parser are
/// in reverse order of the source. Fragments in a row become one text, from the outside inwards.
std::vector<Diagnostic> MakeDiagnostics(const Result& result) {
    std::vector<Diagnostic> diagnostics;
    bool continues = false;
    for (std::size_t index = result.GetCount(); index-- > 0;) {
        Diagnostic next = MakeDiagnostic(Diagnostic::kSeverity_Error, result.GetMessage(index));
        const bool isFragment = IsFragment(next.text);
        if (isFragment && continues) {
            Diagnostic& last = diagnostics.back();
            last.text += ": " + next.text;
            if (last.line == 0) {
                last.file = next.file;
                last.line = next.line;
            }
        } else {
            diagnostics.push_back(std::move(next));
        }
        continues = isFragment;
    }
    return diagnostics;
}

} // namespace

/// Keeps what the console is told until somebody reports it.
class Session::Sink : public IConsoleSink {
public:
    void Write(Channel channel, const std::string& text) override {
        if (channel == kChannel_General) {
            // A diary, but some failures are written only there.
            if (!text.starts_with("Acquired shader source asset")) {
                _diary.push_back(MakeDiagnostic(Diagnostic::kSeverity_Error, text));
            }
            return;
        }
        // Old-fashioned directives work all the same.
        const bool isError = channel == kChannel_Error &&
                             text.find("Deprecated preprocessor directive") == std::string::npos;
        _messages.push_back(MakeDiagnostic(
            isError ? Diagnostic::kSeverity_Error : Diagnostic::kSeverity_Warning, text));
    }

    std::vector<Diagnostic> TakeMessages() { return std::exchange(_messages, {}); }
    std::vector<Diagnostic> TakeDiary() { return std::exchange(_diary, {}); }

private:
    std::vector<Diagnostic> _messages;
    std::vector<Diagnostic> _diary;
};

Session::Session(const Options& options)
    : _options(options), _pAssetsBefore(SetMgrAssets(&_assets)),
      _pSink(std::make_unique<Sink>()), _console(_pSink.get()),
      _pConsoleBefore(SetMgrConsole(&_console)) {
    _assets.AddSearchPath(Path("."));
    for (const std::string& folder : options.searchPaths) {
        _assets.AddSearchPath(Path(folder));
    }
}

Session::~Session() {
    _pManager.reset();
    OpenKL::DestroyContext(_pContext);
    SetMgrConsole(_pConsoleBefore);
    SetMgrAssets(_pAssetsBefore);
}

bool Session::Start() {
    Result result;
    OpenKL::ContextOptions options;
    options.threads = 1;
    _pContext = OpenKL::CreateContext(options, &result);
    _pManager = std::make_unique<Effects::MgrEffects>();
    if (_pContext == nullptr || !_pManager->Init(&_console, _pContext, &result)) {
        std::fprintf(stderr, "klsl: can't start: %s\n", result.GetLast().c_str());
        return false;
    }
    return true;
}

bool Session::LoadLibraries() {
    bool all = true;
    for (const std::string& file : _options.files) {
        IAsset::Status status = IAsset::kStatus_Ok;
        if (IAsset* const asset = _assets.AcquireAsset(Path(file), 1, status)) {
            _files.emplace(asset->GetPath().AsString(), file);
            _assets.ReleaseAsset(asset);
        }
        Result result;
        Diagnostic place;
        place.file = file;
        const bool isLoaded = _pManager->AddLibrary(file, &result);
        Report(result, isLoaded, [&place](const std::string&) { return place; });
        all = all && isLoaded;
    }
    return all;
}

void Session::Report(Result& result, bool success, const PlaceOf& placeOf) {
    std::vector<Diagnostic> diagnostics = _pSink->TakeMessages();
    std::vector<Diagnostic> diary = _pSink->TakeDiary();

    const std::vector<Diagnostic> results = MakeDiagnostics(result);
    diagnostics.insert(diagnostics.end(), results.begin(), results.end());
    result.Clear();
    if (!success && !HasError(diagnostics)) {
        diagnostics.insert(diagnostics.end(), diary.begin(), diary.end());
    }
    if (!success && !HasError(diagnostics)) {
        diagnostics.push_back(
            MakeDiagnostic(Diagnostic::kSeverity_Error, "This can't be used, without a reason"));
    }

    // Messages about a line come before those about files as a whole.
    for (Diagnostic& diagnostic : diagnostics) {
        const Diagnostic place = placeOf(diagnostic.text);
        if (diagnostic.file.empty() || diagnostic.file == "<generated>") {
            diagnostic.file = place.file;
            diagnostic.line = place.line;
            diagnostic.subject = place.subject;
        }
        diagnostic.file = _FindFile(diagnostic.file, place.file);
    }
    std::stable_partition(diagnostics.begin(), diagnostics.end(),
                          [](const Diagnostic& diagnostic) { return diagnostic.line != 0; });
    for (const Diagnostic& diagnostic : diagnostics) {
        _Show(diagnostic);
    }
}

void Session::_Show(const Diagnostic& diagnostic) {
    const bool isError = diagnostic.severity == Diagnostic::kSeverity_Error;
    _hasErrors = _hasErrors || isError;
    std::string text = diagnostic.file;
    if (diagnostic.line != 0) {
        text += ":" + std::to_string(diagnostic.line);
    }
    text += (isError ? ": error: " : ": warning: ") + diagnostic.text + "\n";
    if (!_shown.insert(text).second) {
        return;
    }
    if (const std::string* const line = _lines.Find(diagnostic.file, diagnostic.line)) {
        const std::string caret = Caret(*line, diagnostic.subject);
        text += *line + "\n" + (caret.empty() ? "" : caret + "\n");
    }
    std::fputs(text.c_str(), stderr);
}

std::string Session::_FindFile(const std::string& name, const std::string& likely) const {
    // Some messages tell the file without its folders; then it is most likely the one in work.
    const std::string known = Path(likely).GetFileName() == name ? likely : name;
    for (const auto& [path, file] : _files) {
        if (path == known) {
            return file;
        }
    }
    for (const auto& [path, file] : _files) {
        if (Path(path).GetFileName() == known) {
            return file;
        }
    }
    return known;
}

} // namespace Tolen::Klsl
