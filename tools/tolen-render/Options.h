#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Tolen::Render {

/// What the command line asks for.
struct Options {
    std::string scene;
    std::string output = "out.png";
    std::vector<std::string> searchPaths;
    std::string renderer; ///< an effect; empty for the scene's
    int threads = 0;     ///< 0 for one on each core
    int width = 0;       ///< 0 for the scene's
    int height = 0;
    int samples = 0;     ///< 0 for the scene's
    std::vector<std::pair<std::string, std::string>> values; ///< "shader.parameter" and a value
    std::string animated; ///< "shader.parameter"; empty for a single picture
    std::string from;
    std::string to;
    int frames = 1;
    int frame = 0;        ///< the only one to render, from 1; 0 for all
    bool reportsTimes = false;
    bool printsStatistics = false;
    bool printsPrograms = false;
    bool isQuiet = false;

    /// Whether there is one picture to render, which gets the plain name of the output.
    bool IsSingle() const { return animated.empty() || frame > 0; }
};

/// Reads the command line.
/// @return whether there is something to do; otherwise @p exitStatus says how to end
bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus);

} // namespace Tolen::Render
