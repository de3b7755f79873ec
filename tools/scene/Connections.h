#pragma once

#include <string>
#include <vector>

namespace Tolen::Effects {
class IParameter;
class IPrototypeShader;
class IShader;
} // namespace Tolen::Effects

namespace Tolen::Scene {

/// One cell of an interface input and what is connected to it.
struct Connection {
    Effects::IParameter* pInput; ///< borrowed
    std::string input;           ///< its name
    int index;                   ///< the cell of an array; -1 for a single input
    Effects::IShader* pShader;   ///< borrowed; null when the cell is empty

    /// "color", or "layers[2]" for a cell of an array.
    std::string GetLabel() const;
};

/// An input with its name.
struct NamedInput {
    std::string name;
    Effects::IParameter* pInput; ///< borrowed
};

/// Whether an interface input takes a list of shaders. That of a light takes one, though the class
/// of all lights of its kind has a list.
bool TakesList(Effects::IParameter& input);

/// All inputs, by name. Those of a prototype are the static ones.
std::vector<NamedInput> GetInputs(Effects::IShader& shader);
std::vector<NamedInput> GetInputs(Effects::IPrototypeShader& prototype);
std::vector<std::string> GetNames(const std::vector<NamedInput>& inputs);

/// The cells of the interface inputs among @p inputs, in order.
std::vector<Connection> GetConnections(const std::vector<NamedInput>& inputs);

/// @p root and all shaders that are connected below it, through static inputs of their classes
/// also, each once, nearest first.
std::vector<Effects::IShader*> GetShadersBelow(Effects::IShader& root);

} // namespace Tolen::Scene
