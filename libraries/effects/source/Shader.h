#pragma once

#include "EndingShader.h"
#include "StructureNode.h"

#include "TolenEffects/IShader.h"
#include "TolenEffects/Key.h"
#include "TolenEffects/SyntaxTypes.h"

#include "TolenOpenKLWrapper/IKLShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Effects {

class ClassDefinition;
class CodeTransformer;
class Expression;
class FunctionCall;
class Graph;
class MangleMethodPrefixKey;
class PrototypeShader;
class ReferenceShader;
template <class T>
class TIParentSyntax;

/// One instance of a loaded class.
///
/// Its prototype holds what all instances have in common; this object holds what is its own: its
/// inputs, members and coords, the names of its methods in generated code, its code under these
/// names, its graphs and its references. Made and owned by the prototype.
///
/// The code is made when the shader is complete and made again when an input, a member or the
/// class changes in structure. A change further below leaves it as it is, since it names the
/// connected shaders and not what they do.
class TOLEN_EXPORT Shader final : public IShader,
                                  public CreationOrder,
                                  public StructureNode,
                                  public EndingShader {
public:
    Shader();
    ~Shader() override;
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    /// @param prototype  borrowed, owns this object; a PrototypeShader
    /// @param definition the class's declaration, read during the call
    /// @param result     takes the reasons of a failure; may be null
    /// @return false, with everything undone, when a part can't be made or the code of a complete
    ///         shader can't be built
    bool Init(IPrototypeShader* prototype, const ClassDefinition* definition, Result* result);
    /// Tells the delete listeners and lets everything go. Safe to repeat.
    void Shutdown();

    /// The instance behind @p shader: itself, or what it is a view of.
    /// @return null for an object that this library hasn't made, and for a view that is going
    static Shader* GetBase(IShader* shader);
    /// Whether the shader is on its way out, so that nothing may hold it any more.
    bool IsGoing() const { return _isMuted && _pPrototype != nullptr && !_isStarting; }

    /// The cell @p index of @p input holds this shader, or no longer does.
    void AddUser(ParameterInterface* input, int index);
    void RemoveUser(ParameterInterface* input, int index);
    /// The class has new code, from which that of this instance has to be made again.
    void RequestRebuild() { _mustRebuild = true; }

    void CollectNodesAbove(std::vector<StructureNode*>& nodes) const override;
    void CollectNodesBelow(std::vector<StructureNode*>& nodes) const override;

    bool AddListenerDelete(FastDelegate1<IShader*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener) override;
    bool CollectShader(Module* into) override;
    bool CollectDeclarationMethod(Module* into, const std::string& method) override;
    std::string GetInterfaceName() override;
    std::string GetClassName() override;
    std::string GetKeyName() override;
    bool HasMethod(const std::string& method) override;
    std::string GetMethodNameMangled(const std::string& method) override;
    bool HasConstructor() override;
    std::string GetConstructorName() override;
    bool AddListenerChangeStructure(FastDelegate1<IShader*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IShader*, bool>& listener) override;
    IPrototypeShader* GetPrototype() override;
    IMgrEffects* GetMgrEffects() override;

#define TOLEN_OVERRIDE_GRAPH_KIND(N)                                                               \
    bool AddListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>& listener) override; \
    bool RemoveListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>& listener)        \
        override;                                                                                  \
    IGraph* CreateGraphKind##N() override;                                                         \
    IGraph* GetGraphKind##N() override;                                                            \
    bool DestroyGraphKind##N() override;
    TOLEN_OVERRIDE_GRAPH_KIND(0)
    TOLEN_OVERRIDE_GRAPH_KIND(2)
    TOLEN_OVERRIDE_GRAPH_KIND(3)
#undef TOLEN_OVERRIDE_GRAPH_KIND

    IReferenceShader* CreateReference(IGraph* graph) override;
    IReferenceShader* GetReference(IGraph* graph) override;
    /// Whether a reference for @p graph was asked for, also one that couldn't be made.
    bool HasReference(IGraph* graph) const { return _references.count(graph) != 0; }
    bool ReleaseReference(IReferenceShader* reference) override;
    IParameter* GetParameter(const std::string& name) override;
    bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) override;
    IMember* GetMember(const std::string& name) override;
    bool VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit) override;
    IParameter* GetCoord(const std::string& name) override;
    bool VisitCoords(FastDelegate2<const std::string&, IParameter*, bool>& visit) override;
    bool SetCoord(Result* result, const std::string& name, const std::string& value) override;
    bool VisitMethods(FastDelegate1<const FunctionDefinition*, bool>& visit) override;
    bool IsComplete(Result* result) override;
    bool SetName(const std::string& name) override;
    const std::string& GetName() override;

    using IShader::SetParameter;
#define TOLEN_OVERRIDE_SET_PARAMETER(specifier, T, typeName, bytes)                                \
    bool SetParameter(Result* result, const std::string& name, ArgumentOf<T> value) override;      \
    bool SetParameter(Result* result, const std::string& name, ArgumentOf<T> value, int index)     \
        override;                                                                                  \
    bool SetParameter(Result* result, const std::string& name, const T* values, int count) override;
    TOLEN_ELEMENT_TYPES(TOLEN_OVERRIDE_SET_PARAMETER)
#undef TOLEN_OVERRIDE_SET_PARAMETER
    bool SetParameter(Result* result, const std::string& name, IShader* shader) override;
    bool SetParameter(Result* result, const std::string& name, IShader* shader, int index) override;
    bool SetParameter(Result* result, const std::string& name, IShader** shaders,
                      int count) override;

    shaderType GetShaderType() override {
        return kShaderType_Shader;
    }

protected:
    bool _IsCompleteHere() override;
    void _OnChangeCompleteness(bool isComplete) override;
    bool _HasListeners() const override;
    bool _OnChangeStructureNode(StructureOrigin origin) override;
    std::vector<ParameterInterface*> _GetInputsHeard() const override;

private:
    static constexpr int kGraphKinds = 3;
    struct ByCreation {
        bool operator()(const ParameterInterface* a, const ParameterInterface* b) const;
    };

    struct GraphSlot {
        std::unique_ptr<Graph> pGraph;
        ListenerSet<FastDelegate2<IShader*, IGraph*, bool>> listenersCreate;
    };
    struct UsedReference {
        std::unique_ptr<ReferenceShader> pReference; ///< null when it couldn't be made
        int count = 0;
        std::uint64_t order = 0; ///< rises with each entry
    };
    /// What a setter says on failure.
    struct SetTexts {
        const char* notFound;
        const char* refused;
    };
    using Parameters = std::map<std::string, std::unique_ptr<IParameter>>;

    bool _InitParts(const ClassDefinition* definition, Result* result);
    bool _InitParameters(Result* result);
    bool _InitMembers(Result* result);
    bool _InitCoords();
    void _InitMethodNames(const ClassDefinition* definition);

    bool _NeedModule();
    bool _BuildModule();
    bool _BuildMethods(Module* module, std::vector<const FunctionDefinition*>& methods);
    bool _BuildConstructor(Module* module);
    bool _RenameMethodCalls(Module* module);
    bool _RenameMethodCall(FunctionCall* call, TIParentSyntax<Expression>* parent);
    bool _CollectParts(Module* module);
    bool _ApplyTransformations(CodeTransformer& transformer);
    void _ShutdownModule();

    bool _OnChangeStructureParameter(IParameter* parameter);
    bool _OnChangeLengthMember(IMember* member);
    bool _Rebuild();
    bool _CanBuildLater();
    void _ProveInputs();
    bool _FireChangeStructure();
    void _ShutdownUsers();
    bool _OnEndGraph(Graph* graph);

    void _CreateReference(IGraph* graph);
    void _EndReference(std::map<IGraph*, UsedReference>::iterator entry);
    IGraph* _CreateGraph(GraphSlot& slot, IKLShader::Type kind);
    bool _DestroyGraph(GraphSlot& slot);
    void _ShutdownReferences();
    void _ShutdownParts();

    template <class Set>
    bool _SetParameter(Result* result, const std::string& name, const SetTexts& texts, Set set);
    template <class Set>
    bool _Set(Result* result, const std::string& name, IParameter* parameter, const SetTexts& texts,
              Set set);
    bool _IsCompatible(Result* result, IShader* shader);
    void _ReportParameterError(Result* result, const char* text, const std::string& name);
    void _Report(Result* result, const std::string& text);

    PrototypeShader* _pPrototype = nullptr; ///< borrowed, owns this object
    std::unique_ptr<Module> _pModule;       ///< this instance's code; null until built
    Key _key;
    std::string _name;
    std::map<std::string, std::string> _methodNames; ///< declared name to mangled
    Parameters _parameters;
    std::map<std::string, std::unique_ptr<IMember>> _members;
    Parameters _coords;                         ///< each a ParameterCoord
    std::array<GraphSlot, kGraphKinds> _graphs; ///< for rays, frames and ray prefixes
    std::map<IGraph*, UsedReference> _references;
    ListenerSet<FastDelegate1<IShader*, bool>> _listenersDelete;
    ListenerSet<FastDelegate1<IShader*, bool>> _listenersChangeStructure;
    std::unique_ptr<MangleMethodPrefixKey> _pMangleMethod;
    std::vector<const FunctionDefinition*> _methods; ///< those of the class in the module, borrowed
    std::uint64_t _countReferences = 0;              ///< references entered so far
    std::vector<ParameterInterface*> _inputs; ///< those parameters that take shaders, borrowed
    /// The inputs that hold this shader, with their cells that do.
    std::map<ParameterInterface*, std::set<int>, ByCreation> _users;
    bool _isMuted = true;          ///< changes are not passed on
    bool _isStarting = true;       ///< before the end of Init
    bool _mustRebuild = false;     ///< the code doesn't fit the class any more
    bool _isStale = false;         ///< the code doesn't fit what the inputs hold any more
    bool _isProven = false;        ///< it can be built for all classes that the inputs remember
    bool _isChanging = false;      ///< structure listeners are being told
    bool _hasChangedAgain = false; ///< and one of them has made a change
};

} // namespace Tolen::Effects
