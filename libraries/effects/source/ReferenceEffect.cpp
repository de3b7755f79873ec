#include "ReferenceEffect.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/IReferenceShader.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Result.h"

#include <algorithm>

namespace Tolen::Effects {

ReferenceEffect::~ReferenceEffect() { Shutdown(); }

bool ReferenceEffect::Init(IKLPrimitive* primitive, IEffect* effect,
                           FastDelegate1<IShader*, IReferenceShader*>& getReferenceShader) {
    _pKLPrimitive = primitive;
    _pEffect = effect;
    _getReferenceShader = getReferenceShader;

    auto onDelete = MakeDelegate(this, &ReferenceEffect::_OnDelete);
    auto onChangeStructure = MakeDelegate(this, &ReferenceEffect::_OnChangeStructure);
    auto onChangeValue = MakeDelegate(this, &ReferenceEffect::_OnChangeValue);
    auto onApply = MakeDelegate(this, &ReferenceEffect::_OnApply);
    auto onUpdate = MakeDelegate(this, &ReferenceEffect::_OnUpdate);
    _needsApply = true;
    return _pEffect->AddListenerDelete(onDelete) &&
           _pEffect->AddListenerChangeStructure(onChangeStructure) &&
           _pEffect->AddListenerCompile(onChangeStructure) &&
           _pEffect->AddListenerChangeValue(onChangeValue) &&
           _pEffect->AddListenerApply(onApply) && _pEffect->AddListenerUpdate(onUpdate);
}

void ReferenceEffect::Shutdown() {
    if (!_isTellingDelete) {
        const LifeToken::Watch alive = _life.GetWatch();
        _isTellingDelete = true;
        _listenersDelete.Fire(this);
        if (!alive) {
            return;
        }
        _isTellingDelete = false;
    }
    _listenersDelete.Clear();
    if (IEffect* const effect = _pEffect) {
        auto onDelete = MakeDelegate(this, &ReferenceEffect::_OnDelete);
        auto onChangeStructure = MakeDelegate(this, &ReferenceEffect::_OnChangeStructure);
        auto onChangeValue = MakeDelegate(this, &ReferenceEffect::_OnChangeValue);
        auto onApply = MakeDelegate(this, &ReferenceEffect::_OnApply);
        auto onUpdate = MakeDelegate(this, &ReferenceEffect::_OnUpdate);
        effect->RemoveListenerApply(onApply);
        effect->RemoveListenerUpdate(onUpdate);
        effect->RemoveListenerChangeValue(onChangeValue);
        effect->RemoveListenerCompile(onChangeStructure);
        effect->RemoveListenerChangeStructure(onChangeStructure);
        effect->RemoveListenerDelete(onDelete);
        _pEffect = nullptr;
    }
    ReleaseParameterLocalAll();
    _pendingUpdates.clear();
    _pKLPrimitive = nullptr;
    _needsApply = true;
}

void ReferenceEffect::ForgetUpdates(const void* object) {
    const auto isBound = [object](const ActionUpdate& action) {
        return action.GetDelegate().GetObject() == object;
    };
    _pendingUpdates.erase(std::remove_if(_pendingUpdates.begin(), _pendingUpdates.end(), isBound),
                          _pendingUpdates.end());
}

bool ReferenceEffect::AddListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool ReferenceEffect::RemoveListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool ReferenceEffect::Apply(Result* result) {
    if (_pEffect == nullptr) {
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    if (!_pEffect->Apply(_pKLPrimitive, result) || !alive) {
        return false;
    }
    _listenersApply.Fire(this);
    if (alive) {
        _needsApply = false;
    }
    return true;
}

bool ReferenceEffect::AddListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) {
    return _listenersApply.Add(listener);
}

bool ReferenceEffect::RemoveListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) {
    return _listenersApply.Remove(listener);
}

bool ReferenceEffect::Update(Result* result) {
    if (_stopUpdate) {
        return true;
    }
    if (_pEffect == nullptr) {
        return false;
    }
    if (_needsApply) {
        return Apply(result);
    }
    const LifeToken::Watch alive = _life.GetWatch();
    if (!_RunPendingUpdates() || !alive) {
        return false;
    }
    _listenersUpdate.Fire(this);
    return true;
}

void ReferenceEffect::SetStopUpdate(bool stop) { _stopUpdate = stop; }

bool ReferenceEffect::AddListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) {
    return _listenersUpdate.Add(listener);
}

bool ReferenceEffect::RemoveListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) {
    return _listenersUpdate.Remove(listener);
}

ILocalParameter* ReferenceEffect::AcquireParameterLocal(IShader* shader, const std::string& name) {
    if (shader == nullptr || _pEffect == nullptr) {
        return nullptr;
    }
    IParameter* const key = shader->GetParameter(name);
    if (key == nullptr) {
        return nullptr;
    }
    if (const auto found = _localParameters.find(key); found != _localParameters.end()) {
        return found->second;
    }
    IReferenceShader* const referenceShader = _getReferenceShader(shader);
    IReferenceParameter* const reference =
        referenceShader == nullptr ? nullptr : referenceShader->GetParameter(name);
    ILocalParameter* const local =
        reference == nullptr ? nullptr : reference->AcquireLocal(_pKLPrimitive);
    if (local == nullptr) {
        return nullptr;
    }
    auto onDelete = MakeDelegate(this, &ReferenceEffect::_OnDeleteLocalParameter);
    local->AddListenerDelete(onDelete);
    _localParameters[key] = local;
    return local;
}

void ReferenceEffect::ReleaseParameterLocal(ILocalParameter* parameter) {
    const auto found =
        std::find_if(_localParameters.begin(), _localParameters.end(),
                     [parameter](const auto& entry) { return entry.second == parameter; });
    if (found == _localParameters.end()) {
        return;
    }
    _localParameters.erase(found);
    _GiveBack(parameter);
}

void ReferenceEffect::ReleaseParameterLocalAll() {
    while (!_localParameters.empty()) {
        const auto first = _localParameters.begin();
        ILocalParameter* const local = first->second;
        _localParameters.erase(first);
        _GiveBack(local);
    }
}

bool ReferenceEffect::ExistsParameterLocal(IShader* shader, const std::string& name) const {
    IParameter* const key = shader == nullptr ? nullptr : shader->GetParameter(name);
    return key != nullptr && _localParameters.count(key) != 0;
}

IEffect* ReferenceEffect::GetEffect() { return _pEffect; }

IKLPrimitive* ReferenceEffect::GetKLPrimitive() { return _pKLPrimitive; }

bool ReferenceEffect::_RunPendingUpdates() {
    const LifeToken::Watch alive = _life.GetWatch();
    // By index, with a copy of each action: an action may append to the queue, or drop it.
    for (std::size_t i = 0; i < _pendingUpdates.size(); ++i) {
        const ActionUpdate action = _pendingUpdates[i];
        const bool good = action.Run(_pKLPrimitive);
        if (!alive || !good) {
            return false;
        }
    }
    _pendingUpdates.clear();
    return true;
}

bool ReferenceEffect::_Report(bool (ReferenceEffect::*operation)(Result*)) {
    IMgrEffects* const manager = _pEffect == nullptr ? nullptr : _pEffect->GetMgrEffects();
    Result result;
    if ((this->*operation)(&result)) {
        return true;
    }
    result.ReportToConsole(manager == nullptr ? nullptr : manager->GetConsole());
    return false;
}

void ReferenceEffect::_GiveBack(ILocalParameter* local) {
    auto onDelete = MakeDelegate(this, &ReferenceEffect::_OnDeleteLocalParameter);
    local->RemoveListenerDelete(onDelete);
    if (IReferenceParameter* const reference = local->GetReferenceParameter()) {
        reference->ReleaseLocal(local);
    }
}

bool ReferenceEffect::_OnDelete(IEffect*) {
    _pEffect = nullptr;
    Shutdown();
    return true;
}

bool ReferenceEffect::_OnChangeStructure(IEffect*) {
    _needsApply = true;
    _pendingUpdates.clear();
    return true;
}

bool ReferenceEffect::_OnChangeValue(IEffect*, ActionUpdate& action) {
    if (_needsApply) {
        return true;
    }
    if (!TOLEN_CHECK(_pEffect != NULL, "Source/ReferenceEffect")) {
        return false;
    }
    _pendingUpdates.push_back(action);
    return true;
}

bool ReferenceEffect::_OnApply(IEffect*) { return _Report(&ReferenceEffect::Apply); }

bool ReferenceEffect::_OnUpdate(IEffect*) { return _Report(&ReferenceEffect::Update); }

bool ReferenceEffect::_OnDeleteLocalParameter(ILocalParameter* local) {
    for (auto it = _localParameters.begin(); it != _localParameters.end(); ++it) {
        if (it->second == local) {
            _localParameters.erase(it);
            break;
        }
    }
    return true;
}

} // namespace Tolen::Effects
