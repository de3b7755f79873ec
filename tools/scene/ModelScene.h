#pragma once

#include "scene/SceneDescription.h"

#include <string>

namespace Tolen::Scene {

/// Makes a scene around a model: its meshes with principled materials, its cameras or one that sees
/// all of it, and a sky. The scene says what a file with these shaders would; images and meshes come
/// along.
/// @throws SceneError
SceneDescription SceneFromModel(const std::string& file);

} // namespace Tolen::Scene
