#include "TolenCore/Result.h"

#include "TolenCore/Console.h"
#include "TolenCore/Format.h"

#include <cstdarg>

namespace Tolen {

bool Result::Add(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    _messages.push_back(FormatV(format, arguments));
    va_end(arguments);
    return true;
}

bool Result::Add(const Result& other) {
    // The count is taken first, and elements are reached by index: the other list may be this one.
    const std::size_t count = other._messages.size();
    _messages.reserve(_messages.size() + count);
    for (std::size_t i = 0; i < count; ++i) {
        _messages.push_back(other._messages[i]);
    }
    return true;
}

const std::string& Result::GetLast() const {
    static const std::string none;
    return _messages.empty() ? none : _messages.back();
}

void Result::ReportToConsole(IMgrConsole* console) const {
    if (console == nullptr) {
        console = GetMgrConsole();
    }
    if (console == nullptr || _messages.empty()) {
        return;
    }
    std::string line = _messages.back();
    for (std::size_t i = _messages.size() - 1; i > 0; --i) {
        line += ": ";
        line += _messages[i - 1];
    }
    line += '\n';
    console->Error("%s", line.c_str());
}

} // namespace Tolen
