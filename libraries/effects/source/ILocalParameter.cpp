#include "TolenEffects/ILocalParameter.h"

namespace Tolen::Effects {

bool ILocalParameter::AddListenerDelete(FastDelegate1<ILocalParameter*, bool>&) {
    return false;
}

bool ILocalParameter::RemoveListenerDelete(FastDelegate1<ILocalParameter*, bool>&) {
    return false;
}

IReferenceParameter* ILocalParameter::GetReferenceParameter() {
    return nullptr;
}

IKLPrimitive* ILocalParameter::GetKLPrimitive() {
    return nullptr;
}

bool ILocalParameter::Set(const std::string&) {
    return false;
}

bool ILocalParameter::Set(IShader**, int) {
    return false;
}

bool ILocalParameter::Set(IShader*, int) {
    return false;
}

bool ILocalParameter::Set(IShader*) {
    return false;
}

bool ILocalParameter::Get(std::string&) {
    return false;
}

bool ILocalParameter::Get(IShader*&, int) {
    return false;
}

bool ILocalParameter::Get(IShader*&) {
    return false;
}

#define TOLEN_REFUSE(specifier, T, name, bytes)                                                    \
    bool ILocalParameter::Set(const T*, int) {                                                     \
        return false;                                                                              \
    }                                                                                              \
    bool ILocalParameter::Set(LocalArgumentOf<T>, int) {                                           \
        return false;                                                                              \
    }                                                                                              \
    bool ILocalParameter::Set(LocalArgumentOf<T>) {                                                \
        return false;                                                                              \
    }                                                                                              \
    bool ILocalParameter::Get(T&, int) {                                                           \
        return false;                                                                              \
    }                                                                                              \
    bool ILocalParameter::Get(T&) {                                                                \
        return false;                                                                              \
    }
TOLEN_ELEMENT_TYPES(TOLEN_REFUSE)
#undef TOLEN_REFUSE

bool ILocalParameter::Apply(IKLPrimitive*, IKLProgram*, int) {
    return false;
}

} // namespace Tolen::Effects
