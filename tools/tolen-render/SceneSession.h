#pragma once

#include "SceneDescription.h"

#include "TolenEffects/ActionUpdate.h"
#include "TolenEffects/IEffect.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Assets.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::Render {

/// What an effect has cost so far.
struct EffectCount {
    std::string name;
    int compiles = 0;
    int valueUpdates = 0;
};

/// A scene in the library and in the embedded OpenKL, ready to render: libraries loaded, shaders
/// made and set, effects with their roots, primitives with geometry.
///
/// Complaints are thrown as SceneError with the place in the scene file. What the library prints
/// goes to a sink and comes with the complaint.
class SceneSession {
public:
    /// @param description borrowed
    /// @param searchPaths folders for library files beside the scene's own
    SceneSession(const SceneDescription& description, const OpenKL::ContextOptions& options,
                 const std::vector<std::string>& searchPaths);
    ~SceneSession();
    SceneSession(const SceneSession&) = delete;
    SceneSession& operator=(const SceneSession&) = delete;

    /// Compiles what has changed and writes the values that are due.
    void Update();

    /// Sets "shader.parameter", or "Class.parameter" of a static input.
    /// @throws SceneError for an unknown name or a value that does not fit
    void SetParameter(const std::string& path, const JsonNode& value);

    /// What is known of an input, for interpolation: how many numbers it takes; 0 when it is unknown
    /// or no value.
    std::size_t CountNumbersOf(const std::string& path);

    OpenKL::IContext& GetContext() { return *_pContext; }
    Effects::MgrEffects& GetManager() { return *_pManager; }
    std::vector<EffectCount> GetCounts() const;
    /// The generated texts of all effects, each under a heading.
    std::string GetPrograms() const;

private:
    class Sink;
    class EffectWatch;
    class Programs;

    Effects::TypeSpecifier _ReadType(const std::string& name, const JsonNode& node) const;
    std::string _FindFile(const std::string& file) const;
    [[noreturn]] void _Fail(const JsonNode& node, const std::string& message, const Result& result);

    void _LoadLibraries();
    void _DeclareVariables();
    void _LoadTextures();
    void _SetClasses();
    void _MakeShaders();
    void _MakeEffects();
    void _MakePrimitives();
    void _AssignRoles();

    void _SetShaderParameter(Effects::IShader* shader, const std::string& name,
                             const JsonNode& value);
    void _SetClassParameter(const std::string& className, const std::string& name,
                            const JsonNode& value);
    void _SetTexture(Effects::IShader* shader, const std::string& name, const JsonNode& value);
    void _SetLocal(Effects::IReferenceEffect* reference, const SceneDescription::Effect& effect,
                   const std::string& path, const JsonNode& value);
    void _SetGeometry(OpenKL::IPrimitive& primitive, const SceneDescription::Primitive& described);
    Effects::IShader* _FindShader(const std::string& name, const JsonNode& node);
    std::size_t _FindEffect(const std::string& name, const JsonNode& node);
    OpenKL::IPrimitive* _MakeRole(const char* key, const std::string& effect,
                                  SceneDescription::EffectKind kind);

    const SceneDescription& _description;
    MgrAssets _assets;
    IMgrAssets* _pAssetsBefore;
    std::unique_ptr<Sink> _pSink;
    MgrConsole _console;
    IMgrConsole* _pConsoleBefore;
    OpenKL::IContext* _pContext = nullptr;
    std::unique_ptr<Programs> _pPrograms;
    std::unique_ptr<Effects::MgrEffects> _pManager;
    std::map<std::string, IKLTexImage2D*> _textures;
    std::map<std::string, Effects::IShader*> _shaders;
    std::vector<Effects::IEffect*> _effects; ///< as in the description
    std::vector<std::unique_ptr<EffectWatch>> _watches;
};

} // namespace Tolen::Render
