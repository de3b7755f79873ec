#pragma once

#include "TolenEffects/Key.h"
#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class IMgrConsole;
class IOpenKLContext;
class Result;
} // namespace Tolen

/// The library that turns shading-language source into running programs. MgrEffects is the entry.
namespace Tolen::Effects {

class IEffect;
class IPrototypeInterface;
class IPrototypeShader;
class IShader;
class MgrEffectsImpl;
class Profiler;

/// The entry to the library: loaded shader libraries, shaders and effects, the outputs that shaders
/// write to, and the keys of generated names.
///
/// Everything handed out here is owned by the manager and dies at its shutdown at the latest. All
/// calls come from one thread at a time; only CreateKey and DestroyKey may come from any thread. A
/// null `Result*` is legal everywhere and drops the messages. Before Init and after Shutdown,
/// creations answer null, and Update and the visits of effects answer false.
///
/// Listeners are called in an order that is the same in every run, up to the first that answers
/// false; adding one twice has no effect. Visits call the delegate for every entry and answer
/// whether all calls answered true; they answer true when there is no entry.
class TOLEN_EXPORT IMgrEffects {
public:
    virtual ~IMgrEffects() = default;

    /// Destroys everything in the manager. Safe to repeat. A listener may call it, but not destroy
    /// the manager itself; see DestroyShader for when it takes place.
    virtual void Shutdown() = 0;

    /// For the library's own code; clients have no use for it.
    virtual MgrEffectsImpl* GetImplementation() = 0;

    /// @name Libraries
    /// @{

    /// Parses @p source as the library @p name. A name that is loaded already answers true, and the
    /// new source is not looked at: a library is never replaced. Directives such as "#include" are
    /// for files: here they are errors.
    /// @param name   of the library, by which libraries are ordered
    /// @param source the whole text; not needed any more afterwards
    /// @param result takes what is wrong with the source, with file and line; may be null
    /// @return false when the source has errors
    virtual bool AddLibrary(const std::string& name, const std::string& source, Result* result) = 0;
    /// Reads a file through the assets of the process, runs its directives and adds the text as the
    /// library of the file's full path. Other files that it imports become libraries as well.
    /// @param file   a path that the assets know
    /// @param result takes what is wrong with the text, with file and line; may be null
    /// @return false when a file is missing or empty, a directive can't be followed, or the text
    ///         has errors; what is wrong with files and directives goes to the console
    virtual bool AddLibrary(const std::string& file, Result* result) = 0;

    /// Declares a variable that rays carry in every shader from the next compile on. Always true;
    /// nothing is checked.
    virtual bool AddRayAttribute(TypeSpecifier type, const std::string& name) = 0;
    /// Declares a global variable in every shader from the next compile on. Always true; nothing is
    /// checked.
    virtual bool AddVariableGlobal(TypeSpecifier type, const std::string& name) = 0;

    /// The class @p name of the first library, by library name, that declares it.
    /// @param name   of the class
    /// @param result takes why the class can't be used; may be null
    /// @return owned by its library; null when there is none or when it can't be used
    virtual IPrototypeShader* GetPrototypeShader(const std::string& name, Result* result) = 0;
    /// The interface @p name of the first library, by library name, that declares it.
    /// @return owned by its library; null when there is none
    virtual IPrototypeInterface* GetPrototypeInterface(const std::string& name) = 0;
    /// @}

    /// @name Visits
    /// @{

    /// Calls @p visit for every ray attribute in the order in which they were added.
    virtual bool
    VisitRayAttributes(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) = 0;
    /// Calls @p visit for every global variable in the order in which they were added.
    virtual bool
    VisitVariablesGlobal(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) = 0;
    /// Calls @p visit for every effect for surfaces in the order in which they were created. One
    /// whose creation failed is visited as null.
    virtual bool VisitEffectsSurface(FastDelegate1<IEffect*, bool>& visit) = 0;
    /// Calls @p visit for every renderer's effect, as for surfaces.
    virtual bool VisitEffectsRenderer(FastDelegate1<IEffect*, bool>& visit) = 0;
    /// Calls @p visit for every prefix effect, as for surfaces.
    virtual bool VisitEffectsPrefix(FastDelegate1<IEffect*, bool>& visit) = 0;
    /// @}

    /// @name Shaders
    /// @{

    /// Makes a shader of the class @p name of the first library, by library name, that gives one.
    /// @param name   of the class
    /// @param result takes the reasons of a failure; may be null
    /// @return owned by the manager until DestroyShader; null on failure
    virtual IShader* CreateShader(const std::string& name, Result* result) = 0;
    /// Makes a shader as the other operation does; the reasons of a failure go to the console.
    virtual IShader* CreateShader(const std::string& name) = 0;
    /// Destroys a shader; one that is not of this manager's classes is passed over.
    ///
    /// Listeners may call this, too. One that hears of shaders which are just being connected,
    /// referenced by a graph or destroyed gets it later: the shader stays whole, and its delete
    /// listeners are told, when the operation that called the listener is done. The same goes for
    /// graphs and for Shutdown.
    virtual void DestroyShader(IShader* shader) = 0;
    /// @}

    /// @name Effects
    /// @{

    /// Makes an effect for the rays that reach a surface, with the vertex stage in front of them.
    /// It has no root yet.
    /// @return owned by the manager until DestroyEffectSurface; null on failure, with a line on the
    ///         console
    virtual IEffect* CreateEffectSurface() = 0;
    /// Takes the effect off its primitives and destroys it; its shaders stay. Passes over null;
    /// others than such effects of this manager are told on the console.
    virtual void DestroyEffectSurface(IEffect* effect) = 0;
    /// Makes an effect for a frame: its root is a camera, which spawns rays. It has no root yet.
    /// @return owned by the manager until DestroyEffectRenderer; null on failure, with a line on
    ///         the console
    virtual IEffect* CreateEffectRenderer() = 0;
    /// Takes the effect off its primitives and destroys it; its shaders stay. Passes over null;
    /// others than such effects of this manager are told on the console.
    virtual void DestroyEffectRenderer(IEffect* effect) = 0;
    /// Makes an effect that runs for each ray before the program of what it reached. It has no root
    /// yet.
    /// @return owned by the manager until DestroyEffectPrefix; null on failure, with a line on the
    ///         console
    virtual IEffect* CreateEffectPrefix() = 0;
    /// Takes the effect off its primitives and destroys it; its shaders stay. Passes over null;
    /// others than such effects of this manager are told on the console.
    virtual void DestroyEffectPrefix(IEffect* effect) = 0;
    /// @}

    /// @name Outputs
    /// @{

    /// Adds a listener that is called when the first user of an output comes. The output "o_color",
    /// which is there from Init to Shutdown, is not told by its own coming and going.
    /// @return true
    virtual bool
    AddListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) = 0;
    /// Takes a listener of AddListenerAddOutput() off. @return true
    virtual bool
    RemoveListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) = 0;
    /// Adds a listener that is called when the last user of an output goes; not for "o_color" at
    /// Shutdown.
    /// @return true
    virtual bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) = 0;
    /// Takes a listener of AddListenerRemoveOutput() off. @return true
    virtual bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) = 0;

    /// Counts one more user of an output.
    /// @param type of the values that are accumulated
    /// @param name as shaders know it, such as "o_color"
    /// @return false, and no change, when the name is in use with another type
    virtual bool AcquireOutput(TypeSpecifier type, const std::string& name) = 0;
    /// Counts one user less; an unknown name answers true.
    /// @return false when the last user went and a listener answered so
    virtual bool ReleaseOutput(const std::string& name) = 0;
    /// Distinct output names in use.
    virtual int GetCountOutputs() = 0;
    /// Whether the output is in use.
    virtual bool HasOutput(const std::string& name) = 0;
    /// Calls @p visit for every output in use, by name.
    virtual bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) = 0;

    /// Sets the attachment that an output goes to, whether or not anyone uses the output. It stays
    /// until it is cleared. Compiled effects are told at once, without a compile.
    /// @param name  as shaders know the output
    /// @param index of the framebuffer's attachment
    /// @return true
    virtual bool SetOutputAttachmentIndex(const std::string& name, int index) = 0;
    /// Writes the attachment of the output @p name to @p index, 15 for one without. @return true
    virtual bool GetOutputAttachmentIndex(int& index, const std::string& name) = 0;
    /// Takes the attachment of the output @p name away. @return false when it had none
    virtual bool ClearOutputAttachmentIndex(const std::string& name) = 0;
    /// Adds a listener that is called after every change of an attachment; the answers change
    /// nothing for the caller.
    /// @return true
    virtual bool AddListenerChangeOutputIndices(FastDelegate0<bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeOutputIndices() off. @return true
    virtual bool RemoveListenerChangeOutputIndices(FastDelegate0<bool>& listener) = 0;
    /// @}

    /// @name Updates
    /// @{

    /// Updates all effects: surfaces, then prefixes, then renderers, whatever the others answer;
    /// failures are printed on the console. Call it before each frame.
    /// @return whether IEffect::Update answered true for every effect
    virtual bool Update() = 0;
    /// Updates all effects as Update() does, with the messages of the effects in @p result as well.
    /// Each failing effect has all messages so far printed.
    virtual bool Update(Result* result) = 0;
    /// @}

    /// @name Keys
    /// @{

    /// Hands out the key that was given back last, otherwise the lowest that was never in use,
    /// from 1 on.
    virtual Key CreateKey() = 0;
    /// Gives a key back. One that isn't in use is told on the console.
    virtual void DestroyKey(Key& key) = 0;
    /// @}

    /// @name What the manager works with
    /// @{

    /// The console that Init was given; null outside of Init and Shutdown.
    virtual IMgrConsole* GetConsole() const = 0;
    /// The context that Init was given; null outside of Init and Shutdown.
    virtual IOpenKLContext* GetOpenKLContext() const = 0;
    /// Timings of the manager and its effects; null outside of Init and Shutdown.
    virtual Profiler* GetProfiler() const = 0;
    /// @}
};

} // namespace Tolen::Effects
