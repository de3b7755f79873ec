#include "Call.h"

#include <string_view>

namespace Tolen::LanguageServer {

using Language::SourceToken;

namespace {

bool IsOpening(std::string_view sign) {
    return sign == "(" || sign == "[";
}

bool IsClosing(std::string_view sign) {
    return sign == ")" || sign == "]";
}

/// Signs that no expression holds.
bool EndsExpression(std::string_view sign) {
    return sign == ";" || sign == "{" || sign == "}";
}

bool IsName(const SourceToken& token) {
    return token.kind == SourceToken::kKind_Word || token.kind == SourceToken::kKind_Keyword;
}

/// `float[](1.0)` is called by its type, before the brackets.
std::optional<std::size_t> FindCalledName(const Source& source, std::size_t bracket) {
    std::optional<std::size_t> before = source.FindPrevious(bracket);
    if (before.has_value() && source.GetText(source.tokens[*before]) == "]") {
        const std::optional<std::size_t> opening = FindOpening(source, *before);
        before = opening.has_value() ? source.FindPrevious(*opening) : std::nullopt;
    }
    return before.has_value() && IsName(source.tokens[*before]) ? before : std::nullopt;
}

} // namespace

std::optional<std::size_t> FindOpening(const Source& source, std::size_t closing) {
    int depth = 0;
    for (std::optional<std::size_t> index = closing; index.has_value();
         index = source.FindPrevious(*index)) {
        const std::string_view sign = source.GetText(source.tokens[*index]);
        depth += IsClosing(sign) ? 1 : IsOpening(sign) ? -1 : 0;
        if (depth == 0) {
            return index;
        }
        if (EndsExpression(sign)) {
            break;
        }
    }
    return std::nullopt;
}

std::optional<Call> FindCallAround(const Source& source, std::size_t offset) {
    int depth = 0;
    std::size_t argument = 0;
    std::size_t end = source.FindTokenAfter(offset);
    if (end < source.tokens.size() && source.tokens[end].range.begin < offset) {
        ++end;
    }
    for (std::optional<std::size_t> index = source.FindPrevious(end); index.has_value();
         index = source.FindPrevious(*index)) {
        const std::string_view sign = source.GetText(source.tokens[*index]);
        if (EndsExpression(sign)) {
            return std::nullopt;
        }
        if (IsClosing(sign)) {
            ++depth;
        } else if (sign == "," && depth == 0) {
            ++argument;
        } else if (IsOpening(sign) && --depth < 0) {
            const std::optional<std::size_t> name =
                sign == "(" ? FindCalledName(source, *index) : std::nullopt;
            if (name.has_value()) {
                return Call{*name, argument};
            }
            // Brackets around a part of an argument.
            depth = 0;
            argument = 0;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> CountArguments(const Source& source, std::size_t name) {
    const std::optional<std::size_t> opening =
        IsName(source.tokens[name]) ? source.FindNext(name) : std::nullopt;
    if (!opening.has_value() || source.GetText(source.tokens[*opening]) != "(") {
        return std::nullopt;
    }
    int depth = 1;
    std::size_t commas = 0;
    bool isEmpty = true;
    for (std::optional<std::size_t> index = source.FindNext(*opening); index.has_value();
         index = source.FindNext(*index)) {
        const std::string_view sign = source.GetText(source.tokens[*index]);
        if (EndsExpression(sign)) {
            break;
        }
        depth += IsOpening(sign) ? 1 : IsClosing(sign) ? -1 : 0;
        if (depth == 0) {
            return isEmpty ? 0 : commas + 1;
        }
        commas += sign == "," && depth == 1 ? 1 : 0;
        isEmpty = isEmpty && sign == "void";
    }
    return std::nullopt;
}

} // namespace Tolen::LanguageServer
