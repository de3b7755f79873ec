#include "PlaceFinder.h"

#include "Library.h"
#include "TolenEffects/Module.h"

#include <regex>

namespace Tolen::Language {

using namespace Effects;

PlaceFinder::PlaceFinder(const std::vector<Library*>& libraries) {
    for (const Library* const library : libraries) {
        for (const ClassDefinition* definition : library->GetModule()->GetClassDefinitions()) {
            _classes.emplace(definition->GetName()->GetString(), Class{library, definition});
        }
    }
}

Diagnostic PlaceFinder::Find(const std::string& text, const Diagnostic& otherwise) const {
    static const std::regex kInput("\"(\\w+)\" (?:in|of) class \"(\\w+)\"");
    static const std::regex kClass("(?:[Cc]lass|[Ss]hader) \"?(\\w+)\"?");

    std::smatch match;
    std::string input;
    std::string name;
    if (std::regex_search(text, match, kInput)) {
        input = match[1];
        name = match[2];
    } else if (std::regex_search(text, match, kClass)) {
        name = match[1];
    }
    const auto found = _classes.find(name);
    if (found == _classes.end()) {
        return otherwise;
    }
    Diagnostic place = PlaceOf(*found->second.pLibrary, *found->second.pDefinition);
    for (const VariableDeclaration* variable : found->second.pDefinition->GetMemberVariables()) {
        if (variable->GetIdentifier()->GetString() == input) {
            place.line = variable->GetType()->GetRange().firstLine;
        }
    }
    return place;
}

Diagnostic PlaceFinder::PlaceOf(const Library& library, const ClassDefinition& definition) {
    Diagnostic place;
    place.file = library.GetName();
    place.line = definition.GetRange().firstLine;
    return place;
}

} // namespace Tolen::Language
