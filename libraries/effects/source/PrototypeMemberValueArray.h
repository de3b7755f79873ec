#pragma once

#include "IPrototypeMember.h"
#include "PrototypeValue.h"
#include "ReferencePrototypeMemberValueArray.h"

namespace Tolen::Effects {

/// A non-static array of a built-in type that is no input.
class PrototypeMemberValueArray
    : public PrototypeValue<PrototypeMemberValueArray, IPrototypeMember, IMgrEffects,
                            ReferencePrototypeMemberValueArray> {
public:
    static constexpr const char* kClassName = "PrototypeMemberValueArray";

    PrototypeMemberValueArray() : PrototypeValue("Constructor") {}

    /// @param owner, declaration borrowed @return true
    bool Init(IMgrEffects* owner, const VariableDeclaration* declaration);

    IMember* CreateMember(IShader* shader, Result* result) override;
};

} // namespace Tolen::Effects
