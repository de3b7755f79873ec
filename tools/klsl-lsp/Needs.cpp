#include "Needs.h"

#include <map>
#include <set>
#include <string_view>

namespace Tolen::LanguageServer {

using Language::Inclusion;
using Language::SourceToken;
using Language::Symbol;

namespace {

/// Follows names and directives from source to source.
class Follower {
public:
    Follower(const std::vector<SourcePtr>& sources, const Workspace& workspace)
        : _workspace(workspace) {
        for (const SourcePtr& pSource : sources) {
            for (const Symbol& symbol : pSource->outline.symbols) {
                _declaring.emplace(symbol.name, pSource);
            }
        }
    }

    void Follow(const SourcePtr& pSource) {
        _Add(pSource);
        while (!_open.empty()) {
            const SourcePtr pNext = _open.back();
            _open.pop_back();
            _FollowNames(*pNext);
            for (const Inclusion& inclusion : pNext->outline.inclusions) {
                _Add(_workspace.FindInclusion(inclusion.name));
            }
        }
    }

    bool HasFound(const SourcePtr& pSource) const { return _found.contains(pSource); }

private:
    void _Add(const SourcePtr& pSource) {
        if (pSource != nullptr && _found.insert(pSource).second) {
            _open.push_back(pSource);
        }
    }

    void _FollowNames(const Source& source) {
        for (const SourceToken& token : source.tokens) {
            const std::string_view name = source.GetText(token);
            if (token.kind == SourceToken::kKind_Word && _names.insert(name).second) {
                const auto [begin, end] = _declaring.equal_range(name);
                for (auto declaring = begin; declaring != end; ++declaring) {
                    _Add(declaring->second);
                }
            }
        }
    }

    const Workspace& _workspace;
    std::multimap<std::string_view, SourcePtr> _declaring;
    std::set<SourcePtr> _found; ///< never walked, so that its order doesn't matter
    std::vector<SourcePtr> _open;
    std::set<std::string_view> _names; ///< that have been followed
};

} // namespace

std::vector<SourcePtr> FindNeeded(const SourcePtr& pSource, const std::vector<SourcePtr>& sources,
                                  const Workspace& workspace) {
    Follower follower(sources, workspace);
    follower.Follow(pSource);
    std::vector<SourcePtr> needed;
    for (const SourcePtr& pOther : sources) {
        if (follower.HasFound(pOther)) {
            needed.push_back(pOther);
        }
    }
    return needed;
}

} // namespace Tolen::LanguageServer
