#pragma once

#include <string>
#include <vector>

namespace Tolen::Scene {

/// The folder with the shader libraries that come with the programs: beside an installed program,
/// in ../share/tolen-effects/shaders, or else in the source tree. Empty when it is in neither place.
std::string GetShaderFolder();

/// The libraries in a folder, with their whole paths, by name.
std::vector<std::string> GetLibrariesIn(const std::string& folder);

/// Those in the folder that comes with the programs.
std::vector<std::string> GetShippedLibraries();

} // namespace Tolen::Scene
