#include "CompletionPlace.h"

#include "language/Builtins.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

namespace Tolen::LanguageServer {

using Language::Builtin;
using Language::SourceRange;
using Language::SourceToken;
using Language::Symbol;

namespace {

using Kind = CompletionPlace::Kind;

bool IsWordLetter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

SourceRange FindPrefix(const Source& source, std::size_t offset) {
    const std::string& text = source.text.GetText();
    std::size_t begin = offset;
    while (begin > 0 && IsWordLetter(text[begin - 1])) {
        --begin;
    }
    return {begin, offset};
}

/// A place in a line that begins with "#".
CompletionPlace FindInDirective(std::string_view line, std::size_t begin, std::size_t offset,
                                const SourceRange& prefix) {
    const std::size_t quote = line.find('"');
    if (quote != std::string_view::npos) {
        const bool isFile = line.starts_with("#include") || line.starts_with("#import");
        const bool isInside = line.find('"', quote + 1) == std::string_view::npos;
        return {isFile && isInside ? Kind::kKind_FileName : Kind::kKind_Nothing,
                {begin + quote + 1, offset},
                0,
                {}};
    }
    if (std::all_of(line.begin() + 1, line.end(), IsWordLetter)) {
        return {Kind::kKind_Directive, {begin, offset}, 0, {}};
    }
    if (!line.starts_with("#define ")) {
        const bool isName = line.starts_with("#ifdef ") || line.starts_with("#ifndef ") ||
                            line.starts_with("#undef ");
        return {isName ? Kind::kKind_DefineName : Kind::kKind_Nothing, prefix, 0, {}};
    }
    // Behind the name of a define stands code.
    const std::size_t name = line.find_first_not_of(' ', std::string_view("#define").size());
    const bool isValue =
        name != std::string_view::npos && line.find_first_of(" \t", name) != std::string_view::npos;
    return {isValue ? Kind::kKind_Code : Kind::kKind_Nothing, prefix, 0, {}};
}

bool IsType(std::string_view word) {
    const Builtin* const builtin = Language::FindBuiltin(std::string(word));
    return builtin != nullptr && builtin->kind == Builtin::kKind_Type;
}

/// The words and signs between the last semicolon or brace and token @p end.
std::vector<std::string_view> ListStatement(const Source& source, std::size_t end) {
    constexpr std::size_t limitTokens = 256;
    std::vector<std::string_view> words;
    for (std::optional<std::size_t> index = source.FindPrevious(end);
         index.has_value() && words.size() < limitTokens; index = source.FindPrevious(*index)) {
        const std::string_view word = source.GetText(source.tokens[*index]);
        if (word == ";" || word == "{" || word == "}") {
            break;
        }
        words.push_back(word);
    }
    std::reverse(words.begin(), words.end());
    return words;
}

/// Among the parameters of a head: behind its bracket or a comma, as far as no name begins.
Kind FindInHead(const std::vector<std::string_view>& words) {
    const std::string_view last = words.back();
    const bool beginsParameter =
        last == "(" || last == "," || last == "in" || last == "out" || last == "inout";
    return beginsParameter ? Kind::kKind_Type : Kind::kKind_Nothing;
}

Kind FindOutside(const std::vector<std::string_view>& words) {
    if (words.empty()) {
        return Kind::kKind_Outside;
    }
    if (words.size() == 3 && words[0] == "class" && words[2] == ":") {
        return Kind::kKind_InterfaceName;
    }
    const bool isHead = std::find(words.begin(), words.end(), "(") != words.end();
    return isHead ? FindInHead(words) : Kind::kKind_Nothing;
}

Kind FindInClass(const std::vector<std::string_view>& words, CompletionPlace& place) {
    if (words.empty()) {
        return Kind::kKind_Class;
    }
    const auto assignment = std::find(words.begin(), words.end(), "=");
    const auto input = std::find(words.begin(), words.end(), "input");
    if (assignment != words.end()) {
        if (input < assignment && assignment - input >= 3) {
            place.type = input[1];
            return Kind::kKind_InputValue;
        }
        return Kind::kKind_Code;
    }
    if (words.back() == "input") {
        return Kind::kKind_InputType;
    }
    if (std::find(words.begin(), words.end(), "(") != words.end()) {
        return FindInHead(words);
    }
    const bool wantsType = std::all_of(words.begin(), words.end(), [](std::string_view word) {
        return word == "static" || word == "const" || word == "coord" || word == "output" ||
               word == "out" || word == "normal" || word == "tangent";
    });
    return !wantsType                                       ? Kind::kKind_Nothing
           : words.size() == 1 && words.front() == "static" ? Kind::kKind_Class
                                                            : Kind::kKind_Type;
}

Kind FindInInterface(const std::vector<std::string_view>& words) {
    if (words.empty()) {
        return Kind::kKind_Interface;
    }
    const bool isHead = std::find(words.begin(), words.end(), "(") != words.end();
    return isHead ? FindInHead(words) : Kind::kKind_Nothing;
}

} // namespace

CompletionPlace FindCompletionPlace(const Source& source, std::size_t offset) {
    CompletionPlace place;
    place.prefix = FindPrefix(source, offset);
    if (source.IsInComment(offset)) {
        return place;
    }
    const std::string& text = source.text.GetText();
    const SourceRange line = source.text.GetLineRange(source.text.GetPlace(offset).line);
    const std::size_t first = text.find_first_not_of(" \t", line.begin);
    if (first < offset && text[first] == '#') {
        return FindInDirective(std::string_view(text).substr(first, offset - first), first, offset,
                               place.prefix);
    }
    if (place.prefix.GetLength() > 0 &&
        std::isdigit(static_cast<unsigned char>(text[place.prefix.begin])) != 0) {
        return place;
    }

    const std::size_t token = source.FindTokenAfter(place.prefix.begin);
    const std::optional<std::size_t> before = source.FindPrevious(token);
    const std::string_view last =
        before.has_value() ? source.GetText(source.tokens[*before]) : std::string_view();
    if (last == ".") {
        place.kind = Kind::kKind_Member;
        place.dot = *before;
        return place;
    }
    const std::vector<std::string_view> words = ListStatement(source, token);
    const std::vector<const Symbol*> around = source.outline.FindAround(offset);
    const Symbol* const inner = around.empty() ? nullptr : around.back();
    const bool isInBody = inner != nullptr && inner->bodyRange.begin < place.prefix.begin &&
                          inner->bodyRange.end > inner->bodyRange.begin;
    if (inner != nullptr && inner->IsFunction() && isInBody) {
        place.kind = IsType(last) ? Kind::kKind_Nothing : Kind::kKind_Code;
    } else if (inner == nullptr || (!isInBody && around.size() == 1)) {
        place.kind = FindOutside(words);
    } else {
        place.kind = around.front()->kind == Symbol::kKind_Interface ? FindInInterface(words)
                                                                     : FindInClass(words, place);
    }
    return place;
}

} // namespace Tolen::LanguageServer
