#include "tools/Process.h"

#include "support/paths/SourceFolder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolen::Tests {

namespace {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::temp_directory_path() / "tolen-test-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        _path = pattern;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& GetPath() const { return _path; }

private:
    std::string _path;
};

std::string _Quote(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string _ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

std::string GetTemporary(const std::string& name) {
    static const TemporaryFolder folder;
    return folder.GetPath() + "/" + name;
}

std::string WriteTemporary(const std::string& name, const std::string& text) {
    const std::string path = GetTemporary(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

Ended RunCommand(const std::string& path, const std::vector<std::string>& arguments) {
    const std::string output = GetTemporary("stdout");
    const std::string errors = GetTemporary("stderr");
    std::string command = _Quote(path);
    for (const std::string& argument : arguments) {
        command += " " + _Quote(argument);
    }
    command += " <" + _Quote("/dev/null") + " >" + _Quote(output) + " 2>" + _Quote(errors);
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, _ReadFile(output), _ReadFile(errors)};
}

Ended RunProgram(const std::string& program, const std::vector<std::string>& arguments) {
    return RunCommand(ProgramFolder() + "/" + program, arguments);
}

BackgroundProgram::BackgroundProgram(const std::string& program,
                                     std::vector<std::string> arguments,
                                     const std::string& output) {
    arguments.insert(arguments.begin(), ProgramFolder() + "/" + program);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, 1, output.c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND | O_TRUNC, 0644);
    posix_spawn_file_actions_adddup2(&files, 1, 2);
    const int error =
        posix_spawn(&_process, pointers.front(), &files, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) {
        throw std::runtime_error(arguments.front() + " can't be started");
    }
}

BackgroundProgram::~BackgroundProgram() {
    if (_process != 0) {
        kill(_process, SIGKILL);
        Wait();
    }
}

void BackgroundProgram::Interrupt() {
    kill(_process, SIGINT);
}

int BackgroundProgram::Wait() {
    int status = 0;
    waitpid(_process, &status, 0);
    _process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace Tolen::Tests
