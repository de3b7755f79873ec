#pragma once

#include "TolenEffects/IGraph.h"

#include <set>
#include <string>

namespace Tolen::Effects::Tests {

/// A graph that knows nothing but its root and its constructors.
class FakeGraph : public IGraph {
public:
    bool SetName(const std::string&) override { return {}; }
    std::string GetName() override { return {}; }
    std::string GetNameMangled() override { return {}; }
    IShader* GetShader() const override { return {}; }
    IReferenceShader* GetReferenceShader() const override { return root; }
    IReferenceGraph* CreateReference(IEffect*) override { return {}; }
    void DestroyReference(IReferenceGraph*) override {}
    bool AddListenerDelete(FastDelegate1<IGraph*, bool>&) override { return {}; }
    bool RemoveListenerDelete(FastDelegate1<IGraph*, bool>&) override { return {}; }
    bool AddReferencePrototypeShader(IPrototypeShader*, ReferencePrototypeShader*) override {
        return {};
    }
    bool RemoveReferencePrototypeShader(IPrototypeShader*) override { return {}; }
    bool AddReferencePrototypeInterface(IPrototypeInterface*,
                                        ReferencePrototypeInterface*) override {
        return {};
    }
    bool RemoveReferencePrototypeInterface(IPrototypeInterface*) override { return {}; }
    bool AddDelegateCollectShader(FastDelegate1<Module*, bool>&) override { return {}; }
    bool RemoveDelegateCollectShader(FastDelegate1<Module*, bool>&) override { return {}; }
    bool AcquireAttribute(TypeSpecifier, const std::string&, TransformationCoord) override {
        return {};
    }
    bool ReleaseAttribute(const std::string&) override { return {}; }
    int GetCountAttributes() override { return {}; }
    bool AddListenerAddAttribute(FastDelegate1<Attribute, bool>&) override { return {}; }
    bool RemoveListenerAddAttribute(FastDelegate1<Attribute, bool>&) override { return {}; }
    bool AddListenerRemoveAttribute(FastDelegate1<Attribute, bool>&) override { return {}; }
    bool RemoveListenerRemoveAttribute(FastDelegate1<Attribute, bool>&) override { return {}; }
    bool VisitAttributes(FastDelegate1<Attribute, bool>&) override { return {}; }
    bool AcquireOutput(TypeSpecifier, const std::string&) override { return {}; }
    bool ReleaseOutput(const std::string&) override { return {}; }
    int GetCountOutputs() override { return {}; }
    const std::set<std::string>& GetOutputsUsed() const override {
        static const std::set<std::string> none;
        return none;
    }
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
    bool Compile(Result*) override { return {}; }
    bool AddListenerCompile(FastDelegate1<IGraph*, bool>&) override { return {}; }
    bool RemoveListenerCompile(FastDelegate1<IGraph*, bool>&) override { return {}; }
    bool IsComplete(Result*) override { return {}; }
    bool IsCompiled() override { return {}; }
    bool HasConstructorStatic() const override { return !constructorStatic.empty(); }
    std::string GetConstructorStatic() const override { return constructorStatic; }
    bool CollectDeclarationConstructorStatic(Module*) const override { return {}; }
    bool HasConstructor() const override { return !constructor.empty(); }
    std::string GetConstructor() const override { return constructor; }
    bool CollectDeclarationConstructor(Module*) const override { return {}; }
    bool AddDelegateApply(DelegateUpdate&) override { return {}; }
    bool RemoveDelegateApply(DelegateUpdate&) override { return {}; }
    bool Apply(IKLPrimitive*, IKLProgram*, Result*) override { return {}; }
    bool AddDelegateUpdate(DelegateUpdate&) override { return {}; }
    bool AddListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>&) override {
        return {};
    }
    bool RemoveListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>&) override {
        return {};
    }
    bool AddListenerChangeStructure(FastDelegate1<IGraph*, bool>&) override { return {}; }
    bool RemoveListenerChangeStructure(FastDelegate1<IGraph*, bool>&) override { return {}; }
    IMgrEffects* GetMgrEffects() override { return {}; }
    IKLShader* GetKLShader() override { return {}; }
    IKLShader::Type GetType() override { return {}; }

    IReferenceShader* root = nullptr; ///< borrowed
    std::string constructor;
    std::string constructorStatic;
};

} // namespace Tolen::Effects::Tests
