#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// A piece of a comment at the top of a library: a paragraph, or a table as in Markdown.
struct HeadBlock {
    struct Row {
        std::string line; ///< its first line as it stands in the comment
        std::vector<std::string> cells;
    };

    /// Of a paragraph; of a table the name of the class that the paragraphs before it are about.
    std::string className;
    std::string paragraph;           ///< its lines joined by blanks; empty for a table
    bool isCaption = false;          ///< of a paragraph: whether a table follows at once
    std::vector<std::string> header; ///< of a table; one without takes that of the last one before
    std::vector<Row> rows;           ///< lines without a first cell go on with the row before

    bool IsTable() const { return paragraph.empty(); }
    /// The cell of a row in the column whose name contains @p title; empty when there is none.
    std::string_view GetCell(const Row& row, std::string_view title) const;
};

/// Reads the text of a comment without its signs. A paragraph that begins with the name of a class,
/// and ends there or goes on with ":" or "(", is about that class; so are the tables up to the next
/// one. Its text is then what is behind.
/// @param classNames those of the library
std::vector<HeadBlock> ReadHeadComment(std::string_view comment,
                                       const std::vector<std::string>& classNames);

/// The parts of a list such as "first, second", without blanks around them.
std::vector<std::string> SplitList(std::string_view list);

} // namespace Tolen::Language
