#pragma once

#include <string>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {
class IMgrLightShaders;
class IShader;
class MgrEffects;
} // namespace Tolen::Effects

namespace Tolen::Scene {

class SceneConsole;
struct SceneDescription;

/// Makes the shaders of a scene: through the manager of light shaders when the scene has lights, and
/// otherwise through that of effects alone.
///
/// A scene has lights when it names a class of arrays, while the libraries of lights are loaded. The
/// manager of light shaders needs all of these.
class SceneLights {
public:
    /// All borrowed; the manager with the scene's libraries loaded.
    /// @throws SceneError when the manager of light shaders can't be started
    SceneLights(const SceneDescription& description, Effects::MgrEffects& manager,
                SceneConsole& console);
    ~SceneLights();
    SceneLights(const SceneLights&) = delete;
    SceneLights& operator=(const SceneLights&) = delete;

    /// @return borrowed, until this object goes; null with reasons in @p result
    Effects::IShader* CreateShader(const std::string& className, Result* result);

private:
    Effects::MgrEffects& _manager;
    Effects::IMgrLightShaders* _pLights = nullptr; ///< owned; null for a scene without lights
};

} // namespace Tolen::Scene
