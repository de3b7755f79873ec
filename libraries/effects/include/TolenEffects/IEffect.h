#pragma once

#include "TolenEffects/ActionUpdate.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IAttributeVertex;
class IMgrEffects;
class IReferenceEffect;
class IShader;

/// What a client attaches to an object: one program, made of a root shader and everything that it
/// reaches. The manager creates effects, of one of three kinds, and owns them.
///
/// Setting a root or changing the structure below it only makes the effect dirty; Update compiles.
/// A change of value never compiles: it is queued for each primitive and written by Update.
class TOLEN_EXPORT IEffect {
public:
    virtual ~IEffect() = default;

    /// Names the effect and what it is made of, for messages and for generated names.
    virtual bool SetName(const std::string& name) = 0;

    /// Called first thing when the effect shuts down.
    virtual bool AddListenerDelete(FastDelegate1<IEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerDelete(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Called with the write of a value that has changed.
    virtual bool AddListenerChangeValue(FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) = 0;
    virtual bool
    RemoveListenerChangeValue(FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) = 0;
    /// Called when the program has become stale.
    virtual bool AddListenerChangeStructure(FastDelegate1<IEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Called when a program has been linked.
    virtual bool AddListenerCompile(FastDelegate1<IEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerCompile(FastDelegate1<IEffect*, bool>& listener) = 0;

    /// Whether the program is linked and that of the present structure.
    virtual bool IsCompiled() = 0;

    /// Calls @p visit for every vertex attribute of a surface effect, by name; other effects have
    /// none and answer true.
    virtual bool
    VisitAttributes(FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit) = 0;
    /// Called when the set of vertex attributes changes.
    virtual bool AddListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) = 0;

    /// Makes @p shader, borrowed, the root in place of the one before. Nothing is compiled yet.
    /// @return false when the shader can't be used as a root, as null can't: the effect is shut
    ///         down then and takes no other root
    virtual bool SetRoot(IShader* shader) = 0;
    /// Writes the root, or null, to @p shader. @return true
    virtual bool GetRoot(IShader*& shader) const = 0;

    /// Puts the effect on a primitive, borrowed.
    /// @return owned by the effect; null on failure
    virtual IReferenceEffect* CreateReference(IKLPrimitive* primitive) = 0;
    virtual void DestroyReference(IReferenceEffect* reference) = 0;

    virtual bool AddListenerApply(FastDelegate1<IEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerApply(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Makes @p primitive shaded by the program and writes all values on it. An effect that is not
    /// compiled answers true and touches nothing.
    virtual bool Apply(IKLPrimitive* primitive, Result* result) = 0;
    /// The same for every primitive that the effect was put on.
    virtual bool Apply(Result* result) = 0;

    virtual bool AddListenerUpdate(FastDelegate1<IEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerUpdate(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Brings everything up to date: compiles and links when the structure has changed, then
    /// writes what is due on every primitive.
    /// @return false with the reasons in @p result
    virtual bool Update(Result* result) = 0;

    /// The program; null once the effect is shut down.
    virtual IKLProgram* GetKLProgram() = 0;
    virtual IMgrEffects* GetMgrEffects() = 0;
};

} // namespace Tolen::Effects
