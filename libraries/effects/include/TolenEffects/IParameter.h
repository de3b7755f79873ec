#pragma once

#include "TolenEffects/ElementTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class CompoundStatement;
class IGraph;
class IReferenceParameter;
class IShader;
class Module;
class Visitor;

/// One input of a shader: a value or an array of values, the name of a vertex attribute, or another
/// shader.
///
/// Made and owned by its shader; used on the client's thread. An operation that a kind of parameter
/// does not have does nothing and answers false. Values are copied in and out. A Set or SetLength
/// that changes something calls the listeners before it returns and answers what they answer: false
/// when one of them answered false, with the change in place all the same. Listeners are called up
/// to the first that answers false; adding one twice has no effect.
class TOLEN_EXPORT IParameter {
public:
    /// What an input holds.
    enum ParameterClass {
        kClass_Undefined = 0, ///< none of the others
        kClass_Value = 1,     ///< a value of a built-in type, or an array of them
        kClass_Coord = 2,     ///< the name of a vertex attribute
        kClass_Interface = 3, ///< another shader, or an array of shaders
    };

    IParameter() = default;
    virtual ~IParameter() = default;
    IParameter(const IParameter&) = delete;
    IParameter& operator=(const IParameter&) = delete;

    /// @name Listeners
    /// @{

    /// Adds a listener that is called after a change of the value, which costs a write at the next
    /// apply. It doesn't hear of the length of an array of values.
    /// @return true
    virtual bool AddListenerChangeValue(FastDelegate1<IParameter*, bool>& listener);
    /// Takes a listener of AddListenerChangeValue() off. @return true
    virtual bool RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>& listener);
    /// Adds a listener that is called after a change for which the shader's code has to be made
    /// again.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener);
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener);
    /// @}

    /// @name Code
    /// @{

    /// Makes what stands for this parameter in @p graph.
    /// @return owned by the parameter until DestroyReference; null on failure
    virtual IReferenceParameter* CreateReference(IGraph* graph);
    /// Destroys what CreateReference() has made. @return true
    virtual bool DestroyReference(IReferenceParameter* reference);

    /// Adds to @p body the statements that the constructor of the instance runs for this parameter.
    /// @return false when they can't be made
    virtual bool CollectConstructor(CompoundStatement* body);
    /// Adds to @p module what the code declares for this parameter.
    /// @return false when it can't be made
    virtual bool CollectShader(Module* module);
    /// Calls @p visit with each visitor that rewrites references to this parameter, and with the
    /// class of node that it works on. @return false when @p visit answered false
    virtual bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit);

    /// Whether everything is set that code needs; says what is missing in @p result, if not null.
    virtual bool IsComplete(Result* result) const;
    /// @}

    /// @name Declaration and state
    /// @{

    /// What the input holds.
    virtual ParameterClass GetClass();
    /// The type of one element; `kType_UserDefined` for a shader.
    virtual TypeSpecifier GetTypeSpecifier();
    /// The name of the type of one element in the shading language, or of its interface or class.
    virtual std::string GetType();
    /// The name as declared.
    virtual std::string GetName();

    /// Whether the input is declared as an array.
    virtual bool IsArray() const;
    /// Elements; 1 where there is no array.
    virtual int GetLength() const;
    /// Changes the number of elements; the first ones stay, and new ones are made from the
    /// declaration's initializer where that is one for all elements.
    /// @return false for inputs that are no arrays, when the length is fixed, which the console is
    ///         told, and when a listener says so
    virtual bool SetLength(int length);
    /// Whether the length can be set: of arrays that are declared without one.
    virtual bool IsResizable() const;

    /// Whether the shader in the cell @p index was made from the declaration's default.
    virtual bool IsDefault(int index) const;
    /// Whether the shader in any cell was made from the declaration's default.
    virtual bool IsDefault() const;

    /// Writes the element @p index into @p out as text.
    /// @return false for an index outside the length
    virtual bool GetAsString(std::string& out, int index) const;
    /// Writes the first element into @p out as text.
    virtual bool GetAsString(std::string& out) const;
    /// @}

    /// @name Setting
    /// @{

    /// Sets the name of the vertex attribute that a coord reads, by which shaders know it.
    /// @return false for inputs that are no coords
    virtual bool Set(const std::string& value);

    /// Connects @p count shaders, borrowed, from the first cell on; null cells are disconnected.
    /// Default shaders in the other cells go.
    /// @return false, with no change, for a shader of another interface or class, of another
    ///         manager, or one that depends on this input's shader; false with a line on the
    ///         console when there are more shaders than cells
    virtual bool Set(IShader** values, int count);
    /// Connects a shader, borrowed, in the cell @p index; null disconnects. A default shader that
    /// was there is destroyed.
    /// @return false, with no change, for an index outside the length, and as for several shaders
    virtual bool Set(IShader* value, int index);
    /// Connects a shader to an input that is no array; null disconnects. @return as for a cell
    virtual bool Set(IShader* value);

#define TOLEN_DECLARE_SET(specifier, T, name, bytes)                                               \
    /** Sets the first @p count elements, copied. There is no conversion.                          \
        @return false, with no change, for another type than the declared one and for a count      \
                above the length; what listeners answer otherwise */                               \
    virtual bool Set(const T* values, int count);                                                  \
    /** Sets the element @p index. There is no conversion.                                         \
        @return false, with no change, for another type than the declared one and for an index     \
                outside the length; what listeners answer otherwise */                             \
    virtual bool Set(ArgumentOf<T> value, int index);                                              \
    /** Sets the value of an input that is no array. @return as for one element */                 \
    virtual bool Set(ArgumentOf<T> value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_SET)
#undef TOLEN_DECLARE_SET
    /// @}

    /// @name Getting
    /// @{

    /// Writes the name of the vertex attribute that a coord reads to @p value.
    /// @return false, with @p value as it was, for inputs that are no coords
    virtual bool Get(std::string& value);
    /// Writes the shader in the cell @p index, borrowed, to @p value, null where there is none.
    /// @return false, with @p value as it was, for an index outside the length
    virtual bool Get(IShader*& value, int index);
    /// Writes the shader in the first cell to @p value. @return as for a cell
    virtual bool Get(IShader*& value);
#define TOLEN_DECLARE_GET(specifier, T, name, bytes)                                               \
    /** Writes the element @p index to @p value.                                                   \
        @return false, with @p value as it was, for another type than the declared one and for an  \
                index outside the length */                                                        \
    virtual bool Get(T& value, int index);                                                         \
    /** Writes the value of an input that is no array to @p value. @return as for one element */   \
    virtual bool Get(T& value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_GET)
#undef TOLEN_DECLARE_GET
    /// @}
};

} // namespace Tolen::Effects
