#pragma once

#include "MgrKeys.h"
#include "MgrOutputs.h"
#include "TolenEffects/IGraph.h"
#include "TolenEffects/Key.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Effects {

class ReferenceShader;
class VisitorPrintKsl;

/// The one implementation of IGraph.
///
/// A graph that uses a shader which lives in a graph of its own is told of that graph
/// (AddGraphForeign), so that its program can link it; that other graph counts its users, because
/// all methods of its shader must then stay in its text.
class TOLEN_EXPORT Graph : public IGraph, public CreationOrder {
public:
    Graph();
    ~Graph() override;
    Graph(const Graph&) = delete;
    Graph& operator=(const Graph&) = delete;

    /// @param manager, shader borrowed
    /// @param type   a ray, frame or prefix stage
    /// @return false, shut down again, when the shader can't be used here
    bool Init(IMgrEffects* manager, IKLShader::Type type, IShader* shader, const std::string& name);
    /// Tells the delete listeners and gives everything back. Safe to repeat.
    void Shutdown();

    bool SetName(const std::string& name) override;
    std::string GetName() override;
    std::string GetNameMangled() override;
    IShader* GetShader() const override;
    IReferenceShader* GetReferenceShader() const override;
    IReferenceGraph* CreateReference(IEffect* effect) override;
    void DestroyReference(IReferenceGraph* reference) override;
    bool AddListenerDelete(FastDelegate1<IGraph*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IGraph*, bool>& listener) override;
    bool AddReferencePrototypeShader(IPrototypeShader* prototype,
                                     ReferencePrototypeShader* reference) override;
    bool RemoveReferencePrototypeShader(IPrototypeShader* prototype) override;
    bool AddReferencePrototypeInterface(IPrototypeInterface* prototype,
                                        ReferencePrototypeInterface* reference) override;
    bool RemoveReferencePrototypeInterface(IPrototypeInterface* prototype) override;
    bool AddDelegateCollectShader(FastDelegate1<Module*, bool>& collect) override;
    bool RemoveDelegateCollectShader(FastDelegate1<Module*, bool>& collect) override;
    bool AcquireAttribute(TypeSpecifier type, const std::string& name,
                          TransformationCoord transformation) override;
    bool ReleaseAttribute(const std::string& name) override;
    int GetCountAttributes() override;
    bool AddListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) override;
    bool RemoveListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) override;
    bool AddListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) override;
    bool RemoveListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) override;
    bool VisitAttributes(FastDelegate1<Attribute, bool>& visit) override;
    bool AcquireOutput(TypeSpecifier type, const std::string& name) override;
    bool ReleaseOutput(const std::string& name) override;
    int GetCountOutputs() override;
    const std::set<std::string>& GetOutputsUsed() const override;
    bool AddListenerAddOutput(
        FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) override;
    bool RemoveListenerAddOutput(
        FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) override;
    bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) override;
    bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) override;
    bool Compile(Result* result) override;
    bool AddListenerCompile(FastDelegate1<IGraph*, bool>& listener) override;
    bool RemoveListenerCompile(FastDelegate1<IGraph*, bool>& listener) override;
    bool IsComplete(Result* result) override;
    bool IsCompiled() override;
    bool HasConstructorStatic() const override;
    std::string GetConstructorStatic() const override;
    bool CollectDeclarationConstructorStatic(Module* module) const override;
    bool HasConstructor() const override;
    std::string GetConstructor() const override;
    bool CollectDeclarationConstructor(Module* module) const override;
    bool AddDelegateApply(DelegateUpdate& apply) override;
    bool RemoveDelegateApply(DelegateUpdate& apply) override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) override;
    bool AddDelegateUpdate(DelegateUpdate& update) override;
    bool AddListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) override;
    bool AddListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) override;
    IMgrEffects* GetMgrEffects() override;
    IKLShader* GetKLShader() override;
    IKLShader::Type GetType() override;

    /// Compiles started that got as far as a new API shader.
    int GetCountCompiles() const { return _countCompiles; }

    /// Enters a graph whose shader is used in this one, borrowed, once for each use; the other
    /// graph gains a user.
    void AddGraphForeign(Graph* graph);
    void RemoveGraphForeign(Graph* graph);
    /// The graphs that a program of this one has to link, each once, in the order of their
    /// creation, with those that they use in turn.
    std::vector<Graph*> GetGraphsForeign() const;

    /// Ends a reference of this graph that has no uses left. Those that it used and nobody else
    /// does follow one by one, however deep they hang, before the outermost call returns. The
    /// caller holds the ends of graphs back (ScopedHold).
    void EndReference(std::unique_ptr<ReferenceShader> reference);

    /// Called when a shader takes part in this graph in another way than before.
    void OnChangeReference();

    /// Draws the number of a walk over the references of this graph; never 0.
    unsigned long long BeginWalk() { return ++_countWalks; }
    /// Whether a compile is collecting the code of all references.
    bool IsCollecting() const { return _isCollecting; }
    LifeToken::Watch GetWatch() const { return _life.GetWatch(); }

    /// Lets the holders of queued updates drop those that are bound to @p object, which is about to
    /// die.
    void ForgetUpdates(const void* object);
    bool AddListenerForgetUpdates(FastDelegate1<const void*, bool>& listener);
    bool RemoveListenerForgetUpdates(FastDelegate1<const void*, bool>& listener);

    /// Whether the end has begun: from then on nothing new may refer to this graph.
    bool IsGoing() const { return _isGoing; }
    /// End listeners hear when the graph has told its delete listeners and given its own references
    /// back, and is otherwise still whole: who has references to it left lets them go.
    bool AddListenerEnd(FastDelegate1<Graph*, bool>& listener);
    bool RemoveListenerEnd(FastDelegate1<Graph*, bool>& listener);

protected:
    /// Puts the place in the source in front of every line of the API's log that speaks of a line
    /// of the text.
    /// @param printer the one that printed the text
    std::string _TranslateErrorMessage(const std::string& log, VisitorPrintKsl& printer);

private:
    struct AttributeUse {
        Attribute attribute;
        int count;
    };

    bool _InitShader(IShader* shader);
    bool _ShutdownShader();
    /// Hears when the root goes and is a view of the shader that is referenced, or no longer.
    void _ListenToView(bool listen);
    void _ShutdownReferencesLeft();
    void _Invalidate();
    /// Hears of changes of structure, or no longer: a graph that isn't compiled has nothing to
    /// learn from them, and shaders that nobody listens to are connected at no cost.
    void _ListenToRoot(bool listen);
    void _DestroyKLShader();

    bool _CollectModule(Module* module);
    bool _CollectShaders(Module* module);
    bool _CollectConstructor(Module* module);
    bool _CollectConstructorStatic(Module* module);
    bool _CollectVertexAttributeDeclarations(Module* module);
    bool _Compile(Result* result);
    bool _CompileText(VisitorPrintKsl& printer, Result* result);
    std::set<std::string> _GetMethodsForUsers() const;

    bool _OnDeleteReferenceShader(IReferenceShader* reference);
    bool _OnEndView(IShader* view);
    bool _OnChangeStructure();
    bool _OnChangeStructureReferenceShader(IReferenceShader* reference);

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed; null after shutdown
    Key _rKey;
    IKLShader::Type _type = IKLShader::kType_Ray;
    std::string _name;
    IKLShader* _pKLShader = nullptr; ///< owned through the context; of the last compile
    bool _isInitialized = false;
    bool _isCompiled = false;
    int _countCompiles = 0;
    ListenerSet<FastDelegate1<IGraph*, bool>> _listenersDelete;
    IShader* _pShader = nullptr;                   ///< the root, borrowed
    IReferenceShader* _pReferenceShader = nullptr; ///< one use of it is ours
    std::vector<std::unique_ptr<IReferenceGraph>> _referenceGraphs;
    MgrOutputs _outputs;
    std::set<std::string> _outputsUsed;
    MgrKeys<std::string> _keys;
    ListenerSet<FastDelegate1<Module*, bool>> _delegatesCollectShader;
    ListenerSet<FastDelegate1<IGraph*, bool>> _listenersCompile;
    std::map<std::string, AttributeUse> _attributes;
    ListenerSet<FastDelegate1<Attribute, bool>> _listenersAddAttribute;
    ListenerSet<FastDelegate1<Attribute, bool>> _listenersRemoveAttribute;
    std::map<IPrototypeShader*, ReferencePrototypeShader*> _prototypeShaders;
    std::map<IPrototypeInterface*, ReferencePrototypeInterface*> _prototypeInterfaces;
    ListenerSet<FastDelegate2<IGraph*, DelegateUpdate&, bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<IGraph*, bool>> _listenersChangeStructure;
    ListenerSet<DelegateUpdate> _delegatesApply;
    std::map<Graph*, int> _graphsForeign; ///< uses of other graphs' shaders, borrowed
    int _countUsers = 0;                  ///< uses of this graph's shader in other graphs
    ListenerSet<FastDelegate1<const void*, bool>> _listenersForgetUpdates;
    ListenerSet<FastDelegate1<Graph*, bool>> _listenersEnd;
    bool _isGoing = false;
    LifeToken _life;
    std::shared_ptr<bool> _isCompiling; ///< shared with a compile that may outlive the graph
    std::vector<std::unique_ptr<ReferenceShader>> _ending; ///< references without uses
    bool _isEnding = false;                                ///< they are being ended
    unsigned long long _countWalks = 0;
    bool _isCollecting = false;
    bool _hasQueuedUpdates = false; ///< somebody may have kept an update of this graph
};

} // namespace Tolen::Effects
