#include "engine/Services.h"

#include "engine/BatchOutput.h"
#include "engine/Kernel.h"
#include "engine/TextureSampler.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace Tolen::OpenKL {

namespace {

/// A call with its operands found.
class CallFrame {
public:
    CallFrame(ExecutionState& state, const ServiceCall& call)
        : _state(state), _call(call), _pOperands(state.pCallOperands + call.firstOperand),
          _pResults(state.pCallOperands + call.firstResult) {}

    int GetLaneCount() const { return _state.laneCount; }
    std::uint32_t GetOperandCount() const { return _call.operandCount; }
    const std::uint32_t* GetMask() const { return _GetRow(_call.mask); }

    std::uint32_t GetWord(std::uint32_t operand, int lane) const {
        const CallOperand& place = _pOperands[operand];
        return place.isScalar ? _state.pScalars[place.offset] : _GetRow(place.offset)[lane];
    }
    std::int32_t GetInt(std::uint32_t operand, int lane) const {
        return static_cast<std::int32_t>(GetWord(operand, lane));
    }
    float GetFloat(std::uint32_t operand, int lane) const {
        return std::bit_cast<float>(GetWord(operand, lane));
    }

    void SetResult(std::uint32_t result, int lane, std::uint32_t word) const {
        if (result < _call.resultCount && _pResults[result].offset != kNoOperand) {
            _GetRow(_pResults[result].offset)[lane] = word;
        }
    }

private:
    std::uint32_t* _GetRow(std::uint32_t offset) const {
        return static_cast<std::uint32_t*>(static_cast<void*>(_state.pRows + offset));
    }

    ExecutionState& _state;
    const ServiceCall& _call;
    const CallOperand* _pOperands;
    const CallOperand* _pResults;
};

const TextureView* FindTexture(const ExecutionState& state, std::int32_t sampler) {
    const PrimitiveBinding& primitive = *state.pInput->pPrimitive;
    bool isKnown =
        sampler >= 1 && sampler <= primitive.textureCount && primitive.pTextures != nullptr;
    return isKnown ? primitive.pTextures + (sampler - 1) : nullptr;
}

void SampleTextures(ExecutionState& state, const CallFrame& frame) {
    static constexpr TextureView kNoTexture;
    const std::uint32_t* pMask = frame.GetMask();
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        if (pMask[lane] == 0) {
            continue;
        }
        const TextureView* pTexture = FindTexture(state, frame.GetInt(0, lane));
        const TextureView& texture = pTexture == nullptr ? kNoTexture : *pTexture;
        float level = FindLevel(texture, frame.GetFloat(4, lane), frame.GetFloat(3, lane));
        float color[4];
        SampleTexture(texture, frame.GetFloat(1, lane), frame.GetFloat(2, lane), level, color);
        for (std::uint32_t i = 0; i < 4; ++i) {
            frame.SetResult(i, lane, std::bit_cast<std::uint32_t>(color[i]));
        }
    }
}

/// A level that a texture does not have is as large as its last one, halved on.
void GetTextureSizes(ExecutionState& state, const CallFrame& frame) {
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        const TextureView* pTexture = FindTexture(state, frame.GetInt(0, lane));
        std::int32_t width = 0;
        std::int32_t height = 0;
        if (pTexture != nullptr && pTexture->levelCount > 0) {
            int shift = std::clamp(frame.GetInt(1, lane), 0, 30);
            width = std::max(pTexture->pLevels[0].width >> shift, 1);
            height = std::max(pTexture->pLevels[0].height >> shift, 1);
        }
        frame.SetResult(0, lane, static_cast<std::uint32_t>(width));
        frame.SetResult(1, lane, static_cast<std::uint32_t>(height));
    }
}

/// The operands of a query side by side, since they may be scalars in the code.
struct QueryRows {
    float values[7][kMaxLanes];

    QueryRows(const CallFrame& frame, int firstLane, RayQuery& query) {
        for (std::uint32_t i = 0; i < 7; ++i) {
            for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
                values[i][lane] = frame.GetFloat(i, lane);
            }
        }
        query.firstLane = firstLane;
        query.laneCount = frame.GetLaneCount();
        query.pMask = frame.GetMask();
        for (std::size_t i = 0; i < 3; ++i) {
            query.pOrigin[i] = values[i];
            query.pDirection[i] = values[3 + i];
        }
        query.pMaxDistance = values[6];
    }
};

void FindOcclusion(ExecutionState& state, const CallFrame& frame) {
    RayQuery query;
    QueryRows rows(frame, state.firstLane, query);
    std::uint32_t occluded[kMaxLanes] = {};
    if (state.pInput->pRayQueries != nullptr) {
        state.pInput->pRayQueries->FindOcclusion(query, occluded);
    }
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        frame.SetResult(0, lane, occluded[lane] != 0 ? 0xffffffffu : 0u);
    }
}

void FindDistances(ExecutionState& state, const CallFrame& frame) {
    RayQuery query;
    QueryRows rows(frame, state.firstLane, query);
    float distances[kMaxLanes];
    std::fill(std::begin(distances), std::end(distances), -1.0f);
    if (state.pInput->pRayQueries != nullptr) {
        state.pInput->pRayQueries->FindDistance(query, distances);
    }
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        frame.SetResult(0, lane, std::bit_cast<std::uint32_t>(distances[lane]));
    }
}

std::uint32_t Hash(std::uint32_t x) {
    x ^= x >> 16;
    x *= 0x7feb352du;
    x ^= x >> 15;
    x *= 0x846ca68bu;
    return x ^ (x >> 16);
}

/// Rays of one invocation need sequences of their own.
std::uint32_t MakeRaySeed(std::uint32_t seed, std::uint32_t number) {
    return Hash(seed ^ Hash(number + 0x51ed270bu));
}

/// Operands ahead of the ray attributes.
constexpr std::uint32_t kSpawnOperands = 11;

void SpawnRays(ExecutionState& state, const CallFrame& frame) {
    const std::uint32_t* pMask = frame.GetMask();
    BatchOutput& output = *state.pOutput;
    std::uint32_t attributeWords = frame.GetOperandCount() - kSpawnOperands;
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        if (pMask[lane] == 0) {
            continue;
        }
        std::int32_t incoming = std::clamp(frame.GetInt(9, lane), 0, 7);
        std::uint32_t number = state.pLaneRays[lane]++;
        std::int32_t limit = state.pRayLimits[incoming];
        if (limit <= 0 || number >= static_cast<std::uint32_t>(limit)) {
            ++output.droppedRays;
            continue;
        }
        if (output.rays.GetCount() >= kMaxBatchRecords) {
            ++output.surplusRays;
            continue;
        }
        SpawnedRay ray;
        for (std::uint32_t i = 0; i < 3; ++i) {
            ray.origin[i] = frame.GetFloat(i, lane);
            ray.direction[i] = frame.GetFloat(3 + i, lane);
        }
        ray.maxDistance = frame.GetFloat(6, lane);
        ray.rayClass = frame.GetInt(7, lane);
        ray.missPrimitive = frame.GetInt(8, lane);
        ray.lane = static_cast<std::uint32_t>(state.firstLane + lane);
        ray.randomSeed = MakeRaySeed(frame.GetWord(10, lane), number);
        ray.attributes = static_cast<std::uint32_t>(output.rayAttributes.GetCount());
        *output.rays.Reserve(1) = ray;
        output.rays.Append(1);
        std::uint32_t* pWords = output.rayAttributes.Reserve(attributeWords);
        for (std::uint32_t i = 0; i < attributeWords; ++i) {
            pWords[i] = frame.GetWord(kSpawnOperands + i, lane);
        }
        output.rayAttributes.Append(attributeWords);
    }
}

void Accumulate(ExecutionState& state, const CallFrame& frame) {
    const std::uint32_t* pMask = frame.GetMask();
    std::uint32_t components = frame.GetOperandCount() - 1;
    AccumulateRecord* pRecords =
        state.pOutput->accumulates.Reserve(static_cast<std::size_t>(frame.GetLaneCount()));
    std::size_t count = 0;
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        std::uint32_t attachment = frame.GetWord(0, lane);
        if (pMask[lane] == 0 || attachment > 15) {
            continue;
        }
        if (state.pOutput->accumulates.GetCount() + count >= kMaxBatchRecords) {
            ++state.pOutput->surplusAccumulates;
            continue;
        }
        AccumulateRecord& record = pRecords[count++];
        record.lane = static_cast<std::uint16_t>(state.firstLane + lane);
        record.attachment = static_cast<std::uint8_t>(attachment);
        record.components = static_cast<std::uint8_t>(components);
        for (std::uint32_t i = 0; i < 4; ++i) {
            record.value[i] = i < components ? frame.GetFloat(1 + i, lane) : 0.0f;
        }
    }
    state.pOutput->accumulates.Append(count);
}

void Discard(ExecutionState& state, const CallFrame& frame) {
    const std::uint32_t* pMask = frame.GetMask();
    for (int lane = 0; lane < frame.GetLaneCount(); ++lane) {
        if (pMask[lane] != 0) {
            state.pOutput->discarded[state.firstLane + lane] = 1;
            state.pOutput->hasDiscarded = true;
        }
    }
}

} // namespace

std::uint32_t HashSeed(std::uint32_t value) {
    return Hash(value + 0x2545f491u);
}

void CallService(ExecutionState& state, const Instruction& instruction) {
    const ServiceCall& call = state.pCalls[instruction.imm];
    CallFrame frame(state, call);
    switch (call.service) {
    case Service::SampleTexture:
        SampleTextures(state, frame);
        break;
    case Service::TextureSize:
        GetTextureSizes(state, frame);
        break;
    case Service::Occluded:
        FindOcclusion(state, frame);
        break;
    case Service::TraceDistance:
        FindDistances(state, frame);
        break;
    case Service::Spawn:
        SpawnRays(state, frame);
        break;
    case Service::Accumulate:
        Accumulate(state, frame);
        break;
    case Service::Discard:
        Discard(state, frame);
        break;
    }
}

} // namespace Tolen::OpenKL
