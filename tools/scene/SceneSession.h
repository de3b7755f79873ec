#pragma once

#include "scene/EffectWatch.h"
#include "scene/ProgramTexts.h"
#include "scene/SceneConsole.h"
#include "scene/SceneDescription.h"
#include "scene/SceneShaders.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Assets.h"
#include "TolenCore/Result.h"

#include <memory>
#include <string>
#include <vector>

namespace Tolen::Scene {

/// A scene in the library and in the embedded OpenKL, ready to render: libraries loaded, shaders
/// made and connected, effects with their roots, primitives with geometry.
///
/// Complaints are thrown as SceneError with the place in the scene file. What the library prints
/// comes with the complaint.
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

    SceneShaders& GetShaders() { return *_pShaders; }
    OpenKL::IContext& GetContext() { return *_pContext; }
    Effects::MgrEffects& GetManager() { return *_pManager; }
    /// As in the description.
    const std::vector<Effects::IEffect*>& GetEffects() const { return _effects; }
    std::vector<EffectCount> GetCounts() const;
    /// The generated texts of all effects that were compiled, each under a heading.
    std::string GetPrograms() const;

private:
    /// Has the process look for files in a scene's assets.
    class AssetsScope {
    public:
        explicit AssetsScope(IMgrAssets& assets) : _pBefore(SetMgrAssets(&assets)) {}
        ~AssetsScope() { SetMgrAssets(_pBefore); }
        AssetsScope(const AssetsScope&) = delete;
        AssetsScope& operator=(const AssetsScope&) = delete;

    private:
        IMgrAssets* _pBefore; ///< borrowed
    };
    struct ContextDeleter {
        void operator()(OpenKL::IContext* context) const { OpenKL::DestroyContext(context); }
    };

    Effects::TypeSpecifier _ReadType(const std::string& name, const JsonNode& node) const;
    std::string _FindFile(const std::string& file) const;
    std::vector<std::string> _FindLibraries(const std::string& name) const;

    void _LoadLibraries();
    void _DeclareVariables();
    void _LoadTextures();
    void _MakeEffects();
    void _MakePrimitives();
    void _AssignRoles();
    void _UpdateEffect(std::size_t index);

    void _SetLocal(Effects::IReferenceEffect* reference, const SceneDescription::Effect& effect,
                   const std::string& path, const JsonNode& value);
    void _SetGeometry(OpenKL::IPrimitive& primitive, const SceneDescription::Primitive& described);
    std::size_t _FindEffect(const std::string& name, const JsonNode& node);
    OpenKL::IPrimitive* _MakeRole(const char* key, const std::string& effect,
                                  SceneDescription::EffectKind kind);

    // Each needs those above it to the end.
    const SceneDescription& _description;
    std::vector<std::string> _libraryFolders; ///< where libraries are looked for, in this order
    std::vector<std::string> _libraries;      ///< the files that are loaded
    MgrAssets _assets;
    AssetsScope _assetsScope;
    SceneConsole _console;
    std::unique_ptr<OpenKL::IContext, ContextDeleter> _pContext;
    std::unique_ptr<ProgramTexts> _pTexts;
    std::unique_ptr<Effects::MgrEffects> _pManager;
    SceneShaders::Textures _textures;
    std::unique_ptr<SceneShaders> _pShaders;
    std::vector<Effects::IEffect*> _effects; ///< as in the description
    std::vector<std::unique_ptr<EffectWatch>> _watches;
    std::vector<std::string> _programs; ///< for each effect
};

} // namespace Tolen::Scene
