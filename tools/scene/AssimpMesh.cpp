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

/// The normal of a triangle, as long as twice its area.
Vector3f _AreaNormal(const MeshData& data, const std::uint32_t* corners) {
    const Vector3f& p = data.positions[corners[0]];
    const auto way = [&](int corner) {
        const Vector3f& q = data.positions[corners[corner]];
        return Vector3f(q.x - p.x, q.y - p.y, q.z - p.z);
    };
    const Vector3f a = way(1);
    const Vector3f b = way(2);
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Unit length; upwards for what has none.
Vector3f _Normalized(const Vector3f& v) {
    const float length = std::hypot(v.x, v.y, v.z);
    return std::isfinite(length) && length > 0.0f ? Vector3f(v.x / length, v.y / length, v.z / length)
                                                  : Vector3f(0.0f, 1.0f, 0.0f);
}

/// Gives the vertices from @p firstVertex on whose normal has no direction that of their triangles.
void _RepairNormals(MeshData& data, std::size_t firstVertex, std::size_t firstIndex) {
    std::vector<bool> isBad(data.normals.size(), false);
    for (std::size_t i = firstVertex; i < data.normals.size(); ++i) {
        Vector3f& n = data.normals[i];
        const float length = std::hypot(n.x, n.y, n.z);
        if (!std::isfinite(length) || !(length > 0.0f)) {
            isBad[i] = true;
            n = Vector3f();
        }
    }
    for (std::size_t i = firstIndex; i + 2 < data.indices.size(); i += 3) {
        const Vector3f area = _AreaNormal(data, &data.indices[i]);
        for (std::size_t corner = i; corner < i + 3; ++corner) {
            if (isBad[data.indices[corner]]) {
                Vector3f& n = data.normals[data.indices[corner]];
                n = {n.x + area.x, n.y + area.y, n.z + area.z};
            }
        }
    }
    for (std::size_t i = firstVertex; i < data.normals.size(); ++i) {
        if (isBad[i]) {
            data.normals[i] = _Normalized(data.normals[i]);
        }
    }
}

} // namespace

void AppendMesh(MeshData& data, const aiMesh& mesh) {
    const std::size_t before = data.positions.size();
    const std::size_t firstIndex = data.indices.size();
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
    _Append(data.normals, before, vertices, !isFlat, Vector3f(), direction(mesh.mNormals));
    data.normals.resize(data.positions.size());
    _RepairNormals(data, before, firstIndex);
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
