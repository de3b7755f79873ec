#pragma once

#include "Value.h"

#include "TolenEffects/IParameter.h"

#include "TolenCore/ListenerSet.h"

#include <memory>
#include <string>

namespace Tolen::Effects {

class Expression;
class IMgrEffects;
class Variable;
template <class T>
class TIParentSyntax;

/// A coordinate input: its value is the name of a vertex attribute, which takes the place of the
/// declared name in generated code. Another name is therefore a change of structure.
class ParameterCoord : public IParameter {
public:
    ~ParameterCoord() override;

    /// @param manager     borrowed
    /// @param name        as declared
    /// @param transformed how the vertex stage moves the attribute, not 0 for a normal or tangent
    /// @return false for a transformed coordinate that is no vec3
    bool Init(IMgrEffects* manager, TypeSpecifier specifier, const std::string& name,
              int transformed);

    /// A coordinate has no value to listen to; both answer true.
    bool AddListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) override;
    bool AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;

    IReferenceParameter* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceParameter* reference) override;
    bool CollectConstructor(CompoundStatement* body) override;
    bool CollectShader(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    bool IsComplete(Result* result) const override;
    ParameterClass GetClass() override;
    TypeSpecifier GetTypeSpecifier() override;
    std::string GetType() override;
    std::string GetName() override;
    int GetLength() const override;
    bool GetAsString(std::string& out, int index) const override;
    bool GetAsString(std::string& out) const override;

    using IParameter::Get;
    using IParameter::Set;
    /// The present name answers true and tells nobody.
    bool Set(const std::string& value) override;
    bool Get(std::string& value) override;

    /// Not 0 for a coordinate that is declared as transformed.
    int GetTransformed() const { return _transformed; }

private:
    bool _RenameReference(Variable* variable, TIParentSyntax<Expression>* slot);

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed
    TypeSpecifier _specifier = kType_Void;
    std::string _name;
    int _transformed = 0;
    std::unique_ptr<Value<std::string>> _pValue;
    ListenerSet<FastDelegate1<IParameter*, bool>> _listenersChangeStructure;
};

} // namespace Tolen::Effects
