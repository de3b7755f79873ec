#include "AccessBuffer.h"

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

namespace {

/// The one member of the block.
constexpr const char* kMember = "a";

} // namespace

bool AccessBuffer::Init(TypeSpecifier specifier, const std::string& name,
                        const std::string& nameMangled, int length) {
    _InitNames(specifier, name, nameMangled);
    _length = length;
    return true;
}

bool AccessBuffer::CollectDeclaration(Module* module) {
    VariableDeclaration* const member = module->CreateVariableDeclaration(
        module->CreateType(_GetTypeSpecifier()), module->CreateString(kMember), nullptr);
    SetArrayLength(member, 1);
    StructDefinition* const block = module->CreateStructDefinition();
    block->SetName(module->CreateString(_GetNameMangled().c_str()));
    block->SetUniform(true);
    block->AddMemberVariable(member);
    module->AddStructDefinition(block);
    return true;
}

bool AccessBuffer::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<Subscript, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &AccessBuffer::_ReplaceReference));
    return visit(kClass_Subscript, &visitor);
}

bool AccessBuffer::SetLength(int length) {
    _length = length;
    return true;
}

bool AccessBuffer::_ReplaceReference(Subscript* subscript, TIParentSyntax<Expression>*) {
    if (_IsReference(subscript->GetArray())) {
        // In place, so that indices that are elements themselves are neither copied nor walked
        // anew.
        Module* const module = subscript->GetModule();
        subscript->SetArray(module->CreateFieldSelection(MakeVariable(module, _GetNameMangled()),
                                                         module->CreateString(kMember)));
    }
    return true;
}

} // namespace Tolen::Effects
