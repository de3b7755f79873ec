#pragma once

#include "TolenEffects/IReferenceParameter.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <string>

namespace Tolen::Effects {

class ParameterCoord;

/// A coordinate input in a graph: it holds the vertex attribute that the coordinate names for as
/// long as it names it. A new name changes the code, so its value listeners stand for a change of
/// structure.
class ReferenceParameterCoord : public IReferenceParameter, public CreationOrder {
public:
    ~ReferenceParameterCoord() override;

    /// @param parameter a ParameterCoord, borrowed
    /// @param graph borrowed
    /// @return false when the graph refuses the attribute
    bool Init(IParameter* parameter, IGraph* graph);
    void Shutdown();

    bool AddListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    /// Both answer true.
    bool AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    /// Whether the coordinate names an attribute.
    bool IsComplete(Result* result) const override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    ILocalParameter* AcquireLocal(IKLPrimitive* primitive) override;
    void ReleaseLocal(ILocalParameter* parameter) override;
    IParameter* GetParameter() override;
    IGraph* GetGraph() override;

private:
    bool _ReleaseValue();
    bool _AcquireValue(const std::string& value);
    bool _OnChangeParameter(IParameter* parameter);

    ParameterCoord* _pParameter = nullptr; ///< borrowed
    IGraph* _pGraph = nullptr;             ///< borrowed
    std::string _sValue;                   ///< the attribute now in use
    ListenerSet<FastDelegate1<IReferenceParameter*, bool>> _listenersChangeValue;
    LifeToken _life;
};

} // namespace Tolen::Effects
