#pragma once

#include "compiler/CompiledShader.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tolen::OpenKL {

/// A global of one stage of a program: one variable, however many of its texts declare it.
struct LinkedGlobal {
    std::string_view name;
    Type type; ///< of a uniform block the element's
    Storage storage = kStorage_Global;
    VaryingKind varyingKind = kVarying_Plain;
    bool isRead = false;    ///< by any text of the stage
    bool isWritten = false; ///< by any text of the stage
    /// Of uniforms, uniform blocks, varyings, ray attributes and attributes: the index into the
    /// program's table of that storage. -1 for others.
    int index = -1;
    /// What gives it its first value; null for 0.
    const Expression* initializer = nullptr;
};

/// One stage of a program: its texts as one.
struct LinkedStage {
    Stage stage = kStage_Ray;
    const Function* setup = nullptr; ///< null when no text defines it
    const Function* main = nullptr;  ///< null when no text defines it
    /// In the order of texts and their declarations, which is that of their initialisers.
    std::vector<LinkedGlobal> globals;
    /// Every function that setup or main reaches, callees ahead of callers.
    std::vector<const Function*> functions;

    /// The index into `globals` of a global that a VariableExpression or BlockElementExpression
    /// names. Built-in variables, locals and parameters have none.
    std::size_t GetGlobal(const Variable* variable) const { return globalOf.at(variable); }
    /// The function with the body of what a CallExpression calls.
    const Function* GetDefinition(const Function* called) const { return definitionOf.at(called); }

    std::unordered_map<const Variable*, std::size_t> globalOf;
    std::unordered_map<const Function*, const Function*> definitionOf; ///< of reachable calls
};

/// A uniform or a uniform block; its location is its index in its table.
struct LinkedUniform {
    std::string_view name;
    Type type; ///< of a uniform block the element's
    bool isRead = false;
};

/// An attribute of the vertex stage; its location is its index, or -1 for clients when nothing
/// reads it.
struct LinkedAttribute {
    std::string_view name;
    Type type;
    bool isRead = false;
};

/// A varying that both stages have, or the vertex stage alone.
struct LinkedVarying {
    std::string_view name;
    Type type;
    VaryingKind kind = kVarying_Plain; ///< as the vertex stage declares it
    int scalarOffset = 0;              ///< in the record of one vertex
    bool isRead = false;               ///< by the ray stage
};

/// A value that rays carry.
struct LinkedRayAttribute {
    std::string_view name;
    Type type;
};

/// A program: the stage that shades, and for rays the vertex stage ahead of it.
struct LinkedProgram {
    std::string name;
    LinkedStage shading;                 ///< kStage_Ray, kStage_Frame or kStage_Prefix
    std::unique_ptr<LinkedStage> vertex; ///< null when no vertex text is attached

    std::vector<LinkedUniform> uniforms; ///< of both stages
    std::vector<LinkedUniform> blocks;   ///< of both stages
    std::vector<LinkedAttribute> attributes;
    std::vector<LinkedVarying> varyings;
    std::vector<LinkedRayAttribute> rayAttributes;
    int varyingScalarCount = 0; ///< size of the record of one vertex
    std::unordered_map<std::string_view, int> uniformLocations;
    std::unordered_map<std::string_view, int> blockLocations;
    std::unordered_map<std::string_view, int> attributeLocations; ///< of those that are read

    std::vector<std::shared_ptr<const CompiledShader>> shaders; ///< keep every node alive

    /// @return -1 when the program declares no such uniform or block
    int GetUniformLocation(std::string_view uniformName) const;
    int GetUniformBlockLocation(std::string_view blockName) const;
    /// @return -1 when the program does not read such an attribute
    int GetAttributeLocation(std::string_view attributeName) const;
};

/// A text on its way into a program.
struct LinkInput {
    std::string name; ///< for messages
    std::shared_ptr<const CompiledShader> shader;
};

/// Links compiled texts, in the order given, into a program.
/// @param messages set to one line for every error, joined by newlines, which names the program,
///                 the texts and their lines; empty on success
/// @return null when there are errors
std::shared_ptr<const LinkedProgram>
LinkProgram(std::string_view name, std::span<const LinkInput> texts, std::string& messages);

} // namespace Tolen::OpenKL
