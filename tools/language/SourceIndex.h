#pragma once

#include "language/Outline.h"
#include "language/PreprocessedText.h"
#include "language/SourceToken.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

class Preprocessor;

/// A library's text with its tokens and what it declares, as the parser gets it.
struct IndexedSource {
    const PreprocessedText* pText = nullptr; ///< the preprocessor's
    std::vector<SourceToken> tokens;         ///< without comments
    Outline outline;

    std::string_view GetText(std::size_t token) const {
        return pText->GetText().GetText(tokens[token].range);
    }
    /// The first token that begins at @p offset or behind it.
    std::size_t FindToken(std::size_t offset) const;
};

/// A declaration and where it is.
struct IndexedSymbol {
    const IndexedSource* pSource = nullptr; ///< null when nothing was found
    const Symbol* pSymbol = nullptr;
};

/// What the libraries of a check declare. Looks at a library when it is asked for the first time.
class SourceIndex {
public:
    /// @param preprocessor borrowed; has the texts
    explicit SourceIndex(const Preprocessor& preprocessor) : _preprocessor(preprocessor) {}

    /// The libraries of this full path or, when there is none, of this name without folders.
    std::vector<const IndexedSource*> FindSources(const std::string& file);
    /// All libraries by their paths.
    std::vector<const IndexedSource*> GetSources();

    /// The class or interface of a name, in @p pFirst rather than elsewhere.
    IndexedSymbol FindContainer(const std::string& name, const IndexedSource* pFirst = nullptr);
    /// All functions of a name outside of classes.
    std::vector<IndexedSymbol> FindFunctions(const std::string& name);

private:
    const IndexedSource& _Get(const PreprocessedText& text);

    const Preprocessor& _preprocessor;
    std::map<const PreprocessedText*, std::unique_ptr<IndexedSource>> _sources;
};

} // namespace Tolen::Language
