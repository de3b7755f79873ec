#pragma once

#include "IReferencePrototypeParameter.h"
#include "ReferencePrototypePart.h"

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class PrototypeParameterValueSingle;

/// A non-static single value input of a class in a graph. It takes part in every apply of the
/// graph; the values themselves are written by the inputs of the instances.
class ReferencePrototypeParameterValueSingle
    : public ReferencePrototypePart<IReferencePrototypeParameter, PrototypeParameterValueSingle> {
public:
    ~ReferencePrototypeParameterValueSingle() override;

    /// @return false, with a line on the console, for a type that a single input can't have
    bool Init(PrototypeParameterValueSingle* owner, ReferencePrototypeShader* parent);
    void Shutdown() override;

    /// Writes nothing, as the class's own name of the input is in no text. @return true
    bool Apply(IKLPrimitive* primitive, IKLProgram* program);
};

} // namespace Tolen::Effects
