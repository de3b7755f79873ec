#pragma once

#include "TolenCore/Console.h"

#include <mutex>
#include <string>

namespace Tolen::Tests {

/// Is the console of the process while it lives, and keeps what is written there.
class CapturedConsole : private IConsoleSink {
public:
    CapturedConsole();
    ~CapturedConsole() override;
    CapturedConsole(const CapturedConsole&) = delete;
    CapturedConsole& operator=(const CapturedConsole&) = delete;

    /// For MgrEffects::Init.
    IMgrConsole* Get() { return &_console; }

    /// What went to one channel, message after message.
    std::string GetGeneral() const { return _Get(kChannel_General); }
    std::string GetWarnings() const { return _Get(kChannel_Warning); }
    std::string GetErrors() const { return _Get(kChannel_Error); }
    /// What went to all channels, in the order in which it came.
    std::string GetAll() const;
    /// Whether any channel got @p text.
    bool Contains(const std::string& text) const {
        return GetAll().find(text) != std::string::npos;
    }

    void Clear();

private:
    void Write(Channel channel, const std::string& text) override;
    std::string _Get(Channel channel) const;

    MgrConsole _console;
    IMgrConsole* _pPrevious;
    mutable std::mutex _mutex;
    std::string _texts[3];
    std::string _all;
};

} // namespace Tolen::Tests
