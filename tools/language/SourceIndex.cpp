#include "SourceIndex.h"

#include "language/Preprocessor.h"

#include "TolenCore/Path.h"

#include <algorithm>

namespace Tolen::Language {

std::size_t IndexedSource::FindToken(std::size_t offset) const {
    const auto found = std::lower_bound(
        tokens.begin(), tokens.end(), offset,
        [](const SourceToken& token, std::size_t at) { return token.range.begin < at; });
    return static_cast<std::size_t>(found - tokens.begin());
}

std::vector<const IndexedSource*> SourceIndex::FindSources(const std::string& file) {
    if (const PreprocessedText* const text = _preprocessor.Find(file)) {
        return {&_Get(*text)};
    }
    std::vector<const IndexedSource*> found;
    for (const auto& [path, text] : _preprocessor.GetTexts()) {
        if (Path(path).GetFileName() == file) {
            found.push_back(&_Get(*text));
        }
    }
    return found;
}

std::vector<const IndexedSource*> SourceIndex::GetSources() {
    std::vector<const IndexedSource*> sources;
    for (const auto& [path, text] : _preprocessor.GetTexts()) {
        sources.push_back(&_Get(*text));
    }
    return sources;
}

IndexedSymbol SourceIndex::FindContainer(const std::string& name, const IndexedSource* pFirst) {
    std::vector<const IndexedSource*> sources = GetSources();
    if (pFirst != nullptr) {
        sources.insert(sources.begin(), pFirst);
    }
    for (const IndexedSource* const source : sources) {
        for (const Symbol& symbol : source->outline.symbols) {
            if (symbol.IsContainer() && symbol.name == name) {
                return {source, &symbol};
            }
        }
    }
    return {};
}

std::vector<IndexedSymbol> SourceIndex::FindFunctions(const std::string& name) {
    std::vector<IndexedSymbol> found;
    for (const IndexedSource* const source : GetSources()) {
        for (const Symbol& symbol : source->outline.symbols) {
            if (symbol.kind == Symbol::kKind_Function && symbol.name == name) {
                found.push_back({source, &symbol});
            }
        }
    }
    return found;
}

const IndexedSource& SourceIndex::_Get(const PreprocessedText& text) {
    std::unique_ptr<IndexedSource>& source = _sources[&text];
    if (source == nullptr) {
        source = std::make_unique<IndexedSource>();
        source->pText = &text;
        source->tokens = Tokenize(text.GetText().GetText());
        source->outline = MakeOutline(text.GetText(), source->tokens);
        std::erase_if(source->tokens, [](const SourceToken& token) { return token.IsComment(); });
    }
    return *source;
}

} // namespace Tolen::Language
