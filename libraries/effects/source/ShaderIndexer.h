#pragma once

#include "BorrowedShader.h"

#include "TolenCore/LifeToken.h"

#include <cstddef>
#include <deque>
#include <string>

namespace Tolen::Effects {

class IParameter;
class IShader;
class Shader_LightShader;

/// What stands behind a shader that a client connects: the real shader and the cell in it.
struct ShaderCell {
    IShader* pBase; ///< borrowed; null for a light that is going or whose real shader is gone
    int cell;       ///< 0 for a shader that is no light
};

/// The light that @p shader is; null for any other shader.
Shader_LightShader* AsLight(IShader* shader);

ShaderCell UnwrapShader(IShader* shader);

/// Connects @p shader as the cell @p index of indexers: the real shader behind it stands once in
/// the array @p shaders, and the indexer says where, and which cell of it is meant.
/// @param shaders an input for an array of shaders; grows when the real shader isn't there
/// @param refs, index what the indexer is written to, looked at when it is written, as listeners to
///                the array may have changed them
/// @param alive of the owner of @p refs and @p index; the owner may be gone afterwards
/// @return false when the array doesn't take the shader or the indexer can't be written
bool ConnectIndexed(IParameter* shaders, IParameter* const& refs, IShader* shader, const int& index,
                    const LifeToken::Watch& alive);

/// The shaders that a client has set, as it gets them back: those that end leave their cells.
class ShaderCells {
public:
    explicit ShaderCells(int length) { Resize(length); }

    void Resize(int length);
    /// Grows to the index where needed.
    void Set(IShader* shader, int index);
    /// Empties a cell, if there is one.
    void Clear(int index);
    /// @return false, with @p shader null, when there is no such cell
    bool Get(IShader*& shader, int index) const;
    bool GetAsString(std::string& out, int index) const;

private:
    bool _IsIn(int index) const {
        return index >= 0 && static_cast<std::size_t>(index) < _cells.size();
    }

    std::deque<BorrowedShader> _cells;
};

/// Gives the indexers @p refs, and the cells with them, a length.
/// @param alive of the owner of @p cells, which may be gone afterwards
bool ResizeIndexed(IParameter* refs, ShaderCells& cells, int length, const LifeToken::Watch& alive);

} // namespace Tolen::Effects
