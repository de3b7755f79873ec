#pragma once

#include "compiler/CompiledShader.h"

#include <string>
#include <string_view>

namespace Tolen::OpenKL::Tests {

/// A checked expression as nested lists, such as `(+ float(i) (sin x))`. Every conversion shows.
std::string PrintTree(const Expression& expression);

/// A checked statement in the same way.
std::string PrintTree(const Statement& statement);

/// The tree of an expression that stands as the last statement of main.
/// @param declarations globals, put in front of main
/// @param locals       statements of main ahead of the expression
/// @return the messages when the text does not compile
std::string PrintExpression(std::string_view expression, std::string_view locals = {},
                            std::string_view declarations = {}, Stage stage = kStage_Ray);

/// The trees of the statements of main.
std::string PrintStatements(std::string_view statements, std::string_view declarations = {},
                            Stage stage = kStage_Ray);

/// The function of that name, or null.
const Function* FindFunction(const CompiledShader& shader, std::string_view name);

/// The messages of compiling a text; empty when it compiles.
std::string GetMessages(std::string_view text, Stage stage = kStage_Ray);

} // namespace Tolen::OpenKL::Tests
