#include "scene/SceneShaders.h"

#include "scene/ClassNames.h"
#include "scene/Connections.h"
#include "scene/ElementValues.h"
#include "scene/SceneConsole.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include "TolenCore/Result.h"

#include <algorithm>
#include <utility>

namespace Tolen::Scene {

using namespace Tolen::Effects;

namespace {

/// "camera.position" is the input "position" of "camera". Without a dot there is no owner.
std::pair<std::string, std::string> _Cut(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string::npos ? std::pair(std::string(), path)
                                    : std::pair(path.substr(0, dot), path.substr(dot + 1));
}

template <class T>
std::vector<std::string> _GetKeys(const std::map<std::string, T>& map) {
    std::vector<std::string> keys;
    keys.reserve(map.size());
    for (const auto& [key, value] : map) {
        keys.push_back(key);
    }
    return keys;
}

bool _TakesShader(IParameter& input) { return input.GetClass() == IParameter::kClass_Interface; }

/// Whether the class of @p shader or its interface is the one that @p input takes.
bool _Fits(IShader& shader, IParameter& input) {
    const std::string type = input.GetType();
    return type == shader.GetInterfaceName() || type == shader.GetClassName();
}

/// The input @p name of @p shader; a complaint about @p node when there is none.
IParameter& _GetInput(IShader& shader, const std::string& name, const JsonNode& node) {
    if (IParameter* const input = shader.GetParameter(name)) {
        return *input;
    }
    node.Fail("class '" + shader.GetClassName() + "' has no input '" + name + "'" +
              SuggestName(name, GetNames(GetInputs(shader))));
}

/// Where the description connects an input, or else @p owner.
JsonNode _PlaceOf(const std::vector<std::pair<std::string, JsonNode>>& inputs,
                  const Connection& connection, const JsonNode& owner) {
    for (const auto& [name, value] : inputs) {
        if (name == connection.input) {
            const auto cell = static_cast<std::size_t>(std::max(connection.index, 0));
            const bool isThere = value.GetValue().is_array() && cell < value.GetValue().size();
            return isThere ? value.GetElements()[cell] : value;
        }
    }
    return owner;
}

} // namespace

SceneShaders::SceneShaders(const SceneDescription& description,
                           const std::vector<std::string>& libraries, const Textures& textures,
                           MgrEffects& manager, SceneConsole& console)
    : _description(description), _libraries(libraries), _textures(textures), _manager(manager),
      _console(console), _lights(description, manager, console) {
    for (const SceneDescription::Shader& described : description.shaders) {
        _Make(described);
    }
    // Behind all of them, so that any shader can be named by any other.
    for (const SceneDescription::Shader& described : description.shaders) {
        IShader& shader = *_shaders.at(described.name);
        for (const auto& [name, value] : described.inputs) {
            if (!_TakesShader(_GetInput(shader, name, value))) {
                value.Fail("the input '" + name + "' takes a value, not a shader");
            }
            _SetShaderInput(shader, name, value);
        }
    }
    for (const SceneDescription::ClassValues& values : description.classes) {
        Result result;
        IPrototypeShader* const prototype = manager.GetPrototypeShader(values.name, &result);
        if (prototype == nullptr) {
            console.Fail(values.node,
                         "there is no class '" + values.name + "'" + _SuggestClass(values.name),
                         result);
        }
        for (const auto& [name, value] : values.parameters) {
            _SetClassInput(*prototype, name, value);
        }
    }
}

/// Empty for the name of a class, which may not be to blame.
std::string SceneShaders::_SuggestClass(const std::string& name) const {
    return SuggestName(name, FindClassNames(_libraries));
}

void SceneShaders::_Make(const SceneDescription::Shader& described) {
    Result result;
    IShader* const shader = _lights.CreateShader(described.className, &result);
    if (shader == nullptr) {
        _console.Fail(described.node.Get("class"),
                      "no shader of class '" + described.className + "' can be made" +
                          _SuggestClass(described.className),
                      result);
    }
    shader->SetName(described.name);
    _shaders[described.name] = shader;
    for (const auto& [name, value] : described.parameters) {
        if (_TakesShader(_GetInput(*shader, name, value))) {
            value.Fail("the input '" + name + "' takes another shader, not a value");
        }
        _SetShaderInput(*shader, name, value);
    }
    for (const auto& [name, value] : described.textures) {
        _SetTexture(*shader, name, value);
    }
    for (const auto& [name, value] : described.coords) {
        if (!shader->SetCoord(&result, name, value.AsString())) {
            value.Fail("class '" + described.className + "' has no coord '" + name + "'");
        }
    }
}

void SceneShaders::_SetShaderInput(IShader& shader, const std::string& name,
                                   const JsonNode& value) {
    IParameter& input = _GetInput(shader, name, value);
    if (_TakesShader(input)) {
        _Connect(input, name, value, [&](Result& result, auto... arguments) {
            return shader.SetParameter(&result, name, arguments...);
        });
    } else {
        _SetValue(input, name, value, [&](Result& result, const auto&... arguments) {
            return shader.SetParameter(&result, name, arguments...);
        });
    }
}

void SceneShaders::_SetClassInput(IPrototypeShader& prototype, const std::string& name,
                                  const JsonNode& value) {
    IParameter* const input = prototype.GetParameter(name);
    if (input == nullptr) {
        value.Fail("class '" + prototype.GetClassName() + "' has no static input '" + name + "'" +
                   SuggestName(name, GetNames(GetInputs(prototype))));
    }
    if (_TakesShader(*input)) {
        _Connect(*input, name, value, [&](Result&, auto... arguments) {
            return prototype.SetParameter(name, arguments...);
        });
    } else {
        _SetValue(*input, name, value, [&](Result&, const auto&... arguments) {
            return prototype.SetParameter(name, arguments...);
        });
    }
}

template <class Setter>
void SceneShaders::_SetValue(IParameter& input, const std::string& name, const JsonNode& value,
                             const Setter& set) {
    const TypeSpecifier type = input.GetTypeSpecifier();
    Result result;
    bool isSet = false;
    if (input.IsArray()) {
        const int length = static_cast<int>(value.GetElements().size());
        isSet = input.SetLength(length) && SetElements(value, type, [&](auto values, int count) {
                    return set(result, values, count);
                });
    } else {
        isSet = SetElement(value, type,
                           [&](const auto& element) { return set(result, element); });
    }
    if (!isSet) {
        _console.Fail(value, "the input '" + name + "' refuses this value", result);
    }
}

template <class Setter>
void SceneShaders::_Connect(IParameter& input, const std::string& name, const JsonNode& value,
                            const Setter& set) {
    const auto connect = [&](const JsonNode& node, auto... index) {
        IShader* const shader = node.GetValue().is_null() ? nullptr : Find(node.AsString(), node);
        Result result;
        if (set(result, shader, index...)) {
            return;
        }
        if (shader == nullptr) {
            _console.Fail(node, "the input '" + name + "' can't be disconnected", result);
        }
        if (!_Fits(*shader, input) && result.IsEmpty()) {
            result.Add("Input type mismatch. Expected \"%s\" but got \"%s::%s\"",
                       input.GetType().c_str(), shader->GetInterfaceName().c_str(),
                       shader->GetClassName().c_str());
        }
        _console.Fail(node, "the input '" + name + "' can't be connected to '" +
                                node.AsString() + "'", result);
    };
    if (!TakesList(input)) {
        connect(value);
        return;
    }
    const std::vector<JsonNode> nodes = value.GetElements();
    const int length = static_cast<int>(nodes.size());
    if (length != input.GetLength() && !input.SetLength(length)) {
        value.Fail("expected " + std::to_string(input.GetLength()) + " shaders, found " +
                   std::to_string(length));
    }
    for (int index = 0; index < length; ++index) {
        connect(nodes[static_cast<std::size_t>(index)], index);
    }
}

void SceneShaders::_SetTexture(IShader& shader, const std::string& name, const JsonNode& value) {
    const std::string textureName = value.AsString();
    const auto found = _textures.find(textureName);
    if (found == _textures.end()) {
        value.Fail("there is no texture '" + textureName + "'" +
                   SuggestName(textureName, _GetKeys(_textures)));
    }
    Result result;
    if (!shader.SetParameter(&result, name, found->second->GetTexture())) {
        _console.Fail(value, "the input '" + name + "' takes no texture", result);
    }
}

void SceneShaders::Set(const std::string& path, const JsonNode& value) {
    const auto [owner, name] = _Cut(path);
    if (owner.empty()) {
        value.Fail("expected shader.parameter, found '" + path + "'");
    }
    IPrototypeShader* const prototype =
        _shaders.contains(owner) ? nullptr : _manager.GetPrototypeShader(owner, nullptr);
    if (prototype != nullptr) {
        _SetClassInput(*prototype, name, value);
    } else {
        _SetShaderInput(*Find(owner, value), name, value);
    }
}

IParameter* SceneShaders::FindInput(const std::string& path) const {
    const auto [owner, name] = _Cut(path);
    const auto shader = _shaders.find(owner);
    if (shader != _shaders.end()) {
        return shader->second->GetParameter(name);
    }
    IPrototypeShader* const prototype =
        owner.empty() ? nullptr : _manager.GetPrototypeShader(owner, nullptr);
    return prototype == nullptr ? nullptr : prototype->GetParameter(name);
}

IShader* SceneShaders::Find(const std::string& name, const JsonNode& node) const {
    const auto found = _shaders.find(name);
    if (found == _shaders.end()) {
        node.Fail("there is no shader '" + name + "'" + SuggestName(name, _GetKeys(_shaders)));
    }
    return found->second;
}

const SceneDescription::Shader* SceneShaders::_FindDescribed(IShader& shader) const {
    for (const SceneDescription::Shader& described : _description.shaders) {
        if (_shaders.at(described.name) == &shader) {
            return &described;
        }
    }
    return nullptr;
}

void SceneShaders::CheckConnected(IShader& root, const JsonNode& effect) const {
    for (IShader* const shader : GetShadersBelow(root)) {
        const SceneDescription::Shader* const described = _FindDescribed(*shader);
        for (const Connection& connection : GetConnections(GetInputs(*shader))) {
            if (connection.pShader != nullptr) {
                continue;
            }
            const JsonNode node =
                described == nullptr ? effect
                                     : _PlaceOf(described->inputs, connection, described->node);
            node.Fail("nothing is connected to the input '" + connection.GetLabel() +
                      "' of the shader '" +
                      (described == nullptr ? shader->GetName() : described->name) +
                      "' of class '" + shader->GetClassName() + "'");
        }
        _CheckConnected(*shader->GetPrototype(), effect);
    }
}

void SceneShaders::CheckClassesConnected(const JsonNode& effect) const {
    for (const SceneDescription::ClassValues& values : _description.classes) {
        _CheckConnected(*_manager.GetPrototypeShader(values.name, nullptr), effect);
    }
}

void SceneShaders::_CheckConnected(IPrototypeShader& prototype, const JsonNode& effect) const {
    const std::string className = prototype.GetClassName();
    const auto described =
        std::find_if(_description.classes.begin(), _description.classes.end(),
                     [&](const auto& values) { return values.name == className; });
    for (const Connection& connection : GetConnections(GetInputs(prototype))) {
        if (connection.pShader == nullptr) {
            const JsonNode node = described == _description.classes.end()
                                      ? effect
                                      : _PlaceOf(described->parameters, connection, described->node);
            node.Fail("nothing is connected to the static input '" + connection.GetLabel() +
                      "' of class '" + className + "'");
        }
    }
}

} // namespace Tolen::Scene
