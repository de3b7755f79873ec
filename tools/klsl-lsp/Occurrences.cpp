#include "Occurrences.h"

#include <algorithm>
#include <string_view>

namespace Tolen::LanguageServer {

using Language::SourceRange;
using Language::SourceToken;
using Language::Symbol;

namespace {

bool IsLocal(const Symbol& symbol) {
    return symbol.kind == Symbol::kKind_Parameter || symbol.kind == Symbol::kKind_Local;
}

/// Whether something directly among @p symbols, or inside one of them, has a name.
/// @{
bool HasName(const std::vector<Symbol>& symbols, const std::string& name) {
    return std::any_of(symbols.begin(), symbols.end(),
                       [&name](const Symbol& symbol) { return symbol.name == name; });
}

bool HoldsName(const Symbol& container, const std::string& name) {
    return HasName(container.children, name) ||
           std::any_of(container.children.begin(), container.children.end(),
                       [&name](const Symbol& child) { return HasName(child.children, name); });
}
/// @}

} // namespace

Occurrences::Occurrences(const Workspace& workspace, const std::vector<SourcePtr>& sources,
                         const Resolver& resolver, const SourceRange& word)
    : _sources(sources), _name(resolver.GetSource().text.GetText(word)) {
    bool isInside = true;
    for (const Meaning& meaning : resolver.Resolve(word)) {
        if (meaning.declared.pSymbol != nullptr) {
            _AddFamily(meaning.declared);
            isInside = isInside && IsLocal(*meaning.declared.pSymbol);
        }
    }
    if (_declarations.empty()) {
        return;
    }
    if (isInside) {
        _Search(workspace, resolver.GetLibrary().GetSource());
        return;
    }
    for (const SourcePtr& pSource : _sources) {
        _Search(workspace, pSource);
    }
}

void Occurrences::_AddOverloads(const SourcePtr& pSource, const std::vector<Symbol>& siblings,
                                const Symbol* pOwner) {
    for (const Symbol& symbol : siblings) {
        if (symbol.IsFunction() && symbol.name == _name) {
            _declarations.push_back({pSource, &symbol, pOwner});
        }
    }
}

void Occurrences::_AddFamily(const Declared& declared) {
    if (!declared.pSymbol->IsFunction()) {
        _declarations.push_back(declared);
        return;
    }
    if (declared.pOwner == nullptr) {
        _AddOverloads(declared.pSource, declared.pSource->outline.symbols, nullptr);
        return;
    }
    const Symbol& owner = *declared.pOwner;
    const std::string& interface = owner.kind == Symbol::kKind_Interface ? owner.name : owner.type;
    bool isOfInterface = false;
    for (const SourcePtr& pSource : _sources) {
        for (const Symbol& symbol : pSource->outline.symbols) {
            isOfInterface =
                isOfInterface || (symbol.kind == Symbol::kKind_Interface &&
                                  symbol.name == interface && HasName(symbol.children, _name));
        }
    }
    if (!isOfInterface) {
        _AddOverloads(declared.pSource, owner.children, &owner);
        return;
    }
    for (const SourcePtr& pSource : _sources) {
        for (const Symbol& symbol : pSource->outline.symbols) {
            const bool isInterface =
                symbol.kind == Symbol::kKind_Interface && symbol.name == interface;
            if (isInterface || (symbol.kind == Symbol::kKind_Class && symbol.type == interface)) {
                _AddOverloads(pSource, symbol.children, &symbol);
            }
        }
    }
}

void Occurrences::_Search(const Workspace& workspace, const SourcePtr& pSource) {
    const Source& source = *pSource;
    std::vector<SourceRange> words;
    for (const SourceToken& token : source.tokens) {
        const std::string_view text = source.GetText(token);
        if (token.kind == SourceToken::kKind_Word && text == _name) {
            words.push_back(token.range);
        }
        if (token.kind == SourceToken::kKind_Directive) {
            for (std::size_t at = 0; (at = text.find(_name, at)) != std::string_view::npos;) {
                const SourceRange range{token.range.begin + at,
                                        token.range.begin + at + _name.size()};
                if (source.FindWord(range.begin) == range) {
                    words.push_back(range);
                }
                at += _name.size();
            }
        }
    }
    if (words.empty()) {
        return;
    }
    const Resolver resolver(workspace, _sources, pSource);
    for (const SourceRange& word : words) {
        _Look(resolver, word);
    }
}

void Occurrences::_Look(const Resolver& resolver, const SourceRange& word) {
    for (const Meaning& meaning : resolver.Resolve(word)) {
        const auto isMeant = [&meaning](const Declared& declaration) {
            return declaration.pSymbol == meaning.declared.pSymbol;
        };
        if (std::any_of(_declarations.begin(), _declarations.end(), isMeant)) {
            const SourcePtr& pSource = resolver.GetLibrary().GetSource();
            const bool isDeclaration =
                meaning.declared.pSource == pSource && meaning.declared.pSymbol->nameRange == word;
            _list.push_back({pSource, word, isDeclaration});
            return;
        }
    }
}

bool Occurrences::IsTaken(const std::string& name) const {
    return std::any_of(_declarations.begin(), _declarations.end(), [&](const Declared& declared) {
        if (declared.pOwner == nullptr) {
            return std::any_of(_sources.begin(), _sources.end(), [&name](const SourcePtr& pSource) {
                return HasName(pSource->outline.symbols, name);
            });
        }
        // Variables of a class are seen in all of it, and come before what is declared there.
        const std::vector<const Symbol*> around =
            declared.pSource->outline.FindAround(declared.pSymbol->nameRange.begin);
        const bool isLocal = IsLocal(*declared.pSymbol);
        return HoldsName(*declared.pOwner, name) ||
               (isLocal && !around.empty() && HasName(around.front()->children, name));
    });
}

} // namespace Tolen::LanguageServer
