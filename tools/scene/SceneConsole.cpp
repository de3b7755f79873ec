#include "scene/SceneConsole.h"

#include "TolenCore/Result.h"

#include <cstdio>
#include <utility>

namespace Tolen::Scene {

/// Warnings are shown; the general channel is a diary and only shown with an error.
class SceneConsole::Sink : public IConsoleSink {
public:
    void Write(Channel channel, const std::string& text) override {
        if (channel == kChannel_Warning) {
            std::fputs(text.c_str(), stderr);
        } else if (!text.starts_with("Acquired shader source asset")) {
            _text += text;
        }
    }

    std::string Take() { return std::exchange(_text, std::string()); }

private:
    std::string _text;
};

SceneConsole::SceneConsole()
    : _pSink(std::make_unique<Sink>()), _console(_pSink.get()),
      _pConsoleBefore(SetMgrConsole(&_console)) {}

SceneConsole::~SceneConsole() { SetMgrConsole(_pConsoleBefore); }

std::string SceneConsole::Take() { return _pSink->Take(); }

void SceneConsole::Fail(const JsonNode& node, const std::string& message, const Result& result) {
    std::string text = message;
    for (std::size_t i = result.GetCount(); i-- > 0;) {
        text += "\n" + result.GetMessage(i);
    }
    const std::string diary = Take();
    if (!diary.empty()) {
        text += "\n" + diary;
    }
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    node.Fail(text);
}

} // namespace Tolen::Scene
