#pragma once

#include <set>
#include <string>

namespace Tolen::Effects {

class Module;

/// Adds @p suffix to the names of all functions that @p module defines, in their definitions,
/// declarations and calls, so that several texts of one program may hold the same functions.
/// @param kept the functions that go on under their names, since other texts call them
void RenameFunctions(Module* module, const std::set<std::string>& kept, const std::string& suffix);

} // namespace Tolen::Effects
