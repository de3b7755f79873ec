#pragma once

#include "TolenEffects/ActionUpdate.h"
#include "TolenEffects/IReferenceEffect.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <map>
#include <vector>

namespace Tolen::Effects {

class IParameter;
class IReferenceShader;

/// One effect on one primitive. Owned by the effect; when the effect shuts down the object stays,
/// without an effect, until its owner deletes it.
class ReferenceEffect : public IReferenceEffect, public CreationOrder {
public:
    ~ReferenceEffect() override;

    /// @param primitive, effect borrowed
    /// @param getReferenceShader finds what stands for a shader in the effect's graph
    bool Init(IKLPrimitive* primitive, IEffect* effect,
              FastDelegate1<IShader*, IReferenceShader*>& getReferenceShader);
    void Shutdown();

    /// Drops the queued updates that are bound to @p object.
    void ForgetUpdates(const void* object);

    bool AddListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) override;
    bool Apply(Result* result) override;
    bool AddListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) override;
    bool RemoveListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) override;
    bool Update(Result* result) override;
    void SetStopUpdate(bool stop) override;
    bool AddListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) override;
    bool RemoveListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) override;
    ILocalParameter* AcquireParameterLocal(IShader* shader, const std::string& name) override;
    void ReleaseParameterLocal(ILocalParameter* parameter) override;
    void ReleaseParameterLocalAll() override;
    bool ExistsParameterLocal(IShader* shader, const std::string& name) const override;
    IEffect* GetEffect() override;
    IKLPrimitive* GetKLPrimitive() override;

private:
    bool _RunPendingUpdates();
    bool _Report(bool (ReferenceEffect::*operation)(Result*));
    void _GiveBack(ILocalParameter* local);

    bool _OnDelete(IEffect* effect);
    bool _OnChangeStructure(IEffect* effect);
    bool _OnChangeValue(IEffect* effect, ActionUpdate& action);
    bool _OnApply(IEffect* effect);
    bool _OnUpdate(IEffect* effect);
    bool _OnDeleteLocalParameter(ILocalParameter* local);

    IKLPrimitive* _pKLPrimitive = nullptr; ///< borrowed
    IEffect* _pEffect = nullptr;           ///< borrowed, owns this object; null once it is gone
    bool _needsApply = true;               ///< a full apply is due
    bool _stopUpdate = false;
    FastDelegate1<IShader*, IReferenceShader*> _getReferenceShader;
    std::map<IParameter*, ILocalParameter*> _localParameters; ///< owned by the inputs' references
    ListenerSet<FastDelegate1<IReferenceEffect*, bool>> _listenersDelete;
    ListenerSet<FastDelegate1<IReferenceEffect*, bool>> _listenersApply;
    ListenerSet<FastDelegate1<IReferenceEffect*, bool>> _listenersUpdate;
    std::vector<ActionUpdate> _pendingUpdates;
    bool _isTellingDelete = false;
    LifeToken _life;
};

} // namespace Tolen::Effects
