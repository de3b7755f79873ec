#include "Library.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Tolen::LanguageServer {

using Language::Inclusion;
using Language::Symbol;

namespace {

constexpr std::size_t kLimitInclusions = 256;

} // namespace

Library::Library(const Workspace& workspace, const std::vector<SourcePtr>& sources,
                 const SourcePtr& pSource) {
    _AddWithInclusions(workspace, pSource);
    _ownCount = _sources.size();
    std::set<std::string> known;
    for (const SourcePtr& pOwn : _sources) {
        known.insert(pOwn->path);
    }
    for (const SourcePtr& pOther : sources) {
        if (!known.contains(pOther->path)) {
            _sources.push_back(pOther);
        }
    }
}

void Library::_AddWithInclusions(const Workspace& workspace, const SourcePtr& pSource) {
    _sources.push_back(pSource);
    std::set<std::string> known = {pSource->path};
    for (std::size_t index = 0; index < _sources.size(); ++index) {
        const SourcePtr pIncluding = _sources[index];
        for (const Inclusion& inclusion : pIncluding->outline.inclusions) {
            if (inclusion.isImport || _sources.size() == kLimitInclusions) {
                continue;
            }
            const SourcePtr pIncluded = workspace.FindInclusion(inclusion.name);
            if (pIncluded != nullptr && known.insert(pIncluded->path).second) {
                _sources.push_back(pIncluded);
            }
        }
    }
}

std::vector<Declared> Library::Find(const std::string& name, const Predicate& predicate) const {
    std::vector<Declared> found;
    for (std::size_t index = 0; index < _sources.size(); ++index) {
        if (index >= _ownCount && !found.empty()) {
            break;
        }
        for (const Symbol& symbol : _sources[index]->outline.symbols) {
            if (symbol.name == name && predicate(symbol)) {
                found.push_back({_sources[index], &symbol, nullptr});
            }
        }
    }
    return found;
}

Declared Library::FindType(const std::string& name) const {
    const std::vector<Declared> found =
        Find(name, [](const Symbol& symbol) { return symbol.IsContainer(); });
    return found.empty() ? Declared() : found.front();
}

Declared Library::FindDefine(const std::string& name, std::size_t offset) const {
    Declared found;
    for (std::size_t index = 0; index < _ownCount; ++index) {
        for (const Symbol& symbol : _sources[index]->outline.symbols) {
            // A define counts for the lines behind it, and the last one before a line wins.
            const bool counts = index > 0 || symbol.range.begin <= offset;
            if (symbol.kind == Symbol::kKind_Define && symbol.name == name && counts) {
                found = {_sources[index], &symbol, nullptr};
            }
        }
        if (found.pSymbol != nullptr) {
            return found;
        }
    }
    return found;
}

std::vector<Declared> Library::List(const Predicate& predicate) const {
    std::vector<Declared> list;
    std::set<std::string> names;
    std::set<std::string> namesOfSource;
    for (std::size_t index = 0; index < _sources.size(); ++index) {
        for (const Symbol& symbol : _sources[index]->outline.symbols) {
            if (predicate(symbol) && !names.contains(symbol.name)) {
                list.push_back({_sources[index], &symbol, nullptr});
                namesOfSource.insert(symbol.name);
            }
        }
        if (index + 1 >= _ownCount) {
            names.merge(namesOfSource);
            namesOfSource.clear();
        }
    }
    return list;
}

} // namespace Tolen::LanguageServer
