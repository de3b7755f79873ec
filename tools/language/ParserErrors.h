#pragma once

#include "language/SourceText.h"

#include <string>
#include <vector>

namespace Tolen::Language {

class PreprocessedText;

/// What the parser says about a text, with the exact place.
struct ParserError {
    std::string text; ///< in the parser's words, without a place
    SourceRange range;
    SourceRange other;      ///< another place that has to do with it; empty when there is none
    std::string otherText;  ///< what there is
    std::string suggestion; ///< for a word that is close to a keyword; empty otherwise
};

/// Parses a text with the library's parser to find the tokens that its messages mean. In the order
/// of these.
std::vector<ParserError> FindParserErrors(const PreprocessedText& text);

} // namespace Tolen::Language
