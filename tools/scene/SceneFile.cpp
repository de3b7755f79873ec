#include "scene/SceneFile.h"

#include "scene/ModelScene.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace Tolen::Scene {

bool IsModelFile(const std::string& file) {
    std::string ending = std::filesystem::path(file).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".gltf" || ending == ".glb" || ending == ".obj";
}

SceneDescription LoadScene(const std::string& file) {
    return IsModelFile(file) ? SceneFromModel(file) : ReadScene(file);
}

} // namespace Tolen::Scene
