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
    // The side that has nowhere left to go is known as a whole, and moves.
    if (!found && _rank >= lower->_rank) {
        if (down.open.empty()) {
            _rank = lower->_rank - 1;
            _Lower(down.met);
        } else {
            lower->_rank = _rank + 1;
            _Raise(up.met);
        }
    }
    return found;
}

/// Ranks what stands below @p nodes lower than these, of which one has just been lowered. They are
/// all that stands below it.
void StructureNode::_Lower(std::vector<StructureNode*>& nodes) {
    // By the ranks as they were, every node comes behind those above it, and is lowered by then.
    std::sort(nodes.begin() + 1, nodes.end(), [](const StructureNode* a, const StructureNode* b) {
        return a->_rank > b->_rank;
    });
    std::vector<StructureNode*> below;
    for (const StructureNode* node : nodes) {
        below.clear();
        node->CollectNodesBelow(below);
        for (StructureNode* lower : below) {
            lower->_rank = std::min(lower->_rank, node->_rank - 1);
        }
    }
}

void StructureNode::_Raise(std::vector<StructureNode*>& nodes) {
    std::sort(nodes.begin() + 1, nodes.end(), [](const StructureNode* a, const StructureNode* b) {
        return a->_rank < b->_rank;
    });
    std::vector<StructureNode*> above;
    for (const StructureNode* node : nodes) {
        above.clear();
        node->CollectNodesAbove(above);
        for (StructureNode* upper : above) {
            upper->_rank = std::max(upper->_rank, node->_rank + 1);
        }
    }
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
