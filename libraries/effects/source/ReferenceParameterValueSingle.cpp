#include "ReferenceParameterValueSingle.h"

#include "LocalParameterValueSingle.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

ReferenceParameterValueSingle::ReferenceParameterValueSingle() = default;

ReferenceParameterValueSingle::~ReferenceParameterValueSingle() { _ShutdownLocalParameters(); }

bool ReferenceParameterValueSingle::AddListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceParameterValueSingle::RemoveListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceParameterValueSingle::AddListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>&) {
    return true;
}

bool ReferenceParameterValueSingle::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>&) {
    return true;
}

ILocalParameter* ReferenceParameterValueSingle::AcquireLocal(IKLPrimitive* primitive) {
    if (LocalParameterValueSingle* existing = _FindLocal(primitive)) {
        return existing;
    }
    auto local = std::make_unique<LocalParameterValueSingle>();
    if (!local->Init(primitive, this)) {
        return nullptr;
    }
    return (_mLocalParameters[primitive] = std::move(local)).get();
}

void ReferenceParameterValueSingle::ReleaseLocal(ILocalParameter* parameter) {
    if (parameter == nullptr) {
        return;
    }
    const auto found = _mLocalParameters.find(parameter->GetKLPrimitive());
    if (found == _mLocalParameters.end() || found->second.get() != parameter) {
        return;
    }
    // Out of the table first: the delete listeners may come back here.
    const std::unique_ptr<LocalParameterValueSingle> local = std::move(found->second);
    _mLocalParameters.erase(found);
}

bool ReferenceParameterValueSingle::_InitLocalParameters() {
    return TOLEN_CHECK(_mLocalParameters.size() == 0, "Source/ReferenceParameterValueSingle");
}

void ReferenceParameterValueSingle::_ShutdownLocalParameters() {
    while (!_mLocalParameters.empty()) {
        const auto first = _mLocalParameters.begin();
        const std::unique_ptr<LocalParameterValueSingle> local = std::move(first->second);
        _mLocalParameters.erase(first);
    }
}

LocalParameterValueSingle* ReferenceParameterValueSingle::_FindLocal(IKLPrimitive* primitive) const {
    const auto found = _mLocalParameters.find(primitive);
    return found == _mLocalParameters.end() ? nullptr : found->second.get();
}

bool ReferenceParameterValueSingle::_FireChangeValue() { return _listenersChangeValue.Fire(this); }

} // namespace Tolen::Effects
