#pragma once

#include <string>
#include <vector>

namespace Tolen::Tests {

struct ProgramRun {
    int status = -1;    ///< what the program exits with; -1 when it did not run to its end
    std::string output; ///< both channels together
};

/// Runs a program to its end.
/// @param words the program and its arguments, which may hold any characters
/// @param folder to run in; empty for the present one
ProgramRun RunProgram(const std::vector<std::string>& words, const std::string& folder = "");

} // namespace Tolen::Tests
