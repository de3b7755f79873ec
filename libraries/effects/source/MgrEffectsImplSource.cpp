// The preprocessor of MgrEffectsImpl: from a file to the text of a library.

#include "MgrEffectsImpl.h"

#include "PreprocessorState.h"
#include "SourceReader.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Assets.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>

namespace Tolen::Effects {

/// Collects the text of one library.
class MgrEffectsImpl::SourceClient : public SourceReader::Client {
public:
    SourceClient(MgrEffectsImpl& implementation, std::string& output, PreprocessorState& state,
                 Result* result)
        : _implementation(implementation), _output(output), _state(state), _pResult(result) {}

    void DefineNames(Definitions& definitions) override {
        const IOpenKLContext* const context = _implementation._pOpenKLContext;
        if (context != nullptr && context->AreDifferentialsEnabled()) {
            definitions.Define("KL_DIFFERENTIALS_ENABLED", "1");
        }
        if (context != nullptr && context->AreFilteredAccumulatesEnabled()) {
            definitions.Define("KL_FILTERED_ACCUMULATES_ENABLED", "1");
        }
    }

    bool BeginIncluded(const std::string& file, const SourceReader::Place&, std::string& path,
                       std::string& text) override {
        const bool good = _implementation._ReadFile(file, path, text);
        // What follows keeps the line that it has in this file.
        _implementation._lineAdjustment += 1 - std::count(text.begin(), text.end(), '\n');
        return good;
    }

    void EndIncluded() override {}

    bool Import(const std::string& file, const SourceReader::Place&) override {
        return _implementation._AddLibrary(file, _state, _pResult);
    }

    void OnDefine(const std::string&, const SourceReader::Place&) override {}

    void Write(const SourceReader::Place&, const std::string& text, const Definitions&) override {
        _output += text;
        _output += '\n';
    }

    void Tell(const SourceReader::Remark& remark) override {
        const char* const text = remark.text.c_str();
        if (remark.kind == SourceReader::Remark::kKind_Redefinition) {
            _implementation._Console().Warning("%s\n", text);
            return;
        }
        _implementation._Console().Error("%s\n", text);
        if (remark.kind == SourceReader::Remark::kKind_Limit && _pResult != nullptr) {
            _pResult->Add("%s", text);
        }
    }

private:
    MgrEffectsImpl& _implementation;
    std::string& _output;
    PreprocessorState& _state;
    Result* _pResult; ///< borrowed, may be null
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
    SourceClient client(*this, output, state, result);
    return SourceReader(client, state).Read(path, text);
}

} // namespace Tolen::Effects
