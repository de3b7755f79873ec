#include "scene/ModelScene.h"

#include "scene/ModelFile.h"
#include "scene/SceneError.h"
#include "scene/ShaderFolder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <set>
#include <stdexcept>
#include <utility>

namespace Tolen::Scene {

namespace {

using nlohmann::json;

json _ToJson(const Vector3f& v) { return {v.x, v.y, v.z}; }
json _ToJson(const Vector2f& v) { return {v.x, v.y}; }
json _ToJson(const Matrix44f& m) {
    json rows = json::array();
    for (int i = 0; i < 16; ++i) {
        rows.push_back(m(i / 4, i % 4));
    }
    return rows;
}

/// A name out of a file as text that JSON can hold: UTF-8 without control characters.
std::string _CleanName(const std::string& name) {
    std::string clean = json(name).dump(-1, ' ', false, json::error_handler_t::replace);
    clean = json::parse(clean).get<std::string>();
    std::replace_if(clean.begin(), clean.end(),
                    [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return clean;
}

/// Names that differ, by numbers behind those that are taken.
class Names {
public:
    std::string Take(const std::string& wanted, const char* otherwise) {
        const std::string clean = wanted.empty() ? otherwise : _CleanName(wanted);
        std::string name = clean;
        while (!_taken.insert(name).second) {
            name = clean + " " + std::to_string(++_counts[clean] + 1);
        }
        return name;
    }

private:
    std::set<std::string> _taken;
    std::map<std::string, int> _counts;
};

/// Writes the scene around one model.
class SceneWriter {
public:
    SceneWriter(const std::string& file, Model& model)
        : _name(std::filesystem::path(file).filename().string()), _model(model) {}

    json Write(std::map<std::string, MeshData>& meshes) {
        _scene["libraries"] = GetShippedLibraries();
        if (!_model.lights.empty()) {
            _scene["libraries"].push_back(kLightLibraries);
        }
        _FindBounds();
        _irradiance = _FindIrradiance();
        _scene["rayAttributes"] = {{{"type", "vec3"}, {"name", "throughput"}},
                                   {{"type", "float"}, {"name", "direct"}}};
        _scene["outputs"] = {{{"name", "o_color"}, {"type", "vec3"}, {"attachment", 0}}};
        for (const char* list : {"textures", "shaders", "effects", "primitives"}) {
            _scene[list] = json::array();
        }
        _WriteCameras();
        _WriteLight();
        _WriteInstances(meshes);
        return std::move(_scene);
    }

private:
    /// Adds a shader under a name that is free. @return the name
    std::string _AddShader(const std::string& name, const char* className, json parameters) {
        json shader = {{"name", _names.Take(name, className)}, {"class", className}};
        if (!parameters.empty()) {
            shader["parameters"] = std::move(parameters);
        }
        _scene["shaders"].push_back(shader);
        return shader["name"];
    }

    /// Puts the shader that was added last on an effect of the same name.
    void _AddEffect(const std::string& name, const char* kind) {
        _scene["effects"].push_back({{"name", name}, {"kind", kind}, {"root", name}});
    }

    void _WriteCameras() {
        if (_model.cameras.empty()) {
            _model.cameras.push_back(_FitCamera());
        }
        for (const Model::Camera& camera : _model.cameras) {
            const std::string name = _AddShader(camera.name.empty() ? "camera" : camera.name,
                                                "PinholeCamera",
                                                {{"position", _ToJson(camera.position)},
                                                 {"target", _ToJson(camera.target)},
                                                 {"up", _ToJson(camera.up)},
                                                 {"fieldOfView", camera.fieldOfView},
                                                 {"exposure", _FindExposure()}});
            _AddEffect(name, "renderer");
            if (!_scene.contains("renderer")) {
                _scene["renderer"] = name;
                constexpr double kWidth = 640.0;
                const double aspect = camera.aspect > 0.0 ? camera.aspect : 16.0 / 9.0;
                _scene["size"] = {static_cast<int>(kWidth),
                                  static_cast<int>(std::clamp(kWidth / aspect, 1.0, 4.0 * kWidth))};
            }
        }
    }

    /// The stops by which the model's own light looks as bright as the sun of other models.
    double _FindExposure() const {
        return _irradiance > 0.0 ? 0.1 * std::round(10.0 * std::log2(kSunlight / _irradiance)) : 0.0;
    }

    /// The sphere that all instances are in.
    void _FindBounds() {
        constexpr float kFar = std::numeric_limits<float>::max();
        Vector3f low(kFar, kFar, kFar);
        Vector3f high(-kFar, -kFar, -kFar);
        for (const Model::Instance& instance : _model.instances) {
            const Matrix44f& m = instance.transform;
            for (const Vector3f& p : _model.meshes[instance.mesh].data.positions) {
                const auto place = [&](int row) {
                    return m(row, 0) * p.x + m(row, 1) * p.y + m(row, 2) * p.z + m(row, 3);
                };
                const Vector3f at(place(0), place(1), place(2));
                if (std::isfinite(at.x + at.y + at.z)) {
                    low = {std::min(low.x, at.x), std::min(low.y, at.y), std::min(low.z, at.z)};
                    high = {std::max(high.x, at.x), std::max(high.y, at.y),
                            std::max(high.z, at.z)};
                }
            }
        }
        if (!(low.x <= high.x)) {
            low = {-1.0f, -1.0f, -1.0f};
            high = {1.0f, 1.0f, 1.0f};
        }
        _center = {0.5f * low.x + 0.5f * high.x, 0.5f * low.y + 0.5f * high.y,
                   0.5f * low.z + 0.5f * high.z};
        _radius =
            std::max(0.5f * std::hypot(high.x - low.x, high.y - low.y, high.z - low.z), 1e-6f);
    }

    /// About how much light of the model's own falls onto its middle, in lux.
    double _FindIrradiance() const {
        double sum = 0.0;
        for (const Model::Light& light : _model.lights) {
            const Vector3f& i = light.light;
            double share = 1.0;
            if (light.kind != Model::Light::kKind_Directional) {
                const Matrix44f& m = light.transform;
                const double distance =
                    static_cast<double>(std::hypot(m(0, 3) - _center.x, m(1, 3) - _center.y,
                                                   m(2, 3) - _center.z));
                share = std::max(distance, 0.5 * static_cast<double>(_radius));
                share = 1.0 / (share * share);
            }
            sum += share * static_cast<double>(std::max({i.x, i.y, i.z}));
        }
        return sum;
    }

    /// A camera that looks at all instances, a little from above and from the side.
    Model::Camera _FitCamera() const {
        constexpr double kFieldOfView = 35.0;
        const auto distance = static_cast<float>(
            1.02 * static_cast<double>(_radius) / std::sin(0.5 * kFieldOfView / 57.29577951308232));
        const Vector3f away(0.42f, 0.34f, 0.842f);
        return {"camera",
                {_center.x + distance * away.x, _center.y + distance * away.y,
                 _center.z + distance * away.z},
                _center,
                {0.0f, 1.0f, 0.0f},
                kFieldOfView,
                0.0};
    }

    /// The sky of a model with lights of its own is a faint one without a sun.
    json _DescribeSky() const {
        if (_model.lights.empty()) {
            return {{"sunLight", {kSunlight, 2.25, 2.0}}, {"sunAngle", 3.0}};
        }
        const double part = 0.1 * _irradiance / kSunlight;
        return {{"zenith", {0.25 * part, 0.45 * part, 0.85 * part}},
                {"horizon", {0.8 * part, 0.87 * part, 0.95 * part}},
                {"ground", {0.25 * part, 0.23 * part, 0.21 * part}}};
    }

    void _WriteLight() {
        const std::string sky = _AddShader("sky", "GradientSky", _DescribeSky());
        _AddEffect(sky, "surface");
        _scene["miss"] = sky;
        const std::string lights = _WriteLamps();
        const bool hasCutouts = std::any_of(
            _model.materials.begin(), _model.materials.end(), [](const ModelMaterial& material) {
                return material.alpha != ModelMaterial::kAlpha_Opaque;
            });
        _light = _AddShader("light", "PathTracer", {{"cutouts", hasCutouts}});
        json& integrator = _scene["shaders"].back();
        integrator["inputs"] = {{"environment", sky}};
        if (!lights.empty()) {
            integrator["inputs"]["lighting"] = lights;
        }
    }

    /// The lights of the model. @return their manager; empty for none
    std::string _WriteLamps() {
        if (_model.lights.empty()) {
            return "";
        }
        const std::string shadow = _AddShader("lights.shadow", "ShadowSharpArray", json::object());
        json names = json::array();
        for (const Model::Light& light : _model.lights) {
            const std::string name = light.name.empty() ? "lamp" : light.name;
            const std::string lamp = _WriteLamp(name, light, shadow);
            names.push_back(_AddShader(name, "LightInstanceStandardArray",
                                       {{"transform", _ToJson(light.transform)}}));
            _scene["shaders"].back()["inputs"] = {{"light", lamp}};
        }
        const std::string manager = _AddShader("lights", "LightManagerArray", json::object());
        _scene["shaders"].back()["inputs"] = {{"lights", names}};
        return manager;
    }

    std::string _WriteLamp(const std::string& name, const Model::Light& light,
                           const std::string& shadow) {
        const bool isFar = light.kind == Model::Light::kKind_Directional;
        json inputs = {{"shadow", shadow}};
        if (!isFar) {
            inputs["decay"] = _AddShader(name + ".decay", "LightDecayInvSquareArray",
                                         {{"range", light.range}});
        }
        if (light.kind == Model::Light::kKind_Spot) {
            inputs["focus"] = _AddShader(name + ".focus", "LightFocusConeArray",
                                         {{"inner", light.inner}, {"outer", light.outer}});
        }
        const std::string lamp =
            _AddShader(name + ".light", isFar ? "LightDirectArray" : "LightPointArray",
                       {{isFar ? "irradiance" : "intensity", _ToJson(light.light)}});
        _scene["shaders"].back()["inputs"] = std::move(inputs);
        return lamp;
    }

    void _WriteInstances(std::map<std::string, MeshData>& meshes) {
        Names names;
        for (const Model::Instance& instance : _model.instances) {
            const Model::Mesh& mesh = _model.meshes[instance.mesh];
            _scene["primitives"].push_back(
                {{"name", names.Take(instance.name, "mesh")},
                 {"shape", "mesh"},
                 {"file", _NameOfMesh(instance.mesh)},
                 {"effect", _TakeMaterial(mesh.material, !mesh.data.colors.empty())},
                 {"transform", {{{"matrix", _ToJson(instance.transform)}}}}});
        }
        for (std::size_t i = 0; i < _model.meshes.size(); ++i) {
            meshes.emplace(_NameOfMesh(i), std::move(_model.meshes[i].data));
        }
    }

    std::string _NameOfMesh(std::size_t index) const {
        return _CleanName(_name) + "#mesh " + std::to_string(index);
    }

    /// @return the effect of a material, for meshes with or without colours of their own
    std::string _TakeMaterial(std::size_t index, bool hasColors) {
        std::string& effect = _effects[{index, hasColors}];
        if (effect.empty()) {
            effect = _WriteMaterial(_model.materials[index], hasColors);
        }
        return effect;
    }

    std::string _WriteMaterial(const ModelMaterial& material, bool hasColors) {
        const std::string name = _AddShader(material.name.empty() ? "material" : material.name,
                                            "PrincipledMaterial", json::object());
        const std::size_t at = _scene["shaders"].size() - 1;
        json inputs = {{"integrator", _light}};
        const std::string color = _AddColor(name + ".baseColor", material.baseColor,
                                            material.baseColorImage, hasColors);
        if (material.isUnlit) {
            inputs["baseColor"] = _AddColor(name + ".black", {}, {}, false);
            inputs["emission"] = color;
        } else {
            inputs["baseColor"] = color;
            inputs["metallic"] =
                _AddScalar(name + ".metallic", material.metallic, material.metallicImage, 2);
            inputs["roughness"] =
                _AddScalar(name + ".roughness", material.roughness, material.roughnessImage, 1);
            const Vector3f& emission = material.emission;
            if (std::max({emission.x, emission.y, emission.z}) > 0.0f) {
                inputs["emission"] =
                    _AddColor(name + ".emission", emission, material.emissionImage, false);
            }
        }
        json parameters = {{"ior", material.index}};
        if (material.transmission > 0.0f) {
            inputs["transmission"] = _AddScalar(name + ".transmission", material.transmission,
                                                material.transmissionImage, 0);
            parameters["thinWalled"] = material.isThin;
        }
        if (material.coat > 0.0f) {
            inputs["clearcoat"] =
                _AddScalar(name + ".clearcoat", material.coat, material.coatImage, 0);
            inputs["clearcoatRoughness"] =
                _AddScalar(name + ".clearcoatRoughness", material.coatRoughness,
                           material.coatRoughnessImage, 1);
        }
        if (material.alpha != ModelMaterial::kAlpha_Opaque) {
            inputs["opacity"] = _AddScalar(name + ".opacity", material.opacity,
                                           material.opacityImage, material.opacityChannel);
            if (material.alpha == ModelMaterial::kAlpha_Mask) {
                parameters["cutoff"] = material.cutoff;
            }
        }
        if (!material.normalImage.image.empty()) {
            inputs["bump"] = _AddNormalMap(name + ".bump", material);
        }
        json& shader = _scene["shaders"][at];
        shader["inputs"] = std::move(inputs);
        shader["parameters"] = std::move(parameters);
        _AddEffect(name, "surface");
        return name;
    }

    std::string _AddColor(const std::string& name, const Vector3f& factor,
                          const ModelTexture& texture, bool hasColors) {
        std::string color;
        if (texture.image.empty()) {
            color = _AddShader(name, "ColorConstant", {{"value", _ToJson(factor)}});
        } else {
            color = _AddShader(name, "ImageColor", {{"scale", _ToJson(factor)}});
            _ConnectImage(texture);
        }
        if (!hasColors) {
            return color;
        }
        const std::string own = _AddShader(name + ".vertices", "VertexColor", json::object());
        _scene["shaders"].back()["coords"] = {{"color", "Color"}};
        const std::string product = _AddShader(name + ".product", "ColorProduct", json::object());
        _scene["shaders"].back()["inputs"] = {{"factors", {color, own}}};
        return product;
    }

    std::string _AddScalar(const std::string& name, float factor, const ModelTexture& texture,
                           int channel) {
        if (texture.image.empty()) {
            return _AddShader(name, "ScalarConstant", {{"value", factor}});
        }
        const std::string scalar =
            _AddShader(name, "ImageScalar", {{"scale", factor}, {"channel", channel}});
        _ConnectImage(texture);
        return scalar;
    }

    std::string _AddNormalMap(const std::string& name, const ModelMaterial& material) {
        const std::string bump =
            _AddShader(name, "NormalMap", {{"strength", material.normalStrength}});
        _scene["shaders"].back()["coords"] = {{"along", "Tangent"}, {"across", "Bitangent"}};
        _ConnectImage(material.normalImage);
        return bump;
    }

    /// Gives the shader that was added last its image and the coordinates on it.
    void _ConnectImage(const ModelTexture& texture) {
        const std::size_t at = _scene["shaders"].size() - 1;
        _scene["shaders"][at]["textures"] = {{"image", _TakeTexture(texture)}};
        const std::string mapping = _TakeMapping(texture);
        _scene["shaders"][at]["inputs"] = {{"mapping", mapping}};
    }

    std::string _TakeTexture(const ModelTexture& texture) {
        std::string& name = _textures[{texture.image, texture.wrap, texture.filter}];
        if (name.empty()) {
            name = _textureNames.Take(texture.image, "image");
            _scene["textures"].push_back({{"name", name},
                                          {"file", texture.image},
                                          {"wrap", texture.wrap},
                                          {"filter", texture.filter}});
        }
        return name;
    }

    std::string _TakeMapping(const ModelTexture& texture) {
        const json parameters = {{"scale", _ToJson(texture.scale)},
                                 {"rotation", texture.rotation},
                                 {"offset", _ToJson(texture.offset)}};
        std::string& name = _mappings[{texture.coordSet, parameters.dump()}];
        if (name.empty()) {
            name = _AddShader("coordinates", "UvCoordinates", parameters);
            _scene["shaders"].back()["coords"] = {
                {"uv", texture.coordSet == 0 ? "Coord" : "Coord1"}};
        }
        return name;
    }

    static constexpr double kSunlight = 2.4; ///< of the sky, the red of it
    static constexpr const char* kLightLibraries = "lights";

    std::string _name;
    Model& _model;
    Vector3f _center;
    float _radius = 1.0f;
    double _irradiance = 0.0; ///< 0 for a model without lights
    json _scene;
    Names _names;
    Names _textureNames;
    std::string _light; ///< the integrator of all materials
    std::map<std::pair<std::size_t, bool>, std::string> _effects;
    std::map<std::array<std::string, 3>, std::string> _textures;
    std::map<std::pair<int, std::string>, std::string> _mappings;
};

/// Takes the file's own name off the front of a message, which has it once already.
std::string _WithoutName(const std::string& text, const std::string& file) {
    return text.starts_with(file + ": ") ? text.substr(file.size() + 2) : text;
}

} // namespace

SceneDescription SceneFromModel(const std::string& file) {
    Model model;
    try {
        model = ReadModel(file);
    } catch (const std::exception& error) {
        throw SceneError("", _WithoutName(error.what(), file));
    }
    for (const std::string& warning : model.warnings) {
        std::fprintf(stderr, "%s: warning: %s\n", file.c_str(), warning.c_str());
    }
    if (GetShippedLibraries().empty()) {
        throw SceneError("", "the shader libraries that models are shown with are not installed");
    }
    std::map<std::string, MeshData> meshes;
    json scene = SceneWriter(file, model).Write(meshes);
    SceneDescription description =
        ReadScene(std::move(scene), std::filesystem::path(file).parent_path().string());
    description.images = std::move(model.images);
    description.meshes = std::move(meshes);
    return description;
}

} // namespace Tolen::Scene
