#pragma once

#include "language/SourceText.h"
#include "language/SourceToken.h"

#include <string>
#include <vector>

namespace Tolen::Language {

/// The comments of a source as a reader takes them.
class CommentText {
public:
    /// @param text, tokens borrowed
    CommentText(const SourceText& text, const std::vector<SourceToken>& tokens)
        : _text(text), _tokens(tokens) {}

    /// The first of the comments that stand on the lines just above the token @p index, each on a
    /// line of its own; @p index itself when there are none.
    std::size_t FindAbove(std::size_t index) const;

    /// What the comments directly before a declaration say or, when there are none, the one behind
    /// it on its line.
    /// @param first, last the declaration's first token and the one behind its last
    std::string Find(std::size_t first, std::size_t last) const;

    /// What the comments from @p first to before @p last say: without their signs, lines joined by
    /// line feeds. A line that is left empty between comments stays.
    std::string Join(std::size_t first, std::size_t last) const;

private:
    int _GetFirstLine(std::size_t index) const;
    int _GetLastLine(std::size_t index) const;

    const SourceText& _text;
    const std::vector<SourceToken>& _tokens;
};

} // namespace Tolen::Language
