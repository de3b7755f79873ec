#include "Needs.h"

#include <map>
#include <set>
#include <string_view>

namespace Tolen::LanguageServer {

using Language::SourceToken;
using Language::Symbol;

std::vector<SourcePtr> FindNeeded(const SourcePtr& pSource, const std::vector<SourcePtr>& sources) {
    std::multimap<std::string_view, const Source*> declaring;
    for (const SourcePtr& pOther : sources) {
        for (const Symbol& symbol : pOther->outline.symbols) {
            declaring.emplace(symbol.name, pOther.get());
        }
    }
    std::set<const Source*> needed = {pSource.get()};
    std::set<std::string_view> known;
    for (std::vector<const Source*> open = {pSource.get()}; !open.empty();) {
        const Source& source = *open.back();
        open.pop_back();
        for (const SourceToken& token : source.tokens) {
            const std::string_view name = source.GetText(token);
            if (token.kind != SourceToken::kKind_Word || !known.insert(name).second) {
                continue;
            }
            const auto [begin, end] = declaring.equal_range(name);
            for (auto other = begin; other != end; ++other) {
                if (needed.insert(other->second).second) {
                    open.push_back(other->second);
                }
            }
        }
    }
    std::vector<SourcePtr> list;
    for (const SourcePtr& pOther : sources) {
        if (needed.contains(pOther.get())) {
            list.push_back(pOther);
        }
    }
    return list;
}

} // namespace Tolen::LanguageServer
