#pragma once

#include "ShaderTable.h"
#include "StructureNode.h"
#include "TolenEffects/IPrototypeShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Effects {

class CodeTransformer;
class FreeFunctions;
class FunctionCall;
class FunctionDefinition;
class IPrototypeInterface;
class IPrototypeMember;
class IPrototypeParameter;
class InterfaceDefinition;
class Library;
class Module;
class ParameterInterface;
class VariableDeclaration;

/// A class of a loaded library.
///
/// Its variables are split by two questions: static ones live here, once, the others are made again
/// for each shader from the prototypes kept here; inputs are set by the client, the rest is not.
/// From the declaration it makes two modules of its own: the code that exists once for the class,
/// and the template that each shader copies under its own names. Both wait until all static inputs
/// have what they need, and are made again when the structure of one of them changes.
class PrototypeShader : public IPrototypeShader, public CreationOrder, public StructureNode {
public:
    PrototypeShader();
    ~PrototypeShader() override;
    PrototypeShader(const PrototypeShader&) = delete;
    PrototypeShader& operator=(const PrototypeShader&) = delete;

    /// @param library, definition borrowed; the definition lies in the library's module
    /// @param result takes the reasons of a failure; may be null
    bool Init(Library* library, ClassDefinition* definition, Result* result);
    /// Tells the delete listeners, then destroys what is left of shaders, references and tables.
    /// Safe to repeat.
    void Shutdown();

    /// Makes a shader of the class, owned here.
    /// @return null on failure, and while the prototype or a shader of the class is being made
    IShader* CreateShader(Result* result);
    /// Destroys a shader made here; others are passed over.
    void DestroyShader(IShader* shader);

    /// Destroys the reference in @p graph, which is about to go, however many uses it has.
    void ForgetGraph(IGraph* graph);

    /// Adds the class's own code, and the free functions that it calls, to a graph's module.
    /// @return false while the class is incomplete
    bool CollectShader(Module* module);

    /// Makes calls of free functions out of what initial values have been read as, in a constructor
    /// of the class or of one of its shaders.
    void NameFreeFunctionCalls(FunctionDefinition* constructor) const;

    /// Brings the calls of free functions in the definitions of @p module from position
    /// @p firstDefinition on to the names that those functions carry in merged code.
    void RenameFreeFunctionCalls(Module* module, std::size_t firstDefinition) const;

    /// @return "Undefined" for what is no static method
    const std::string& GetStaticMethodNameMangled(const std::string& method) const;

    /// The non-static code of the class, to be copied; null while the class is incomplete. It dies
    /// at every change of structure.
    const ClassDefinition* GetTemplate() const;
    /// The implemented interface, null if there is none.
    const IPrototypeInterface* GetInterface() const { return _pPrototypeInterface; }

    /// The variables that each shader gets, by name; visits call every callback.
    IPrototypeParameter* GetPrototypeParameter(const std::string& name) const;
    IPrototypeMember* GetPrototypeMember(const std::string& name) const;
    bool
    VisitPrototypeParameters(FastDelegate2<const std::string&, IPrototypeParameter*, bool>& visit);
    bool VisitPrototypeMembers(FastDelegate2<const std::string&, IPrototypeMember*, bool>& visit);
    /// The other classes whose static methods this one calls, in the order in which their
    /// prototypes were made.
    bool VisitPrototypeShadersStatic(FastDelegate1<IPrototypeShader*, bool>& visit);

    /// Structure listeners hear when the code of the class has changed.
    bool AddListenerChangeStructure(FastDelegate1<PrototypeShader*, bool>& listener);
    bool RemoveListenerChangeStructure(FastDelegate1<PrototypeShader*, bool>& listener);

    /// Whether the code of the class depends on shaders in static inputs or on other classes.
    bool HasNodesBelow() const { return !_inputs.empty() || !_staticReferences.empty(); }
    void CollectNodesAbove(std::vector<StructureNode*>& nodes) const override;
    void CollectNodesBelow(std::vector<StructureNode*>& nodes) const override;

    bool AddListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) override;
    std::string GetClassName() override;
    IMgrEffects* GetMgrEffects() const override;
    const ClassDefinition* GetDefinition() const override { return _pClass; }
    ReferencePrototypeShader* AcquireReference(IGraph* graph) override;
    bool ReleaseReference(ReferencePrototypeShader* reference) override;
    bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) override;
    IParameter* GetParameter(const std::string& name) override;
    bool VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit) override;
    IMember* GetMember(const std::string& name) override;
    bool VisitCoords(FastDelegate3<TypeSpecifier, const std::string&, TransformationCoord, bool>&
                         visit) override;
    bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program) override;
    std::string GetConstructorStatic() override;
    bool ReplaceStatic(FunctionSelection* selection, TIParentSyntax<Expression>* parent,
                       Result* result) override;
    bool IsComplete(Result* result) override;
    std::string GetInterfaceName() override;

    using IPrototypeShader::SetParameter;
#define TOLEN_OVERRIDE_SET_STATIC(specifier, T, typeName, bytes)                                   \
    bool SetParameter(const std::string& name, ArgumentOf<T> value) override;                      \
    bool SetParameter(const std::string& name, ArgumentOf<T> value, int index) override;           \
    bool SetParameter(const std::string& name, const T* values, int count) override;
    TOLEN_ELEMENT_TYPES(TOLEN_OVERRIDE_SET_STATIC)
#undef TOLEN_OVERRIDE_SET_STATIC
    bool SetParameter(const std::string& name, IShader* shader) override;
    bool SetParameter(const std::string& name, IShader* shader, int index) override;
    bool SetParameter(const std::string& name, IShader** shaders, int count) override;

protected:
    bool _IsCompleteHere() override;
    void _OnChangeCompleteness(bool) override {}
    bool _HasListeners() const override;
    bool _OnChangeStructureNode(StructureOrigin origin) override;

private:
    struct ByCreation {
        bool operator()(const PrototypeShader* a, const PrototypeShader* b) const {
            return a->GetCreationNumber() < b->GetCreationNumber();
        }
    };
    /// What the type of an input names: an interface, or else a class; both null for neither.
    struct ResolvedType {
        IPrototypeInterface* pInterface = nullptr;
        PrototypeShader* pClass = nullptr;
    };
    struct UsedReference {
        std::unique_ptr<ReferencePrototypeShader> pReference; ///< null when it couldn't be made
        int count = 0;
        std::uint64_t order = 0; ///< rises with each entry
    };
    /// What is printed when a static input is not there: nothing, or a line by the form of the
    /// call.
    enum class Miss { kSilent, kValue, kElement };
    /// What a walk over static calls needs to know.
    struct StaticCalls {
        std::map<std::string, PrototypeShader*> classes; ///< by name; null for what is no class
        Result* pResult;
    };

    // Declarations to tables.
    bool _InitTables(Result* result);
    bool _InitPrototypeInterface(const std::string& className, const std::string& interfaceName,
                                 Result* result);
    bool _ImplementsInterface(const ClassDefinition* definition,
                              const IPrototypeInterface* prototypeInterface, Result* result);
    void _InitMethodNameTable(const ClassDefinition* definition);
    bool _InitParameters(const ClassDefinition* definition, Result* result);
    bool _InitParameter(const ClassDefinition* definition, const VariableDeclaration* variable,
                        Result* result);
    bool _InitParameterInterface(const VariableDeclaration* variable, Result* result);
    bool _InitParameterInterfaceSingle(const VariableDeclaration* variable, Result* result);
    bool _InitParameterInterfaceArray(const VariableDeclaration* variable,
                                      const InterfaceDefinition* definition, Result* result);
    void _EnterInput(const VariableDeclaration* variable,
                     std::unique_ptr<ParameterInterface> input);
    bool _InitMembers(const ClassDefinition* definition);
    bool _InitMember(const ClassDefinition* definition, const VariableDeclaration* variable);
    bool _InitPrototypeParameters(const ClassDefinition* definition, Result* result);
    bool _InitPrototypeParameter(const VariableDeclaration* variable, Result* result);
    bool _InitPrototypeParameterInterface(const VariableDeclaration* variable,
                                          const ResolvedType& type);
    bool _InitPrototypeParameterShader(const VariableDeclaration* variable,
                                       const ResolvedType& type);
    bool _InitPrototypeMembers(const ClassDefinition* definition);
    bool _InitPrototypeMember(const VariableDeclaration* variable);
    ResolvedType _ResolveType(const VariableDeclaration* variable, Result* result) const;
    IPrototypeInterface* _FindPrototypeInterface(const std::string& name) const;
    PrototypeShader* _FindPrototypeShader(Library* library, const std::string& name,
                                          Result* result) const;

    // Tables to code.
    bool _InitStatic(const ClassDefinition* definition, Result* result);
    bool _InitConstructorStatic(Module* module);
    bool _InitStaticMethods(const ClassDefinition* definition, Module* module);
    bool _InitTemplate(const ClassDefinition* definition, Result* result);
    bool _InitTemplateMemberFunctions(const ClassDefinition* definition, ClassDefinition* copy);
    bool _InitTemplateCoords(const ClassDefinition* definition, ClassDefinition* copy);
    bool _InitFreeFunctions(const ClassDefinition* definition, Result* result);
    bool _RewriteStaticCalls(Library* library, Module* module, Result* result);
    bool _RewriteOwnStaticCalls(Module* module);
    bool _ReplaceFunctionSelectionStatic(FunctionSelection* selection,
                                         TIParentSyntax<Expression>* parent, StaticCalls* calls);
    bool _ReplaceFunctionCallStatic(FunctionCall* call, TIParentSyntax<Expression>* parent);
    bool _ApplyTransformations(std::vector<FunctionDefinition*> code);
    bool _ApplyTransformationsParameter(CodeTransformer& transformer);
    bool _ApplyTransformationsMember(CodeTransformer& transformer);
    bool _CollectShaderParameters(Module* module);
    bool _CollectShaderMembers(Module* module);
    void _ShutdownCode();

    bool _OnChangeStructureParameter(IParameter* parameter);
    bool _OnChangeLengthMemberValueArray(IMember* member);
    bool _OnChangeStructureCommon();
    bool _AreInputsComplete(Result* result);
    bool _OnDeleteReferenceStatic(IPrototypeShader* prototype);
    bool _OnDeleteGraph(IGraph* graph);

    void _CreateReference(IGraph* graph, std::unique_ptr<ReferencePrototypeShader>& reference);
    void _EndReference(std::map<IGraph*, UsedReference>::iterator entry);
    void _DestroyReference(IGraph* graph, std::unique_ptr<ReferencePrototypeShader> reference);
    void _ShutdownReferencePrototypeShaders();
    void _ShutdownPrototypeParameters();
    void _ShutdownPrototypeMembers();
    void _ShutdownParameters();
    void _ShutdownMembers();
    template <class Call>
    bool _SetParameter(const std::string& name, Miss miss, Call call);

    Library* _pLibrary = nullptr;       ///< borrowed
    std::unique_ptr<Module> _pStatic;   ///< code that exists once; null until built
    std::unique_ptr<Module> _pTemplate; ///< code that each shader copies; null until built
    std::set<PrototypeShader*, ByCreation> _staticReferences; ///< called statically, borrowed
    std::set<PrototypeShader*, ByCreation> _staticUsers; ///< call this one statically, borrowed
    std::vector<ParameterInterface*> _inputs; ///< those of _parameters that take shaders, borrowed
    std::map<std::string, std::string> _methodNames; ///< static methods: declared name to mangled
    std::map<std::string, std::unique_ptr<IParameter>> _parameters;
    std::map<std::string, std::unique_ptr<IMember>> _members;
    std::map<IGraph*, UsedReference> _references;
    IPrototypeInterface* _pPrototypeInterface = nullptr; ///< borrowed, null if none
    ClassDefinition* _pClass = nullptr;                  ///< borrowed from the library's module
    std::map<std::string, std::unique_ptr<IPrototypeParameter>> _prototypeParameters;
    std::map<std::string, std::unique_ptr<IPrototypeMember>> _prototypeMembers;
    ShaderTable _shaders;
    ListenerSet<FastDelegate1<IPrototypeShader*, bool>> _listenersDelete;
    ListenerSet<FastDelegate1<PrototypeShader*, bool>> _listenersChangeStructure;
    std::unique_ptr<FreeFunctions> _pFreeFunctions; ///< what the code calls outside of classes
    std::uint64_t _countReferences = 0;             ///< references entered so far
    bool _isReady = false;                          ///< whether Init is through
    bool _isBusy = false; ///< while the prototype or one of its shaders is being made or it closes
};

} // namespace Tolen::Effects
