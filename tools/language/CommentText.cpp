#include "language/CommentText.h"

#include <algorithm>
#include <string_view>

namespace Tolen::Language {

namespace {

std::string_view TrimEnd(std::string_view line) {
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

std::string_view TrimStart(std::string_view line) {
    return line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
}

std::string_view WithoutSigns(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of('/'), line.size()));
    line.remove_prefix(line.starts_with('<') ? 1 : 0);
    line.remove_prefix(line.starts_with(' ') ? 1 : 0);
    return TrimEnd(line);
}

/// The lines of a block comment, of which those behind the first may have a star in front.
std::string WithoutFrame(std::string_view comment) {
    comment.remove_prefix(2);
    if (comment.ends_with("*/")) {
        comment.remove_suffix(2);
    }
    comment.remove_prefix(std::min(comment.find_first_not_of('*'), comment.size()));
    std::string joined;
    for (bool isFirst = true; !comment.empty() || isFirst; isFirst = false) {
        const std::size_t end = std::min(comment.find('\n'), comment.size());
        std::string_view line = TrimEnd(TrimStart(comment.substr(0, end)));
        if (!isFirst && line.starts_with('*')) {
            line.remove_prefix(line.starts_with("* ") ? 2 : 1);
        }
        const bool isFramed = joined.empty() && line.empty();
        if (!isFramed) {
            joined.append(joined.empty() ? "" : "\n").append(line);
        }
        comment.remove_prefix(std::min(end + 1, comment.size()));
    }
    return std::string(TrimEnd(joined).substr(0, joined.find_last_not_of("\n ") + 1));
}

} // namespace

std::size_t CommentText::FindAbove(std::size_t index) const {
    std::size_t first = index;
    while (first > 0 && _tokens[first - 1].IsComment()) {
        const std::size_t comment = first - 1;
        const bool isAlone = comment == 0 || _GetLastLine(comment - 1) < _GetFirstLine(comment);
        const bool isNear = _GetLastLine(comment) + 1 >= _GetFirstLine(first);
        if (!isAlone || !isNear) {
            break;
        }
        first = comment;
    }
    return first;
}

std::string CommentText::Find(std::size_t first, std::size_t last) const {
    const std::size_t above = FindAbove(first);
    if (above < first) {
        return Join(above, first);
    }
    const bool isBehind = last > first && last < _tokens.size() && _tokens[last].IsComment() &&
                          _GetFirstLine(last) == _GetLastLine(last - 1) &&
                          _GetFirstLine(first) == _GetFirstLine(last);
    return isBehind ? Join(last, last + 1) : std::string();
}

std::string CommentText::Join(std::size_t first, std::size_t last) const {
    std::string joined;
    for (std::size_t index = first; index < last; ++index) {
        const SourceToken& token = _tokens[index];
        const std::string_view piece = _text.GetText(token.range);
        if (index > first) {
            joined += _GetLastLine(index - 1) + 1 < _GetFirstLine(index) ? "\n\n" : "\n";
        }
        joined += token.kind == SourceToken::kKind_LineComment ? std::string(WithoutSigns(piece))
                                                               : WithoutFrame(piece);
    }
    return joined;
}

int CommentText::_GetFirstLine(std::size_t index) const {
    return _text.GetPlace(_tokens[index].range.begin).line;
}

int CommentText::_GetLastLine(std::size_t index) const {
    return _text.GetPlace(_tokens[index].range.end).line;
}

} // namespace Tolen::Language
