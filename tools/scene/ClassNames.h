#pragma once

#include <string>
#include <vector>

namespace Tolen::Scene {

/// The names of the classes in library files and in those that they include or import, as far as
/// the beginnings of lines tell, for what was meant by a name that no class has. Files are read
/// from the assets of the process; those that can't be are passed over.
/// @return in the order of the files and their lines
std::vector<std::string> FindClassNames(const std::vector<std::string>& files);

} // namespace Tolen::Scene
