#pragma once

#include "engine/Linear.h"
#include "engine/Translator.h"

namespace Tolen::OpenKL {

/// Compiles the entry functions of one stage into linear code, within the limits of the engine.
class EntryCompiler {
public:
    /// Levels of statements, expressions and calls in one another. A call takes two or three, so
    /// that chains of more than 20,000 calls compile.
    static constexpr int kMaxNesting = 65536;
    /// Operations of one entry once all of its calls are inlined.
    static constexpr std::size_t kMaxOperations = std::size_t{1} << 20;

    /// @param isOptimized see KernelOptions
    EntryCompiler(const LinkedProgram& program, const LinkedStage& stage,
                  const KernelLayout& layout, const std::vector<int>& globalWords,
                  bool isOptimized);

    /// @return an empty text, or the reason of the failure
    std::string Compile(Entry entry, LinearUnit& linear) const;

private:
    TranslationResult _Compile(Entry entry, int nesting, LinearUnit& linear,
                               const Function*& pStop) const;

    const LinkedProgram& _program;
    const LinkedStage& _stage;
    const KernelLayout& _layout;
    const std::vector<int>& _globalWords;
    bool _isOptimized;
};

} // namespace Tolen::OpenKL
