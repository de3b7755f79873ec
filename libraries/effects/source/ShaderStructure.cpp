#include "Shader.h"

#include "ParameterInterface.h"
#include "PrototypeShader.h"
#include "Shader_PassThrough.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Result.h"

#include <algorithm>

/// The shader among others: who holds it, whom it holds, and what it does with their changes.

namespace Tolen::Effects {

namespace {

template <class Map>
const std::string* _FindIncomplete(const Map& parameters) {
    for (const auto& [name, parameter] : parameters) {
        if (!parameter->IsComplete(nullptr)) {
            return &name;
        }
    }
    return nullptr;
}

} // namespace

Shader* Shader::GetBase(IShader* shader) {
    while (auto* const view = dynamic_cast<Shader_PassThrough*>(shader)) {
        shader = view->IsGoing() ? nullptr : view->GetShader();
    }
    return dynamic_cast<Shader*>(shader);
}

void Shader::AddUser(ParameterInterface* input, int index) {
    _users[input].insert(index);
}

void Shader::RemoveUser(ParameterInterface* input, int index) {
    const auto found = _users.find(input);
    if (found == _users.end()) {
        return;
    }
    found->second.erase(index);
    if (found->second.empty()) {
        _users.erase(found);
    }
}

void Shader::CollectNodesAbove(std::vector<StructureNode*>& nodes) const {
    for (const auto& [input, cells] : _users) {
        nodes.push_back(input->GetOwner());
    }
}

void Shader::CollectNodesBelow(std::vector<StructureNode*>& nodes) const {
    if (_pPrototype != nullptr && _pPrototype->HasNodesBelow()) {
        nodes.push_back(_pPrototype);
    }
    for (const ParameterInterface* input : _inputs) {
        for (int i = 0, count = input->GetLength(); i < count; ++i) {
            if (Shader* const shader = input->GetShaderBase(i)) {
                nodes.push_back(shader);
            }
        }
    }
}

bool Shader::_IsCompleteHere() {
    return _pPrototype != nullptr && _pPrototype->IsComplete(nullptr) &&
           _FindIncomplete(_parameters) == nullptr && _FindIncomplete(_coords) == nullptr;
}

void Shader::_OnChangeCompleteness(bool isComplete) {
    for (const auto& [input, cells] : _users) {
        input->OnChangeCompleteness(static_cast<int>(cells.size()), isComplete);
    }
}

bool Shader::_HasListeners() const {
    if (!_listenersChangeStructure.IsEmpty()) {
        return true;
    }
    for (const ParameterInterface* input : _inputs) {
        if (input->HasListeners()) {
            return true;
        }
    }
    return false;
}

std::vector<ParameterInterface*> Shader::_GetInputsHeard() const {
    std::vector<ParameterInterface*> inputs;
    for (const auto& [input, cells] : _users) {
        if (input->HasListeners()) {
            inputs.push_back(input);
        }
    }
    return inputs;
}

bool Shader::IsComplete(Result* result) {
    if (IsCompleteNode()) {
        return true;
    }
    if (result == nullptr || _pPrototype == nullptr) {
        return false;
    }
    // The way down to the first thing that is missing; the messages come from there upwards.
    std::vector<std::string> messages;
    Shader* shader = this;
    while (shader != nullptr) {
        Shader* below = nullptr;
        if (!shader->_pPrototype->IsComplete(result)) {
            messages.push_back("Shader::IsComplete() failed for _pPrototype: " +
                               shader->_pPrototype->GetClassName());
        } else if (const std::string* name = _FindIncomplete(shader->_parameters)) {
            messages.push_back("Shader::IsComplete() failed for Parameter: " + *name);
            IParameter* const parameter = shader->_parameters[*name].get();
            if (parameter->GetClass() == IParameter::kClass_Interface) {
                below = static_cast<ParameterInterface*>(parameter)->GetShaderIncomplete();
            } else {
                parameter->IsComplete(result);
            }
        } else if (const std::string* coord = _FindIncomplete(shader->_coords)) {
            shader->_coords[*coord]->IsComplete(result);
            messages.push_back("Shader::IsComplete() failed for Coord: " + *coord);
        }
        shader = below;
    }
    for (auto message = messages.rbegin(); message != messages.rend(); ++message) {
        result->Add("%s", message->c_str());
    }
    return false;
}

bool Shader::_OnChangeStructureNode(StructureOrigin origin) {
    if (_isMuted) {
        return true;
    }
    bool good = true;
    if (origin == StructureOrigin::Input && !_mustRebuild && _CanBuildLater()) {
        _isStale = true;
    } else if (origin != StructureOrigin::Below || _mustRebuild) {
        _mustRebuild = false;
        good = _Rebuild();
    } else if (_pModule == nullptr && IsCompleteNode()) {
        good = _BuildModule();
    }
    return _FireChangeStructure() && good;
}

/// Whether code that had to be built at once, to know that this can be done, is known to be
/// possible: it has been built before, and the inputs hold no shaders of other classes than then.
bool Shader::_CanBuildLater() {
    _isProven = _isProven && _pModule != nullptr &&
                std::all_of(_inputs.begin(), _inputs.end(), [](const ParameterInterface* input) {
                    return input->AreChangesProven();
                });
    return _isProven;
}

bool Shader::_FireChangeStructure() {
    if (_isChanging) {
        // A listener of the change in progress has made another one: the listeners before it have
        // to be told again, when this one is done.
        _hasChangedAgain = true;
        return true;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    _isChanging = true;
    bool good = true;
    do {
        _hasChangedAgain = false;
        good = _listenersChangeStructure.Fire(this) && good;
        if (!alive) {
            return good;
        }
    } while (_hasChangedAgain);
    _isChanging = false;
    return good;
}

} // namespace Tolen::Effects
