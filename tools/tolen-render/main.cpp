#include "Options.h"
#include "Render.h"
#include "scene/SceneError.h"

#include <cstdio>
#include <exception>

using namespace Tolen::Render;

int main(int count, char** arguments) {
    Options options;
    int exitStatus = 0;
    if (!ReadOptions(count, arguments, options, exitStatus)) {
        return exitStatus;
    }
    try {
        RenderScene(options);
    } catch (const Tolen::Scene::SceneError& error) {
        std::fprintf(stderr, "%s: %s\n", options.scene.c_str(), error.what());
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tolen-render: %s\n", error.what());
        return 1;
    }
    return 0;
}
