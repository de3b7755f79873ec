#pragma once

/// @file
/// The declarations. Operations that take a node take its ownership, and setters of children delete
/// the child they replace, accept null and answer true.

#include "TolenEffects/Syntax.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_set>
#include <vector>

namespace Tolen::Effects {

class CompoundStatement;
class Expression;
class Type;

/// The base of all declarations but FunctionParameter.
class TOLEN_EXPORT Declaration : public Syntax {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_Declaration; }

    ~Declaration() override;
    Class GetClass() const override = 0;
    /// A deep copy in @p target, with the source's range, that nobody owns yet. Optimization marks
    /// are not copied.
    virtual Declaration* Clone(Module* target) const = 0;
    /// Whether @p other, which may be null, declares the same. Ranges and marks don't count.
    virtual bool Equals(const Declaration* other) const = 0;
    /// Calls the reading Visit of @p visitor for this kind of node. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor) const = 0;
    /// Calls the mutating Visit of @p visitor for this kind of node. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor) = 0;

    /// The module that the node belongs to.
    Module* GetModule() const { return _pModule; }

protected:
    /// A node of @p module, which is borrowed.
    explicit Declaration(Module* module) : _pModule(module) {}
    Declaration(const Declaration&) = delete;

    Module* _pModule; ///< borrowed
};

/// A variable: a local or global one, a member, an input or a coordinate of a class.
/// @extends Declaration
class TOLEN_EXPORT VariableDeclaration
    : public TPlainNode<VariableDeclaration, kClass_VariableDeclaration, Declaration> {
public:
    ~VariableDeclaration() override;
    VariableDeclaration* Clone(Module* target) const override;
    bool Equals(const Declaration* other) const override;
    /// By storage qualifier, then by name.
    virtual bool operator<(const VariableDeclaration& other) const;

    /// Whether the variable belongs to the class and not to each shader.
    bool IsStatic() const { return _static; }
    /// Sets whether the variable belongs to the class.
    void SetStatic(bool isStatic) { _static = isStatic; }
    /// Whether "const" stands before the type.
    bool IsConst() const { return _const; }
    /// Sets whether "const" stands before the type.
    void SetConst(bool isConst) { _const = isConst; }
    /// What stands before the type.
    StorageQualifier GetStorageQualifier() const { return _storageQualifier; }
    /// Replaces what stands before the type.
    void SetStorageQualifier(StorageQualifier qualifier) { _storageQualifier = qualifier; }
    /// How a coord is moved to world space.
    TransformationCoord GetTransformation() const { return _transformation; }
    /// Sets how a coord is moved to world space.
    void SetTransformation(TransformationCoord transformation) { _transformation = transformation; }
    /// The type, of one element and the array together.
    Type* GetType() const { return _pType.get(); }
    /// Replaces the type. @return true
    bool SetType(Type* type);
    /// The name, which may be changed in place.
    String* GetIdentifier() const { return _pIdentifier; }
    /// Null when there is none.
    Expression* GetInitializer() const { return _pInitializer.get(); }
    /// Replaces the initializer. @return true
    bool SetInitializer(Expression* initializer);

private:
    friend class Module;
    VariableDeclaration(Module* module, Type* type, String* identifier, Expression* initializer);

    bool _static = false;
    bool _const = false;
    StorageQualifier _storageQualifier = kStorageQualifier_None;
    TransformationCoord _transformation = kTransformationCoord_Coord;
    std::unique_ptr<Type> _pType;
    String* _pIdentifier;
    std::unique_ptr<Expression> _pInitializer;
};

/// A parameter of a function; no Declaration.
class TOLEN_EXPORT FunctionParameter : public Syntax {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_FunctionParameter; }

    ~FunctionParameter() override;
    Class GetClass() const override { return kClass_FunctionParameter; }
    /// A deep copy in @p target, with the source's range, that nobody owns yet.
    virtual FunctionParameter* Clone(Module* target) const;
    /// Whether @p other, which may be null, has the same type, name and qualifier.
    virtual bool Equals(const FunctionParameter* other) const;
    /// By type specifier, qualifier and name; an unnamed parameter counts as one with no text.
    virtual bool operator<(const FunctionParameter& other) const;
    /// Calls the reading Visit of @p visitor for this kind of node. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor) const;
    /// Calls the mutating Visit of @p visitor for this kind of node. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor);

    /// The module that the node belongs to.
    Module* GetModule() const { return _pModule; }

    /// The type of the parameter.
    Type* GetType() const { return _pType.get(); }
    /// Replaces the type. @return true
    bool SetType(Type* type);
    /// Null for an unnamed parameter.
    String* GetName() const { return _pName; }
    /// Stores @p name and releases the one before.
    void SetName(String* name);
    /// The direction in which the value goes.
    ParameterQualifier GetParameterQualifier() const { return _parameterQualifier; }
    /// Sets the direction.
    void SetParameterQualifier(ParameterQualifier qualifier) { _parameterQualifier = qualifier; }

private:
    friend class Module;
    FunctionParameter(Module* module, Type* type);
    FunctionParameter(const FunctionParameter&) = delete;

    Module* _pModule; ///< borrowed
    std::unique_ptr<Type> _pType;
    String* _pName = nullptr;
    ParameterQualifier _parameterQualifier = kParameterQualifier_In;
};

/// The head of a function.
/// @extends Declaration
class TOLEN_EXPORT FunctionPrototype
    : public TPlainNode<FunctionPrototype, kClass_FunctionPrototype, Declaration> {
public:
    ~FunctionPrototype() override;
    FunctionPrototype* Clone(Module* target) const override;
    /// Qualifier, return type, name and the parameters of this one against the other's. One-sided:
    /// an other with more parameters can be equal, one with fewer is not.
    bool Equals(const Declaration* other) const override;
    /// By qualifier, name, return type specifier, parameter count and parameters. Stops at the
    /// first pair of parameters that isn't equal, so it is no strict weak order over prototypes
    /// that differ in array lengths alone; sort with a stable sort.
    virtual bool operator<(const FunctionPrototype& other) const;

    /// As Equals, but the names of parameters don't count.
    bool Equivalent(const Declaration* other) const;

    /// Whether the method is static.
    FunctionQualifier GetQualifier() const { return _qualifier; }
    /// Sets whether the method is static.
    void SetQualifier(FunctionQualifier qualifier) { _qualifier = qualifier; }
    /// Null until the parser has read it.
    Type* GetReturnType() const { return _pReturnType.get(); }
    /// Replaces the return type. @return true
    bool SetReturnType(Type* type);
    /// Rename with GetName()->SetString.
    String* GetName() const { return _pName; }
    /// Whether the printer leaves the function out, and why.
    Optimization GetOptimization() const { return _optimization; }
    /// Marks the function for the printer.
    void SetOptimization(Optimization optimization) { _optimization = optimization; }

    /// Appends a parameter.
    void AddParameter(FunctionParameter* parameter);
    /// The parameters in order, owned by the prototype.
    std::vector<FunctionParameter*>& GetParameters() { return _parameters; }
    /// The parameters, to be read.
    const std::vector<FunctionParameter*>& GetParameters() const { return _parameters; }
    /// The number of parameters.
    std::size_t GetCountParameters() const { return _parameters.size(); }

private:
    friend class Module;
    FunctionPrototype(Module* module, FunctionQualifier qualifier, Type* returnType, String* name);

    FunctionQualifier _qualifier;
    std::unique_ptr<Type> _pReturnType;
    String* _pName;
    std::vector<FunctionParameter*> _parameters; ///< owned
    Optimization _optimization = OptimizationNone;
};

/// A function with its body.
/// @extends Declaration
class TOLEN_EXPORT FunctionDefinition
    : public TPlainNode<FunctionDefinition, kClass_FunctionDefinition, Declaration> {
public:
    ~FunctionDefinition() override;
    FunctionDefinition* Clone(Module* target) const override;
    bool Equals(const Declaration* other) const override;
    /// By the order of the prototypes.
    virtual bool operator<(const FunctionDefinition& other) const;

    /// The head of the function.
    FunctionPrototype* GetFunctionPrototype() const { return _pFunctionPrototype.get(); }
    /// The body of the function.
    CompoundStatement* GetCompoundStatement() const { return _pCompoundStatement.get(); }
    /// Replaces the body. @return true
    bool SetCompoundStatement(CompoundStatement* statement);
    /// Whether the printer leaves the function out, and why.
    Optimization GetOptimization() const { return _optimization; }
    /// Marks the function for the printer.
    void SetOptimization(Optimization optimization) { _optimization = optimization; }

private:
    friend class Module;
    FunctionDefinition(Module* module, FunctionPrototype* prototype, CompoundStatement* statement);

    std::unique_ptr<FunctionPrototype> _pFunctionPrototype;
    std::unique_ptr<CompoundStatement> _pCompoundStatement;
    Optimization _optimization = OptimizationNone;
};

/// A structure or a uniform block. No source declares one; the compile stage does.
/// @extends Declaration
class TOLEN_EXPORT StructDefinition
    : public TPlainNode<StructDefinition, kClass_StructDefinition, Declaration> {
public:
    ~StructDefinition() override;
    StructDefinition* Clone(Module* target) const override;
    bool Equals(const Declaration* other) const override;
    /// By name.
    virtual bool operator<(const StructDefinition& other) const;

    /// Null until it is set.
    String* GetName() const { return _pName; }
    /// Stores the pointer; the name before stays with the module.
    void SetName(String* name) { _pName = name; }
    /// Whether this is a uniform block.
    bool IsUniform() const { return _uniform; }
    /// Sets whether this is a uniform block.
    void SetUniform(bool uniform) { _uniform = uniform; }

    /// Appends a member.
    void AddMemberVariable(VariableDeclaration* variable);
    /// The members in order, owned by the structure.
    std::vector<VariableDeclaration*>& GetMemberVariables() { return _memberVariables; }
    /// The members, to be read.
    const std::vector<VariableDeclaration*>& GetMemberVariables() const { return _memberVariables; }
    /// The number of members.
    std::size_t GetCountMemberVariables() const { return _memberVariables.size(); }

private:
    friend class Module;
    explicit StructDefinition(Module* module);

    String* _pName = nullptr;
    bool _uniform = false;
    std::vector<VariableDeclaration*> _memberVariables; ///< owned
};

/// A shader class.
/// @extends Declaration
class TOLEN_EXPORT ClassDefinition
    : public TPlainNode<ClassDefinition, kClass_ClassDefinition, Declaration> {
public:
    /// The coords by name.
    using Coords = std::map<std::string, VariableDeclaration*>;
    /// The types of the outputs by name, in the order in which the names were made.
    using Outputs = std::map<String*, Type*, StringCreationOrder>;

    ~ClassDefinition() override;
    ClassDefinition* Clone(Module* target) const override;
    /// Always false: two classes are never taken for the same.
    bool Equals(const Declaration* other) const override;

    /// Null until it is set.
    String* GetName() const { return _pName; }
    /// Stores the pointer; the name before stays with the module.
    void SetName(String* name) { _pName = name; }
    /// The name of the implemented interface, null if there is none.
    String* GetInterface() const { return _pInterface; }
    /// Stores the pointer; the name before stays with the module.
    void SetInterface(String* name) { _pInterface = name; }

    /// Appends a plain member or an input.
    void AddMemberVariable(VariableDeclaration* variable);
    /// Plain members and inputs in order, owned by the class.
    std::vector<VariableDeclaration*>& GetMemberVariables() { return _memberVariables; }
    /// Plain members and inputs, to be read.
    const std::vector<VariableDeclaration*>& GetMemberVariables() const { return _memberVariables; }
    /// The number of plain members and inputs.
    std::size_t GetCountMemberVariables() const { return _memberVariables.size(); }

    /// Appends a method.
    void AddMemberFunction(FunctionDefinition* function);
    /// The methods in order, owned by the class.
    std::vector<FunctionDefinition*>& GetMemberFunctions() { return _memberFunctions; }
    /// The methods, to be read.
    const std::vector<FunctionDefinition*>& GetMemberFunctions() const { return _memberFunctions; }
    /// The number of methods.
    std::size_t GetCountMemberFunctions() const { return _memberFunctions.size(); }

    /// Enters a coordinate member under its name.
    /// @return false, with @p coord still the caller's, when there is one of this name
    bool AddCoord(VariableDeclaration* coord);
    /// The coordinate members, owned by the class.
    Coords& GetCoords() { return _coords; }
    /// The coordinate members, to be read.
    const Coords& GetCoords() const { return _coords; }
    /// The number of coordinate members.
    std::size_t GetCountCoords() const { return _coords.size(); }

    /// Enters an output, whose name must not be changed from then on.
    /// @return false, with @p type and @p name still the caller's, when there is one with this text
    bool AddOutput(Type* type, String* name);
    /// The outputs, owned by the class.
    Outputs& GetOutputs() { return _outputs; }
    /// The outputs, to be read.
    const Outputs& GetOutputs() const { return _outputs; }
    /// The number of outputs.
    std::size_t GetCountOutputs() const { return _outputs.size(); }

private:
    friend class Module;
    explicit ClassDefinition(Module* module);

    String* _pName = nullptr;
    String* _pInterface = nullptr;
    std::vector<VariableDeclaration*> _memberVariables; ///< owned
    std::vector<FunctionDefinition*> _memberFunctions;  ///< owned
    Coords _coords;                                     ///< values owned
    Outputs _outputs;                                   ///< keys and values owned
    std::unordered_set<std::string> _outputNames;       ///< texts of the outputs' names
};

/// An interface that classes implement.
/// @extends Declaration
class TOLEN_EXPORT InterfaceDefinition
    : public TPlainNode<InterfaceDefinition, kClass_InterfaceDefinition, Declaration> {
public:
    ~InterfaceDefinition() override;
    InterfaceDefinition* Clone(Module* target) const override;
    /// By the member functions; the name doesn't count.
    bool Equals(const Declaration* other) const override;

    /// Null until it is set.
    String* GetName() const { return _pName; }
    /// Stores the pointer; the name before stays with the module.
    void SetName(String* name) { _pName = name; }

    /// Appends a method.
    void AddMemberFunction(FunctionPrototype* function);
    /// The methods in order, owned by the interface.
    std::vector<FunctionPrototype*>& GetMemberFunctions() { return _memberFunctions; }
    /// The methods, to be read.
    const std::vector<FunctionPrototype*>& GetMemberFunctions() const { return _memberFunctions; }
    /// The number of methods.
    std::size_t GetCountMemberFunctions() const { return _memberFunctions.size(); }

private:
    friend class Module;
    explicit InterfaceDefinition(Module* module);

    String* _pName = nullptr;
    std::vector<FunctionPrototype*> _memberFunctions; ///< owned
};

} // namespace Tolen::Effects
