#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/Vector.h"

#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

class IPrimitive;

/// Triangles with the attributes that most surfaces want, one entry for each vertex.
struct Mesh {
    std::vector<Vector3f> positions;
    std::vector<Vector3f> normals; ///< unit, outward
    std::vector<Vector2f> coords;  ///< 0 to 1
    std::vector<std::uint32_t> indices;
};

/// A rectangle in the plane z = 0 around the origin, facing +z.
TOLEN_EXPORT Mesh MakePlane(float width, float height);
/// A box around the origin with a normal for each face.
TOLEN_EXPORT Mesh MakeBox(const Vector3f& size);
/// A sphere around the origin with its poles on the y axis; coords run around and from pole to
/// pole.
/// @param segments around, at least 3
/// @param rings    from pole to pole, at least 2
TOLEN_EXPORT Mesh MakeSphere(float radius, int segments, int rings);
/// A disc in the plane z = 0 around the origin, facing +z. @param segments at least 3
TOLEN_EXPORT Mesh MakeDisc(float radius, int segments);

/// Sets the triangles of @p primitive and its attributes "a_Position", "a_Normal" and "a_Coord",
/// each as far as the mesh has it. @return whether the primitive took them all
TOLEN_EXPORT bool SetMesh(IPrimitive& primitive, const Mesh& mesh);

} // namespace Tolen::OpenKL
