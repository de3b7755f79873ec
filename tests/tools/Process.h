#pragma once

#include <string>
#include <vector>

namespace Tolen::Tests {

/// How a program ended and what it printed.
struct Ended {
    int status; ///< the exit status; -1 when it was ended by a signal
    std::string output;
    std::string errors;
};

/// Runs a program of ours to its end, with no standard input.
/// @param program its name in the program folder
Ended RunProgram(const std::string& program, const std::vector<std::string>& arguments);

/// Writes a file into a fresh folder of this test's own, which goes when the process ends.
/// @return the whole path
std::string WriteTemporary(const std::string& name, const std::string& text);

/// The path of a file in that folder, for a program to write.
std::string GetTemporary(const std::string& name);

} // namespace Tolen::Tests
