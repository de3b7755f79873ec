#pragma once

#include <string>

namespace Tolen::Tests {

/// The top folder of the source tree, for golden files and shader libraries.
std::string SourceFolder();

/// The folder that programs are built into.
std::string ProgramFolder();

} // namespace Tolen::Tests
