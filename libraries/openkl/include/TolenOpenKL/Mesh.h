#pragma once

/// @file
/// Simple geometry to begin with.

#include "TolenCore/Export.h"
#include "TolenCore/Vector.h"

#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

class IPrimitive;

/// Triangles with the attributes that most surfaces want, one entry for each vertex.
struct Mesh {
    std::vector<Vector3f> positions;    ///< as many as there are vertices
    std::vector<Vector3f> normals;      ///< unit, outward
    std::vector<Vector2f> coords;       ///< 0 to 1
    std::vector<std::uint32_t> indices; ///< three for each triangle
};

/// A rectangle in the plane z = 0 around the origin, facing +z, in two triangles; coords run along
/// x and y.
/// @param width, height the lengths of its sides
TOLEN_EXPORT Mesh MakePlane(float width, float height);
/// A box around the origin with a normal, and coords from 0 to 1, for each face.
/// @param size the lengths of its edges
TOLEN_EXPORT Mesh MakeBox(const Vector3f& size);
/// A sphere around the origin with its poles on the y axis; coords run around and from pole to
/// pole.
/// @param radius   from the origin to each vertex
/// @param segments around, at least 3; fewer become 3
/// @param rings    from pole to pole, at least 2; fewer become 2
TOLEN_EXPORT Mesh MakeSphere(float radius, int segments, int rings);
/// A disc in the plane z = 0 around the origin, facing +z.
/// @param radius   from the origin to each vertex of the rim
/// @param segments around, at least 3; fewer become 3
TOLEN_EXPORT Mesh MakeDisc(float radius, int segments);

/// Sets the triangles of @p primitive and its attributes "a_Position", "a_Normal" and "a_Coord",
/// each as far as the mesh has it. @return whether the primitive took them all
TOLEN_EXPORT bool SetMesh(IPrimitive& primitive, const Mesh& mesh);

} // namespace Tolen::OpenKL
