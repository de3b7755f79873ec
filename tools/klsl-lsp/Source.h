#pragma once

#include "language/Outline.h"
#include "language/SourceText.h"
#include "language/SourceToken.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// A text with what can be read from it alone. Stays as it is; a change makes a new one.
struct Source {
    Source(std::string itsUri, std::string itsPath, const std::string& itsText);

    std::string uri;
    std::string path; ///< absolute; of a text without a file one that no file has
    Language::SourceText text;
    std::vector<Language::SourceToken> tokens;
    Language::Outline outline;

    std::string_view GetText(const Language::SourceToken& token) const {
        return text.GetText(token.range);
    }

    /// The first token that ends behind @p offset; the count of tokens when there is none.
    std::size_t FindTokenAfter(std::size_t offset) const;
    /// The token before @p index that is no comment and no directive. @return none at the front
    std::optional<std::size_t> FindPrevious(std::size_t index) const;
    /// The next such token behind @p index.
    std::optional<std::size_t> FindNext(std::size_t index) const;

    /// Whether @p offset lies in a comment, where nothing means anything. At the end of a line
    /// comment one is still inside.
    bool IsInComment(std::size_t offset) const;

    /// The name or keyword around @p offset or directly before it, also one in a directive.
    /// @return none when there is none, or a comment, or the name of a file
    std::optional<Language::SourceRange> FindWord(std::size_t offset) const;
};

using SourcePtr = std::shared_ptr<const Source>;

} // namespace Tolen::LanguageServer
