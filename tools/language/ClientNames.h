#pragma once

#include "language/Builtins.h"

#include "TolenEffects/SyntaxTypes.h"

#include <string>
#include <vector>

namespace Tolen::Language {

/// A variable that a client adds to the language: a ray attribute, or a global variable.
struct ClientVariable {
    Effects::TypeSpecifier type = Effects::kType_Float;
    std::string name;
};

/// Reads one of "vec3 throughput". @return false when the type or the name is none
bool ReadClientVariable(const std::string& text, ClientVariable& variable);

/// Adds @p variable, or puts it in the place of the one of its name.
void Put(std::vector<ClientVariable>& variables, const ClientVariable& variable);

/// What the code of libraries may use beyond what they declare.
struct ClientNames {
    /// From the start, those that the shader libraries of this project ask for.
    std::vector<ClientVariable> rayAttributes{{Effects::kType_Vec3, "throughput"},
                                              {Effects::kType_Float, "direct"}};
    std::vector<ClientVariable> globals;
};

/// What a reader would like to know of them.
std::vector<Builtin> MakeBuiltins(const ClientNames& names);

} // namespace Tolen::Language
