#pragma once

#include "IImplReferenceShader.h"
#include "TolenEffects/IGraph.h"
#include "TolenEffects/IReferenceShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <string>
#include <vector>

namespace Tolen::Effects {

class FunctionDefinition;
class Graph;

/// A shader that has a graph of its own, used in another graph of the same stage: its code stays in
/// its graph, whose API shader is linked into the using program; the using graph gets only the
/// prototypes. Its constructors are not called from the using graph.
class ReferenceShaderGraph : public IImplReferenceShader,
                             public IReferenceShader,
                             public CreationOrder {
public:
    ReferenceShaderGraph() = default;
    ~ReferenceShaderGraph() override;

    /// @param graph      the shader's own graph, borrowed
    /// @param graphOwner the graph that uses the shader, borrowed
    bool Init(IGraph* graph, IGraph* graphOwner);
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
    /// There is no position among the owner's shaders. @return -1
    virtual int GetIndex() const;

private:
    bool _CollectDeclaration(Module* module, const FunctionDefinition* definition);
    bool _Apply(IKLPrimitive* primitive, IKLProgram* program);
    /// Lets go of the other graph, which may be going itself.
    void _LeaveGraph();
    bool _IsGraphAlive() const { return _pGraphOwner != nullptr; }
    bool _AcquireAttribute(IGraph::Attribute attribute);
    bool _ReleaseAttribute(IGraph::Attribute attribute);
    void _ReleaseAttributes();
    bool _OnDeleteGraph(IGraph* graph);
    bool _OnChangeValueGraph(IGraph* graph, DelegateUpdate& update);
    bool _OnChangeStructureGraph(IGraph* graph);
    bool _OnForgetUpdates(const void* object);

    IGraph* _pGraph = nullptr;      ///< borrowed, the shader's own; stays set when it goes
    IGraph* _pGraphOwner = nullptr; ///< borrowed, the using one; null once the other one is gone
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersDelete;
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersChangeStructure;
    ListenerSet<FastDelegate0<bool>> _listenersChangeImpl;
    Graph* _pUser = nullptr; ///< the using graph again, kept for taking our delegates back
    std::vector<std::string> _attributes; ///< of the other graph, acquired in the using one
    LifeToken _life;
};

} // namespace Tolen::Effects
