#pragma once

#include "ParameterValue.h"

#include <string>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

/// An input that is one value of a built-in type.
class ParameterValueSingle : public ParameterValue {
public:
    /// The name of the uniform in generated code.
    virtual std::string GetNameMangled() = 0;
    /// Writes the value to @p primitive at @p location.
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, int location) = 0;
};

} // namespace Tolen::Effects
