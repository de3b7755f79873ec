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
    enum ParameterClass {
        kClass_Undefined = 0,
        kClass_Value = 1,     ///< a value of a built-in type, or an array of them
        kClass_Coord = 2,     ///< the name of a vertex attribute
        kClass_Interface = 3, ///< another shader, or an array of shaders
    };

    IParameter() = default;
    virtual ~IParameter() = default;
    IParameter(const IParameter&) = delete;
    IParameter& operator=(const IParameter&) = delete;

    /// Listeners that hear of a changed value, which costs a write at the next apply. They don't
    /// hear of the length of an array of values.
    virtual bool AddListenerChangeValue(FastDelegate1<IParameter*, bool>& listener);
    virtual bool RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>& listener);
    /// Listeners that hear of a change for which the shader's code has to be made again.
    virtual bool AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener);
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener);

    /// Makes what stands for this parameter in @p graph.
    /// @return owned by the parameter until DestroyReference; null on failure
    virtual IReferenceParameter* CreateReference(IGraph* graph);
    virtual bool DestroyReference(IReferenceParameter* reference);

    /// Adds to @p body the statements that the constructor of the instance runs for this parameter.
    virtual bool CollectConstructor(CompoundStatement* body);
    /// Adds to @p module what the code declares for this parameter.
    virtual bool CollectShader(Module* module);
    /// Calls @p visit with each visitor that rewrites references to this parameter, and with the
    /// class of node that it works on. @return false when @p visit answered false
    virtual bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit);

    /// Whether everything is set that code needs; says what is missing in @p result, if not null.
    virtual bool IsComplete(Result* result) const;

    virtual ParameterClass GetClass();
    /// The type of one element; `kType_UserDefined` for a shader.
    virtual TypeSpecifier GetTypeSpecifier();
    /// The name of the type of one element in the shading language, or of its interface or class.
    virtual std::string GetType();
    /// The name as declared.
    virtual std::string GetName();

    virtual bool IsArray() const;
    /// Elements; 1 where there is no array.
    virtual int GetLength() const;
    /// Changes the number of elements; the first ones stay. @return false when the length is fixed
    virtual bool SetLength(int length);
    virtual bool IsResizable() const;

    /// Whether the shader in the cell @p index, or in any, was made from the declaration's default.
    virtual bool IsDefault(int index) const;
    virtual bool IsDefault() const;

    /// Writes the element @p index, or the first one, into @p out as text.
    virtual bool GetAsString(std::string& out, int index) const;
    virtual bool GetAsString(std::string& out) const;

    /// Sets the name of the vertex attribute of a coordinate.
    virtual bool Set(const std::string& value);

    /// Connects @p count shaders, borrowed, from the first cell on.
    virtual bool Set(IShader** values, int count);
    /// Connects a shader, borrowed; null disconnects.
    virtual bool Set(IShader* value, int index);
    virtual bool Set(IShader* value);

    /// For each element type: sets the first @p count elements, the element @p index, and the value
    /// of a parameter that is no array. There is no conversion: another type than the declared one
    /// answers false, and so does an index outside the length or a count above it.
#define TOLEN_DECLARE_SET(specifier, T, name, bytes)                                               \
    virtual bool Set(const T* values, int count);                                                  \
    virtual bool Set(ArgumentOf<T> value, int index);                                              \
    virtual bool Set(ArgumentOf<T> value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_SET)
#undef TOLEN_DECLARE_SET

    /// The Get operations mirror the Set operations and leave @p value as it was when they answer
    /// false.
    virtual bool Get(std::string& value);
    virtual bool Get(IShader*& value, int index);
    virtual bool Get(IShader*& value);
#define TOLEN_DECLARE_GET(specifier, T, name, bytes)                                               \
    virtual bool Get(T& value, int index);                                                         \
    virtual bool Get(T& value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_GET)
#undef TOLEN_DECLARE_GET
};

} // namespace Tolen::Effects
