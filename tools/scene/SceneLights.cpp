#include "scene/SceneLights.h"

#include "scene/SceneConsole.h"
#include "scene/SceneDescription.h"

#include "TolenEffects/IMgrLightShaders.h"
#include "TolenEffects/MgrEffects.h"

#include "TolenCore/Result.h"

#include <algorithm>

namespace Tolen::Scene {

using namespace Tolen::Effects;

namespace {

bool _NamesArrays(const SceneDescription& description) {
    return std::any_of(description.shaders.begin(), description.shaders.end(),
                       [](const SceneDescription::Shader& shader) {
                           return shader.className.ends_with("Array");
                       });
}

/// Whether some library of lights is loaded, by the classes that stand for what isn't connected.
bool _HasLights(MgrEffects& manager) {
    static constexpr const char* kNulls[] = {
        "LightInstanceNullArray", "LightNullArray",        "LightDecayNullArray", "LightFocusNullArray",
        "EmissionNullArray",      "ProjectorMapNullArray", "ShadowNullArray"};
    return std::any_of(std::begin(kNulls), std::end(kNulls), [&manager](const char* name) {
        return manager.GetPrototypeShader(name, nullptr) != nullptr;
    });
}

} // namespace

SceneLights::SceneLights(const SceneDescription& description, MgrEffects& manager,
                         SceneConsole& console)
    : _manager(manager) {
    if (!_NamesArrays(description) || !_HasLights(manager)) {
        console.Take();
        return;
    }
    _pLights = CreateMgrLightShaders();
    if (!_pLights->Init(&manager, &console.GetManager())) {
        DestroyMgrLightShaders();
        console.Fail(JsonNode(*description.json, "").Get("libraries"),
                     "lights need all libraries of lights", {});
    }
    console.Take();
}

SceneLights::~SceneLights() {
    if (_pLights != nullptr) {
        _pLights->Shutdown();
        DestroyMgrLightShaders();
    }
}

IShader* SceneLights::CreateShader(const std::string& className, Result* result) {
    return _pLights == nullptr ? _manager.CreateShader(className, result)
                               : _pLights->CreateShader(className, result);
}

} // namespace Tolen::Scene
