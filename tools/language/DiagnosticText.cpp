#include "DiagnosticText.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

namespace Tolen::Language {

namespace {

constexpr const char* kBold = "1";
constexpr const char* kRed = "1;31";
constexpr const char* kMagenta = "1;35";
constexpr const char* kCyan = "1;36";
constexpr const char* kGreen = "1;32";

/// Columns of a line that are shown; what lies further away from the place is cut.
constexpr std::size_t kWidth = 160;
constexpr std::size_t kBeforePlace = 60;

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

/// What goes under @p text to move as far to the right: blanks, and tabs as they are.
std::string Blanks(std::string_view text) {
    std::string blanks;
    for (const char byte : text) {
        if (!IsContinuation(byte)) {
            blanks += byte == '\t' ? '\t' : ' ';
        }
    }
    return blanks;
}

/// Bytes that would do something to a terminal are shown as "?".
std::string Printable(std::string_view text) {
    std::string printable(text);
    for (char& byte : printable) {
        const auto value = static_cast<unsigned char>(byte);
        if ((value < 0x20 && byte != '\t') || value == 0x7f) {
            byte = '?';
        }
    }
    return printable;
}

/// The window of a long line that shows @p columns; all of a line that isn't long.
SourceRange WindowOf(std::string_view line, const SourceRange& columns) {
    if (line.size() <= kWidth) {
        return {0, line.size()};
    }
    SourceRange window;
    window.begin = columns.begin > kBeforePlace ? columns.begin - kBeforePlace : 0;
    window.begin = std::min(window.begin, line.size() - kWidth);
    window.end = window.begin + kWidth;
    while (window.begin > 0 && IsContinuation(line[window.begin])) {
        --window.begin;
    }
    while (window.end < line.size() && IsContinuation(line[window.end])) {
        ++window.end;
    }
    return window;
}

} // namespace

void DiagnosticText::SetText(const std::string& file, const std::string& text) {
    _files.insert_or_assign(file, SourceText(text));
}

std::string DiagnosticText::Show(const Diagnostic& diagnostic) {
    const bool isError = diagnostic.severity == Diagnostic::kSeverity_Error;
    std::string behind;
    if (!diagnostic.suggestion.empty()) {
        behind = "did you mean '" + diagnostic.suggestion + "'?";
    }
    std::string text = _ShowPlace(diagnostic.file, diagnostic.line, diagnostic.columns) +
                       _Color(isError ? kRed : kMagenta, isError ? "error: " : "warning: ") +
                       _Color(kBold, Printable(diagnostic.text)) +
                       (diagnostic.line == 0 && !behind.empty() ? " (" + behind + ")\n" : "\n");
    if (diagnostic.line != 0) {
        text += _ShowLine(diagnostic.file, diagnostic.line, diagnostic.columns, behind);
    }
    for (const Diagnostic::Note& note : diagnostic.notes) {
        text += _ShowPlace(note.file, note.line, note.columns) + _Color(kCyan, "note: ") +
                Printable(note.text) + "\n" + _ShowLine(note.file, note.line, note.columns, "");
    }
    return text;
}

std::string DiagnosticText::_ShowPlace(const std::string& file, int line,
                                       const SourceRange& columns) const {
    if (file.empty()) {
        return "";
    }
    std::string place = file;
    if (line != 0) {
        place += ":" + std::to_string(line);
        if (columns.GetLength() != 0) {
            place += ":" + std::to_string(columns.begin + 1);
        }
    }
    return _Color(kBold, place + ":") + " ";
}

std::string DiagnosticText::_ShowLine(const std::string& file, int line, const SourceRange& columns,
                                      const std::string& behind) {
    const SourceText& source = _Find(file);
    if (line < 1 || line > source.CountLines()) {
        return behind.empty() ? "" : behind + "\n";
    }
    const std::string_view whole = source.GetLine(line);
    const SourceRange window = WindowOf(whole, columns);
    const std::string_view shown = whole.substr(window.begin, window.GetLength());
    const std::string front = window.begin > 0 ? "... " : "";
    std::string text = front + Printable(shown) + (window.end < whole.size() ? " ..." : "") + "\n";
    const std::size_t begin = std::clamp(columns.begin, window.begin, window.end);
    const std::size_t end = std::clamp(columns.end, begin, window.end);
    if (end == begin) {
        return behind.empty() ? text : text + behind + "\n";
    }
    const std::string marked = Blanks(whole.substr(begin, end - begin));
    const std::string mark = "^" + std::string(marked.size() - 1, '~');
    text += Blanks(front) + Blanks(whole.substr(window.begin, begin - window.begin)) +
            _Color(kGreen, mark + (behind.empty() ? "" : " " + behind)) + "\n";
    return text;
}

std::string DiagnosticText::_Color(const char* code, const std::string& text) const {
    return _isColored ? std::string("\033[") + code + "m" + text + "\033[0m" : text;
}

const SourceText& DiagnosticText::_Find(const std::string& file) {
    const auto found = _files.find(file);
    if (found != _files.end()) {
        return found->second;
    }
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    if (stream) {
        text << stream.rdbuf();
    }
    return _files.emplace(file, SourceText(text.str())).first->second;
}

} // namespace Tolen::Language
