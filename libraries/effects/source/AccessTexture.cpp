#include "AccessTexture.h"

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

namespace {

/// The channels of a texel that make an element; null for all of them.
const char* GetChannels(TypeSpecifier specifier) {
    switch (specifier) {
    case kType_Float:
        return "x";
    case kType_Vec2:
        return "xy";
    case kType_Vec3:
        return "xyz";
    default:
        return nullptr;
    }
}

/// `type(argument)`.
FunctionCall* MakeConstructor(Module* module, TypeSpecifier specifier, Expression* argument) {
    FunctionCall* const call = module->CreateFunctionCall(module->CreateType(specifier));
    call->AddParameter(argument);
    return call;
}

/// `(float(cell) + 0.5) / float(width)`: the middle of a texel.
Expression* MakeCoordinate(Module* module, Expression* cell, const std::string& nameWidth) {
    Expression* const middle =
        module->CreateBinaryOperator(kOperator_Add, MakeConstructor(module, kType_Float, cell),
                                     module->CreateFloatConstant(module->CreateString("0.5")));
    Expression* const width = MakeConstructor(module, kType_Float, MakeVariable(module, nameWidth));
    return module->CreateBinaryOperator(kOperator_Divide, middle, width);
}

} // namespace

bool AccessTexture::Init(TypeSpecifier specifier, const std::string& name,
                         const std::string& nameMangled, int length) {
    _InitNames(specifier, name, nameMangled);
    _length = length;
    return true;
}

bool AccessTexture::CollectDeclaration(Module* module) {
    AddGlobalVariable(module, kType_Int, _GetNameWidth(), nullptr)
        ->SetStorageQualifier(kStorageQualifier_Uniform);
    AddGlobalVariable(module, kType_Sampler2D, _GetNameMangled(), nullptr)
        ->SetStorageQualifier(kStorageQualifier_Uniform);
    return true;
}

bool AccessTexture::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<Subscript, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &AccessTexture::_ReplaceReference));
    return visit(kClass_Subscript, &visitor);
}

bool AccessTexture::SetLength(int length) {
    _length = length;
    return true;
}

std::string AccessTexture::_GetNameWidth() const {
    return _GetNameMangled() + "Width";
}

bool AccessTexture::_ReplaceReference(Subscript* subscript, TIParentSyntax<Expression>* slot) {
    if (!_IsReference(subscript->GetArray())) {
        return true;
    }
    Module* const module = subscript->GetModule();
    const auto makeCell = [&](Operator op) {
        return module->CreateBinaryOperator(op, subscript->GetIndex()->Clone(module),
                                            MakeVariable(module, _GetNameWidth()));
    };
    FunctionCall* const coordinates = MakeConstructor(
        module, kType_Vec2, MakeCoordinate(module, makeCell(kOperator_Modulo), _GetNameWidth()));
    coordinates->AddParameter(MakeCoordinate(module, makeCell(kOperator_Divide), _GetNameWidth()));
    FunctionCall* const read = module->CreateFunctionCall(module->CreateString("texture2D"));
    read->AddParameter(MakeVariable(module, _GetNameMangled()));
    read->AddParameter(coordinates);

    Expression* element = read;
    if (const char* channels = GetChannels(_GetTypeSpecifier())) {
        element = module->CreateFieldSelection(read, module->CreateString(channels));
    }
    ReplaceVisited(slot, element);
    return true;
}

} // namespace Tolen::Effects
