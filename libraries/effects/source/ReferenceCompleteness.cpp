#include "ReferenceCompleteness.h"

#include "Graph.h"
#include "ReferenceParameterInterface.h"
#include "ReferenceShader.h"
#include "ReferenceShaderNode.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/IShader.h"

#include <algorithm>

namespace Tolen::Effects {

namespace {

/// Asks every one of @p references.
template <class References>
bool _AreComplete(const References& references, Result* result) {
    bool all = true;
    for (const auto& [name, reference] : references) {
        all = reference->IsComplete(result) && all;
    }
    return all;
}

} // namespace

ReferenceCompleteness::ReferenceCompleteness(IGraph* graph, Result* result)
    : _pResult(result), _walk(graph == nullptr ? 0 : static_cast<Graph*>(graph)->BeginWalk()) {}

bool ReferenceCompleteness::IsComplete(const ReferenceShaderNode* node) {
    if (_walk == 0) {
        return false;
    }
    _Enter(node);
    while (!_way.empty()) {
        Step& step = _way.back();
        if (step.below.empty()) {
            _Leave();
            continue;
        }
        bool isComplete = true;
        if (_IsSettled(step.below.back(), isComplete)) {
            step.pNode->_isComplete = step.pNode->_isComplete && isComplete;
            step.below.pop_back();
        } else {
            _Enter(step.below.back()->GetNode());
        }
    }
    return node->_isComplete;
}

bool ReferenceCompleteness::IsComplete(const ReferenceParameterInterface* parameter) {
    std::vector<const ReferenceShader*> below;
    bool all = _walk != 0 && _AskInterface(parameter, below);
    for (const ReferenceShader* reference : below) {
        bool isComplete = true;
        if (!_IsSettled(reference, isComplete)) {
            isComplete = IsComplete(reference->GetNode());
        }
        all = isComplete && all;
    }
    return all;
}

bool ReferenceCompleteness::IsCompleteHere(const ReferenceShaderNode* node, Result* result) {
    if (!node->_pShader->IsComplete(result)) {
        return false;
    }
    bool all = true;
    for (const auto& [name, reference] : node->_parameters) {
        const auto* const shaders = dynamic_cast<const ReferenceParameterInterface*>(reference);
        all = (shaders == nullptr ? reference->IsComplete(result) : shaders->IsInStep()) && all;
    }
    return all && _AreComplete(node->_coords, result);
}

void ReferenceCompleteness::_Enter(const ReferenceShaderNode* node) {
    std::vector<const ReferenceShader*> below;
    // False while it is being asked, for whoever comes back to it.
    node->_walk = _walk;
    node->_isComplete = false;
    if (node->_pShader != nullptr && node->_pShader->IsComplete(_pResult)) {
        node->_isComplete = _AskParameters(node, below);
    }
    std::reverse(below.begin(), below.end());
    _way.push_back({node, std::move(below)});
}

void ReferenceCompleteness::_Leave() {
    const ReferenceShaderNode* const node = _way.back().pNode;
    _way.pop_back();
    node->_isComplete = node->_isComplete && _AreComplete(node->_coords, _pResult);
}

/// Whether @p reference needs no walk: @p isComplete is its answer then.
bool ReferenceCompleteness::_IsSettled(const ReferenceShader* reference, bool& isComplete) const {
    const ReferenceShaderNode* const node = reference->GetNode();
    if (node == nullptr) {
        isComplete = reference->IsComplete(_pResult);
        return true;
    }
    if (!_IsMet(node)) {
        return false;
    }
    isComplete = node->_isComplete;
    return true;
}

bool ReferenceCompleteness::_IsMet(const ReferenceShaderNode* node) const {
    return node->_walk == _walk;
}

bool ReferenceCompleteness::_AskParameters(const ReferenceShaderNode* node,
                                           std::vector<const ReferenceShader*>& below) const {
    bool all = true;
    for (const auto& [name, reference] : node->_parameters) {
        const auto* const shaders = dynamic_cast<const ReferenceParameterInterface*>(reference);
        all = (shaders == nullptr ? reference->IsComplete(_pResult)
                                  : _AskInterface(shaders, below)) &&
              all;
    }
    return all;
}

/// Appends the references of the cells. @return whether none is missing
bool ReferenceCompleteness::_AskInterface(const ReferenceParameterInterface* parameter,
                                          std::vector<const ReferenceShader*>& below) {
    for (int i = 0; i < parameter->GetCountReferences(); ++i) {
        if (const ReferenceShader* const reference = parameter->GetReference(i)) {
            below.push_back(reference);
        }
    }
    return parameter->IsInStep();
}

} // namespace Tolen::Effects
