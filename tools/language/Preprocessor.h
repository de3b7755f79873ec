#pragma once

#include "language/PreprocessedText.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::Language {

class SourceAssets;

/// Reads files by the library's own reader, to know where the pieces of its text come from. What
/// the library says on the way is said here with its place.
class Preprocessor {
public:
    /// Something that the library says, with where it belongs.
    struct Remark {
        std::string text; ///< in the library's words
        FilePlace place;
        FilePlace before; ///< of a redefinition: the definition before
    };

    /// @param assets borrowed @param predefined names that have the value 1
    Preprocessor(SourceAssets& assets, std::vector<std::string> predefined);

    /// Reads a file with all that it includes and imports, as one call of AddLibrary does.
    void Read(const std::string& file);

    /// The text of a library by its full path; null when there is none.
    const PreprocessedText* Find(const std::string& path) const;
    const std::map<std::string, std::unique_ptr<PreprocessedText>>& GetTexts() const {
        return _texts;
    }

    /// The remark of a text that comes next. @return whether there is one
    bool TakeRemark(const std::string& text, Remark& remark);

private:
    class Client;

    void _Remark(const std::string& text, const FilePlace& place, const FilePlace& before);

    SourceAssets& _assets;
    std::vector<std::string> _predefined;
    std::map<std::string, std::unique_ptr<PreprocessedText>> _texts;
    std::multimap<std::string, Remark> _remarks; ///< by text; those of one text in their order
};

} // namespace Tolen::Language
