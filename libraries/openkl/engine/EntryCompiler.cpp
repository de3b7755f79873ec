#include "engine/EntryCompiler.h"

#include "engine/CopyRemoval.h"
#include "engine/DeadCode.h"
#include "engine/DeepStack.h"
#include "engine/FloatingPointScope.h"
#include "engine/Lowering.h"
#include "engine/OperationFusion.h"
#include "engine/Simplifier.h"
#include "engine/Uniformity.h"

namespace Tolen::OpenKL {

namespace {

/// Nesting that any thread's stack is good for; code that nests deeper is compiled on a thread
/// with a stack of its own.
constexpr int kShallowNesting = 96;
constexpr std::size_t kDeepStackBytes = std::size_t{512} << 20;

/// The second round finds what the first one's dead code was in the way of.
void Optimize(IrUnit& ir) {
    for (int round = 0; round < 2; ++round) {
        Simplify(ir);
        RemoveDeadCode(ir);
    }
    FuseOperations(ir);
    RemoveDeadCode(ir);
}

} // namespace

EntryCompiler::EntryCompiler(const LinkedProgram& program, const LinkedStage& stage,
                             const KernelLayout& layout, const std::vector<int>& globalWords,
                             bool isOptimized)
    : _program(program), _stage(stage), _layout(layout), _globalWords(globalWords),
      _isOptimized(isOptimized) {}

std::string EntryCompiler::Compile(Entry entry, LinearUnit& linear) const {
    const Function* pStop = nullptr;
    TranslationResult result = _Compile(entry, kShallowNesting, linear, pStop);
    if (result == TranslationResult::TooDeep) {
        auto compile = [&]() {
            FloatingPointScope scope;
            result = _Compile(entry, kMaxNesting, linear, pStop);
        };
        if (!RunWithStack(kDeepStackBytes, compile)) {
            return "no thread to compile deeply nested code on";
        }
    }
    std::string name = entry == Entry::Setup ? "'setup'" : "'main'";
    std::string place =
        pStop == nullptr ? "" : ", which it reaches in '" + pStop->GetSignature() + "'";
    switch (result) {
    case TranslationResult::TooDeep:
        return name + " nests deeper than the limit of " + std::to_string(kMaxNesting) +
               " levels once its calls are inlined" + place;
    case TranslationResult::TooLarge:
        return name + " has more than the limit of " + std::to_string(kMaxOperations) +
               " operations once its calls are inlined" + place;
    case TranslationResult::Done:
        break;
    }
    return {};
}

TranslationResult EntryCompiler::_Compile(Entry entry, int nesting, LinearUnit& linear,
                                          const Function*& pStop) const {
    IrUnit ir;
    TranslationLimits limits{nesting, kMaxOperations, _isOptimized};
    Translator translator(_program, _stage, _layout, _globalWords, limits, ir);
    TranslationResult result = translator.Translate(entry);
    pStop = translator.GetStop();
    if (result != TranslationResult::Done) {
        return result;
    }
    if (_isOptimized) {
        Optimize(ir);
    }
    linear = Lower(ir, AnalyzeUniformity(ir));
    if (_isOptimized) {
        RemoveCopies(linear);
    }
    return result;
}

} // namespace Tolen::OpenKL
