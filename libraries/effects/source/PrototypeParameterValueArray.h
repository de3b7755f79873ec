#pragma once

#include "IPrototypeParameter.h"
#include "PrototypeValue.h"
#include "ReferencePrototypeParameterValueArray.h"

namespace Tolen::Effects {

/// A non-static input that is an array of a built-in type.
class PrototypeParameterValueArray
    : public PrototypeValue<PrototypeParameterValueArray, IPrototypeParameter, IMgrEffects,
                            ReferencePrototypeParameterValueArray> {
public:
    static constexpr const char* kClassName = "PrototypeParameterValueArray";

    PrototypeParameterValueArray() : PrototypeValue("") {}

    /// @param owner, declaration borrowed @return true
    bool Init(IMgrEffects* owner, const VariableDeclaration* declaration);

    IParameter* CreateParameter(IShader* shader, Result* result) override;
};

} // namespace Tolen::Effects
