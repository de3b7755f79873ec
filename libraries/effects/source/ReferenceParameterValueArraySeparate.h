#pragma once

#include "TolenEffects/IReferenceParameter.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

class ParameterValueArraySeparate;

/// An array input in a graph: a uniform block, or a uniform for an array of negative length, and a
/// uniform with the length. Neither new values nor a new length of the same storage make the graph
/// compile. There are no values for single primitives.
class ReferenceParameterValueArraySeparate : public IReferenceParameter, public CreationOrder {
public:
    ~ReferenceParameterValueArraySeparate() override;

    /// @param graph, parameter borrowed
    bool Init(IGraph* graph, ParameterValueArraySeparate* parameter);
    bool Shutdown();

    bool AddListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    /// The structure of an array is told by its shader; both answer true.
    bool AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool IsComplete(Result* result) const override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    ILocalParameter* AcquireLocal(IKLPrimitive* primitive) override;
    void ReleaseLocal(ILocalParameter* parameter) override;
    IParameter* GetParameter() override;
    IGraph* GetGraph() override;

    virtual bool AddListenerChangeLength(FastDelegate1<IReferenceParameter*, bool>& listener);
    virtual bool RemoveListenerChangeLength(FastDelegate1<IReferenceParameter*, bool>& listener);

private:
    using Listeners = ListenerSet<FastDelegate1<IReferenceParameter*, bool>>;

    bool _OnChangeValue(IParameter* parameter);
    bool _OnChangeLength(IParameter* parameter);
    bool _FireAndUpdate(const Listeners& listeners);

    IGraph* _pGraph = nullptr;                          ///< borrowed
    ParameterValueArraySeparate* _pParameter = nullptr; ///< borrowed
    Listeners _listenersChangeValue;
    Listeners _listenersChangeLength;
    LifeToken _life;
};

} // namespace Tolen::Effects
