#include "language/Spacing.h"

#include "KslKeywords.h"

#include <algorithm>
#include <array>

namespace Tolen::Language {

namespace {

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> candidates) {
    return std::find(candidates.begin(), candidates.end(), text) != candidates.end();
}

bool IsWordCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '.';
}

bool IsOperatorCharacter(char character) {
    return std::string_view("+-*/%<>=!&|^").find(character) != std::string_view::npos;
}

/// Whether the two tokens would be others without a blank between them.
bool Merge(std::string_view first, std::string_view second) {
    const bool canMerge =
        (IsWordCharacter(first.back()) && IsWordCharacter(second.front())) ||
        (IsOperatorCharacter(first.back()) && IsOperatorCharacter(second.front()));
    if (!canMerge) {
        return false;
    }
    const std::vector<SourceToken> tokens = Tokenize(std::string(first).append(second));
    return tokens.size() != 2 || tokens[0].range.end != first.size();
}

bool IsComment(SourceToken::Kind kind) {
    return kind == SourceToken::kKind_LineComment || kind == SourceToken::kKind_BlockComment;
}

} // namespace

bool IsTypeKeyword(std::string_view word) {
    using namespace Effects;
    constexpr std::array kTypes = {
        kToken_Void,  kToken_Float,     kToken_Int,       kToken_Bool,        kToken_Vec2,
        kToken_Vec3,  kToken_Vec4,      kToken_IVec2,     kToken_IVec3,       kToken_IVec4,
        kToken_BVec2, kToken_BVec3,     kToken_BVec4,     kToken_Mat2,        kToken_Mat3,
        kToken_Mat4,  kToken_Sampler2D, kToken_Sampler3D, kToken_SamplerCube, kToken_Primitive};
    return !word.empty() &&
           std::find(kTypes.begin(), kTypes.end(), TokenOfWord(word)) != kTypes.end();
}

bool Spacing::Next(SourceToken::Kind kind, std::string_view text, bool hadBlank) {
    const bool isBlank = !_text.empty() && _IsBlankBefore(kind, text, hadBlank);
    if (IsComment(kind)) {
        _kind = kind;
        _text = text;
        return isBlank;
    }
    const bool isSign = kind == SourceToken::kKind_Sign;
    const bool canBePrefix = isSign && IsOneOf(text, {"+", "-", "!", "~", "++", "--"});
    const bool isPostfix = isSign && _endsOperand && IsOneOf(text, {"++", "--"});
    const bool isBracket = isSign && IsOneOf(text, {"(", ")", "[", "]", "{", "}", ",", ";", "."});
    _isPrefix = canBePrefix && !_endsOperand;
    _isBinary = isSign && !_isPrefix && !isPostfix && !isBracket;
    _endsOperand = isPostfix || kind == SourceToken::kKind_Word ||
                   kind == SourceToken::kKind_Number || (isSign && IsOneOf(text, {")", "]"})) ||
                   (kind == SourceToken::kKind_Keyword &&
                    (IsTypeKeyword(text) || text == "true" || text == "false"));
    _kind = kind;
    _text = text;
    return isBlank;
}

bool Spacing::_IsBlankBefore(SourceToken::Kind kind, std::string_view text, bool hadBlank) const {
    if (kind == SourceToken::kKind_Unknown || _kind == SourceToken::kKind_Unknown) {
        return hadBlank;
    }
    const bool isAfterOpening = IsOneOf(_text, {"(", "["});
    if (IsComment(kind)) {
        return !isAfterOpening;
    }
    if (IsOneOf(text, {",", ";", ")", "]"})) {
        return IsOneOf(_text, {"{", "}"});
    }
    if (isAfterOpening) {
        return false;
    }
    if (IsComment(_kind) || IsOneOf(text, {"{", "}"}) || IsOneOf(_text, {"{", "}"})) {
        return true;
    }
    if (text == "." || _text == ".") {
        return Merge(_text, text);
    }
    if (_isPrefix) {
        // Behind a sign a name may stand for another sign.
        return (hadBlank && kind == SourceToken::kKind_Word) || Merge(_text, text);
    }
    const bool isCallable = _endsOperand && _kind != SourceToken::kKind_Number;
    return !(isCallable && IsOneOf(text, {"(", "[", "++", "--"})) &&
           !(_endsOperand && IsOneOf(text, {"++", "--"}));
}

std::string JoinTokens(const SourceText& text, const SourceToken* first, const SourceToken* last) {
    std::string line;
    Spacing spacing;
    for (const SourceToken* token = first; token < last; ++token) {
        if (token->IsComment() || token->kind == SourceToken::kKind_Directive) {
            continue;
        }
        const std::string_view piece = text.GetText(token->range);
        const bool hadBlank = token > first && token[-1].range.end < token->range.begin;
        if (spacing.Next(token->kind, piece, hadBlank)) {
            line += ' ';
        }
        line += piece;
    }
    return line;
}

} // namespace Tolen::Language
