#pragma once

#include "TolenEffects/Expression.h"
#include "TolenEffects/ParentSyntax.h"
#include "TolenEffects/Statement.h"

#include "TolenCore/Export.h"

namespace Tolen::Effects {

class ClassDefinition;
class FunctionDefinition;
class FunctionParameter;
class FunctionPrototype;
class InterfaceDefinition;
class StructDefinition;
class Type;
class UserType;
class VariableDeclaration;

/// Walks a syntax tree. The operations here visit every child of a node and nothing else; a
/// subclass overrides those for the nodes it cares about and calls the one here before, after or
/// not at all. With `using Visitor::Visit;` it keeps the others in sight.
///
/// True means go on. False stops the walk and passes straight up to whoever began it.
///
/// The const operations read. The others may put another node in the visited one's place through
/// `slot->SetReplacement`: when the visit returns, the old node is deleted with all it owns, so the
/// new one must not hang below it, and the new one is visited in turn with the same slot. The
/// length of a vector must not change while it is walked.
///
/// Not walked are: structures, stand-alone statements and expressions of a module, coordinates and
/// outputs of a class, array lengths and the constructed types of calls.
class TOLEN_EXPORT Visitor {
public:
    /// How the walk follows lines of BinaryOperator nodes through their left operands and of
    /// SelectionStatement nodes through their else branches, which may be of any length.
    enum ChainWalk {
        /// Visit is called for each node, so that overrides for these two see all of them; the
        /// recursion is then as deep as the line is long.
        kChainWalk_EachNode,
        /// Long lines are followed without recursion, and of their nodes Visit is called for the
        /// first only. For visitors that override Visit for neither of the two.
        kChainWalk_Iterated,
    };

    explicit Visitor(ChainWalk chainWalk = kChainWalk_EachNode) : _chainWalk(chainWalk) {}
    virtual ~Visitor();

    virtual bool Visit(const Module* node);
    virtual bool Visit(Module* node);
    virtual bool Visit(const InterfaceDefinition* node);
    virtual bool Visit(InterfaceDefinition* node);
    virtual bool Visit(const ClassDefinition* node);
    virtual bool Visit(ClassDefinition* node);
    virtual bool Visit(const StructDefinition* node);
    virtual bool Visit(StructDefinition* node);
    virtual bool Visit(const FunctionParameter* node);
    virtual bool Visit(FunctionParameter* node);
    virtual bool Visit(const FunctionDefinition* node);
    virtual bool Visit(FunctionDefinition* node);
    virtual bool Visit(const FunctionPrototype* node);
    virtual bool Visit(FunctionPrototype* node);
    virtual bool Visit(const VariableDeclaration* node);
    virtual bool Visit(VariableDeclaration* node);
    virtual bool Visit(const UserType* node);
    virtual bool Visit(UserType* node);
    virtual bool Visit(const Type* node);
    virtual bool Visit(Type* node);
    virtual bool Visit(const JumpStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(JumpStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const ForStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(ForStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const DoWhileStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(DoWhileStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const WhileStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(WhileStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const SelectionStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(SelectionStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const CompoundStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(CompoundStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const ExpressionStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(ExpressionStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const DeclarationStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(DeclarationStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const EmptyStatement* node, TParentSyntaxConst<Statement>* slot);
    virtual bool Visit(EmptyStatement* node, TIParentSyntax<Statement>* slot);
    virtual bool Visit(const Condition* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(Condition* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const FunctionCall* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(FunctionCall* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const Subscript* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(Subscript* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const FunctionSelection* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(FunctionSelection* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const FieldSelection* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(FieldSelection* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const Variable* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(Variable* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const Conditional* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(Conditional* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const BinaryOperator* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(BinaryOperator* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const PostOperator* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(PostOperator* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const UnaryOperator* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(UnaryOperator* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const FloatConstant* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(FloatConstant* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const IntConstant* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(IntConstant* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const BoolConstant* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(BoolConstant* node, TIParentSyntax<Expression>* slot);
    virtual bool Visit(const Assignment* node, TParentSyntaxConst<Expression>* slot);
    virtual bool Visit(Assignment* node, TIParentSyntax<Expression>* slot);

private:
    ChainWalk _chainWalk;
};

} // namespace Tolen::Effects
