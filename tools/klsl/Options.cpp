#include "Options.h"

#include <CLI/CLI.hpp>

#include <map>

namespace Tolen::Klsl {

bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus) {
    static const std::map<std::string, Options::Effect> kEffects = {
        {"surface", Options::kEffect_Surface},
        {"renderer", Options::kEffect_Renderer},
        {"prefix", Options::kEffect_Prefix},
    };

    CLI::App app("Checks KLSL shader libraries and shows the code made of them.", "klsl");
    app.require_subcommand(1);
    app.footer("Exit status: 0 without errors, 1 with errors in the sources, 2 on misuse.");

    CLI::App* const check = app.add_subcommand("check", "load libraries and all of their classes");
    check->add_option("files", options.files, "the libraries, which may refer to each other")
        ->required();

    CLI::App* const print = app.add_subcommand(
        "print", "show the programs of a class: the root shader, the graph and the vertex stage");
    print
        ->add_option("files", options.files,
                     "the library of the class, and others that it refers to")
        ->required();
    print->add_option("--class", options.className, "the class of the root")->required();
    std::string effect;
    print->add_option("--effect", effect, "what it is the root of")
        ->required()
        ->check(CLI::IsMember({"surface", "renderer", "prefix"}));

    for (CLI::App* command : {check, print}) {
        command->add_option("-I,--search-path", options.searchPaths,
                            "a folder to look for libraries and included files in")
            ->take_all()
            ->expected(1)
            ->allow_extra_args(false);
    }
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    if (print->parsed()) {
        options.effect = kEffects.at(effect);
    }
    options.command = print->parsed() ? Options::kCommand_Print : Options::kCommand_Check;
    return true;
}

} // namespace Tolen::Klsl
