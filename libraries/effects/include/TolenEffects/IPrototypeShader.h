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

    /// Adds a listener that is called when the class goes, while it is still whole.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) = 0;
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) = 0;

    /// The class's name; empty before initialisation.
    virtual std::string GetClassName() = 0;

    /// The manager whose library declares the class; null before initialisation and after the
    /// shutdown.
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

    /// Calls @p visit for every static input by name. @return whether all calls answered true
    virtual bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) = 0;
    /// A static input. @return borrowed; null when there is none of this name
    virtual IParameter* GetParameter(const std::string& name) = 0;

    /// Calls @p visit for every static variable that is no input, by name.
    /// @return whether all calls answered true
    virtual bool VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit) = 0;
    /// A static variable that is no input. @return borrowed; null when there is none of this name
    virtual IMember* GetMember(const std::string& name) = 0;

    /// Calls @p visit for every coord of the class with its type and transformation, by name.
    /// @return whether all calls answered true
    virtual bool VisitCoords(
        FastDelegate3<TypeSpecifier, const std::string&, TransformationCoord, bool>& visit) = 0;

    /// Calls @p visit for every output of the class, by name.
    /// @return whether all calls answered true
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

#define TOLEN_DECLARE_SET_STATIC(T)                                                                \
    /** Sets the static input @p name to one value. There is no conversion.                        \
        @return false, with nothing changed, when the input has another type or is unknown, which  \
                the console is told */                                                             \
    virtual bool SetParameter(const std::string& name, ArgumentOf<T> value) = 0;                   \
    /** Sets the element @p index of the static input @p name. There is no conversion.             \
        @return false, with nothing changed, when the input has another type or no such element,   \
                or is unknown, which the console is told */                                        \
    virtual bool SetParameter(const std::string& name, ArgumentOf<T> value, int index) = 0;        \
    /** Sets the first @p count elements of the static input @p name, copied.                      \
        @return false, with nothing changed, when the input is unknown, has another type or fewer  \
                elements */                                                                        \
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

    /// Connects a shader, borrowed, to the static input @p name; null disconnects.
    /// @return false, with nothing changed, when the input is unknown or refuses the shader
    virtual bool SetParameter(const std::string& name, IShader* shader) = 0;
    /// Connects a shader, borrowed, to the cell @p index of the static input @p name; null
    /// disconnects.
    /// @return false, with nothing changed, when the input is unknown or refuses the shader or the
    ///         index
    virtual bool SetParameter(const std::string& name, IShader* shader, int index) = 0;
    /// Connects @p count shaders, borrowed, to the first cells of the static input @p name.
    /// @return false when the input is unknown, refuses a shader or has fewer cells
    virtual bool SetParameter(const std::string& name, IShader** shaders, int count) = 0;
};

} // namespace Tolen::Effects
