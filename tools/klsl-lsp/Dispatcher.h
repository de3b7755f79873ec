#pragma once

#include "Protocol.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace Tolen::LanguageServer {

/// Brings messages to their handlers and makes the answers. Keeps the order of a session: nothing
/// before "initialize", and only "exit" behind "shutdown".
class Dispatcher {
public:
    /// @return the result @throw RequestError
    using RequestHandler = std::function<Json(const Json& parameters)>;
    using NotificationHandler = std::function<void(const Json& parameters)>;

    void OnRequest(const std::string& method, RequestHandler handler);
    void OnNotification(const std::string& method, NotificationHandler handler);

    /// @return the answer; none for notifications and for the client's own answers
    std::optional<Json> Dispatch(const Json& message);

    /// Whether "exit" has come, and the exit status that it asks for.
    std::optional<int> GetExitStatus() const { return _exitStatus; }

private:
    enum State { kState_Fresh, kState_Running, kState_ShutDown };

    Json _Answer(const Json& id, const std::string& method, const Json& parameters);
    Json _Request(const std::string& method, const Json& parameters);
    void _Notify(const std::string& method, const Json& parameters);

    std::map<std::string, RequestHandler> _requests;
    std::map<std::string, NotificationHandler> _notifications;
    State _state = kState_Fresh;
    std::optional<int> _exitStatus;
};

} // namespace Tolen::LanguageServer
