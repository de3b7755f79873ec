#pragma once

#include "PointerTable.h"
#include "PolicyCompilerFrame.h"
#include "PolicyCompilerPrefixRay.h"
#include "PolicyCompilerRay.h"
#include "PolicyVertexNull.h"
#include "PolicyVertexSurface.h"
#include "TolenEffects/IEffect.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

#include <memory>
#include <string>

namespace Tolen {
class IKLShader;
} // namespace Tolen

namespace Tolen::Effects {

class Graph;
class IReferenceGraph;
class IReferenceShader;

/// An effect: the graph of its root shader, the generated root shader with the entry points, and
/// the program that links both, with what stands for it on each primitive.
///
/// Listeners may do anything to an effect while it calls them. One that destroys it ends it at once;
/// its memory stays until the operation in progress returns.
///
/// @tparam PolicyVertex   the vertex side: PolicyVertexSurface or PolicyVertexNull
/// @tparam PolicyCompiler the stage: PolicyCompilerRay, PolicyCompilerFrame, PolicyCompilerPrefixRay
template <class PolicyVertex, class PolicyCompiler>
class Effect : public IEffect,
               public CreationOrder,
               public std::enable_shared_from_this<Effect<PolicyVertex, PolicyCompiler>> {
public:
    Effect();
    ~Effect() override;
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    /// @param manager borrowed
    bool Init(IMgrEffects* manager);
    /// Tells the delete listeners and gives everything back. Safe to repeat.
    void Shutdown();

    bool SetName(const std::string& name) override;
    bool AddListenerDelete(FastDelegate1<IEffect*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IEffect*, bool>& listener) override;
    bool AddListenerChangeValue(FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) override;
    bool AddListenerChangeStructure(FastDelegate1<IEffect*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IEffect*, bool>& listener) override;
    bool AddListenerCompile(FastDelegate1<IEffect*, bool>& listener) override;
    bool RemoveListenerCompile(FastDelegate1<IEffect*, bool>& listener) override;
    bool IsCompiled() override;
    bool
    VisitAttributes(FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit) override;
    bool AddListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) override;
    bool RemoveListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) override;
    bool SetRoot(IShader* shader) override;
    bool GetRoot(IShader*& shader) const override;
    IReferenceEffect* CreateReference(IKLPrimitive* primitive) override;
    void DestroyReference(IReferenceEffect* reference) override;
    bool AddListenerApply(FastDelegate1<IEffect*, bool>& listener) override;
    bool RemoveListenerApply(FastDelegate1<IEffect*, bool>& listener) override;
    bool Apply(IKLPrimitive* primitive, Result* result) override;
    bool Apply(Result* result) override;
    bool AddListenerUpdate(FastDelegate1<IEffect*, bool>& listener) override;
    bool RemoveListenerUpdate(FastDelegate1<IEffect*, bool>& listener) override;
    bool Update(Result* result) override;
    IKLProgram* GetKLProgram() override;
    IMgrEffects* GetMgrEffects() override;

private:
    /// Keeps the memory of this effect for a scope.
    std::shared_ptr<const void> _Hold() { return this->weak_from_this().lock(); }

    bool _ReplaceRoot(IShader* shader, bool isShared);
    bool _InitGraph(IShader* shader);
    /// @param isShared whether code further up the stack may be using the graph
    void _ShutdownGraph(bool isShared);
    void _ShutdownReferenceEffects();
    bool _Compile(Result* result);
    bool _InitShaderRoot();
    bool _CompileGraphsForeign(Result* result);
    bool _LinkWithForeign(Result* result);
    bool _Link(Result* result);
    bool _CheckCompileProblems(Result* result);
    bool _UpdateOutputAttachmentIndexForOutput(const std::string& name);
    IReferenceShader* _GetReferenceShader(IShader* shader);

    bool _OnChangeOutputIndices();
    bool _OnChangeValueGraph(IReferenceGraph* graph, DelegateUpdate& update);
    bool _OnChangeStructureGraph(IReferenceGraph* graph);
    bool _OnCompileGraph(IReferenceGraph* graph);
    bool _OnForgetUpdates(const void* object);

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed; null after shutdown
    std::string _name = "Constructor";   ///< tells the state until a client names the effect
    PointerTable<std::unique_ptr<IReferenceEffect>> _referenceEffects;
    PolicyVertex _policyVertex;
    bool _isCompiled = false; ///< the program is linked and current
    std::unique_ptr<Graph> _pGraph;
    IReferenceGraph* _pReferenceGraph = nullptr;       ///< owned by the graph
    IReferenceShader* _pReferenceShaderRoot = nullptr; ///< borrowed
    IKLShader* _pKLShaderRoot = nullptr;               ///< owned through the context
    IKLProgram* _pKLProgram = nullptr;                 ///< owned through the context
    ListenerSet<FastDelegate1<IEffect*, bool>> _listenersDelete;
    ListenerSet<FastDelegate2<IEffect*, ActionUpdate&, bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<IEffect*, bool>> _listenersChangeStructure;
    ListenerSet<FastDelegate1<IEffect*, bool>> _listenersCompile;
    ListenerSet<FastDelegate1<IEffect*, bool>> _listenersApply;
    ListenerSet<FastDelegate1<IEffect*, bool>> _listenersUpdate;
    IKLPrimitive* _pKLPrimitiveApply = nullptr; ///< the one being applied
    bool _isUpdating = false;
    bool _isReplacingRoot = false;
    bool _isShuttingDown = false;
};

using EffectSurface = Effect<PolicyVertexSurface, PolicyCompilerRay>;
using EffectRenderer = Effect<PolicyVertexNull, PolicyCompilerFrame>;
using EffectPrefix = Effect<PolicyVertexNull, PolicyCompilerPrefixRay>;

extern template class Effect<PolicyVertexSurface, PolicyCompilerRay>;
extern template class Effect<PolicyVertexNull, PolicyCompilerFrame>;
extern template class Effect<PolicyVertexNull, PolicyCompilerPrefixRay>;

} // namespace Tolen::Effects
