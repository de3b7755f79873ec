#pragma once

/// @file
/// The expression nodes. Operations that take a node take its ownership. A setter deletes the child
/// it replaces, accepts null, leaves everything as it is when given the child it holds, and answers
/// true.

#include "TolenEffects/Syntax.h"

#include <cstddef>
#include <vector>

namespace Tolen::Effects {

class Declaration;
class FunctionCall;
class FunctionPrototype;
class Type;

/// The base of all expressions.
class TOLEN_EXPORT Expression : public Syntax {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_Expression; }

    ~Expression() override;
    Class GetClass() const override = 0;
    /// A deep copy in @p target that nobody owns yet. Its range is the source's but for those of
    /// FunctionCall and Condition, which stay cleared. Optimization marks are not copied.
    virtual Expression* Clone(Module* target) const = 0;
    /// Whether @p other, which may be null, has the same structure. Ranges and marks don't count.
    virtual bool Equals(const Expression* other) const = 0;
    /// Calls the reading Visit of @p visitor for this kind of node with @p slot, which tells the
    /// parent.
    /// @return its answer
    virtual bool AcceptVisitor(Visitor* visitor, TParentSyntaxConst<Expression>* slot) const = 0;
    /// Calls the mutating Visit of @p visitor for this kind of node with @p slot, through which the
    /// node can be replaced.
    /// @return its answer
    virtual bool AcceptVisitor(Visitor* visitor, TIParentSyntax<Expression>* slot) = 0;

    /// The module that the node belongs to.
    Module* GetModule() const { return _pModule; }

protected:
    /// A node of @p module, which is borrowed.
    explicit Expression(Module* module) : _pModule(module) {}
    Expression(const Expression&) = delete;

    Module* _pModule; ///< borrowed
};

/// `left op= right`, with kOperator_Assign for the plain one.
/// @extends Expression
class TOLEN_EXPORT Assignment : public TSlottedNode<Assignment, kClass_Assignment, Expression> {
public:
    ~Assignment() override;
    Assignment* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// kOperator_Assign, or the operator before the "=".
    Operator GetOperator() const { return _operator; }
    /// Replaces the operator.
    void SetOperator(Operator op) { _operator = op; }
    /// What is assigned to.
    Expression* GetLeft() const { return _pLeft.get(); }
    /// Replaces what is assigned to. @return true
    bool SetLeft(Expression* left);
    /// What is assigned.
    Expression* GetRight() const { return _pRight.get(); }
    /// Replaces what is assigned. @return true
    bool SetRight(Expression* right);

private:
    friend class Module;
    Assignment(Module* module, Operator op, Expression* left, Expression* right);

    Operator _operator;
    std::unique_ptr<Expression> _pLeft;
    std::unique_ptr<Expression> _pRight;
};

/// `left op right`, with the comma among the operators.
/// @extends Expression
class TOLEN_EXPORT BinaryOperator
    : public TSlottedNode<BinaryOperator, kClass_BinaryOperator, Expression> {
public:
    ~BinaryOperator() override;
    BinaryOperator* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The operator between the operands.
    Operator GetOperator() const { return _operator; }
    /// Replaces the operator.
    void SetOperator(Operator op) { _operator = op; }
    /// The left operand.
    Expression* GetLeft() const { return _pLeft.get(); }
    /// Replaces the left operand. @return true
    bool SetLeft(Expression* left);
    /// The right operand.
    Expression* GetRight() const { return _pRight.get(); }
    /// Replaces the right operand. @return true
    bool SetRight(Expression* right);

private:
    friend class Module;
    BinaryOperator(Module* module, Operator op, Expression* left, Expression* right);

    Operator _operator;
    std::unique_ptr<Expression> _pLeft;
    std::unique_ptr<Expression> _pRight;
};

/// `true` or `false`.
/// @extends Expression
class TOLEN_EXPORT BoolConstant
    : public TSlottedNode<BoolConstant, kClass_BoolConstant, Expression> {
public:
    ~BoolConstant() override;
    BoolConstant* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The value.
    bool GetValue() const { return _value; }

private:
    friend class Module;
    BoolConstant(Module* module, bool value);

    bool _value;
};

/// A whole number.
/// @extends Expression
class TOLEN_EXPORT IntConstant : public TSlottedNode<IntConstant, kClass_IntConstant, Expression> {
public:
    ~IntConstant() override;
    IntConstant* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The number.
    std::int32_t GetValue() const { return _value; }
    /// Replaces the number.
    void SetValue(std::int32_t value) { _value = value; }

private:
    friend class Module;
    IntConstant(Module* module, std::int32_t value);

    std::int32_t _value;
};

/// A number with a point, kept as a value and as it is spelled. Equality goes by the value.
/// @extends Expression
class TOLEN_EXPORT FloatConstant
    : public TSlottedNode<FloatConstant, kClass_FloatConstant, Expression> {
public:
    ~FloatConstant() override;
    FloatConstant* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The number.
    double GetValue() const { return _value; }
    /// The spelling, with its "f" if the source has one. May be null.
    String* GetString() const { return _pString; }

private:
    friend class Module;
    FloatConstant(Module* module, String* string, double value);

    double _value;
    String* _pString;
};

/// `op expression`.
/// @extends Expression
class TOLEN_EXPORT UnaryOperator
    : public TSlottedNode<UnaryOperator, kClass_UnaryOperator, Expression> {
public:
    ~UnaryOperator() override;
    UnaryOperator* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The operator before the operand.
    Operator GetOperator() const { return _operator; }
    /// Replaces the operator.
    void SetOperator(Operator op) { _operator = op; }
    /// The operand.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces the operand. @return true
    bool SetExpression(Expression* expression);

protected:
    friend class Module;
    /// A node of @p module, which takes @p expression.
    UnaryOperator(Module* module, Operator op, Expression* expression);

private:
    Operator _operator;
    std::unique_ptr<Expression> _pExpression;
};

/// `expression op`, for "++" and "--".
/// @extends UnaryOperator
class TOLEN_EXPORT PostOperator
    : public TSlottedNode<PostOperator, kClass_PostOperator, Expression, UnaryOperator> {
public:
    ~PostOperator() override;
    PostOperator* Clone(Module* target) const override;

private:
    friend class Module;
    PostOperator(Module* module, Operator op, Expression* expression);
};

/// `condition ? true : false`.
/// @extends Expression
class TOLEN_EXPORT Conditional : public TSlottedNode<Conditional, kClass_Conditional, Expression> {
public:
    ~Conditional() override;
    Conditional* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// What is looked at.
    Expression* GetCondition() const { return _pCondition.get(); }
    /// Replaces the condition. @return true
    bool SetCondition(Expression* condition);
    /// The value where the condition holds.
    Expression* GetTrue() const { return _pTrue.get(); }
    /// Replaces the value where the condition holds. @return true
    bool SetTrue(Expression* expression);
    /// The value where it does not.
    Expression* GetFalse() const { return _pFalse.get(); }
    /// Replaces the value where the condition does not hold. @return true
    bool SetFalse(Expression* expression);

private:
    friend class Module;
    Conditional(Module* module, Expression* condition, Expression* ifTrue, Expression* ifFalse);

    std::unique_ptr<Expression> _pCondition;
    std::unique_ptr<Expression> _pTrue;
    std::unique_ptr<Expression> _pFalse;
};

/// The use of a variable by its name.
/// @extends Expression
class TOLEN_EXPORT Variable : public TSlottedNode<Variable, kClass_Variable, Expression> {
public:
    ~Variable() override;
    Variable* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The name, which may be changed in place.
    String* GetIdentifier() const { return _pIdentifier; }

    /// Whether the name is already that of the vertex attribute which a coordinate stands for, so
    /// that no other coordinate takes it for its own. Clones start without the mark.
    bool IsAttribute() const { return _isAttribute; }
    /// Sets whether the name is already that of the vertex attribute.
    void SetAttribute(bool isAttribute) { _isAttribute = isAttribute; }

private:
    friend class Module;
    Variable(Module* module, String* identifier);

    String* _pIdentifier;
    bool _isAttribute = false;
};

/// `expression.field`.
/// @extends Expression
class TOLEN_EXPORT FieldSelection
    : public TSlottedNode<FieldSelection, kClass_FieldSelection, Expression> {
public:
    ~FieldSelection() override;
    FieldSelection* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// What has the field.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces what has the field. @return true
    bool SetExpression(Expression* expression);
    /// The name of the field, or the components as "xyz".
    String* GetField() const { return _pField; }

private:
    friend class Module;
    FieldSelection(Module* module, Expression* expression, String* field);

    std::unique_ptr<Expression> _pExpression;
    String* _pField;
};

/// `expression.function(...)`: the call of a method.
/// @extends Expression
class TOLEN_EXPORT FunctionSelection
    : public TSlottedNode<FunctionSelection, kClass_FunctionSelection, Expression> {
public:
    ~FunctionSelection() override;
    FunctionSelection* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// What has the method: a shader, or a class.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces what has the method. @return true
    bool SetExpression(Expression* expression);
    /// The method's name with the arguments.
    FunctionCall* GetFunction() const { return _pFunction.get(); }
    /// Replaces the call. @return true
    bool SetFunction(FunctionCall* function);

private:
    friend class Module;
    FunctionSelection(Module* module, Expression* expression, FunctionCall* function);

    std::unique_ptr<Expression> _pExpression;
    std::unique_ptr<FunctionCall> _pFunction;
};

/// `array[index]`.
/// @extends Expression
class TOLEN_EXPORT Subscript : public TSlottedNode<Subscript, kClass_Subscript, Expression> {
public:
    ~Subscript() override;
    Subscript* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// What has elements.
    Expression* GetArray() const { return _pArray.get(); }
    /// Replaces what has elements. @return true
    bool SetArray(Expression* array);
    /// Which element it is.
    Expression* GetIndex() const { return _pIndex.get(); }
    /// Replaces the index. @return true
    bool SetIndex(Expression* index);

private:
    friend class Module;
    Subscript(Module* module, Expression* array, Expression* index);

    std::unique_ptr<Expression> _pArray;
    std::unique_ptr<Expression> _pIndex;
};

/// The call of a function by name or the constructor of a type.
/// @extends Expression
class TOLEN_EXPORT FunctionCall
    : public TSlottedNode<FunctionCall, kClass_FunctionCall, Expression> {
public:
    ~FunctionCall() override;
    FunctionCall* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;
    /// Whether this is a call by name of a function of the prototype's name; arguments don't count.
    virtual bool Equals(const FunctionPrototype* prototype) const;

    /// Null for a constructor.
    String* GetName() const { return _pName; }
    /// Stores the pointer; the name before stays with the module.
    void SetName(String* name) { _pName = name; }
    /// The constructed type, null for a call by name.
    Type* GetType() const { return _pType.get(); }
    /// Replaces the constructed type. @return true
    bool SetType(Type* type);
    /// Whether the printer leaves the call out, and why.
    Optimization GetOptimization() const { return _optimization; }
    /// Marks the call for the printer.
    void SetOptimization(Optimization optimization) { _optimization = optimization; }

    /// Appends an argument. Null fails an internal check and is not added.
    void AddParameter(Expression* pExpression);
    /// The arguments, owned by the call.
    std::vector<Expression*>& GetParameters() { return _parameters; }
    /// The arguments, to be read.
    const std::vector<Expression*>& GetParameters() const { return _parameters; }
    /// The number of arguments.
    std::size_t GetCountParameters() const { return _parameters.size(); }

private:
    friend class Module;
    FunctionCall(Module* module, String* name);
    FunctionCall(Module* module, Type* type);

    String* _pName;
    std::unique_ptr<Type> _pType;
    std::vector<Expression*> _parameters; ///< owned
    Optimization _optimization = OptimizationNone;
};

/// The condition of a `while` or `for`: an expression, or a declaration with an initializer.
/// @extends Expression
class TOLEN_EXPORT Condition : public TSlottedNode<Condition, kClass_Condition, Expression> {
public:
    ~Condition() override;
    /// A source that holds a declaration writes its range onto @p target itself.
    Condition* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    /// The expression; null where there is a declaration.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces the expression. @return true
    bool SetExpression(Expression* expression);
    /// The declaration; null where there is an expression.
    Declaration* GetDeclaration() const { return _pDeclaration.get(); }

private:
    friend class Module;
    Condition(Module* module, Declaration* declaration);
    Condition(Module* module, Expression* expression);

    std::unique_ptr<Expression> _pExpression;
    std::unique_ptr<Declaration> _pDeclaration;
};

} // namespace Tolen::Effects
