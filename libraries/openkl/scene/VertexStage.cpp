#include "scene/VertexStage.h"

#include "compiler/LinkedProgram.h"
#include "scene/Primitive.h"
#include "scene/Program.h"
#include "scene/ThreadTeam.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <string>

namespace Tolen::OpenKL {

namespace {

/// Names the position for primitives whose program has no vertex shader.
constexpr const char* kPositionAttribute = "a_Position";

/// Where the words of one attribute come from.
struct AttributeSource {
    const AttributeData* pData; ///< null reads as 0
    std::size_t vertexCount;
    int firstWord;
    int wordCount;
    bool isInteger;
};

std::vector<AttributeSource> FindSources(const Primitive& primitive, const LinkedCode& code) {
    std::vector<AttributeSource> sources;
    const KernelLayout& layout = code.vertex->GetLayout();
    for (std::size_t i = 0; i < layout.attributes.size(); ++i) {
        const LinkedAttribute& attribute = code.program->attributes[i];
        const AttributeData* const data = primitive.FindAttribute(std::string(attribute.name));
        sources.push_back({.pData = data,
                           .vertexCount = data == nullptr ? 0 : data->GetVertexCount(),
                           .firstWord = layout.attributes[i].firstWord,
                           .wordCount = layout.attributes[i].wordCount,
                           .isInteger = attribute.type.base != kBase_Float});
    }
    return sources;
}

std::uint32_t ReadWord(const AttributeSource& source, std::size_t vertex, int word) {
    float value = word == 3 ? 1.0f : 0.0f;
    if (vertex >= source.vertexCount) {
        value = 0.0f;
    } else if (word < source.pData->components) {
        value = source.pData->values[vertex * static_cast<std::size_t>(source.pData->components) +
                                     static_cast<std::size_t>(word)];
    }
    if (!source.isInteger) {
        return std::bit_cast<std::uint32_t>(value);
    }
    constexpr float most = 2147483520.0f;
    // Written so that NaN becomes 0.
    const float held = value >= -most && value <= most ? value : 0.0f;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(held));
}

/// Multiplies the first three components by the upper 3x3 of @p matrix and adds w times the
/// translation.
void Transform(const Matrix44f& matrix, float w, float* values) {
    const float x = values[0], y = values[1], z = values[2];
    for (int row = 0; row < 3; ++row) {
        values[row] =
            matrix(row, 0) * x + matrix(row, 1) * y + matrix(row, 2) * z + matrix(row, 3) * w;
    }
}

/// Carries a varying of one vertex to world space, as its kind says.
void TransformVarying(const LinkedVarying& varying, const Primitive& primitive,
                      std::uint32_t* words) {
    const bool isPoint = varying.type == MakeVector(kBase_Float, 3);
    const bool isHomogeneous = varying.type == MakeVector(kBase_Float, 4);
    if (!isPoint && !isHomogeneous) {
        return;
    }
    float values[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    const std::size_t bytes = (isPoint ? 3 : 4) * sizeof(float);
    std::memcpy(values, words, bytes);
    switch (varying.kind) {
    case kVarying_Plain:
    case kVarying_Normalized:
        return;
    case kVarying_Transformed: {
        const Vector4f moved =
            primitive.GetTransform() * Vector4f(values[0], values[1], values[2], values[3]);
        std::memcpy(values, &moved, sizeof moved);
        break;
    }
    case kVarying_TransformedInvariant:
        Transform(primitive.GetTransform(), 0.0f, values);
        break;
    case kVarying_TransformedNormalized:
        Transform(primitive.GetInverseTranspose(), 0.0f, values);
        break;
    }
    std::memcpy(words, values, bytes);
}

void StorePosition(const Primitive& primitive, const Vector4f& position, float* out) {
    const Vector4f world = primitive.GetTransform() * position;
    const float scale = world.w == 1.0f || world.w == 0.0f ? 1.0f : 1.0f / world.w;
    out[0] = world.x * scale;
    out[1] = world.y * scale;
    out[2] = world.z * scale;
}

float ReadFloat(const void* row, std::size_t lane) {
    float value;
    std::memcpy(&value, static_cast<const char*>(row) + lane * sizeof value, sizeof value);
    return value;
}

void StoreBatch(const Primitive& primitive, const LinkedCode& code, const BatchOutput& output,
                std::size_t first, std::size_t lanes, VertexValues& values) {
    const std::size_t words = values.varyingWords;
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const Vector4f position(
            ReadFloat(output.GetPosition(0), lane), ReadFloat(output.GetPosition(1), lane),
            ReadFloat(output.GetPosition(2), lane), ReadFloat(output.GetPosition(3), lane));
        StorePosition(primitive, position, values.positions.data() + (first + lane) * 3);
    }
    for (std::size_t word = 0; word < words; ++word) {
        const auto* const row =
            static_cast<const std::uint32_t*>(output.GetVarying(static_cast<int>(word)));
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            values.varyings[(first + lane) * words + word] = row[lane];
        }
    }
    const KernelLayout& layout = code.vertex->GetLayout();
    for (std::size_t i = 0; i < layout.varyings.size(); ++i) {
        const auto offset = static_cast<std::size_t>(layout.varyings[i].firstWord);
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            TransformVarying(code.program->varyings[i], primitive,
                             values.varyings.data() + (first + lane) * words + offset);
        }
    }
}

void CopyPositions(const Primitive& primitive, VertexValues& values) {
    const AttributeData* const data = primitive.FindAttribute(kPositionAttribute);
    const AttributeSource source{.pData = data,
                                 .vertexCount = data == nullptr ? 0 : data->GetVertexCount(),
                                 .firstWord = 0,
                                 .wordCount = 4,
                                 .isInteger = false};
    for (std::size_t vertex = 0; vertex < values.vertexCount; ++vertex) {
        float position[4];
        for (int word = 0; word < 4; ++word) {
            position[word] = std::bit_cast<float>(ReadWord(source, vertex, word));
        }
        StorePosition(primitive, Vector4f(position[0], position[1], position[2], 1.0f),
                      values.positions.data() + vertex * 3);
    }
}

} // namespace

VertexValues RunVertexStage(const Primitive& primitive, const LinkedCode* code,
                            const PrimitiveBinding& binding, const BatchConstants& constants,
                            ThreadTeam& team) {
    const std::size_t vertices = primitive.GetVertexCount();
    VertexValues values;
    values.vertexCount = vertices;
    values.positions.resize(vertices * 3 + 1);
    if (code == nullptr || code->vertex == nullptr) {
        CopyPositions(primitive, values);
        return values;
    }

    const KernelLayout& layout = code->vertex->GetLayout();
    values.varyingWords = static_cast<std::size_t>(layout.varyingWords);
    values.varyings.resize(vertices * values.varyingWords);
    const std::vector<AttributeSource> sources = FindSources(primitive, *code);
    std::atomic<std::size_t> stopped{0};

    const auto runBatch = [&](std::size_t batch) {
        const std::size_t first = batch * kMaxLanes;
        const std::size_t lanes = std::min<std::size_t>(kMaxLanes, vertices - first);
        std::vector<std::uint32_t> words(static_cast<std::size_t>(layout.attributeWords) *
                                         kMaxLanes);
        std::vector<const void*> rows;
        for (std::size_t row = 0; row < static_cast<std::size_t>(layout.attributeWords); ++row) {
            rows.push_back(words.data() + row * kMaxLanes);
        }
        for (const AttributeSource& source : sources) {
            for (int word = 0; word < source.wordCount; ++word) {
                std::uint32_t* const row =
                    words.data() + static_cast<std::size_t>(source.firstWord + word) * kMaxLanes;
                for (std::size_t lane = 0; lane < lanes; ++lane) {
                    row[lane] = ReadWord(source, first + lane, word);
                }
            }
        }
        BatchInput input;
        input.laneCount = static_cast<int>(lanes);
        input.pConstants = &constants;
        input.pPrimitive = &binding;
        input.pInterpolated = rows.data();
        KernelThread& thread = team.GetKernelThread();
        code->vertex->Run(input, thread.output, thread.scratch);
        stopped += thread.output.stoppedInvocations;
        StoreBatch(primitive, *code, thread.output, first, lanes, values);
    };
    team.ForEach(CountVertexBatches(vertices), runBatch);
    values.stoppedInvocations = stopped;
    return values;
}

} // namespace Tolen::OpenKL
