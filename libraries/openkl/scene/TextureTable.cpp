#include "scene/TextureTable.h"

#include "scene/Context.h"
#include "scene/TexImage2D.h"

namespace Tolen::OpenKL {

void TextureTable::Update(const Context& context) {
    const bool isCurrent = _version == context.GetTextureVersion();
    if (!isCurrent) {
        _version = context.GetTextureVersion();
        _views.clear();
        _samplers.clear();
    }
    context.GetImages().ForEach([&](TexImage2D& image) {
        image.UpdateLevels();
        if (!isCurrent && image.GetNumber() != 0) {
            _views.push_back(image.GetView());
            _samplers.emplace(image.GetNumber(), static_cast<std::uint32_t>(_views.size()));
        }
    });
}

std::uint32_t TextureTable::ToSampler(std::uint32_t number) const {
    const auto found = _samplers.find(number);
    return found == _samplers.end() ? 0 : found->second;
}

} // namespace Tolen::OpenKL
