#include "engine/Kernel.h"

#include "engine/CopyRemoval.h"
#include "engine/DeadCode.h"
#include "engine/DeepStack.h"
#include "engine/FloatingPointScope.h"
#include "engine/KernelCode.h"
#include "engine/Lowering.h"
#include "engine/OperationFusion.h"
#include "engine/Simplifier.h"
#include "engine/Translator.h"
#include "engine/Uniformity.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

/// Nesting that any thread's stack is good for; code that nests deeper is compiled on a thread
/// with a stack of its own.
constexpr int kShallowNesting = 96;
constexpr int kMaxKernelNesting = 16384;
constexpr std::size_t kDeepStackBytes = std::size_t{512} << 20;

/// Operations of one entry once all of its calls are inlined.
constexpr std::size_t kMaxOperations = std::size_t{1} << 20;

/// Words of variables and intermediate values of one invocation.
constexpr std::uint32_t kMaxRows = 1u << 18;

/// Compiles one entry function of a stage.
class EntryCompiler {
public:
    EntryCompiler(const LinkedProgram& program, const LinkedStage& stage,
                  const KernelLayout& layout, const std::vector<int>& globalWords, bool isOptimized)
        : _program(program), _stage(stage), _layout(layout), _globalWords(globalWords),
          _isOptimized(isOptimized) {}

    /// @return an empty text, or the reason of the failure
    std::string Compile(Entry entry, KernelUnit& unit) const {
        TranslationResult result = _Compile(entry, kShallowNesting, unit);
        if (result == TranslationResult::TooDeep) {
            auto compile = [&]() {
                FloatingPointScope scope;
                result = _Compile(entry, kMaxKernelNesting, unit);
            };
            if (!RunWithStack(kDeepStackBytes, compile)) {
                return "no thread to compile deeply nested code on";
            }
        }
        std::string name = entry == Entry::Setup ? "'setup'" : "'main'";
        switch (result) {
        case TranslationResult::TooDeep:
            return name + " nests deeper than the limit of " + std::to_string(kMaxKernelNesting) +
                   " levels once its calls are inlined";
        case TranslationResult::TooLarge:
            return name + " has more than the limit of " + std::to_string(kMaxOperations) +
                   " operations once its calls are inlined";
        case TranslationResult::Done:
            break;
        }
        if (unit.rowCount > kMaxRows) {
            return name + " needs " + std::to_string(unit.rowCount) +
                   " words for its variables, more than the limit of " + std::to_string(kMaxRows);
        }
        return {};
    }

private:
    TranslationResult _Compile(Entry entry, int nesting, KernelUnit& unit) const {
        IrUnit ir;
        TranslationLimits limits{nesting, kMaxOperations};
        Translator translator(_program, _stage, _layout, _globalWords, limits, ir);
        TranslationResult result = translator.Translate(entry);
        if (result == TranslationResult::Done) {
            if (_isOptimized) {
                _Optimize(ir);
            }
            LinearUnit linear = Lower(ir, AnalyzeUniformity(ir));
            if (_isOptimized) {
                RemoveCopies(linear);
            }
            unit = Assemble(std::move(linear));
        }
        return result;
    }

    /// The second round finds what the first one's dead code was in the way of.
    static void _Optimize(IrUnit& ir) {
        for (int round = 0; round < 2; ++round) {
            Simplify(ir);
            RemoveDeadCode(ir);
        }
        FuseOperations(ir);
        RemoveDeadCode(ir);
    }

    const LinkedProgram& _program;
    const LinkedStage& _stage;
    const KernelLayout& _layout;
    const std::vector<int>& _globalWords;
    bool _isOptimized;
};

} // namespace

Kernel::Kernel() : _pCode(std::make_unique<KernelCode>()) {}
Kernel::~Kernel() = default;

const KernelLayout& Kernel::GetLayout() const {
    return _pCode->layout;
}

std::unique_ptr<const Kernel> Kernel::Compile(const LinkedProgram& program, KernelStage stage,
                                              const KernelOptions& options, std::string* error) {
    // What is computed here rounds as it would in the code.
    FloatingPointScope scope;
    const LinkedStage* linked =
        stage == KernelStage::Vertex ? program.vertex.get() : &program.shading;
    std::string reason;
    std::unique_ptr<Kernel> kernel(new Kernel());
    if (linked == nullptr) {
        reason = "the program has no vertex shader";
    } else {
        KernelCode& code = *kernel->_pCode;
        std::vector<int> globalWords;
        code.layout = MakeLayout(program, *linked, globalWords);
        code.options = options;
        code.isFrame = linked->stage == kStage_Frame;
        code.isVertex = linked->stage == kStage_Vertex;
        code.isPrefix = linked->stage == kStage_Prefix;
        code.zeros.resize(
            static_cast<std::size_t>(std::max(code.layout.uniformWords, code.layout.stateWords)));
        EntryCompiler compiler(program, *linked, code.layout, globalWords, options.isOptimized);
        reason = compiler.Compile(Entry::Setup, code.setup);
        if (reason.empty()) {
            reason = compiler.Compile(Entry::Main, code.main);
        }
    }
    if (!reason.empty()) {
        if (error != nullptr) {
            *error = reason;
        }
        return nullptr;
    }
    return kernel;
}

int Kernel::GetOutputRayCount(const void* pState, int rayClass) const {
    if (pState == nullptr) {
        return 1;
    }
    int word = _pCode->isFrame ? 0 : std::clamp(rayClass, 0, kRayCountWords - 1);
    return static_cast<const std::int32_t*>(pState)[word];
}

} // namespace Tolen::OpenKL
