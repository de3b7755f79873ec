#include "PreprocessedText.h"

#include <algorithm>
#include <utility>

namespace Tolen::Language {

PreprocessedText::PreprocessedText(std::string path) : _path(std::move(path)) {}

std::size_t PreprocessedText::Enter(const std::string& file, int fromLine) {
    const std::size_t before = _current;
    _files.push_back({file, before, fromLine});
    _current = _files.size() - 1;
    return before;
}

void PreprocessedText::Write(int line, std::string_view text, std::vector<Replacement> replaced) {
    _written += text;
    _written += '\n';
    _lines.push_back({_current, line, std::move(replaced)});
}

void PreprocessedText::Finish() {
    _text = SourceText(std::exchange(_written, {}));
}

int PreprocessedText::FindLine(int toldLine) const {
    const long long line = toldLine - _lineAdjustment;
    return line >= 1 && line <= static_cast<long long>(_lines.size()) ? static_cast<int>(line) : 0;
}

FilePlace PreprocessedText::Find(const SourceRange& range) const {
    const int number = _text.GetPlace(range.begin).line;
    if (static_cast<std::size_t>(number) > _lines.size()) {
        return {};
    }
    const SourceRange whole = _text.GetLineRange(number);
    const Line& line = _lines[static_cast<std::size_t>(number) - 1];
    const SourceRange columns{range.begin - whole.begin,
                              std::clamp(range.end, range.begin, whole.end) - whole.begin};
    // The last byte is looked up instead of the end, behind which a replacement may begin.
    const bool isEmpty = columns.GetLength() == 0;
    const SourceRange first = _FindSource(line, columns.begin);
    const SourceRange last = isEmpty ? first : _FindSource(line, columns.end - 1);
    return _MakePlace(line.file, line.number, {first.begin, isEmpty ? first.begin : last.end});
}

SourceRange PreprocessedText::_FindSource(const Line& line, std::size_t column) {
    std::size_t behindText = 0;
    std::size_t behindSource = 0;
    for (const auto& [source, text] : line.replaced) {
        if (column < text.begin) {
            break;
        }
        if (column < text.end) {
            return source;
        }
        behindText = text.end;
        behindSource = source.end;
    }
    const std::size_t begin = behindSource + (column - behindText);
    return {begin, begin + 1};
}

FilePlace PreprocessedText::_MakePlace(std::size_t file, int line,
                                       const SourceRange& columns) const {
    FilePlace place{_files[file].path, line, columns, {}};
    for (std::size_t at = file; _files[at].fromLine != 0; at = _files[at].from) {
        place.includedFrom.push_back({_files[_files[at].from].path, _files[at].fromLine, {}, {}});
    }
    return place;
}

} // namespace Tolen::Language
