#include "scene/ModelFile.h"

#include "scene/AssimpMesh.h"
#include "scene/ModelMaterials.h"

#include <algorithm>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <cmath>
#include <optional>
#include <stdexcept>

namespace Tolen::Scene {

namespace {

Matrix44f _ToMatrix(const aiMatrix4x4& from) {
    Matrix44f matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            matrix(row, column) = from[static_cast<unsigned int>(row)][column];
        }
    }
    return matrix;
}

Vector3f _ToVector(const aiVector3D& v) { return {v.x, v.y, v.z}; }

/// Whether geometry can be put into place by @p matrix and back.
bool _HasInverse(const aiMatrix4x4& matrix) {
    const float determinant = matrix.Determinant();
    return std::isfinite(determinant) && std::fabs(determinant) > 1e-30f;
}

bool _IsFinite(const MeshData& data) {
    return std::all_of(data.positions.begin(), data.positions.end(), [](const Vector3f& p) {
        return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    });
}

/// Puts together a model of what assimp has read.
class ModelReader {
public:
    ModelReader(const aiScene& scene, const std::string& file, bool isGltf)
        : _scene(scene), _file(file), _isGltf(isGltf) {}

    Model Read() {
        ModelMaterials(_scene, _file, _isGltf, _model).Read();
        _ReadMeshes();
        _WalkNodes();
        return std::move(_model);
    }

private:
    void _ReadMeshes() {
        for (unsigned int i = 0; i < _scene.mNumMeshes; ++i) {
            const aiMesh& mesh = *_scene.mMeshes[i];
            Model::Mesh read{{}, std::min<std::size_t>(mesh.mMaterialIndex, _scene.mNumMaterials)};
            AppendMesh(read.data, mesh);
            if (!_IsFinite(read.data)) {
                _model.warnings.push_back("the mesh '" + std::string(mesh.mName.C_Str()) +
                                          "' has vertices that are no numbers");
            }
            if (read.material == _model.materials.size()) {
                _model.materials.emplace_back();
            }
            _model.meshes.push_back(std::move(read));
        }
    }

    /// Every node with its place in the world, parents first.
    void _WalkNodes() {
        struct Step {
            const aiNode* node;
            aiMatrix4x4 parent;
        };
        std::vector<Step> steps;
        if (_scene.mRootNode != nullptr) {
            steps.push_back({_scene.mRootNode, aiMatrix4x4()});
        }
        while (!steps.empty()) {
            const Step step = steps.back();
            steps.pop_back();
            const aiMatrix4x4 place = step.parent * step.node->mTransformation;
            _AddInstances(*step.node, place);
            _AddCameras(*step.node, place);
            _AddLights(*step.node, place);
            for (unsigned int i = step.node->mNumChildren; i-- > 0;) {
                steps.push_back({step.node->mChildren[i], place});
            }
        }
    }

    void _AddInstances(const aiNode& node, const aiMatrix4x4& place) {
        for (unsigned int i = 0; i < node.mNumMeshes; ++i) {
            const std::size_t mesh = node.mMeshes[i];
            if (mesh >= _model.meshes.size() || _model.meshes[mesh].data.indices.empty()) {
                continue;
            }
            if (!_HasInverse(place)) {
                _model.warnings.push_back("the node '" + std::string(node.mName.C_Str()) +
                                          "' is left out, since its transform has no inverse");
                return;
            }
            _model.instances.push_back({node.mName.C_Str(), mesh, _ToMatrix(place)});
        }
    }

    /// Cameras belong to the nodes of their names.
    void _AddCameras(const aiNode& node, const aiMatrix4x4& place) {
        for (unsigned int i = 0; i < _scene.mNumCameras; ++i) {
            const aiCamera& camera = *_scene.mCameras[i];
            if (camera.mName != node.mName || !_HasInverse(place)) {
                continue;
            }
            if (camera.mOrthographicWidth > 0.0f) {
                _model.warnings.push_back("the camera '" + std::string(camera.mName.C_Str()) +
                                          "' is left out, since it has no perspective");
                continue;
            }
            const aiMatrix3x3 turn(place);
            // A glTF camera stands where its node does; assimp gives it the node's place once more.
            const aiVector3D position(place.a4, place.b4, place.c4);
            const aiVector3D up = turn * camera.mUp;
            const double aspect = static_cast<double>(camera.mAspect);
            const double across = std::tan(0.5 * static_cast<double>(camera.mHorizontalFOV));
            const double angle = 2.0 * std::atan(across / (aspect > 0.0 ? aspect : 1.0));
            _model.cameras.push_back({camera.mName.C_Str(), _ToVector(position),
                                      _ToVector(position + (turn * camera.mLookAt).Normalize()),
                                      _ToVector(up), angle * 57.29577951308232, aspect});
        }
    }

    /// Lights belong to the nodes of their names, too.
    void _AddLights(const aiNode& node, const aiMatrix4x4& place) {
        for (unsigned int i = 0; i < _scene.mNumLights; ++i) {
            const aiLight& light = *_scene.mLights[i];
            if (light.mName != node.mName || !_HasInverse(place)) {
                continue;
            }
            const auto kind = light.mType == aiLightSource_DIRECTIONAL ? Model::Light::kKind_Directional
                              : light.mType == aiLightSource_SPOT      ? Model::Light::kKind_Spot
                                                                       : Model::Light::kKind_Point;
            const auto bounded = [](float value, float most) {
                return value > 0.0f ? std::min(value, most) : 0.0f;
            };
            constexpr float kMostLight = 1e12f;
            constexpr float kDegrees = 57.2957795f;
            const aiColor3D& color = light.mColorDiffuse;
            float range = 0.0f;
            if (node.mMetaData != nullptr) {
                node.mMetaData->Get("PBR_LightRange", range);
            }
            _model.lights.push_back({light.mName.C_Str(), kind, _ToMatrix(place),
                                     {bounded(color.r, kMostLight), bounded(color.g, kMostLight),
                                      bounded(color.b, kMostLight)},
                                     bounded(light.mAngleInnerCone * kDegrees, 90.0f),
                                     bounded(light.mAngleOuterCone * kDegrees, 90.0f),
                                     bounded(range, kMostLight)});
        }
    }

    const aiScene& _scene;
    const std::string& _file;
    bool _isGltf;
    Model _model;
};

} // namespace

Model ReadModel(const std::string& file) {
    Assimp::Importer importer;
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE,
                                aiPrimitiveType_POINT | aiPrimitiveType_LINE);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, 45.0f);
    const bool isGltf = !file.ends_with(".obj") && !file.ends_with(".OBJ");
    // A glTF mesh without normals is flat, by its standard.
    const aiScene* const scene = importer.ReadFile(
        file, static_cast<unsigned int>(aiProcess_Triangulate | aiProcess_SortByPType |
                                        aiProcess_FindDegenerates | aiProcess_CalcTangentSpace |
                                        aiProcess_JoinIdenticalVertices) |
                  (isGltf ? 0u : static_cast<unsigned int>(aiProcess_GenSmoothNormals)));
    if (scene == nullptr) {
        // Points and lines are dropped, and with them whole meshes.
        const std::string error = importer.GetErrorString();
        throw std::runtime_error(error == "No meshes remaining" ? "holds no triangles" : error);
    }
    Model model = ModelReader(*scene, file, isGltf).Read();
    if (model.instances.empty()) {
        throw std::runtime_error("holds no triangles");
    }
    return model;
}

} // namespace Tolen::Scene
