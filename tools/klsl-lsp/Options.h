#pragma once

#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// The command line.
struct Options {
    std::vector<std::string> searchPaths; ///< absolute
};

/// @param exitStatus set when the program should end at once
/// @return whether it should go on
bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus);

} // namespace Tolen::LanguageServer
