#pragma once

#include "TolenEffects/Module.h"
#include "TolenEffects/ParentSyntax.h"
#include "TolenEffects/Visitor.h"

#include <deque>
#include <type_traits>
#include <vector>

/// The two kinds of walk over the children of a node. Both offer the same steps, so that the order
/// of the children is written once for both. Null children are passed over.

namespace Tolen::Effects {

/// Expression or Statement, whichever T is.
template <class T>
using FamilyOf = std::conditional_t<std::is_base_of_v<Expression, T>, Expression, Statement>;

/// @p node as a T if it is exactly one, otherwise null.
template <class T>
T* AsExactly(Syntax* node) {
    return node != nullptr && node->GetClass() == T::ClassStatic() ? static_cast<T*>(node)
                                                                   : nullptr;
}

template <class T>
const T* AsExactly(const Syntax* node) {
    return AsExactly<T>(const_cast<Syntax*>(node));
}

/// The walk that reads.
class ReadWalk {
public:
    template <class Node>
    using Pointer = const Node*;

    explicit ReadWalk(Visitor* visitor) : _pVisitor(visitor) {}

    /// Visits a child that takes no slot.
    template <class T>
    bool Plain(const T* child) const {
        return child == nullptr || child->AcceptVisitor(_pVisitor);
    }

    /// Visits an expression or a statement below @p parent. What the walk that replaces needs to
    /// know of the child doesn't matter here.
    template <class T, class... How>
    bool Child(const Syntax* parent, const T* child, const How&...) const {
        if (child == nullptr) {
            return true;
        }
        TParentSyntaxConst<FamilyOf<T>> slot(parent);
        return child->AcceptVisitor(_pVisitor, &slot);
    }

    template <class Policy, class T>
    bool TypedChild(const Syntax* parent, const T* child) const {
        return Child(parent, child);
    }

    template <class T>
    bool FixedChild(const Syntax* parent, const T* child) const {
        return Child(parent, child);
    }

    template <class T>
    bool Elements(const Syntax* parent, const std::vector<T*>& children) const {
        for (const T* child : children) {
            if (!Child(parent, child)) {
                return false;
            }
        }
        return true;
    }

    /// The operators below @p first along the left operands, without recursion.
    bool Chain(const BinaryOperator* first) const {
        std::vector<const BinaryOperator*> chain;
        for (const BinaryOperator* node = first; node != nullptr;
             node = AsExactly<BinaryOperator>(node->GetLeft())) {
            chain.push_back(node);
        }
        if (!Child(chain.back(), chain.back()->GetLeft())) {
            return false;
        }
        for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
            if (!Child(*it, (*it)->GetRight())) {
                return false;
            }
        }
        return true;
    }

    /// The same for the selections along the else branches.
    bool Chain(const SelectionStatement* first) const {
        for (const SelectionStatement* node = first;;) {
            if (!Child(node, node->GetCondition()) || !Child(node, node->GetThen())) {
                return false;
            }
            const SelectionStatement* next = AsExactly<SelectionStatement>(node->GetElse());
            if (next == nullptr) {
                return Child(node, node->GetElse());
            }
            node = next;
        }
    }

private:
    Visitor* _pVisitor; ///< borrowed
};

/// The walk that may replace what it visits. Its steps are few frames deep, since they are on the
/// stack once for each level of the tree.
class ReplaceWalk {
public:
    template <class Node>
    using Pointer = Node*;

    /// @param slot through which the parent of the children was reached, null at the top
    ReplaceWalk(Visitor* visitor, IParentSyntax* slot) : _pVisitor(visitor), _pSlot(slot) {}

    template <class T>
    bool Plain(T* child) const {
        return child == nullptr || child->AcceptVisitor(_pVisitor);
    }

    /// Visits a child that @p setter replaces.
    template <class Node, class Setter, class T>
    bool Child(Node* parent, T* child, bool (Setter::*setter)(T*)) const {
        if (child == nullptr) {
            return true;
        }
        const typename TParentSyntaxDelegate<T>::Setter bound(parent, setter);
        TParentSyntaxDelegate<T> slot(parent, _pSlot, &bound);
        return child->AcceptVisitor(_pVisitor, &slot) && _ApplyPending(&slot);
    }

    /// Visits a child of a narrower type than Expression.
    template <class Policy, class T>
    bool TypedChild(typename Policy::Parent* parent, T* child) const {
        if (child == nullptr) {
            return true;
        }
        ParentExpressionPolicy<Policy> slot(parent, _pSlot);
        return child->AcceptVisitor(_pVisitor, &slot) && _ApplyPending<Expression>(&slot);
    }

    /// Visits a child that stays.
    template <class T>
    bool FixedChild(const Syntax*, T* child) const {
        return child == nullptr ||
               child->AcceptVisitor(_pVisitor, TParentSyntaxNull<FamilyOf<T>>::GetInstance());
    }

    template <class T>
    bool Elements(const Syntax*, std::vector<T*>& children) const {
        auto position = children.begin();
        for (const auto end = children.end(); position != end; ++position) {
            if (!Element<T>(position)) {
                return false;
            }
        }
        return true;
    }

    /// Visits one element of a vector.
    template <class T>
    bool Element(typename std::vector<T*>::iterator& position) const {
        if (*position == nullptr) {
            return true;
        }
        TParentSyntaxVectorElement<T> slot(&position);
        return (*position)->AcceptVisitor(_pVisitor, &slot) && _ApplyPending(&slot);
    }

    /// The operators below @p first along the left operands, without recursion. Their slots are all
    /// there while the last left operand is visited, since each is linked to the one above.
    bool Chain(BinaryOperator* first) const {
        std::deque<Link<BinaryOperator, Expression>> links;
        IParentSyntax* reached = _pSlot;
        for (BinaryOperator* node = first; node != nullptr;
             node = AsExactly<BinaryOperator>(node->GetLeft())) {
            reached = &links.emplace_back(node, reached, &BinaryOperator::SetLeft).slot;
        }
        // cppcheck-suppress containerOutOfBounds ; there is one for the first node at least
        auto& last = links.back();
        if (Expression* left = last.node->GetLeft();
            left != nullptr &&
            (!left->AcceptVisitor(_pVisitor, &last.slot) || !_ApplyPending(&last.slot))) {
            return false;
        }
        while (true) {
            BinaryOperator* node = links.back().node;
            const ReplaceWalk below(_pVisitor, links.back().slot.GetParentSlot());
            if (!below.Child(node, node->GetRight(), &BinaryOperator::SetRight)) {
                return false;
            }
            links.pop_back();
            if (links.empty()) {
                return true;
            }
            if (!_ApplyPending(&links.back().slot)) {
                return false;
            }
        }
    }

    /// The same for the selections along the else branches.
    bool Chain(SelectionStatement* first) const {
        std::deque<Link<SelectionStatement, Statement>> links;
        IParentSyntax* reached = _pSlot;
        for (SelectionStatement* node = first; node != nullptr;
             node = AsExactly<SelectionStatement>(node->GetElse())) {
            const ReplaceWalk below(_pVisitor, reached);
            if (!below.Child(node, node->GetCondition(), &SelectionStatement::SetCondition) ||
                !below.Child(node, node->GetThen(), &SelectionStatement::SetThen)) {
                return false;
            }
            reached = &links.emplace_back(node, reached, &SelectionStatement::SetElse).slot;
        }
        // cppcheck-suppress containerOutOfBounds ; there is one for the first node at least
        auto& last = links.back();
        if (Statement* otherwise = last.node->GetElse();
            otherwise != nullptr &&
            (!otherwise->AcceptVisitor(_pVisitor, &last.slot) || !_ApplyPending(&last.slot))) {
            return false;
        }
        for (links.pop_back(); !links.empty(); links.pop_back()) {
            if (!_ApplyPending(&links.back().slot)) {
                return false;
            }
        }
        return true;
    }

private:
    /// One node of a chain with the slot of the next.
    template <class Node, class Family>
    struct Link {
        Link(Node* node_, IParentSyntax* reached, bool (Node::*set)(Family*))
            : node(node_), setter(node_, set), slot(node_, reached, &setter) {}
        Link(const Link&) = delete;

        Node* node;
        typename TParentSyntaxDelegate<Family>::Setter setter;
        TParentSyntaxDelegate<Family> slot;
    };

    /// Puts pending replacements in place and visits them, as long as there are any.
    template <class T>
    bool _ApplyPending(TIParentSyntax<T>* slot) const {
        while (slot->HasReplacement()) {
            T* replacement = slot->GetReplacement();
            if (!slot->ApplyReplacement() || !replacement->AcceptVisitor(_pVisitor, slot)) {
                return false;
            }
        }
        return true;
    }

    Visitor* _pVisitor;    ///< borrowed
    IParentSyntax* _pSlot; ///< borrowed
};

} // namespace Tolen::Effects
