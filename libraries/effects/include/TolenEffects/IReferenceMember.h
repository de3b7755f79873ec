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

    /// Adds a listener that is called after a change of the member's length.
    /// @return true
    virtual bool AddListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeLength() off. @return true
    virtual bool RemoveListenerChangeLength(FastDelegate1<IReferenceMember*, bool>& listener) = 0;
    /// Whether everything is set that code needs.
    virtual bool IsComplete() const = 0;
    /// Writes what the member needs to run, the length of an array, to @p primitive.
    /// @return false when that fails
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;
    /// The member that this stands for.
    virtual IMember* GetMember() = 0;
    /// The graph in which it is used.
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects
