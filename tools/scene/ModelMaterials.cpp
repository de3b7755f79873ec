#include "scene/ModelMaterials.h"

#include <algorithm>
#include <assimp/GltfMaterial.h>
#include <assimp/material.h>
#include <assimp/scene.h>
#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace Tolen::Scene {

namespace {

constexpr float kDegrees = 57.29577951308232f;

template <class T>
T _Get(const aiMaterial& material, const char* key, unsigned int type, unsigned int index,
       T otherwise) {
    T value = otherwise;
    return material.Get(key, type, index, value) == aiReturn_SUCCESS ? value : otherwise;
}

Vector3f _ToVector(const aiColor3D& color) { return {color.r, color.g, color.b}; }

/// "my%20wood.png" as a file's name.
std::string _DecodePercents(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto isHex = [&text](std::size_t at) {
            return at < text.size() && std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
        };
        if (text[i] == '%' && isHex(i + 1) && isHex(i + 2)) {
            decoded += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

/// Texels as assimp holds them, row by row from the highest.
Image _FromTexels(const aiTexture& texture) {
    const std::size_t width = texture.mWidth;
    const std::size_t height = texture.mHeight;
    Image image{static_cast<int>(width), static_cast<int>(height), {}};
    image.rgba.reserve(width * height * 4);
    for (std::size_t y = height; y-- > 0;) {
        for (std::size_t x = 0; x < width; ++x) {
            const aiTexel& texel = texture.pcData[y * width + x];
            for (const unsigned char byte : {texel.r, texel.g, texel.b, texel.a}) {
                image.rgba.push_back(static_cast<float>(byte) / 255.0f);
            }
        }
    }
    return image;
}

/// Undoes what assimp makes of KHR_texture_transform, whose places are counted from the upper left
/// corner, for places that are counted from the lower left one.
void _ReadTransform(const aiUVTransform& transform, ModelTexture& texture) {
    const float sx = transform.mScaling.x;
    const float sy = transform.mScaling.y;
    const float angle = -transform.mRotation;
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float x = transform.mTranslation.x - 0.5f * sx * (-c + s + 1.0f);
    const float y = 0.5f * sy * (s + c - 1.0f) + 1.0f - sy - transform.mTranslation.y;
    texture.scale = {sx, sy};
    texture.rotation = angle * kDegrees;
    texture.offset = {x + s * sy, 1.0f - y - c * sy};
}

} // namespace

ModelMaterials::ModelMaterials(const aiScene& scene, const std::string& file, bool isGltf,
                               Model& model)
    : _scene(scene), _file(file), _isGltf(isGltf), _model(model) {}

void ModelMaterials::Read() {
    for (unsigned int i = 0; i < _scene.mNumMaterials; ++i) {
        _model.materials.push_back(_Read(*_scene.mMaterials[i]));
    }
}

ModelMaterial ModelMaterials::_Read(const aiMaterial& material) {
    ModelMaterial to;
    aiString name;
    if (material.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS) {
        to.name = name.C_Str();
    }
    to.emission = _ToVector(_Get(material, AI_MATKEY_COLOR_EMISSIVE, aiColor3D()));
    const float intensity = _Get(material, AI_MATKEY_EMISSIVE_INTENSITY, 1.0f);
    to.emission = {to.emission.x * intensity, to.emission.y * intensity, to.emission.z * intensity};
    to.emissionImage = _ReadTexture(material, aiTextureType_EMISSIVE, 0, true);
    to.normalImage = _ReadTexture(material, aiTextureType_NORMALS, 0, false);
    to.index = _Get(material, AI_MATKEY_REFRACTI, 1.5f);
    if (_isGltf) {
        _ReadGltf(material, to);
    } else {
        _ReadObj(material, to);
    }
    return to;
}

void ModelMaterials::_ReadGltf(const aiMaterial& material, ModelMaterial& to) {
    aiColor4D color(1.0f, 1.0f, 1.0f, 1.0f);
    float glossiness = 0.0f;
    if (material.Get(AI_MATKEY_GLOSSINESS_FACTOR, glossiness) == aiReturn_SUCCESS) {
        material.Get(AI_MATKEY_COLOR_DIFFUSE, color);
        to.roughness = 1.0f - glossiness;
        to.baseColorImage = _ReadTexture(material, aiTextureType_DIFFUSE, 0, true);
    } else {
        material.Get(AI_MATKEY_BASE_COLOR, color);
        to.metallic = _Get(material, AI_MATKEY_METALLIC_FACTOR, 1.0f);
        to.roughness = _Get(material, AI_MATKEY_ROUGHNESS_FACTOR, 1.0f);
        to.baseColorImage = _ReadTexture(material, aiTextureType_BASE_COLOR, 0, true);
        to.metallicImage = _ReadTexture(material, aiTextureType_METALNESS, 0, false);
        to.roughnessImage = _ReadTexture(material, aiTextureType_DIFFUSE_ROUGHNESS, 0, false);
    }
    to.baseColor = {color.r, color.g, color.b};
    to.opacity = color.a;
    to.opacityImage = to.baseColorImage;
    to.normalStrength =
        _Get(material, AI_MATKEY_GLTF_TEXTURE_SCALE(aiTextureType_NORMALS, 0), 1.0f);
    to.transmission = _Get(material, AI_MATKEY_TRANSMISSION_FACTOR, 0.0f);
    to.transmissionImage = _ReadTexture(material, aiTextureType_TRANSMISSION, 0, false);
    to.coat = _Get(material, AI_MATKEY_CLEARCOAT_FACTOR, 0.0f);
    to.coatRoughness = _Get(material, AI_MATKEY_CLEARCOAT_ROUGHNESS_FACTOR, 0.0f);
    to.coatImage = _ReadTexture(material, AI_MATKEY_CLEARCOAT_TEXTURE, false);
    to.coatRoughnessImage = _ReadTexture(material, AI_MATKEY_CLEARCOAT_ROUGHNESS_TEXTURE, false);
    to.isThin = !(_Get(material, AI_MATKEY_VOLUME_THICKNESS_FACTOR, 0.0f) > 0.0f);
    to.isUnlit = _Get(material, AI_MATKEY_SHADING_MODEL, 0) == aiShadingMode_Unlit;
    to.cutoff = _Get(material, AI_MATKEY_GLTF_ALPHACUTOFF, 0.5f);
    const aiString mode = _Get(material, AI_MATKEY_GLTF_ALPHAMODE, aiString("OPAQUE"));
    to.alpha = mode == aiString("MASK")    ? ModelMaterial::kAlpha_Mask
               : mode == aiString("BLEND") ? ModelMaterial::kAlpha_Blend
                                           : ModelMaterial::kAlpha_Opaque;
}

void ModelMaterials::_ReadObj(const aiMaterial& material, ModelMaterial& to) {
    to.baseColor =
        _ToVector(_Get(material, AI_MATKEY_COLOR_DIFFUSE, aiColor3D(0.8f, 0.8f, 0.8f)));
    to.baseColorImage = _ReadTexture(material, aiTextureType_DIFFUSE, 0, true);
    to.metallic = _Get(material, AI_MATKEY_METALLIC_FACTOR, 0.0f);
    to.metallicImage = _ReadTexture(material, aiTextureType_METALNESS, 0, false);
    to.roughnessImage = _ReadTexture(material, aiTextureType_DIFFUSE_ROUGHNESS, 0, false);
    // A highlight's exponent as the width of microfacets that gives one of about the same size.
    const float shininess = _Get(material, AI_MATKEY_SHININESS, 0.0f);
    const float fromShininess = std::pow(2.0f / (std::max(shininess, 0.0f) + 2.0f), 0.25f);
    to.roughness = _Get(material, AI_MATKEY_ROUGHNESS_FACTOR, fromShininess);
    to.opacity = _Get(material, AI_MATKEY_OPACITY, 1.0f);
    to.opacityImage = _ReadTexture(material, aiTextureType_OPACITY, 0, false);
    to.opacityChannel = 0;
    to.alpha = to.opacity < 1.0f || !to.opacityImage.image.empty() ? ModelMaterial::kAlpha_Blend
                                                                   : ModelMaterial::kAlpha_Opaque;
    if (!(to.index >= 1.0f)) {
        to.index = 1.5f;
    }
}

ModelTexture ModelMaterials::_ReadTexture(const aiMaterial& material, int type, unsigned int index,
                                          bool isSrgb) {
    const auto kind = static_cast<aiTextureType>(type);
    ModelTexture texture;
    aiString path;
    if (material.Get(AI_MATKEY_TEXTURE(kind, index), path) != aiReturn_SUCCESS ||
        path.length == 0) {
        return texture;
    }
    texture.image = _LoadImage(path.C_Str(), isSrgb);
    texture.coordSet = _Get(material, AI_MATKEY_UVWSRC(kind, index), 0);
    if (texture.coordSet < 0 || texture.coordSet > 1) {
        _Warn("a texture lies on coordinates " + std::to_string(texture.coordSet) +
              "; only 0 and 1 are read");
        texture.coordSet = 0;
    }
    switch (_Get(material, AI_MATKEY_MAPPINGMODE_U(kind, index), int{aiTextureMapMode_Wrap})) {
    case aiTextureMapMode_Clamp:
    case aiTextureMapMode_Decal:
        texture.wrap = "clamp";
        break;
    case aiTextureMapMode_Mirror:
        texture.wrap = "mirror";
        break;
    default:
        break;
    }
    constexpr int kGltfNearest = 9728;
    if (_Get(material, AI_MATKEY_GLTF_MAPPINGFILTER_MAG(kind, index), 0) == kGltfNearest) {
        texture.filter = "nearest";
    }
    aiUVTransform transform;
    if (material.Get(AI_MATKEY_UVTRANSFORM(kind, index), transform) == aiReturn_SUCCESS) {
        _ReadTransform(transform, texture);
    }
    return texture;
}

std::string ModelMaterials::_LoadImage(const std::string& path, bool isSrgb) {
    const std::string name = path + (isSrgb ? "" : " (linear)");
    if (_model.images.contains(name)) {
        return name;
    }
    try {
        _model.images.emplace(name, _MakeImage(path, isSrgb));
    } catch (const std::exception& error) {
        _Warn(std::string("a texture is left out: ") + error.what());
        return "";
    }
    return name;
}

Image ModelMaterials::_MakeImage(const std::string& path, bool isSrgb) {
    if (const aiTexture* const embedded = _scene.GetEmbeddedTexture(path.c_str())) {
        if (embedded->mHeight != 0) {
            return _FromTexels(*embedded);
        }
        const std::string bytes(reinterpret_cast<const char*>(embedded->pcData), embedded->mWidth);
        return DecodeImage(_file + path, bytes, isSrgb);
    }
    namespace fs = std::filesystem;
    std::string name = path;
    std::replace(name.begin(), name.end(), '\\', '/');
    const fs::path folder = fs::path(_file).parent_path();
    const fs::path plain = folder / name;
    return ReadImage(fs::exists(plain) ? plain : folder / _DecodePercents(name), isSrgb);
}

void ModelMaterials::_Warn(const std::string& text) {
    std::vector<std::string>& warnings = _model.warnings;
    if (std::find(warnings.begin(), warnings.end(), text) == warnings.end()) {
        warnings.push_back(text);
    }
}

} // namespace Tolen::Scene
