#include "Report.h"

#include "language/DiagnosticText.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace Tolen::Klsl {

using Language::Diagnostic;

namespace {

bool IsColored() {
    const char* const without = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return (without == nullptr || *without == '\0') && isatty(STDERR_FILENO) != 0 &&
           terminal != nullptr && std::string(terminal) != "dumb";
}

} // namespace

bool Report(const std::vector<Diagnostic>& diagnostics) {
    Language::DiagnosticText text(IsColored());
    bool hasErrors = false;
    for (const Diagnostic& diagnostic : diagnostics) {
        hasErrors = hasErrors || diagnostic.severity == Diagnostic::kSeverity_Error;
        std::fputs(text.Show(diagnostic).c_str(), stderr);
    }
    return hasErrors;
}

} // namespace Tolen::Klsl
