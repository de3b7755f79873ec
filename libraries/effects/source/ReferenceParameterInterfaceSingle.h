#pragma once

#include "ReferenceParameterInterface.h"

namespace Tolen::Effects {

/// An input that takes one shader, in a graph.
class ReferenceParameterInterfaceSingle : public ReferenceParameterInterface {
public:
    /// Writes nothing: the connected shader takes part through its class. @return true
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;

private:
    void _ReportUnknownReference() const override;
    bool _CheckEmpty(const Shader* shader, const IReferenceShader* reference) const override;
};

} // namespace Tolen::Effects
