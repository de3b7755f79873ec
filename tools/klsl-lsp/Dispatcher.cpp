#include "Dispatcher.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace Tolen::LanguageServer {

void Dispatcher::OnRequest(const std::string& method, RequestHandler handler) {
    _requests.emplace(method, std::move(handler));
}

void Dispatcher::OnNotification(const std::string& method, NotificationHandler handler) {
    _notifications.emplace(method, std::move(handler));
}

std::optional<Json> Dispatcher::Dispatch(const Json& message) {
    static const Json kNothing;
    if (!message.is_object()) {
        return MakeErrorAnswer(nullptr, ErrorCode::InvalidRequest, "a message is one object");
    }
    const auto id = message.find("id");
    const auto method = message.find("method");
    const bool hasMethod = method != message.end();
    if (!hasMethod && id != message.end() &&
        (message.contains("result") || message.contains("error"))) {
        return std::nullopt; // the client's answer to a request of ours
    }
    const bool isRequest = id != message.end();
    if (isRequest && !id->is_string() && !id->is_number_integer()) {
        return MakeErrorAnswer(nullptr, ErrorCode::InvalidRequest,
                               "an id is a string or a whole number");
    }
    const auto version = message.find("jsonrpc");
    if (!hasMethod || !method->is_string() || version == message.end() || *version != "2.0") {
        return MakeErrorAnswer(isRequest ? *id : Json(), ErrorCode::InvalidRequest,
                               "a message has a method and \"jsonrpc\": \"2.0\"");
    }
    const auto found = message.find("params");
    const Json& parameters = found == message.end() ? kNothing : *found;
    if (isRequest) {
        return _Answer(*id, method->get<std::string>(), parameters);
    }
    _Notify(method->get<std::string>(), parameters);
    return std::nullopt;
}

Json Dispatcher::_Answer(const Json& id, const std::string& method, const Json& parameters) {
    try {
        return MakeAnswer(id, _Request(method, parameters));
    } catch (const RequestError& error) {
        return MakeErrorAnswer(id, error.GetCode(), error.what());
    } catch (const std::exception& error) {
        return MakeErrorAnswer(id, ErrorCode::InternalError, error.what());
    }
}

Json Dispatcher::_Request(const std::string& method, const Json& parameters) {
    if (_state == kState_Fresh && method != "initialize") {
        throw RequestError(ErrorCode::ServerNotInitialized, "\"initialize\" comes first");
    }
    if (_state == kState_Running && method == "initialize") {
        throw RequestError(ErrorCode::InvalidRequest, "\"initialize\" comes once");
    }
    if (_state == kState_ShutDown) {
        throw RequestError(ErrorCode::InvalidRequest, "nothing comes behind \"shutdown\"");
    }
    const auto handler = _requests.find(method);
    if (handler == _requests.end()) {
        throw RequestError(ErrorCode::MethodNotFound, "\"" + method + "\" is not known");
    }
    Json result = handler->second(parameters);
    if (method == "initialize") {
        _state = kState_Running;
    } else if (method == "shutdown") {
        _state = kState_ShutDown;
    }
    return result;
}

void Dispatcher::_Notify(const std::string& method, const Json& parameters) {
    if (method == "exit") {
        _exitStatus = _state == kState_ShutDown ? 0 : 1;
        return;
    }
    const auto handler = _notifications.find(method);
    if (_state != kState_Running || handler == _notifications.end()) {
        return;
    }
    try {
        handler->second(parameters);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "klsl-lsp: %s: %s\n", method.c_str(), error.what());
    }
}

} // namespace Tolen::LanguageServer
