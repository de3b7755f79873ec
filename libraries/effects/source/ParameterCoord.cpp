#include "ParameterCoord.h"

#include "ReferenceParameterCoord.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

ParameterCoord::~ParameterCoord() = default;

bool ParameterCoord::Init(IMgrEffects* manager, TypeSpecifier specifier, const std::string& name,
                          int transformed) {
    if (transformed != 0 && specifier != kType_Vec3) {
        ConsolePrint("ParameterCoord::Init Transformed Coords must be declared vec3\n");
        return false;
    }
    _pMgrEffects = manager;
    _specifier = specifier;
    _name = name;
    _transformed = transformed;
    _pValue = std::make_unique<Value<std::string>>(1, false, std::string());
    return true;
}

bool ParameterCoord::AddListenerChangeValue(FastDelegate1<IParameter*, bool>&) {
    return true;
}

bool ParameterCoord::RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>&) {
    return true;
}

bool ParameterCoord::AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

bool ParameterCoord::RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

IReferenceParameter* ParameterCoord::CreateReference(IGraph* graph) {
    auto reference = std::make_unique<ReferenceParameterCoord>();
    return reference->Init(this, graph) ? reference.release() : nullptr;
}

bool ParameterCoord::DestroyReference(IReferenceParameter* reference) {
    delete reference;
    return true;
}

bool ParameterCoord::CollectConstructor(CompoundStatement*) {
    return true;
}

bool ParameterCoord::CollectShader(Module*) {
    return true;
}

bool ParameterCoord::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<Variable, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &ParameterCoord::_RenameReference));
    return visit(kClass_Variable, &visitor);
}

bool ParameterCoord::IsComplete(Result*) const {
    return true;
}

IParameter::ParameterClass ParameterCoord::GetClass() {
    return kClass_Coord;
}

TypeSpecifier ParameterCoord::GetTypeSpecifier() {
    return _specifier;
}

std::string ParameterCoord::GetType() {
    return TypeSpecifierToString(_specifier);
}

std::string ParameterCoord::GetName() {
    return _name;
}

int ParameterCoord::GetLength() const {
    return 1;
}

bool ParameterCoord::GetAsString(std::string& out, int index) const {
    return _pValue != nullptr && _pValue->GetValueAsString(out, index);
}

bool ParameterCoord::GetAsString(std::string& out) const {
    return GetAsString(out, 0);
}

bool ParameterCoord::Set(const std::string& value) {
    if (_pValue == nullptr) {
        return false;
    }
    if (_pValue->GetLength() > 0 && _pValue->Get(0) == value) {
        return true;
    }
    return _pValue->Set(value, 0) && _listenersChangeStructure.Fire(this);
}

bool ParameterCoord::Get(std::string& value) {
    return GetAsString(value);
}

bool ParameterCoord::_RenameReference(Variable* variable, TIParentSyntax<Expression>*) {
    // An attribute may bear the declared name of another coordinate, which must leave it alone.
    if (!variable->IsAttribute() && variable->GetIdentifier()->GetString() == _name) {
        Get(variable->GetIdentifier()->GetString());
        variable->SetAttribute(true);
    }
    return true;
}

} // namespace Tolen::Effects
