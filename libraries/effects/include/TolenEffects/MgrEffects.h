#pragma once

#include "TolenEffects/IMgrEffects.h"

#include <memory>

namespace Tolen::Effects {

/// The manager that a client makes. One run, in order:
///
/// @code
/// MgrEffects manager;
/// manager.Init(console, context, &result);
/// manager.AddLibrary("surface.ksl", &result);
/// IShader* shader = manager.CreateShader("Surface", &result);
/// IEffect* effect = manager.CreateEffectSurface();
/// effect->SetRoot(shader);
/// effect->CreateReference(primitive);
/// manager.Update(&result); // each frame: compiles what has changed and writes values
/// manager.Shutdown();      // or the destructor
/// @endcode
class TOLEN_EXPORT MgrEffects : public IMgrEffects {
public:
    MgrEffects();
    ~MgrEffects() override;
    MgrEffects(const MgrEffects&) = delete;
    MgrEffects& operator=(const MgrEffects&) = delete;

    /// Makes the manager ready. The output "o_color" exists from here on; no library is loaded.
    /// @param console takes what the manager has to say, borrowed until Shutdown; null for silence
    /// @param context makes the API's objects, borrowed until Shutdown
    /// @param result  not used
    /// @return false when it is running already, or when it could not start, as without a context,
    ///         and is shut down again
    bool Init(IMgrConsole* console, IOpenKLContext* context, Result* result);

    /// @cond
    void Shutdown() override;
    MgrEffectsImpl* GetImplementation() override;
    bool AddLibrary(const std::string& name, const std::string& source, Result* result) override;
    bool AddLibrary(const std::string& file, Result* result) override;
    bool AddRayAttribute(TypeSpecifier type, const std::string& name) override;
    bool AddVariableGlobal(TypeSpecifier type, const std::string& name) override;
    IPrototypeShader* GetPrototypeShader(const std::string& name, Result* result) override;
    IPrototypeInterface* GetPrototypeInterface(const std::string& name) override;
    bool VisitRayAttributes(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool
    VisitVariablesGlobal(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool VisitEffectsSurface(FastDelegate1<IEffect*, bool>& visit) override;
    bool VisitEffectsRenderer(FastDelegate1<IEffect*, bool>& visit) override;
    bool VisitEffectsPrefix(FastDelegate1<IEffect*, bool>& visit) override;
    IShader* CreateShader(const std::string& name, Result* result) override;
    IShader* CreateShader(const std::string& name) override;
    void DestroyShader(IShader* shader) override;
    IEffect* CreateEffectSurface() override;
    void DestroyEffectSurface(IEffect* effect) override;
    IEffect* CreateEffectRenderer() override;
    void DestroyEffectRenderer(IEffect* effect) override;
    IEffect* CreateEffectPrefix() override;
    void DestroyEffectPrefix(IEffect* effect) override;
    bool
    AddListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) override;
    bool RemoveListenerAddOutput(
        FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) override;
    bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) override;
    bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) override;
    bool AcquireOutput(TypeSpecifier type, const std::string& name) override;
    bool ReleaseOutput(const std::string& name) override;
    int GetCountOutputs() override;
    bool HasOutput(const std::string& name) override;
    bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool SetOutputAttachmentIndex(const std::string& name, int index) override;
    bool GetOutputAttachmentIndex(int& index, const std::string& name) override;
    bool ClearOutputAttachmentIndex(const std::string& name) override;
    bool AddListenerChangeOutputIndices(FastDelegate0<bool>& listener) override;
    bool RemoveListenerChangeOutputIndices(FastDelegate0<bool>& listener) override;
    bool Update() override;
    bool Update(Result* result) override;
    Key CreateKey() override;
    void DestroyKey(Key& key) override;
    IMgrConsole* GetConsole() const override;
    IOpenKLContext* GetOpenKLContext() const override;
    Profiler* GetProfiler() const override;
    /// @endcond

private:
    std::unique_ptr<MgrEffectsImpl> _pImplementation;
};

} // namespace Tolen::Effects
