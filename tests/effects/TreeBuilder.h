#pragma once

#include "TolenEffects/Module.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>

namespace Tolen::Effects::Tests {

/// Builds small trees by hand in a module of its own.
class TreeBuilder {
public:
    TreeBuilder() : _module(Module::Create(nullptr)) {}

    Module* operator->() const { return _module.get(); }
    Module* Get() const { return _module.get(); }
    /// Deletes the module with all it owns.
    void Reset() { _module.reset(); }

    String* Name(const std::string& text) const { return _module->CreateString(text.c_str()); }
    Variable* Var(const std::string& name) const { return _module->CreateVariable(Name(name)); }
    IntConstant* Int(long value) const { return _module->CreateIntConstant(value); }
    FloatConstant* Float(const std::string& spelling) const {
        return _module->CreateFloatConstant(Name(spelling));
    }
    BinaryOperator* Binary(Expression* left, Operator op, Expression* right) const {
        return _module->CreateBinaryOperator(op, left, right);
    }
    UnaryOperator* Unary(Operator op, Expression* operand) const {
        return _module->CreateUnaryOperator(op, operand);
    }
    Conditional* Choice(Expression* condition, Expression* ifTrue, Expression* ifFalse) const {
        return _module->CreateConditional(condition, ifTrue, ifFalse);
    }
    Assignment* Assign(Expression* left, Expression* right, Operator op = kOperator_Assign) const {
        return _module->CreateAssignment(op, left, right);
    }
    FieldSelection* Field(Expression* object, const std::string& field) const {
        return _module->CreateFieldSelection(object, Name(field));
    }
    FunctionCall* Call(const std::string& name,
                       std::initializer_list<Expression*> arguments = {}) const {
        return _With(_module->CreateFunctionCall(Name(name)), arguments);
    }
    FunctionCall* Construct(TypeSpecifier type,
                            std::initializer_list<Expression*> arguments = {}) const {
        return _With(_module->CreateFunctionCall(_module->CreateType(type)), arguments);
    }
    ExpressionStatement* Do(Expression* expression) const {
        return _module->CreateExpressionStatement(expression);
    }
    CompoundStatement* Block(std::initializer_list<Statement*> statements = {}) const {
        CompoundStatement* block = _module->CreateCompoundStatement();
        for (Statement* statement : statements) {
            block->AddStatement(statement);
        }
        return block;
    }
    SelectionStatement* If(Expression* condition, Statement* then,
                           Statement* otherwise = nullptr) const {
        SelectionStatement* selection = _module->CreateSelectionStatement();
        selection->SetCondition(condition);
        selection->SetThen(then);
        selection->SetElse(otherwise);
        return selection;
    }
    ForStatement* For(Statement* initialization, Condition* condition, Expression* iteration,
                      Statement* body) const {
        ForStatement* loop = _module->CreateForStatement(iteration);
        loop->SetInitialization(initialization);
        loop->SetCondition(condition);
        loop->SetStatement(body);
        return loop;
    }
    VariableDeclaration* Declare(TypeSpecifier type, const std::string& name,
                                 Expression* initializer = nullptr) const {
        return _module->CreateVariableDeclaration(_module->CreateType(type), Name(name),
                                                  initializer);
    }
    VariableDeclaration* DeclareUser(const std::string& type, const std::string& name) const {
        return _module->CreateVariableDeclaration(_module->CreateUserType(Name(type)), Name(name),
                                                  nullptr);
    }
    FunctionParameter* Parameter(TypeSpecifier type, const std::string& name,
                                 ParameterQualifier qualifier = kParameterQualifier_In) const {
        FunctionParameter* parameter = _module->CreateFunctionParameter(_module->CreateType(type));
        parameter->SetName(Name(name));
        parameter->SetParameterQualifier(qualifier);
        return parameter;
    }
    FunctionPrototype* Prototype(TypeSpecifier result, const std::string& name,
                                 std::initializer_list<FunctionParameter*> parameters = {}) const {
        FunctionPrototype* prototype = _module->CreateFunctionPrototype(
            kFunctionQualifier_None, _module->CreateType(result), Name(name));
        for (FunctionParameter* parameter : parameters) {
            prototype->AddParameter(parameter);
        }
        return prototype;
    }
    FunctionDefinition* Function(FunctionPrototype* prototype,
                                 std::initializer_list<Statement*> statements = {}) const {
        return _module->CreateFunctionDefinition(prototype, Block(statements));
    }
    InterfaceDefinition* Interface(const std::string& name) const {
        InterfaceDefinition* definition = _module->CreateInterfaceDefinition();
        definition->SetName(Name(name));
        return definition;
    }
    ClassDefinition* MakeClass(const std::string& name) const {
        ClassDefinition* definition = _module->CreateClassDefinition();
        definition->SetName(Name(name));
        return definition;
    }

    /// `a + a + ...` with @p count operators, nested to the left.
    Expression* Sum(int count) const {
        Expression* sum = Var("a");
        for (int i = 0; i < count; ++i) {
            sum = Binary(sum, kOperator_Add, Var("a"));
        }
        return sum;
    }
    /// `if (a) a; else if (a) a; ...` with @p count conditions.
    Statement* ElseIfs(int count) const {
        Statement* chain = nullptr;
        for (int i = 0; i < count; ++i) {
            chain = If(Var("a"), Do(Var("a")), chain);
        }
        return chain;
    }

private:
    static FunctionCall* _With(FunctionCall* call, std::initializer_list<Expression*> arguments) {
        for (Expression* argument : arguments) {
            call->AddParameter(argument);
        }
        return call;
    }

    std::unique_ptr<Module> _module;
};

/// A range on lines @p first to @p last of a file.
inline LocationRange Lines(const std::string* file, int first, int last) {
    return {file, first, 1, last, 9};
}

} // namespace Tolen::Effects::Tests
