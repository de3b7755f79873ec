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
    return message.text.starts_with("Effects Manager: Failed to initialize Shader Library") ||
           (message.text.starts_with("Prototype shader") && message.text.ends_with("init failed"));
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
    _names = names;
    _pPreprocessor = std::make_unique<Preprocessor>(_assets, predefined);
    _pIndex = std::make_unique<SourceIndex>(*_pPreprocessor);
    _pPlacer = std::make_unique<MessagePlacer>(*_pIndex, _names);
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
        const bool isLoaded = _pManager->AddLibrary(file, &result);
        Report(result, isLoaded, {file, {}});
        all = all && isLoaded;
    }
    return all;
}

void Session::Report(Result& result, bool success, const Context& context) {
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
    Add(messages, context);
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

void Session::Add(const std::vector<Message>& messages, const Context& context) {
    for (const Message& message : messages) {
        if (!_HasErrorIn(_pPlacer->FindUnusable(message))) {
            _Add(_Place(message, context));
        }
    }
}

void Session::Add(const PlacedMessage& message, Diagnostic::Severity severity) {
    _Add(_MakeDiagnostic(message, severity));
}

Diagnostic Session::_Place(const Message& message, const Context& context) {
    Diagnostic diagnostic;
    diagnostic.severity = message.severity;
    diagnostic.text = message.text;
    if (_PlaceOfParser(message, diagnostic) || _PlaceOfPreprocessor(message, diagnostic)) {
        return diagnostic;
    }
    if (const std::optional<PlacedMessage> placed = _pPlacer->Place(message, context)) {
        return _MakeDiagnostic(*placed, message.severity);
    }
    const bool isOfLibrary = !message.file.empty() && _files.contains(FullPath(message.file));
    diagnostic.file = _NameOf(isOfLibrary ? FullPath(message.file) : context.file);
    diagnostic.line = isOfLibrary ? message.line : 0;
    diagnostic.suggestion = _pPlacer->SuggestClass(context.className);
    return diagnostic;
}

Diagnostic Session::_MakeDiagnostic(const PlacedMessage& message,
                                    Diagnostic::Severity severity) const {
    Diagnostic diagnostic;
    diagnostic.severity = severity;
    diagnostic.text = message.text;
    diagnostic.suggestion = message.suggestion;
    _SetPlace(message.place, diagnostic);
    for (const auto& [place, text] : message.notes) {
        _AddNote(place, text, diagnostic);
    }
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
    if (error.other.GetLength() != 0) {
        _AddNote(text->Find(error.other), error.otherText, diagnostic);
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

bool Session::_HasErrorIn(const IndexedSymbol& symbol) const {
    if (symbol.pSymbol == nullptr) {
        return false;
    }
    const PreprocessedText& text = *symbol.pSource->pText;
    const SourceRange& range = symbol.pSymbol->range;
    const FilePlace first = text.Find({range.begin, range.begin});
    const FilePlace last = text.Find({range.end - 1, range.end});
    return std::any_of(_diagnostics.begin(), _diagnostics.end(), [&](const Diagnostic& diagnostic) {
        return diagnostic.severity == Diagnostic::kSeverity_Error &&
               diagnostic.file == _NameOf(first.file) && diagnostic.line >= first.line &&
               diagnostic.line <= last.line;
    });
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

} // namespace Tolen::Language
