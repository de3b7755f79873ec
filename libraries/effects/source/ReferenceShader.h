#pragma once

#include "IImplReferenceShader.h"
#include "TolenEffects/IReferenceShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <memory>

namespace Tolen::Effects {

class ReferenceShaderNode;

/// The graph of its own in which @p shader stays when @p graph uses it: one of the same stage.
/// @return borrowed; null for a shader whose code is copied, as that of the root always is
IGraph* FindGraphForeign(IShader* shader, IGraph* graph);

/// One shader in one graph, as its holders see it. The shader owns it and counts its uses; what it
/// does is settled by one of two implementations, chosen at Init:
/// - the root, and any shader without a graph of its own, is a node: its code is copied;
/// - a shader that has a graph of the same stage stays there, and only its prototypes are copied.
///
/// Once the shader is gone, operations answer false, null, 0 or an empty text.
class ReferenceShader : public IReferenceShader, public CreationOrder {
public:
    ReferenceShader() = default;
    ~ReferenceShader() override;

    /// @param shader, graph borrowed
    bool Init(IShader* shader, IGraph* graph);
    /// Tells the delete listeners and lets everything go. Safe to repeat.
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

    /// The implementation, where the shader's code is copied. @return borrowed, otherwise null
    const ReferenceShaderNode* GetNode() const { return _pNode; }
    LifeToken::Watch GetWatch() const { return _life.GetWatch(); }

private:
    bool _InitImpl(IShader* shader, IGraph* graph);
    bool _InitImplNode(IShader* shader, IGraph* graph);
    bool _InitImplRoot(IShader* shader, IGraph* graph);
    bool _InitImplGraph(IGraph* graph, IGraph* graphOwner);
    void _ShutdownImpl();
    /// Hears of changes of structure in the implementation, or no longer.
    void _ListenToImpl(bool listen);

    bool _OnChangeValue(IReferenceShader* reference);
    bool _OnChangeStructure(IReferenceShader* reference);
    bool _OnChangeImpl();
    bool _OnDelete(IShader* shader);

    IShader* _pShader = nullptr; ///< borrowed; null once it is gone
    IGraph* _pGraph = nullptr;   ///< borrowed
    std::unique_ptr<IImplReferenceShader> _pImpl;
    const ReferenceShaderNode* _pNode = nullptr; ///< the same, when it is a node
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersDelete;
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<IReferenceShader*, bool>> _listenersChangeStructure;
    LifeToken _life;
};

} // namespace Tolen::Effects
