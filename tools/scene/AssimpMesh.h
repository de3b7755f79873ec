#pragma once

#include "scene/MeshFile.h"

struct aiMesh;

namespace Tolen::Scene {

/// Adds the triangles of @p mesh. An attribute that only some of the meshes in @p data have gets
/// neutral values for the others. Without normals the triangles are flat.
void AppendMesh(MeshData& data, const aiMesh& mesh);

} // namespace Tolen::Scene
