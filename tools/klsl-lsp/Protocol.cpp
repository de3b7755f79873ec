#include "Protocol.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace Tolen::LanguageServer {

namespace {

/// More than any message needs, and few enough for code that walks values recursively.
constexpr int kLimitNesting = 128;

/// Whether brackets outside of strings nest deeper than the limit.
bool NestsTooDeep(const std::string& text) {
    int depth = 0;
    bool isInString = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (isInString) {
            at += c == '\\' ? 1 : 0;
            isInString = c != '"';
        } else if (c == '"') {
            isInString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > kLimitNesting) {
                return true;
            }
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return false;
}

RequestError MakeMemberError(const char* name, const char* what) {
    return {ErrorCode::InvalidParams, "expected \"" + std::string(name) + "\" to be " + what};
}

} // namespace

Json MakeAnswer(const Json& id, Json result) {
    return {{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}};
}

Json MakeErrorAnswer(const Json& id, ErrorCode code, const std::string& text) {
    return {{"jsonrpc", "2.0"},
            {"id", id},
            {"error", {{"code", static_cast<int>(code)}, {"message", text}}}};
}

Json MakeNotification(const std::string& method, Json parameters) {
    return {{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(parameters)}};
}

Json ParseMessage(const std::string& text) {
    if (NestsTooDeep(text)) {
        throw RequestError(ErrorCode::ParseError, "the message nests deeper than " +
                                                      std::to_string(kLimitNesting) + " levels");
    }
    Json message = Json::parse(text, nullptr, false);
    if (message.is_discarded()) {
        throw RequestError(ErrorCode::ParseError, "the message is no JSON");
    }
    return message;
}

const Json& GetMember(const Json& object, const char* name) {
    const auto member = object.is_object() ? object.find(name) : object.end();
    if (member == object.end()) {
        throw RequestError(ErrorCode::InvalidParams, "\"" + std::string(name) + "\" is missing");
    }
    return *member;
}

const std::string& GetString(const Json& object, const char* name) {
    const Json& member = GetMember(object, name);
    if (!member.is_string()) {
        throw MakeMemberError(name, "a string");
    }
    return member.get_ref<const std::string&>();
}

int GetCount(const Json& object, const char* name) {
    const Json& member = GetMember(object, name);
    if (!member.is_number_unsigned()) {
        throw MakeMemberError(name, "a whole number from 0");
    }
    constexpr std::uint64_t largest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(member.get<std::uint64_t>(), largest));
}

const Json* FindMember(const Json& object, const char* path) {
    const Json::json_pointer pointer(path);
    return object.contains(pointer) ? &object[pointer] : nullptr;
}

bool IsSet(const Json& object, const char* path) {
    const Json* const member = FindMember(object, path);
    return member != nullptr && member->is_boolean() && member->get<bool>();
}

bool Lists(const Json& object, const char* path, const std::string& value) {
    const Json* const list = FindMember(object, path);
    return list != nullptr && list->is_array() &&
           std::find(list->begin(), list->end(), value) != list->end();
}

} // namespace Tolen::LanguageServer
