#include "Commands.h"
#include "Options.h"

#include "scene/SceneError.h"

#include <cstdio>
#include <exception>

namespace {

using namespace Tolen::Klsl;

int Run(const Options& options) {
    switch (options.command) {
    case Options::kCommand_Check:
        return Check(options);
    case Options::kCommand_PrintClass:
        return PrintClass(options);
    case Options::kCommand_PrintScene:
        return PrintScene(options);
    case Options::kCommand_Graph:
        return Graph(options);
    case Options::kCommand_Format:
        return FormatFiles(options);
    case Options::kCommand_Document:
        return Document(options);
    }
    return 2;
}

} // namespace

int main(int count, char** arguments) {
    Options options;
    int exitStatus = 0;
    if (!ReadOptions(count, arguments, options, exitStatus)) {
        return exitStatus;
    }
    try {
        return Run(options);
    } catch (const Tolen::Scene::SceneError& error) {
        std::fprintf(stderr, "%s: %s\n", options.files.front().c_str(), error.what());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "klsl: %s\n", error.what());
    }
    return 1;
}
