#pragma once

#include "scene/ImageFile.h"
#include "scene/MeshFile.h"

#include "TolenCore/Matrix.h"
#include "TolenCore/Vector.h"

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Tolen::Scene {

/// An image of a model and how a material looks it up.
struct ModelTexture {
    std::string image; ///< a name in Model::images; empty for none
    int coordSet = 0;
    const char* wrap = "repeat";   ///< as textures of scenes have it
    const char* filter = "linear"; ///< likewise
    Vector2f scale{1.0f, 1.0f};    ///< place = rotation(scale * coord) + offset
    float rotation = 0.0f;         ///< degrees, counterclockwise
    Vector2f offset;
};

/// A surface in terms of the principled model.
struct ModelMaterial {
    enum Alpha { kAlpha_Opaque, kAlpha_Mask, kAlpha_Blend };

    std::string name;
    Vector3f baseColor{0.8f, 0.8f, 0.8f}; ///< linear; multiplies its texture, as other factors do
    float opacity = 1.0f;
    float metallic = 0.0f;
    float roughness = 0.5f;
    float index = 1.5f; ///< of refraction
    float transmission = 0.0f;
    float coat = 0.0f;
    float coatRoughness = 0.0f;
    Vector3f emission;
    float normalStrength = 1.0f;
    Alpha alpha = kAlpha_Opaque;
    float cutoff = 0.5f; ///< of a mask
    bool isThin = false; ///< whether glass is a film instead of a solid
    bool isUnlit = false;

    ModelTexture baseColorImage;     ///< sRGB
    ModelTexture opacityImage;
    int opacityChannel = 3;
    ModelTexture metallicImage;      ///< linear, blue
    ModelTexture roughnessImage;     ///< linear, green
    ModelTexture transmissionImage;  ///< linear, red
    ModelTexture coatImage;          ///< linear, red
    ModelTexture coatRoughnessImage; ///< linear, green
    ModelTexture emissionImage;      ///< sRGB
    ModelTexture normalImage;        ///< linear
};

/// What a model file holds, in the world's units.
struct Model {
    struct Mesh {
        MeshData data;
        std::size_t material;
    };
    struct Instance {
        std::string name;
        std::size_t mesh;
        Matrix44f transform;
    };
    struct Camera {
        std::string name;
        Vector3f position;
        Vector3f target;
        Vector3f up;
        double fieldOfView; ///< degrees, bottom to top
        double aspect;      ///< width by height; 0 when the file leaves it open
    };
    struct Light {
        enum Kind { kKind_Point, kKind_Spot, kKind_Directional };
        std::string name;
        Kind kind;
        Matrix44f transform; ///< it shines along -z
        Vector3f light;      ///< candela; of a directional one lux
        float inner;         ///< of a spot: up to here its light is even, degrees from its axis
        float outer;         ///< likewise, from here on there is none
        float range;         ///< where its light ends; 0 for nowhere
    };

    std::vector<ModelMaterial> materials;
    std::vector<Mesh> meshes;
    std::vector<Instance> instances; ///< of meshes with triangles
    std::vector<Camera> cameras;
    std::vector<Light> lights;
    std::map<std::string, Image> images;
    std::vector<std::string> warnings; ///< what was left out and why
};

/// Reads glTF 2.0 or OBJ with all that it refers to.
/// @throws std::runtime_error when there is nothing to render
Model ReadModel(const std::string& file);

} // namespace Tolen::Scene
