#pragma once

#include "language/SourceText.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tolen::Language {

/// A place in a file, which may have come in through others.
struct FilePlace {
    std::string file; ///< the full path; empty for no place
    int line = 0;
    SourceRange columns; ///< in the line, in bytes from 0
    /// The lines of the `#include` that lead to the file, the innermost first.
    std::vector<FilePlace> includedFrom;
};

/// The text of a library as the parser gets it: directives followed, files included and names
/// replaced. Knows of each piece where it stands in a file.
class PreprocessedText {
public:
    /// A stretch of a line of the source, and the one that replaces it.
    using Replacement = std::pair<SourceRange, SourceRange>;

    /// @param path of the library
    explicit PreprocessedText(std::string path);

    /// Takes the lines that follow from a file, until GoBack.
    /// @param fromLine the line of the file so far that includes this one; 0 for none
    /// @return what GoBack takes
    std::size_t Enter(const std::string& file, int fromLine);
    void GoBack(std::size_t file) { _current = file; }
    /// What becomes of a line of the file in work. @param replaced in the order of the line
    void Write(int line, std::string_view text, std::vector<Replacement> replaced);
    /// Lets messages of the library count lines from elsewhere.
    void AddToAdjustment(long long lines) { _lineAdjustment += lines; }
    /// Comes behind all that is written and before all that follows.
    void Finish();

    const std::string& GetPath() const { return _path; }
    const SourceText& GetText() const { return _text; }
    /// The line of GetText that a message of the library means. @return 0 when there is none
    int FindLine(int toldLine) const;
    /// Where a stretch of GetText stands in its file; it stays in the first of its lines. Within
    /// what replaces a name, that name is meant.
    FilePlace Find(const SourceRange& range) const;
    /// A place in the file in work.
    FilePlace MakePlace(int line, const SourceRange& columns) const {
        return _MakePlace(_current, line, columns);
    }

private:
    struct File {
        std::string path;
        std::size_t from; ///< the file that includes this one; itself for the first
        int fromLine;
    };
    struct Line {
        std::size_t file;
        int number;
        std::vector<Replacement> replaced; ///< in columns
    };

    FilePlace _MakePlace(std::size_t file, int line, const SourceRange& columns) const;
    static SourceRange _FindSource(const Line& line, std::size_t column);

    std::string _path;
    std::vector<File> _files;
    std::size_t _current = 0;
    std::string _written;
    std::vector<Line> _lines;
    long long _lineAdjustment = 0;
    SourceText _text;
};

} // namespace Tolen::Language
