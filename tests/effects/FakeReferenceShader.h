#pragma once

#include "TolenEffects/IReferenceShader.h"

#include <map>
#include <string>

namespace Tolen::Effects::Tests {

/// A root shader that knows nothing but the names of its methods in the text.
class FakeReferenceShader : public IReferenceShader {
public:
    bool Release() override { return {}; }
    bool AddListenerDelete(FastDelegate1<IReferenceShader*, bool>&) override { return {}; }
    bool RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>&) override { return {}; }
    bool CollectShader(Module*) override { return {}; }
    bool CollectDeclarationMethod(Module*, const std::string&) override { return {}; }
    bool HasMethod(const std::string& method) const override { return methods.count(method) != 0; }
    std::string GetMethodMangled(const std::string& method) const override {
        return methods.at(method);
    }
    bool IsComplete(Result*) const override { return {}; }
    bool HasConstructor() const override { return {}; }
    std::string GetConstructor() const override { return {}; }
    bool Apply(IKLPrimitive*, IKLProgram*) override { return {}; }
    bool AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>&) override { return {}; }
    bool RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>&) override { return {}; }
    bool AddListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>&) override { return {}; }
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>&) override {
        return {};
    }
    IReferenceParameter* GetParameter(const std::string&) override { return {}; }
    bool VisitParameters(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>&,
                         Result*) const override {
        return {};
    }
    int GetCountParameters() const override { return {}; }
    IReferenceMember* GetMember(const std::string&) override { return {}; }
    bool VisitMembers(FastDelegate2<const std::string&, IReferenceMember*, bool>&) const override {
        return {};
    }
    int GetCountMembers() const override { return {}; }
    IReferenceParameter* GetCoord(const std::string&) override { return {}; }
    bool VisitCoords(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>&,
                     Result*) const override {
        return {};
    }
    int GetCountCoords() const override { return {}; }
    IShader* GetShader() override { return {}; }
    ReferencePrototypeShader* GetReferencePrototype() override { return {}; }
    IGraph* GetGraph() override { return {}; }

    std::map<std::string, std::string> methods; ///< mangled names by name
};

} // namespace Tolen::Effects::Tests
