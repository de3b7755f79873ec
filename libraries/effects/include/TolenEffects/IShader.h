#pragma once

#include "TolenEffects/ElementTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class Result;
}

namespace Tolen::Effects {

class FunctionDefinition;
class IGraph;
class IMember;
class IMgrEffects;
class IParameter;
class IPrototypeShader;
class IReferenceShader;
class Module;

/// One instance of a class of a shader library.
///
/// A client creates it by class name with IMgrEffects::CreateShader, sets its inputs, connects it
/// to inputs of other shaders and makes it the root of an effect. It goes back with
/// IMgrEffects::DestroyShader and dies at the latest with its prototype. Used from one thread.
///
/// A graph of the shader's own lets other graphs of the same kind link its code instead of copying
/// it. There is at most one of each kind; the shader owns it. Kind 0 is for rays, 2 for frames, 3
/// for ray prefixes. A graph that DestroyGraphKind0 and its siblings end from a listener may stay
/// until the operation that called the listener returns; see IMgrEffects::DestroyShader.
///
/// Every operation of this base does nothing and answers false, null, 0 or an empty text, so that a
/// class answers only what it implements. Visits call every callback, in name order, and answer
/// whether all of them answered true. A null Result is legal everywhere. Operations that set an
/// input answer what its listeners answer once it is set, as those of IParameter do.
class TOLEN_EXPORT IShader {
public:
    /// What kind of object stands behind the interface.
    enum shaderType {
        kShaderType_Undefined = 0, ///< none of its own, such as a view of another shader
        kShaderType_Shader = 1,    ///< an instance made by a prototype
    };

    virtual ~IShader() = default;

    /// Adds a listener that is called when the shader goes, while it is still whole.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IShader*, bool>& listener);
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener);

    /// @name Class and code
    /// @{

    /// Adds the instance's code, with all names made unique, to @p into.
    /// @return false when the shader is incomplete or its code can't be built
    virtual bool CollectShader(Module* into);

    /// Adds the prototype of one method, by its declared name, under its mangled name, to @p into.
    /// @return false for an unknown method
    virtual bool CollectDeclarationMethod(Module* into, const std::string& method);

    /// The interface that the class implements; empty when there is none.
    virtual std::string GetInterfaceName();
    /// The name of the class; empty once the shader is gone.
    virtual std::string GetClassName();
    /// The text of the instance's key, such as "_k1a", with which its generated names end.
    virtual std::string GetKeyName();

    /// Whether the class declares a method of this name that is not static.
    virtual bool HasMethod(const std::string& method);
    /// The name of a method in generated code; "MethodNotFound" for an unknown one.
    virtual std::string GetMethodNameMangled(const std::string& method);

    /// Whether generated code has a function that gives the members their first values.
    virtual bool HasConstructor();
    /// The name of the function that gives the members their first values.
    virtual std::string GetConstructorName();

    /// Adds a listener that is called after every change after which generated code is no longer
    /// right.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IShader*, bool>& listener);
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IShader*, bool>& listener);

    /// The class that the shader is an instance of.
    virtual IPrototypeShader* GetPrototype();
    /// The manager that owns the shader.
    virtual IMgrEffects* GetMgrEffects();
    /// @}

    /// @name A graph of the shader's own
    /// Kind 0 is for rays, 2 for frames, 3 for ray prefixes.
    /// @{

#define TOLEN_DECLARE_GRAPH_KIND(N)                                                                \
    /** Adds a listener that is called when this graph is made for the shader. @return true */     \
    virtual bool AddListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>& listener);  \
    /** Takes off a listener to the making of this graph. @return true */                          \
    virtual bool RemoveListenerCreateGraphKind##N(                                                 \
        FastDelegate2<IShader*, IGraph*, bool>& listener);                                         \
    /** Makes the graph of the shader's own; a second time it gives the one that is there.         \
        @return borrowed; null when it can't be made */                                            \
    virtual IGraph* CreateGraphKind##N();                                                          \
    /** The graph of the shader's own, borrowed; null when there is none. */                       \
    virtual IGraph* GetGraphKind##N();                                                             \
    /** Ends that graph, if there is one; others copy the shader's code again. @return true */     \
    virtual bool DestroyGraphKind##N();
    TOLEN_DECLARE_GRAPH_KIND(0)
    TOLEN_DECLARE_GRAPH_KIND(2)
    TOLEN_DECLARE_GRAPH_KIND(3)
#undef TOLEN_DECLARE_GRAPH_KIND
    /// @}

    /// @name In graphs
    /// @{

    /// The shader as @p graph sees it: one object for each graph, counted.
    /// What is not given back ends with the graph: the reference tells its delete listeners and is
    /// gone, however often it was created.
    /// @return borrowed, to be given back as often as it was created; null on failure, which still
    ///         counts as one use of the graph's entry, and for a graph that is ending
    virtual IReferenceShader* CreateReference(IGraph* graph);
    /// What CreateReference() has made for @p graph, without counting.
    /// @return null when there is none
    virtual IReferenceShader* GetReference(IGraph* graph);
    /// Gives one use back; the last one destroys the reference.
    /// @return false when the reference isn't one of this shader
    virtual bool ReleaseReference(IReferenceShader* reference);
    /// @}

    /// @name Inputs and variables
    /// @{

    /// An input. @return borrowed; null when there is none of this name
    virtual IParameter* GetParameter(const std::string& name);
    /// Calls @p visit for every input by name. @return whether all calls answered true
    virtual bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit);

    /// A variable that is no input. @return borrowed; null when there is none of this name
    virtual IMember* GetMember(const std::string& name);
    /// Calls @p visit for every variable that is no input, by name.
    /// @return whether all calls answered true
    virtual bool VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit);

    /// A coord: an input whose value is the name of a vertex attribute.
    /// @return borrowed; null when there is none of this name
    virtual IParameter* GetCoord(const std::string& name);
    /// Calls @p visit for every coord by name. @return whether all calls answered true
    virtual bool VisitCoords(FastDelegate2<const std::string&, IParameter*, bool>& visit);

    /// Names the vertex attribute that a coord reads.
    /// @param result takes the message of a failure; may be null
    /// @param name   the coord
    /// @param value  the attribute, as shaders know it: "Normal" is what primitives have as
    ///               "a_Normal"
    /// @return false when the shader has no such coord
    virtual bool SetCoord(Result* result, const std::string& name, const std::string& value);
    /// @}

    /// @name State
    /// @{

    /// Calls @p visit for every method of the instance as it stands in generated code, under its
    /// mangled name.
    /// @return whether all calls answered true; false also when the shader is incomplete or its
    ///         code can't be built
    virtual bool VisitMethods(FastDelegate1<const FunctionDefinition*, bool>& visit);

    /// Whether everything that generated code needs is set and connected.
    /// @param result takes what is missing first; may be null
    virtual bool IsComplete(Result* result);

    /// Names the shader for messages; it starts with its class's name. @return true
    virtual bool SetName(const std::string& name);
    /// The name that SetName has set.
    virtual const std::string& GetName();
    /// @}

    /// @name Values of inputs
    /// For each of the thirteen types of elements.
    /// @{

#define TOLEN_DECLARE_SET_PARAMETER(T)                                                             \
    /** Sets the input @p name to one value. There is no conversion.                               \
        @param result takes the message of a failure, which goes to the console as well            \
        @param name   of an input that is no array                                                 \
        @param value  copied                                                                       \
        @return false, with nothing changed, when the input is unknown or has another type */      \
    virtual bool SetParameter(Result* result, const std::string& name, ArgumentOf<T> value);       \
    /** Sets one element of the input @p name. There is no conversion.                             \
        @param result takes the message of a failure, which goes to the console as well            \
        @param name   of an input that is an array                                                 \
        @param value  copied                                                                       \
        @param index  from 0, below the length                                                     \
        @return false, with nothing changed, when the input is unknown, has another type or has no \
                such element */                                                                    \
    virtual bool SetParameter(Result* result, const std::string& name, ArgumentOf<T> value,        \
                              int index);                                                          \
    /** Sets the first elements of the input @p name. There is no conversion.                      \
        @param result takes the message of a failure, which goes to the console as well            \
        @param name   of an input that is an array                                                 \
        @param values the elements, copied                                                         \
        @param count  their number, at most the length                                             \
        @return false, with nothing changed, when the input is unknown, has another type or fewer  \
                elements */                                                                        \
    virtual bool SetParameter(Result* result, const std::string& name, const T* values, int count);
    TOLEN_DECLARE_SET_PARAMETER(bool)
    TOLEN_DECLARE_SET_PARAMETER(int)
    TOLEN_DECLARE_SET_PARAMETER(float)
    TOLEN_DECLARE_SET_PARAMETER(Vector2f)
    TOLEN_DECLARE_SET_PARAMETER(Vector3f)
    TOLEN_DECLARE_SET_PARAMETER(Vector4f)
    TOLEN_DECLARE_SET_PARAMETER(Vector2i)
    TOLEN_DECLARE_SET_PARAMETER(Vector3i)
    TOLEN_DECLARE_SET_PARAMETER(Vector4i)
    TOLEN_DECLARE_SET_PARAMETER(Matrix33f)
    TOLEN_DECLARE_SET_PARAMETER(Matrix44f)
    TOLEN_DECLARE_SET_PARAMETER(KLtexture)
    TOLEN_DECLARE_SET_PARAMETER(KLprimitive)
#undef TOLEN_DECLARE_SET_PARAMETER
    /// @}

    /// @name Connections
    /// @{

    /// Connects a shader to the input @p name.
    /// @param result takes the messages of a failure, which go to the console as well
    /// @param name   of an input that takes shaders
    /// @param shader borrowed; null disconnects
    /// @return false, with nothing changed, when the input is unknown or the shader doesn't fit: it
    ///         has another interface or class than the input asks for, another manager, or depends
    ///         on this shader
    virtual bool SetParameter(Result* result, const std::string& name, IShader* shader);
    /// Connects a shader to one cell of the input @p name.
    /// @param result takes the messages of a failure, which go to the console as well
    /// @param name   of an input that is an array of shaders
    /// @param shader borrowed; null disconnects
    /// @param index  from 0, below the length
    /// @return false, with nothing changed, for an index outside the length, and as for one shader
    virtual bool SetParameter(Result* result, const std::string& name, IShader* shader, int index);
    /// Connects shaders to the first cells of the input @p name.
    /// @param result  takes the messages of a failure, which go to the console as well
    /// @param name    of an input that is an array of shaders
    /// @param shaders borrowed; null ones disconnect
    /// @param count   their number, at most the length
    /// @return false as for one shader, and when the array is shorter
    virtual bool SetParameter(Result* result, const std::string& name, IShader** shaders,
                              int count);
    /// @}

    /// What stands behind the interface.
    virtual shaderType GetShaderType();
};

} // namespace Tolen::Effects
