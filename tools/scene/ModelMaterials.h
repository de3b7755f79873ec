#pragma once

#include "scene/ModelFile.h"

struct aiMaterial;
struct aiScene;

namespace Tolen::Scene {

/// Takes materials and their images out of what assimp has read.
class ModelMaterials {
public:
    /// All are borrowed.
    ModelMaterials(const aiScene& scene, const std::string& file, bool isGltf, Model& model);

    /// Adds one material for each of the scene's, in order.
    void Read();

private:
    ModelMaterial _Read(const aiMaterial& material);
    void _ReadGltf(const aiMaterial& material, ModelMaterial& to);
    void _ReadObj(const aiMaterial& material, ModelMaterial& to);
    /// @param type, index as assimp numbers textures of a material
    ModelTexture _ReadTexture(const aiMaterial& material, int type, unsigned int index, bool isSrgb);
    /// @return the name in the model's images; empty when the image can't be had
    std::string _LoadImage(const std::string& path, bool isSrgb);
    Image _MakeImage(const std::string& path, bool isSrgb);
    void _Warn(const std::string& text);

    const aiScene& _scene;
    const std::string& _file;
    bool _isGltf;
    Model& _model;
};

} // namespace Tolen::Scene
