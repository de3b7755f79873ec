#pragma once

#include "engine/Batch.h"
#include "render/RenderPlan.h"
#include "render/Surface.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

struct RayRecord;

/// The inputs of a batch, gathered lane by lane.
class LaneRows {
public:
    explicit LaneRows(const RenderPlan& plan);
    LaneRows(const LaneRows&) = delete;
    LaneRows& operator=(const LaneRows&) = delete;

    /// Fills a lane of a frame program.
    void SetSample(int lane, const std::array<float, 2>& pixelCoord, int sample,
                   std::uint32_t randomSeed);

    /// Fills a lane of a prefix or ray program: the ray, what it reached and, of the attributes
    /// that it carries, those of @p program.
    /// @param reached the primitive that the ray reached
    void SetRay(int lane, const RayRecord& ray, const std::uint32_t* attributes,
                const PlanPrimitive& reached, const PlanProgram& program);

    /// Fills the varyings of a lane whose ray reached @p primitive.
    void SetVaryings(int lane, const RayRecord& ray, const PlanPrimitive& primitive);

    /// Lets the ray attributes of every lane be 0, as they are for frame programs.
    void ClearAttributes();

    /// The rows as the input of a batch of the program of @p primitive.
    BatchInput MakeInput(int laneCount, const PlanPrimitive& primitive) const;

    /// Where the ray of a lane met its surface. @return false, giving nothing, for one that missed
    bool GetSurface(int lane, float* position, float* normal) const;

private:
    using Row = std::array<std::uint32_t, kMaxLanes>;

    void _Set(LaneInput input, int lane, float value);
    void _Set(LaneInput input, int lane, std::uint32_t value) {
        _inputs[input][static_cast<std::size_t>(lane)] = value;
    }
    void _Set3(LaneInput first, int lane, const float* values);
    float _Get(LaneInput input, int lane) const;
    float _FindFootprint(const RayRecord& ray, const PlanPrimitive& primitive) const;

    std::array<Row, kLaneInput_Count> _inputs{};
    std::vector<Row> _attributes; ///< by word of the program
    std::vector<Row> _varyings;   ///< by word of the program
    std::vector<const void*> _attributeRows;
    std::vector<const void*> _varyingRows;
};

} // namespace Tolen::OpenKL
