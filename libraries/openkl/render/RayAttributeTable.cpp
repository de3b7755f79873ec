#include "render/RayAttributeTable.h"

#include "compiler/LinkedProgram.h"
#include "scene/Program.h"

#include <cstddef>
#include <string_view>

namespace Tolen::OpenKL {

std::vector<int> RayAttributeTable::Add(const LinkedCode& code) {
    const KernelLayout& layout = code.main->GetLayout();
    std::vector<int> places(static_cast<std::size_t>(layout.rayAttributeWords));
    for (std::size_t i = 0; i < layout.rayAttributes.size(); ++i) {
        const LinkedRayAttribute& attribute = code.program->rayAttributes[i];
        const KernelVariable& words = layout.rayAttributes[i];
        const int first = _FindOrAdd(attribute.name, attribute.type, words.wordCount);
        for (int word = 0; word < words.wordCount; ++word) {
            places[static_cast<std::size_t>(words.firstWord + word)] = first + word;
        }
    }
    return places;
}

int RayAttributeTable::_FindOrAdd(std::string_view name, const Type& type, int words) {
    for (const Entry& entry : _entries) {
        if (entry.name == name && AreSameAcrossTexts(entry.type, type)) {
            return entry.firstWord;
        }
    }
    _entries.push_back({std::string(name), type, _wordCount});
    _wordCount += words;
    return _entries.back().firstWord;
}

} // namespace Tolen::OpenKL
