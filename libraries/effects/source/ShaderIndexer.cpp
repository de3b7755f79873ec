#include "ShaderIndexer.h"

#include "ScopedHold.h"
#include "Shader_LightShader.h"
#include "ValueText.h"

#include "TolenEffects/IParameter.h"

#include "TolenCore/Vector.h"

namespace Tolen::Effects {

namespace {

/// Where @p base stands in @p shaders, or may be put.
/// @return -1 when the array can't be read
int _FindPosition(IParameter* shaders, const IShader* base) {
    const int length = shaders->GetLength();
    IShader* entry = nullptr;
    for (int i = 0; i < length; ++i) {
        if (!shaders->Get(entry, i)) {
            return -1;
        }
        if (entry == base) {
            return i;
        }
    }
    const bool isUnused = length == 1 && entry == nullptr;
    return isUnused ? 0 : length;
}

bool _Place(IParameter* shaders, IShader* base, int position) {
    const int length = shaders->GetLength();
    const bool grows = position >= length;
    if (grows) {
        shaders->SetLength(length + 1);
    }
    if (shaders->Set(base, position)) {
        return true;
    }
    // An entry that stays empty would keep the real shader incomplete.
    IShader* entry = nullptr;
    if (grows && shaders->GetLength() == length + 1 && shaders->Get(entry, position) &&
        entry == nullptr) {
        shaders->SetLength(length);
    }
    return false;
}

} // namespace

Shader_LightShader* AsLight(IShader* shader) {
    return dynamic_cast<Shader_LightShader*>(shader);
}

ShaderCell UnwrapShader(IShader* shader) {
    Shader_LightShader* const light = AsLight(shader);
    if (light == nullptr) {
        return {shader, 0};
    }
    return {light->IsGoing() ? nullptr : light->GetShader(), light->GetSubIndex()};
}

bool ConnectIndexed(IParameter* shaders, IParameter* const& refs, IShader* shader, const int& index,
                    const LifeToken::Watch& alive) {
    IShader* const base = UnwrapShader(shader).pBase;
    if (base == nullptr) {
        return false;
    }
    // Listeners to the array may end what is being connected, and the lights.
    const BorrowedShader target(shader);
    const ScopedHold hold(base->GetMgrEffects());
    const int position = _FindPosition(shaders, base);
    if (position < 0 || !_Place(shaders, base, position) || !alive || target.Get() == nullptr) {
        return false;
    }
    return refs != nullptr && refs->Set(Vector2i(position, UnwrapShader(shader).cell), index);
}

void ShaderCells::Resize(int length) {
    const auto count = static_cast<std::size_t>(length);
    while (_cells.size() > count) {
        _cells.pop_back();
    }
    while (_cells.size() < count) {
        _cells.emplace_back();
    }
}

void ShaderCells::Set(IShader* shader, int index) {
    if (!_IsIn(index)) {
        Resize(index + 1);
    }
    _cells[static_cast<std::size_t>(index)].Set(shader);
}

void ShaderCells::Clear(int index) {
    if (_IsIn(index)) {
        _cells[static_cast<std::size_t>(index)].Set(nullptr);
    }
}

bool ShaderCells::Get(IShader*& shader, int index) const {
    shader = _IsIn(index) ? _cells[static_cast<std::size_t>(index)].Get() : nullptr;
    return _IsIn(index);
}

bool ShaderCells::GetAsString(std::string& out, int index) const {
    IShader* shader = nullptr;
    if (!Get(shader, index)) {
        return false;
    }
    out = ElementToString(shader);
    return true;
}

bool ResizeIndexed(IParameter* refs, ShaderCells& cells, int length, const LifeToken::Watch& alive) {
    if (length < 0) {
        return false;
    }
    // A listener's false leaves the new length in place.
    const bool isFixed = length != refs->GetLength() && !refs->IsResizable();
    const bool good = refs->SetLength(length);
    if (!isFixed && alive) {
        cells.Resize(length);
    }
    return good;
}

} // namespace Tolen::Effects
