#pragma once

#include "engine/Batch.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

class Primitive;
class ThreadTeam;
struct LinkedCode;

/// What the vertex stage made of the vertices of a primitive.
struct VertexValues {
    std::size_t vertexCount = 0;
    /// x, y and z in world space, with one float behind the last for those who read by fours.
    std::vector<float> positions;
    std::vector<std::uint32_t> varyings; ///< KernelLayout::varyingWords words for each vertex
    std::size_t varyingWords = 0;
    std::size_t stoppedInvocations = 0; ///< by the limit of loop steps
};

/// The batches that the vertex shader runs in.
constexpr std::size_t CountVertexBatches(std::size_t vertices) {
    return (vertices + kMaxLanes - 1) / kMaxLanes;
}

/// Runs the vertex shader of @p code for every vertex and carries positions and transformed
/// varyings to world space. Without a vertex shader "a_Position" is the position.
/// @param code null for a primitive without a program
/// @param binding of the vertex kernel, with its setup done
VertexValues RunVertexStage(const Primitive& primitive, const LinkedCode* code,
                            const PrimitiveBinding& binding, const BatchConstants& constants,
                            ThreadTeam& team);

} // namespace Tolen::OpenKL
