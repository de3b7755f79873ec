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
        TypeSpecifier type;
        std::string name;
        TransformationCoord transformation; ///< how the vertex stage moves it to world space
    };

    virtual ~IGraph() = default;

    /// Names the graph, and its API shader when there is one, for messages.
    virtual bool SetName(const std::string& name) = 0;
    virtual std::string GetName() = 0;
    /// The name followed by the text of the graph's key, unique in the manager.
    virtual std::string GetNameMangled() = 0;

    /// The root; null once it is gone.
    virtual IShader* GetShader() const = 0;
    /// What stands for the root in this graph; null once the root is gone.
    virtual IReferenceShader* GetReferenceShader() const = 0;

    /// Makes the relay through which an effect hears of this graph.
    /// @return owned by the graph; null on failure
    virtual IReferenceGraph* CreateReference(IEffect* effect) = 0;
    /// Destroys a relay; unknown ones are passed over.
    virtual void DestroyReference(IReferenceGraph* reference) = 0;

    /// Called first thing in the shutdown of the graph.
    virtual bool AddListenerDelete(FastDelegate1<IGraph*, bool>& listener) = 0;
    virtual bool RemoveListenerDelete(FastDelegate1<IGraph*, bool>& listener) = 0;

    /// Enters a class or an interface that is used in this graph. Removing one that isn't there
    /// prints a line and answers false.
    virtual bool AddReferencePrototypeShader(IPrototypeShader* prototype,
                                             ReferencePrototypeShader* reference) = 0;
    virtual bool RemoveReferencePrototypeShader(IPrototypeShader* prototype) = 0;
    virtual bool AddReferencePrototypeInterface(IPrototypeInterface* prototype,
                                                ReferencePrototypeInterface* reference) = 0;
    virtual bool RemoveReferencePrototypeInterface(IPrototypeInterface* prototype) = 0;

    /// Delegates that add code to the module of a compile.
    virtual bool AddDelegateCollectShader(FastDelegate1<Module*, bool>& collect) = 0;
    virtual bool RemoveDelegateCollectShader(FastDelegate1<Module*, bool>& collect) = 0;

    /// Counts one more use of an attribute.
    /// @return false, and no change, when the name is in use with another type
    virtual bool AcquireAttribute(TypeSpecifier type, const std::string& name,
                                  TransformationCoord transformation) = 0;
    /// Counts one use less; unknown names answer true. @return false when a listener says so
    virtual bool ReleaseAttribute(const std::string& name) = 0;
    /// Distinct attribute names in use.
    virtual int GetCountAttributes() = 0;
    virtual bool AddListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    virtual bool RemoveListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    virtual bool AddListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    virtual bool RemoveListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) = 0;
    /// Calls @p visit for every attribute by name. @return whether all answered true
    virtual bool VisitAttributes(FastDelegate1<Attribute, bool>& visit) = 0;

    /// Counts one more use of an output, here and in the manager.
    /// @return false, and no change, when the name is in use with another type
    virtual bool AcquireOutput(TypeSpecifier type, const std::string& name) = 0;
    virtual bool ReleaseOutput(const std::string& name) = 0;
    /// Distinct output names in use.
    virtual int GetCountOutputs() = 0;
    /// The outputs that the text of the last good compile writes; empty while not compiled.
    virtual const std::set<std::string>& GetOutputsUsed() const = 0;
    virtual bool AddListenerAddOutput(
        FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) = 0;
    virtual bool RemoveListenerAddOutput(
        FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) = 0;
    virtual bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) = 0;
    virtual bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) = 0;

    /// Merges, rewrites and prints all code of the graph and has the API compile the text.
    /// @return false with the reasons in @p result; what was compiled before stays until the new
    ///         text has been printed
    virtual bool Compile(Result* result) = 0;
    /// Called after every good compile; the answers are not looked at.
    virtual bool AddListenerCompile(FastDelegate1<IGraph*, bool>& listener) = 0;
    virtual bool RemoveListenerCompile(FastDelegate1<IGraph*, bool>& listener) = 0;
    /// Whether everything is there that a compile needs.
    virtual bool IsComplete(Result* result) = 0;
    /// Whether the API shader is that of the present structure.
    virtual bool IsCompiled() = 0;

    /// The functions of the graph's text that run the static constructors of its classes, once for
    /// each, and the constructor of the root.
    virtual bool HasConstructorStatic() const = 0;
    virtual std::string GetConstructorStatic() const = 0;
    /// Adds the prototype of that function to @p module.
    virtual bool CollectDeclarationConstructorStatic(Module* module) const = 0;
    virtual bool HasConstructor() const = 0;
    virtual std::string GetConstructor() const = 0;
    virtual bool CollectDeclarationConstructor(Module* module) const = 0;

    /// Delegates that write values in a full apply.
    virtual bool AddDelegateApply(DelegateUpdate& apply) = 0;
    virtual bool RemoveDelegateApply(DelegateUpdate& apply) = 0;
    /// Writes all values on @p primitive. @return false at the first write that fails
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) = 0;
    /// Passes the write of a changed value on to the value listeners; nothing is kept. Without
    /// effect while the graph is not compiled, since a full apply follows the next compile.
    virtual bool AddDelegateUpdate(DelegateUpdate& update) = 0;

    virtual bool AddListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) = 0;
    virtual bool
    RemoveListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) = 0;
    /// Called when what was compiled has become stale.
    virtual bool AddListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) = 0;

    virtual IMgrEffects* GetMgrEffects() = 0;
    /// The API shader of the last compile; null before the first.
    virtual IKLShader* GetKLShader() = 0;
    virtual IKLShader::Type GetType() = 0;
};

} // namespace Tolen::Effects
