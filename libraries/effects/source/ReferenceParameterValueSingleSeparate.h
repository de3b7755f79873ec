#pragma once

#include "ReferenceParameterValueSingle.h"

#include "TolenCore/LifeToken.h"

namespace Tolen::Effects {

class IMgrEffects;
class ParameterValueSingle;

/// A single value input in a graph, written to a uniform of its own. A new value is handed to the
/// graph as a write for each primitive; it never makes the graph compile.
class ReferenceParameterValueSingleSeparate : public ReferenceParameterValueSingle {
public:
    ~ReferenceParameterValueSingleSeparate() override;

    /// @param graph, parameter borrowed
    bool Init(IGraph* graph, ParameterValueSingle* parameter);
    bool Shutdown();

    bool IsComplete(Result* result) const override;
    /// Fails when the program has no location for the uniform.
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    IParameter* GetParameter() override;
    IGraph* GetGraph() override;

    virtual IMgrEffects* GetMgrEffects();

private:
    bool _Apply(ParameterValueSingle* parameter, IKLPrimitive* primitive, IKLProgram* program,
                int location);
    bool _OnChangeValue(IParameter* parameter);

    ParameterValueSingle* _pParameter = nullptr; ///< borrowed
    IGraph* _pGraph = nullptr;                   ///< borrowed
    LifeToken _life;
};

} // namespace Tolen::Effects
