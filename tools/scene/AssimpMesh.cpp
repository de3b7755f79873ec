#include "scene/AssimpMesh.h"

#include <algorithm>
#include <assimp/mesh.h>
#include <cmath>

namespace Tolen::Scene {

namespace {

Vector3f _ToVector(const aiVector3D& v) { return {v.x, v.y, v.z}; }

/// Appends one value for each vertex in @p vertices, if the mesh has the attribute or one before
/// it had.
template <class T, class Get>
void _Append(std::vector<T>& values, std::size_t before, const std::vector<unsigned int>& vertices,
             bool isGiven, const T& neutral, const Get& get) {
    if (!isGiven && values.empty()) {
        return;
    }
    values.resize(before, neutral);
    for (const unsigned int vertex : vertices) {
        values.push_back(isGiven ? get(vertex) : neutral);
    }
}

void _AppendFlatNormals(MeshData& data, std::size_t before) {
    for (std::size_t i = before; i + 2 < data.positions.size(); i += 3) {
        const Vector3f& p = data.positions[i];
        const Vector3f a(data.positions[i + 1].x - p.x, data.positions[i + 1].y - p.y,
                         data.positions[i + 1].z - p.z);
        const Vector3f b(data.positions[i + 2].x - p.x, data.positions[i + 2].y - p.y,
                         data.positions[i + 2].z - p.z);
        const Vector3f n(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
        const float length = std::hypot(n.x, n.y, n.z);
        data.normals.insert(data.normals.end(), 3,
                            length > 0.0f ? Vector3f(n.x / length, n.y / length, n.z / length)
                                          : Vector3f(0.0f, 1.0f, 0.0f));
    }
}

} // namespace

void AppendMesh(MeshData& data, const aiMesh& mesh) {
    const std::size_t before = data.positions.size();
    // Flat triangles share no vertices, as they differ in their normals.
    const bool isFlat = !mesh.HasNormals();
    std::vector<unsigned int> vertices;
    for (unsigned int i = 0; i < mesh.mNumVertices && !isFlat; ++i) {
        vertices.push_back(i);
    }
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace& face = mesh.mFaces[i];
        const bool isWhole =
            face.mNumIndices == 3 &&
            std::all_of(face.mIndices, face.mIndices + 3,
                        [&](unsigned int vertex) { return vertex < mesh.mNumVertices; });
        if (!isWhole) {
            continue;
        }
        for (unsigned int corner = 0; corner < 3; ++corner) {
            const std::size_t vertex = isFlat ? vertices.size() : face.mIndices[corner];
            data.indices.push_back(static_cast<std::uint32_t>(before + vertex));
            if (isFlat) {
                vertices.push_back(face.mIndices[corner]);
            }
        }
    }
    const auto direction = [](const aiVector3D* from) {
        return [from](unsigned int i) { return _ToVector(from[i]); };
    };
    const auto coords = [&mesh](int set) {
        return [from = mesh.mTextureCoords[set]](unsigned int i) {
            return Vector2f(from[i].x, from[i].y);
        };
    };
    const bool hasTangents = mesh.HasTangentsAndBitangents();
    _Append(data.positions, before, vertices, true, Vector3f(), direction(mesh.mVertices));
    if (isFlat) {
        _AppendFlatNormals(data, before);
    } else {
        _Append(data.normals, before, vertices, true, Vector3f(), direction(mesh.mNormals));
    }
    _Append(data.tangents, before, vertices, hasTangents, Vector3f(1.0f, 0.0f, 0.0f),
            direction(mesh.mTangents));
    _Append(data.bitangents, before, vertices, hasTangents, Vector3f(0.0f, 1.0f, 0.0f),
            direction(mesh.mBitangents));
    _Append(data.coords, before, vertices, mesh.HasTextureCoords(0), Vector2f(), coords(0));
    _Append(data.coords1, before, vertices, mesh.HasTextureCoords(1), Vector2f(), coords(1));
    _Append(data.colors, before, vertices, mesh.HasVertexColors(0), Vector3f(1.0f, 1.0f, 1.0f),
            [from = mesh.mColors[0]](unsigned int i) {
                return Vector3f(from[i].r, from[i].g, from[i].b);
            });
}

} // namespace Tolen::Scene
