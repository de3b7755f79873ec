// The preprocessor of MgrEffectsImpl: from a file to the text of a library.
//
// Every line of a file becomes one line of the text, so that the parser can tell lines of the
// file; only an #include is replaced by what it names.

#include "MgrEffectsImpl.h"

#include "ConditionStack.h"
#include "DirectiveLine.h"
#include "PreprocessorState.h"

#include "TolenEffects/Limits.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Assets.h"
#include "TolenCore/Console.h"
#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <algorithm>

namespace Tolen::Effects {

struct MgrEffectsImpl::SourceFile {
    const std::string& path;
    std::string& output;
    PreprocessorState& state;
    Result* pResult;
    ConditionStack conditions{};
    int line = 0;     ///< that is being processed, from 1
    bool good = true; ///< false ends the processing
};

bool MgrEffectsImpl::_ReadFile(const std::string& file, std::string& path, std::string& text) {
    IMgrAssets* const assets = GetMgrAssets();
    if (!TOLEN_CHECK_TEXT(assets != nullptr, "pMgrAssets != NULL", "Source/MgrEffectsImpl")) {
        return false;
    }
    IAsset::Status status = IAsset::kStatus_NotFound;
    IAsset* const asset = assets->AcquireAsset(Path(file), 1, status);
    if (asset == nullptr) {
        _Console().Error("Failed to read shader source file '%s' (%s)\n", file.c_str(),
                         IAsset::StatusString(status));
        return false;
    }
    path = asset->GetPath().AsString();
    _Console().Print("Acquired shader source asset successfully: '%s'\n", path.c_str());
    const char* const content = asset->GetText();
    text = content == nullptr ? "" : content;
    assets->ReleaseAsset(asset);
    return !text.empty();
}

bool MgrEffectsImpl::_AddLibrary(const std::string& file, PreprocessorState& state,
                                 Result* result) {
    const long long lineAdjustment = _lineAdjustment;
    _lineAdjustment = 0;
    std::string path;
    std::string text;
    ++state.files;
    if (!_ReadFile(file, path, text)) {
        return false;
    }
    std::string output;
    if (!_StreamAndProcessFile(path, text, output, state, result)) {
        return false;
    }
    const bool added = AddLibrary(path, output, result);
    _lineAdjustment = lineAdjustment;
    return added;
}

bool MgrEffectsImpl::_StreamAndProcessFile(const std::string& path, const std::string& text,
                                           std::string& output, PreprocessorState& state,
                                           Result* result) {
    SourceFile file{path, output, state, result};
    if (_pOpenKLContext != nullptr && _pOpenKLContext->AreDifferentialsEnabled()) {
        state.definitions.Define("KL_DIFFERENTIALS_ENABLED", "1");
    }
    if (_pOpenKLContext != nullptr && _pOpenKLContext->AreFilteredAccumulatesEnabled()) {
        state.definitions.Define("KL_FILTERED_ACCUMULATES_ENABLED", "1");
    }
    for (std::size_t begin = 0;
         begin < text.size() && file.good && !file.conditions.IsMismatched();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        ++file.line;
        _ProcessLine(file, std::string_view(text).substr(begin, end - begin));
        begin = end + 1;
    }
    if (!file.conditions.IsBalanced()) {
        _Console().Error(
            "Effects Manager: Pre-Processor Condition Stack mismatch while reading file '%s'\n",
            path.c_str());
        return false;
    }
    return file.good;
}

void MgrEffectsImpl::_ProcessLine(SourceFile& file, std::string_view line) {
    const DirectiveLine parsed = DirectiveLine::Parse(line);
    if (parsed.directive == DirectiveLine::kDirective_None) {
        _ProcessText(file, line);
        return;
    }
    _ProcessDirective(file, parsed);
    // The text of an included file stands in the place of the directive.
    if (parsed.directive != DirectiveLine::kDirective_Include) {
        _Write(file, {});
    }
}

void MgrEffectsImpl::_ProcessDirective(SourceFile& file, const DirectiveLine& line) {
    Definitions& definitions = file.state.definitions;
    switch (line.directive) {
    case DirectiveLine::kDirective_None:
        break;
    case DirectiveLine::kDirective_Include:
        _ProcessInclude(file, line);
        break;
    case DirectiveLine::kDirective_Import:
        _ProcessImport(file, line);
        break;
    case DirectiveLine::kDirective_Define:
        _ProcessDefine(file, line);
        break;
    case DirectiveLine::kDirective_Undef:
        if (file.conditions.IsActive() && definitions.IsDefined(line.argument)) {
            definitions.EraseFirst(line.argument);
        }
        break;
    case DirectiveLine::kDirective_Ifdef:
        file.conditions.Push(definitions.IsDefined(line.argument));
        break;
    case DirectiveLine::kDirective_Ifndef:
        file.conditions.Push(!definitions.IsDefined(line.argument));
        break;
    case DirectiveLine::kDirective_Else:
        file.conditions.Else();
        break;
    case DirectiveLine::kDirective_Endif:
        file.conditions.Endif();
        break;
    }
}

void MgrEffectsImpl::_ProcessInclude(SourceFile& file, const DirectiveLine& line) {
    if (!file.conditions.IsActive()) {
        return;
    }
    std::string name;
    if (!line.GetFileName(name)) {
        _Console().Error(
            "Effects Manager: Failed to interpret '#include filename %s' in file '%s'\n",
            line.argument.c_str(), file.path.c_str());
        file.good = false;
        return;
    }
    if (!_CanOpen(file)) {
        return;
    }
    ++file.state.files;
    std::string path;
    std::string text;
    file.good = _ReadFile(name, path, text);
    // What follows keeps the line that it has in this file.
    _lineAdjustment += 1 - std::count(text.begin(), text.end(), '\n');
    if (file.good) {
        ++file.state.depth;
        file.good = _StreamAndProcessFile(path, text, file.output, file.state, file.pResult);
        --file.state.depth;
    }
}

void MgrEffectsImpl::_ProcessImport(SourceFile& file, const DirectiveLine& line) {
    _Console().Error(
        "Effects Manager: Deprecated preprocessor directive #import %s' in file '%s'\n",
        line.argument.c_str(), file.path.c_str());
    if (!file.conditions.IsActive()) {
        return;
    }
    std::string name;
    if (!line.GetFileName(name)) {
        _Console().Error(
            "Effects Manager: Failed to interpret '#import filename %s' in file '%s'\n",
            line.argument.c_str(), file.path.c_str());
        file.good = false;
        return;
    }
    if (!_CanOpen(file)) {
        return;
    }
    ++file.state.depth;
    file.good = _AddLibrary(name, file.state, file.pResult);
    --file.state.depth;
}

void MgrEffectsImpl::_ProcessDefine(SourceFile& file, const DirectiveLine& line) {
    if (!file.conditions.IsActive()) {
        return;
    }
    const std::string& name = line.argument;
    if (name.size() > kLimitDefinitionName) {
        _ReportLimit(
            file, Format("Limit of %zu characters in the name of a #define", kLimitDefinitionName));
        return;
    }
    Definitions& definitions = file.state.definitions;
    if (definitions.IsDefined(name)) {
        if (const std::string* previous = definitions.FindFirst(name)) {
            _Console().Warning("Effects Manager: Pre-Processor found redefinition of '%s' as '%s' "
                               "(was '%s')\n",
                               name.c_str(), line.rest.c_str(), previous->c_str());
            definitions.EraseFirst(name);
        }
    }
    definitions.Define(name, line.rest);
}

void MgrEffectsImpl::_ProcessText(SourceFile& file, std::string_view line) {
    if (!file.conditions.IsActive()) {
        _Write(file, {});
        return;
    }
    std::string substituted(line);
    if (file.state.definitions.Substitute(substituted, kLimitExpandedSource)) {
        _Write(file, substituted);
    } else {
        _ReportLimitExpandedSource(file);
    }
}

void MgrEffectsImpl::_Write(SourceFile& file, std::string_view line) {
    if (line.size() >= kLimitExpandedSource - file.state.bytes) {
        _ReportLimitExpandedSource(file);
        return;
    }
    file.output += line;
    file.output += '\n';
    file.state.bytes += line.size() + 1;
}

bool MgrEffectsImpl::_CanOpen(SourceFile& file) {
    if (file.state.depth >= kLimitIncludeDepth) {
        _ReportLimit(file, Format("Limit of %d files inside each other", kLimitIncludeDepth));
    } else if (file.state.files >= kLimitFiles) {
        _ReportLimit(file, Format("Limit of %d files for one library", kLimitFiles));
    }
    return file.good;
}

void MgrEffectsImpl::_ReportLimit(SourceFile& file, const std::string& limit) {
    const std::string message = Format("Effects Manager: %s exceeded in file '%s' line %d",
                                       limit.c_str(), file.path.c_str(), file.line);
    _Console().Error("%s\n", message.c_str());
    if (file.pResult != nullptr) {
        file.pResult->Add("%s", message.c_str());
    }
    file.good = false;
}

void MgrEffectsImpl::_ReportLimitExpandedSource(SourceFile& file) {
    _ReportLimit(file, Format("Limit of %zu bytes of expanded source", kLimitExpandedSource));
}

} // namespace Tolen::Effects
