#include "render/LaneRows.h"

#include "render/RayRecord.h"
#include "scene/Program.h"
#include "scene/SceneObject.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Tolen::OpenKL {

namespace {

float ToFloat(std::uint32_t word) {
    return std::bit_cast<float>(word);
}

} // namespace

LaneRows::LaneRows(const RenderPlan& plan)
    : _attributes(static_cast<std::size_t>(plan.GetRayAttributeWords())) {
    std::size_t varyings = 0;
    for (const PlanPrimitive& primitive : plan.GetPrimitives()) {
        if (primitive.pProgram != nullptr) {
            varyings =
                std::max(varyings, static_cast<std::size_t>(primitive.pProgram->varyingWords));
        }
    }
    _varyings.resize(varyings);
    for (const Row& row : _attributes) {
        _attributeRows.push_back(row.data());
    }
    for (const Row& row : _varyings) {
        _varyingRows.push_back(row.data());
    }
}

void LaneRows::_Set(LaneInput input, int lane, float value) {
    _Set(input, lane, std::bit_cast<std::uint32_t>(value));
}

void LaneRows::_Set3(LaneInput first, int lane, const float* values) {
    for (int i = 0; i < 3; ++i) {
        _Set(static_cast<LaneInput>(first + i), lane, values[i]);
    }
}

float LaneRows::_Get(LaneInput input, int lane) const {
    return ToFloat(_inputs[input][static_cast<std::size_t>(lane)]);
}

bool LaneRows::GetSurface(int lane, float* position, float* normal) const {
    if (_inputs[kLaneInput_Missed][static_cast<std::size_t>(lane)] != 0) {
        return false;
    }
    for (int i = 0; i < 3; ++i) {
        position[i] = _Get(static_cast<LaneInput>(kLaneInput_HitPositionX + i), lane);
        normal[i] = _Get(static_cast<LaneInput>(kLaneInput_HitNormalX + i), lane);
    }
    return true;
}

void LaneRows::SetSample(int lane, const std::array<float, 2>& pixelCoord, int sample,
                         std::uint32_t randomSeed) {
    _Set(kLaneInput_PixelCoordX, lane, pixelCoord[0]);
    _Set(kLaneInput_PixelCoordY, lane, pixelCoord[1]);
    _Set(kLaneInput_SampleIndex, lane, static_cast<std::uint32_t>(sample));
    _Set(kLaneInput_RandomSeed, lane, randomSeed);
}

void LaneRows::SetRay(int lane, const RayRecord& ray, const std::uint32_t* attributes,
                      const PlanPrimitive& reached, const PlanProgram& program) {
    const bool isMissed = ray.triangle == RayRecord::kMissed;
    const SurfacePoint point = FindSurfacePoint(reached, ray);
    SetSample(lane, {ray.pixelCoord[0], ray.pixelCoord[1]}, ray.sample, ray.randomSeed);
    _Set3(kLaneInput_RayOriginX, lane, ray.origin);
    _Set3(kLaneInput_RayDirectionX, lane, ray.direction);
    _Set(kLaneInput_RayDepth, lane, static_cast<std::uint32_t>(ray.depth));
    _Set(kLaneInput_RayClass, lane, static_cast<std::uint32_t>(ray.rayClass));
    _Set(kLaneInput_HitDistance, lane, ray.distance);
    _Set3(kLaneInput_HitPositionX, lane, point.position);
    _Set3(kLaneInput_HitNormalX, lane, point.normal);
    _Set(kLaneInput_HitFront, lane, point.isFront ? 1u : 0u);
    _Set(kLaneInput_HitBarycentricX, lane, ray.u);
    _Set(kLaneInput_HitBarycentricY, lane, ray.v);
    _Set(kLaneInput_HitPrimitive, lane, isMissed ? 0u : static_cast<std::uint32_t>(reached.handle));
    _Set(kLaneInput_Missed, lane, isMissed ? 1u : 0u);
    for (std::size_t word = 0; word < program.attributePlaces.size(); ++word) {
        _attributes[word][static_cast<std::size_t>(lane)] =
            attributes[program.attributePlaces[word]];
    }
}

void LaneRows::SetVaryings(int lane, const RayRecord& ray, const PlanPrimitive& primitive) {
    const auto column = static_cast<std::size_t>(lane);
    const VertexValues& vertices = primitive.pObject->GetVertices();
    const PlanProgram& program = *primitive.pProgram;
    if (ray.triangle == RayRecord::kMissed ||
        vertices.varyingWords != static_cast<std::size_t>(program.varyingWords)) {
        for (const Interpolation& varying : program.interpolations) {
            for (int i = 0; i < varying.wordCount; ++i) {
                _varyings[static_cast<std::size_t>(varying.firstWord + i)][column] = 0;
            }
        }
        _Set(kLaneInput_TextureFootprint, lane, 0.0f);
        return;
    }

    const std::uint32_t* const corners =
        primitive.pObject->GetTriangles().data() + std::size_t{ray.triangle} * 3;
    const std::uint32_t* const records[3] = {
        vertices.varyings.data() + corners[0] * vertices.varyingWords,
        vertices.varyings.data() + corners[1] * vertices.varyingWords,
        vertices.varyings.data() + corners[2] * vertices.varyingWords,
    };
    for (const Interpolation& varying : program.interpolations) {
        float squares = 0.0f;
        const auto first = static_cast<std::size_t>(varying.firstWord);
        const std::size_t end = first + static_cast<std::size_t>(varying.wordCount);
        for (std::size_t word = first; word < end; ++word) {
            if (varying.isFlat) {
                _varyings[word][column] = records[0][word];
                continue;
            }
            const float value = ToFloat(records[0][word]) * (1.0f - ray.u - ray.v) +
                                ToFloat(records[1][word]) * ray.u +
                                ToFloat(records[2][word]) * ray.v;
            squares += value * value;
            _varyings[word][column] = std::bit_cast<std::uint32_t>(value);
        }
        if (varying.isNormalized && squares > 0.0f) {
            const float scale = 1.0f / std::sqrt(squares);
            for (std::size_t word = first; word < end; ++word) {
                std::uint32_t& value = _varyings[word][column];
                value = std::bit_cast<std::uint32_t>(ToFloat(value) * scale);
            }
        }
    }
    _Set(kLaneInput_TextureFootprint, lane, _FindFootprint(ray, primitive));
}

/// The width of the ray's cone at its hit in texture coordinates: the width across the ray, scaled
/// as the triangle scales lengths to coordinates.
float LaneRows::_FindFootprint(const RayRecord& ray, const PlanPrimitive& primitive) const {
    const int coordWord = primitive.pProgram->coordWord;
    const float width = ray.coneWidth + ray.coneSpread * ray.distance;
    if (coordWord < 0 || !(width > 0.0f)) {
        return 0.0f;
    }
    const VertexValues& vertices = primitive.pObject->GetVertices();
    const std::uint32_t* const corners =
        primitive.pObject->GetTriangles().data() + std::size_t{ray.triangle} * 3;
    float coords[3][2];
    double edges[2][3];
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t c = 0; c < 2; ++c) {
            coords[i][c] = ToFloat(vertices.varyings[corners[i] * vertices.varyingWords +
                                                     static_cast<std::size_t>(coordWord) + c]);
        }
        for (std::size_t edge = 0; edge < 2; ++edge) {
            edges[edge][i] = double{vertices.positions[std::size_t{corners[edge + 1]} * 3 + i]} -
                             vertices.positions[std::size_t{corners[0]} * 3 + i];
        }
    }
    const double cross[3] = {edges[0][1] * edges[1][2] - edges[0][2] * edges[1][1],
                             edges[0][2] * edges[1][0] - edges[0][0] * edges[1][2],
                             edges[0][0] * edges[1][1] - edges[0][1] * edges[1][0]};
    const double area = std::sqrt(cross[0] * cross[0] + cross[1] * cross[1] + cross[2] * cross[2]);
    const double coordArea =
        std::fabs(double{coords[1][0] - coords[0][0]} * double{coords[2][1] - coords[0][1]} -
                  double{coords[1][1] - coords[0][1]} * double{coords[2][0] - coords[0][0]});
    if (!(area > 0.0)) {
        return 0.0f;
    }
    return static_cast<float>(double{width} * std::sqrt(coordArea / area));
}

void LaneRows::ClearAttributes() {
    for (Row& row : _attributes) {
        row.fill(0);
    }
}

BatchInput LaneRows::MakeInput(int laneCount, const PlanPrimitive& primitive) const {
    BatchInput input;
    input.laneCount = laneCount;
    input.pConstants = &primitive.constants;
    input.pPrimitive = &primitive.binding;
    for (std::size_t row = 0; row < _inputs.size(); ++row) {
        input.pLanes[row] = _inputs[row].data();
    }
    input.pInterpolated = _varyingRows.data();
    input.pRayAttributes = _attributeRows.data();
    return input;
}

} // namespace Tolen::OpenKL
