#include "TolenCore/Console.h"

#include "TolenCore/Format.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace Tolen {

namespace {

std::atomic<IMgrConsole*>& ActiveConsole() {
    static MgrConsole initial;
    static std::atomic<IMgrConsole*> active{&initial};
    return active;
}

} // namespace

IConsoleSink* MgrConsole::SetSink(IConsoleSink* sink) {
    IConsoleSink* const previous = _pSink;
    _pSink = sink;
    return previous;
}

void MgrConsole::_Write(IConsoleSink::Channel channel, const std::string& text) {
    if (_pSink != nullptr) {
        _pSink->Write(channel, text);
    } else {
        std::fputs(text.c_str(), stderr);
    }
}

void MgrConsole::Print(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    _Write(IConsoleSink::kChannel_General, FormatV(format, arguments));
    va_end(arguments);
}

void MgrConsole::Warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    _Write(IConsoleSink::kChannel_Warning, FormatV(format, arguments));
    va_end(arguments);
}

void MgrConsole::Error(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    _Write(IConsoleSink::kChannel_Error, FormatV(format, arguments));
    va_end(arguments);
}

IMgrConsole* GetMgrConsole() { return ActiveConsole(); }

IMgrConsole* SetMgrConsole(IMgrConsole* console) { return ActiveConsole().exchange(console); }

void ConsolePrint(const char* format, ...) {
    IMgrConsole* const console = GetMgrConsole();
    if (console == nullptr) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    console->Print("%s", FormatV(format, arguments).c_str());
    va_end(arguments);
}

void ConsoleError(const char* format, ...) {
    IMgrConsole* const console = GetMgrConsole();
    if (console == nullptr) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    console->Error("%s", FormatV(format, arguments).c_str());
    va_end(arguments);
}

} // namespace Tolen
