#pragma once

#include <string>

namespace Tolen::Klsl {

/// A message about a source.
struct Diagnostic {
    enum Severity { kSeverity_Warning, kSeverity_Error };

    Severity severity = kSeverity_Error;
    std::string file;    ///< empty when the message tells none
    int line = 0;        ///< from 1; 0 when the message tells none
    std::string text;    ///< what is wrong, on one line
    std::string subject; ///< the word in the line that is meant; empty when it isn't known
};

/// Takes a message of the library apart. It may begin with its place, as "file(12) : text" or
/// "file:12: text", or tell it at its end, as "... in file 'file' line 12".
Diagnostic MakeDiagnostic(Diagnostic::Severity severity, const std::string& message);

} // namespace Tolen::Klsl
