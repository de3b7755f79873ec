#include "DeepReferences.h"

#include "ReferenceShader.h"
#include "Shader.h"
#include "TolenEffects/IGraph.h"

#include <unordered_set>

namespace Tolen::Effects {

namespace {

/// A node on the way down, and those right below it.
struct Step {
    StructureNode* pNode;
    std::vector<StructureNode*> below;
    std::size_t next = 0;
};

Step _StepTo(StructureNode* node) {
    Step step{node, {}};
    node->CollectNodesBelow(step.below);
    return step;
}

} // namespace

DeepReferences::DeepReferences(Shader* top, IGraph* graph) : _pGraph(graph) {
    const std::vector<Shader*> missing = _FindMissingBelow(top);
    if (missing.empty()) {
        _pGraph = nullptr;
        return;
    }
    auto onDelete = MakeDelegate(this, &DeepReferences::_OnDeleteGraph);
    _pGraph->AddListenerDelete(onDelete);
    _Take(missing);
}

DeepReferences::~DeepReferences() {
    if (_pGraph == nullptr) {
        return;
    }
    auto onDelete = MakeDelegate(this, &DeepReferences::_OnDeleteGraph);
    _pGraph->RemoveListenerDelete(onDelete);
    _GiveBack();
}

void DeepReferences::_Take(const std::vector<Shader*>& shaders) {
    std::vector<std::pair<Shader*, LifeToken::Watch>> watched;
    watched.reserve(shaders.size());
    for (Shader* shader : shaders) {
        watched.emplace_back(shader, shader->GetWatch());
    }
    for (const auto& [shader, alive] : watched) {
        if (_pGraph == nullptr) {
            return;
        }
        auto* const reference =
            alive ? static_cast<ReferenceShader*>(shader->CreateReference(_pGraph)) : nullptr;
        if (reference != nullptr) {
            _references.emplace_back(reference, reference->GetWatch());
        }
    }
}

/// The shaders in the order in which they are to be taken: each behind those below it.
std::vector<Shader*> DeepReferences::_FindMissingBelow(Shader* top) const {
    std::vector<Shader*> missing;
    std::unordered_set<const StructureNode*> met{top};
    std::vector<Step> way;
    way.push_back(_StepTo(top));
    while (!way.empty()) {
        Step& step = way.back();
        if (step.next < step.below.size()) {
            StructureNode* const node = step.below[step.next++];
            auto* const shader = dynamic_cast<Shader*>(node);
            // A shader that stays in a graph of its own doesn't bring those below it.
            const bool isOpen =
                shader == nullptr ||
                (!shader->HasReference(_pGraph) && FindGraphForeign(shader, _pGraph) == nullptr);
            if (isOpen && met.insert(node).second) {
                way.push_back(_StepTo(node));
            }
            continue;
        }
        auto* const shader = dynamic_cast<Shader*>(step.pNode);
        if (shader != nullptr && shader != top) {
            missing.push_back(shader);
        }
        way.pop_back();
    }
    return missing;
}

void DeepReferences::_GiveBack() {
    while (!_references.empty()) {
        const auto [reference, alive] = _references.back();
        _references.pop_back();
        if (alive) {
            reference->Release();
        }
    }
}

bool DeepReferences::_OnDeleteGraph(IGraph*) {
    _GiveBack();
    _pGraph = nullptr;
    return true;
}

} // namespace Tolen::Effects
