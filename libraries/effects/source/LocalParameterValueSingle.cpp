#include "LocalParameterValueSingle.h"

#include "ParameterStorage.h"
#include "ReferenceParameterValueSingle.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

namespace Tolen::Effects {

namespace {

IOpenKLContext* GetContext(IReferenceParameter* reference) {
    IGraph* const graph = reference->GetGraph();
    IMgrEffects* const manager = graph == nullptr ? nullptr : graph->GetMgrEffects();
    return manager == nullptr ? nullptr : manager->GetOpenKLContext();
}

template <class T>
bool CopyElements(IStorage* pDest, IParameter* pSource) {
    if (!TOLEN_CHECK(pDest->GetLength() == pSource->GetLength(),
                     "Source/LocalParameterValueSingle")) {
        return false;
    }
    for (int i = 0; i < pSource->GetLength(); ++i) {
        T value = T();
        if (!pSource->Get(value, i) || !pDest->Set(value, i)) {
            return false;
        }
    }
    return true;
}

} // namespace

LocalParameterValueSingle::~LocalParameterValueSingle() {
    Shutdown();
}

bool LocalParameterValueSingle::Init(IKLPrimitive* primitive,
                                     ReferenceParameterValueSingle* reference) {
    IParameter* const source = reference->GetParameter();
    const TypeSpecifier specifier = source->GetTypeSpecifier();
    _pStorage = CreateParameterStorage(GetContext(reference), specifier, source->GetLength(),
                                       source->IsResizable());
    if (_pStorage == nullptr) {
        ConsolePrint("LocalParameterValueSingle::Init TypeSpecifier\n");
        return false;
    }
    _pPrimitive = primitive;
    _pReference = reference;
    return VisitElementType(specifier, false, [&]<class T>(std::type_identity<T>) {
        return CopyElements<T>(_pStorage.get(), source);
    });
}

void LocalParameterValueSingle::Shutdown() {
    _listenersDelete.FireAll(this);
    _listenersDelete.Clear();
    _pStorage.reset();
    _pReference = nullptr;
    _pPrimitive = nullptr;
}

bool LocalParameterValueSingle::AddListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool LocalParameterValueSingle::RemoveListenerDelete(
    FastDelegate1<ILocalParameter*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

IReferenceParameter* LocalParameterValueSingle::GetReferenceParameter() {
    return _pReference;
}

IKLPrimitive* LocalParameterValueSingle::GetKLPrimitive() {
    return _pPrimitive;
}

#define TOLEN_FORWARD(specifier, T, name, bytes)                                                   \
    bool LocalParameterValueSingle::Set(const T* values, int count) {                              \
        return _pStorage != nullptr && _pStorage->Set(values, count);                              \
    }                                                                                              \
    bool LocalParameterValueSingle::Set(LocalArgumentOf<T> value, int index) {                     \
        return _pStorage != nullptr && _pStorage->Set(static_cast<const T&>(value), index);        \
    }                                                                                              \
    bool LocalParameterValueSingle::Set(LocalArgumentOf<T> value) {                                \
        return Set(value, 0);                                                                      \
    }                                                                                              \
    bool LocalParameterValueSingle::Get(T& value, int index) {                                     \
        return _pStorage != nullptr && _pStorage->Get(value, index);                               \
    }                                                                                              \
    bool LocalParameterValueSingle::Get(T& value) {                                                \
        return Get(value, 0);                                                                      \
    }
TOLEN_ELEMENT_TYPES(TOLEN_FORWARD)
#undef TOLEN_FORWARD

bool LocalParameterValueSingle::Apply(IKLPrimitive* primitive, IKLProgram* program, int location) {
    return _pStorage != nullptr &&
           _pStorage->Apply(primitive, program, _pReference->GetParameter()->GetName(), location);
}

} // namespace Tolen::Effects
