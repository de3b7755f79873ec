#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;
class IReferenceMember;
class IReferenceParameter;
class IShader;
class Module;
class ReferencePrototypeShader;

/// One shader as it is used in one graph. There is exactly one for each such pair; the shader
/// counts its uses.
///
/// A shader that has a graph of its own is linked to others, not copied into them: its references
/// there show neither inputs, members nor coords.
class TOLEN_EXPORT IReferenceShader {
public:
    virtual ~IReferenceShader() = default;

    /// Gives one use back to the shader; the last one destroys this object.
    /// @return false once the shader is gone
    virtual bool Release() = 0;

    /// Adds a listener that is called when the reference goes: with its last use, its graph or its
    /// shader.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) = 0;

    /// Adds the shader's code to @p module; where the shader has a graph of its own, only what
    /// calls that.
    /// @return false when the shader is incomplete or its code can't be built
    virtual bool CollectShader(Module* module) = 0;
    /// Adds the prototype of one method, under its mangled name, to @p module.
    /// @return false for an unknown method
    virtual bool CollectDeclarationMethod(Module* module, const std::string& method) = 0;
    /// Whether the shader has a method of this declared name.
    virtual bool HasMethod(const std::string& method) const = 0;
    /// The name of a method in the generated code of the graph; "MethodNotFound" for an unknown
    /// one.
    virtual std::string GetMethodMangled(const std::string& method) const = 0;

    /// Whether everything is set that code needs.
    /// @param result takes what is missing first; may be null
    virtual bool IsComplete(Result* result) const = 0;

    /// Whether generated code has a function that gives the members their first values.
    virtual bool HasConstructor() const = 0;
    /// The name of the function that gives the members their first values.
    virtual std::string GetConstructor() const = 0;

    /// Writes the values of all parameters and members on @p primitive, where @p program has them.
    /// @return false at the first write that fails
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;

    /// Adds a listener that is called after a change of any value of the shader.
    /// @return true
    virtual bool AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeValue() off. @return true
    virtual bool RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    /// Adds a listener that is called after a change for which code has to be made again.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool
    RemoveListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) = 0;

    /// An input, borrowed; null for an unknown name.
    virtual IReferenceParameter* GetParameter(const std::string& name) = 0;
    /// Calls @p visit for every input by name, with @p result.
    /// @return whether all calls answered true
    virtual bool
    VisitParameters(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
                    Result* result) const = 0;
    /// The number of inputs.
    virtual int GetCountParameters() const = 0;
    /// A variable that is no input, borrowed; null for an unknown name.
    virtual IReferenceMember* GetMember(const std::string& name) = 0;
    /// Calls @p visit for every such variable by name. @return whether all calls answered true
    virtual bool
    VisitMembers(FastDelegate2<const std::string&, IReferenceMember*, bool>& visit) const = 0;
    /// The number of such variables.
    virtual int GetCountMembers() const = 0;
    /// A coord, borrowed; null for an unknown name.
    virtual IReferenceParameter* GetCoord(const std::string& name) = 0;
    /// Calls @p visit for every coord by name, with @p result.
    /// @return whether all calls answered true
    virtual bool
    VisitCoords(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
                Result* result) const = 0;
    /// The number of coords.
    virtual int GetCountCoords() const = 0;

    /// The shader that this stands for.
    virtual IShader* GetShader() = 0;
    /// The class of the shader as the graph sees it; null where the shader has a graph of its own.
    virtual ReferencePrototypeShader* GetReferencePrototype() = 0;
    /// The graph whose text has the shader's code: the one in which it is used, or the shader's
    /// own.
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects
