#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace Tolen::Tests {

/// How a program ended and what it printed.
struct Ended {
    int status; ///< the exit status; -1 when it was ended by a signal
    std::string output;
    std::string errors;
};

/// Runs a program to its end, with no standard input.
/// @param path the whole path of the program
Ended RunCommand(const std::string& path, const std::vector<std::string>& arguments);

/// The same for a program of ours.
/// @param program its name in the program folder
Ended RunProgram(const std::string& program, const std::vector<std::string>& arguments);

/// A program of ours that runs while the test goes on. What is left of it is killed with the
/// object.
class BackgroundProgram {
public:
    /// @param output the file that all of its output goes to
    BackgroundProgram(const std::string& program, std::vector<std::string> arguments,
                      const std::string& output = "/dev/null");
    ~BackgroundProgram();
    BackgroundProgram(const BackgroundProgram&) = delete;
    BackgroundProgram& operator=(const BackgroundProgram&) = delete;

    /// Ends it as Ctrl-C does.
    void Interrupt();
    /// Waits for its end. @return as Ended::status tells
    int Wait();

private:
    pid_t _process;
};

/// Writes a file into a fresh folder of this test's own, which goes when the process ends.
/// @return the whole path
std::string WriteTemporary(const std::string& name, const std::string& text);

/// The path of a file in that folder, for a program to write.
std::string GetTemporary(const std::string& name);

} // namespace Tolen::Tests
