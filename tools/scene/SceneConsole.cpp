#include "scene/SceneConsole.h"

#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <utility>
#include <vector>

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
    // What went to the result mostly went to the console as well, and some of it more than once.
    std::string diary = Take();
    std::vector<std::string> lines;
    const auto add = [&lines](const std::string& text) {
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            if (line.find_first_not_of(" \t\r") != std::string::npos &&
                std::find(lines.begin(), lines.end(), line) == lines.end()) {
                lines.push_back(line);
            }
        }
    };
    for (std::size_t i = result.GetCount(); i-- > 0;) {
        const std::string& said = result.GetMessage(i);
        add(said);
        const std::size_t at = said.empty() ? std::string::npos : diary.find(said);
        if (at != std::string::npos) {
            diary.replace(at, said.size(), "\n");
        }
    }
    add(diary);
    std::string text = message;
    for (const std::string& line : lines) {
        text += "\n" + line;
    }
    node.Fail(text);
}

} // namespace Tolen::Scene
