#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// The text of a page in Markdown, with headings that are linked to.
class MarkdownPage {
public:
    /// Foretells a heading, so that text before it can link to it. All of them come in the order of
    /// the page, ahead of the first text.
    void Announce(const std::string& heading, const std::string& name);

    void AddHeading(int level, const std::string& heading);
    /// A paragraph, a list of lines or a whole table.
    void AddBlock(const std::string& block);
    void AddTable(const std::vector<std::string>& header,
                  const std::vector<std::vector<std::string>>& rows);

    /// A link to the heading that was announced by the name; the name alone when there is none.
    std::string Link(const std::string& name) const;
    /// The same with @p text to show.
    std::string Link(const std::string& name, const std::string& text) const;

    const std::string& GetText() const { return _text; }

    /// Plain text, in which code may stand between backticks, so that it is shown as it is.
    static std::string Escape(std::string_view text);
    static std::string Code(const std::string& text);

private:
    std::string _text;
    std::map<std::string, std::string> _anchors; ///< by the name
    std::map<std::string, int> _counts;          ///< of the headings with one anchor
};

} // namespace Tolen::Language
