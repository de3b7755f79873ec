#include "TolenEffects/Visitor.h"

#include "SyntaxWalk.h"

namespace Tolen::Effects {

namespace {

/// Shorter chains are walked node by node, which needs no memory from the heap.
constexpr int kShortChain = 32;

/// Whether more than kShortChain nodes of one class follow each other by @p next from @p node on.
template <class Node, class Base>
bool IsLongChain(const Node* node, Base* (Node::*next)() const) {
    for (int count = 0; count < kShortChain; ++count) {
        node = AsExactly<Node>((node->*next)());
        if (node == nullptr) {
            return false;
        }
    }
    return true;
}

// The children of each node in the order of the walk, for both kinds of walk. `Of` gives the node as
// the walk may touch it.

template <class W, class Node>
using Of = typename W::template Pointer<Node>;

template <class W, class List>
bool WalkPlain(const W& walk, const List& children) {
    for (auto* child : children) {
        if (!walk.Plain(static_cast<Of<W, std::remove_pointer_t<decltype(child)>>>(child))) {
            return false;
        }
    }
    return true;
}

template <class W>
bool Walk(const W& walk, Of<W, Module> node) {
    for (DeclarationStatement* child : node->GetVariableDeclarations()) {
        if (!walk.FixedChild(node, static_cast<Of<W, DeclarationStatement>>(child))) {
            return false;
        }
    }
    if (!WalkPlain(walk, node->GetFunctionDeclarations()) ||
        !WalkPlain(walk, node->GetFunctionDefinitions()) ||
        !WalkPlain(walk, node->GetClassDefinitions())) {
        return false;
    }
    for (const auto& [name, child] : node->GetInterfacesByName()) {
        if (!walk.Plain(static_cast<Of<W, InterfaceDefinition>>(child))) {
            return false;
        }
    }
    return true;
}

template <class W>
bool Walk(const W& walk, Of<W, InterfaceDefinition> node) {
    return WalkPlain(walk, node->GetMemberFunctions());
}

template <class W>
bool Walk(const W& walk, Of<W, ClassDefinition> node) {
    return WalkPlain(walk, node->GetMemberFunctions()) &&
           WalkPlain(walk, node->GetMemberVariables());
}

template <class W>
bool Walk(const W& walk, Of<W, StructDefinition> node) {
    return WalkPlain(walk, node->GetMemberVariables());
}

template <class W>
bool Walk(const W& walk, Of<W, FunctionDefinition> node) {
    return walk.Plain(Of<W, FunctionPrototype>(node->GetFunctionPrototype())) &&
           walk.FixedChild(node, Of<W, CompoundStatement>(node->GetCompoundStatement()));
}

template <class W>
bool Walk(const W& walk, Of<W, FunctionPrototype> node) {
    return walk.Plain(Of<W, Type>(node->GetReturnType())) &&
           WalkPlain(walk, node->GetParameters());
}

template <class W>
bool Walk(const W& walk, Of<W, FunctionParameter> node) {
    return walk.Plain(Of<W, Type>(node->GetType()));
}

template <class W>
bool Walk(const W& walk, Of<W, VariableDeclaration> node) {
    return walk.Plain(Of<W, Type>(node->GetType())) &&
           walk.Child(node, node->GetInitializer(), &VariableDeclaration::SetInitializer);
}

template <class W>
bool Walk(const W& walk, Of<W, JumpStatement> node) {
    return node->GetType() != kJumpType_Return ||
           walk.Child(node, node->GetExpression(), &JumpStatement::SetExpression);
}

template <class W>
bool Walk(const W& walk, Of<W, ForStatement> node) {
    return walk.Child(node, node->GetInitialization(), &ForStatement::SetInitialization) &&
           walk.template TypedChild<ReplaceConditionTyped<ForStatement>>(node,
                                                                         node->GetCondition()) &&
           walk.Child(node, node->GetIteration(), &ForStatement::SetIteration) &&
           walk.Child(node, node->GetStatement(), &ForStatement::SetStatement);
}

template <class W>
bool Walk(const W& walk, Of<W, DoWhileStatement> node) {
    return walk.Child(node, node->GetStatement(), &DoWhileStatement::SetStatement) &&
           walk.Child(node, node->GetExpression(), &DoWhileStatement::SetExpression);
}

template <class W>
bool Walk(const W& walk, Of<W, WhileStatement> node) {
    return walk.template TypedChild<ReplaceConditionTyped<WhileStatement>>(node,
                                                                           node->GetCondition()) &&
           walk.Child(node, node->GetStatement(), &WhileStatement::SetStatement);
}

template <class W>
bool Walk(const W& walk, Of<W, SelectionStatement> node) {
    return walk.Child(node, node->GetCondition(), &SelectionStatement::SetCondition) &&
           walk.Child(node, node->GetThen(), &SelectionStatement::SetThen) &&
           walk.Child(node, node->GetElse(), &SelectionStatement::SetElse);
}

template <class W>
bool Walk(const W& walk, Of<W, CompoundStatement> node) {
    return walk.Elements(node, node->GetStatements());
}

template <class W>
bool Walk(const W& walk, Of<W, ExpressionStatement> node) {
    return walk.Child(node, node->GetExpression(), &ExpressionStatement::SetExpression);
}

template <class W>
bool Walk(const W& walk, Of<W, DeclarationStatement> node) {
    return walk.Plain(Of<W, VariableDeclaration>(node->GetDeclaration()));
}

template <class W>
bool Walk(const W& walk, Of<W, Condition> node) {
    if (node->GetExpression() != nullptr) {
        return walk.Child(node, node->GetExpression(), &Condition::SetExpression);
    }
    return walk.Plain(Of<W, Declaration>(node->GetDeclaration()));
}

template <class W>
bool Walk(const W& walk, Of<W, FunctionCall> node) {
    return walk.Elements(node, node->GetParameters());
}

template <class W>
bool Walk(const W& walk, Of<W, Subscript> node) {
    return walk.Child(node, node->GetArray(), &Subscript::SetArray) &&
           walk.Child(node, node->GetIndex(), &Subscript::SetIndex);
}

template <class W>
bool Walk(const W& walk, Of<W, FunctionSelection> node) {
    return walk.Child(node, node->GetExpression(), &FunctionSelection::SetExpression) &&
           walk.template TypedChild<ReplaceFunction<FunctionSelection>>(node, node->GetFunction());
}

template <class W>
bool Walk(const W& walk, Of<W, FieldSelection> node) {
    return walk.Child(node, node->GetExpression(), &FieldSelection::SetExpression);
}

template <class W>
bool Walk(const W& walk, Of<W, Conditional> node) {
    return walk.Child(node, node->GetCondition(), &Conditional::SetCondition) &&
           walk.Child(node, node->GetTrue(), &Conditional::SetTrue) &&
           walk.Child(node, node->GetFalse(), &Conditional::SetFalse);
}

template <class W>
bool Walk(const W& walk, Of<W, BinaryOperator> node) {
    return walk.Child(node, node->GetLeft(), &BinaryOperator::SetLeft) &&
           walk.Child(node, node->GetRight(), &BinaryOperator::SetRight);
}

template <class W>
bool Walk(const W& walk, Of<W, Assignment> node) {
    return walk.Child(node, node->GetLeft(), &Assignment::SetLeft) &&
           walk.Child(node, node->GetRight(), &Assignment::SetRight);
}

template <class W>
bool Walk(const W& walk, Of<W, UnaryOperator> node) {
    return walk.Child(node, node->GetExpression(), &UnaryOperator::SetExpression);
}

} // namespace

Visitor::~Visitor() = default;

#define TOLEN_WALK(Node)                                                                           \
    bool Visitor::Visit(const Node* node) {                                                        \
        return Walk(ReadWalk(this), node);                                                         \
    }                                                                                              \
    bool Visitor::Visit(Node* node) {                                                              \
        return Walk(ReplaceWalk(this, nullptr), node);                                             \
    }
TOLEN_WALK(Module)
TOLEN_WALK(InterfaceDefinition)
TOLEN_WALK(ClassDefinition)
TOLEN_WALK(StructDefinition)
TOLEN_WALK(FunctionParameter)
TOLEN_WALK(FunctionDefinition)
TOLEN_WALK(FunctionPrototype)
TOLEN_WALK(VariableDeclaration)
#undef TOLEN_WALK

#define TOLEN_WALK(Node, Family)                                                                   \
    bool Visitor::Visit(const Node* node, TParentSyntaxConst<Family>*) {                           \
        return Walk(ReadWalk(this), node);                                                         \
    }                                                                                              \
    bool Visitor::Visit(Node* node, TIParentSyntax<Family>* slot) {                                \
        return Walk(ReplaceWalk(this, slot), node);                                                \
    }
TOLEN_WALK(JumpStatement, Statement)
TOLEN_WALK(ForStatement, Statement)
TOLEN_WALK(DoWhileStatement, Statement)
TOLEN_WALK(WhileStatement, Statement)
TOLEN_WALK(CompoundStatement, Statement)
TOLEN_WALK(ExpressionStatement, Statement)
TOLEN_WALK(DeclarationStatement, Statement)
TOLEN_WALK(Condition, Expression)
TOLEN_WALK(FunctionCall, Expression)
TOLEN_WALK(Subscript, Expression)
TOLEN_WALK(FunctionSelection, Expression)
TOLEN_WALK(FieldSelection, Expression)
TOLEN_WALK(Conditional, Expression)
TOLEN_WALK(PostOperator, Expression)
TOLEN_WALK(UnaryOperator, Expression)
TOLEN_WALK(Assignment, Expression)
#undef TOLEN_WALK

#define TOLEN_WALK(Node, Family, next)                                                             \
    bool Visitor::Visit(const Node* node, TParentSyntaxConst<Family>*) {                           \
        const ReadWalk walk(this);                                                                 \
        return _chainWalk == kChainWalk_Iterated && IsLongChain(node, &Node::next)                 \
                   ? walk.Chain(node)                                                              \
                   : Walk(walk, node);                                                             \
    }                                                                                              \
    bool Visitor::Visit(Node* node, TIParentSyntax<Family>* slot) {                                \
        const ReplaceWalk walk(this, slot);                                                        \
        return _chainWalk == kChainWalk_Iterated && IsLongChain(node, &Node::next)                 \
                   ? walk.Chain(node)                                                              \
                   : Walk(walk, node);                                                             \
    }
TOLEN_WALK(BinaryOperator, Expression, GetLeft)
TOLEN_WALK(SelectionStatement, Statement, GetElse)
#undef TOLEN_WALK

#define TOLEN_LEAF(Node)                                                                           \
    bool Visitor::Visit(const Node*) {                                                             \
        return true;                                                                               \
    }                                                                                              \
    bool Visitor::Visit(Node*) {                                                                   \
        return true;                                                                               \
    }
TOLEN_LEAF(UserType)
TOLEN_LEAF(Type)
#undef TOLEN_LEAF

#define TOLEN_LEAF(Node, Family)                                                                   \
    bool Visitor::Visit(const Node*, TParentSyntaxConst<Family>*) {                                \
        return true;                                                                               \
    }                                                                                              \
    bool Visitor::Visit(Node*, TIParentSyntax<Family>*) {                                          \
        return true;                                                                               \
    }
TOLEN_LEAF(EmptyStatement, Statement)
TOLEN_LEAF(Variable, Expression)
TOLEN_LEAF(FloatConstant, Expression)
TOLEN_LEAF(IntConstant, Expression)
TOLEN_LEAF(BoolConstant, Expression)
#undef TOLEN_LEAF

} // namespace Tolen::Effects
