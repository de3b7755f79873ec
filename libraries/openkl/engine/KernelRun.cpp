#include "engine/KernelCode.h"

#include "engine/FloatingPointScope.h"
#include "engine/Services.h"

#include <algorithm>
#include <cstring>

namespace Tolen::OpenKL {

namespace {

/// Alignment of rows, that of the widest vectors.
constexpr std::align_val_t kRowAlignment{64};

/// Lanes that all executors work on as a whole.
constexpr std::uint32_t kLaneGroup = 16;

Executor GetExecutor(InstructionSet instructionSet) {
    switch (instructionSet) {
    case InstructionSet::Avx512:
        return ExecuteAvx512;
    case InstructionSet::Avx2:
        return ExecuteAvx2;
    case InstructionSet::Baseline:
        break;
    }
    return ExecuteBaseline;
}

/// Runs one entry of a kernel for a batch, in as many parts as its rows have lanes for.
class BatchRun {
public:
    BatchRun(const KernelCode& code, const KernelUnit& unit, InstructionSet instructionSet,
             const BatchInput& input, BatchOutput& output)
        : _code(code), _unit(unit), _executor(GetExecutor(instructionSet)), _input(input),
          _output(output) {}

    void Run(ScratchMemory& memory, std::uint32_t* pState, unsigned char* pOutputRows) {
        memory.Reserve(_unit);
        for (int first = 0; first < _input.laneCount;
             first += static_cast<int>(_unit.strideWords)) {
            ExecutionState state = _MakeState(memory, first);
            state.pState = pState;
            state.pOutputRows = pOutputRows;
            _RunPart(state, memory);
        }
    }

private:
    ExecutionState _MakeState(ScratchMemory& memory, int first) {
        ExecutionState state{};
        state.pCode = _unit.code.data();
        state.pRows = reinterpret_cast<unsigned char*>(memory.rows.get());
        state.pScalars = memory.scalars.data();
        state.strideWords = _unit.strideWords;
        state.firstLane = first;
        state.laneCount = std::min(_input.laneCount - first, static_cast<int>(_unit.strideWords));
        auto lanes = static_cast<std::uint32_t>(state.laneCount);
        state.rowBytes = (lanes + kLaneGroup - 1) / kLaneGroup * kLaneGroup * 4;
        state.pInput = &_input;
        state.pOutput = &_output;
        const PrimitiveBinding& primitive = *_input.pPrimitive;
        auto words = [&](const void* pWords) {
            return pWords == nullptr ? _code.zeros.data()
                                     : static_cast<const std::uint32_t*>(pWords);
        };
        state.pTables[kTable_Uniforms] = words(primitive.pUniforms);
        state.pTables[kTable_State] = words(primitive.pState);
        state.pExtra = _unit.extra.data();
        state.pCalls = _unit.calls.data();
        state.pCallOperands = _unit.callOperands.data();
        state.callService = CallService;
        state.stepLimit = _code.options.loopSteps;
        state.pLaneRays = memory.laneRays;
        for (int i = 0; i < 8; ++i) {
            _rayLimits[i] = _FindRayLimit(primitive.pState, i);
        }
        state.pRayLimits = _rayLimits;
        return state;
    }

    std::int32_t _FindRayLimit(const void* pState, int rayClass) const {
        if (pState == nullptr) {
            return 1;
        }
        auto* pWords = static_cast<const std::int32_t*>(pState);
        return pWords[_code.isFrame ? 0 : rayClass];
    }

    /// Most often no lane comes near the limit of loop steps. Where the lanes together do, the
    /// part starts again and counts for each lane.
    void _RunPart(ExecutionState& state, ScratchMemory& memory) {
        std::size_t accumulates = _output.accumulates.GetCount();
        std::size_t rays = _output.rays.GetCount();
        std::size_t attributes = _output.rayAttributes.GetCount();
        std::uint64_t droppedRays = _output.droppedRays;
        std::uint64_t surplusRays = _output.surplusRays;
        std::uint64_t surplusAccumulates = _output.surplusAccumulates;
        _Prepare(state, memory);
        _executor(state);
        if (!state.mustCountLanes) {
            return;
        }
        _output.accumulates.Truncate(accumulates);
        _output.rays.Truncate(rays);
        _output.rayAttributes.Truncate(attributes);
        _output.droppedRays = droppedRays;
        _output.surplusRays = surplusRays;
        _output.surplusAccumulates = surplusAccumulates;
        std::fill_n(_output.discarded + state.firstLane, state.laneCount, 0u);
        _output.hasDiscarded = std::count(_output.discarded, _output.discarded + kMaxLanes, 1u) > 0;
        memory.laneSteps.assign(kMaxLanes, 0);
        state.pLaneSteps = memory.laneSteps.data();
        _Prepare(state, memory);
        _executor(state);
        _ReportStops(state);
    }

    void _Prepare(ExecutionState& state, ScratchMemory& memory) {
        std::copy(_unit.constants.begin(), _unit.constants.end(), state.pScalars);
        std::fill_n(memory.laneRays, kMaxLanes, 0u);
        // The first row is the mask of the lanes.
        auto* pLanes = memory.rows.get();
        std::fill_n(pLanes, state.laneCount, 0xffffffffu);
        std::fill_n(pLanes + state.laneCount,
                    state.rowBytes / 4 - static_cast<std::uint32_t>(state.laneCount), 0u);
    }

    void _ReportStops(const ExecutionState& state) {
        if (state.stoppedLanes > 0 && _output.stoppedInvocations == 0) {
            _output.stoppedText = _unit.stepTexts[state.stoppedStep];
            _output.stoppedLine = _unit.stepLines[state.stoppedStep];
        }
        _output.stoppedInvocations += state.stoppedLanes;
    }

    const KernelCode& _code;
    const KernelUnit& _unit;
    Executor _executor;
    const BatchInput& _input;
    BatchOutput& _output;
    std::int32_t _rayLimits[8] = {};
};

/// Gives a batch @p count rows of zeros to write.
unsigned char* MakeRows(RecordBuffer<std::uint32_t>& rows, std::size_t count) {
    const std::size_t words = count * static_cast<std::size_t>(kMaxLanes);
    rows.Clear();
    std::uint32_t* const pRows = rows.Reserve(words);
    std::fill_n(pRows, words, 0u);
    rows.Append(words);
    return reinterpret_cast<unsigned char*>(pRows);
}

void Clear(BatchOutput& output) {
    output.accumulates.Clear();
    output.rays.Clear();
    output.rayAttributes.Clear();
    if (output.hasDiscarded) {
        std::fill_n(output.discarded, kMaxLanes, 0u);
        output.hasDiscarded = false;
    }
    output.droppedRays = 0;
    output.surplusRays = 0;
    output.surplusAccumulates = 0;
    output.stoppedInvocations = 0;
    output.stoppedText = 0;
    output.stoppedLine = 0;
}

} // namespace

void RowsDelete::operator()(std::uint32_t* pWords) const {
    ::operator delete[](pWords, kRowAlignment);
}

void ScratchMemory::Reserve(const KernelUnit& unit) {
    std::size_t words = static_cast<std::size_t>(unit.rowCount) * unit.strideWords;
    if (words > rowWords) {
        std::size_t bytes = words * sizeof(std::uint32_t);
        rows.reset(static_cast<std::uint32_t*>(::operator new[](bytes, kRowAlignment)));
        rowWords = words;
        std::memset(rows.get(), 0, bytes);
    }
    if (scalars.size() < unit.scalarCount) {
        scalars.resize(unit.scalarCount);
    }
}

KernelScratch::KernelScratch(InstructionSet instructionSet)
    : _pMemory(std::make_unique<ScratchMemory>()) {
    _pMemory->instructionSet =
        IsSupported(instructionSet) ? instructionSet : InstructionSet::Baseline;
}

KernelScratch::~KernelScratch() = default;
KernelScratch::KernelScratch(KernelScratch&&) noexcept = default;
KernelScratch& KernelScratch::operator=(KernelScratch&&) noexcept = default;

InstructionSet KernelScratch::GetInstructionSet() const {
    return _pMemory->instructionSet;
}

void Kernel::RunSetup(const BatchInput& input, void* pState, BatchOutput& output,
                      KernelScratch& scratch) const {
    FloatingPointScope scope;
    Clear(output);
    BatchInput one = input;
    one.laneCount = 1;
    BatchRun run(*_pCode, _pCode->setup, scratch._pMemory->instructionSet, one, output);
    run.Run(*scratch._pMemory, static_cast<std::uint32_t*>(pState), nullptr);
}

void Kernel::Run(const BatchInput& input, BatchOutput& output, KernelScratch& scratch) const {
    FloatingPointScope scope;
    Clear(output);
    unsigned char* pOutputRows = nullptr;
    if (_pCode->isVertex) {
        pOutputRows =
            MakeRows(output.vertexRows, static_cast<std::size_t>(_pCode->layout.varyingWords) + 4);
    } else if (_pCode->isPrefix) {
        pOutputRows = MakeRows(output.passedAttributes,
                               static_cast<std::size_t>(_pCode->layout.rayAttributeWords));
    }
    BatchRun run(*_pCode, _pCode->main, scratch._pMemory->instructionSet, input, output);
    run.Run(*scratch._pMemory, nullptr, pOutputRows);
}

} // namespace Tolen::OpenKL
