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
    /// @return true
    virtual bool SetName(const std::string& name) = 0;

    /// Adds a listener that is called first thing when the effect shuts down, while it is whole.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Adds a listener that is called with the write of a value that has changed, once for each
    /// change while the effect is compiled.
    /// @return true
    virtual bool AddListenerChangeValue(FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeValue() off. @return true
    virtual bool
    RemoveListenerChangeValue(FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) = 0;
    /// Adds a listener that is called when the program has become stale and after every SetRoot.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Adds a listener that is called when a program has been linked.
    /// @return true
    virtual bool AddListenerCompile(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerCompile() off. @return true
    virtual bool RemoveListenerCompile(FastDelegate1<IEffect*, bool>& listener) = 0;

    /// Whether the program is linked and that of the present structure.
    virtual bool IsCompiled() = 0;

    /// Calls @p visit for every vertex attribute of a surface effect, by name; other effects have
    /// none and answer true.
    /// @return whether all calls answered true
    virtual bool
    VisitAttributes(FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit) = 0;
    /// Adds a listener that is called when the set of vertex attributes changes; never by effects
    /// that are no surfaces.
    /// @return true
    virtual bool AddListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeAttribute() off. @return true
    virtual bool RemoveListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) = 0;

    /// Makes @p shader, borrowed, the root in place of the one before. Nothing is compiled yet.
    /// When the shader is destroyed, the effect has no root.
    /// @return false when the shader can't be used as a root, as null can't: the effect is shut
    ///         down then, has neither program nor manager, and takes no other root
    virtual bool SetRoot(IShader* shader) = 0;
    /// Writes the root to @p shader, null when there is none. @return true
    virtual bool GetRoot(IShader*& shader) const = 0;

    /// Puts the effect on a primitive, borrowed, which must stay until DestroyReference. The
    /// program shades it from the next Update on.
    /// @return owned by the effect; null on failure
    virtual IReferenceEffect* CreateReference(IKLPrimitive* primitive) = 0;
    /// Takes the effect off a primitive, which keeps program and values; passes over null and what
    /// isn't of this effect.
    virtual void DestroyReference(IReferenceEffect* reference) = 0;

    /// Adds a listener that is called by Apply() for all primitives: those that the effect was put
    /// on are such listeners.
    /// @return true
    virtual bool AddListenerApply(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerApply() off. @return true
    virtual bool RemoveListenerApply(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Makes @p primitive shaded by the program and writes all values on it. An effect that is not
    /// compiled answers true and touches nothing.
    /// @param primitive any, also one that the effect wasn't put on
    /// @param result    may be null; reasons of failures go to the console
    /// @return false when a write fails, and for null
    virtual bool Apply(IKLPrimitive* primitive, Result* result) = 0;
    /// The same for every primitive that the effect was put on.
    /// @return false at the first that fails; the others are left as they are
    virtual bool Apply(Result* result) = 0;

    /// Adds a listener that is called by Update() once the shaders' code is compiled: primitives
    /// that the effect was put on are such listeners, and do their writes here.
    /// @return true
    virtual bool AddListenerUpdate(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerUpdate() off. @return true
    virtual bool RemoveListenerUpdate(FastDelegate1<IEffect*, bool>& listener) = 0;
    /// Brings everything up to date: compiles and links when the structure has changed, then writes
    /// what is due on every primitive.
    /// @param result takes why the shaders' code could not be compiled; may be null. The
    ///               console is told of texts that don't fit together, of writes that fail, and
    ///               more about the others
    /// @return false when the shaders' code can't be compiled, when a write fails, and for a call
    ///         from a listener of this very update. True where the program could not be linked,
    ///         which IsCompiled() tells
    virtual bool Update(Result* result) = 0;

    /// The program, borrowed, also before it is linked; null once the effect is shut down.
    virtual IKLProgram* GetKLProgram() = 0;
    /// The manager that owns the effect; null once the effect is shut down.
    virtual IMgrEffects* GetMgrEffects() = 0;
};

} // namespace Tolen::Effects
