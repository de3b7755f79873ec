#include "Options.h"

#include <CLI/CLI.hpp>

namespace Tolen::Render {

namespace {

/// Cuts "name=value" at the first "=".
std::pair<std::string, std::string> _Cut(const std::string& text, const char* option) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0 || equals + 1 == text.size()) {
        throw CLI::ValidationError(option, "expected shader.parameter=value, found '" + text + "'");
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

void _ReadSize(const std::string& text, Options& options) {
    int width = 0;
    int height = 0;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &rest) != 2 || width < 1 ||
        height < 1 || width > 65536 || height > 65536) {
        throw CLI::ValidationError("--size", "expected WIDTHxHEIGHT, found '" + text + "'");
    }
    options.width = width;
    options.height = height;
}

void _ReadAnimation(const std::string& text, Options& options) {
    const auto [name, range] = _Cut(text, "--animate");
    const std::size_t colon = range.find(':');
    if (colon == std::string::npos) {
        throw CLI::ValidationError("--animate",
                                   "expected shader.parameter=from:to, found '" + text + "'");
    }
    options.animated = name;
    options.from = range.substr(0, colon);
    options.to = range.substr(colon + 1);
}

} // namespace

bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus) {
    CLI::App app("Renders a scene of KLSL shaders, or a model, to a picture.", "tolen-render");
    std::string size;
    std::string animation;
    std::vector<std::string> values;
    app.add_option("scene", options.scene, "the scene, a JSON file; or a model, glTF 2.0 or OBJ")->required();
    app.add_option("-o,--output", options.output,
                   "the picture: .png (screen colours) or .exr (linear, every attachment)")
        ->capture_default_str();
    app.add_option("-I,--shader-path", options.searchPaths, "a folder to look for libraries in");
    app.add_option("--threads", options.threads, "rendering threads; 0 for one on each core")
        ->check(CLI::Range(0, 4096));
    app.add_option("--size", size, "WIDTHxHEIGHT in pixels");
    app.add_option("--samples", options.samples, "samples for each pixel")
        ->check(CLI::Range(1, 1 << 24));
    app.add_option("--renderer", options.renderer,
                   "the renderer effect to render with, in place of the scene's");
    app.add_option("--set", values, "shader.parameter=value, as often as wanted; lists as 1,0,0");
    app.add_option("--animate", animation,
                   "shader.parameter=from:to, a value that changes from picture to picture");
    app.add_option("--frames", options.frames, "pictures of the animation")
        ->check(CLI::Range(1, 1000000));
    app.add_option("--frame", options.frame,
                   "render this picture of the animation alone, under the plain name")
        ->check(CLI::Range(1, 1000000));
    app.add_flag("--time-report", options.reportsTimes, "tell where the time went");
    app.add_flag("--stats", options.printsStatistics, "count what was done");
    app.add_flag("--print-programs", options.printsPrograms, "print the generated texts");
    app.add_flag("-q,--quiet", options.isQuiet, "show no progress");
    try {
        app.parse(count, arguments);
        for (const std::string& value : values) {
            options.values.push_back(_Cut(value, "--set"));
        }
        if (!size.empty()) {
            _ReadSize(size, options);
        }
        if (!animation.empty()) {
            _ReadAnimation(animation, options);
        } else if (options.frames != 1 || options.frame != 0) {
            throw CLI::ValidationError("--frames and --frame", "go with --animate");
        }
        if (options.frame > options.frames) {
            throw CLI::ValidationError("--frame", "is more than --frames");
        }
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    return true;
}

} // namespace Tolen::Render
