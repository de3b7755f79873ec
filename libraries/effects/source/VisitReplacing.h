#pragma once

#include "SyntaxWalk.h"

#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

/// Offers @p visit a visitor that calls @p replace with each Node and its slot, children first.
///
/// A false of @p replace counts wherever it is said, and nothing is replaced after it. The visitor's
/// own answer would be lost on a way up that leads through another node of the same kind.
/// @param stage the class of node that is told along with the visitor
/// @return false when @p visit or @p replace said so
template <class Node, class Replace>
bool VisitReplacing(FastDelegate2<Class, Visitor*, bool>& visit, Class stage,
                    const Replace& replace) {
    using Slot = TIParentSyntax<FamilyOf<Node>>;
    bool goesOn = true;
    auto callback = [&](Node* node, Slot* slot) {
        goesOn = goesOn && replace(node, slot);
        return goesOn;
    };
    using VisitorNode = TVisitorSyntaxDelegate<Node, Slot>;
    VisitorNode visitor(VisitorNode::Delegate::Borrow(callback));
    return visit(stage, &visitor) && goesOn;
}

} // namespace Tolen::Effects
