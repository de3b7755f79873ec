#include "TolenEffects/IShader.h"

namespace Tolen::Effects {

bool IShader::AddListenerDelete(FastDelegate1<IShader*, bool>&) {
    return false;
}

bool IShader::RemoveListenerDelete(FastDelegate1<IShader*, bool>&) {
    return false;
}

bool IShader::CollectShader(Module*) {
    return false;
}

bool IShader::CollectDeclarationMethod(Module*, const std::string&) {
    return false;
}

std::string IShader::GetInterfaceName() {
    return {};
}

std::string IShader::GetClassName() {
    return {};
}

std::string IShader::GetKeyName() {
    return {};
}

bool IShader::HasMethod(const std::string&) {
    return false;
}

std::string IShader::GetMethodNameMangled(const std::string&) {
    return {};
}

bool IShader::HasConstructor() {
    return false;
}

std::string IShader::GetConstructorName() {
    return {};
}

bool IShader::AddListenerChangeStructure(FastDelegate1<IShader*, bool>&) {
    return false;
}

bool IShader::RemoveListenerChangeStructure(FastDelegate1<IShader*, bool>&) {
    return false;
}

IPrototypeShader* IShader::GetPrototype() {
    return nullptr;
}

IMgrEffects* IShader::GetMgrEffects() {
    return nullptr;
}

#define TOLEN_DEFINE_GRAPH_KIND(N)                                                                 \
    bool IShader::AddListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>&) {         \
        return false;                                                                              \
    }                                                                                              \
    bool IShader::RemoveListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>&) {      \
        return false;                                                                              \
    }                                                                                              \
    IGraph* IShader::CreateGraphKind##N() {                                                        \
        return nullptr;                                                                            \
    }                                                                                              \
    IGraph* IShader::GetGraphKind##N() {                                                           \
        return nullptr;                                                                            \
    }                                                                                              \
    bool IShader::DestroyGraphKind##N() {                                                          \
        return false;                                                                              \
    }
TOLEN_DEFINE_GRAPH_KIND(0)
TOLEN_DEFINE_GRAPH_KIND(2)
TOLEN_DEFINE_GRAPH_KIND(3)
#undef TOLEN_DEFINE_GRAPH_KIND

IReferenceShader* IShader::CreateReference(IGraph*) {
    return nullptr;
}

IReferenceShader* IShader::GetReference(IGraph*) {
    return nullptr;
}

bool IShader::ReleaseReference(IReferenceShader*) {
    return false;
}

IParameter* IShader::GetParameter(const std::string&) {
    return nullptr;
}

bool IShader::VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>&) {
    return false;
}

IMember* IShader::GetMember(const std::string&) {
    return nullptr;
}

bool IShader::VisitMembers(FastDelegate2<const std::string&, IMember*, bool>&) {
    return false;
}

IParameter* IShader::GetCoord(const std::string&) {
    return nullptr;
}

bool IShader::VisitCoords(FastDelegate2<const std::string&, IParameter*, bool>&) {
    return false;
}

bool IShader::SetCoord(Result*, const std::string&, const std::string&) {
    return false;
}

bool IShader::VisitMethods(FastDelegate1<const FunctionDefinition*, bool>&) {
    return false;
}

bool IShader::IsComplete(Result*) {
    return false;
}

bool IShader::SetName(const std::string&) {
    return false;
}

const std::string& IShader::GetName() {
    static const std::string empty;
    return empty;
}

#define TOLEN_DEFINE_SET_PARAMETER(specifier, T, typeName, bytes)                                  \
    bool IShader::SetParameter(Result*, const std::string&, ArgumentOf<T>) {                       \
        return false;                                                                              \
    }                                                                                              \
    bool IShader::SetParameter(Result*, const std::string&, ArgumentOf<T>, int) {                  \
        return false;                                                                              \
    }                                                                                              \
    bool IShader::SetParameter(Result*, const std::string&, const T*, int) {                       \
        return false;                                                                              \
    }
TOLEN_ELEMENT_TYPES(TOLEN_DEFINE_SET_PARAMETER)
#undef TOLEN_DEFINE_SET_PARAMETER

bool IShader::SetParameter(Result*, const std::string&, IShader*) {
    return false;
}

bool IShader::SetParameter(Result*, const std::string&, IShader*, int) {
    return false;
}

bool IShader::SetParameter(Result*, const std::string&, IShader**, int) {
    return false;
}

IShader::shaderType IShader::GetShaderType() {
    return kShaderType_Undefined;
}

} // namespace Tolen::Effects
