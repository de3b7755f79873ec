#pragma once

#include <string>

namespace Tolen::Tests {

/// The program that a document's C++ makes. Each source that page-source writes has one of these,
/// by which the main function finds it.
class Page {
public:
    using Program = void (*)();

    /// @param name that of the document, without its folder and ending
    Page(const std::string& name, Program program);

    /// Runs the program of a page. @return false when there is no such page
    static bool Run(const std::string& name);
};

/// Prints a line that ends what the block at @p line has printed.
void EndOfBlock(int line);

/// Writes a file that the document shows into the working folder.
void SaveFile(const std::string& name, const std::string& text);

} // namespace Tolen::Tests
