#include "PrototypeMemberValueArray.h"

#include "MemberValueArraySeparate.h"

#include <memory>

namespace Tolen::Effects {

bool PrototypeMemberValueArray::Init(IMgrEffects* owner, const VariableDeclaration* declaration) {
    _Init(owner, declaration, "PrototypeMemberValueArray");
    return true;
}

IMember* PrototypeMemberValueArray::CreateMember(IShader*, Result*) {
    auto member = std::make_unique<MemberValueArraySeparate>();
    return member->Init(_GetManager(), _pDecl, _nameMangled, nullptr) ? member.release() : nullptr;
}

} // namespace Tolen::Effects
