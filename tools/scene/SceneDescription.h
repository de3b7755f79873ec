#pragma once

#include "scene/ImageFile.h"
#include "scene/JsonNode.h"
#include "scene/MeshFile.h"

#include "TolenCore/Matrix.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::Scene {

/// A scene as its file describes it, read and checked as far as that goes without loading shaders.
/// Names refer to entries of the lists; file names are relative to the scene file's folder.
struct SceneDescription {
    struct Variable {
        std::string type;
        std::string name;
        JsonNode node;
    };
    struct Output {
        std::string type;
        std::string name;
        int attachment;
        JsonNode node;
    };
    struct Texture {
        std::string name;
        std::string file;
        int wrap;    ///< KL_REPEAT, KL_CLAMP_TO_EDGE or KL_MIRRORED_REPEAT
        int filter;  ///< KL_NEAREST or KL_LINEAR
        bool isSrgb; ///< whether the file's colours are encoded for a screen
        JsonNode node;
        bool isImportance = false; ///< whether it is the importance table of the file's light
    };
    /// Values and connections of the static inputs of a class.
    struct ClassValues {
        std::string name;
        std::vector<std::pair<std::string, JsonNode>> parameters;
        JsonNode node;
    };
    struct Shader {
        std::string name;
        std::string className;
        std::vector<std::pair<std::string, JsonNode>> parameters;
        std::vector<std::pair<std::string, JsonNode>> inputs; ///< names of shaders, to connect
        std::vector<std::pair<std::string, JsonNode>> coords;
        std::vector<std::pair<std::string, JsonNode>> textures;
        JsonNode node;
    };
    enum EffectKind { kEffect_Surface, kEffect_Renderer, kEffect_Prefix };
    struct Effect {
        std::string name;
        EffectKind kind;
        std::string root; ///< a shader
        JsonNode node;
    };
    enum Shape { kShape_Plane, kShape_Sphere, kShape_Box, kShape_Disc, kShape_Mesh };
    struct Primitive {
        std::string name;
        Shape shape;
        std::vector<double> size; ///< what the shape takes: width and height, radius, edges
        std::string file;         ///< of a mesh
        int segments;             ///< of a sphere or disc, around it
        bool isFitted;            ///< whether a mesh is moved and scaled into the unit cube
        std::string effect;
        Matrix44f transform;
        /// Values for this primitive alone, by "parameter" of the root or "shader.parameter".
        std::vector<std::pair<std::string, JsonNode>> local;
        JsonNode node;
    };

    std::shared_ptr<const nlohmann::json> json; ///< what all nodes point into
    std::string folder;                         ///< of the scene file
    /// What textures and primitives refer to instead of a file, by the name in its place.
    std::map<std::string, Image> images;
    std::map<std::string, MeshData> meshes;
    std::vector<std::string> libraries;
    std::vector<JsonNode> nodesOfLibraries;
    std::vector<Variable> rayAttributes;
    std::vector<Variable> globals;
    std::vector<Output> outputs;
    std::vector<Texture> textures;
    std::vector<ClassValues> classes;
    std::vector<Shader> shaders;
    std::vector<Effect> effects;
    std::vector<Primitive> primitives;
    std::string renderer; ///< effects
    std::string prefix;   ///< empty for none
    std::string miss;     ///< empty for none
    int width = 640;
    int height = 360;
    int samples = 64;
    double time = 0.0;
};

/// Reads a scene file.
/// @throws SceneError with the place in the file
SceneDescription ReadScene(const std::string& file);

/// Reads a scene as a file would hold it.
/// @param folder that file names are relative to
/// @throws SceneError with the place in @p json
SceneDescription ReadScene(nlohmann::json json, const std::string& folder);

} // namespace Tolen::Scene
