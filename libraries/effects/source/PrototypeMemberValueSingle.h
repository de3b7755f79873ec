#pragma once

#include "IPrototypeMember.h"
#include "PrototypeValue.h"
#include "ReferencePrototypeMemberValueSingle.h"

namespace Tolen::Effects {

/// A non-static variable of a built-in type that is neither input nor array.
class PrototypeMemberValueSingle
    : public PrototypeValue<PrototypeMemberValueSingle, IPrototypeMember, IPrototypeShader,
                            ReferencePrototypeMemberValueSingle> {
public:
    static constexpr const char* kClassName = "PrototypeMemberValueSingle";

    PrototypeMemberValueSingle() : PrototypeValue("uninitialized") {}

    /// @param owner, declaration borrowed @return true
    bool Init(IPrototypeShader* owner, const VariableDeclaration* declaration);

    IMember* CreateMember(IShader* shader, Result* result) override;
};

} // namespace Tolen::Effects
