#pragma once

#include "TolenEffects/IMgrEffects.h"

#include <set>
#include <string>

namespace Tolen::Effects::Tests {

/// A manager that knows nothing but which outputs there are.
class FakeMgrEffects : public IMgrEffects {
public:
    void Shutdown() override {}
    MgrEffectsImpl* GetImplementation() override { return {}; }
    bool AddLibrary(const std::string&, const std::string&, Result*) override { return {}; }
    bool AddLibrary(const std::string&, Result*) override { return {}; }
    bool AddRayAttribute(TypeSpecifier, const std::string&) override { return {}; }
    bool AddVariableGlobal(TypeSpecifier, const std::string&) override { return {}; }
    IPrototypeShader* GetPrototypeShader(const std::string&, Result*) override { return {}; }
    IPrototypeInterface* GetPrototypeInterface(const std::string&) override { return {}; }
    bool VisitRayAttributes(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return {};
    }
    bool VisitVariablesGlobal(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return {};
    }
    bool VisitEffectsSurface(FastDelegate1<IEffect*, bool>&) override { return {}; }
    bool VisitEffectsRenderer(FastDelegate1<IEffect*, bool>&) override { return {}; }
    bool VisitEffectsPrefix(FastDelegate1<IEffect*, bool>&) override { return {}; }
    IShader* CreateShader(const std::string&, Result*) override { return {}; }
    IShader* CreateShader(const std::string&) override { return {}; }
    void DestroyShader(IShader*) override {}
    IEffect* CreateEffectSurface() override { return {}; }
    void DestroyEffectSurface(IEffect*) override {}
    IEffect* CreateEffectRenderer() override { return {}; }
    void DestroyEffectRenderer(IEffect*) override {}
    IEffect* CreateEffectPrefix() override { return {}; }
    void DestroyEffectPrefix(IEffect*) override {}
    bool AddListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return {};
    }
    bool RemoveListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return {};
    }
    bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>&) override { return {}; }
    bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>&) override {
        return {};
    }
    bool AcquireOutput(TypeSpecifier, const std::string&) override { return {}; }
    bool ReleaseOutput(const std::string&) override { return {}; }
    int GetCountOutputs() override { return {}; }
    bool HasOutput(const std::string& name) override { return outputs.count(name) != 0; }
    bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return {};
    }
    bool SetOutputAttachmentIndex(const std::string&, int) override { return {}; }
    bool GetOutputAttachmentIndex(int&, const std::string&) override { return {}; }
    bool ClearOutputAttachmentIndex(const std::string&) override { return {}; }
    bool AddListenerChangeOutputIndices(FastDelegate0<bool>&) override { return {}; }
    bool RemoveListenerChangeOutputIndices(FastDelegate0<bool>&) override { return {}; }
    bool Update() override { return {}; }
    bool Update(Result*) override { return {}; }
    Key CreateKey() override { return {}; }
    void DestroyKey(Key&) override {}
    IMgrConsole* GetConsole() const override { return {}; }
    IOpenKLContext* GetOpenKLContext() const override { return {}; }
    Profiler* GetProfiler() const override { return {}; }

    std::set<std::string> outputs;
};

} // namespace Tolen::Effects::Tests
