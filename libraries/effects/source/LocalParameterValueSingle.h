#pragma once

#include "IStorage.h"

#include "TolenEffects/ILocalParameter.h"

#include "TolenCore/ListenerSet.h"

#include <memory>

namespace Tolen::Effects {

class ParameterValueSingle;
class ReferenceParameterValueSingle;

/// The value of a single value input for one primitive alone.
class LocalParameterValueSingle : public ILocalParameter {
public:
    ~LocalParameterValueSingle() override;

    /// Starts with the shared value.
    /// @param primitive, reference borrowed
    /// @return false for a type that can't be local
    bool Init(IKLPrimitive* primitive, ReferenceParameterValueSingle* reference);
    /// Tells the delete listeners and gives up the value. Safe to repeat.
    void Shutdown();

    bool AddListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener) override;
    IReferenceParameter* GetReferenceParameter() override;
    IKLPrimitive* GetKLPrimitive() override;

    using ILocalParameter::Get;
    using ILocalParameter::Set;
#define TOLEN_DECLARE_ACCESS(specifier, T, name, bytes)                                            \
    bool Set(const T* values, int count) override;                                                 \
    bool Set(LocalArgumentOf<T> value, int index) override;                                        \
    bool Set(LocalArgumentOf<T> value) override;                                                   \
    bool Get(T& value, int index) override;                                                        \
    bool Get(T& value) override;
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_ACCESS)
#undef TOLEN_DECLARE_ACCESS

    bool Apply(IKLPrimitive* primitive, IKLProgram* program, int location) override;

private:
    ReferenceParameterValueSingle* _pReference = nullptr; ///< borrowed
    IKLPrimitive* _pPrimitive = nullptr;                  ///< borrowed
    std::unique_ptr<IStorage> _pStorage;
    ListenerSet<FastDelegate1<ILocalParameter*, bool>> _listenersDelete;
};

} // namespace Tolen::Effects
