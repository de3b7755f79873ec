#pragma once

#include "scene/SceneDescription.h"
#include "scene/SceneLights.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Tolen {
class IKLTexImage2D;
}

namespace Tolen::Effects {
class IParameter;
class IPrototypeShader;
class IShader;
class MgrEffects;
} // namespace Tolen::Effects

namespace Tolen::Scene {

class SceneConsole;

/// The shaders of a scene: made, given their values and connected as its description says.
class SceneShaders {
public:
    using Textures = std::map<std::string, IKLTexImage2D*>;

    /// All are borrowed. @param libraries the files that the manager has loaded
    /// @throws SceneError with the place of a mistake
    SceneShaders(const SceneDescription& description, const std::vector<std::string>& libraries,
                 const Textures& textures, Effects::MgrEffects& manager, SceneConsole& console);

    /// Sets "shader.input", or "Class.input" of a static input, to a value or, for an interface
    /// input, to shaders by their names. The last dot counts, since names of shaders may have some.
    /// @throws SceneError for an unknown name or a value that does not fit
    void Set(const std::string& path, const JsonNode& value);

    /// The input that such a path means; null when there is none.
    Effects::IParameter* FindInput(const std::string& path) const;

    /// @param node where @p name stands @throws SceneError when there is no such shader
    Effects::IShader* Find(const std::string& name, const JsonNode& node) const;

    /// The names of the scene's shaders.
    const std::map<std::string, Effects::IShader*>& GetAll() const { return _shaders; }

    /// Complains of the first input below @p root that nothing is connected to; returns when there
    /// is none.
    /// @param effect says whose root that is, in case that the description has no better place
    void CheckConnected(Effects::IShader& root, const JsonNode& effect) const;

    /// Likewise for static inputs of the classes that the description names, which may be called
    /// without a shader of them.
    void CheckClassesConnected(const JsonNode& effect) const;

private:
    void _CheckConnected(Effects::IPrototypeShader& prototype, const JsonNode& effect) const;
    void _Make(const SceneDescription::Shader& described);
    void _SetShaderInput(Effects::IShader& shader, const std::string& name, const JsonNode& value);
    void _SetClassInput(Effects::IPrototypeShader& prototype, const std::string& name,
                        const JsonNode& value);
    template <class Setter>
    void _SetValue(Effects::IParameter& input, const std::string& name, const JsonNode& value,
                   const Setter& set);
    template <class Setter>
    void _Connect(Effects::IParameter& input, const std::string& name, const JsonNode& value,
                  const Setter& set);
    void _SetTexture(Effects::IShader& shader, const std::string& name, const JsonNode& value);
    const SceneDescription::Shader* _FindDescribed(Effects::IShader& shader) const;

    std::string _SuggestClass(const std::string& name) const;

    const SceneDescription& _description;
    const std::vector<std::string>& _libraries;
    const Textures& _textures;
    Effects::MgrEffects& _manager;
    SceneConsole& _console;
    SceneLights _lights;
    std::map<std::string, Effects::IShader*> _shaders;
};

} // namespace Tolen::Scene
