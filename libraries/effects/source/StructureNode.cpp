#include "StructureNode.h"

#include <algorithm>
#include <cstddef>

namespace Tolen::Effects {

struct StructureNode::Side {
    bool StructureNode::*mark;      ///< of the nodes met by this side
    bool StructureNode::*markOther; ///< of those met by the other one
    void (StructureNode::*collect)(std::vector<StructureNode*>&) const;
    std::vector<StructureNode*> open;
    std::vector<StructureNode*> met;
    std::size_t cost = 0;

    void Meet(StructureNode* node) {
        if (!(node->*mark)) {
            node->*mark = true;
            met.push_back(node);
            open.push_back(node);
        }
    }

    /// Goes on from one node. @return whether this leads to a node that the other side has met
    bool Step() {
        const StructureNode* const node = open.back();
        open.pop_back();
        std::vector<StructureNode*> next;
        (node->*collect)(next);
        cost += next.size() + 1;
        for (StructureNode* reached : next) {
            if (reached->*markOther) {
                return true;
            }
            Meet(reached);
        }
        return false;
    }
};

bool StructureNode::DependsOn(StructureNode* lower) {
    if (lower == this) {
        return true;
    }
    Side down{&StructureNode::_isMetBelow,
              &StructureNode::_isMetAbove,
              &StructureNode::CollectNodesBelow,
              {},
              {}};
    Side up{&StructureNode::_isMetAbove,
            &StructureNode::_isMetBelow,
            &StructureNode::CollectNodesAbove,
            {},
            {}};
    down.Meet(this);
    up.Meet(lower);
    // In step, by cost: when one side has nowhere left to go there is no way between the two.
    bool found = false;
    while (!found && !down.open.empty() && !up.open.empty()) {
        found = down.cost <= up.cost ? down.Step() : up.Step();
    }
    for (const Side* side : {&down, &up}) {
        for (StructureNode* node : side->met) {
            node->*(side->mark) = false;
        }
    }
    return found;
}

void StructureNode::MarkHeard() {
    if (_isHeard) {
        return;
    }
    std::vector<StructureNode*> open{this};
    while (!open.empty()) {
        StructureNode* const node = open.back();
        open.pop_back();
        if (!node->_isHeard) {
            node->_isHeard = true;
            node->CollectNodesBelow(open);
        }
    }
}

void StructureNode::_MarkHeardBelow(StructureNode* node) {
    // Those above may not have looked at a node that led nowhere.
    _isHeard = _isHeard || _IsHeardAbove();
    if (_isHeard) {
        node->MarkHeard();
    }
}

bool StructureNode::_IsHeardAbove() const {
    std::vector<StructureNode*> above;
    CollectNodesAbove(above);
    return std::any_of(above.begin(), above.end(),
                       [](const StructureNode* node) { return node->_isHeard; });
}

} // namespace Tolen::Effects
