#pragma once

#include "TolenCore/Vector.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Tolen::Scene {

/// The triangles of a mesh file, all of its parts in one, in the file's own space.
struct MeshData {
    std::vector<Vector3f> positions;
    std::vector<Vector3f> normals;
    std::vector<Vector3f> tangents;   ///< along u; empty when the file gives no texture coordinates
    std::vector<Vector3f> bitangents; ///< along v; likewise
    std::vector<Vector2f> coords;     ///< empty when the file gives none
    std::vector<Vector2f> coords1;    ///< of a second set; likewise
    std::vector<Vector3f> colors;     ///< linear; likewise
    std::vector<std::uint32_t> indices;
};

/// Reads a mesh in any format that assimp knows.
/// @param isFitted whether the mesh is moved and scaled so that its longest edge is 1, it is centred
///                 in x and z and stands on y = 0
/// @throws std::runtime_error
MeshData ReadMesh(const std::string& file, bool isFitted);

} // namespace Tolen::Scene
