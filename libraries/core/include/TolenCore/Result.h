#pragma once

#include "TolenCore/Export.h"

#include <cstddef>
#include <string>
#include <vector>

/// What all libraries share, and the interfaces through which they meet a renderer's OpenKL.
namespace Tolen {

class IMgrConsole;

/// The messages that a call leaves for its caller, oldest first.
///
/// Wherever an operation takes a `Result*`, null is legal and drops the messages.
class TOLEN_EXPORT Result {
public:
    /// Formats one message by the printf rules and appends it. @return true
    bool Add(const char* format, ...) TOLEN_PRINTF(2, 3);

    /// Appends every message of @p other, which may be this list itself. @return true
    bool Add(const Result& other);

    /// Whether there is no message.
    bool IsEmpty() const { return _messages.empty(); }
    /// The number of messages.
    std::size_t GetCount() const { return _messages.size(); }

    /// One message; lives until the list changes.
    /// @param index 0 for the oldest message, below GetCount()
    const std::string& GetMessage(std::size_t index) const { return _messages.at(index); }

    /// The newest message; an empty text when there is none.
    const std::string& GetLast() const;

    /// All messages, oldest first.
    const std::vector<std::string>& GetMessages() const { return _messages; }

    /// Forgets all messages.
    void Clear() { _messages.clear(); }

    /// Prints the messages from newest to oldest, joined by ": " and ended by "\n", as one line on
    /// the error channel. Prints nothing without messages.
    /// @param console null stands for the console of the process
    void ReportToConsole(IMgrConsole* console) const;

private:
    std::vector<std::string> _messages;
};

} // namespace Tolen
