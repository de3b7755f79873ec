#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;
class IMember;

/// One member variable of a shader as it is used in one graph.
class TOLEN_EXPORT IReferenceMember {
public:
    virtual ~IReferenceMember() = default;

    virtual bool AddListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) = 0;
    virtual bool IsComplete() const = 0;
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;
    virtual IMember* GetMember() = 0;
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects
