#include "engine/Translator.h"

namespace Tolen::OpenKL {

Translator::Translator(const LinkedProgram& program, const LinkedStage& stage,
                       const KernelLayout& layout, const std::vector<int>& globalWords,
                       const TranslationLimits& limits, IrUnit& unit)
    : _program(program), _stage(stage), _layout(layout), _globalWords(globalWords), _limits(limits),
      _unit(unit), _builder(unit, limits.sharesCalls), _math(_builder), _access(_builder),
      _memory(_builder) {
    if (_limits.sharesCalls) {
        _builder.SetMemory(&_memory);
    }
}

TranslationResult Translator::Translate(Entry entry) {
    _entry = entry;
    const Function* function = entry == Entry::Setup ? _stage.setup : _stage.main;
    _usage = ScanUsage(_stage, function, entry == Entry::Setup);
    _FindTexts();
    _randomCalls = _builder.AddVariables(1);
    _builder.StoreVariable(_randomCalls, _builder.Int(0));
    _MakeBuiltins(entry);
    _MakeGlobals(entry);
    _builder.EndShared();
    if (function != nullptr) {
        _Inline(*function, {});
    }
    if (entry == Entry::Setup) {
        _StoreState();
    } else if (_stage.stage == kStage_Vertex) {
        _StoreOutputs();
    } else if (_stage.stage == kStage_Prefix) {
        _PassRayAttributes();
    }
    return _result;
}

bool Translator::_IsStopped() {
    if (_unit.ops.size() > _limits.operations) {
        _Stop(TranslationResult::TooLarge);
    }
    // Chains of `else if` and of returns put regions into one another without nesting.
    if (_builder.GetDepth() > 2 * _limits.nesting) {
        _Stop(TranslationResult::TooDeep);
    }
    return _result != TranslationResult::Done;
}

void Translator::_Stop(TranslationResult result) {
    if (_result == TranslationResult::Done) {
        _result = result;
        _pStop = _frames.empty() ? nullptr : _frames.back().pFunction;
    }
}

void Translator::_FindTexts() {
    for (std::size_t text = 0; text < _program.shaders.size(); ++text) {
        for (const Function* function : _program.shaders[text]->functions) {
            _textOf[function] = static_cast<std::int32_t>(text);
        }
    }
}

} // namespace Tolen::OpenKL
