#pragma once

#include "TolenEffects/Syntax.h"

#include <cstddef>
#include <vector>

/// The expression nodes. Operations that take a node take its ownership. A setter deletes the child
/// it replaces, accepts null, leaves everything as it is when given the child it holds, and answers
/// true.

namespace Tolen::Effects {

class Declaration;
class FunctionCall;
class FunctionPrototype;
class Type;

class TOLEN_EXPORT Expression : public Syntax {
public:
    static constexpr Class ClassStatic() { return kClass_Expression; }

    ~Expression() override;
    Class GetClass() const override = 0;
    /// A deep copy in @p target that nobody owns yet. Its range is the source's but for those of
    /// FunctionCall and Condition, which stay cleared. Optimization marks are not copied.
    virtual Expression* Clone(Module* target) const = 0;
    /// Whether @p other, which may be null, has the same structure. Ranges and marks don't count.
    virtual bool Equals(const Expression* other) const = 0;
    virtual bool AcceptVisitor(Visitor* visitor, TParentSyntaxConst<Expression>* slot) const = 0;
    virtual bool AcceptVisitor(Visitor* visitor, TIParentSyntax<Expression>* slot) = 0;

    /// The module that the node belongs to.
    Module* GetModule() const { return _pModule; }

protected:
    explicit Expression(Module* module) : _pModule(module) {}
    Expression(const Expression&) = delete;

    Module* _pModule; ///< borrowed
};

/// `left op= right`, with kOperator_Assign for the plain one.
class TOLEN_EXPORT Assignment : public TSlottedNode<Assignment, kClass_Assignment, Expression> {
public:
    ~Assignment() override;
    Assignment* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Operator GetOperator() const { return _operator; }
    void SetOperator(Operator op) { _operator = op; }
    Expression* GetLeft() const { return _pLeft.get(); }
    bool SetLeft(Expression* left);
    Expression* GetRight() const { return _pRight.get(); }
    bool SetRight(Expression* right);

private:
    friend class Module;
    Assignment(Module* module, Operator op, Expression* left, Expression* right);

    Operator _operator;
    std::unique_ptr<Expression> _pLeft;
    std::unique_ptr<Expression> _pRight;
};

/// `left op right`, with the comma among the operators.
class TOLEN_EXPORT BinaryOperator
    : public TSlottedNode<BinaryOperator, kClass_BinaryOperator, Expression> {
public:
    ~BinaryOperator() override;
    BinaryOperator* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Operator GetOperator() const { return _operator; }
    void SetOperator(Operator op) { _operator = op; }
    Expression* GetLeft() const { return _pLeft.get(); }
    bool SetLeft(Expression* left);
    Expression* GetRight() const { return _pRight.get(); }
    bool SetRight(Expression* right);

private:
    friend class Module;
    BinaryOperator(Module* module, Operator op, Expression* left, Expression* right);

    Operator _operator;
    std::unique_ptr<Expression> _pLeft;
    std::unique_ptr<Expression> _pRight;
};

class TOLEN_EXPORT BoolConstant
    : public TSlottedNode<BoolConstant, kClass_BoolConstant, Expression> {
public:
    ~BoolConstant() override;
    BoolConstant* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    bool GetValue() const { return _value; }

private:
    friend class Module;
    BoolConstant(Module* module, bool value);

    bool _value;
};

class TOLEN_EXPORT IntConstant : public TSlottedNode<IntConstant, kClass_IntConstant, Expression> {
public:
    ~IntConstant() override;
    IntConstant* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    std::int32_t GetValue() const { return _value; }
    void SetValue(std::int32_t value) { _value = value; }

private:
    friend class Module;
    IntConstant(Module* module, std::int32_t value);

    std::int32_t _value;
};

/// A number with a point, kept as a value and as it is spelled. Equality goes by the value.
class TOLEN_EXPORT FloatConstant
    : public TSlottedNode<FloatConstant, kClass_FloatConstant, Expression> {
public:
    ~FloatConstant() override;
    FloatConstant* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

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
class TOLEN_EXPORT UnaryOperator
    : public TSlottedNode<UnaryOperator, kClass_UnaryOperator, Expression> {
public:
    ~UnaryOperator() override;
    UnaryOperator* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Operator GetOperator() const { return _operator; }
    void SetOperator(Operator op) { _operator = op; }
    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);

protected:
    friend class Module;
    UnaryOperator(Module* module, Operator op, Expression* expression);

private:
    Operator _operator;
    std::unique_ptr<Expression> _pExpression;
};

/// `expression op`, for "++" and "--".
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
class TOLEN_EXPORT Conditional : public TSlottedNode<Conditional, kClass_Conditional, Expression> {
public:
    ~Conditional() override;
    Conditional* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Expression* GetCondition() const { return _pCondition.get(); }
    bool SetCondition(Expression* condition);
    Expression* GetTrue() const { return _pTrue.get(); }
    bool SetTrue(Expression* expression);
    Expression* GetFalse() const { return _pFalse.get(); }
    bool SetFalse(Expression* expression);

private:
    friend class Module;
    Conditional(Module* module, Expression* condition, Expression* ifTrue, Expression* ifFalse);

    std::unique_ptr<Expression> _pCondition;
    std::unique_ptr<Expression> _pTrue;
    std::unique_ptr<Expression> _pFalse;
};

/// The use of a variable by its name.
class TOLEN_EXPORT Variable : public TSlottedNode<Variable, kClass_Variable, Expression> {
public:
    ~Variable() override;
    Variable* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    String* GetIdentifier() const { return _pIdentifier; }

    /// Whether the name is already that of the vertex attribute which a coordinate stands for, so
    /// that no other coordinate takes it for its own. Clones start without the mark.
    bool IsAttribute() const { return _isAttribute; }
    void SetAttribute(bool isAttribute) { _isAttribute = isAttribute; }

private:
    friend class Module;
    Variable(Module* module, String* identifier);

    String* _pIdentifier;
    bool _isAttribute = false;
};

/// `expression.field`.
class TOLEN_EXPORT FieldSelection
    : public TSlottedNode<FieldSelection, kClass_FieldSelection, Expression> {
public:
    ~FieldSelection() override;
    FieldSelection* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);
    String* GetField() const { return _pField; }

private:
    friend class Module;
    FieldSelection(Module* module, Expression* expression, String* field);

    std::unique_ptr<Expression> _pExpression;
    String* _pField;
};

/// `expression.function(...)`: the call of a method.
class TOLEN_EXPORT FunctionSelection
    : public TSlottedNode<FunctionSelection, kClass_FunctionSelection, Expression> {
public:
    ~FunctionSelection() override;
    FunctionSelection* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);
    FunctionCall* GetFunction() const { return _pFunction.get(); }
    bool SetFunction(FunctionCall* function);

private:
    friend class Module;
    FunctionSelection(Module* module, Expression* expression, FunctionCall* function);

    std::unique_ptr<Expression> _pExpression;
    std::unique_ptr<FunctionCall> _pFunction;
};

/// `array[index]`.
class TOLEN_EXPORT Subscript : public TSlottedNode<Subscript, kClass_Subscript, Expression> {
public:
    ~Subscript() override;
    Subscript* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Expression* GetArray() const { return _pArray.get(); }
    bool SetArray(Expression* array);
    Expression* GetIndex() const { return _pIndex.get(); }
    bool SetIndex(Expression* index);

private:
    friend class Module;
    Subscript(Module* module, Expression* array, Expression* index);

    std::unique_ptr<Expression> _pArray;
    std::unique_ptr<Expression> _pIndex;
};

/// The call of a function by name or the constructor of a type.
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
    bool SetType(Type* type);
    Optimization GetOptimization() const { return _optimization; }
    void SetOptimization(Optimization optimization) { _optimization = optimization; }

    /// Appends an argument. Null fails an internal check and is not added.
    void AddParameter(Expression* pExpression);
    /// The arguments, owned by the call.
    std::vector<Expression*>& GetParameters() { return _parameters; }
    const std::vector<Expression*>& GetParameters() const { return _parameters; }
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
class TOLEN_EXPORT Condition : public TSlottedNode<Condition, kClass_Condition, Expression> {
public:
    ~Condition() override;
    /// A source that holds a declaration writes its range onto @p target itself.
    Condition* Clone(Module* target) const override;
    bool Equals(const Expression* other) const override;

    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);
    Declaration* GetDeclaration() const { return _pDeclaration.get(); }

private:
    friend class Module;
    Condition(Module* module, Declaration* declaration);
    Condition(Module* module, Expression* expression);

    std::unique_ptr<Expression> _pExpression;
    std::unique_ptr<Declaration> _pDeclaration;
};

} // namespace Tolen::Effects
