#include "Options.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace Tolen::LanguageServer {

bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus) {
    CLI::App app(
        "A language server for KLSL. Speaks the language server protocol on standard input "
        "and output; an editor starts it.",
        "klsl-lsp");
    app.footer("Exit status: 0 when the editor has ended the session, 1 otherwise, 2 on misuse.");
    app.add_option("-I,--search-path", options.searchPaths,
                   "a folder to look for libraries and included files in")
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false);
    bool usesStandardInput = true;
    app.add_flag("--stdio", usesStandardInput, "speak on standard input and output, as always");
    app.set_version_flag("--version", TOLEN_VERSION);
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    for (std::string& path : options.searchPaths) {
        path = std::filesystem::absolute(path).lexically_normal().string();
    }
    return true;
}

} // namespace Tolen::LanguageServer
