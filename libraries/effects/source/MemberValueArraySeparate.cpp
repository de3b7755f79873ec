#include "MemberValueArraySeparate.h"

#include "ParameterValueExpression.h"
#include "ReferenceMemberValueArraySeparate.h"
#include "SyntaxPieces.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Module.h"

#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

namespace Tolen::Effects {

MemberValueArraySeparate::~MemberValueArraySeparate() {
    Shutdown();
}

bool MemberValueArraySeparate::Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                                    const std::string& prefix, Result*) {
    _pMgrEffects = manager;
    _pDecl = declaration;
    _key = manager->CreateKey();
    _nameMangled = prefix + _key.ToString();
    _accessLength.Init(GetName(), _nameMangled + "Length");
    return _InitLength() && _InitAccess();
}

void MemberValueArraySeparate::Shutdown() {
    _pAccess.reset();
    if (_pMgrEffects != nullptr && _key != Key::Null()) {
        _pMgrEffects->DestroyKey(_key);
    }
    _key = Key::Null();
    _nameMangled = "Shutdown";
    _accessLength.Init(std::string(), "Shutdown");
    _pMgrEffects = nullptr;
    _pDecl = nullptr;
}

bool MemberValueArraySeparate::AddListenerChangeLength(FastDelegate1<IMember*, bool>& listener) {
    return _listenersChangeLength.Add(listener);
}

bool MemberValueArraySeparate::RemoveListenerChangeLength(FastDelegate1<IMember*, bool>& listener) {
    return _listenersChangeLength.Remove(listener);
}

IReferenceMember* MemberValueArraySeparate::CreateReference(IGraph* graph) {
    auto reference = std::make_unique<ReferenceMemberValueArraySeparate>();
    return reference->Init(graph, this) ? reference.release() : nullptr;
}

bool MemberValueArraySeparate::DestroyReference(IReferenceMember* reference) {
    delete reference;
    return true;
}

bool MemberValueArraySeparate::CollectConstructor(CompoundStatement* body) {
    const Expression* const initializer = _pDecl == nullptr ? nullptr : _pDecl->GetInitializer();
    if (initializer == nullptr) {
        return true;
    }
    if (initializer->GetClass() != kClass_FunctionCall) {
        return false;
    }
    const auto& elements = static_cast<const FunctionCall*>(initializer)->GetParameters();
    if (static_cast<int>(elements.size()) != _length) {
        return false;
    }
    Module* const module = body->GetModule();
    for (int i = 0; i < _length; ++i) {
        Expression* const element = module->CreateSubscript(MakeVariable(module, _nameMangled),
                                                            module->CreateIntConstant(i));
        AddAssignment(body, element, elements[static_cast<std::size_t>(i)]->Clone(module));
    }
    return true;
}

bool MemberValueArraySeparate::CollectShader(Module* module) {
    return _pAccess != nullptr && _pAccess->CollectDeclaration(module) &&
           _accessLength.CollectDeclaration(module);
}

bool MemberValueArraySeparate::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    return _pAccess != nullptr && _pAccess->VisitTransformations(visit) &&
           _accessLength.VisitTransformations(visit);
}

std::string MemberValueArraySeparate::GetType() {
    return TypeSpecifierToString(GetTypeSpecifier());
}

std::string MemberValueArraySeparate::GetName() {
    return _pDecl == nullptr ? std::string() : _pDecl->GetIdentifier()->GetString();
}

bool MemberValueArraySeparate::SetLength(int length) {
    if (length == _length) {
        return true;
    }
    if (!_isResizable) {
        ConsolePrint("MemberValueArraySeparate::SetLength Not Resizable\n");
        return false;
    }
    _length = length;
    _pAccess->SetLength(length);
    return _listenersChangeLength.Fire(this);
}

TypeSpecifier MemberValueArraySeparate::GetTypeSpecifier() {
    return _pDecl == nullptr ? kType_Void : _pDecl->GetType()->GetTypeSpecifier();
}

std::string MemberValueArraySeparate::GetNameMangled() {
    return _nameMangled;
}

bool MemberValueArraySeparate::ApplyLength(IKLPrimitive* primitive, IKLProgram*, int location) {
    if (primitive == nullptr ||
        !primitive->SetUniform(_accessLength.GetName(), location, _length)) {
        ConsolePrint("MemberValueArraySeparate::ApplyLength Set Uniform\n");
        return false;
    }
    return true;
}

bool MemberValueArraySeparate::_InitLength() {
    const Expression* const pExpressionLength = _pDecl->GetType()->GetLength();
    const Expression* const initializer = _pDecl->GetInitializer();
    _length = 0;
    _isResizable = pExpressionLength == nullptr && initializer == nullptr;
    if (pExpressionLength != nullptr) {
        if (!TOLEN_CHECK(kClass_IntConstant == pExpressionLength->GetClass(),
                         "Source/MemberValueArraySeparate")) {
            return false;
        }
        _length = static_cast<const IntConstant*>(pExpressionLength)->GetValue();
        return true;
    }
    _length = GetArrayConstructorLength(initializer);
    return initializer == nullptr || IsArrayConstructor(initializer);
}

bool MemberValueArraySeparate::_InitAccess() {
    _pAccess = std::make_unique<AccessSubscriptSeparate>();
    return _pAccess->Init(GetTypeSpecifier(), GetName(), _nameMangled, _length,
                          _pDecl->IsConst() ? kAccessQualifier_Const : kAccessQualifier_None,
                          nullptr);
}

} // namespace Tolen::Effects
