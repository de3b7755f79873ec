#include "scene/MeshFile.h"

#include "scene/AssimpMesh.h"

#include <algorithm>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <limits>
#include <stdexcept>

namespace Tolen::Scene {

namespace {

void _Fit(MeshData& data) {
    constexpr float kFar = std::numeric_limits<float>::max();
    Vector3f low(kFar, kFar, kFar);
    Vector3f high(-kFar, -kFar, -kFar);
    for (const Vector3f& p : data.positions) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    const float edge = std::max({high.x - low.x, high.y - low.y, high.z - low.z});
    const float scale = edge > 0.0f ? 1.0f / edge : 1.0f;
    for (Vector3f& p : data.positions) {
        p = {(p.x - 0.5f * (low.x + high.x)) * scale, (p.y - low.y) * scale,
             (p.z - 0.5f * (low.z + high.z)) * scale};
    }
}

} // namespace

MeshData ReadMesh(const std::string& file, bool isFitted) {
    Assimp::Importer importer;
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, 45.0f);
    const aiScene* const scene = importer.ReadFile(
        file, aiProcess_Triangulate | aiProcess_JoinIdenticalVertices | aiProcess_GenSmoothNormals |
                  aiProcess_CalcTangentSpace | aiProcess_PreTransformVertices |
                  aiProcess_SortByPType | aiProcess_FindDegenerates);
    if (scene == nullptr) {
        throw std::runtime_error(file + ": " + importer.GetErrorString());
    }
    MeshData data;
    for (unsigned int i = 0; i < scene->mNumMeshes; ++i) {
        AppendMesh(data, *scene->mMeshes[i]);
    }
    if (data.indices.empty()) {
        throw std::runtime_error(file + ": holds no triangles");
    }
    if (isFitted) {
        _Fit(data);
    }
    return data;
}

} // namespace Tolen::Scene
