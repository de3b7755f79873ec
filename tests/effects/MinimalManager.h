#pragma once

#include "TolenEffects/IMgrEffects.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Tolen::Effects::Tests {

/// A manager that gives out keys and knows its context, and has nothing else. Every key is new, and
/// is expected back once.
class MinimalManager : public IMgrEffects {
public:
    explicit MinimalManager(IOpenKLContext* context) : _pContext(context) {}

    /// Keys that are out.
    std::size_t GetCountKeys() const { return _keys.size(); }

    Key CreateKey() override {
        const Key key(++_last);
        _keys.insert(key);
        return key;
    }
    void DestroyKey(Key& key) override { EXPECT_EQ(_keys.erase(key), 1u) << key.ToString(); }
    IOpenKLContext* GetOpenKLContext() const override { return _pContext; }

    void Shutdown() override {}
    MgrEffectsImpl* GetImplementation() override { return nullptr; }
    bool AddLibrary(const std::string&, const std::string&, Result*) override { return false; }
    bool AddLibrary(const std::string&, Result*) override { return false; }
    bool AddRayAttribute(TypeSpecifier, const std::string&) override { return false; }
    bool AddVariableGlobal(TypeSpecifier, const std::string&) override { return false; }
    IPrototypeShader* GetPrototypeShader(const std::string&, Result*) override { return nullptr; }
    IPrototypeInterface* GetPrototypeInterface(const std::string&) override { return nullptr; }
    bool VisitRayAttributes(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return true;
    }
    bool VisitVariablesGlobal(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return true;
    }
    bool VisitEffectsSurface(FastDelegate1<IEffect*, bool>&) override { return false; }
    bool VisitEffectsRenderer(FastDelegate1<IEffect*, bool>&) override { return false; }
    bool VisitEffectsPrefix(FastDelegate1<IEffect*, bool>&) override { return false; }
    IShader* CreateShader(const std::string&, Result*) override { return nullptr; }
    IShader* CreateShader(const std::string&) override { return nullptr; }
    void DestroyShader(IShader*) override {}
    IEffect* CreateEffectSurface() override { return nullptr; }
    void DestroyEffectSurface(IEffect*) override {}
    IEffect* CreateEffectRenderer() override { return nullptr; }
    void DestroyEffectRenderer(IEffect*) override {}
    IEffect* CreateEffectPrefix() override { return nullptr; }
    void DestroyEffectPrefix(IEffect*) override {}
    bool AddListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return false;
    }
    bool RemoveListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return false;
    }
    bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>&) override {
        return false;
    }
    bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>&) override {
        return false;
    }
    bool AcquireOutput(TypeSpecifier, const std::string&) override { return false; }
    bool ReleaseOutput(const std::string&) override { return false; }
    int GetCountOutputs() override { return 0; }
    bool HasOutput(const std::string&) override { return false; }
    bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>&) override {
        return true;
    }
    bool SetOutputAttachmentIndex(const std::string&, int) override { return false; }
    bool GetOutputAttachmentIndex(int&, const std::string&) override { return false; }
    bool ClearOutputAttachmentIndex(const std::string&) override { return false; }
    bool AddListenerChangeOutputIndices(FastDelegate0<bool>&) override { return false; }
    bool RemoveListenerChangeOutputIndices(FastDelegate0<bool>&) override { return false; }
    bool Update() override { return false; }
    bool Update(Result*) override { return false; }
    IMgrConsole* GetConsole() const override { return nullptr; }
    Profiler* GetProfiler() const override { return nullptr; }

private:
    IOpenKLContext* _pContext;
    std::set<Key> _keys;
    unsigned int _last = 0;
};

} // namespace Tolen::Effects::Tests
