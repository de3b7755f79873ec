#include "compiler/LinkedProgram.h"

#include "compiler/Diagnostics.h"
#include "compiler/StageLinker.h"

#include <unordered_map>

namespace Tolen::OpenKL {

namespace {

int FindByName(const std::unordered_map<std::string_view, int>& locations, std::string_view name) {
    const auto found = locations.find(name);
    return found == locations.end() ? -1 : found->second;
}

/// Links the stages of one program to each other.
class ProgramLinker {
public:
    ProgramLinker(LinkedProgram& program, LinkMessages& messages)
        : _program(program), _messages(messages) {}

    void Link(std::span<const LinkInput> texts) {
        std::vector<const LinkInput*> shading;
        std::vector<const LinkInput*> vertex;
        for (const LinkInput& text : texts) {
            (text.shader->stage == kStage_Vertex ? vertex : shading).push_back(&text);
            _program.shaders.push_back(text.shader);
        }
        if (!_CheckStages(shading, vertex)) {
            return;
        }
        _program.shading.stage = shading[0]->shader->stage;
        StageLinker shadingLinker(shading, _program.shading, _messages);
        shadingLinker.Link();
        if (vertex.empty()) {
            _CollectUniforms(_program.shading, shadingLinker);
            _LinkVaryings(shadingLinker, nullptr);
        } else {
            _program.vertex = std::make_unique<LinkedStage>();
            _program.vertex->stage = kStage_Vertex;
            StageLinker vertexLinker(vertex, *_program.vertex, _messages);
            vertexLinker.Link();
            _CollectUniforms(_program.shading, shadingLinker);
            _CollectUniforms(*_program.vertex, vertexLinker);
            _CollectAttributes();
            _CollectVaryings();
            _LinkVaryings(shadingLinker, &vertexLinker);
        }
        _CollectRayAttributes();
        _CollectLocations();
    }

private:
    bool _CheckStages(const std::vector<const LinkInput*>& shading,
                      const std::vector<const LinkInput*>& vertex) {
        if (shading.empty()) {
            _messages.Error("there is no ray, frame or prefix shader to link");
            return false;
        }
        const Stage stage = shading[0]->shader->stage;
        const auto refuse = [&](const LinkInput& other) {
            _messages.Error(Quote(shading[0]->name) + " is a " + std::string(StageToString(stage)) +
                            " shader and " + Quote(other.name) + " a " +
                            std::string(StageToString(other.shader->stage)) +
                            " shader, which don't go together");
            return false;
        };
        for (const LinkInput* text : shading) {
            if (text->shader->stage != stage) {
                return refuse(*text);
            }
        }
        return vertex.empty() || stage == kStage_Ray || refuse(*vertex[0]);
    }

    /// Enters the uniforms and blocks of a stage, which shares them with the other one.
    void _CollectUniforms(LinkedStage& stage, const StageLinker& linker) {
        for (std::size_t i = 0; i < stage.globals.size(); ++i) {
            LinkedGlobal& global = stage.globals[i];
            const bool isBlock = global.storage == kStorage_UniformBlock;
            if (!isBlock && global.storage != kStorage_Uniform &&
                global.storage != kStorage_MutableUniform) {
                continue;
            }
            std::vector<LinkedUniform>& table = isBlock ? _program.blocks : _program.uniforms;
            const auto [found, isNew] =
                _uniforms.try_emplace(global.name, Known{isBlock, table.size(), {}});
            if (isNew) {
                found->second.place = linker.LocateGlobal(i);
                table.push_back({global.name, global.type, false});
            }
            LinkedUniform& uniform =
                (found->second.isBlock ? _program.blocks : _program.uniforms)[found->second.index];
            if (found->second.isBlock != isBlock ||
                !AreSameAcrossTexts(uniform.type, global.type)) {
                _messages.Error("uniform " + Quote(global.name) + " is " +
                                _Describe(found->second.isBlock, uniform.type) + " in " +
                                found->second.place + " and " + _Describe(isBlock, global.type) +
                                " in " + linker.LocateGlobal(i));
                continue;
            }
            uniform.isRead = uniform.isRead || global.isRead;
            global.index = static_cast<int>(found->second.index);
        }
    }

    static std::string _Describe(bool isBlock, const Type& type) {
        return isBlock ? "a block of " + type.ToString() : type.ToString();
    }

    void _CollectAttributes() {
        for (LinkedGlobal& global : _program.vertex->globals) {
            if (global.storage == kStorage_Attribute) {
                global.index = static_cast<int>(_program.attributes.size());
                _program.attributes.push_back({global.name, global.type, global.isRead});
            }
        }
    }

    void _CollectVaryings() {
        for (std::size_t i = 0; i < _program.vertex->globals.size(); ++i) {
            LinkedGlobal& global = _program.vertex->globals[i];
            if (global.storage == kStorage_Varying) {
                global.index = static_cast<int>(_program.varyings.size());
                _varyings.emplace(global.name, i);
                _program.varyings.push_back({global.name, global.type, global.varyingKind,
                                             _program.varyingScalarCount, false});
                _program.varyingScalarCount += global.type.CountScalars();
            }
        }
    }

    /// Joins the varyings that the shading stage reads to those that the vertex stage gives.
    void _LinkVaryings(const StageLinker& shading, const StageLinker* vertex) {
        for (std::size_t i = 0; i < _program.shading.globals.size(); ++i) {
            LinkedGlobal& global = _program.shading.globals[i];
            if (global.storage != kStorage_Varying) {
                continue;
            }
            const auto found = _varyings.find(global.name);
            if (found == _varyings.end()) {
                if (global.isRead) {
                    _messages.Error("varying " + Quote(global.name) + " of " +
                                    shading.LocateGlobal(i) + " is read, and no vertex shader " +
                                    "declares it");
                }
                continue;
            }
            const LinkedGlobal& given = _program.vertex->globals[found->second];
            if (!AreSameAcrossTexts(global.type, given.type)) {
                _messages.Error("varying " + Quote(global.name) + " is " + given.type.ToString() +
                                " in " + vertex->LocateGlobal(found->second) + " and " +
                                global.type.ToString() + " in " + shading.LocateGlobal(i));
                continue;
            }
            global.index = given.index;
            global.varyingKind = given.varyingKind;
            _program.varyings[static_cast<std::size_t>(given.index)].isRead = global.isRead;
        }
    }

    void _CollectRayAttributes() {
        for (LinkedGlobal& global : _program.shading.globals) {
            if (global.storage == kStorage_RayAttribute) {
                global.index = static_cast<int>(_program.rayAttributes.size());
                _program.rayAttributes.push_back({global.name, global.type});
            }
        }
    }

    void _CollectLocations() {
        for (const LinkedUniform& uniform : _program.uniforms) {
            const int location = static_cast<int>(_program.uniformLocations.size());
            _program.uniformLocations.emplace(uniform.name, location);
        }
        for (const LinkedUniform& block : _program.blocks) {
            const int location = static_cast<int>(_program.blockLocations.size());
            _program.blockLocations.emplace(block.name, location);
        }
        for (std::size_t i = 0; i < _program.attributes.size(); ++i) {
            if (_program.attributes[i].isRead) {
                _program.attributeLocations.emplace(_program.attributes[i].name,
                                                    static_cast<int>(i));
            }
        }
    }

    /// A uniform or block that is in its table.
    struct Known {
        bool isBlock;
        std::size_t index;
        std::string place; ///< of the first declaration
    };

    LinkedProgram& _program;
    LinkMessages& _messages;
    std::unordered_map<std::string_view, Known> _uniforms;
    std::unordered_map<std::string_view, std::size_t> _varyings; ///< among the vertex globals
};

} // namespace

int LinkedProgram::GetUniformLocation(std::string_view uniformName) const {
    return FindByName(uniformLocations, uniformName);
}

int LinkedProgram::GetUniformBlockLocation(std::string_view blockName) const {
    return FindByName(blockLocations, blockName);
}

int LinkedProgram::GetAttributeLocation(std::string_view attributeName) const {
    return FindByName(attributeLocations, attributeName);
}

std::shared_ptr<const LinkedProgram>
LinkProgram(std::string_view name, std::span<const LinkInput> texts, std::string& messages) {
    messages.clear();
    auto program = std::make_shared<LinkedProgram>();
    program->name = name;
    LinkMessages errors(name);
    ProgramLinker(*program, errors).Link(texts);
    if (errors.HasErrors()) {
        messages = errors.ToString();
        return nullptr;
    }
    return program;
}

} // namespace Tolen::OpenKL
