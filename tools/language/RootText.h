#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Effects {
class ClassDefinition;
class FunctionPrototype;
class InterfaceDefinition;
} // namespace Tolen::Effects

namespace Tolen::Language {

/// How the library of all that is made here is called; a name that no file has.
inline constexpr std::string_view kMadeLibrary = "<check>";
/// How classes that do nothing are called, before the names of their interfaces.
inline constexpr std::string_view kMadeImplementation = "TolenCheckImplementation_";

/// KLSL of classes whose only use is that the library compiles what they call.
/// @{

/// A root that calls @p methods, or functions outside of classes when there is no class. It has the
/// entries of all kinds of effects, and an input "part" of the class for the methods of shaders.
/// Calls whose arguments can't be made are left out.
std::string MakeRoot(const std::string& name, const Effects::ClassDefinition* pClass,
                     const std::vector<const Effects::FunctionPrototype*>& methods);

/// A class with the interface, whose methods return zeros.
std::string MakeImplementation(const std::string& name, const Effects::InterfaceDefinition& of);

/// @}

} // namespace Tolen::Language
