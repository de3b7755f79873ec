#pragma once

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>

namespace Tolen::LanguageServer {

using Json = nlohmann::json;

/// The codes of JSON-RPC and of the language server protocol.
enum class ErrorCode {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestFailed = -32803,
    RequestCancelled = -32800,
};

/// Ends a request; the client gets code and text.
class RequestError : public std::runtime_error {
public:
    RequestError(ErrorCode code, const std::string& text) : std::runtime_error(text), _code(code) {}

    ErrorCode GetCode() const { return _code; }

private:
    ErrorCode _code;
};

/// The messages of the server.
/// @{
Json MakeAnswer(const Json& id, Json result);
Json MakeErrorAnswer(const Json& id, ErrorCode code, const std::string& text);
Json MakeNotification(const std::string& method, Json parameters);
/// @}

/// Reads a message. Texts that nest deeper than any message of the protocol does are refused.
/// @throw RequestError for what is no JSON
Json ParseMessage(const std::string& text);

/// Members of objects that a client sends. What is missing or of another type is an error of its
/// parameters.
/// @throw RequestError
/// @{
const Json& GetMember(const Json& object, const char* name);
const std::string& GetString(const Json& object, const char* name);
/// A number from 0; those too large for an int become the largest one.
int GetCount(const Json& object, const char* name);
/// @}

/// What lies at a path such as "/textDocument/hover/contentFormat"; null when any part is missing.
const Json* FindMember(const Json& object, const char* path);
/// Whether true lies there.
bool IsSet(const Json& object, const char* path);
/// Whether a list with @p value lies there.
bool Lists(const Json& object, const char* path, const std::string& value);

} // namespace Tolen::LanguageServer
