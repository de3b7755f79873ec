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
class TOLEN_EXPORT IReferenceShader {
public:
    virtual ~IReferenceShader() = default;

    /// Gives one use back to the shader; the last one destroys this object.
    virtual bool Release() = 0;

    virtual bool AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) = 0;

    /// Adds the shader's code to @p module.
    virtual bool CollectShader(Module* module) = 0;
    /// Adds the prototype of one method, under its mangled name, to @p module.
    virtual bool CollectDeclarationMethod(Module* module, const std::string& method) = 0;
    virtual bool HasMethod(const std::string& method) const = 0;
    virtual std::string GetMethodMangled(const std::string& method) const = 0;

    virtual bool IsComplete(Result* result) const = 0;

    virtual bool HasConstructor() const = 0;
    virtual std::string GetConstructor() const = 0;

    /// Writes the values of all parameters and members on @p primitive; stops at the first failure.
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;

    virtual bool AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool AddListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) = 0;

    /// Look-ups answer null for an unknown name; visits call the delegate for all entries by name
    /// and answer whether all said true.
    virtual IReferenceParameter* GetParameter(const std::string& name) = 0;
    virtual bool
    VisitParameters(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
                    Result* result) const = 0;
    virtual int GetCountParameters() const = 0;
    virtual IReferenceMember* GetMember(const std::string& name) = 0;
    virtual bool
    VisitMembers(FastDelegate2<const std::string&, IReferenceMember*, bool>& visit) const = 0;
    virtual int GetCountMembers() const = 0;
    virtual IReferenceParameter* GetCoord(const std::string& name) = 0;
    virtual bool
    VisitCoords(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
                Result* result) const = 0;
    virtual int GetCountCoords() const = 0;

    virtual IShader* GetShader() = 0;
    virtual ReferencePrototypeShader* GetReferencePrototype() = 0;
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects
