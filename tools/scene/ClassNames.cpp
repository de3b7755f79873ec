#include "scene/ClassNames.h"

#include "TolenCore/Assets.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

namespace Tolen::Scene {

namespace {

/// Empty for a file that can't be read.
std::string ReadText(const std::string& file) {
    IMgrAssets* const assets = GetMgrAssets();
    IAsset::Status status = IAsset::kStatus_NotFound;
    IAsset* const asset = assets == nullptr ? nullptr : assets->AcquireAsset(Path(file), 1, status);
    if (asset == nullptr) {
        return "";
    }
    const char* const content = asset->GetText();
    std::string text = content == nullptr ? "" : content;
    assets->ReleaseAsset(asset);
    return text;
}

/// What @p word is up to the first character that is no part of a name.
std::string TakeName(const std::string& word) {
    const auto end = std::find_if(word.begin(), word.end(), [](unsigned char c) {
        return std::isalnum(c) == 0 && c != '_';
    });
    return {word.begin(), end};
}

} // namespace

std::vector<std::string> FindClassNames(const std::vector<std::string>& files) {
    std::vector<std::string> names;
    // Grows by what the files name.
    std::vector<std::string> all = files;
    std::set<std::string> seen(files.begin(), files.end());
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::istringstream text(ReadText(all[i]));
        for (std::string line; std::getline(text, line);) {
            std::istringstream words(line);
            std::string first;
            std::string second;
            words >> first >> second;
            if (first == "class") {
                names.push_back(TakeName(second));
            } else if ((first == "#include" || first == "#import") && second.size() > 2) {
                const std::string file = second.substr(1, second.size() - 2);
                if (seen.insert(file).second) {
                    all.push_back(file);
                }
            }
        }
    }
    return names;
}

} // namespace Tolen::Scene
