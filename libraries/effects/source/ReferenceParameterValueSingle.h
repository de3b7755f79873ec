#pragma once

#include "ReferenceParameterValue.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

#include <map>
#include <memory>

namespace Tolen::Effects {

class LocalParameterValueSingle;

/// A single value input in a graph, with the values that hold for single primitives.
class ReferenceParameterValueSingle : public ReferenceParameterValue, public CreationOrder {
public:
    ReferenceParameterValueSingle();
    ~ReferenceParameterValueSingle() override;

    bool AddListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    /// A single value has no structure of its own; both answer true.
    bool AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;

    ILocalParameter* AcquireLocal(IKLPrimitive* primitive) override;
    void ReleaseLocal(ILocalParameter* parameter) override;

protected:
    bool _InitLocalParameters();
    void _ShutdownLocalParameters();
    /// The value of @p primitive alone; null when it has none.
    LocalParameterValueSingle* _FindLocal(IKLPrimitive* primitive) const;
    bool _FireChangeValue();

private:
    std::map<IKLPrimitive*, std::unique_ptr<LocalParameterValueSingle>> _mLocalParameters;
    ListenerSet<FastDelegate1<IReferenceParameter*, bool>> _listenersChangeValue;
};

} // namespace Tolen::Effects
