#pragma once

#include "Resolver.h"

#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// A name in a source that means what was asked for.
struct Occurrence {
    SourcePtr pSource;
    Language::SourceRange range;
    bool isDeclaration = false;
};

/// Finds all names that mean the same. Overloads belong together, and so do an interface's method
/// and the methods of the classes that implement it, since they only change their names together.
class Occurrences {
public:
    /// Those of what @p word means in the source of @p resolver.
    Occurrences(const Workspace& workspace, const std::vector<SourcePtr>& sources,
                const Resolver& resolver, const Language::SourceRange& word);

    /// In the order of the sources, and in each from front to back. None for built-ins and names
    /// that mean nothing.
    const std::vector<Occurrence>& GetList() const { return _list; }

    /// Whether @p name stands for something already where the declarations are.
    bool IsTaken(const std::string& name) const;

private:
    void _AddOverloads(const SourcePtr& pSource, const std::vector<Language::Symbol>& siblings,
                       const Language::Symbol* pOwner);
    void _AddFamily(const Declared& declared);
    void _Search(const Workspace& workspace, const SourcePtr& pSource);
    void _Look(const Resolver& resolver, const Language::SourceRange& word);

    std::vector<SourcePtr> _sources;
    std::string _name;
    std::vector<Declared> _declarations;
    std::vector<Occurrence> _list;
};

} // namespace Tolen::LanguageServer
