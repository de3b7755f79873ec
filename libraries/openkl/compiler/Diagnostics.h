#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tolen::OpenKL {

/// Collects the messages of one compilation.
class Diagnostics {
public:
    /// @param text lower case, without a full stop, such as "'foo' is not declared"
    void Error(int line, std::string text);
    /// Reports what makes reading on pointless: nothing is reported any more.
    void FinalError(int line, std::string text);
    /// Points from the last error to another place. It goes where that error goes.
    void Note(int line, std::string text);

    bool HasErrors() const { return !_errors.empty(); }
    /// Whether nothing will be reported any more, so that looking for more is pointless.
    bool IsFull() const;

    /// All messages by line, joined by newlines: "String 0 Line 12: error: 'foo' is not declared".
    std::string ToString() const;

private:
    struct Message {
        int line;
        std::string text;
        std::vector<Message> notes;
    };

    std::vector<Message> _errors;
    bool _wasLastDropped = false;
    bool _isClosed = false;
};

/// A piece of source between single quotes, cut when long and with odd bytes spelled out.
std::string Quote(std::string_view text);

} // namespace Tolen::OpenKL
