#include "RunProgram.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace Tolen::Tests {

namespace {

std::string _Quote(const std::string& word) {
    std::string quoted = "'";
    for (const char c : word) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

} // namespace

ProgramRun RunProgram(const std::vector<std::string>& words, const std::string& folder) {
    std::string command = folder.empty() ? "" : "cd " + _Quote(folder) + " && ";
    for (const std::string& word : words) {
        command += _Quote(word) + " ";
    }
    ProgramRun run;
    FILE* const pipe = popen((command + "2>&1").c_str(), "r");
    if (pipe == nullptr) {
        return run;
    }
    std::array<char, 4096> piece{};
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe)) {
        run.output.append(piece.data(), count);
    }
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace Tolen::Tests
