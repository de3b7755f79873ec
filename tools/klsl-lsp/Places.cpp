#include "Places.h"

namespace Tolen::LanguageServer {

using Language::Inclusion;
using Language::SourceRange;
using Language::Symbol;

namespace {

Json MakePlace(const Source& source, const SourceRange& range, const Positions& positions) {
    return {{"uri", source.uri}, {"range", positions.MakeRange(source.text, range)}};
}

Json MakePlaces(const std::vector<Declared>& list, const Positions& positions) {
    Json places = Json::array();
    for (const Declared& declared : list) {
        places.push_back(MakePlace(*declared.pSource, declared.pSymbol->nameRange, positions));
    }
    return places;
}

std::vector<Declared> FindDeclared(const Resolver& resolver, std::size_t offset) {
    std::vector<Declared> found;
    if (const std::optional<SourceRange> word = resolver.GetSource().FindWord(offset)) {
        for (const Meaning& meaning : resolver.Resolve(*word)) {
            if (meaning.declared.pSymbol != nullptr) {
                found.push_back(meaning.declared);
            }
        }
    }
    return found;
}

bool IsInterface(const Symbol* pSymbol) {
    return pSymbol != nullptr && pSymbol->kind == Symbol::kKind_Interface;
}

/// Adds @p implementer, or its methods like @p method.
void AddImplementing(const SourcePtr& pSource, const Symbol& implementer, const Symbol* method,
                     std::vector<Declared>& list) {
    if (method == nullptr) {
        list.push_back({pSource, &implementer, nullptr});
        return;
    }
    for (const Symbol& child : implementer.children) {
        if (child.IsFunction() && child.name == method->name &&
            CountParameters(child) == CountParameters(*method)) {
            list.push_back({pSource, &child, &implementer});
        }
    }
}

} // namespace

Json FindDefinitions(const Resolver& resolver, const Workspace& workspace,
                     const Positions& positions, std::size_t offset) {
    for (const Inclusion& inclusion : resolver.GetSource().outline.inclusions) {
        if (inclusion.range.begin <= offset && offset <= inclusion.range.end) {
            const SourcePtr pIncluded = workspace.FindInclusion(inclusion.name);
            return pIncluded == nullptr ? Json::array()
                                        : Json::array({MakePlace(*pIncluded, {0, 0}, positions)});
        }
    }
    return MakePlaces(FindDeclared(resolver, offset), positions);
}

Json FindImplementations(const Resolver& resolver, const std::vector<SourcePtr>& sources,
                         const Positions& positions, std::size_t offset) {
    std::vector<Declared> list;
    for (const Declared& declared : FindDeclared(resolver, offset)) {
        const bool isMethod = IsInterface(declared.pOwner);
        if (!isMethod && !IsInterface(declared.pSymbol)) {
            list.push_back(declared);
            continue;
        }
        const Symbol& interface = isMethod ? *declared.pOwner : *declared.pSymbol;
        for (const SourcePtr& pSource : sources) {
            for (const Symbol& symbol : pSource->outline.symbols) {
                if (symbol.kind == Symbol::kKind_Class && symbol.type == interface.name) {
                    AddImplementing(pSource, symbol, isMethod ? declared.pSymbol : nullptr, list);
                }
            }
        }
    }
    return MakePlaces(list, positions);
}

} // namespace Tolen::LanguageServer
