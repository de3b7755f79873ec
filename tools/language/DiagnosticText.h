#pragma once

#include "language/Diagnostic.h"

#include <map>
#include <string>
#include <vector>

namespace Tolen::Language {

/// Shows diagnostics as compilers do: the place, the message, the line and what in it is meant.
/// Reads the files that they name, each once.
class DiagnosticText {
public:
    /// @param isColored for a terminal
    explicit DiagnosticText(bool isColored) : _isColored(isColored) {}

    /// Lets @p text stand for a file that isn't to be read.
    void SetText(const std::string& file, const std::string& text);

    /// The lines of a diagnostic and of its notes, each with its end.
    std::string Show(const Diagnostic& diagnostic);

private:
    std::string _ShowPlace(const std::string& file, int line, const SourceRange& columns) const;
    std::string _ShowLine(const std::string& file, int line, const SourceRange& columns,
                          const std::string& behind);
    std::string _Color(const char* code, const std::string& text) const;
    const SourceText& _Find(const std::string& file);

    bool _isColored;
    std::map<std::string, SourceText> _files;
};

} // namespace Tolen::Language
