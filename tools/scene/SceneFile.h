#pragma once

#include "scene/SceneDescription.h"

#include <string>

namespace Tolen::Scene {

/// Whether @p file is a model by its ending, one that a scene is made around: glTF 2.0 or OBJ.
bool IsModelFile(const std::string& file);

/// Reads a scene file, or makes a scene around a model.
/// @throws SceneError with the place in the file
SceneDescription LoadScene(const std::string& file);

} // namespace Tolen::Scene
