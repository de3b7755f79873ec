#include "TolenEffects/Module.h"

#include "TolenCore/Format.h"

/// The factories of nodes.

namespace Tolen::Effects {

Assignment* Module::CreateAssignment(Operator op, Expression* left, Expression* right) {
    return new Assignment(this, op, left, right);
}

BinaryOperator* Module::CreateBinaryOperator(Operator op, Expression* left, Expression* right) {
    return new BinaryOperator(this, op, left, right);
}

BoolConstant* Module::CreateBoolConstant(bool value) {
    return new BoolConstant(this, value);
}

ClassDefinition* Module::CreateClassDefinition() {
    return new ClassDefinition(this);
}

CompoundStatement* Module::CreateCompoundStatement() {
    return new CompoundStatement(this);
}

CompoundStatement* Module::CreateCompoundStatement(Statement* first) {
    return new CompoundStatement(this, first);
}

Condition* Module::CreateCondition(Declaration* declaration) {
    return new Condition(this, declaration);
}

Condition* Module::CreateCondition(Expression* expression) {
    return new Condition(this, expression);
}

Conditional* Module::CreateConditional(Expression* condition, Expression* ifTrue,
                                       Expression* ifFalse) {
    return new Conditional(this, condition, ifTrue, ifFalse);
}

DeclarationStatement* Module::CreateDeclarationStatement(VariableDeclaration* declaration) {
    return new DeclarationStatement(this, declaration);
}

DoWhileStatement* Module::CreateDoWhileStatement(Statement* statement, Expression* expression) {
    return new DoWhileStatement(this, statement, expression);
}

EmptyStatement* Module::CreateEmptyStatement() {
    return new EmptyStatement(this);
}

ExpressionStatement* Module::CreateExpressionStatement(Expression* expression) {
    return new ExpressionStatement(this, expression);
}

FieldSelection* Module::CreateFieldSelection(Expression* expression, String* field) {
    return new FieldSelection(this, expression, field);
}

FloatConstant* Module::CreateFloatConstant(double value) {
    return CreateFloatConstant(CreateString(Format("%#.16g", value).c_str()), value);
}

FloatConstant* Module::CreateFloatConstant(String* string) {
    return CreateFloatConstant(string, ParseFloat(string->GetString().c_str()));
}

FloatConstant* Module::CreateFloatConstant(String* string, double value) {
    return new FloatConstant(this, string, value);
}

ForStatement* Module::CreateForStatement(Expression* iteration) {
    return new ForStatement(this, iteration);
}

FunctionCall* Module::CreateFunctionCall(String* name) {
    return new FunctionCall(this, name);
}

FunctionCall* Module::CreateFunctionCall(Type* type) {
    return new FunctionCall(this, type);
}

FunctionDefinition* Module::CreateFunctionDefinition(FunctionPrototype* prototype,
                                                     CompoundStatement* statement) {
    return new FunctionDefinition(this, prototype, statement);
}

FunctionParameter* Module::CreateFunctionParameter(Type* type) {
    return new FunctionParameter(this, type);
}

FunctionPrototype* Module::CreateFunctionPrototype(FunctionQualifier qualifier, Type* returnType,
                                                   String* name) {
    return new FunctionPrototype(this, qualifier, returnType, name);
}

FunctionSelection* Module::CreateFunctionSelection(Expression* expression, FunctionCall* function) {
    return new FunctionSelection(this, expression, function);
}

IntConstant* Module::CreateIntConstant(long value) {
    return new IntConstant(this, static_cast<std::int32_t>(value));
}

InterfaceDefinition* Module::CreateInterfaceDefinition() {
    return new InterfaceDefinition(this);
}

JumpStatement* Module::CreateJumpStatement(JumpType type, Expression* expression) {
    return new JumpStatement(this, type, expression);
}

PostOperator* Module::CreatePostOperator(Operator op, Expression* expression) {
    return new PostOperator(this, op, expression);
}

SelectionStatement* Module::CreateSelectionStatement() {
    return new SelectionStatement(this);
}

StructDefinition* Module::CreateStructDefinition() {
    return new StructDefinition(this);
}

Subscript* Module::CreateSubscript(Expression* array, Expression* index) {
    return new Subscript(this, array, index);
}

Type* Module::CreateType(TypeSpecifier typeSpecifier) {
    return new Type(this, typeSpecifier);
}

UnaryOperator* Module::CreateUnaryOperator(Operator op, Expression* expression) {
    return new UnaryOperator(this, op, expression);
}

UserType* Module::CreateUserType(String* name) {
    return new UserType(this, name);
}

Variable* Module::CreateVariable(String* identifier) {
    return new Variable(this, identifier);
}

VariableDeclaration* Module::CreateVariableDeclaration(Type* type, String* identifier,
                                                       Expression* initializer) {
    return new VariableDeclaration(this, type, identifier, initializer);
}

WhileStatement* Module::CreateWhileStatement(Condition* condition, Statement* statement) {
    return new WhileStatement(this, condition, statement);
}

} // namespace Tolen::Effects
