#include "Options.h"

#include "Dot.h"

#include <CLI/CLI.hpp>

#include <map>

namespace Tolen::Klsl {

namespace {

/// A class has its libraries and an effect; without one there is a scene alone.
void CheckPrint(const Options& options, const std::string& effect) {
    if (!options.className.empty()) {
        if (effect.empty()) {
            throw CLI::RequiredError("--effect");
        }
    } else if (options.files.size() > 1 || options.files.front().ends_with(".klsl")) {
        throw CLI::RequiredError("--class");
    }
}

/// An option that adds to @p variables each time it is given.
void AddVariables(CLI::App& command, const std::string& option,
                  std::vector<Language::ClientVariable>& variables, const std::string& text) {
    command
        .add_option_function<std::vector<std::string>>(
            option,
            [option, &variables](const std::vector<std::string>& values) {
                for (const std::string& value : values) {
                    Language::ClientVariable variable;
                    if (!Language::ReadClientVariable(value, variable)) {
                        throw CLI::ValidationError(option, "expected a type and a name, found '" +
                                                               value + "'");
                    }
                    Put(variables, variable);
                }
            },
            text)
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false);
}

} // namespace

bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus) {
    static const std::map<std::string, Options::Effect> kEffects = {
        {"surface", Options::kEffect_Surface},
        {"renderer", Options::kEffect_Renderer},
        {"prefix", Options::kEffect_Prefix},
    };

    CLI::App app("Checks KLSL shader libraries and shows the code made of them.", "klsl");
    app.require_subcommand(1);
    app.footer("Exit status: 0 without errors, 1 with errors in the sources, 2 on misuse.");

    CLI::App* const check =
        app.add_subcommand("check", "load libraries and compile all of their code");
    check->add_option("files", options.files, "the libraries, which may refer to each other")
        ->required();
    check->add_flag("--watch", options.watches, "check again whenever a file changes, to Ctrl-C");

    CLI::App* const print = app.add_subcommand(
        "print", "show the programs of a class or of all effects of a scene: the root shader, the "
                 "graph and the vertex stage");
    print
        ->add_option("files", options.files,
                     "a scene; or the library of the class, and others that it refers to")
        ->required();
    CLI::Option* const className =
        print->add_option("--class", options.className, "the class of the root");
    std::string effect;
    print->add_option("--effect", effect, "what it is the root of")
        ->needs(className)
        ->check(CLI::IsMember({"surface", "renderer", "prefix"}));

    CLI::App* const graph = app.add_subcommand("graph", "draw the shaders of a scene");
    graph->add_option("scene", options.files, "a scene")->required()->expected(1);
    graph->add_option("-o,--output", options.output,
                      "the drawing: .svg, .png, .pdf, or .dot for its text");

    CLI::App* const format = app.add_subcommand("fmt", "lay out libraries anew, in their files");
    format->add_option("files", options.files,
                       "the libraries; '-', as without any, for standard input and output");
    format->add_flag("--check", options.checksFormat,
                     "change nothing, but list the files that would change, and exit with 1 then");

    CLI::App* const document =
        app.add_subcommand("doc", "write a reference of libraries in Markdown");
    document->add_option("files", options.files, "the libraries, in the order of the page")
        ->required();
    document->add_option("-o,--output", options.output, "the page");
    document->add_option("--title", options.title, "what the page is called");

    for (CLI::App* command : {check, print}) {
        AddVariables(*command, "--ray-attribute", options.names.rayAttributes,
                     "a variable that rays carry, such as 'float weight'");
        AddVariables(*command, "--global", options.names.globals,
                     "a variable that all shaders share, such as 'float wetness'");
    }
    for (CLI::App* command : {check, print, graph}) {
        command
            ->add_option("-I,--search-path", options.searchPaths,
                         "a folder to look for libraries and included files in")
            ->take_all()
            ->expected(1)
            ->allow_extra_args(false);
    }
    try {
        app.parse(count, arguments);
        if (print->parsed()) {
            CheckPrint(options, effect);
        }
        if (graph->parsed() && !options.output.empty() && !IsDrawingFile(options.output)) {
            throw CLI::ValidationError("--output", "expected .svg, .png, .pdf or .dot, found '" +
                                                       options.output + "'");
        }
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    if (!effect.empty()) {
        options.effect = kEffects.at(effect);
    }
    if (format->parsed() && options.files.empty()) {
        options.files = {"-"};
    }
    options.command = graph->parsed()             ? Options::kCommand_Graph
                      : format->parsed()          ? Options::kCommand_Format
                      : document->parsed()        ? Options::kCommand_Document
                      : check->parsed()           ? Options::kCommand_Check
                      : options.className.empty() ? Options::kCommand_PrintScene
                                                  : Options::kCommand_PrintClass;
    return true;
}

} // namespace Tolen::Klsl
