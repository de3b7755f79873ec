#include "Diagnostic.h"

#include <cstdlib>
#include <regex>

namespace Tolen::Klsl {

namespace {

/// Text at the end of which nothing but line feeds and blanks was.
std::string Trimmed(std::string text) {
    text.erase(text.find_last_not_of(" \r\n") + 1);
    return text;
}

/// A line number out of a message; 0 where it is no line of a file.
int LineOf(const std::string& digits) {
    const long line = std::strtol(digits.c_str(), nullptr, 10);
    return line > 0 && line < 2147483647 ? static_cast<int>(line) : 0;
}

/// The word that a message of the parser names behind "Near", or the class that it quotes.
std::string SubjectOf(const std::string& text) {
    static const std::regex kNear("Near \"([^\"]+)\"(?: (\\w+))?$");
    static const std::regex kDuplicate("^Duplicate \\w+ definition: \"([^\"]+)\"$");
    std::smatch match;
    if (std::regex_search(text, match, kNear)) {
        if (match[2].matched) {
            return match[2];
        }
        return match[1] == "Unknown" ? "input" : match[1].str();
    }
    return std::regex_search(text, match, kDuplicate) ? match[1].str() : "";
}

} // namespace

Diagnostic MakeDiagnostic(Diagnostic::Severity severity, const std::string& message) {
    static const std::regex kParser("^(.+?)\\((-?\\d+)\\) : (.*)$");
    static const std::regex kLocation("^([^:\"]+):(\\d+): (?:error: )?(.*)$");
    static const std::regex kInFile("(?:file|Library) '([^']*)'(?: line (\\d+))?");

    Diagnostic diagnostic;
    diagnostic.severity = severity;
    diagnostic.text = Trimmed(message);
    std::smatch match;
    const std::string text = diagnostic.text;
    if (std::regex_match(text, match, kParser) || std::regex_match(text, match, kLocation)) {
        diagnostic.file = match[1];
        diagnostic.line = LineOf(match[2]);
        diagnostic.text = match[3];
    } else if (std::regex_search(text, match, kInFile)) {
        diagnostic.file = match[1];
        diagnostic.line = LineOf(match[2]);
    }
    diagnostic.subject = SubjectOf(diagnostic.text);
    return diagnostic;
}

} // namespace Tolen::Klsl
