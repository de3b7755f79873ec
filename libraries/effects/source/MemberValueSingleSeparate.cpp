#include "MemberValueSingleSeparate.h"

#include "ReferenceMemberValueSingleSeparate.h"
#include "SyntaxPieces.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Module.h"

namespace Tolen::Effects {

MemberValueSingleSeparate::~MemberValueSingleSeparate() {
    Shutdown();
}

bool MemberValueSingleSeparate::Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                                     const std::string& prefix, Result*) {
    _pMgrEffects = manager;
    _pDecl = declaration;
    _key = manager->CreateKey();
    _nameMangled = prefix + _key.ToString();
    _pAccess = std::make_unique<AccessVariableSeparate>();
    return _pAccess->Init(declaration->GetType()->GetTypeSpecifier(), GetName(), _nameMangled,
                          declaration->IsConst() ? kAccessQualifier_Const : kAccessQualifier_None,
                          nullptr);
}

void MemberValueSingleSeparate::Shutdown() {
    _pAccess.reset();
    if (_pMgrEffects != nullptr && _key != Key::Null()) {
        _pMgrEffects->DestroyKey(_key);
    }
    _key = Key::Null();
    _nameMangled = "Shutdown";
    _pMgrEffects = nullptr;
    _pDecl = nullptr;
}

bool MemberValueSingleSeparate::AddListenerChangeLength(FastDelegate1<IMember*, bool>&) {
    return true;
}

bool MemberValueSingleSeparate::RemoveListenerChangeLength(FastDelegate1<IMember*, bool>&) {
    return true;
}

IReferenceMember* MemberValueSingleSeparate::CreateReference(IGraph* graph) {
    auto reference = std::make_unique<ReferenceMemberValueSingleSeparate>();
    return reference->Init(graph, this) ? reference.release() : nullptr;
}

bool MemberValueSingleSeparate::DestroyReference(IReferenceMember* reference) {
    delete reference;
    return true;
}

bool MemberValueSingleSeparate::CollectConstructor(CompoundStatement* body) {
    const Expression* const initializer = _pDecl == nullptr ? nullptr : _pDecl->GetInitializer();
    if (initializer != nullptr) {
        Module* const module = body->GetModule();
        AddAssignment(body, MakeVariable(module, _nameMangled), initializer->Clone(module));
    }
    return true;
}

bool MemberValueSingleSeparate::CollectShader(Module* module) {
    return _pAccess != nullptr && _pAccess->CollectDeclaration(module);
}

bool MemberValueSingleSeparate::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    return _pAccess != nullptr && _pAccess->VisitTransformations(visit);
}

std::string MemberValueSingleSeparate::GetType() {
    return TypeSpecifierToString(_pDecl == nullptr ? kType_Void
                                                   : _pDecl->GetType()->GetTypeSpecifier());
}

std::string MemberValueSingleSeparate::GetName() {
    return _pDecl == nullptr ? std::string() : _pDecl->GetIdentifier()->GetString();
}

bool MemberValueSingleSeparate::SetLength(int) {
    return false;
}

} // namespace Tolen::Effects
