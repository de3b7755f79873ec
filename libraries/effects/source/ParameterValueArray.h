#pragma once

#include "TolenEffects/IParameter.h"

#include "TolenCore/ListenerSet.h"

#include <string>

namespace Tolen::Effects {

class IMgrEffects;

/// An input that is an array of values of a built-in type.
class ParameterValueArray : public IParameter {
public:
    bool AddListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) override;
    bool AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;

    /// Listeners that hear of a changed length, which costs a write at the next apply.
    virtual bool AddListenerChangeLength(FastDelegate1<IParameter*, bool>& listener);
    virtual bool RemoveListenerChangeLength(FastDelegate1<IParameter*, bool>& listener);
    /// The name of the values in generated code.
    virtual std::string GetNameMangled() = 0;

protected:
    using Listeners = ListenerSet<FastDelegate1<IParameter*, bool>>;

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed
    Listeners _listenersChangeValue;
    Listeners _listenersChangeLength;
    Listeners _listenersChangeStructure;
};

} // namespace Tolen::Effects
