#pragma once

#include "compiler/Arena.h"
#include "compiler/Builtins.h"
#include "compiler/Statements.h"
#include "compiler/Symbols.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::OpenKL {

/// One text, checked. It never changes again, so that programs and threads share it.
struct CompiledShader {
    Stage stage = kStage_Ray;
    std::string text;
    std::vector<Variable*> globals;   ///< in order of declaration, each name once
    std::vector<Function*> functions; ///< in order of first declaration, each signature once
    /// The functions that initialisers of globals call.
    std::span<Function* const> initializerCallees;
    Arena arena; ///< owns every node
};

/// Compiles a text for a stage.
/// @param messages set to the lines of every error, joined by newlines without one at the end;
///                 empty on success. Lines have the form "String 0 Line 12: error: ..."
/// @return null when there are errors
std::shared_ptr<const CompiledShader> CompileShader(Stage stage, std::string_view text,
                                                    std::string& messages);

} // namespace Tolen::OpenKL
