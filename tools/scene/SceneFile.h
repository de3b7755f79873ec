#pragma once

#include "scene/SceneDescription.h"

#include <string>

namespace Tolen::Scene {

/// Reads a scene file, or makes a scene around a model.
/// @throws SceneError with the place in the file
SceneDescription LoadScene(const std::string& file);

} // namespace Tolen::Scene
