#pragma once

#include "language/ClientNames.h"
#include "language/Diagnostic.h"

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Tolen::LanguageServer {

/// A check of libraries in a process of its own, beside which the server goes on answering. A check
/// whose result nobody wants any more is simply killed, and one that crashes or never ends takes
/// nothing else along.
class CheckProcess {
public:
    /// What is to be checked.
    struct Task {
        std::vector<std::string> files;
        std::map<std::string, std::string> texts; ///< that stand for files, by path
        std::vector<std::string> searchPaths;
        Language::ClientNames names;
    };

    /// Seconds of computing after which a check is given up.
    static constexpr unsigned kLimitSeconds = 120;

    /// Starts it. The process has one thread as long as nothing is checked in it, so that a copy of
    /// it can go on. @throw std::system_error
    explicit CheckProcess(const Task& task);
    ~CheckProcess();
    CheckProcess(const CheckProcess&) = delete;
    CheckProcess& operator=(const CheckProcess&) = delete;

    /// Becomes readable when there is something for Read.
    int GetFile() const { return _file; }

    /// Takes what has come so far. @return whether the check has ended
    bool Read();

    /// The messages, once it has ended. @throw std::runtime_error when it ended without any answer
    std::vector<Language::Diagnostic> GetDiagnostics() const;

private:
    pid_t _process = 0;
    int _file = -1; ///< the reading end of a pipe from the process
    std::string _answer;
};

} // namespace Tolen::LanguageServer
