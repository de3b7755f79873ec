#include "MeshFile.h"

#include <algorithm>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <limits>
#include <stdexcept>

namespace Tolen::Render {

namespace {

Vector3f _ToVector(const aiVector3D& v) { return {v.x, v.y, v.z}; }

void _Append(MeshData& data, const aiMesh& mesh) {
    const auto first = static_cast<std::uint32_t>(data.positions.size());
    const bool hasCoords = mesh.HasTextureCoords(0);
    const bool hasTangents = mesh.HasTangentsAndBitangents();
    for (unsigned int i = 0; i < mesh.mNumVertices; ++i) {
        data.positions.push_back(_ToVector(mesh.mVertices[i]));
        data.normals.push_back(mesh.HasNormals() ? _ToVector(mesh.mNormals[i])
                                                 : Vector3f(0.0f, 1.0f, 0.0f));
        data.coords.push_back(hasCoords ? Vector2f(mesh.mTextureCoords[0][i].x,
                                                   mesh.mTextureCoords[0][i].y)
                                        : Vector2f());
        data.tangents.push_back(hasTangents ? _ToVector(mesh.mTangents[i])
                                            : Vector3f(1.0f, 0.0f, 0.0f));
    }
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace& face = mesh.mFaces[i];
        if (face.mNumIndices == 3) {
            for (unsigned int corner = 0; corner < 3; ++corner) {
                data.indices.push_back(first + face.mIndices[corner]);
            }
        }
    }
}

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
    bool hasCoords = false;
    for (unsigned int i = 0; i < scene->mNumMeshes; ++i) {
        _Append(data, *scene->mMeshes[i]);
        hasCoords = hasCoords || scene->mMeshes[i]->HasTextureCoords(0);
    }
    if (data.indices.empty()) {
        throw std::runtime_error(file + ": holds no triangles");
    }
    if (!hasCoords) {
        data.coords.clear();
        data.tangents.clear();
    }
    if (isFitted) {
        _Fit(data);
    }
    return data;
}

} // namespace Tolen::Render
