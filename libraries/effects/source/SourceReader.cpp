#include "SourceReader.h"

#include "ConditionStack.h"
#include "DirectiveLine.h"
#include "PreprocessorState.h"

#include "TolenEffects/Limits.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <vector>

namespace Tolen::Effects {

struct SourceReader::File {
    const std::string& path;
    Place place{0, {}, {}};    ///< the line in work
    std::vector<Place> open{}; ///< the lines of the conditions that are open
    ConditionStack conditions{};
    bool good = true; ///< false ends the reading
};

bool SourceReader::Read(const std::string& path, const std::string& text) {
    File file{path};
    _client.DefineNames(_state.definitions);
    for (std::size_t begin = 0;
         begin < text.size() && file.good && !file.conditions.IsMismatched();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        file.place = {file.place.line + 1, std::string_view(text).substr(begin, end - begin), {}};
        _ReadLine(file);
        begin = end + 1;
    }
    if (file.conditions.IsBalanced()) {
        return file.good;
    }
    const bool isOpen = !file.conditions.IsMismatched() && !file.open.empty();
    _Tell(Remark::kKind_Error,
          Format("Effects Manager: Pre-Processor Condition Stack mismatch while reading file '%s'",
                 path.c_str()),
          isOpen ? file.open.back() : file.place);
    return false;
}

void SourceReader::_ReadLine(File& file) {
    const DirectiveLine directive = DirectiveLine::Parse(file.place.text);
    if (directive.directive == DirectiveLine::kDirective_None) {
        _ReadText(file);
        return;
    }
    _Follow(file, directive);
    // The text of an included file stands in the place of the directive.
    if (directive.directive != DirectiveLine::kDirective_Include) {
        _Write(file, {});
    }
}

void SourceReader::_Follow(File& file, const DirectiveLine& directive) {
    Definitions& definitions = _state.definitions;
    switch (directive.directive) {
    case DirectiveLine::kDirective_None:
        break;
    case DirectiveLine::kDirective_Include:
        _Include(file, directive);
        break;
    case DirectiveLine::kDirective_Import:
        _Import(file, directive);
        break;
    case DirectiveLine::kDirective_Define:
        _Define(file, directive);
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
        file.open.push_back(file.place);
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

void SourceReader::_Include(File& file, const DirectiveLine& directive) {
    std::string name;
    if (!_Open(file, directive, "include", name)) {
        return;
    }
    ++_state.files;
    std::string path;
    std::string text;
    const Place place{file.place.line, file.place.text, directive.argument};
    file.good = _client.BeginIncluded(name, place, path, text);
    if (file.good) {
        ++_state.depth;
        file.good = Read(path, text);
        --_state.depth;
        _client.EndIncluded();
    }
}

void SourceReader::_Import(File& file, const DirectiveLine& directive) {
    _Tell(Remark::kKind_Error,
          Format("Effects Manager: Deprecated preprocessor directive #import %s' in file '%s'",
                 directive.argument.c_str(), file.path.c_str()),
          file.place);
    std::string name;
    if (!_Open(file, directive, "import", name)) {
        return;
    }
    ++_state.files;
    ++_state.depth;
    file.good = _client.Import(name, {file.place.line, file.place.text, directive.argument});
    --_state.depth;
}

/// Finds out which file a directive names. @return whether it is to be opened
bool SourceReader::_Open(File& file, const DirectiveLine& directive, const char* word,
                         std::string& name) {
    if (!file.conditions.IsActive()) {
        return false;
    }
    if (!directive.GetFileName(name)) {
        _Tell(Remark::kKind_Error,
              Format("Effects Manager: Failed to interpret '#%s filename %s' in file '%s'", word,
                     directive.argument.c_str(), file.path.c_str()),
              {file.place.line, file.place.text, directive.argument});
        file.good = false;
    } else if (_state.depth >= kLimitIncludeDepth) {
        _Fail(file, Format("Limit of %d files inside each other", kLimitIncludeDepth));
    } else if (_state.files >= kLimitFiles) {
        _Fail(file, Format("Limit of %d files for one library", kLimitFiles));
    }
    return file.good;
}

void SourceReader::_Define(File& file, const DirectiveLine& directive) {
    if (!file.conditions.IsActive()) {
        return;
    }
    const std::string& name = directive.argument;
    if (name.size() > kLimitDefinitionName) {
        _Fail(file,
              Format("Limit of %zu characters in the name of a #define", kLimitDefinitionName));
        return;
    }
    Definitions& definitions = _state.definitions;
    const Place place{file.place.line, file.place.text, name};
    if (definitions.IsDefined(name)) {
        if (const std::string* const previous = definitions.FindFirst(name)) {
            _Tell(Remark::kKind_Redefinition,
                  Format("Effects Manager: Pre-Processor found redefinition of '%s' as '%s' "
                         "(was '%s')",
                         name.c_str(), directive.rest.c_str(), previous->c_str()),
                  place);
            definitions.EraseFirst(name);
        }
    }
    definitions.Define(name, directive.rest);
    _client.OnDefine(name, place);
}

void SourceReader::_ReadText(File& file) {
    if (!file.conditions.IsActive()) {
        _Write(file, {});
        return;
    }
    std::string text(file.place.text);
    if (_state.definitions.Substitute(text, kLimitExpandedSource)) {
        _Write(file, text);
    } else {
        _FailExpandedSource(file);
    }
}

void SourceReader::_Write(File& file, const std::string& text) {
    if (text.size() >= kLimitExpandedSource - _state.bytes) {
        _FailExpandedSource(file);
        return;
    }
    _client.Write(file.place, text, _state.definitions);
    _state.bytes += text.size() + 1;
}

void SourceReader::_Tell(Remark::Kind kind, const std::string& text, const Place& place) {
    _client.Tell({kind, text, place});
}

void SourceReader::_Fail(File& file, const std::string& limit) {
    _Tell(Remark::kKind_Limit,
          Format("Effects Manager: %s exceeded in file '%s' line %d", limit.c_str(),
                 file.path.c_str(), file.place.line),
          file.place);
    file.good = false;
}

void SourceReader::_FailExpandedSource(File& file) {
    _Fail(file, Format("Limit of %zu bytes of expanded source", kLimitExpandedSource));
}

} // namespace Tolen::Effects
