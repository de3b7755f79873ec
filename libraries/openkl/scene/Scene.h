#pragma once

#include "scene/TextureTable.h"

#include <embree3/rtcore.h>

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace Tolen {
class Result;
}

namespace Tolen::OpenKL {

class Context;
class SceneObject;
class ThreadTeam;

/// Everything that rays can reach, and what shades it: the renderer's image of the primitives of a
/// context.
class Scene {
public:
    explicit Scene(Context& context);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Whether rays can be traced on this machine.
    bool IsUsable() const { return _device != nullptr; }

    /// Takes over what has changed in the context. Throws std::bad_alloc.
    /// @param result takes what was left out; null drops it
    void Update(ThreadTeam& team, Result* result);

    /// The objects of all primitives, in the order in which these were made.
    const std::map<int, std::unique_ptr<SceneObject>>& GetObjects() const { return _objects; }
    /// The object that a ray hit.
    const SceneObject* GetObject(unsigned geometry) const { return _byGeometry[geometry]; }
    /// One above the highest geometry that a ray can hit.
    std::size_t GetGeometryCount() const { return _byGeometry.size(); }
    RTCScene GetHandle() const { return _scene; }

private:
    bool _UpdateObjects(ThreadTeam& team, Result* result);
    bool _SetAttached(SceneObject& object, bool isAttached);

    Context& _context;
    RTCDevice _device;
    RTCScene _scene = nullptr;
    TextureTable _textures;
    std::map<int, std::unique_ptr<SceneObject>> _objects; ///< by the primitive's handle
    std::vector<const SceneObject*> _byGeometry;          ///< null for numbers that are free
    bool _isCommitted = false;
};

} // namespace Tolen::OpenKL
