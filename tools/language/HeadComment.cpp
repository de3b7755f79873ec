#include "language/HeadComment.h"

#include <algorithm>
#include <utility>

namespace Tolen::Language {

namespace {

std::string_view Trim(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(" \t\r"), text.size());
    return text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (true) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.emplace_back(Trim(text.substr(0, end)));
        if (end == text.size()) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

/// The cells of "| a | b |".
std::vector<std::string> SplitCells(std::string_view line) {
    line.remove_prefix(1);
    line.remove_suffix(line.ends_with('|') ? 1 : 0);
    return Split(line, '|');
}

bool IsSeparator(std::string_view line) {
    return line.find('-') != std::string_view::npos &&
           line.find_first_not_of("|-: ") == std::string_view::npos;
}

class HeadReader {
public:
    explicit HeadReader(const std::vector<std::string>& classNames) : _classNames(classNames) {}

    std::vector<HeadBlock> Run(std::string_view comment) {
        while (!comment.empty()) {
            const std::size_t end = std::min(comment.find('\n'), comment.size());
            _Take(Trim(comment.substr(0, end)));
            comment.remove_prefix(std::min(end + 1, comment.size()));
        }
        _EndParagraph(false);
        return std::move(_blocks);
    }

private:
    void _Take(std::string_view line) {
        if (line.starts_with('|') && line.size() > 1) {
            _EndParagraph(true);
            _TakeRow(line);
            return;
        }
        _isInTable = false;
        if (line.empty()) {
            _EndParagraph(false);
        } else {
            _paragraph.append(_paragraph.empty() ? "" : " ").append(line);
        }
    }

    void _TakeRow(std::string_view line) {
        if (!_isInTable) {
            _isInTable = true;
            HeadBlock& table = _blocks.emplace_back();
            table.className = _className;
            table.header = _header;
        }
        HeadBlock& table = _blocks.back();
        if (IsSeparator(line)) {
            // What was taken for a row names the columns.
            if (table.rows.size() == 1) {
                _header = table.rows.back().cells;
                table.header = _header;
                table.rows.clear();
            }
            return;
        }
        std::vector<std::string> cells = SplitCells(line);
        if (!cells.front().empty() || table.rows.empty()) {
            table.rows.push_back({std::string(line), std::move(cells)});
            return;
        }
        std::vector<std::string>& above = table.rows.back().cells;
        above.resize(std::max(above.size(), cells.size()));
        for (std::size_t i = 0; i < cells.size(); ++i) {
            above[i] += (cells[i].empty() || above[i].empty() ? "" : " ") + cells[i];
        }
    }

    void _EndParagraph(bool isCaption) {
        if (_paragraph.empty()) {
            return;
        }
        std::string_view text = _paragraph;
        const std::string_view name = text.substr(0, text.find_first_of(" :"));
        std::string_view behind = Trim(text.substr(name.size()));
        const bool isAboutClass = _IsClass(name) && (behind.empty() || behind.starts_with(':') ||
                                                     behind.starts_with('('));
        if (isAboutClass) {
            _className = name;
            if (behind.starts_with('(')) {
                behind.remove_prefix(std::min(behind.find(')'), behind.size() - 1) + 1);
            }
            behind.remove_prefix(behind.starts_with(':') ? 1 : 0);
            text = Trim(behind);
        }
        if (!text.empty()) {
            HeadBlock& block = _blocks.emplace_back();
            block.className = isAboutClass ? _className : std::string();
            block.paragraph = text;
            block.isCaption = isCaption;
        }
        _paragraph.clear();
    }

    bool _IsClass(std::string_view name) const {
        return std::find(_classNames.begin(), _classNames.end(), name) != _classNames.end();
    }

    const std::vector<std::string>& _classNames;
    std::vector<HeadBlock> _blocks;
    std::string _className; ///< that the present paragraphs are about
    std::string _paragraph; ///< its lines so far
    std::vector<std::string> _header;
    bool _isInTable = false;
};

} // namespace

std::string_view HeadBlock::GetCell(const Row& row, std::string_view title) const {
    for (std::size_t i = 0; i < std::min(header.size(), row.cells.size()); ++i) {
        if (header[i].find(title) != std::string::npos) {
            return row.cells[i];
        }
    }
    return {};
}

std::vector<HeadBlock> ReadHeadComment(std::string_view comment,
                                       const std::vector<std::string>& classNames) {
    return HeadReader(classNames).Run(comment);
}

std::vector<std::string> SplitList(std::string_view list) {
    return Split(list, ',');
}

} // namespace Tolen::Language
