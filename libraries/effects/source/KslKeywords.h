#pragma once

#include "KslToken.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace Tolen::Effects {

/// A word that is no identifier, with its token; "true" and "false" stand for bool constants.
struct KslKeyword {
    std::string_view text;
    KslToken token = kToken_End;
};

namespace Detail {

inline constexpr std::size_t kKeywordSlots = 128;
inline constexpr std::size_t kLongestKeyword = 11;

/// Four characters and the length set every two keywords apart: the table below has no collision.
/// @param word at least two characters
constexpr std::size_t KeywordSlot(std::string_view word) {
    const auto at = [word](std::size_t index) {
        return static_cast<std::size_t>(static_cast<unsigned char>(word[index]));
    };
    const std::size_t length = word.size();
    return (at(0) * 22 + at(length - 1) * 24 + at(length - 2) * 9 + at(length / 2) * 16 +
            length * 27) %
           kKeywordSlots;
}

constexpr bool IsKeyword(KslToken token) {
    const char first = kTokenTexts[token][0];
    return first >= 'a' && first <= 'z' && token != kToken_Identifier &&
           token != kToken_IntConstant && token != kToken_FloatConstant &&
           token != kToken_BoolConstant;
}

constexpr std::array<KslKeyword, kKeywordSlots> MakeKeywords() {
    std::array<KslKeyword, kKeywordSlots> slots{};
    const auto enter = [&slots](std::string_view text, KslToken token) {
        KslKeyword& slot = slots[KeywordSlot(text)];
        if (!slot.text.empty() || text.size() > kLongestKeyword) {
            throw "two keywords in one slot, or a longer one";
        }
        slot = {text, token};
    };
    for (int code = kToken_End + 1; code < kToken_Count; ++code) {
        const KslToken token = static_cast<KslToken>(code);
        if (IsKeyword(token)) {
            enter(kTokenTexts[code], token);
        }
    }
    enter("true", kToken_BoolConstant);
    enter("false", kToken_BoolConstant);
    return slots;
}

inline constexpr std::array<KslKeyword, kKeywordSlots> kKeywords = MakeKeywords();

} // namespace Detail

/// The token of @p word: a keyword's, kToken_BoolConstant or kToken_Identifier.
/// @param word not empty
inline KslToken TokenOfWord(std::string_view word) {
    if (word.size() < 2 || word.size() > Detail::kLongestKeyword) {
        return kToken_Identifier;
    }
    const KslKeyword& keyword = Detail::kKeywords[Detail::KeywordSlot(word)];
    return keyword.text == word ? keyword.token : kToken_Identifier;
}

} // namespace Tolen::Effects
