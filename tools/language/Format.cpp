#include "language/Format.h"

#include "language/Piece.h"
#include "language/SourceToken.h"

#include "DirectiveLine.h"

#include <algorithm>
#include <cctype>

namespace Tolen::Language {

namespace {

using Effects::DirectiveLine;

/// A layout may make place for a better one, such as for a body that fits on its line now. More
/// than two rounds are rare.
constexpr int kMaxRounds = 8;

bool IsWord(const std::string& name) {
    return std::all_of(name.begin(), name.end(), [](char character) {
        return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
    });
}

/// Whether what a line holds says more than its tokens: names are replaced by a search through
/// lines, and so blanks and line ends matter to names that are no words and to values with
/// comments.
bool HasDelicateLines(std::string_view text, const std::vector<SourceToken>& tokens) {
    return std::any_of(tokens.begin(), tokens.end(), [&](const SourceToken& token) {
        if (token.kind != SourceToken::kKind_Directive) {
            return false;
        }
        const DirectiveLine line =
            DirectiveLine::Parse(text.substr(token.range.begin, token.range.GetLength()));
        return line.directive == DirectiveLine::kDirective_Define &&
               (!IsWord(line.argument) || line.rest.find("//") != std::string::npos ||
                line.rest.find("/*") != std::string::npos ||
                line.rest.find("*/") != std::string::npos);
    });
}

std::string FormatOnce(std::string_view text) {
    const std::vector<SourceToken> tokens = Tokenize(text);
    const std::size_t lineFeed = text.find('\n');
    const bool hasReturns =
        lineFeed != std::string_view::npos && lineFeed > 0 && text[lineFeed - 1] == '\r';
    return PrintPieces(MakePieces(text, tokens, HasDelicateLines(text, tokens)),
                       hasReturns ? "\r\n" : "\n");
}

} // namespace

std::string Format(std::string_view text) {
    std::string formatted = FormatOnce(text);
    for (int round = 1; round < kMaxRounds; ++round) {
        std::string again = FormatOnce(formatted);
        if (again == formatted) {
            break;
        }
        formatted = std::move(again);
    }
    return formatted;
}

} // namespace Tolen::Language
