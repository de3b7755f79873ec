#pragma once

#include "TolenEffects/ActionUpdate.h"
#include "TolenEffects/SyntaxTypes.h"

#include "TolenOpenKLWrapper/IKLShader.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <set>
#include <string>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IEffect;
class IMgrEffects;
class IPrototypeInterface;
class IPrototypeShader;
class IReferenceGraph;
class IReferenceShader;
class IShader;
class Module;
class ReferencePrototypeInterface;
class ReferencePrototypeShader;

/// The compile unit of one shader stage: a root shader, everything that it reaches through its
/// interface inputs, and the API shader that the last compile made of it.
///
/// A graph counts the vertex attributes and outputs that its shaders ask for, and it is the bus on
/// which changes of values and of structure travel up to its effect. It owns no shader. All
/// operations run on the client's thread. A null `Result*` is legal everywhere.
///
/// Listeners are called in an order that is the same in every run, up to the first that answers
/// false; adding one twice has no effect.
class TOLEN_EXPORT IGraph {
public:
    /// A vertex attribute that the shaders of a graph read.
    struct Attribute {
        TypeSpecifier type;                 ///< of one vertex
        std::string name;                   ///< as shaders know it
        TransformationCoord transformation; ///< how the vertex stage moves it to world space
    };

    virtual ~IGraph() = default;

    /// @name Name and root
    /// @{

    /// Names the graph, and its API shader when there is one, for messages.
    /// @return true
    virtual bool SetName(const std::string& name) = 0;
    /// The name that SetName has set; that of the effect or shader that made the graph before.
    virtual std::string GetName() = 0;
    /// The name followed by the text of the graph's key, unique in the manager.
    virtual std::string GetNameMangled() = 0;

    /// The root; null once it is gone.
    virtual IShader* GetShader() const = 0;
    /// What stands for the root in this graph; null once the root is gone.
    virtual IReferenceShader* GetReferenceShader() const = 0;
    /// @}

    /// @name Users
    /// @{

    /// Makes the relay through which an effect hears of this graph.
    /// @param effect whoever is to hear; it does so by the relay's listeners
    /// @return owned by the graph; null on failure
    virtual IReferenceGraph* CreateReference(IEffect* effect) = 0;
    /// Destroys a relay; unknown ones are passed over.
    virtual void DestroyReference(IReferenceGraph* reference) = 0;

    /// Adds a listener that is called first thing in the shutdown of the graph, while it is whole.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// @}

    /// @name What the text is made of
    /// @{

    /// Enters a class that is used in this graph, whose changes of structure the graph then
    /// follows.
    /// @param prototype, reference borrowed until they are removed
    /// @return false when the reference takes no listeners
    virtual bool AddReferencePrototypeShader(IPrototypeShader* prototype,
                                             ReferencePrototypeShader* reference) = 0;
    /// Removes a class. @return false for one that isn't there, with a line on the console
    virtual bool RemoveReferencePrototypeShader(IPrototypeShader* prototype) = 0;
    /// Enters an interface that is used in this graph.
    /// @param prototype, reference borrowed until they are removed
    /// @return true
    virtual bool AddReferencePrototypeInterface(IPrototypeInterface* prototype,
                                                ReferencePrototypeInterface* reference) = 0;
    /// Removes an interface. @return false for one that isn't there, with a line on the console
    virtual bool RemoveReferencePrototypeInterface(IPrototypeInterface* prototype) = 0;

    /// Adds a delegate that adds code to the module of each compile. A delegate that answers false
    /// fails the compile.
    /// @return true
    virtual bool AddDelegateCollectShader(FastDelegate1<Module*, bool>& collect) = 0;
    /// Takes a delegate of AddDelegateCollectShader() off. @return true
    virtual bool RemoveDelegateCollectShader(FastDelegate1<Module*, bool>& collect) = 0;
    /// @}

    /// @name Vertex attributes
    /// @{

    /// Counts one more use of an attribute. The first one makes the graph stale and tells the
    /// listeners.
    /// @param type           of one vertex
    /// @param name           as shaders know it
    /// @param transformation how the vertex stage moves it; that of the first use counts
    /// @return false, and no change, when the name is in use with another type, with a line on the
    ///         console
    virtual bool AcquireAttribute(TypeSpecifier type, const std::string& name,
                                  TransformationCoord transformation) = 0;
    /// Counts one use less; unknown names answer true. @return false when a listener says so
    virtual bool ReleaseAttribute(const std::string& name) = 0;
    /// Distinct attribute names in use.
    virtual int GetCountAttributes() = 0;
    /// Adds a listener that is called when the first use of an attribute comes.
    /// @return true
    virtual bool AddListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    /// Takes a listener of AddListenerAddAttribute() off. @return true
    virtual bool RemoveListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    /// Adds a listener that is called when the last use of an attribute goes.
    /// @return true
    virtual bool AddListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    /// Takes a listener of AddListenerRemoveAttribute() off. @return true
    virtual bool RemoveListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    /// Calls @p visit for every attribute by name. @return whether all answered true
    virtual bool VisitAttributes(FastDelegate1<Attribute, bool>& visit) = 0;
    /// @}

    /// @name Outputs
    /// @{

    /// Counts one more use of an output, here and in the manager.
    /// @return false, and no change of the counts, when the name is in use with another type; the
    ///         graph is stale all the same
    virtual bool AcquireOutput(TypeSpecifier type, const std::string& name) = 0;
    /// Counts one use less, here and in the manager; unknown names answer true.
    /// @return false when a listener says so
    virtual bool ReleaseOutput(const std::string& name) = 0;
    /// Distinct output names in use.
    virtual int GetCountOutputs() = 0;
    /// The outputs that the text of the last good compile writes; empty while not compiled.
    virtual const std::set<std::string>& GetOutputsUsed() const = 0;
    /// Adds a listener that is called when the first use of an output comes.
    /// @return true
    virtual bool
    AddListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) = 0;
    /// Takes a listener of AddListenerAddOutput() off. @return true
    virtual bool
    RemoveListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) = 0;
    /// Adds a listener that is called when the last use of an output goes.
    /// @return true
    virtual bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) = 0;
    /// Takes a listener of AddListenerRemoveOutput() off. @return true
    virtual bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) = 0;
    /// @}

    /// @name Compiles
    /// @{

    /// Merges, rewrites and prints all code of the graph and has the API compile the text. Then
    /// calls the compile listeners.
    /// @param result takes the reasons of a failure; null drops them
    /// @return false on failure; what was compiled before stays until the new text has been printed
    virtual bool Compile(Result* result) = 0;
    /// Adds a listener that is called after every good compile; the answers are not looked at.
    /// @return true
    virtual bool AddListenerCompile(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// Takes a listener of AddListenerCompile() off. @return true
    virtual bool RemoveListenerCompile(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// Whether everything is there that a compile needs.
    /// @param result takes what is missing first; null drops it
    virtual bool IsComplete(Result* result) = 0;
    /// Whether the API shader is that of the present structure.
    virtual bool IsCompiled() = 0;

    /// Whether the graph's text has a function that runs the static constructors of its classes,
    /// once for each.
    virtual bool HasConstructorStatic() const = 0;
    /// The name of the function that runs the static constructors.
    virtual std::string GetConstructorStatic() const = 0;
    /// Adds the prototype of the function that runs the static constructors to @p module.
    /// @return true
    virtual bool CollectDeclarationConstructorStatic(Module* module) const = 0;
    /// Whether the graph's text has a function that runs the constructor of the root.
    virtual bool HasConstructor() const = 0;
    /// The name of the function that runs the constructor of the root.
    virtual std::string GetConstructor() const = 0;
    /// Adds the prototype of the function that runs the constructor of the root to @p module.
    /// @return true
    virtual bool CollectDeclarationConstructor(Module* module) const = 0;
    /// @}

    /// @name Values and changes
    /// @{

    /// Adds a delegate that writes values in a full apply.
    /// @return true
    virtual bool AddDelegateApply(DelegateUpdate& apply) = 0;
    /// Takes a delegate of AddDelegateApply() off. @return true
    virtual bool RemoveDelegateApply(DelegateUpdate& apply) = 0;
    /// Writes all values on @p primitive, which is bound for the time of it.
    /// @param primitive takes the values
    /// @param program   tells where they go
    /// @param result    not used; what fails is told on the console
    /// @return false at the first write that fails
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) = 0;
    /// Passes the write of a changed value on to the value listeners; nothing is kept. Without
    /// effect while the graph is not compiled, since a full apply follows the next compile.
    /// @return what the listeners answer; true while the graph is not compiled
    virtual bool AddDelegateUpdate(DelegateUpdate& update) = 0;

    /// Adds a listener that is called with the write of a value that has changed.
    /// @return true
    virtual bool
    AddListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeValue() off. @return true
    virtual bool
    RemoveListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) = 0;
    /// Adds a listener that is called when what was compiled has become stale.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// @}

    /// @name What the graph works with
    /// @{

    /// The manager of the graph's shaders; null once the graph is shut down.
    virtual IMgrEffects* GetMgrEffects() = 0;
    /// The API shader of the last compile, owned by the graph; null before the first.
    virtual IKLShader* GetKLShader() = 0;
    /// The stage that the graph is for.
    virtual IKLShader::Type GetType() = 0;
    /// @}
};

} // namespace Tolen::Effects
