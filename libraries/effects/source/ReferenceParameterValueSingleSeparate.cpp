#include "ReferenceParameterValueSingleSeparate.h"

#include "Graph.h"
#include "LocalParameterValueSingle.h"
#include "ParameterValueSingle.h"

#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

ReferenceParameterValueSingleSeparate::~ReferenceParameterValueSingleSeparate() { Shutdown(); }

bool ReferenceParameterValueSingleSeparate::Init(IGraph* graph, ParameterValueSingle* parameter) {
    if (!_InitLocalParameters()) {
        return false;
    }
    _pGraph = graph;
    _pParameter = parameter;
    auto onChangeValue =
        MakeDelegate(this, &ReferenceParameterValueSingleSeparate::_OnChangeValue);
    return _pParameter->AddListenerChangeValue(onChangeValue);
}

bool ReferenceParameterValueSingleSeparate::Shutdown() {
    if (_pParameter != nullptr) {
        auto onChangeValue =
            MakeDelegate(this, &ReferenceParameterValueSingleSeparate::_OnChangeValue);
        _pParameter->RemoveListenerChangeValue(onChangeValue);
        static_cast<Graph*>(_pGraph)->ForgetUpdates(this);
    }
    _ShutdownLocalParameters();
    _pParameter = nullptr;
    _pGraph = nullptr;
    return true;
}

bool ReferenceParameterValueSingleSeparate::IsComplete(Result* result) const {
    return _pParameter != nullptr && _pParameter->IsComplete(result);
}

bool ReferenceParameterValueSingleSeparate::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    if (_pParameter == nullptr) {
        return false;
    }
    const int location = program->GetUniformLocation(_pParameter->GetNameMangled());
    if (location < 0) {
        ConsolePrint("ReferenceParameterValueSingleSeparate::Apply Value LocationUniform\n");
        return false;
    }
    return _Apply(_pParameter, primitive, program, location);
}

bool ReferenceParameterValueSingleSeparate::_Apply(ParameterValueSingle* parameter,
                                                   IKLPrimitive* primitive, IKLProgram* program,
                                                   int location) {
    if (LocalParameterValueSingle* local = _FindLocal(primitive)) {
        return local->Apply(primitive, program, location);
    }
    return parameter->Apply(primitive, program, location);
}

bool ReferenceParameterValueSingleSeparate::_OnChangeValue(IParameter*) {
    const LifeToken::Watch alive = _life.GetWatch();
    DelegateUpdate update(this, &ReferenceParameterValueSingleSeparate::Apply);
    const bool heard = _FireChangeValue();
    return alive && _pGraph->AddDelegateUpdate(update) && heard;
}

IParameter* ReferenceParameterValueSingleSeparate::GetParameter() { return _pParameter; }

IGraph* ReferenceParameterValueSingleSeparate::GetGraph() { return _pGraph; }

IMgrEffects* ReferenceParameterValueSingleSeparate::GetMgrEffects() {
    return _pGraph == nullptr ? nullptr : _pGraph->GetMgrEffects();
}

} // namespace Tolen::Effects
