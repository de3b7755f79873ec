#pragma once

#include "compiler/Builtins.h"
#include "compiler/OverloadChooser.h"

#include <optional>
#include <span>
#include <string_view>

namespace Tolen::OpenKL {

/// One way to call a function of the language. Functions that work on all sizes of vectors have a
/// signature for each.
struct BuiltinSignature {
    BuiltinFunction function = kFunction_Count;
    Type returnType;
    std::span<const ParameterShape> parameters;
};

/// @return the signatures of a function by its name; empty when there is no such function
std::span<const BuiltinSignature> FindBuiltinFunction(std::string_view name);

/// Whether code of a stage may call a function of the language.
bool IsAvailable(BuiltinFunction function, Stage stage);
bool IsAvailable(BuiltinVariable variable, Stage stage);

/// Whether a name is that of a texture function which OpenKL has for 2D images alone.
bool IsUnsupportedTextureFunction(std::string_view name);

/// @return kVariable_None when there is no such variable
BuiltinVariable FindBuiltinVariable(std::string_view name);

Type GetBuiltinVariableType(BuiltinVariable variable, Stage stage);
bool IsWritable(BuiltinVariable variable);

/// The stages that have a function or variable, such as "frame, ray and prefix".
std::string GetStages(BuiltinFunction function);
std::string GetStages(BuiltinVariable variable);

} // namespace Tolen::OpenKL
