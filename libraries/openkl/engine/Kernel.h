#pragma once

#include "engine/Batch.h"
#include "engine/BatchOutput.h"
#include "engine/InstructionSet.h"

#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

class KernelCode;
struct ScratchMemory;
struct LinkedProgram;

/// Where a global of a program has its words.
struct KernelVariable {
    std::string name;
    int location = -1;    ///< that of the linked program; -1 where it has none
    int firstWord = 0;    ///< 32-bit words
    int wordCount = 0;    ///< of all elements together
    int elementWords = 0; ///< of one array element; wordCount where the variable is no array
};

/// How the renderer lays out the values of a program's globals. Lists stand in the order of the
/// linked program, so that the i-th entry belongs to its i-th variable of that kind.
struct KernelLayout {
    std::vector<KernelVariable> uniforms; ///< words in PrimitiveBinding::pUniforms
    int uniformWords = 0;
    std::vector<KernelVariable> blocks; ///< one for each of PrimitiveBinding::pBlocks
    std::vector<KernelVariable> attributes;
    int attributeWords = 0;
    std::vector<KernelVariable> varyings;
    int varyingWords = 0;
    std::vector<KernelVariable> rayAttributes;
    int rayAttributeWords = 0;
    int stateWords = 0; ///< what setup leaves, PrimitiveBinding::pState
};

struct KernelOptions {
    /// Loop steps that one invocation may do.
    std::uint64_t loopSteps = 10'000'000;
    /// Without, code runs as it stands; it gives the same bits, slowly. For tests.
    bool isOptimized = true;
};

/// Which stage of a linked program a kernel is for.
enum class KernelStage { Main, Vertex };

/// The registers that kernels run in; one for each thread, for any number of kernels.
class KernelScratch {
public:
    explicit KernelScratch(InstructionSet instructionSet = GetBestInstructionSet());
    ~KernelScratch();
    KernelScratch(KernelScratch&&) noexcept;
    KernelScratch& operator=(KernelScratch&&) noexcept;

    InstructionSet GetInstructionSet() const;

private:
    friend class Kernel;
    std::unique_ptr<ScratchMemory> _pMemory;
};

/// A stage of a linked program, compiled for batches of invocations.
///
/// A kernel never changes and may run on any number of threads at once, each with a scratch and an
/// output of its own. It keeps nothing of the linked program. The values that an invocation gives
/// depend on that invocation's input alone: not on the other lanes, the batch size, the thread or
/// the instruction set. Denormals are flushed to zero while a kernel runs and the floating-point
/// state of the thread is restored after.
class Kernel {
public:
    /// @param program linked without errors
    /// @param stage   Vertex: the vertex shader of a ray program; Main: the other shaders of it
    /// @param error   takes the reason of a failure; null drops it
    /// @return null when the code passes a limit of the engine, which @p error names
    static std::unique_ptr<const Kernel> Compile(const LinkedProgram& program, KernelStage stage,
                                                 const KernelOptions& options, std::string* error);
    ~Kernel();
    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;

    const KernelLayout& GetLayout() const;

    /// Runs `setup` once for a primitive.
    /// @param input    one lane; the constants and the primitive, whose pState is not read
    /// @param pState   takes layout.stateWords words, borrowed, 4-byte aligned
    /// @param output   takes the loop limit's report; setup gives nothing else
    void RunSetup(const BatchInput& input, void* pState, BatchOutput& output,
                  KernelScratch& scratch) const;

    /// Runs `main` for every lane of @p input and replaces what @p output held.
    void Run(const BatchInput& input, BatchOutput& output, KernelScratch& scratch) const;

    /// The most rays that an invocation may spawn, as setup left it in @p pState.
    /// @param rayClass 0 to 7, the class of the incoming ray; 0 for frames
    int GetOutputRayCount(const void* pState, int rayClass) const;

private:
    Kernel();
    std::unique_ptr<KernelCode> _pCode;
};

/// The start of a random sequence for @p value, such as the index of a pixel.
std::uint32_t HashSeed(std::uint32_t value);

} // namespace Tolen::OpenKL
