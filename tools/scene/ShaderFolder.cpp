#include "scene/ShaderFolder.h"

#include <algorithm>
#include <filesystem>

namespace Tolen::Scene {

namespace fs = std::filesystem;

std::string GetShaderFolder() {
    std::error_code ignored;
    const fs::path program = fs::read_symlink("/proc/self/exe", ignored);
    const fs::path places[] = {program.parent_path() / "../share/tolen-effects/shaders",
                               TOLEN_SHADER_FOLDER};
    for (const fs::path& place : places) {
        if (fs::is_directory(place, ignored)) {
            return fs::weakly_canonical(place, ignored).string();
        }
    }
    return "";
}

std::vector<std::string> GetLibrariesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        if (entry.path().extension() == ".klsl") {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> GetShippedLibraries() { return GetLibrariesIn(GetShaderFolder()); }

} // namespace Tolen::Scene
