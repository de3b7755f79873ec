#include "scene/SceneFile.h"

namespace Tolen::Scene {

SceneDescription LoadScene(const std::string& file) { return ReadScene(file); }

} // namespace Tolen::Scene
