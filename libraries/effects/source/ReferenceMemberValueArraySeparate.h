#pragma once

#include "TolenEffects/IReferenceMember.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

class MemberValueArraySeparate;

/// An array member variable in a graph: its length is a uniform.
class ReferenceMemberValueArraySeparate : public IReferenceMember, public CreationOrder {
public:
    ~ReferenceMemberValueArraySeparate() override;

    /// @param graph, member borrowed
    bool Init(IGraph* graph, MemberValueArraySeparate* member);
    bool Shutdown();

    bool AddListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) override;
    bool RemoveListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) override;
    bool IsComplete() const override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    IMember* GetMember() override;
    IGraph* GetGraph() override;

private:
    bool _OnChangeLength(IMember* member);

    IGraph* _pGraph = nullptr;                    ///< borrowed
    MemberValueArraySeparate* _pMember = nullptr; ///< borrowed
    ListenerSet<FastDelegate1<IReferenceMember*, bool>> _listenersChangeLength;
};

} // namespace Tolen::Effects
