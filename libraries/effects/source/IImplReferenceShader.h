#pragma once

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
class IReferenceShader;
class IShader;
class Module;
class ReferencePrototypeShader;

/// The way in which a shader takes part in a graph, behind its ReferenceShader: as a node whose
/// code is copied into the graph, or as a shader with a graph of its own. The operations are those
/// of IReferenceShader.
class IImplReferenceShader {
public:
    virtual ~IImplReferenceShader() = default;

    virtual bool Release() = 0;
    virtual bool AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool CollectShader(Module* module) = 0;
    virtual bool CollectDeclarationMethod(Module* module, const std::string& method) = 0;
    virtual bool HasMethod(const std::string& method) const = 0;
    virtual std::string GetMethodMangled(const std::string& method) const = 0;
    virtual bool IsComplete(Result* result) const = 0;
    virtual bool HasConstructor() const = 0;
    virtual std::string GetConstructor() const = 0;
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;
    virtual bool AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool AddListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) = 0;
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

    /// Called when the other way of taking part has become the right one.
    virtual bool AddListenerChangeImpl(FastDelegate0<bool>& listener) = 0;
    virtual bool RemoveListenerChangeImpl(FastDelegate0<bool>& listener) = 0;
};

} // namespace Tolen::Effects
