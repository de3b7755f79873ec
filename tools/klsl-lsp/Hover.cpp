#include "Hover.h"

namespace Tolen::LanguageServer {

Json MakeHover(const Resolver& resolver, const Positions& positions, TextFormat format,
               std::size_t offset) {
    const Source& source = resolver.GetSource();
    const std::optional<Language::SourceRange> word = source.FindWord(offset);
    if (!word.has_value()) {
        return nullptr;
    }
    const std::vector<Meaning> meanings = resolver.Resolve(*word);
    if (meanings.empty()) {
        return nullptr;
    }
    return {{"contents", MakeMarkup(Describe(meanings, format), format)},
            {"range", positions.MakeRange(source.text, *word)}};
}

} // namespace Tolen::LanguageServer
