#pragma once

#include "KslActionsStatement.h"
#include "KslReduction.h"

#include <memory>
#include <string>

/// Actions of the grammar: what stands at file level, in interfaces and in classes.

namespace Tolen::Effects::KslActions {

// ---- file level

inline void AddFunction(KslReduction& reduction) {
    reduction.GetParser().AddFunctionDefinition(reduction.GetNode<FunctionDefinition>(0));
    reduction.SetNothing();
}

inline void AddInterface(KslReduction& reduction) {
    reduction.GetParser().AddInterfaceDefinition(reduction.GetNode<InterfaceDefinition>(0));
    reduction.SetNothing();
}

inline void AddClass(KslReduction& reduction) {
    reduction.GetParser().AddClassDefinition(reduction.GetNode<ClassDefinition>(0));
    reduction.SetNothing();
}

/// [ statement ]
inline void AddStandAloneStatement(KslReduction& reduction) {
    reduction.GetParser().AddStatement(reduction.GetNode<Statement>(1));
    reduction.SetNothing();
}

/// { expression }
inline void AddStandAloneExpression(KslReduction& reduction) {
    reduction.GetParser().AddExpression(reduction.GetNode<Expression>(1));
    reduction.SetNothing();
}

// ---- interfaces

/// interface name
inline void BeginInterface(KslReduction& reduction) {
    InterfaceDefinition* const definition = reduction.GetParser().CreateInterfaceDefinition();
    definition->SetName(reduction.GetString(1));
    SetRangedNode(reduction, definition, Range::Token, 1);
}

/// interface method
inline void AddInterfaceMethod(KslReduction& reduction) {
    reduction.GetNode<InterfaceDefinition>(0)->AddMemberFunction(
        reduction.GetNode<FunctionPrototype>(1));
}

/// type prototype ;
inline void InterfaceMethod(KslReduction& reduction) {
    FunctionPrototype* const prototype = reduction.GetNode<FunctionPrototype>(1);
    prototype->SetReturnType(reduction.GetNode<Type>(0));
    SetSpannedNode(reduction, prototype, 0, 1);
}

// ---- classes

/// class name {
inline void BeginClass(KslReduction& reduction) {
    ClassDefinition* const definition = reduction.GetParser().CreateClassDefinition();
    definition->SetName(reduction.GetString(1));
    SetRangedNode(reduction, definition, Range::Token, 1);
}

/// class name : name {
inline void BeginClassOfInterface(KslReduction& reduction) {
    ClassDefinition* const definition = reduction.GetParser().CreateClassDefinition();
    definition->SetName(reduction.GetString(1));
    definition->SetInterface(reduction.GetString(3));
    definition->SetRange(reduction.GetRange(1), reduction.GetRange(3));
    reduction.SetNode(definition);
}

/// class keyword type name ;
inline void AddCoord(KslReduction& reduction) {
    KslParser& parser = reduction.GetParser();
    std::unique_ptr<VariableDeclaration> coord(parser.CreateVariableDeclaration(
        reduction.GetNode<Type>(2), reduction.GetString(3), nullptr));
    coord->SetStorageQualifier(kStorageQualifier_Coord);
    coord->SetTransformation(reduction.GetEnumerator<TransformationCoord>(1));
    if (reduction.GetNode<ClassDefinition>(0)->AddCoord(coord.get())) {
        coord.release();
    } else {
        std::string message = "Conflicting coord declaration";
        parser.Error(message);
    }
}

/// class keyword type name ;
inline void AddOutput(KslReduction& reduction) {
    KslParser& parser = reduction.GetParser();
    std::unique_ptr<Type> type(reduction.GetNode<Type>(2));
    if (reduction.GetNode<ClassDefinition>(0)->AddOutput(type.get(), reduction.GetString(3))) {
        type.release();
    } else {
        parser.DestroyString(reduction.GetString(3));
        std::string message = "Conflicting output declaration";
        parser.Error(message);
    }
}

/// class variable
inline void AddMemberVariable(KslReduction& reduction) {
    reduction.GetNode<ClassDefinition>(0)->AddMemberVariable(
        reduction.GetNode<VariableDeclaration>(1));
}

/// class function
inline void AddMemberFunction(KslReduction& reduction) {
    reduction.GetNode<ClassDefinition>(0)->AddMemberFunction(
        reduction.GetNode<FunctionDefinition>(1));
}

// ---- plain members

/// [qualifiers] type name, with the type at @p first
template <int first, bool isStatic, bool isConst>
void Member(KslReduction& reduction) {
    VariableDeclaration* const member = reduction.GetParser().CreateVariableDeclaration(
        reduction.GetNode<Type>(first), reduction.GetString(first + 1), nullptr);
    member->SetStatic(isStatic);
    member->SetConst(isConst);
    SetSpannedNode(reduction, member, first, first + 1);
}

/// member tail
inline void MemberValue(KslReduction& reduction) {
    VariableDeclaration* const member = reduction.GetNode<VariableDeclaration>(0);
    member->SetInitializer(reduction.GetNode<Expression>(1));
    reduction.SetNode(member);
}

/// member [ size ] tail
inline void MemberArray(KslReduction& reduction) {
    VariableDeclaration* const member = reduction.GetNode<VariableDeclaration>(0);
    MakeArray(member->GetType(), reduction.GetParser().CreateIntConstant(reduction.GetInteger(2)));
    member->SetInitializer(reduction.GetNode<Expression>(4));
    reduction.SetNode(member);
}

/// member [ ] tail
inline void MemberArrayWithoutSize(KslReduction& reduction) {
    VariableDeclaration* const member = reduction.GetNode<VariableDeclaration>(0);
    MakeArray(member->GetType(), nullptr);
    member->SetInitializer(reduction.GetNode<Expression>(3));
    reduction.SetNode(member);
}

// ---- inputs

/// Declares an input of the type at @p type, whose name stands behind it.
/// @param tail where its default value is, which may be null
inline VariableDeclaration* DeclareInput(KslReduction& reduction, int type, int tail) {
    VariableDeclaration* const input = reduction.GetParser().CreateVariableDeclaration(
        reduction.GetNode<Type>(type), reduction.GetString(type + 1),
        reduction.GetNode<Expression>(tail));
    input->SetStorageQualifier(kStorageQualifier_Input);
    return input;
}

inline VariableDeclaration* DeclareInputArray(KslReduction& reduction, int type, int tail) {
    MakeArray(reduction.GetNode<Type>(type), reduction.GetNode<Expression>(type + 3));
    return DeclareInput(reduction, type, tail);
}

/// input type name tail
inline void Input(KslReduction& reduction) {
    SetSpannedNode(reduction, DeclareInput(reduction, 1, 3), 1, EndOfDeclaration(reduction, 3, 2));
}

/// input type name [ size ] tail
inline void InputArray(KslReduction& reduction) {
    SetSpannedNode(reduction, DeclareInputArray(reduction, 1, 6), 1, 2);
}

/// static input type name tail
inline void StaticInput(KslReduction& reduction) {
    VariableDeclaration* const input = DeclareInput(reduction, 2, 4);
    input->SetStatic(true);
    reduction.SetNode(input);
}

/// static input type name [ size ] tail
inline void StaticInputArray(KslReduction& reduction) {
    VariableDeclaration* const input = DeclareInputArray(reduction, 2, 7);
    input->SetStatic(true);
    reduction.SetNode(input);
}

// ---- functions

/// name (
inline void BeginFunction(KslReduction& reduction) {
    FunctionPrototype* const prototype = reduction.GetParser().CreateFunctionPrototype(
        kFunctionQualifier_None, nullptr, reduction.GetString(0));
    SetRangedNode(reduction, prototype, Range::Token, 0);
}

/// prototype parameter, or prototype , parameter
template <int index>
void AddFunctionParameter(KslReduction& reduction) {
    FunctionPrototype* const prototype = reduction.GetNode<FunctionPrototype>(0);
    FunctionParameter* const parameter = reduction.GetNode<FunctionParameter>(index);
    prototype->AddParameter(parameter);
    prototype->ExpandRange(parameter);
    reduction.SetNode(prototype);
}

/// Makes the parameter of a qualifier, a type and a name at 0 to 2, with the range from the name to
/// the symbol at @p last.
inline void MakeParameter(KslReduction& reduction, int last) {
    FunctionParameter* const parameter =
        reduction.GetParser().CreateFunctionParameter(reduction.GetNode<Type>(1));
    parameter->SetName(reduction.GetString(2));
    parameter->SetParameterQualifier(reduction.GetEnumerator<ParameterQualifier>(0));
    parameter->SetRange(reduction.GetRange(2), reduction.GetRange(last));
    reduction.SetNode(parameter);
}

/// qualifier type name
inline void Parameter(KslReduction& reduction) { MakeParameter(reduction, 2); }

/// qualifier type name [ size ]
inline void ParameterArray(KslReduction& reduction) {
    IntConstant* const length = reduction.GetParser().CreateIntConstant(reduction.GetInteger(4));
    length->SetRange(reduction.GetRange(4));
    MakeArray(reduction.GetNode<Type>(1), length);
    MakeParameter(reduction, 4);
}

/// Defines the function of a type, a prototype and a body that start at @p first.
inline void DefineFunction(KslReduction& reduction, int first) {
    FunctionPrototype* const prototype = reduction.GetNode<FunctionPrototype>(first + 1);
    prototype->SetReturnType(reduction.GetNode<Type>(first));
    FunctionDefinition* const definition = reduction.GetParser().CreateFunctionDefinition(
        prototype, reduction.GetNode<CompoundStatement>(first + 2));
    definition->SetRange(reduction.GetRange(first), reduction.GetRange(first + 2));
    reduction.SetNode(definition);
}

/// type prototype body
inline void Function(KslReduction& reduction) { DefineFunction(reduction, 0); }

/// static type prototype body
inline void StaticFunction(KslReduction& reduction) {
    reduction.GetNode<FunctionPrototype>(2)->SetQualifier(kFunctionQualifier_Static);
    DefineFunction(reduction, 1);
}

} // namespace Tolen::Effects::KslActions
