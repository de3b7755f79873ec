#include "Message.h"

#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <utility>

namespace Tolen::Language {

namespace {

/// What is longer is cut: such messages have names in them that nobody can read, and what looks for
/// patterns in them goes as deep as they are long.
constexpr std::size_t kMaxLength = 2000;

/// A line number out of a message; 0 where it is no number of a line. Lines of included texts may
/// lie before the first.
int LineOf(const std::string& digits) {
    const long line = std::strtol(digits.c_str(), nullptr, 10);
    return line > -2147483647 && line < 2147483647 ? static_cast<int>(line) : 0;
}

/// Reads one line. @return whether it is a note to the one before
bool ReadLine(const std::string& line, Message& message) {
    static const std::regex kParser("^(.+?)\\((-?\\d+)\\) : (.*)$");
    static const std::regex kLocation("^([^:\"]+):(-?\\d+): (error: |note: )?(.*)$");
    static const std::regex kInFile("(?:file|Library) '([^']*)'(?: line (\\d+))?");

    std::smatch match;
    message.text = line;
    if (std::regex_match(line, match, kParser)) {
        message.file = match[1];
        message.line = LineOf(match[2]);
        message.text = match[3];
        message.isOfParser = true;
    } else if (std::regex_match(line, match, kLocation)) {
        message.file = match[1];
        message.line = LineOf(match[2]);
        message.text = match[4];
        message.isOfCompiler = true;
        return match[3] == "note: ";
    } else if (std::regex_search(line, match, kInFile)) {
        message.file = match[1];
        message.line = LineOf(match[2]);
    }
    return false;
}

/// Whether @p text is one of the few words that the evaluation of defaults leaves at each level on
/// its way out, such as "Initializer" or the name of an input.
bool IsFragment(const std::string& text) {
    return std::count(text.begin(), text.end(), ' ') < 3 &&
           text.find_first_of("\"'.(") == std::string::npos;
}

} // namespace

std::vector<Message> ReadMessages(Diagnostic::Severity severity, const std::string& text) {
    std::vector<Message> messages;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of(" \r\n") + 1);
        if (line.empty()) {
            continue;
        }
        if (line.size() > kMaxLength) {
            line.replace(kMaxLength, std::string::npos, "...");
        }
        Message message;
        message.severity = severity;
        const bool isNote = ReadLine(line, message);
        if (isNote && !messages.empty()) {
            messages.back().notes.push_back(std::move(message));
        } else {
            messages.push_back(std::move(message));
        }
    }
    return messages;
}

std::vector<Message> ReadMessages(const Result& result) {
    std::vector<Message> messages;
    bool continues = false;
    for (std::size_t index = result.GetCount(); index-- > 0;) {
        for (Message& next : ReadMessages(Diagnostic::kSeverity_Error, result.GetMessage(index))) {
            const bool isFragment = !next.isOfParser && IsFragment(next.text);
            if (isFragment && continues) {
                Message& last = messages.back();
                if (last.text.size() + next.text.size() <= kMaxLength) {
                    last.text += ": " + next.text;
                }
                if (last.line == 0) {
                    last.file = next.file;
                    last.line = next.line;
                }
            } else {
                messages.push_back(std::move(next));
            }
            continues = isFragment;
        }
    }
    return messages;
}

} // namespace Tolen::Language
