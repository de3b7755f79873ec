#pragma once

#include <string>
#include <vector>

/// The package as CTest installs it before these tests, seen with the tools of the build.

namespace Tolen::Tests {

/// Where the headers of all libraries lie.
std::string GetIncludeFolder();

/// All headers after the preprocessor, those of other libraries too, with its marks of where a line
/// is from.
std::string PreprocessHeaders();

/// What the dynamic symbol table of an installed library defines, demangled, one name a symbol.
/// @param library as its target is called, "TolenCore"
std::vector<std::string> ListSymbols(const std::string& library);

} // namespace Tolen::Tests
