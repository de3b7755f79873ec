#include "GraphDrawing.h"

#include "scene/Connections.h"
#include "scene/SceneSession.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/FastDelegate.h"
#include "TolenCore/Format.h"

#include <map>
#include <vector>

namespace Tolen::Klsl {

namespace {

using namespace Effects;
using namespace Scene;

/// Text of a label, in which DOT takes tags.
std::string Escape(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return escaped;
}

/// "(1,0,0)" as "(1, 0, 0)", and a bool as a scene file has it.
std::string DescribeElement(IParameter& input, const std::string& element) {
    if (input.GetTypeSpecifier() == kType_Bool) {
        return element == "0" ? "false" : "true";
    }
    std::string spaced;
    for (const char c : element) {
        spaced += c;
        spaced += c == ',' ? " " : "";
    }
    return spaced;
}

/// The value of an input: one, or those of the first cells of an array.
std::string DescribeValue(IParameter& input) {
    constexpr int kMostShown = 4;
    std::string text;
    if (!input.IsArray()) {
        input.GetAsString(text);
        return DescribeElement(input, text);
    }
    std::string all;
    for (int index = 0; index < input.GetLength() && index < kMostShown; ++index) {
        input.GetAsString(text, index);
        all += (index > 0 ? ", " : "") + DescribeElement(input, text);
    }
    if (input.GetLength() > kMostShown) {
        all += ", ... " + std::to_string(input.GetLength()) + " in all";
    }
    return "[" + all + "]";
}

/// Draws one scene.
class Drawing {
public:
    Drawing(const SceneDescription& description, SceneSession& session)
        : _description(description), _session(session) {}

    std::string Draw() {
        _CollectShaders();
        _text = "digraph scene {\n"
                "    rankdir=LR;\n"
                "    node [shape=plain, fontname=\"Helvetica\", fontsize=11];\n"
                "    edge [color=\"#404040\", arrowsize=0.7];\n";
        for (IShader* const shader : _shaders) {
            _DrawShader(*shader);
        }
        for (const auto& [name, prototype] : _prototypes) {
            _DrawClass(name, *prototype);
        }
        _DrawEffects();
        return _text + _edges + "}\n";
    }

private:
    /// Those of the scene in its order, then those that inputs made.
    void _CollectShaders() {
        for (const SceneDescription::Shader& described : _description.shaders) {
            IShader* const shader = _session.GetShaders().GetAll().at(described.name);
            _described[shader] = &described;
        }
        for (const SceneDescription::Shader& described : _description.shaders) {
            _Add(*_session.GetShaders().GetAll().at(described.name));
        }
        for (const SceneDescription::Shader& described : _description.shaders) {
            IShader& owner = *_session.GetShaders().GetAll().at(described.name);
            _AddDefaults(GetConnections(GetInputs(owner)), &described);
            _AddDefaults(GetConnections(GetInputs(*owner.GetPrototype())), nullptr);
        }
    }

    /// Those that are connected without a word in the description, and all below them.
    void _AddDefaults(const std::vector<Connection>& connections,
                      const SceneDescription::Shader* described) {
        for (const Connection& connection : connections) {
            IShader* const shader = _FindConnected(connection, described);
            if (shader != nullptr && !_described.contains(shader)) {
                for (IShader* const below : GetShadersBelow(*shader)) {
                    _Add(*below);
                }
            }
        }
    }

    /// What the description connects to a cell, as it names it, or what is there otherwise. All
    /// lights of a kind are one shader in the end, which may be what an input answers.
    IShader* _FindConnected(const Connection& cell,
                            const SceneDescription::Shader* described) const {
        if (described == nullptr || cell.pShader == nullptr) {
            return cell.pShader;
        }
        for (const auto& [name, value] : described->inputs) {
            if (name == cell.input) {
                const JsonNode node =
                    cell.index < 0 ? value
                                   : value.GetElements()[static_cast<std::size_t>(cell.index)];
                return _session.GetShaders().Find(node.AsString(), node);
            }
        }
        return cell.pShader;
    }

    /// Whether @p shader is a default that has nothing to show but its class, which then stands in
    /// the row of the input.
    bool _IsPlain(IShader& shader) const {
        bool hasCoords = false;
        auto note = [&hasCoords](const std::string&, IParameter*) { return hasCoords = true; };
        auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(note);
        shader.VisitCoords(visit);
        return !_described.contains(&shader) && !hasCoords && GetInputs(shader).empty() &&
               GetInputs(*shader.GetPrototype()).empty();
    }

    void _Add(IShader& shader) {
        if (_IsPlain(shader)) {
            return;
        }
        if (_ids.emplace(&shader, Format("s%zu", _ids.size())).second) {
            _shaders.push_back(&shader);
            IPrototypeShader* const prototype = shader.GetPrototype();
            if (!GetInputs(*prototype).empty()) {
                _prototypes.emplace(shader.GetClassName(), prototype);
            }
        }
    }

    void _DrawShader(IShader& shader) {
        const auto described = _described.find(&shader);
        const bool isDefault = described == _described.end();
        const std::string& id = _ids.at(&shader);
        const std::string name = Escape(shader.GetClassName());
        _BeginTable(id,
                    isDefault ? name : "<b>" + Escape(described->second->name) + "</b>: " + name,
                    isDefault ? "#a0a0a0" : "#202020", isDefault ? "#f6f6f6" : "#dce8f6");
        _DrawInputs(id, GetInputs(shader), isDefault ? nullptr : described->second);
        auto draw = [this](const std::string& coord, IParameter* attribute) {
            std::string value;
            attribute->Get(value);
            _DrawRow("", coord, value.empty() ? "" : "a_" + value);
            return true;
        };
        auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(draw);
        shader.VisitCoords(visit);
        _EndTable();
        const auto prototype = _prototypes.find(shader.GetClassName());
        if (prototype != _prototypes.end()) {
            _edges += "    " + _IdOf(*prototype->second) + " -> " + id +
                      " [style=dotted, arrowhead=none];\n";
        }
    }

    void _DrawClass(const std::string& name, IPrototypeShader& prototype) {
        _BeginTable(_IdOf(prototype), "class " + Escape(name), "#202020", "#eee6d8");
        _DrawInputs(_IdOf(prototype), GetInputs(prototype), nullptr);
        _EndTable();
    }

    void _DrawEffects() {
        static constexpr const char* kKinds[] = {"surface", "renderer", "prefix"};
        for (std::size_t i = 0; i < _description.effects.size(); ++i) {
            const SceneDescription::Effect& effect = _description.effects[i];
            const std::string id = Format("e%zu", i);
            _BeginTable(id,
                        "<b>" + Escape(effect.name) + "</b>: " + kKinds[effect.kind] + " effect",
                        "#202020", "#dcf0dc");
            _EndTable();
            IShader* root = nullptr;
            _session.GetEffects()[i]->GetRoot(root);
            if (root != nullptr) {
                _edges += "    " + _ids.at(root) + " -> " + id + " [style=bold];\n";
            }
        }
    }

    void _BeginTable(const std::string& id, const std::string& heading, const char* color,
                     const char* fill) {
        _text += "    " + id + " [fontcolor=\"" + color + "\", label=<<table color=\"" + color +
                 "\" border=\"0\" cellborder=\"1\" cellspacing=\"0\" cellpadding=\"3\">\n"
                 "        <tr><td colspan=\"2\" bgcolor=\"" +
                 fill + "\">" + heading + "</td></tr>\n";
    }

    void _EndTable() { _text += "        </table>>];\n"; }

    /// @param value shown as it stands
    void _DrawRow(const std::string& port, const std::string& name, const std::string& value,
                  const char* color = nullptr) {
        const std::string at = port.empty() ? "" : " port=\"" + port + "\"";
        const std::string shown =
            color == nullptr ? Escape(value)
                             : std::string("<font color=\"") + color + "\">" + value + "</font>";
        _text += "        <tr><td" + at + " align=\"left\">" + Escape(name) +
                 "</td><td align=\"left\">" + shown + "</td></tr>\n";
    }

    void _DrawInputs(const std::string& id, const std::vector<NamedInput>& inputs,
                     const SceneDescription::Shader* described) {
        for (const NamedInput& named : inputs) {
            if (named.pInput->GetClass() != IParameter::kClass_Interface) {
                const std::string texture = _FindTexture(described, named.name);
                _DrawRow("", named.name, texture.empty() ? DescribeValue(*named.pInput) : texture);
                continue;
            }
            if (TakesList(*named.pInput) && named.pInput->GetLength() == 0) {
                _DrawRow("", named.name, "[]");
            }
            for (const Connection& cell : GetConnections({named})) {
                const std::string port = cell.index < 0
                                             ? "i_" + cell.input
                                             : Format("i_%s_%d", cell.input.c_str(), cell.index);
                IShader* const shader = _FindConnected(cell, described);
                if (shader == nullptr) {
                    _DrawRow(port, cell.GetLabel(), "not connected", "#c00000");
                    continue;
                }
                if (_IsPlain(*shader)) {
                    _DrawRow(port, cell.GetLabel(), Escape(shader->GetClassName()), "#a0a0a0");
                    continue;
                }
                const bool isDefault = !_described.contains(shader);
                _DrawRow(port, cell.GetLabel(), named.pInput->GetType(),
                         isDefault ? "#a0a0a0" : "#606060");
                _edges += "    " + _ids.at(shader) + " -> " + id + ":" + port + ":w" +
                          (isDefault ? " [color=\"#a0a0a0\"]" : "") + ";\n";
            }
        }
    }

    static std::string _FindTexture(const SceneDescription::Shader* described,
                                    const std::string& input) {
        if (described != nullptr) {
            for (const auto& [name, value] : described->textures) {
                if (name == input) {
                    return "texture " + value.AsString();
                }
            }
        }
        return "";
    }

    std::string _IdOf(IPrototypeShader& prototype) {
        std::size_t index = 0;
        for (const auto& [name, known] : _prototypes) {
            if (known == &prototype) {
                break;
            }
            ++index;
        }
        return Format("c%zu", index);
    }

    const SceneDescription& _description;
    SceneSession& _session;
    std::vector<IShader*> _shaders; ///< in the order of their names in the text
    std::map<IShader*, std::string> _ids;
    std::map<IShader*, const SceneDescription::Shader*> _described;
    std::map<std::string, IPrototypeShader*> _prototypes; ///< those with static inputs, by class
    std::string _text;
    std::string _edges;
};

} // namespace

std::string DrawGraph(const SceneDescription& description, SceneSession& session) {
    return Drawing(description, session).Draw();
}

} // namespace Tolen::Klsl
