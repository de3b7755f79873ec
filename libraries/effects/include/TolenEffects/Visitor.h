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

    /// A visitor that follows long lines of nodes as @p chainWalk says.
    explicit Visitor(ChainWalk chainWalk = kChainWalk_EachNode) : _chainWalk(chainWalk) {}
    virtual ~Visitor();

    /// Visits the global variables, the prototypes and definitions of functions, the classes, and
    /// the interfaces that lookups find, by name.
    virtual bool Visit(const Module* node);
    /// @copydoc Visit(const Module*)
    virtual bool Visit(Module* node);
    /// Visits the methods.
    virtual bool Visit(const InterfaceDefinition* node);
    /// @copydoc Visit(const InterfaceDefinition*)
    virtual bool Visit(InterfaceDefinition* node);
    /// Visits the methods, then the members and inputs.
    virtual bool Visit(const ClassDefinition* node);
    /// @copydoc Visit(const ClassDefinition*)
    virtual bool Visit(ClassDefinition* node);
    /// Visits the members.
    virtual bool Visit(const StructDefinition* node);
    /// @copydoc Visit(const StructDefinition*)
    virtual bool Visit(StructDefinition* node);
    /// Visits the type.
    virtual bool Visit(const FunctionParameter* node);
    /// @copydoc Visit(const FunctionParameter*)
    virtual bool Visit(FunctionParameter* node);
    /// Visits the head, then the body.
    virtual bool Visit(const FunctionDefinition* node);
    /// @copydoc Visit(const FunctionDefinition*)
    virtual bool Visit(FunctionDefinition* node);
    /// Visits the return type, then the parameters.
    virtual bool Visit(const FunctionPrototype* node);
    /// @copydoc Visit(const FunctionPrototype*)
    virtual bool Visit(FunctionPrototype* node);
    /// Visits the type, then the initializer.
    virtual bool Visit(const VariableDeclaration* node);
    /// @copydoc Visit(const VariableDeclaration*)
    virtual bool Visit(VariableDeclaration* node);
    /// Has no children to visit. @return true
    virtual bool Visit(const UserType* node);
    /// @copydoc Visit(const UserType*)
    virtual bool Visit(UserType* node);
    /// Has no children to visit. @return true
    virtual bool Visit(const Type* node);
    /// @copydoc Visit(const Type*)
    virtual bool Visit(Type* node);
    /// Visits the value of a `return`.
    virtual bool Visit(const JumpStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const JumpStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(JumpStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the initialization, the condition, the iteration, then the body.
    virtual bool Visit(const ForStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const ForStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(ForStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the body, then the expression.
    virtual bool Visit(const DoWhileStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const DoWhileStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(DoWhileStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the condition, then the body.
    virtual bool Visit(const WhileStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const WhileStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(WhileStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the condition, the branch where it holds, then the else branch.
    virtual bool Visit(const SelectionStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const SelectionStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(SelectionStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the statements in order.
    virtual bool Visit(const CompoundStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const CompoundStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(CompoundStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the expression.
    virtual bool Visit(const ExpressionStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const ExpressionStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(ExpressionStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the declaration.
    virtual bool Visit(const DeclarationStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const DeclarationStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(DeclarationStatement* node, TIParentSyntax<Statement>* slot);
    /// Has no children to visit. @return true
    virtual bool Visit(const EmptyStatement* node, TParentSyntaxConst<Statement>* slot);
    /// @copydoc Visit(const EmptyStatement*, TParentSyntaxConst<Statement>*)
    virtual bool Visit(EmptyStatement* node, TIParentSyntax<Statement>* slot);
    /// Visits the expression or the declaration.
    virtual bool Visit(const Condition* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const Condition*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(Condition* node, TIParentSyntax<Expression>* slot);
    /// Visits the arguments in order.
    virtual bool Visit(const FunctionCall* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const FunctionCall*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(FunctionCall* node, TIParentSyntax<Expression>* slot);
    /// Visits the array, then the index.
    virtual bool Visit(const Subscript* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const Subscript*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(Subscript* node, TIParentSyntax<Expression>* slot);
    /// Visits what has the method, then the call.
    virtual bool Visit(const FunctionSelection* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const FunctionSelection*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(FunctionSelection* node, TIParentSyntax<Expression>* slot);
    /// Visits what has the field.
    virtual bool Visit(const FieldSelection* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const FieldSelection*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(FieldSelection* node, TIParentSyntax<Expression>* slot);
    /// Has no children to visit. @return true
    virtual bool Visit(const Variable* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const Variable*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(Variable* node, TIParentSyntax<Expression>* slot);
    /// Visits the condition, the value where it holds, then the other one.
    virtual bool Visit(const Conditional* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const Conditional*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(Conditional* node, TIParentSyntax<Expression>* slot);
    /// Visits the left operand, then the right one.
    virtual bool Visit(const BinaryOperator* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const BinaryOperator*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(BinaryOperator* node, TIParentSyntax<Expression>* slot);
    /// Visits the operand.
    virtual bool Visit(const PostOperator* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const PostOperator*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(PostOperator* node, TIParentSyntax<Expression>* slot);
    /// Visits the operand.
    virtual bool Visit(const UnaryOperator* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const UnaryOperator*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(UnaryOperator* node, TIParentSyntax<Expression>* slot);
    /// Has no children to visit. @return true
    virtual bool Visit(const FloatConstant* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const FloatConstant*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(FloatConstant* node, TIParentSyntax<Expression>* slot);
    /// Has no children to visit. @return true
    virtual bool Visit(const IntConstant* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const IntConstant*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(IntConstant* node, TIParentSyntax<Expression>* slot);
    /// Has no children to visit. @return true
    virtual bool Visit(const BoolConstant* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const BoolConstant*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(BoolConstant* node, TIParentSyntax<Expression>* slot);
    /// Visits what is assigned to, then what is assigned.
    virtual bool Visit(const Assignment* node, TParentSyntaxConst<Expression>* slot);
    /// @copydoc Visit(const Assignment*, TParentSyntaxConst<Expression>*)
    virtual bool Visit(Assignment* node, TIParentSyntax<Expression>* slot);

private:
    ChainWalk _chainWalk;
};

} // namespace Tolen::Effects
