#include "ReferenceParameterValueArraySeparate.h"

#include "Graph.h"
#include "ParameterValueArraySeparate.h"

#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

namespace {

bool _ReportNoLocation(const char* text) {
    ConsolePrint("%s", text);
    return false;
}

} // namespace

ReferenceParameterValueArraySeparate::~ReferenceParameterValueArraySeparate() { Shutdown(); }

bool ReferenceParameterValueArraySeparate::Init(IGraph* graph,
                                                ParameterValueArraySeparate* parameter) {
    _pGraph = graph;
    _pParameter = parameter;
    auto onChangeValue = MakeDelegate(this, &ReferenceParameterValueArraySeparate::_OnChangeValue);
    auto onChangeLength = MakeDelegate(this, &ReferenceParameterValueArraySeparate::_OnChangeLength);
    return _pParameter->AddListenerChangeValue(onChangeValue) &&
           _pParameter->AddListenerChangeLength(onChangeLength);
}

bool ReferenceParameterValueArraySeparate::Shutdown() {
    if (_pParameter != nullptr) {
        auto onChangeValue =
            MakeDelegate(this, &ReferenceParameterValueArraySeparate::_OnChangeValue);
        auto onChangeLength =
            MakeDelegate(this, &ReferenceParameterValueArraySeparate::_OnChangeLength);
        _pParameter->RemoveListenerChangeLength(onChangeLength);
        _pParameter->RemoveListenerChangeValue(onChangeValue);
        static_cast<Graph*>(_pGraph)->ForgetUpdates(this);
    }
    _pParameter = nullptr;
    _pGraph = nullptr;
    return true;
}

bool ReferenceParameterValueArraySeparate::AddListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceParameterValueArraySeparate::RemoveListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceParameterValueArraySeparate::AddListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>&) {
    return true;
}

bool ReferenceParameterValueArraySeparate::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>&) {
    return true;
}

bool ReferenceParameterValueArraySeparate::AddListenerChangeLength(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeLength.Add(listener);
}

bool ReferenceParameterValueArraySeparate::RemoveListenerChangeLength(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeLength.Remove(listener);
}

bool ReferenceParameterValueArraySeparate::IsComplete(Result* result) const {
    return _pParameter != nullptr && _pParameter->IsComplete(result);
}

bool ReferenceParameterValueArraySeparate::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    if (_pParameter == nullptr) {
        return false;
    }
    const int locationLength = program->GetUniformLocation(_pParameter->GetNameLengthMangled());
    if (locationLength < 0) {
        return _ReportNoLocation(
            "ReferenceParameterValueArraySeparate::Apply Length LocationUniform\n");
    }
    const std::string name = _pParameter->GetNameMangled();
    const int locationValue = _pParameter->GetLength() < 0 ? program->GetUniformLocation(name)
                                                           : program->GetUniformBlockLocation(name);
    if (locationValue < 0) {
        return _ReportNoLocation(
            "ReferenceParameterValueArraySeparate::Apply Value LocationUniform\n");
    }
    return _pParameter->ApplyStorage(primitive, program, locationValue) &&
           _pParameter->ApplyLength(primitive, program, locationLength);
}

ILocalParameter* ReferenceParameterValueArraySeparate::AcquireLocal(IKLPrimitive*) {
    return nullptr;
}

void ReferenceParameterValueArraySeparate::ReleaseLocal(ILocalParameter*) {}

IParameter* ReferenceParameterValueArraySeparate::GetParameter() { return _pParameter; }

IGraph* ReferenceParameterValueArraySeparate::GetGraph() { return _pGraph; }

bool ReferenceParameterValueArraySeparate::_OnChangeValue(IParameter*) {
    return _FireAndUpdate(_listenersChangeValue);
}

bool ReferenceParameterValueArraySeparate::_OnChangeLength(IParameter*) {
    return _FireAndUpdate(_listenersChangeLength);
}

bool ReferenceParameterValueArraySeparate::_FireAndUpdate(const Listeners& listeners) {
    const LifeToken::Watch alive = _life.GetWatch();
    DelegateUpdate update(this, &ReferenceParameterValueArraySeparate::Apply);
    const bool heard = listeners.Fire(this);
    return alive && _pGraph->AddDelegateUpdate(update) && heard;
}

} // namespace Tolen::Effects
