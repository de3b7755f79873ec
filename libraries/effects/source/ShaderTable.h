#pragma once

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Tolen::Effects {

class IShader;
class Shader;

/// The shaders of one class in the order of their creation, owned.
///
/// A shader may be destroyed while the table is being emptied, by another one that held it: it is
/// out of the table before its destruction starts, so that it is destroyed once.
class ShaderTable {
public:
    ShaderTable();
    ~ShaderTable();
    ShaderTable(const ShaderTable&) = delete;
    ShaderTable& operator=(const ShaderTable&) = delete;

    Shader* Add(std::unique_ptr<Shader> shader);
    /// Destroys @p shader if it is in the table; costs the same however many there are.
    void Destroy(const IShader* shader);
    /// Destroys all, in the order of creation.
    void DestroyAll();

    std::size_t GetCount() const { return _slots.size(); }

    /// Calls @p visit for every shader in the order of creation.
    template <class Visit>
    void ForEach(Visit visit) const {
        for (const std::unique_ptr<Shader>& shader : _shaders) {
            if (shader != nullptr) {
                visit(shader.get());
            }
        }
    }

private:
    /// Closes the gaps once they are more than the shaders.
    void _Compact();

    std::vector<std::unique_ptr<Shader>> _shaders;          ///< null where one was destroyed
    std::unordered_map<const IShader*, std::size_t> _slots; ///< never iterated
    bool _isDestroyingAll = false;
};

} // namespace Tolen::Effects
