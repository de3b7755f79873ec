#pragma once

#include "ReferenceParameterInterface.h"

namespace Tolen::Effects {

/// An input that takes an array of shaders, in a graph. A shader in several cells counts as one
/// use for each of them.
class ReferenceParameterInterfaceArray : public ReferenceParameterInterface {
public:
    /// Writes the number of cells, by which loops over the array learn its length.
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;

private:
    void _ReportUnknownReference() const override;
    bool _CheckEmpty(const Shader* shader, const IReferenceShader* reference) const override;
};

} // namespace Tolen::Effects
