#include "engine/Kernel.h"

#include "engine/EntryCompiler.h"
#include "engine/FloatingPointScope.h"
#include "engine/KernelCode.h"

#include <algorithm>
#include <utility>

namespace Tolen::OpenKL {

namespace {

/// Words of variables and intermediate values of one invocation.
constexpr std::uint32_t kMaxRows = 1u << 18;

/// @return an empty text, or the reason of the failure
std::string CompileEntry(const EntryCompiler& compiler, Entry entry, KernelUnit& unit) {
    LinearUnit linear;
    std::string reason = compiler.Compile(entry, linear);
    if (!reason.empty()) {
        return reason;
    }
    unit = Assemble(std::move(linear));
    if (unit.rowCount > kMaxRows) {
        return std::string(entry == Entry::Setup ? "'setup'" : "'main'") + " needs " +
               std::to_string(unit.rowCount) + " words for its variables, more than the limit of " +
               std::to_string(kMaxRows);
    }
    return {};
}

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
        reason = CompileEntry(compiler, Entry::Setup, code.setup);
        if (reason.empty()) {
            reason = CompileEntry(compiler, Entry::Main, code.main);
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
