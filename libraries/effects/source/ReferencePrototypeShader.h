#pragma once

#include "PointerTable.h"
#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/FastDelegate.h"
#include "TolenCore/ListenerSet.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;
class IMember;
class IParameter;
class IPrototypeMember;
class IPrototypeParameter;
class IPrototypeShader;
class IReferenceMember;
class IReferenceParameter;
class IReferencePrototypeMember;
class IReferencePrototypeParameter;
class IReferenceShader;
class Module;
class PrototypeShader;

/// A class in a graph: what belongs to the class as such and is there once, however many instances
/// of it the graph has. It brings the class's static code, static inputs and members, outputs, and
/// the classes whose static methods it calls, and it applies the values of its instances.
///
/// Made, counted and owned by the PrototypeShader.
class ReferencePrototypeShader : public CreationOrder {
public:
    ReferencePrototypeShader() = default;
    ~ReferencePrototypeShader();
    ReferencePrototypeShader(const ReferencePrototypeShader&) = delete;
    ReferencePrototypeShader& operator=(const ReferencePrototypeShader&) = delete;

    /// Enters the class in the graph. On failure everything that was done is undone.
    /// @param prototype, graph borrowed
    bool Init(PrototypeShader* prototype, IGraph* graph);
    void Shutdown();

    /// Gives one use back to the prototype; the last one destroys this object.
    bool Release();

    /// Writes the class's static values, then those of its instances; stops at the first failure.
    bool Apply(IKLPrimitive* primitive, IKLProgram* program);

    /// Adds an instance, borrowed, which counts as one more use of this object.
    bool AddReferenceShader(IReferenceShader* reference);
    bool RemoveReferenceShader(IReferenceShader* reference);
    bool VisitReferenceShaders(FastDelegate1<IReferenceShader*, bool>& visit);
    int GetCountReferenceShader() const;

    bool HasConstructorStatic() const;
    std::string GetConstructorStatic() const;
    bool IsComplete(Result* result) const;

    /// The reference of a non-static input; null for an unknown name.
    IReferencePrototypeParameter* GetParameter(const std::string& name) const;
    PrototypeShader* GetPrototypeShader() const { return _pPrototypeShader; }
    IGraph* GetGraph() const { return _pGraph; }

    bool AddListenerChangeStructure(FastDelegate0<bool>& listener);
    bool RemoveListenerChangeStructure(FastDelegate0<bool>& listener);

private:
    bool _InitParts();
    bool _InitOutput(TypeSpecifier type, const std::string& name);
    bool _InitReferenceParameter(const std::string& name, IParameter* parameter);
    bool _InitReferenceMember(const std::string& name, IMember* member);
    bool _InitReferencePrototypeParameter(const std::string& name, IPrototypeParameter* parameter);
    bool _InitReferencePrototypeMember(const std::string& name, IPrototypeMember* member);
    bool _InitReferencePrototypeMembers();
    /// Holds every class that static calls lead to from this one, at any distance, while this class
    /// has instances here. Only a class with instances holds others, so that classes which call
    /// each other don't keep each other alive.
    bool _InitReferencePrototypeShadersStatic();
    bool _AcquireStatic(IPrototypeShader* prototype);
    void _ReleaseStatic(IPrototypeShader* prototype);

    void _ShutdownOutputs();
    void _ShutdownReferenceParameters();
    void _ShutdownReferenceMembers();
    void _ShutdownReferencePrototypeParameters();
    void _ShutdownReferencePrototypeMembers();
    void _ShutdownReferencePrototypeShadersStatic();

    bool _ApplyReferenceParameters(IKLPrimitive* primitive, IKLProgram* program);
    bool _ApplyReferenceMembers(IKLPrimitive* primitive, IKLProgram* program);
    bool _ApplyReferenceShaders(IKLPrimitive* primitive, IKLProgram* program);

    bool _CollectShader(Module* module);
    bool _CollectShaderReferenceShaders(Module* module);

    bool _OnChangeStructurePrototypeMember(PrototypeShader* prototype);
    bool _OnChangeStructureReferenceParameter(IReferenceParameter* reference);
    bool _OnChangeLengthReferenceMember(IReferenceMember* reference);
    bool _OnChangeStructureStatic();
    bool _OnDeletePrototypeStatic(IPrototypeShader* prototype);

    PrototypeShader* _pPrototypeShader = nullptr; ///< borrowed, owns this object
    IGraph* _pGraph = nullptr;                    ///< borrowed
    std::map<std::string, IReferenceParameter*> _referenceParameters; ///< given back to the inputs
    std::map<std::string, IReferenceMember*> _referenceMembers;
    std::map<std::string, IReferencePrototypeParameter*> _referencePrototypeParameters;
    std::map<std::string, IReferencePrototypeMember*> _referencePrototypeMembers;
    PointerTable<IReferenceShader*> _referenceShaders; ///< borrowed
    ListenerSet<FastDelegate0<bool>> _listenersChangeStructure;
    /// Classes that static code of this one leads to, in the order in which they were found.
    std::vector<std::pair<IPrototypeShader*, ReferencePrototypeShader*>>
        _referencePrototypeShadersStatic;
    std::vector<std::string> _outputsAcquired; ///< what Shutdown has to release
    bool _isEntered = false;                   ///< whether the graph knows this object
};

} // namespace Tolen::Effects
