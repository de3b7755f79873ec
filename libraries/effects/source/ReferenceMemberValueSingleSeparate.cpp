#include "ReferenceMemberValueSingleSeparate.h"

#include "MemberValueSingleSeparate.h"

namespace Tolen::Effects {

bool ReferenceMemberValueSingleSeparate::Init(IGraph* graph, MemberValueSingleSeparate* member) {
    _pGraph = graph;
    _pMember = member;
    return true;
}

bool ReferenceMemberValueSingleSeparate::Shutdown() {
    _pGraph = nullptr;
    _pMember = nullptr;
    return true;
}

bool ReferenceMemberValueSingleSeparate::AddListenerChangeLength(
    FastDelegate1<IReferenceMember*, bool>&) {
    return true;
}

bool ReferenceMemberValueSingleSeparate::RemoveListenerChangeLength(
    FastDelegate1<IReferenceMember*, bool>&) {
    return true;
}

bool ReferenceMemberValueSingleSeparate::IsComplete() const { return true; }

bool ReferenceMemberValueSingleSeparate::Apply(IKLPrimitive*, IKLProgram*) { return true; }

IMember* ReferenceMemberValueSingleSeparate::GetMember() { return _pMember; }

IGraph* ReferenceMemberValueSingleSeparate::GetGraph() { return _pGraph; }

} // namespace Tolen::Effects
