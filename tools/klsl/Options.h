#pragma once

#include "language/ClientNames.h"

#include <string>
#include <vector>

namespace Tolen::Klsl {

/// What the command line asks for.
struct Options {
    enum Command {
        kCommand_Check,
        kCommand_PrintClass,
        kCommand_PrintScene,
        kCommand_Graph,
        kCommand_Format,
        kCommand_Document,
    };
    enum Effect { kEffect_Surface, kEffect_Renderer, kEffect_Prefix };

    Command command = kCommand_Check;
    std::vector<std::string> files;       ///< the libraries to load, in this order; or one scene
    std::vector<std::string> searchPaths; ///< folders to look for them and their includes in
    bool watches = false;                 ///< to check: again whenever a file changes
    Language::ClientNames names;          ///< what the client adds to the language
    std::string className;                ///< to print: the class of the root
    Effect effect = kEffect_Surface;      ///< to print: what the class is the root of
    std::string title = "Reference";      ///< of a page
    std::string output;                   ///< of a graph or page; empty for the standard output
    bool checksFormat = false;            ///< to format: tell what would change, and change nothing
};

/// Reads the command line.
/// @param exitStatus set when there is nothing to do: 0 behind the help text, 2 on misuse
/// @return whether @p options says what to do
bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus);

} // namespace Tolen::Klsl
