#include "TolenEffects/IParameter.h"

namespace Tolen::Effects {

bool IParameter::AddListenerChangeValue(FastDelegate1<IParameter*, bool>&) {
    return false;
}

bool IParameter::RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>&) {
    return false;
}

bool IParameter::AddListenerChangeStructure(FastDelegate1<IParameter*, bool>&) {
    return false;
}

bool IParameter::RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>&) {
    return false;
}

IReferenceParameter* IParameter::CreateReference(IGraph*) {
    return nullptr;
}

bool IParameter::DestroyReference(IReferenceParameter*) {
    return false;
}

bool IParameter::CollectConstructor(CompoundStatement*) {
    return false;
}

bool IParameter::CollectShader(Module*) {
    return false;
}

bool IParameter::VisitTransformations(FastDelegate2<Class, Visitor*, bool>&) {
    return false;
}

bool IParameter::IsComplete(Result*) const {
    return false;
}

IParameter::ParameterClass IParameter::GetClass() {
    return kClass_Undefined;
}

TypeSpecifier IParameter::GetTypeSpecifier() {
    return kType_Void;
}

std::string IParameter::GetType() {
    return {};
}

std::string IParameter::GetName() {
    return {};
}

bool IParameter::IsArray() const {
    return false;
}

int IParameter::GetLength() const {
    return 0;
}

bool IParameter::SetLength(int) {
    return false;
}

bool IParameter::IsResizable() const {
    return false;
}

bool IParameter::IsDefault(int) const {
    return false;
}

bool IParameter::IsDefault() const {
    return false;
}

bool IParameter::GetAsString(std::string&, int) const {
    return false;
}

bool IParameter::GetAsString(std::string&) const {
    return false;
}

bool IParameter::Set(const std::string&) {
    return false;
}

bool IParameter::Set(IShader**, int) {
    return false;
}

bool IParameter::Set(IShader*, int) {
    return false;
}

bool IParameter::Set(IShader*) {
    return false;
}

bool IParameter::Get(std::string&) {
    return false;
}

bool IParameter::Get(IShader*&, int) {
    return false;
}

bool IParameter::Get(IShader*&) {
    return false;
}

#define TOLEN_REFUSE(specifier, T, name, bytes)                                                    \
    bool IParameter::Set(const T*, int) {                                                          \
        return false;                                                                              \
    }                                                                                              \
    bool IParameter::Set(ArgumentOf<T>, int) {                                                     \
        return false;                                                                              \
    }                                                                                              \
    bool IParameter::Set(ArgumentOf<T>) {                                                          \
        return false;                                                                              \
    }                                                                                              \
    bool IParameter::Get(T&, int) {                                                                \
        return false;                                                                              \
    }                                                                                              \
    bool IParameter::Get(T&) {                                                                     \
        return false;                                                                              \
    }
TOLEN_ELEMENT_TYPES(TOLEN_REFUSE)
#undef TOLEN_REFUSE

} // namespace Tolen::Effects
