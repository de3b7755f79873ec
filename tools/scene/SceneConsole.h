#pragma once

#include "scene/JsonNode.h"

#include "TolenCore/Console.h"

#include <memory>
#include <string>

namespace Tolen {
class Result;
}

namespace Tolen::Scene {

/// The console of the process while a scene is open. Warnings go to stderr at once; the rest is kept
/// for the complaint that follows.
class SceneConsole {
public:
    SceneConsole();
    ~SceneConsole();
    SceneConsole(const SceneConsole&) = delete;
    SceneConsole& operator=(const SceneConsole&) = delete;

    IMgrConsole& GetManager() { return _console; }

    /// What was printed since the last call.
    std::string Take();

    /// Complains about @p node, with the messages of @p result and of the console.
    /// @throws SceneError
    [[noreturn]] void Fail(const JsonNode& node, const std::string& message, const Result& result);

private:
    class Sink;

    std::unique_ptr<Sink> _pSink;
    MgrConsole _console;
    IMgrConsole* _pConsoleBefore; ///< borrowed
};

} // namespace Tolen::Scene
