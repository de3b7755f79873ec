#include "ReferenceParameterCoord.h"

#include "ParameterCoord.h"
#include "TolenEffects/IGraph.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Result.h"

namespace Tolen::Effects {

ReferenceParameterCoord::~ReferenceParameterCoord() { Shutdown(); }

bool ReferenceParameterCoord::Init(IParameter* parameter, IGraph* graph) {
    _pParameter = static_cast<ParameterCoord*>(parameter);
    _pGraph = graph;
    auto onChange = MakeDelegate(this, &ReferenceParameterCoord::_OnChangeParameter);
    if (!_pParameter->AddListenerChangeStructure(onChange)) {
        return false;
    }
    std::string value;
    return !_pParameter->Get(value) || value.empty() || _AcquireValue(value);
}

void ReferenceParameterCoord::Shutdown() {
    if (_pParameter == nullptr) {
        return;
    }
    auto onChange = MakeDelegate(this, &ReferenceParameterCoord::_OnChangeParameter);
    _pParameter->RemoveListenerChangeStructure(onChange);
    if (!_sValue.empty()) {
        _ReleaseValue();
    }
    _pParameter = nullptr;
    _pGraph = nullptr;
}

bool ReferenceParameterCoord::AddListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceParameterCoord::RemoveListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceParameterCoord::AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>&) {
    return true;
}

bool ReferenceParameterCoord::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>&) {
    return true;
}

bool ReferenceParameterCoord::IsComplete(Result* result) const {
    if (!_sValue.empty()) {
        return true;
    }
    if (result != nullptr && _pParameter != nullptr) {
        result->Add("ReferenceParameterCoord::IsComplete() failed for Graph:%s Parameter:%s",
                    _pGraph->GetName().c_str(), _pParameter->GetName().c_str());
    }
    return false;
}

bool ReferenceParameterCoord::Apply(IKLPrimitive*, IKLProgram*) { return true; }

ILocalParameter* ReferenceParameterCoord::AcquireLocal(IKLPrimitive*) { return nullptr; }

void ReferenceParameterCoord::ReleaseLocal(ILocalParameter*) {}

IParameter* ReferenceParameterCoord::GetParameter() { return _pParameter; }

IGraph* ReferenceParameterCoord::GetGraph() { return _pGraph; }

bool ReferenceParameterCoord::_ReleaseValue() {
    if (!TOLEN_CHECK(_sValue != std::string(), "Source/ReferenceParameterCoord")) {
        return false;
    }
    const std::string released = std::move(_sValue);
    _sValue.clear();
    return _pGraph->ReleaseAttribute(released);
}

bool ReferenceParameterCoord::_AcquireValue(const std::string& value) {
    if (!TOLEN_CHECK(_sValue == std::string(), "Source/ReferenceParameterCoord")) {
        return false;
    }
    _sValue = value;
    if (!_pGraph->AcquireAttribute(_pParameter->GetTypeSpecifier(), value,
                                   static_cast<TransformationCoord>(_pParameter->GetTransformed()))) {
        _sValue.clear();
        return false;
    }
    return true;
}

bool ReferenceParameterCoord::_OnChangeParameter(IParameter*) {
    std::string value;
    if (!_pParameter->Get(value)) {
        return false;
    }
    if (value == _sValue) {
        return true;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    if (!_sValue.empty() && (!_ReleaseValue() || !alive)) {
        return false;
    }
    // Told before the new attribute is acquired: an acquire clears the compiled state in silence,
    // and a notice behind it would no longer reach the effect.
    const bool heard = _listenersChangeValue.Fire(this);
    if (!alive || _pParameter == nullptr) {
        return heard;
    }
    std::string valueNow;
    if (!_sValue.empty() || !_pParameter->Get(valueNow) || valueNow != value) {
        // A listener has set the coordinate once more, and that is done already.
        return heard;
    }
    return (value.empty() || _AcquireValue(value)) && heard;
}

} // namespace Tolen::Effects
