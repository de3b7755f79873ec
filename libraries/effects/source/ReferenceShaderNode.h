#pragma once

#include "IImplReferenceShader.h"
#include "TolenEffects/IReferenceShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

#include <map>

namespace Tolen::Effects {

class IMember;
class IParameter;

/// A shader whose code is copied into the graph, the root or another one: it holds the references
/// of the shader's class, parameters, members and coords, and adds the code at every compile.
class ReferenceShaderNode : public IImplReferenceShader,
                            public IReferenceShader,
                            public CreationOrder {
public:
    ReferenceShaderNode() = default;
    ~ReferenceShaderNode() override;

    /// On failure everything that was acquired is given back.
    /// @param shader, graph borrowed
    bool Init(IShader* shader, IGraph* graph);
    void Shutdown();

    bool Release() override;
    bool AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) override;
    bool CollectShader(Module* module) override;
    bool CollectDeclarationMethod(Module* module, const std::string& method) override;
    bool HasMethod(const std::string& method) const override;
    std::string GetMethodMangled(const std::string& method) const override;
    bool IsComplete(Result* result) const override;
    bool HasConstructor() const override;
    std::string GetConstructor() const override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    /// Values don't travel through the shader; both answer true.
    bool AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) override;
    bool AddListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) override;
    IReferenceParameter* GetParameter(const std::string& name) override;
    bool VisitParameters(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
                         Result* result) const override;
    int GetCountParameters() const override;
    IReferenceMember* GetMember(const std::string& name) override;
    bool
    VisitMembers(FastDelegate2<const std::string&, IReferenceMember*, bool>& visit) const override;
    int GetCountMembers() const override;
    IReferenceParameter* GetCoord(const std::string& name) override;
    bool VisitCoords(FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
                     Result* result) const override;
    int GetCountCoords() const override;
    IShader* GetShader() override;
    ReferencePrototypeShader* GetReferencePrototype() override;
    IGraph* GetGraph() override;
    bool AddListenerChangeImpl(FastDelegate0<bool>& listener) override;
    bool RemoveListenerChangeImpl(FastDelegate0<bool>& listener) override;

private:
    friend class ReferenceCompleteness;

    using References = std::map<std::string, IReferenceParameter*>;

    bool _InitParts();
    bool _InitParameter(const std::string& name, IParameter* parameter);
    bool _InitMember(const std::string& name, IMember* member);
    bool _InitCoord(const std::string& name, IParameter* coord);
    void _ShutdownCoords();
    void _ShutdownMembers();
    void _ShutdownParameters();
    /// Adds or removes the relay at the notice that the shader gets a graph of this kind.
    bool _ListenCreateGraph(bool listen);
    /// Adds or removes the relays at what tells of changes of structure. They are there only while
    /// there is somebody to tell, so that wiring shaders that no program was made of costs nothing.
    void _ListenChangeStructure(bool listen);

    bool _OnChangeStructureShader(IShader* shader);
    bool _OnChangeStructureReference(IReferenceParameter* reference);
    bool _OnCreateGraph(IShader* shader, IGraph* graph);

    ReferencePrototypeShader* _pReferencePrototype = nullptr; ///< one use of it is ours
    IShader* _pShader = nullptr;                              ///< borrowed
    IGraph* _pGraph = nullptr;                                ///< borrowed
    References _parameters; ///< given back to the parameters
    std::map<std::string, IReferenceMember*> _members;
    References _coords;
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersDelete;
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersChangeStructure;
    ListenerSet<FastDelegate0<bool>> _listenersChangeImpl;
    mutable unsigned long long _walk = 0; ///< the last walk that asked whether this is complete
    mutable bool _isComplete = false;     ///< its answer
};

} // namespace Tolen::Effects
