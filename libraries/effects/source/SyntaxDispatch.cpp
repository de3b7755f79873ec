#include "TolenEffects/Module.h"
#include "TolenEffects/Visitor.h"

/// The way from a node to the visit of its class.

namespace Tolen::Effects {

template <class Node, Class kClass, class Family, class Base>
bool TSlottedNode<Node, kClass, Family, Base>::AcceptVisitor(
    Visitor* visitor, TParentSyntaxConst<Family>* slot) const {
    return visitor->Visit(static_cast<const Node*>(this), slot);
}

template <class Node, Class kClass, class Family, class Base>
bool TSlottedNode<Node, kClass, Family, Base>::AcceptVisitor(Visitor* visitor,
                                                             TIParentSyntax<Family>* slot) {
    return visitor->Visit(static_cast<Node*>(this), slot);
}

template <class Node, Class kClass, class Base>
bool TPlainNode<Node, kClass, Base>::AcceptVisitor(Visitor* visitor) const {
    return visitor->Visit(static_cast<const Node*>(this));
}

template <class Node, Class kClass, class Base>
bool TPlainNode<Node, kClass, Base>::AcceptVisitor(Visitor* visitor) {
    return visitor->Visit(static_cast<Node*>(this));
}

#define TOLEN_EXPRESSION(node) template class TSlottedNode<node, kClass_##node, Expression>;
TOLEN_EXPRESSION(Assignment)
TOLEN_EXPRESSION(BinaryOperator)
TOLEN_EXPRESSION(BoolConstant)
TOLEN_EXPRESSION(Condition)
TOLEN_EXPRESSION(Conditional)
TOLEN_EXPRESSION(FieldSelection)
TOLEN_EXPRESSION(FloatConstant)
TOLEN_EXPRESSION(FunctionCall)
TOLEN_EXPRESSION(FunctionSelection)
TOLEN_EXPRESSION(IntConstant)
TOLEN_EXPRESSION(Subscript)
TOLEN_EXPRESSION(UnaryOperator)
TOLEN_EXPRESSION(Variable)
#undef TOLEN_EXPRESSION
template class TSlottedNode<PostOperator, kClass_PostOperator, Expression, UnaryOperator>;

#define TOLEN_STATEMENT(node) template class TSlottedNode<node, kClass_##node, Statement>;
TOLEN_STATEMENT(CompoundStatement)
TOLEN_STATEMENT(DeclarationStatement)
TOLEN_STATEMENT(EmptyStatement)
TOLEN_STATEMENT(ExpressionStatement)
TOLEN_STATEMENT(JumpStatement)
TOLEN_STATEMENT(SelectionStatement)
#undef TOLEN_STATEMENT
template class TSlottedNode<DoWhileStatement, kClass_DoWhileStatement, Statement,
                            IterationStatement>;
template class TSlottedNode<ForStatement, kClass_ForStatement, Statement, IterationStatement>;
template class TSlottedNode<WhileStatement, kClass_WhileStatement, Statement, IterationStatement>;

#define TOLEN_DECLARATION(node) template class TPlainNode<node, kClass_##node, Declaration>;
TOLEN_DECLARATION(ClassDefinition)
TOLEN_DECLARATION(FunctionDefinition)
TOLEN_DECLARATION(FunctionPrototype)
TOLEN_DECLARATION(InterfaceDefinition)
TOLEN_DECLARATION(StructDefinition)
TOLEN_DECLARATION(VariableDeclaration)
#undef TOLEN_DECLARATION

#define TOLEN_BARE_NODE(node)                                                                      \
    bool node::AcceptVisitor(Visitor* visitor) const {                                             \
        return visitor->Visit(this);                                                               \
    }                                                                                              \
    bool node::AcceptVisitor(Visitor* visitor) {                                                   \
        return visitor->Visit(this);                                                               \
    }
TOLEN_BARE_NODE(FunctionParameter)
TOLEN_BARE_NODE(Module)
TOLEN_BARE_NODE(Type)
TOLEN_BARE_NODE(UserType)
#undef TOLEN_BARE_NODE

} // namespace Tolen::Effects
