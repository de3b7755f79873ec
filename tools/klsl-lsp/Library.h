#pragma once

#include "Source.h"
#include "Workspace.h"

#include <functional>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// Something that a source declares outside of others, or in @p pOwner.
struct Declared {
    SourcePtr pSource;
    const Language::Symbol* pSymbol = nullptr;
    const Language::Symbol* pOwner = nullptr; ///< the class, interface or function; null outside

    bool operator==(const Declared&) const = default;
};

/// A source with those that it includes, which are one library, among the other libraries of the
/// workspace. Names are looked up in the library first, and then in the first other one that has
/// them, by path.
class Library {
public:
    using Predicate = std::function<bool(const Language::Symbol& symbol)>;

    Library(const Workspace& workspace, const std::vector<SourcePtr>& sources,
            const SourcePtr& pSource);

    const SourcePtr& GetSource() const { return _sources.front(); }

    /// Classes, interfaces, functions and defines of a name. Several when they are in the same
    /// library or file.
    std::vector<Declared> Find(const std::string& name, const Predicate& predicate) const;
    /// The class or interface of a name; null when there is none.
    Declared FindType(const std::string& name) const;
    /// What a define of the library puts in the place of a name at @p offset of the source.
    Declared FindDefine(const std::string& name, std::size_t offset) const;
    /// All that is seen from the source: of several with one name those that Find gives.
    std::vector<Declared> List(const Predicate& predicate) const;

private:
    void _AddWithInclusions(const Workspace& workspace, const SourcePtr& pSource);

    std::vector<SourcePtr> _sources; ///< those of the library in front
    std::size_t _ownCount = 0;
};

} // namespace Tolen::LanguageServer
