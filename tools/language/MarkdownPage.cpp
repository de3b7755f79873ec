#include "language/MarkdownPage.h"

#include <algorithm>
#include <cctype>

namespace Tolen::Language {

namespace {

/// As those who show such pages make it: small letters, without signs, hyphens for blanks.
std::string MakeAnchor(const std::string& heading) {
    std::string anchor;
    for (const char character : heading) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0 || character == '-' || character == '_') {
            anchor += static_cast<char>(std::tolower(byte));
        } else if (character == ' ') {
            anchor += '-';
        }
    }
    return anchor;
}

/// A cell's line ends at a "|".
std::string EscapeCell(const std::string& cell) {
    std::string escaped;
    for (const char character : cell) {
        escaped += character == '|' ? "\\|" : character == '\n' ? " " : std::string(1, character);
    }
    return escaped;
}

} // namespace

void MarkdownPage::Announce(const std::string& heading, const std::string& name) {
    const std::string anchor = MakeAnchor(heading);
    const int count = _counts[anchor]++;
    _anchors.emplace(name, count == 0 ? anchor : anchor + "-" + std::to_string(count));
}

void MarkdownPage::AddHeading(int level, const std::string& heading) {
    AddBlock(std::string(static_cast<std::size_t>(level), '#') + " " + heading);
}

void MarkdownPage::AddBlock(const std::string& block) {
    if (!block.empty()) {
        _text += (_text.empty() ? "" : "\n") + block + "\n";
    }
}

void MarkdownPage::AddTable(const std::vector<std::string>& header,
                            const std::vector<std::vector<std::string>>& rows) {
    std::string table = "|";
    std::string line = "|";
    for (const std::string& cell : header) {
        table += " " + EscapeCell(cell) + " |";
        line += "---|";
    }
    table += "\n" + line;
    for (const std::vector<std::string>& row : rows) {
        table += "\n|";
        for (std::size_t i = 0; i < header.size(); ++i) {
            const std::string cell = i < row.size() ? EscapeCell(row[i]) : std::string();
            table += (cell.empty() ? "" : " ") + cell + " |";
        }
    }
    AddBlock(table);
}

std::string MarkdownPage::Link(const std::string& name) const {
    return Link(name, name);
}

std::string MarkdownPage::Link(const std::string& name, const std::string& text) const {
    const auto anchor = _anchors.find(name);
    return anchor == _anchors.end() ? text : "[" + text + "](#" + anchor->second + ")";
}

std::string MarkdownPage::Escape(std::string_view text) {
    std::string escaped;
    bool isCode = false;
    const bool hasPairs = std::count(text.begin(), text.end(), '`') % 2 == 0;
    for (const char character : text) {
        isCode = character == '`' && hasPairs ? !isCode : isCode;
        const bool isSign = character == '*' || character == '<' || character == '[' ||
                            character == '_' || character == '\\' ||
                            (character == '`' && !hasPairs);
        escaped += isSign && !isCode ? "\\" : "";
        escaped += character;
    }
    return escaped;
}

std::string MarkdownPage::Code(const std::string& text) {
    return text.find('`') == std::string::npos ? "`" + text + "`" : "`` " + text + " ``";
}

} // namespace Tolen::Language
