#include "scene/Scene.h"

#include "scene/Context.h"
#include "scene/Primitive.h"
#include "scene/SceneObject.h"

#include "TolenCore/Result.h"

#include <new>

namespace Tolen::OpenKL {

Scene::Scene(Context& context) : _context(context), _device(rtcNewDevice(nullptr)) {
    if (_device != nullptr) {
        _scene = rtcNewScene(_device);
        // Watertight at shared edges.
        rtcSetSceneFlags(_scene, RTC_SCENE_FLAG_ROBUST);
    }
}

Scene::~Scene() {
    _objects.clear();
    if (_device != nullptr) {
        rtcReleaseScene(_scene);
        rtcReleaseDevice(_device);
    }
}

void Scene::Update(ThreadTeam& team, Result* result) {
    _textures.Update(_context);
    const bool hasChanged = _UpdateObjects(team, result);
    if (hasChanged || !_isCommitted) {
        rtcCommitScene(_scene);
        if (rtcGetDeviceError(_device) == RTC_ERROR_OUT_OF_MEMORY) {
            throw std::bad_alloc();
        }
        _isCommitted = true;
    }
}

bool Scene::_UpdateObjects(ThreadTeam& team, Result* result) {
    // Objects of primitives that are gone; handles are never given twice.
    bool hasChanged = false;
    std::erase_if(_objects, [&](const auto& entry) {
        const bool isGone =
            _context.FindPrimitive(static_cast<KLprimitive>(entry.first)) == nullptr;
        hasChanged = (isGone && _SetAttached(*entry.second, false)) || hasChanged;
        return isGone;
    });

    _context.GetPrimitives().ForEach([&](Primitive& primitive) {
        std::unique_ptr<SceneObject>& object = _objects[primitive.GetHandle()];
        if (object == nullptr) {
            object = std::make_unique<SceneObject>(primitive, _device);
        }
        GeometryProblems problems;
        const bool isRebuilt = object->Update(_textures, team, _context.GetCounters(), problems);
        const bool isReachable = primitive.IsVisible() && object->GetGeometry() != nullptr;
        const bool isMoved = _SetAttached(*object, isReachable);
        hasChanged = hasChanged || isMoved || (isRebuilt && isReachable);
        if (result != nullptr && problems.trianglesLeftOut != 0) {
            result->Add("primitive '%s': %zu triangles left out, of which a vertex is missing or "
                        "not finite",
                        primitive.GetName().c_str(), problems.trianglesLeftOut);
        }
        if (result != nullptr && problems.stoppedInvocations != 0) {
            result->Add("primitive '%s': the vertex shader reached the limit of %lld loop steps in "
                        "%zu invocations",
                        primitive.GetName().c_str(),
                        static_cast<long long>(_context.GetOptions().limits.loopSteps),
                        problems.stoppedInvocations);
        }
        _context.GetCounters().loopsStopped +=
            static_cast<std::int64_t>(problems.stoppedInvocations);
    });
    return hasChanged;
}

/// Lets rays reach an object, or not. @return whether that is a change
bool Scene::_SetAttached(SceneObject& object, bool isAttached) {
    const bool wasAttached = object.geometryNumber != SceneObject::kNone;
    if (isAttached == wasAttached) {
        return false;
    }
    if (isAttached) {
        object.geometryNumber = rtcAttachGeometry(_scene, object.GetGeometry());
        if (object.geometryNumber >= _byGeometry.size()) {
            _byGeometry.resize(std::size_t{object.geometryNumber} + 1);
        }
        _byGeometry[object.geometryNumber] = &object;
    } else {
        rtcDetachGeometry(_scene, object.geometryNumber);
        _byGeometry[object.geometryNumber] = nullptr;
        object.geometryNumber = SceneObject::kNone;
    }
    return true;
}

} // namespace Tolen::OpenKL
