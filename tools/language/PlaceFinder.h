#pragma once

#include "language/Diagnostic.h"

#include <map>
#include <string>
#include <vector>

namespace Tolen::Effects {
class ClassDefinition;
class Library;
} // namespace Tolen::Effects

namespace Tolen::Language {

/// Finds what messages are about by the classes and inputs that they name.
class PlaceFinder {
public:
    /// @param libraries borrowed. Of classes with one name, that of the first library is meant
    explicit PlaceFinder(const std::vector<Effects::Library*>& libraries);

    /// @return the place of the input or the class that @p text names, or @p otherwise
    Diagnostic Find(const std::string& text, const Diagnostic& otherwise) const;

    static Diagnostic PlaceOf(const Effects::Library& library,
                              const Effects::ClassDefinition& definition);

private:
    struct Class {
        const Effects::Library* pLibrary;
        const Effects::ClassDefinition* pDefinition;
    };

    std::map<std::string, Class> _classes;
};

} // namespace Tolen::Language
