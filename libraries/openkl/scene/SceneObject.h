#pragma once

#include "scene/ShadingBinding.h"
#include "scene/VertexStage.h"

#include <embree3/rtcore.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace Tolen::OpenKL {

class Primitive;
class TextureTable;
class ThreadTeam;
struct LinkedCode;
struct Statistics;

/// What went wrong while the geometry of an object was made.
struct GeometryProblems {
    std::size_t trianglesLeftOut = 0;   ///< a vertex is missing or has no finite position
    std::size_t stoppedInvocations = 0; ///< of the vertex shader
};

/// What the renderer keeps for one primitive: its code, its values for kernels and its geometry.
class SceneObject {
public:
    SceneObject(Primitive& primitive, RTCDevice device);
    ~SceneObject();
    SceneObject(const SceneObject&) = delete;
    SceneObject& operator=(const SceneObject&) = delete;

    /// Takes over what has changed in the primitive. Geometry is made anew when triangles,
    /// attributes, program, transform or values that the vertex shader reads have changed.
    /// @return whether the geometry changed
    bool Update(const TextureTable& textures, ThreadTeam& team, Statistics& statistics,
                GeometryProblems& problems);

    Primitive& GetPrimitive() const { return _primitive; }
    /// Null without a program that is linked.
    const std::shared_ptr<const LinkedCode>& GetCode() const { return _pCode; }
    ShadingBinding& GetBinding() { return _binding; }
    const ShadingBinding& GetBinding() const { return _binding; }

    /// Null when there is nothing to hit.
    RTCGeometry GetGeometry() const { return _triangles.empty() ? nullptr : _geometry; }
    const std::vector<std::uint32_t>& GetTriangles() const { return _triangles; }
    const VertexValues& GetVertices() const { return _vertices; }
    /// The number of the geometry in the scene; kNone while rays can't reach the object.
    unsigned geometryNumber = kNone;
    static constexpr unsigned kNone = RTC_INVALID_GEOMETRY_ID;

    /// Whether the transform mirrors, so that triangles are wound the other way in world space.
    bool IsMirrored() const { return _isMirrored; }

private:
    void _BuildVertices(const TextureTable& textures, ThreadTeam& team, Statistics& statistics,
                        GeometryProblems& problems);
    void _BuildTriangles(GeometryProblems& problems);

    Primitive& _primitive;
    std::shared_ptr<const LinkedCode> _pCode;
    ShadingBinding _binding; ///< of the main kernel

    RTCGeometry _geometry;
    VertexValues _vertices;
    std::vector<std::uint32_t> _triangles; ///< three vertices each
    bool _isMirrored = false;

    /// Versions of what the geometry is made from.
    struct Sources {
        std::uint64_t mesh = 0;
        std::uint64_t transform = 0;
        std::uint64_t code = 0;
        std::uint64_t values = 0; ///< 0 when the vertex shader reads none
        bool operator==(const Sources&) const = default;
    };
    Sources _FindSources() const;

    Sources _sources; ///< of the geometry that was made last
};

} // namespace Tolen::OpenKL
