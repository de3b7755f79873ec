#include "ParameterInterfaceArray.h"

#include "GeneratedCode.h"
#include "LocationText.h"
#include "MgrEffectsImpl.h"
#include "MissingMethod.h"
#include "PredicateUnrollForStatementInterfaceArray.h"
#include "Shader.h"
#include "SyntaxPieces.h"
#include "UnrollForStatementInterfaceArray.h"
#include "VisitReplacing.h"

#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Format.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>

/// What an array input does to the code of its owner.

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/ParameterInterfaceArray";

/// The methods of the array's elements in the order of their declarations. What is declared twice
/// comes once.
std::vector<const FunctionPrototype*> _GetMethods(const InterfaceDefinition* interfaceDefinition,
                                                  const ClassDefinition* classDefinition) {
    std::vector<const FunctionPrototype*> methods;
    std::map<std::string, std::vector<const FunctionPrototype*>> overloads;
    const auto add = [&](const FunctionPrototype* method) {
        auto& others = overloads[method->GetName()->GetString()];
        const auto isSame = [method](const FunctionPrototype* other) {
            return other->GetCountParameters() == method->GetCountParameters() &&
                   other->Equivalent(method);
        };
        if (std::none_of(others.begin(), others.end(), isSame)) {
            others.push_back(method);
            methods.push_back(method);
        }
    };
    if (interfaceDefinition != nullptr) {
        for (const FunctionPrototype* method : interfaceDefinition->GetMemberFunctions()) {
            add(method);
        }
        return methods;
    }
    for (const FunctionDefinition* definition : classDefinition->GetMemberFunctions()) {
        const FunctionPrototype* const method = definition->GetFunctionPrototype();
        const bool isConstructor =
            method->GetName()->GetString() == classDefinition->GetName()->GetString();
        if (!isConstructor && method->GetQualifier() != kFunctionQualifier_Static) {
            add(method);
        }
    }
    return methods;
}

std::set<std::string> _GetMethodNames(const InterfaceDefinition* interfaceDefinition,
                                      const ClassDefinition* classDefinition) {
    std::set<std::string> names;
    for (const FunctionPrototype* method : _GetMethods(interfaceDefinition, classDefinition)) {
        names.insert(method->GetName()->GetString());
    }
    return names;
}

/// Sees to it that every parameter has a name of its own, so that it can be handed on, and none
/// that of the parameter that is put before them.
void _NameParameters(FunctionPrototype* prototype) {
    Module* const module = prototype->GetModule();
    std::set<std::string> names{kNameParameterThis};
    for (const FunctionParameter* parameter : prototype->GetParameters()) {
        names.insert(parameter->GetName() == nullptr ? "" : parameter->GetName()->GetString());
    }
    std::set<std::string> taken{kNameParameterThis};
    int number = 0;
    for (FunctionParameter* parameter : prototype->GetParameters()) {
        std::string name = parameter->GetName() == nullptr ? "" : parameter->GetName()->GetString();
        if (name.empty() || taken.count(name) != 0) {
            do {
                name = Format("argument%d", ++number);
            } while (names.count(name) != 0);
            parameter->SetName(module->CreateString(name.c_str()));
        }
        taken.insert(name);
    }
}

/// `Type(value)`. @param value taken
Expression* _MakeConstructor(Module* module, TypeSpecifier type, Expression* value) {
    FunctionCall* const call = module->CreateFunctionCall(module->CreateType(type));
    call->AddParameter(value);
    return call;
}

/// What a function of the type @p type returns when it is called for no object; null when such a
/// value can't be written.
Expression* _MakeDefault(Module* module, TypeSpecifier type) {
    switch (type) {
    case kType_Float:
        return module->CreateFloatConstant(0.0);
    case kType_Int:
        return module->CreateIntConstant(0);
    case kType_Bool:
        return module->CreateBoolConstant(false);
    case kType_Vec2:
    case kType_Vec3:
    case kType_Vec4:
    case kType_Mat2:
    case kType_Mat3:
    case kType_Mat4:
        return _MakeConstructor(module, type, module->CreateFloatConstant(0.0));
    case kType_BVec2:
    case kType_BVec3:
    case kType_BVec4:
        return _MakeConstructor(module, type, module->CreateBoolConstant(false));
    case kType_IVec2:
    case kType_IVec3:
    case kType_IVec4:
        return _MakeConstructor(module, type, module->CreateIntConstant(0));
    case kType_Void:
    case kType_Sampler2D:
    case kType_Sampler3D:
    case kType_SamplerCube:
    case kType_Primitive:
    case kType_UserDefined:
        break;
    }
    return nullptr;
}

/// `if (iThis == index) function(...);`, with a `return` before the call unless the type is void.
/// @param prototype what is called, under any name
Statement* _MakeCase(Module* module, int index, const std::string& function,
                     const FunctionPrototype* prototype) {
    FunctionCall* const call = CreateCall(module, function);
    for (const FunctionParameter* parameter : prototype->GetParameters()) {
        call->AddParameter(MakeVariable(module, parameter->GetName()->GetString()));
    }
    Statement* statement = nullptr;
    if (prototype->GetReturnType()->GetTypeSpecifier() == kType_Void) {
        statement = module->CreateExpressionStatement(call);
    } else {
        statement = module->CreateJumpStatement(kJumpType_Return, call);
    }
    // What is wrong with the call lies at the declaration of the method.
    statement->SetRange(prototype);
    SelectionStatement* const selection = module->CreateSelectionStatement();
    selection->SetCondition(module->CreateBinaryOperator(kOperator_Equal,
                                                         MakeVariable(module, kNameParameterThis),
                                                         module->CreateIntConstant(index)));
    selection->SetThen(statement);
    selection->SetRange(prototype);
    return selection;
}

} // namespace

bool ParameterInterfaceArray::CollectShader(Module* module) {
    _CreateUniformCount(module);
    return _CreateFunctionsSwitch(module);
}

bool ParameterInterfaceArray::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    const std::set<std::string> methods = _GetMethodNames(_pInterface, _pClass);
    const auto replace = [this](auto* node, auto* slot) { return _ReplaceReference(node, slot); };
    const auto replaceCall = [&](FunctionSelection* call, TIParentSyntax<Expression>* slot) {
        return _ReplaceReference(call, slot, methods);
    };
    return VisitReplacing<ForStatement>(visit, kClass_FunctionSelection, replace) &&
           VisitReplacing<FunctionSelection>(visit, kClass_FunctionSelection, replaceCall) &&
           VisitReplacing<FieldSelection>(visit, kClass_FieldSelection, replace);
}

bool ParameterInterfaceArray::_ReplaceReference(ForStatement* loop,
                                                TIParentSyntax<Statement>* slot) {
    const UnrollForStatementInterfaceArray unroll(this);
    if (PredicateUnrollForStatementInterfaceArray(GetNameDeclared(), loop) &&
        unroll.IsWithinLimit(loop)) {
        ReplaceVisited(slot, unroll.Unroll(loop));
    }
    return true;
}

bool ParameterInterfaceArray::_ReplaceReference(FunctionSelection* selection,
                                                TIParentSyntax<Expression>* slot,
                                                const std::set<std::string>& methods) {
    const Expression* const object = selection->GetExpression();
    if (IsVariable(object, GetNameDeclared())) {
        _pMgrEffects->GetImplementation()->AddResultMessage(
            "%s: Calling array input \"%s\" as single value.\n",
            LocationText(selection->GetRange()).c_str(), GetNameDeclared().c_str());
        return false;
    }
    const auto* const element = AsExactly<Subscript>(object);
    if (element == nullptr || !IsVariable(element->GetArray(), GetNameDeclared())) {
        return true;
    }
    const std::string method = GetMethodName(selection);
    if (methods.count(method) == 0) {
        const auto report =
            _pInterface != nullptr ? ReportMissingMethodOfInterface : ReportMissingMethodOfClass;
        return report(_pMgrEffects, selection->GetRange(), GetType(), method);
    }
    FunctionCall* const call = MakeCallOfMethod(selection, _MangleMethodName(method));
    auto& arguments = call->GetParameters();
    arguments.insert(arguments.begin(), element->GetIndex()->Clone(call->GetModule()));
    ReplaceVisited(slot, call);
    return true;
}

bool ParameterInterfaceArray::_ReplaceReference(FieldSelection* selection,
                                                TIParentSyntax<Expression>* slot) {
    if (selection->GetField()->GetString() == "length" &&
        IsVariable(selection->GetExpression(), GetNameDeclared())) {
        ReplaceVisited(slot, MakeVariable(selection->GetModule(), _nameCount));
    }
    return true;
}

std::string ParameterInterfaceArray::_MangleMethodName(const std::string& method) const {
    return GetNameMangled() + "_" + method;
}

void ParameterInterfaceArray::_CreateUniformCount(Module* module) const {
    DeclareGlobal(module, kType_Int, _nameCount, kStorageQualifier_Uniform);
}

bool ParameterInterfaceArray::_CreateFunctionsSwitch(Module* module) const {
    for (const FunctionPrototype* method : _GetMethods(_pInterface, _pClass)) {
        if (!_CreateFunctionSwitch(module, method)) {
            return false;
        }
    }
    return true;
}

bool ParameterInterfaceArray::_CreateFunctionSwitch(Module* module,
                                                    const FunctionPrototype* method) const {
    const std::string& name = method->GetName()->GetString();
    std::unique_ptr<FunctionPrototype> prototype(method->Clone(module));
    _NameParameters(prototype.get());
    CompoundStatement* const body = _CreateFunctionSwitchBody(module, name, prototype.get());
    if (body == nullptr) {
        return false;
    }
    prototype->GetName()->SetString(_MangleMethodName(name));
    PrependParameterThis(prototype.get());
    module->AddFunctionDefinition(module->CreateFunctionDefinition(prototype.release(), body));
    return true;
}

CompoundStatement*
ParameterInterfaceArray::_CreateFunctionSwitchBody(Module* module, const std::string& sName,
                                                   const FunctionPrototype* prototype) const {
    std::unique_ptr<CompoundStatement> body(module->CreateCompoundStatement());
    std::set<std::string> called;
    for (int i = 0; i < GetLength(); ++i) {
        Shader* const pShader = GetShaderBase(i);
        if (pShader == nullptr || !pShader->HasMethod(sName)) {
            TOLEN_CHECK_TEXT(false, "!pShader->HasMethod( sName )", kSource);
            if (pShader != nullptr) {
                ReportMissingMethodOfClass(_pMgrEffects, prototype->GetRange(),
                                           pShader->GetClassName(), sName);
            }
            return nullptr;
        }
        const std::string function = pShader->GetMethodNameMangled(sName);
        body->AddStatement(_MakeCase(module, i, function, prototype));
        called.insert(function);
    }
    if (Expression* value = _MakeDefault(module, prototype->GetReturnType()->GetTypeSpecifier())) {
        body->AddStatement(module->CreateJumpStatement(kJumpType_Return, value));
    }
    for (const std::string& function : called) {
        FunctionPrototype* const declaration = prototype->Clone(module);
        declaration->GetName()->SetString(function);
        module->AddFunctionDeclaration(declaration);
    }
    return body.release();
}

} // namespace Tolen::Effects
