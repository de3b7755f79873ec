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
/// A graph that DestroyGraphKind0 and its siblings end from a listener may stay until the operation
/// that called the listener returns; see IMgrEffects::DestroyShader.
///
/// Every operation of this base does nothing and answers false, null, 0 or an empty text, so that a
/// class answers only what it implements. Visits call every callback, in name order, and answer
/// whether all of them answered true. A null Result is legal everywhere.
class TOLEN_EXPORT IShader {
public:
    /// What kind of object stands behind the interface.
    enum shaderType {
        kShaderType_Undefined = 0, ///< none of its own, such as a view of another shader
        kShaderType_Shader = 1,    ///< an instance made by a prototype
    };

    virtual ~IShader() = default;

    /// Delete listeners hear of the shader while it is still whole. @return true
    virtual bool AddListenerDelete(FastDelegate1<IShader*, bool>& listener);
    virtual bool RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener);

    /// Adds the instance's code, with all names made unique, to @p into.
    /// @return false when the shader is incomplete or its code can't be built
    virtual bool CollectShader(Module* into);

    /// Adds the prototype of one method, by its declared name, under its mangled name.
    virtual bool CollectDeclarationMethod(Module* into, const std::string& method);

    /// The interface that the class implements; empty when there is none.
    virtual std::string GetInterfaceName();
    virtual std::string GetClassName();
    /// The text of the instance's key, such as "_k1a", with which its generated names end.
    virtual std::string GetKeyName();

    virtual bool HasMethod(const std::string& method);
    /// @return the name in generated code; "MethodNotFound" for an unknown method
    virtual std::string GetMethodNameMangled(const std::string& method);

    /// Whether generated code has a function that gives the members their first values.
    virtual bool HasConstructor();
    virtual std::string GetConstructorName();

    /// Structure listeners hear of every change after which generated code is no longer right.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IShader*, bool>& listener);
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IShader*, bool>& listener);

    virtual IPrototypeShader* GetPrototype();
    virtual IMgrEffects* GetMgrEffects();

    /// A graph of the shader's own lets other graphs of the same kind link its code instead of
    /// copying it. There is at most one of each kind; the shader owns it. Creating it a second time
    /// gives the graph that is there. Kind 0 is for rays, 2 for frames, 3 for ray prefixes.
    /// @return borrowed; null when there is none or it can't be made
#define TOLEN_DECLARE_GRAPH_KIND(N)                                                                \
    virtual bool AddListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>& listener);  \
    virtual bool RemoveListenerCreateGraphKind##N(                                                 \
        FastDelegate2<IShader*, IGraph*, bool>& listener);                                         \
    virtual IGraph* CreateGraphKind##N();                                                          \
    virtual IGraph* GetGraphKind##N();                                                             \
    virtual bool DestroyGraphKind##N();
    TOLEN_DECLARE_GRAPH_KIND(0)
    TOLEN_DECLARE_GRAPH_KIND(2)
    TOLEN_DECLARE_GRAPH_KIND(3)
#undef TOLEN_DECLARE_GRAPH_KIND

    /// The shader as @p graph sees it: one object for each graph, counted.
    /// What is not given back ends with the graph: the reference tells its delete listeners and is
    /// gone, however often it was created.
    /// @return borrowed, to be given back as often as it was created; null on failure, which still
    ///         counts as one use of the graph's entry, and for a graph that is ending
    virtual IReferenceShader* CreateReference(IGraph* graph);
    /// The same object without counting. @return null when there is none
    virtual IReferenceShader* GetReference(IGraph* graph);
    /// Gives one use back; the last one destroys the reference.
    /// @return false when the reference isn't one of this shader
    virtual bool ReleaseReference(IReferenceShader* reference);

    /// The inputs. @return borrowed; null when there is none of this name
    virtual IParameter* GetParameter(const std::string& name);
    virtual bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit);

    /// The variables that are no inputs.
    virtual IMember* GetMember(const std::string& name);
    virtual bool VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit);

    /// The coords: inputs whose value is the name of a vertex attribute.
    virtual IParameter* GetCoord(const std::string& name);
    virtual bool VisitCoords(FastDelegate2<const std::string&, IParameter*, bool>& visit);

    /// Names the vertex attribute that coord @p name reads.
    /// @return false when the shader has no such coord
    virtual bool SetCoord(Result* result, const std::string& name, const std::string& value);

    /// The methods of the instance as they stand in generated code, under their mangled names.
    /// @return also false when the shader is incomplete or its code can't be built
    virtual bool VisitMethods(FastDelegate1<const FunctionDefinition*, bool>& visit);

    /// Whether everything that generated code needs is set and connected.
    /// @param result takes what is missing first
    virtual bool IsComplete(Result* result);

    /// Names the shader for messages; it starts with its class's name. @return true
    virtual bool SetName(const std::string& name);
    virtual const std::string& GetName();

    /// Sets input @p name: one value, one element of an array, or the first @p count elements,
    /// copied.
    /// @param result takes the messages of a failure
    /// @return false, with nothing changed, when the input is unknown or refuses the value's type,
    ///         the index or the count
#define TOLEN_DECLARE_SET_PARAMETER(T)                                                             \
    virtual bool SetParameter(Result* result, const std::string& name, ArgumentOf<T> value);       \
    virtual bool SetParameter(Result* result, const std::string& name, ArgumentOf<T> value,        \
                              int index);                                                          \
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

    /// Connects shaders, borrowed, to input @p name. Null disconnects.
    virtual bool SetParameter(Result* result, const std::string& name, IShader* shader);
    virtual bool SetParameter(Result* result, const std::string& name, IShader* shader, int index);
    virtual bool SetParameter(Result* result, const std::string& name, IShader** shaders,
                              int count);

    virtual shaderType GetShaderType();
};

} // namespace Tolen::Effects
