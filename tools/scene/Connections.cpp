#include "scene/Connections.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/FastDelegate.h"

#include <set>

namespace Tolen::Scene {

using namespace Tolen::Effects;

namespace {

template <class Owner>
std::vector<NamedInput> _GetInputs(Owner& owner) {
    std::vector<NamedInput> inputs;
    auto collect = [&inputs](const std::string& name, IParameter* input) {
        inputs.push_back({name, input});
        return true;
    };
    auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(collect);
    owner.VisitParameters(visit);
    return inputs;
}

} // namespace

std::string Connection::GetLabel() const {
    return index < 0 ? input : input + "[" + std::to_string(index) + "]";
}

bool TakesList(IParameter& input) {
    // A list answers with its first cell, but never takes a shader without an index. What takes one
    // stays as it is, as it has that shader already.
    IShader* shader = nullptr;
    return input.IsArray() && !(input.Get(shader) && input.Set(shader));
}

std::vector<NamedInput> GetInputs(IShader& shader) { return _GetInputs(shader); }

std::vector<NamedInput> GetInputs(IPrototypeShader& prototype) { return _GetInputs(prototype); }

std::vector<std::string> GetNames(const std::vector<NamedInput>& inputs) {
    std::vector<std::string> names;
    names.reserve(inputs.size());
    for (const NamedInput& input : inputs) {
        names.push_back(input.name);
    }
    return names;
}

std::vector<Connection> GetConnections(const std::vector<NamedInput>& inputs) {
    std::vector<Connection> connections;
    for (const auto& [name, input] : inputs) {
        if (input->GetClass() != IParameter::kClass_Interface) {
            continue;
        }
        if (!TakesList(*input)) {
            IShader* shader = nullptr;
            input->Get(shader);
            connections.push_back({input, name, -1, shader});
            continue;
        }
        for (int index = 0; index < input->GetLength(); ++index) {
            IShader* shader = nullptr;
            input->Get(shader, index);
            connections.push_back({input, name, index, shader});
        }
    }
    return connections;
}

std::vector<IShader*> GetShadersBelow(IShader& root) {
    std::vector<IShader*> shaders = {&root};
    std::set<IShader*> seen = {&root};
    const auto add = [&](const std::vector<Connection>& connections) {
        for (const Connection& connection : connections) {
            if (connection.pShader != nullptr && seen.insert(connection.pShader).second) {
                shaders.push_back(connection.pShader);
            }
        }
    };
    for (std::size_t i = 0; i < shaders.size(); ++i) {
        IShader* const shader = shaders[i];
        add(GetConnections(GetInputs(*shader)));
        add(GetConnections(GetInputs(*shader->GetPrototype())));
    }
    return shaders;
}

} // namespace Tolen::Scene
