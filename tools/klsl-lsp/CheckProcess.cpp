#include "CheckProcess.h"

#include "Protocol.h"

#include "language/Checker.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace Tolen::LanguageServer {

using Language::Diagnostic;
using Language::SourceRange;

namespace {

// Lists rather than objects: both ends are this unit.
Json Encode(const SourceRange& range) {
    return {range.begin, range.end};
}

SourceRange DecodeRange(const Json& json) {
    return {json.at(0).get<std::size_t>(), json.at(1).get<std::size_t>()};
}

Json Encode(const std::vector<Diagnostic>& diagnostics) {
    Json list = Json::array();
    for (const Diagnostic& diagnostic : diagnostics) {
        Json notes = Json::array();
        for (const Diagnostic::Note& note : diagnostic.notes) {
            notes.push_back(Json::array({note.file, note.line, Encode(note.columns), note.text}));
        }
        list.push_back(Json::array({static_cast<int>(diagnostic.severity), diagnostic.file,
                                    diagnostic.line, Encode(diagnostic.columns), diagnostic.text,
                                    notes, diagnostic.suggestion}));
    }
    return list;
}

std::vector<Diagnostic> Decode(const Json& list) {
    std::vector<Diagnostic> diagnostics;
    for (const Json& json : list) {
        Diagnostic& diagnostic = diagnostics.emplace_back();
        diagnostic.severity = static_cast<Diagnostic::Severity>(json.at(0).get<int>());
        diagnostic.file = json.at(1);
        diagnostic.line = json.at(2);
        diagnostic.columns = DecodeRange(json.at(3));
        diagnostic.text = json.at(4);
        for (const Json& note : json.at(5)) {
            diagnostic.notes.push_back(
                {note.at(0), note.at(1), DecodeRange(note.at(2)), note.at(3)});
        }
        diagnostic.suggestion = json.at(6);
    }
    return diagnostics;
}

std::string Check(const CheckProcess::Task& task) {
    Language::Checker checker;
    checker.SetClientNames(task.names);
    for (const std::string& folder : task.searchPaths) {
        checker.AddSearchPath(folder);
    }
    for (const auto& [file, text] : task.texts) {
        checker.SetText(file, text);
    }
    return Encode(checker.Check(task.files)).dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool WriteAll(int file, std::string_view rest) {
    while (!rest.empty()) {
        const ssize_t count = write(file, rest.data(), rest.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        rest.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

/// What the new process does. Standard input and output belong to the protocol.
[[noreturn]] void Run(const CheckProcess::Task& task, int file) {
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    // Answers come before checks.
    setpriority(PRIO_PROCESS, 0, 5);
    const rlimit time = {CheckProcess::kLimitSeconds, CheckProcess::kLimitSeconds};
    setrlimit(RLIMIT_CPU, &time);
    const rlimit noDump = {0, 0};
    setrlimit(RLIMIT_CORE, &noDump);
    bool isDone = false;
    try {
        isDone = WriteAll(file, Check(task));
    } catch (const std::exception& error) {
        const std::string text = std::string("klsl-lsp: a check failed: ") + error.what() + "\n";
        WriteAll(STDERR_FILENO, text);
    }
    // What the process has set up is the server's; this copy goes without tearing it down.
    _exit(isDone ? EXIT_SUCCESS : EXIT_FAILURE);
}

} // namespace

CheckProcess::CheckProcess(const Task& task) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    _process = fork();
    if (_process == 0) {
        close(ends[0]);
        Run(task, ends[1]);
    }
    const int error = errno;
    close(ends[1]);
    if (_process < 0) {
        close(ends[0]);
        throw std::system_error(error, std::generic_category(), "fork");
    }
    _file = ends[0];
    fcntl(_file, F_SETFL, O_NONBLOCK);
}

CheckProcess::~CheckProcess() {
    kill(_process, SIGKILL);
    close(_file);
    while (waitpid(_process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool CheckProcess::Read() {
    char bytes[65536];
    while (true) {
        const ssize_t count = read(_file, bytes, sizeof bytes);
        if (count > 0) {
            _answer.append(bytes, static_cast<std::size_t>(count));
        } else if (count == 0) {
            return true;
        } else if (errno != EINTR) {
            return errno != EAGAIN;
        }
    }
}

std::vector<Diagnostic> CheckProcess::GetDiagnostics() const {
    const Json answer = Json::parse(_answer, nullptr, false);
    if (answer.is_discarded()) {
        throw std::runtime_error("a check ended without an answer");
    }
    return Decode(answer);
}

} // namespace Tolen::LanguageServer
