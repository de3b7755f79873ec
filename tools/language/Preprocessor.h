#pragma once

#include "language/PreprocessedText.h"

#include "Definitions.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Effects {
struct DirectiveLine;
} // namespace Tolen::Effects

namespace Tolen::Language {

class SourceAssets;

/// Follows the directives of files as the library does, to know where the pieces of its text come
/// from. What the library says on the way is said here with its place.
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
    ~Preprocessor();

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
    struct File;
    struct State;

    bool _ReadLibrary(const std::string& file, State& state);
    bool _ReadFile(const std::string& path, const std::string& text, int fromLine, State& state);
    void _ReadLine(File& file, std::string_view line);
    void _Follow(File& file, const Effects::DirectiveLine& directive, std::string_view line);
    void _Open(File& file, const Effects::DirectiveLine& directive, std::string_view line);
    void _Include(File& file, const std::string& name);
    void _Define(File& file, const Effects::DirectiveLine& directive, std::string_view line);
    void _WriteText(File& file, std::string_view line);
    void _Remark(const std::string& text, const FilePlace& place, const FilePlace& before = {});

    SourceAssets& _assets;
    std::vector<std::string> _predefined;
    std::map<std::string, std::unique_ptr<PreprocessedText>> _texts;
    std::multimap<std::string, Remark> _remarks; ///< by text; those of one text in their order
};

} // namespace Tolen::Language
