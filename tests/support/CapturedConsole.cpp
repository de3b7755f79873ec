#include "support/CapturedConsole.h"

namespace Tolen::Tests {

CapturedConsole::CapturedConsole() : _console(this), _pPrevious(SetMgrConsole(&_console)) {}

CapturedConsole::~CapturedConsole() {
    SetMgrConsole(_pPrevious);
}

std::string CapturedConsole::GetAll() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _all;
}

void CapturedConsole::Clear() {
    const std::lock_guard<std::mutex> lock(_mutex);
    for (std::string& text : _texts) {
        text.clear();
    }
    _all.clear();
}

void CapturedConsole::Write(Channel channel, const std::string& text) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _texts[channel] += text;
    _all += text;
}

std::string CapturedConsole::_Get(Channel channel) const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _texts[channel];
}

} // namespace Tolen::Tests
