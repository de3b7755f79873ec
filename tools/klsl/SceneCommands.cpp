#include "Commands.h"
#include "Dot.h"
#include "GraphDrawing.h"
#include "Options.h"

#include "scene/SceneError.h"
#include "scene/SceneFile.h"
#include "scene/SceneSession.h"

#include <cstdio>

namespace Tolen::Klsl {

namespace {

OpenKL::ContextOptions OneThread() {
    OpenKL::ContextOptions options;
    options.threads = 1;
    return options;
}

/// A scene of the command line with everything made, but nothing compiled.
struct OpenScene {
    explicit OpenScene(const Options& options)
        : description(Scene::LoadScene(options.files.front())),
          session(description, OneThread(), options.searchPaths) {}

    Scene::SceneDescription description;
    Scene::SceneSession session;
};

} // namespace

int PrintScene(const Options& options) {
    OpenScene scene(options);
    const auto print = [&scene] {
        std::fputs(scene.session.GetPrograms().c_str(), stdout);
        std::fflush(stdout);
    };
    try {
        scene.session.Update();
    } catch (const Scene::SceneError&) {
        // The texts up to the one that was refused, which shows why.
        print();
        throw;
    }
    print();
    return 0;
}

int Graph(const Options& options) {
    OpenScene scene(options);
    const std::string text = DrawGraph(scene.description, scene.session);
    if (options.output.empty()) {
        std::fputs(text.c_str(), stdout);
    } else {
        WriteDrawing(text, options.output);
    }
    return 0;
}

} // namespace Tolen::Klsl
