#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// A fenced block of a document. "```klsl wrong file=a.klsl" has the language "klsl" and two marks.
struct CodeBlock {
    std::string document; ///< relative to the source folder
    int line = 0;         ///< of the opening fence
    std::string section;  ///< the heading above it
    std::string language;
    std::vector<std::string> marks;
    std::string text;

    bool HasMark(const std::string& mark) const;
    /// The value of "mark=value", or @p otherwise.
    std::string GetMark(const std::string& mark, const std::string& otherwise = "") const;
    /// For messages, such as "docs/klsl.md:120".
    std::string GetPlace() const { return document + ":" + std::to_string(line); }
};

/// Names a block in messages of parameterised tests.
void PrintTo(const CodeBlock& block, std::ostream* stream);

/// @return an empty text when the file can't be read
std::string ReadText(const std::string& path);

/// The blocks of a document in order. @param document relative to the source folder
std::vector<CodeBlock> ReadCodeBlocks(const std::string& document);

/// The targets of the document's links and pictures, as they are written. Code is passed over.
std::vector<std::string> ReadLinks(const std::string& document);

/// The documents of the project: all its Markdown files but those in hidden and build folders, in
/// the order of their names.
std::vector<std::string> ListDocuments();

/// Whether a document is one of those in docs/guides, whose C++ is one program from top to end.
bool IsGuide(const std::string& document);

/// A name for a parameterised test over blocks: the section and the block's place.
std::string NameOf(const CodeBlock& block);

} // namespace Tolen::Tests
