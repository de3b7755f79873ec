#pragma once

#include <string>

namespace Tolen::StatsTool {

/// What the command line asks for.
struct Options {
    std::string host = "localhost";
    double wait = 0.0; ///< seconds in which to try again while nobody listens
    bool printsJson = false;
};

/// Reads the command line.
/// @return whether there is something to do; otherwise @p exitStatus says how to end
bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus);

} // namespace Tolen::StatsTool
