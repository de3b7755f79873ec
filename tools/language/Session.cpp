#include "Session.h"

#include <algorithm>
#include <utility>

namespace Tolen::Language {

namespace {

bool HasError(const std::vector<Message>& messages) {
    return std::any_of(messages.begin(), messages.end(), [](const Message& message) {
        return message.severity == Diagnostic::kSeverity_Error;
    });
}

/// Whether @p message only says that something failed, where others tell why.
bool IsConsequence(const Message& message) {
    return message.text.starts_with("Effects Manager: Failed to initialize Shader Library");
}

void Append(std::vector<Message>& messages, const std::vector<Message>& more) {
    messages.insert(messages.end(), more.begin(), more.end());
}

} // namespace

/// Keeps what the console is told until somebody reports it.
class Session::Sink : public IConsoleSink {
public:
    void Write(Channel channel, const std::string& text) override {
        if (channel == kChannel_General) {
            // A diary, but some failures are written only there.
            if (!text.starts_with("Acquired shader source asset")) {
                Append(_diary, ReadMessages(Diagnostic::kSeverity_Error, text));
            }
            return;
        }
        // Old-fashioned directives work all the same.
        const bool isError = channel == kChannel_Error &&
                             text.find("Deprecated preprocessor directive") == std::string::npos;
        Append(_messages,
               ReadMessages(isError ? Diagnostic::kSeverity_Error : Diagnostic::kSeverity_Warning,
                            text));
    }

    std::vector<Message> TakeMessages() { return std::exchange(_messages, {}); }
    std::vector<Message> TakeDiary() { return std::exchange(_diary, {}); }

private:
    std::vector<Message> _messages;
    std::vector<Message> _diary;
};

Session::Session(const std::vector<std::string>& searchPaths, const SourceTexts& texts)
    : _assets(searchPaths, texts), _pAssetsBefore(SetMgrAssets(&_assets)),
      _pSink(std::make_unique<Sink>()), _console(_pSink.get()),
      _pConsoleBefore(SetMgrConsole(&_console)) {}

Session::~Session() {
    _pManager.reset();
    OpenKL::DestroyContext(_pContext);
    SetMgrConsole(_pConsoleBefore);
    SetMgrAssets(_pAssetsBefore);
}

bool Session::Start(const ClientNames& names, std::string& error) {
    Result result;
    OpenKL::ContextOptions options;
    options.threads = 1;
    _pContext = OpenKL::CreateContext(options, &result);
    _pManager = std::make_unique<Effects::MgrEffects>();
    if (_pContext == nullptr || !_pManager->Init(&_console, _pContext, &result)) {
        error = "can't start: " + result.GetLast();
        return false;
    }
    for (const ClientVariable& variable : names.rayAttributes) {
        _pManager->AddRayAttribute(variable.type, variable.name);
    }
    for (const ClientVariable& variable : names.globals) {
        _pManager->AddVariableGlobal(variable.type, variable.name);
    }
    std::vector<std::string> predefined;
    if (_pContext->AreDifferentialsEnabled()) {
        predefined.emplace_back("KL_DIFFERENTIALS_ENABLED");
    }
    if (_pContext->AreFilteredAccumulatesEnabled()) {
        predefined.emplace_back("KL_FILTERED_ACCUMULATES_ENABLED");
    }
    _pPreprocessor = std::make_unique<Preprocessor>(_assets, predefined);
    return true;
}

bool Session::LoadLibraries(const std::vector<std::string>& files) {
    bool all = true;
    for (const std::string& file : files) {
        std::string path;
        if (_assets.Find(file, path) != nullptr) {
            _files.emplace(path, file);
        }
        _fileOrder.push_back(file);
    }
    for (const std::string& file : files) {
        _pPreprocessor->Read(file);
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
    std::vector<Message> diary;
    std::vector<Message> messages = TakeMessages(result, &diary);
    if (!success && !HasError(messages)) {
        Append(messages, diary);
    }
    if (!success && !HasError(messages)) {
        Append(messages,
               ReadMessages(Diagnostic::kSeverity_Error, "This can't be used, without a reason"));
    }
    if (messages.size() > 1) {
        std::erase_if(messages, IsConsequence);
    }
    Add(messages, placeOf);
}

std::vector<Message> Session::TakeMessages(Result& result, std::vector<Message>* pDiary) {
    std::vector<Message> messages = _pSink->TakeMessages();
    Append(messages, ReadMessages(result));
    result.Clear();
    const std::vector<Message> diary = _pSink->TakeDiary();
    if (pDiary != nullptr) {
        Append(*pDiary, diary);
    }
    return messages;
}

void Session::Add(const std::vector<Message>& messages, const PlaceOf& placeOf) {
    for (const Message& message : messages) {
        _Add(_Place(message, placeOf));
    }
}

Diagnostic Session::_Place(const Message& message, const PlaceOf& placeOf) {
    const Diagnostic place = placeOf(message.text);
    Diagnostic diagnostic;
    diagnostic.severity = message.severity;
    diagnostic.text = message.text;
    if (_PlaceOfParser(message, diagnostic) || _PlaceOfPreprocessor(message, diagnostic)) {
        return diagnostic;
    }
    diagnostic.file = message.file;
    diagnostic.line = message.line;
    if (message.file.empty() || message.file == "<generated>") {
        diagnostic.file = place.file;
        diagnostic.line = place.line;
        diagnostic.columns = place.columns;
    }
    diagnostic.file = _FindFile(diagnostic.file, place.file);
    return diagnostic;
}

bool Session::_PlaceOfParser(const Message& message, Diagnostic& diagnostic) {
    const PreprocessedText* const text = _pPreprocessor->Find(message.file);
    if (!message.isOfParser || text == nullptr) {
        return false;
    }
    const auto [errors, isNew] = _parserErrors.try_emplace(message.file);
    if (isNew) {
        for (const ParserError& error : FindParserErrors(*text)) {
            errors->second.push_back(error);
        }
    }
    // The library's messages are these, one by one.
    if (errors->second.empty() || errors->second.front().text != message.text) {
        return false;
    }
    const ParserError error = errors->second.front();
    errors->second.pop_front();
    _SetPlace(text->Find(error.range), diagnostic);
    if (error.first.GetLength() != 0) {
        _AddNote(text->Find(error.first), "the first one is here", diagnostic);
    }
    diagnostic.suggestion = error.suggestion;
    return true;
}

bool Session::_PlaceOfPreprocessor(const Message& message, Diagnostic& diagnostic) {
    Preprocessor::Remark remark;
    if (!_pPreprocessor->TakeRemark(message.text, remark)) {
        return false;
    }
    _SetPlace(remark.place, diagnostic);
    if (!remark.before.file.empty()) {
        _AddNote(remark.before, "the definition before is here", diagnostic);
    }
    return true;
}

void Session::_SetPlace(const FilePlace& place, Diagnostic& diagnostic) const {
    diagnostic.file = _NameOf(place.file);
    diagnostic.line = place.line;
    diagnostic.columns = place.columns;
    for (const FilePlace& from : place.includedFrom) {
        _AddNote(from, "included from here", diagnostic);
    }
}

void Session::_AddNote(const FilePlace& place, const std::string& text,
                       Diagnostic& diagnostic) const {
    diagnostic.notes.push_back({_NameOf(place.file), place.line, place.columns, text});
}

std::string Session::_NameOf(const std::string& path) const {
    const auto found = _files.find(path);
    return found == _files.end() ? path : found->second;
}

void Session::_Add(Diagnostic diagnostic) {
    if (!_reported.emplace(diagnostic.file, diagnostic.line, diagnostic.text).second) {
        return;
    }
    if (std::find(_fileOrder.begin(), _fileOrder.end(), diagnostic.file) == _fileOrder.end()) {
        _fileOrder.push_back(diagnostic.file);
    }
    _diagnostics.push_back(std::move(diagnostic));
}

std::vector<Diagnostic> Session::GetDiagnostics() const {
    std::map<std::string, std::size_t> ranks;
    for (const std::string& file : _fileOrder) {
        ranks.emplace(file, ranks.size());
    }
    // Messages about a line come before those about the file as a whole.
    const auto key = [&ranks](const Diagnostic& diagnostic) {
        return std::make_tuple(ranks[diagnostic.file], diagnostic.line == 0, diagnostic.line,
                               diagnostic.columns.begin);
    };
    std::vector<Diagnostic> sorted = _diagnostics;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&key](const Diagnostic& a, const Diagnostic& b) { return key(a) < key(b); });
    return sorted;
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

} // namespace Tolen::Language
