#include "PrototypeInterface.h"

#include "Library.h"
#include "ReferencePrototypeInterface.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/Module.h"

#include <utility>

namespace Tolen::Effects {

PrototypeInterface::PrototypeInterface() = default;

PrototypeInterface::~PrototypeInterface() {
    Shutdown();
}

bool PrototypeInterface::Init(Library* library, InterfaceDefinition* definition) {
    _pLibrary = library;
    _pDefinition = definition;
    return true;
}

void PrototypeInterface::Shutdown() {
    auto onDelete = MakeDelegate(this, &PrototypeInterface::_OnDeleteGraph);
    for (const auto& [graph, reference] : _references) {
        graph->RemoveListenerDelete(onDelete);
    }
    _references.clear();
    _pLibrary = nullptr;
    _pDefinition = nullptr;
}

ReferencePrototypeInterface* PrototypeInterface::GetReference(IGraph* graph) {
    if (ReferencePrototypeInterface* const found = FindReference(graph)) {
        return found;
    }
    std::unique_ptr<ReferencePrototypeInterface> reference = _CreateReference(graph);
    if (reference == nullptr) {
        return nullptr;
    }
    auto onDelete = MakeDelegate(this, &PrototypeInterface::_OnDeleteGraph);
    graph->AddListenerDelete(onDelete);
    return _references.emplace(graph, std::move(reference)).first->second.get();
}

ReferencePrototypeInterface* PrototypeInterface::FindReference(IGraph* graph) const {
    const auto found = _references.find(graph);
    return found == _references.end() ? nullptr : found->second.get();
}

std::unique_ptr<ReferencePrototypeInterface> PrototypeInterface::_CreateReference(IGraph* graph) {
    auto reference = std::make_unique<ReferencePrototypeInterface>();
    if (graph == nullptr || !reference->Init(this, graph)) {
        return nullptr;
    }
    return reference;
}

std::string PrototypeInterface::GetMethodNameMangled(const std::string& method) {
    const std::string name =
        _pDefinition == nullptr ? std::string() : _pDefinition->GetName()->GetString();
    return "__" + name + "_" + method;
}

bool PrototypeInterface::HasMethod(const std::string& method) const {
    if (_pDefinition == nullptr) {
        return false;
    }
    for (const FunctionPrototype* prototype : _pDefinition->GetMemberFunctions()) {
        if (prototype->GetName()->GetString() == method) {
            return true;
        }
    }
    return false;
}

IMgrEffects* PrototypeInterface::GetMgrEffects() const {
    return _pLibrary == nullptr ? nullptr : _pLibrary->GetMgrEffects();
}

bool PrototypeInterface::_OnDeleteGraph(IGraph* graph) {
    _references.erase(graph);
    return true;
}

} // namespace Tolen::Effects
