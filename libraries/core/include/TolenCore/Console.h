#pragma once

/// @file
/// The console: where the system talks to a person.

#include "TolenCore/Export.h"

#include <string>

namespace Tolen {

/// Where the system talks to a person: three printf-style channels without further levels.
///
/// Lines end with their own "\n". Text that comes from a user goes through "%s", never as a format.
class TOLEN_EXPORT IMgrConsole {
public:
    virtual ~IMgrConsole() = default;

    /// The general channel: what happened, and conditions a client can't mend.
    virtual void Print(const char* format, ...) TOLEN_PRINTF(2, 3) = 0;
    /// The warning channel.
    virtual void Warning(const char* format, ...) TOLEN_PRINTF(2, 3) = 0;
    /// The error channel.
    virtual void Error(const char* format, ...) TOLEN_PRINTF(2, 3) = 0;
};

/// Takes finished console text. A sink is borrowed by its console and must outlive the use.
class TOLEN_EXPORT IConsoleSink {
public:
    /// Which operation of the console a message came by.
    enum Channel {
        kChannel_General, ///< IMgrConsole::Print
        kChannel_Warning, ///< IMgrConsole::Warning
        kChannel_Error,   ///< IMgrConsole::Error
    };

    virtual ~IConsoleSink() = default;

    /// Takes one message, on the thread that it comes from.
    /// @param channel where the message belongs
    /// @param text    the message as it was formatted, with its line feed if it has one
    virtual void Write(Channel channel, const std::string& text) = 0;
};

/// The console that formats messages and hands them to a sink; without one they go to stderr.
/// Safe to call from several threads when its sink is.
class TOLEN_EXPORT MgrConsole : public IMgrConsole {
public:
    /// A console that writes to @p sink.
    /// @param sink borrowed; null for stderr
    explicit MgrConsole(IConsoleSink* sink = nullptr) : _pSink(sink) {}

    /// Replaces the sink; not while another thread prints.
    /// @param sink borrowed; null for stderr
    /// @return the one before, null for stderr
    IConsoleSink* SetSink(IConsoleSink* sink);

    /// @cond
    void Print(const char* format, ...) override TOLEN_PRINTF(2, 3);
    void Warning(const char* format, ...) override TOLEN_PRINTF(2, 3);
    void Error(const char* format, ...) override TOLEN_PRINTF(2, 3);
    /// @endcond

private:
    void _Write(IConsoleSink::Channel channel, const std::string& text);

    IConsoleSink* _pSink; ///< borrowed
};

/// The console of the process. Never null unless a client set it so.
TOLEN_EXPORT IMgrConsole* GetMgrConsole();

/// Replaces the console of the process. @param console borrowed; null silences it
/// @return the one before
TOLEN_EXPORT IMgrConsole* SetMgrConsole(IMgrConsole* console);

/// Prints one message on the general channel of the console of the process; without a console
/// nothing happens.
TOLEN_EXPORT void ConsolePrint(const char* format, ...) TOLEN_PRINTF(1, 2);
/// Prints one message on the error channel of the console of the process; without a console nothing
/// happens.
TOLEN_EXPORT void ConsoleError(const char* format, ...) TOLEN_PRINTF(1, 2);

} // namespace Tolen
