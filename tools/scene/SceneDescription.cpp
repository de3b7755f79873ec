#include "scene/SceneDescription.h"

#include "scene/IesFile.h"
#include "scene/SceneError.h"
#include "scene/Transform.h"

#include "TolenOpenKLWrapper/kl.h"

#include "TolenCore/Path.h"

#include <fstream>
#include <set>
#include <sstream>

namespace Tolen::Scene {

namespace {

constexpr int kMostSamples = 1 << 24;
constexpr int kMostPixels = 65536;
constexpr int kSegments = 256;
constexpr int kMostSegments = 4096;

nlohmann::json _ReadJson(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw SceneError("", "can't be read");
    }
    std::stringstream text;
    text << stream.rdbuf();
    try {
        return nlohmann::json::parse(text.str(), nullptr, true, true);
    } catch (const nlohmann::json::parse_error& error) {
        // The library's text tells line and column; its own prefix helps nobody.
        const std::string what = error.what();
        const std::size_t at = what.find("at line");
        throw SceneError("", at == std::string::npos ? what : "no JSON " + what.substr(at));
    }
}

std::string _OptionalString(const JsonNode& node, const char* key) {
    return node.Has(key) ? node.Get(key).AsString() : std::string();
}

std::vector<std::pair<std::string, JsonNode>> _OptionalMembers(const JsonNode& node,
                                                               const char* key) {
    return node.Has(key) ? node.Get(key).GetMembers()
                         : std::vector<std::pair<std::string, JsonNode>>();
}

std::vector<JsonNode> _OptionalElements(const JsonNode& node, const char* key) {
    return node.Has(key) ? node.Get(key).GetElements() : std::vector<JsonNode>();
}

/// The names of one list, which must differ.
class UniqueNames {
public:
    std::string Take(const JsonNode& node) {
        const std::string name = node.Get("name").AsString();
        if (name.empty()) {
            node.Get("name").Fail("a name can't be empty");
        }
        if (!_names.insert(name).second) {
            node.Get("name").Fail("the name '" + name + "' is taken");
        }
        return name;
    }

private:
    std::set<std::string> _names;
};

std::vector<SceneDescription::Variable> _ReadVariables(const JsonNode& scene, const char* key) {
    std::vector<SceneDescription::Variable> variables;
    UniqueNames names;
    for (const JsonNode& node : _OptionalElements(scene, key)) {
        node.AllowOnly({"type", "name"});
        variables.push_back({node.Get("type").AsString(), names.Take(node), node});
    }
    return variables;
}

void _ReadTextures(const JsonNode& scene, SceneDescription& description) {
    constexpr int kWraps[] = {KL_REPEAT, KL_CLAMP_TO_EDGE, KL_MIRRORED_REPEAT};
    constexpr int kFilters[] = {KL_LINEAR, KL_NEAREST};
    UniqueNames names;
    for (const JsonNode& node : _OptionalElements(scene, "textures")) {
        node.AllowOnly({"name", "file", "wrap", "filter", "encoding", "importance"});
        description.textures.push_back(
            {names.Take(node), node.Get("file").AsString(),
             node.Has("wrap") ? kWraps[node.Get("wrap").AsOneOf({"repeat", "clamp", "mirror"})]
             : IsIesFile(node.Get("file").AsString()) ? KL_CLAMP_TO_EDGE
                                                      : KL_REPEAT,
             node.Has("filter") ? kFilters[node.Get("filter").AsOneOf({"linear", "nearest"})]
                                : KL_LINEAR,
             !node.Has("encoding") || node.Get("encoding").AsOneOf({"srgb", "linear"}) == 0,
             node, node.Has("importance") && node.Get("importance").AsBool()});
    }
}

void _ReadShaders(const JsonNode& scene, SceneDescription& description) {
    for (const auto& [name, node] : _OptionalMembers(scene, "classes")) {
        description.classes.push_back({name, node.GetMembers(), node});
    }
    UniqueNames names;
    for (const JsonNode& node : scene.Get("shaders").GetElements()) {
        node.AllowOnly({"name", "class", "parameters", "inputs", "coords", "textures"});
        description.shaders.push_back({names.Take(node), node.Get("class").AsString(),
                                       _OptionalMembers(node, "parameters"),
                                       _OptionalMembers(node, "inputs"),
                                       _OptionalMembers(node, "coords"),
                                       _OptionalMembers(node, "textures"), node});
    }
}

void _ReadEffects(const JsonNode& scene, SceneDescription& description) {
    UniqueNames names;
    for (const JsonNode& node : scene.Get("effects").GetElements()) {
        node.AllowOnly({"name", "kind", "root"});
        const std::size_t kind = node.Get("kind").AsOneOf({"surface", "renderer", "prefix"});
        description.effects.push_back({names.Take(node),
                                       static_cast<SceneDescription::EffectKind>(kind),
                                       node.Get("root").AsString(), node});
    }
    description.renderer = scene.Get("renderer").AsString();
    description.prefix = _OptionalString(scene, "prefix");
    description.miss = _OptionalString(scene, "miss");
}

std::vector<double> _ReadSize(const JsonNode& node, SceneDescription::Shape shape) {
    std::vector<double> size;
    switch (shape) {
    case SceneDescription::kShape_Plane:
        size = node.Has("size") ? node.Get("size").AsNumbers(2) : std::vector<double>{1.0, 1.0};
        break;
    case SceneDescription::kShape_Box:
        size = node.Has("size") ? node.Get("size").AsNumbers(3) : std::vector<double>{1.0, 1.0, 1.0};
        break;
    case SceneDescription::kShape_Sphere:
    case SceneDescription::kShape_Disc:
        size = {node.Has("radius") ? node.Get("radius").AsNumber() : 1.0};
        break;
    case SceneDescription::kShape_Mesh:
        return {};
    }
    for (const double edge : size) {
        if (!(edge > 0.0)) {
            node.Get(node.Has("size") ? "size" : "radius").Fail("expected numbers above 0");
        }
    }
    return size;
}

void _ReadPrimitives(const JsonNode& scene, SceneDescription& description) {
    UniqueNames names;
    for (const JsonNode& node : _OptionalElements(scene, "primitives")) {
        const auto shape = static_cast<SceneDescription::Shape>(
            node.Get("shape").AsOneOf({"plane", "sphere", "box", "disc", "mesh"}));
        switch (shape) {
        case SceneDescription::kShape_Plane:
        case SceneDescription::kShape_Box:
            node.AllowOnly({"name", "shape", "size", "effect", "transform", "local"});
            break;
        case SceneDescription::kShape_Sphere:
        case SceneDescription::kShape_Disc:
            node.AllowOnly(
                {"name", "shape", "radius", "segments", "effect", "transform", "local"});
            break;
        case SceneDescription::kShape_Mesh:
            node.AllowOnly({"name", "shape", "file", "fit", "effect", "transform", "local"});
            break;
        }
        description.primitives.push_back(
            {names.Take(node), shape, _ReadSize(node, shape),
             shape == SceneDescription::kShape_Mesh ? node.Get("file").AsString() : std::string(),
             node.Has("segments") ? node.Get("segments").AsInt(3, kMostSegments) : kSegments,
             node.Has("fit") && node.Get("fit").AsBool(), node.Get("effect").AsString(),
             node.Has("transform") ? ReadTransform(node.Get("transform")) : Matrix44f(),
             _OptionalMembers(node, "local"), node});
    }
}

void _ReadPicture(const JsonNode& scene, SceneDescription& description) {
    if (scene.Has("size")) {
        const std::vector<JsonNode> size = scene.Get("size").GetElements();
        if (size.size() != 2) {
            scene.Get("size").Fail("expected width and height");
        }
        description.width = size[0].AsInt(1, kMostPixels);
        description.height = size[1].AsInt(1, kMostPixels);
    }
    if (scene.Has("samples")) {
        description.samples = scene.Get("samples").AsInt(1, kMostSamples);
    }
    if (scene.Has("time")) {
        description.time = scene.Get("time").AsNumber();
    }
    UniqueNames names;
    for (const JsonNode& node : _OptionalElements(scene, "outputs")) {
        node.AllowOnly({"name", "type", "attachment"});
        description.outputs.push_back({node.Get("type").AsString(), names.Take(node),
                                       node.Get("attachment").AsInt(0, 15), node});
    }
}

} // namespace

SceneDescription ReadScene(const std::string& file) {
    return ReadScene(_ReadJson(file), Path(file).GetFolder().AsString());
}

SceneDescription ReadScene(nlohmann::json json, const std::string& folder) {
    SceneDescription description;
    description.json = std::make_shared<const nlohmann::json>(std::move(json));
    description.folder = folder;

    const JsonNode scene(*description.json, "");
    scene.AllowOnly({"libraries", "rayAttributes", "globals", "outputs", "textures", "classes",
                     "shaders", "effects", "primitives", "renderer", "prefix", "miss", "size",
                     "samples", "time"});
    description.nodesOfLibraries = scene.Get("libraries").GetElements();
    for (const JsonNode& node : description.nodesOfLibraries) {
        description.libraries.push_back(node.AsString());
    }
    description.rayAttributes = _ReadVariables(scene, "rayAttributes");
    description.globals = _ReadVariables(scene, "globals");
    _ReadTextures(scene, description);
    _ReadShaders(scene, description);
    _ReadEffects(scene, description);
    _ReadPrimitives(scene, description);
    _ReadPicture(scene, description);
    return description;
}

} // namespace Tolen::Scene
