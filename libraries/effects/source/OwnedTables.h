#pragma once

#include "TolenEffects/Statement.h"

#include <string>

/// Tables from names to owned objects, as classes and their instances hold their parts in.

namespace Tolen::Effects {

/// @return borrowed; null when there is none of this name
template <class Map>
auto FindOwned(const Map& map, const std::string& name) -> decltype(map.begin()->second.get()) {
    const auto found = map.find(name);
    return found == map.end() ? nullptr : found->second.get();
}

/// Calls @p visit for every entry, in the order of names. @return whether all calls answered true
template <class Map, class Visit>
bool VisitOwned(const Map& map, Visit& visit) {
    bool all = true;
    for (const auto& [name, entry] : map) {
        all = visit(name, entry.get()) && all;
    }
    return all;
}

/// Adds what every entry does when an instance is made. @return false after the first that fails
template <class Map>
bool CollectConstructors(const Map& map, CompoundStatement* body) {
    for (const auto& [name, entry] : map) {
        if (!entry->CollectConstructor(body)) {
            return false;
        }
    }
    return true;
}

} // namespace Tolen::Effects
