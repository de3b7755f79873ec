#pragma once

#include "language/GeneratedNames.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// Looks at tokens and what stands around them. Tokens beyond the text are empty.
class TokenQueries {
public:
    explicit TokenQueries(const IndexedSource& source) : _source(source) {}

    std::string_view GetText(std::size_t token) const;
    std::string_view GetBefore(std::size_t token) const;

    bool IsMember(std::size_t token) const { return GetBefore(token) == "."; }
    bool IsCall(std::size_t token) const { return GetText(token + 1) == "("; }
    /// Whether a type stands in front, as in a declaration.
    bool IsDeclared(std::size_t token) const;
    /// Whether it is written to: by an assignment behind it, its elements or components, or by one
    /// of "++" and "--".
    bool IsAssigned(std::size_t token) const;
    /// The number of arguments of the call whose name is @p token.
    std::size_t CountArguments(std::size_t token) const;

    /// The end of the group that opens at @p token, one past its closing bracket.
    std::size_t FindGroupEnd(std::size_t token) const;

private:
    const IndexedSource& _source;
};

/// No token.
inline constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// The one token of a region that has this text and is as @p filter says.
/// @return kNone when there is none, or more than one
template <class Filter>
std::size_t FindOnly(const TokenRegion& region, const std::string& text, Filter filter) {
    std::size_t found = kNone;
    for (std::size_t token = region.begin; token < region.end; ++token) {
        if (region.pSource->GetText(token) == text && filter(token)) {
            if (found != kNone) {
                return kNone;
            }
            found = token;
        }
    }
    return found;
}

/// The first token that has this text and is as @p filter says; where the message means all of
/// them, this is as good as any.
template <class Filter>
std::size_t FindFirst(const TokenRegion& region, const std::string& text, Filter filter) {
    for (std::size_t token = region.begin; token < region.end; ++token) {
        if (region.pSource->GetText(token) == text && filter(token)) {
            return token;
        }
    }
    return kNone;
}

TokenRegion RegionOf(const IndexedSource& source, const SourceRange& range);

/// The tokens of the statements, or heads of statements, that begin on a line.
TokenRegion FindRegion(const IndexedSource& source, int line);

} // namespace Tolen::Language
