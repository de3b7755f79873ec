#include "StructureChange.h"

#include <cstddef>

namespace Tolen::Effects {

bool StructureChange::Run(StructureNode* origin, StructureOrigin kind) {
    StructureChange change;
    change._Collect(origin);
    const bool good = change._Tell(kind);
    change._UpdateHeard();
    return good;
}

void StructureChange::UpdateCompleteness(StructureNode* node) {
    for (StructureNode* turned : _UpdateCompleteness(node)) {
        turned->_isMetAbove = false;
    }
}

std::vector<StructureNode*> StructureChange::_UpdateCompleteness(StructureNode* origin) {
    // What one change does to completeness goes in one direction only: nobody turns twice.
    std::vector<StructureNode*> turned;
    std::vector<StructureNode*> open{origin};
    while (!open.empty()) {
        StructureNode* const node = open.back();
        open.pop_back();
        const bool isComplete = node->_IsCompleteHere();
        if (isComplete == node->_isCompleteNode) {
            continue;
        }
        node->_isCompleteNode = isComplete;
        node->_OnChangeCompleteness(isComplete);
        node->_isMetAbove = true;
        turned.push_back(node);
        node->CollectNodesAbove(open);
    }
    return turned;
}

void StructureChange::_Collect(StructureNode* origin) {
    const std::vector<StructureNode*> turned = _UpdateCompleteness(origin);

    // A walk by depth leaves a node when all above it have been left.
    struct Place {
        StructureNode* pNode;
        std::vector<StructureNode*> above;
        std::size_t next = 0;
    };
    std::vector<StructureNode*> left;
    std::vector<Place> places;
    const auto enter = [&places](StructureNode* node) {
        node->_isMetBelow = true;
        places.push_back({node, {}});
        node->CollectNodesAbove(places.back().above);
    };
    enter(origin);
    while (!places.empty()) {
        Place& place = places.back();
        if (place.next == place.above.size()) {
            left.push_back(place.pNode);
            places.pop_back();
            continue;
        }
        StructureNode* const node = place.above[place.next++];
        if (!node->_isMetBelow && (node->_isHeard || node->_isMetAbove)) {
            enter(node);
        }
    }

    for (StructureNode* node : turned) {
        node->_isMetAbove = false;
    }
    _entries.reserve(left.size());
    for (auto it = left.rbegin(); it != left.rend(); ++it) {
        StructureNode* const node = *it;
        node->_isMetBelow = false;
        Entry& entry = _entries.emplace_back(Entry{node, node->GetWatch(), {}});
        for (ParameterInterface* input : node->_GetInputsHeard()) {
            entry.inputs.emplace_back(input, input->GetWatch());
        }
    }
}

bool StructureChange::_Tell(StructureOrigin kind) {
    bool good = true;
    for (const Entry& entry : _entries) {
        if (entry.isAlive) {
            good = entry.pNode->_OnChangeStructureNode(kind) && good;
        }
        kind = StructureOrigin::Below;
        for (const auto& [input, isAlive] : entry.inputs) {
            if (isAlive) {
                good = input->RelayChangeStructure() && good;
            }
        }
    }
    return good;
}

void StructureChange::_UpdateHeard() {
    // From the top: who hears may have gone quiet while being told, as a graph does that has to be
    // compiled anew.
    for (auto entry = _entries.rbegin(); entry != _entries.rend(); ++entry) {
        if (entry->isAlive) {
            StructureNode* const node = entry->pNode;
            node->_isHeard = node->_HasListeners() || node->_IsHeardAbove();
        }
    }
}

} // namespace Tolen::Effects
