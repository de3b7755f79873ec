#include "Commands.h"
#include "Options.h"
#include "Report.h"

#include "language/Checker.h"
#include "language/FileWatch.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <string>

namespace Tolen::Klsl {

using Language::Checker;
using Language::Diagnostic;
using Language::FileWatch;

namespace {

FileWatch* s_pWatch = nullptr; ///< what the signals end

void EndWatch(int) {
    s_pWatch->End();
}

std::string Count(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// "12:34:56 no errors", or how many there are.
std::string Summarize(const std::vector<Diagnostic>& diagnostics) {
    const auto errors =
        std::count_if(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
            return diagnostic.severity == Diagnostic::kSeverity_Error;
        });
    const auto warnings = static_cast<std::ptrdiff_t>(diagnostics.size()) - errors;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char time[16];
    std::strftime(time, sizeof time, "%H:%M:%S ", &local);
    return time + (errors == 0 ? "no errors" : Count(errors, "error")) +
           (warnings == 0 ? "" : ", " + Count(warnings, "warning"));
}

/// Checks again whenever a file has changed, until the user has enough.
void Watch(Checker& checker, const std::vector<std::string>& files) {
    FileWatch watch;
    s_pWatch = &watch;
    std::signal(SIGINT, EndWatch);
    std::signal(SIGTERM, EndWatch);
    do {
        std::vector<Diagnostic> diagnostics;
        // A file that wasn't watched yet may have changed since it was read.
        do {
            diagnostics = checker.Check(files);
        } while (watch.Watch(checker.GetFiles()));
        Report(diagnostics);
        std::printf("%s\n", Summarize(diagnostics).c_str());
        std::fflush(stdout);
    } while (watch.Wait());
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    s_pWatch = nullptr;
}

} // namespace

int Check(const Options& options) {
    Checker checker;
    for (const std::string& folder : options.searchPaths) {
        checker.AddSearchPath(folder);
    }
    checker.SetClientNames(options.names);
    if (options.watches) {
        Watch(checker, options.files);
        return 0;
    }
    return Report(checker.Check(options.files)) ? 1 : 0;
}

} // namespace Tolen::Klsl
