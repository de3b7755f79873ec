#include "ReferenceMemberValueArraySeparate.h"

#include "MemberValueArraySeparate.h"

#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

ReferenceMemberValueArraySeparate::~ReferenceMemberValueArraySeparate() { Shutdown(); }

bool ReferenceMemberValueArraySeparate::Init(IGraph* graph, MemberValueArraySeparate* member) {
    _pGraph = graph;
    _pMember = member;
    auto onChangeLength = MakeDelegate(this, &ReferenceMemberValueArraySeparate::_OnChangeLength);
    return _pMember->AddListenerChangeLength(onChangeLength);
}

bool ReferenceMemberValueArraySeparate::Shutdown() {
    if (_pMember != nullptr) {
        auto onChangeLength =
            MakeDelegate(this, &ReferenceMemberValueArraySeparate::_OnChangeLength);
        _pMember->RemoveListenerChangeLength(onChangeLength);
    }
    _pGraph = nullptr;
    _pMember = nullptr;
    return true;
}

bool ReferenceMemberValueArraySeparate::AddListenerChangeLength(
    FastDelegate1<IReferenceMember*, bool>& listener) {
    return _listenersChangeLength.Add(listener);
}

bool ReferenceMemberValueArraySeparate::RemoveListenerChangeLength(
    FastDelegate1<IReferenceMember*, bool>& listener) {
    return _listenersChangeLength.Remove(listener);
}

bool ReferenceMemberValueArraySeparate::IsComplete() const { return true; }

bool ReferenceMemberValueArraySeparate::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    if (_pMember == nullptr) {
        return false;
    }
    const int location = program->GetUniformLocation(_pMember->GetNameLengthMangled());
    if (location < 0) {
        ConsolePrint("ReferenceMemberValueArraySeparate::Apply Length LocationUniform\n");
        return false;
    }
    return _pMember->ApplyLength(primitive, program, location);
}

IMember* ReferenceMemberValueArraySeparate::GetMember() { return _pMember; }

IGraph* ReferenceMemberValueArraySeparate::GetGraph() { return _pGraph; }

bool ReferenceMemberValueArraySeparate::_OnChangeLength(IMember*) {
    return _listenersChangeLength.Fire(this);
}

} // namespace Tolen::Effects
