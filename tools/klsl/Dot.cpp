#include "Dot.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace Tolen::Klsl {

namespace {

/// "svg" of "graph.svg".
std::string FormatOf(const std::string& file) {
    const std::string extension = std::filesystem::path(file).extension().string();
    return extension.empty() ? "" : extension.substr(1);
}

/// Both ends of a pipe, closed at the latest at the end.
class Pipe {
public:
    Pipe() {
        if (pipe2(_ends, O_CLOEXEC) != 0) {
            throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
        }
    }
    ~Pipe() {
        Close(0);
        Close(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int Get(int end) const { return _ends[end]; }
    void Close(int end) {
        if (_ends[end] >= 0) {
            close(_ends[end]);
            _ends[end] = -1;
        }
    }

private:
    int _ends[2] = {-1, -1};
};

/// Writes all of @p text, or as much as the reader takes.
void WriteAll(int descriptor, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(descriptor, text.data() + done, text.size() - done);
        if (count < 0 && errno != EINTR) {
            return;
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

/// Runs a program with @p input to its end.
/// @return its exit status, or -1 behind a signal; -errno - 1 when it can't be started
int RunWithInput(const std::vector<std::string>& command, const std::string& input) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);

    // A program that ends ahead of its input is told by its status.
    std::signal(SIGPIPE, SIG_IGN);
    Pipe pipe;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe.Get(0), STDIN_FILENO);
    pid_t process = 0;
    const int error =
        posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        return -error - 1;
    }
    pipe.Close(0);
    WriteAll(pipe.Get(1), input);
    pipe.Close(1);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

bool IsDrawingFile(const std::string& file) {
    const std::string format = FormatOf(file);
    return format == "dot" || format == "svg" || format == "png" || format == "pdf";
}

void WriteDrawing(const std::string& text, const std::string& file) {
    const std::string format = FormatOf(file);
    if (format == "dot") {
        std::ofstream stream(file, std::ios::binary);
        stream << text;
        stream.close();
        if (!stream) {
            throw std::runtime_error(file + ": can't be written");
        }
        return;
    }
    const int status = RunWithInput({"dot", "-T" + format, "-o", file}, text);
    if (status == -ENOENT - 1) {
        throw std::runtime_error(file + ": needs the program 'dot' of Graphviz, which is not "
                                        "installed; name a .dot file for the graph as a text");
    }
    if (status != 0) {
        throw std::runtime_error(file + ": can't be drawn by 'dot'");
    }
}

} // namespace Tolen::Klsl
