#pragma once

#include "TolenEffects/IReferenceMember.h"

namespace Tolen::Effects {

class MemberValueSingleSeparate;

/// A single member variable in a graph. It has no uniform, so there is nothing to write or hear.
class ReferenceMemberValueSingleSeparate : public IReferenceMember {
public:
    /// @param graph, member borrowed
    bool Init(IGraph* graph, MemberValueSingleSeparate* member);
    bool Shutdown();

    bool AddListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) override;
    bool RemoveListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) override;
    bool IsComplete() const override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    IMember* GetMember() override;
    IGraph* GetGraph() override;

private:
    IGraph* _pGraph = nullptr;                     ///< borrowed
    MemberValueSingleSeparate* _pMember = nullptr; ///< borrowed
};

} // namespace Tolen::Effects
