#pragma once

#include "TolenEffects/ElementTypes.h"
#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class ClassDefinition;
class Expression;
class FunctionSelection;
class IGraph;
class IMember;
class IMgrEffects;
class IParameter;
class IShader;
class ReferencePrototypeShader;
template <class T>
class TIParentSyntax;

/// A class of a shader library: what all its shaders have in common, with the values of its static
/// inputs.
///
/// Made by its library at the first request and owned by it. Shaders of the class are made through
/// IMgrEffects::CreateShader; those that are left die with the prototype.
class TOLEN_EXPORT IPrototypeShader {
public:
    virtual ~IPrototypeShader() = default;

    /// Delete listeners hear of the prototype while it is still whole.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) = 0;
    virtual bool RemoveListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) = 0;

    /// The class's name; empty before initialisation.
    virtual std::string GetClassName() = 0;

    virtual IMgrEffects* GetMgrEffects() const = 0;

    /// The declaration, borrowed from the library; null before initialisation.
    virtual const ClassDefinition* GetDefinition() const = 0;

    /// The class as @p graph sees it: one object for each graph, counted.
    /// @return borrowed, to be given back with ReleaseReference as often as it was acquired, but
    ///         for what is left when the graph ends; null when it can't be made
    virtual ReferencePrototypeShader* AcquireReference(IGraph* graph) = 0;

    /// Gives one use of a reference back; the last one destroys it.
    /// @return false when the reference isn't one of this prototype
    virtual bool ReleaseReference(ReferencePrototypeShader* reference) = 0;

    /// The static inputs. Visits call every callback, in name order.
    /// @return whether all callbacks answered true
    virtual bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) = 0;
    /// @return borrowed; null when there is no such static input
    virtual IParameter* GetParameter(const std::string& name) = 0;

    /// The static variables that are no inputs, as above.
    virtual bool VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit) = 0;
    virtual IMember* GetMember(const std::string& name) = 0;

    /// The coords of the class with their types and transformations, in name order.
    virtual bool VisitCoords(
        FastDelegate3<TypeSpecifier, const std::string&, TransformationCoord, bool>& visit) = 0;

    /// The outputs of the class, in name order.
    virtual bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) = 0;

    /// Does nothing; values are applied through the references. @return true
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;

    /// The name of the function that gives static variables their first values: "__ctor_" and the
    /// class's name.
    virtual std::string GetConstructorStatic() = 0;

    /// Replaces `ClassName.method(...)` by a call of the static method.
    /// @param selection the expression; dies when it is replaced
    /// @param parent    the slot that holds it
    /// @param result    takes a message when the class has no such static method; may be null
    virtual bool ReplaceStatic(FunctionSelection* selection, TIParentSyntax<Expression>* parent,
                               Result* result) = 0;

    /// Whether all static inputs have what they need, and those of the classes whose static
    /// methods this one calls.
    /// @param result takes what is missing; may be null
    virtual bool IsComplete(Result* result) = 0;

    /// Sets a static input: one value, one element, or @p count elements, copied.
    /// @return false, with nothing changed, when the input is unknown or refuses the value
#define TOLEN_DECLARE_SET_STATIC(T)                                                                \
    virtual bool SetParameter(const std::string& name, ArgumentOf<T> value) = 0;                   \
    virtual bool SetParameter(const std::string& name, ArgumentOf<T> value, int index) = 0;        \
    virtual bool SetParameter(const std::string& name, const T* values, int count) = 0;
    TOLEN_DECLARE_SET_STATIC(float)
    TOLEN_DECLARE_SET_STATIC(Vector2f)
    TOLEN_DECLARE_SET_STATIC(Vector3f)
    TOLEN_DECLARE_SET_STATIC(Vector4f)
    TOLEN_DECLARE_SET_STATIC(Matrix33f)
    TOLEN_DECLARE_SET_STATIC(Matrix44f)
    TOLEN_DECLARE_SET_STATIC(KLtexture)
    TOLEN_DECLARE_SET_STATIC(KLprimitive)
    TOLEN_DECLARE_SET_STATIC(int)
    TOLEN_DECLARE_SET_STATIC(bool)

    /// The name of the interface that the class implements; empty when there is none.
    virtual std::string GetInterfaceName() = 0;

    TOLEN_DECLARE_SET_STATIC(Vector2i)
    TOLEN_DECLARE_SET_STATIC(Vector3i)
    TOLEN_DECLARE_SET_STATIC(Vector4i)
#undef TOLEN_DECLARE_SET_STATIC

    /// The same for inputs that take shaders, which are borrowed. Null disconnects.
    virtual bool SetParameter(const std::string& name, IShader* shader) = 0;
    virtual bool SetParameter(const std::string& name, IShader* shader, int index) = 0;
    virtual bool SetParameter(const std::string& name, IShader** shaders, int count) = 0;
};

} // namespace Tolen::Effects
