#pragma once

#include "language/SourceText.h"

#include <string>
#include <vector>

namespace Tolen::Language {

/// A message about a source.
struct Diagnostic {
    enum Severity { kSeverity_Warning, kSeverity_Error };

    /// Another place that has to do with the message, such as the first of two definitions.
    struct Note {
        std::string file;
        int line = 0;
        SourceRange columns;
        std::string text;
    };

    Severity severity = kSeverity_Error;
    std::string file;    ///< empty when the message belongs to none
    int line = 0;        ///< from 1; 0 when the message is about the file as a whole
    SourceRange columns; ///< in the line, in bytes from 0; empty when all of the line is meant
    std::string text;    ///< what is wrong, in the library's words, on one line
    std::vector<Note> notes;
    /// The name that was meant most likely; empty when none comes close.
    std::string suggestion;
};

} // namespace Tolen::Language
