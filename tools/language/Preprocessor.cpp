#include "Preprocessor.h"

#include "language/SourceAssets.h"

#include "ConditionStack.h"
#include "DirectiveLine.h"
#include "WordCharacter.h"

#include "TolenEffects/Limits.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <utility>

namespace Tolen::Language {

using namespace Effects;

/// What the files of one AddLibrary call share.
struct Preprocessor::State {
    Definitions definitions;
    std::map<std::string, FilePlace> defined; ///< where names got their last values
    PreprocessedText* pText = nullptr;        ///< of the library in work
    int depth = 0;
    int files = 0;
    std::size_t bytes = 0;
};

struct Preprocessor::File {
    const std::string& path;
    State& state;
    ConditionStack conditions{};
    std::vector<int> open{}; ///< the lines of the conditions that are open
    int line = 0;            ///< from 1
    bool good = true;        ///< false ends the file

    FilePlace At(const SourceRange& columns) const { return state.pText->MakePlace(line, columns); }
};

namespace {

/// Where @p word stands in a directive, behind its first word. Empty when it isn't there.
SourceRange ColumnsOf(std::string_view line, std::string_view word) {
    const std::size_t sign = line.find('#');
    const std::size_t begin = line.find(word, std::min(line.find_first_of(" \t", sign), sign));
    return begin == std::string_view::npos || word.empty()
               ? SourceRange{}
               : SourceRange{begin, begin + word.size()};
}

/// The directive itself, such as "#else".
SourceRange ColumnsOfDirective(std::string_view line) {
    const std::size_t begin = std::min(line.find('#'), line.size());
    return {begin, std::min(line.find_first_of(" \t\r", begin), line.size())};
}

/// What replaces what in a line that has become @p text. Words are taken one by one; where names
/// that are no words have been replaced, all that differs is taken for one.
std::vector<PreprocessedText::Replacement>
FindReplaced(const Definitions& definitions, std::string_view line, std::string_view text) {
    std::vector<PreprocessedText::Replacement> replaced;
    std::string joined;
    for (std::size_t at = 0; at < line.size() && joined.size() <= text.size();) {
        if (!IsWordCharacter(line[at])) {
            joined += line[at++];
            continue;
        }
        std::size_t end = at;
        while (end < line.size() && IsWordCharacter(line[end])) {
            ++end;
        }
        const std::string_view word = line.substr(at, end - at);
        std::string value(word);
        definitions.Substitute(value, text.size());
        if (value != word) {
            replaced.push_back({{at, end}, {joined.size(), joined.size() + value.size()}});
        }
        joined += value;
        at = end;
    }
    if (joined == text) {
        return replaced;
    }
    const std::size_t shorter = std::min(line.size(), text.size());
    std::size_t front = 0;
    while (front < shorter && line[front] == text[front]) {
        ++front;
    }
    std::size_t back = 0;
    while (back < shorter - front && line[line.size() - 1 - back] == text[text.size() - 1 - back]) {
        ++back;
    }
    return {{{front, line.size() - back}, {front, text.size() - back}}};
}

} // namespace

Preprocessor::Preprocessor(SourceAssets& assets, std::vector<std::string> predefined)
    : _assets(assets), _predefined(std::move(predefined)) {}

Preprocessor::~Preprocessor() = default;

void Preprocessor::Read(const std::string& file) {
    State state;
    _ReadLibrary(file, state);
}

const PreprocessedText* Preprocessor::Find(const std::string& path) const {
    const auto found = _texts.find(path);
    return found == _texts.end() ? nullptr : found->second.get();
}

bool Preprocessor::TakeRemark(const std::string& text, Remark& remark) {
    const auto found = _remarks.find(text);
    if (found == _remarks.end()) {
        return false;
    }
    remark = std::move(found->second);
    _remarks.erase(found);
    return true;
}

bool Preprocessor::_ReadLibrary(const std::string& file, State& state) {
    std::string path;
    const std::string* const text = _assets.Find(file, path);
    ++state.files;
    if (text == nullptr || text->empty()) {
        return false;
    }
    auto library = std::make_unique<PreprocessedText>(path);
    PreprocessedText* const before = std::exchange(state.pText, library.get());
    const bool good = _ReadFile(path, *text, 0, state);
    state.pText = before;
    library->Finish();
    _texts.emplace(path, std::move(library));
    return good;
}

bool Preprocessor::_ReadFile(const std::string& path, const std::string& text, int fromLine,
                             State& state) {
    for (const std::string& name : _predefined) {
        state.definitions.Define(name, "1");
    }
    const std::size_t before = state.pText->Enter(path, fromLine);
    File file{path, state};
    for (std::size_t begin = 0;
         begin < text.size() && file.good && !file.conditions.IsMismatched();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        ++file.line;
        _ReadLine(file, std::string_view(text).substr(begin, end - begin));
        begin = end + 1;
    }
    if (!file.conditions.IsBalanced()) {
        if (!file.conditions.IsMismatched() && !file.open.empty()) {
            file.line = file.open.back();
        }
        const SourceText source(text);
        _Remark(Format("Effects Manager: Pre-Processor Condition Stack mismatch while reading "
                       "file '%s'",
                       path.c_str()),
                file.At(ColumnsOfDirective(source.GetLine(file.line))));
        file.good = false;
    }
    state.pText->GoBack(before);
    return file.good;
}

void Preprocessor::_ReadLine(File& file, std::string_view line) {
    const DirectiveLine directive = DirectiveLine::Parse(line);
    if (directive.directive == DirectiveLine::kDirective_None) {
        _WriteText(file, line);
        return;
    }
    _Follow(file, directive, line);
    if (directive.directive != DirectiveLine::kDirective_Include) {
        file.state.pText->Write(file.line, {}, {});
    }
}

void Preprocessor::_Follow(File& file, const DirectiveLine& directive, std::string_view line) {
    Definitions& definitions = file.state.definitions;
    switch (directive.directive) {
    case DirectiveLine::kDirective_None:
        break;
    case DirectiveLine::kDirective_Import:
        _Remark(Format("Effects Manager: Deprecated preprocessor directive #import %s' in file "
                       "'%s'",
                       directive.argument.c_str(), file.path.c_str()),
                file.At(ColumnsOfDirective(line)));
        [[fallthrough]];
    case DirectiveLine::kDirective_Include:
        _Open(file, directive, line);
        break;
    case DirectiveLine::kDirective_Define:
        _Define(file, directive, line);
        break;
    case DirectiveLine::kDirective_Undef:
        if (file.conditions.IsActive() && definitions.IsDefined(directive.argument)) {
            definitions.EraseFirst(directive.argument);
        }
        break;
    case DirectiveLine::kDirective_Ifdef:
    case DirectiveLine::kDirective_Ifndef:
        file.conditions.Push(definitions.IsDefined(directive.argument) ==
                             (directive.directive == DirectiveLine::kDirective_Ifdef));
        file.open.push_back(file.line);
        break;
    case DirectiveLine::kDirective_Else:
        file.conditions.Else();
        break;
    case DirectiveLine::kDirective_Endif:
        file.conditions.Endif();
        if (!file.open.empty()) {
            file.open.pop_back();
        }
        break;
    }
}

void Preprocessor::_Open(File& file, const DirectiveLine& directive, std::string_view line) {
    if (!file.conditions.IsActive()) {
        return;
    }
    const bool isImport = directive.directive == DirectiveLine::kDirective_Import;
    std::string name;
    if (!directive.GetFileName(name)) {
        _Remark(Format("Effects Manager: Failed to interpret '#%s filename %s' in file '%s'",
                       isImport ? "import" : "include", directive.argument.c_str(),
                       file.path.c_str()),
                file.At(ColumnsOf(line, directive.argument)));
        file.good = false;
        return;
    }
    State& state = file.state;
    if (state.depth >= kLimitIncludeDepth || state.files >= kLimitFiles) {
        file.good = false;
        return;
    }
    std::string path;
    if (_assets.Find(name, path) == nullptr) {
        // Why is told by the assets, which are asked again by the library.
        IAsset::Status status = IAsset::kStatus_NotFound;
        _assets.AcquireAsset(name, 1, status);
        _Remark(Format("Failed to read shader source file '%s' (%s)", name.c_str(),
                       IAsset::StatusString(status)),
                file.At(ColumnsOf(line, directive.argument)));
    }
    ++state.depth;
    if (isImport) {
        file.good = _ReadLibrary(name, state);
    } else {
        _Include(file, name);
    }
    --state.depth;
}

void Preprocessor::_Include(File& file, const std::string& name) {
    State& state = file.state;
    ++state.files;
    std::string path;
    const std::string* const text = _assets.Find(name, path);
    if (text == nullptr || text->empty()) {
        file.good = false;
        return;
    }
    state.pText->AddToAdjustment(1 - std::count(text->begin(), text->end(), '\n'));
    file.good = _ReadFile(path, *text, file.line, state);
}

void Preprocessor::_Define(File& file, const DirectiveLine& directive, std::string_view line) {
    const std::string& name = directive.argument;
    if (!file.conditions.IsActive() || name.size() > kLimitDefinitionName) {
        file.good = file.good && name.size() <= kLimitDefinitionName;
        return;
    }
    Definitions& definitions = file.state.definitions;
    const FilePlace place = file.At(ColumnsOf(line, name));
    if (definitions.IsDefined(name)) {
        if (const std::string* const previous = definitions.FindFirst(name)) {
            _Remark(Format("Effects Manager: Pre-Processor found redefinition of '%s' as '%s' "
                           "(was '%s')",
                           name.c_str(), directive.rest.c_str(), previous->c_str()),
                    place, file.state.defined[name]);
            definitions.EraseFirst(name);
        }
    }
    definitions.Define(name, directive.rest);
    file.state.defined[name] = place;
}

void Preprocessor::_WriteText(File& file, std::string_view line) {
    State& state = file.state;
    if (!file.conditions.IsActive()) {
        state.pText->Write(file.line, {}, {});
        return;
    }
    std::string text(line);
    file.good = state.definitions.Substitute(text, kLimitExpandedSource) &&
                text.size() < kLimitExpandedSource - state.bytes;
    if (!file.good) {
        return;
    }
    state.bytes += text.size() + 1;
    std::vector<PreprocessedText::Replacement> replaced;
    if (text != line) {
        replaced = FindReplaced(state.definitions, line, text);
    }
    state.pText->Write(file.line, text, std::move(replaced));
}

void Preprocessor::_Remark(const std::string& text, const FilePlace& place,
                           const FilePlace& before) {
    _remarks.emplace(text, Remark{text, place, before});
}

} // namespace Tolen::Language
