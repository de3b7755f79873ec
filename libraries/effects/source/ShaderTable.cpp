#include "ShaderTable.h"

#include "Shader.h"

#include <utility>

namespace Tolen::Effects {

ShaderTable::ShaderTable() = default;

ShaderTable::~ShaderTable() {
    DestroyAll();
}

Shader* ShaderTable::Add(std::unique_ptr<Shader> shader) {
    Shader* added = shader.get();
    _slots.emplace(added, _shaders.size());
    _shaders.push_back(std::move(shader));
    return added;
}

void ShaderTable::Destroy(const IShader* shader) {
    const auto slot = _slots.find(shader);
    if (slot == _slots.end()) {
        return;
    }
    const std::unique_ptr<Shader> dying = std::move(_shaders[slot->second]);
    _slots.erase(slot);
    if (!_isDestroyingAll && _shaders.size() > 2 * _slots.size()) {
        _Compact();
    }
}

void ShaderTable::DestroyAll() {
    _isDestroyingAll = true;
    for (std::size_t i = 0; i < _shaders.size(); ++i) {
        const std::unique_ptr<Shader> dying = std::move(_shaders[i]);
        _slots.erase(dying.get());
    }
    _shaders.clear();
    _isDestroyingAll = false;
}

void ShaderTable::_Compact() {
    std::size_t count = 0;
    for (std::unique_ptr<Shader>& shader : _shaders) {
        if (shader == nullptr) {
            continue;
        }
        _slots[shader.get()] = count;
        _shaders[count++] = std::move(shader);
    }
    _shaders.resize(count);
}

} // namespace Tolen::Effects
