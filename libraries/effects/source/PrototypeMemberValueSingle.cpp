#include "PrototypeMemberValueSingle.h"

#include "MemberValueSingleSeparate.h"

#include <memory>

namespace Tolen::Effects {

bool PrototypeMemberValueSingle::Init(IPrototypeShader* owner,
                                      const VariableDeclaration* declaration) {
    _Init(owner, declaration, "PrototypeMemberValueSingle");
    return true;
}

IMember* PrototypeMemberValueSingle::CreateMember(IShader*, Result*) {
    auto member = std::make_unique<MemberValueSingleSeparate>();
    return member->Init(_GetManager(), _pDecl, _nameMangled, nullptr) ? member.release() : nullptr;
}

} // namespace Tolen::Effects
