#pragma once

#include "IPrototypeParameter.h"
#include "PrototypeValue.h"
#include "ReferencePrototypeParameterValueSingle.h"

namespace Tolen::Effects {

/// A non-static input of a built-in type that is no array.
class PrototypeParameterValueSingle
    : public PrototypeValue<PrototypeParameterValueSingle, IPrototypeParameter, IPrototypeShader,
                            ReferencePrototypeParameterValueSingle> {
public:
    static constexpr const char* kClassName = "PrototypeParameterValueSingle";

    PrototypeParameterValueSingle() : PrototypeValue("") {}

    /// @param owner, declaration borrowed @return true
    bool Init(IPrototypeShader* owner, const VariableDeclaration* declaration);

    IParameter* CreateParameter(IShader* shader, Result* result) override;
};

} // namespace Tolen::Effects
