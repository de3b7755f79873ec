#pragma once

#include "TolenEffects/Declaration.h"
#include "TolenEffects/Expression.h"
#include "TolenEffects/Statement.h"
#include "TolenEffects/Syntax.h"
#include "TolenEffects/Type.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::Effects {

class StringTable;

/// The root of a syntax tree and the one maker of its nodes and names.
///
/// A module and its nodes are used by one thread at a time. Nodes that were never added anywhere,
/// or were removed from the lists, belong to the caller and must be deleted before the module is.
class TOLEN_EXPORT Module : public Syntax {
public:
    static constexpr Class ClassStatic() { return kClass_Module; }

    ~Module() override;
    Class GetClass() const override { return kClass_Module; }
    /// Appends clones of all declarations and definitions to @p target, where an interface takes
    /// the place of one with its name in the lookup, and copies the range. Stand-alone statements
    /// and expressions and the messages stay out. @return @p target
    virtual Module* Clone(Module* target) const;
    virtual bool AcceptVisitor(Visitor* visitor) const;
    virtual bool AcceptVisitor(Visitor* visitor);

    /// A new empty module. @param allocation ignored; null is the usual value
    /// @return owned by the caller, who deletes it
    static Module* Create(AllocationDummy* allocation);

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Factories. Each takes the ownership of the nodes given to it and returns a node with a
    /// cleared range that belongs to the caller until a parent or one of the Add operations takes
    /// it.
    /// @{
    Assignment* CreateAssignment(Operator op, Expression* left, Expression* right);
    BinaryOperator* CreateBinaryOperator(Operator op, Expression* left, Expression* right);
    BoolConstant* CreateBoolConstant(bool value);
    ClassDefinition* CreateClassDefinition();
    CompoundStatement* CreateCompoundStatement();
    /// A block with a first statement and, still, a cleared range.
    CompoundStatement* CreateCompoundStatement(Statement* first);
    Condition* CreateCondition(Declaration* declaration);
    Condition* CreateCondition(Expression* expression);
    Conditional* CreateConditional(Expression* condition, Expression* ifTrue, Expression* ifFalse);
    DeclarationStatement* CreateDeclarationStatement(VariableDeclaration* declaration);
    DoWhileStatement* CreateDoWhileStatement(Statement* statement, Expression* expression);
    EmptyStatement* CreateEmptyStatement();
    ExpressionStatement* CreateExpressionStatement(Expression* expression);
    FieldSelection* CreateFieldSelection(Expression* expression, String* field);
    /// Spells the value by "%#.16g".
    FloatConstant* CreateFloatConstant(double value);
    /// Reads the value from the spelling; a trailing "f" doesn't matter.
    FloatConstant* CreateFloatConstant(String* string);
    FloatConstant* CreateFloatConstant(String* string, double value);
    ForStatement* CreateForStatement(Expression* iteration);
    FunctionCall* CreateFunctionCall(String* name);
    FunctionCall* CreateFunctionCall(Type* type);
    FunctionDefinition* CreateFunctionDefinition(FunctionPrototype* prototype,
                                                 CompoundStatement* statement);
    FunctionParameter* CreateFunctionParameter(Type* type);
    FunctionPrototype* CreateFunctionPrototype(FunctionQualifier qualifier, Type* returnType,
                                               String* name);
    FunctionSelection* CreateFunctionSelection(Expression* expression, FunctionCall* function);
    /// Keeps the low 32 bits of the value.
    IntConstant* CreateIntConstant(long value);
    InterfaceDefinition* CreateInterfaceDefinition();
    JumpStatement* CreateJumpStatement(JumpType type, Expression* expression);
    PostOperator* CreatePostOperator(Operator op, Expression* expression);
    SelectionStatement* CreateSelectionStatement();
    StructDefinition* CreateStructDefinition();
    Subscript* CreateSubscript(Expression* array, Expression* index);
    Type* CreateType(TypeSpecifier typeSpecifier);
    UnaryOperator* CreateUnaryOperator(Operator op, Expression* expression);
    UserType* CreateUserType(String* name);
    Variable* CreateVariable(String* identifier);
    VariableDeclaration* CreateVariableDeclaration(Type* type, String* identifier,
                                                   Expression* initializer);
    WhileStatement* CreateWhileStatement(Condition* condition, Statement* statement);
    /// @}

    /// Makes a name that lives until DestroyString or the end of the module.
    String* CreateString(const char* text);
    /// Deletes the name and sets @p string to null if the module has it; otherwise does nothing.
    void DestroyString(String*& string);
    /// Leaves the name to the caller, who deletes it. @return whether the module had it
    bool RemoveString(String* string);

    /// The lists own their elements. The Remove operations give an element back to the caller and
    /// do nothing for one that isn't there; the vectors may be reordered in place.
    /// @{
    void AddVariableDeclaration(DeclarationStatement* declaration);
    void RemoveVariableDeclaration(DeclarationStatement* declaration);
    std::vector<DeclarationStatement*>& GetVariableDeclarations() { return _variableDeclarations; }
    const std::vector<DeclarationStatement*>& GetVariableDeclarations() const {
        return _variableDeclarations;
    }
    std::size_t GetCountVariableDeclarations() const { return _variableDeclarations.size(); }

    void AddFunctionDeclaration(FunctionPrototype* prototype);
    void RemoveFunctionDeclaration(FunctionPrototype* prototype);
    /// Deletes all prototypes of the list.
    void ClearFunctionDeclarations();
    std::vector<FunctionPrototype*>& GetFunctionDeclarations() { return _functionDeclarations; }
    const std::vector<FunctionPrototype*>& GetFunctionDeclarations() const {
        return _functionDeclarations;
    }
    std::size_t GetCountFunctionDeclarations() const { return _functionDeclarations.size(); }

    void AddFunctionDefinition(FunctionDefinition* definition);
    void RemoveFunctionDefinition(FunctionDefinition* definition);
    std::vector<FunctionDefinition*>& GetFunctionDefinitions() { return _functionDefinitions; }
    const std::vector<FunctionDefinition*>& GetFunctionDefinitions() const {
        return _functionDefinitions;
    }
    std::size_t GetCountFunctionDefinitions() const { return _functionDefinitions.size(); }

    void AddStructDefinition(StructDefinition* definition);
    void RemoveStructDefinition(StructDefinition* definition);
    std::vector<StructDefinition*>& GetStructDefinitions() { return _structDefinitions; }
    const std::vector<StructDefinition*>& GetStructDefinitions() const {
        return _structDefinitions;
    }
    std::size_t GetCountStructDefinitions() const { return _structDefinitions.size(); }

    void AddClassDefinition(ClassDefinition* definition);
    void RemoveClassDefinition(ClassDefinition* definition);
    std::vector<ClassDefinition*>& GetClassDefinitions() { return _classDefinitions; }
    const std::vector<ClassDefinition*>& GetClassDefinitions() const { return _classDefinitions; }
    std::size_t GetCountClassDefinitions() const { return _classDefinitions.size(); }

    /// The definition also takes over the lookup of its name, which must be set before.
    void AddInterfaceDefinition(InterfaceDefinition* definition);
    /// The lookup of the name ends if it leads to this very definition.
    void RemoveInterfaceDefinition(InterfaceDefinition* definition);
    std::vector<InterfaceDefinition*>& GetInterfaceDefinitions() { return _interfaceDefinitions; }
    const std::vector<InterfaceDefinition*>& GetInterfaceDefinitions() const {
        return _interfaceDefinitions;
    }
    std::size_t GetCountInterfaceDefinitions() const { return _interfaceDefinitions.size(); }
    /// The interfaces that lookups find, by the names under which they were added.
    const std::map<std::string, InterfaceDefinition*>& GetInterfacesByName() const {
        return _interfacesByName;
    }

    /// @return true
    bool AddStatement(Statement* statement);
    std::vector<Statement*>& GetStatements() { return _statements; }
    const std::vector<Statement*>& GetStatements() const { return _statements; }
    std::size_t GetCountStatements() const { return _statements.size(); }

    /// @return true
    bool AddExpression(Expression* expression);
    std::vector<Expression*>& GetExpressions() { return _expressions; }
    const std::vector<Expression*>& GetExpressions() const { return _expressions; }
    std::size_t GetCountExpressions() const { return _expressions.size(); }
    /// @}

    /// Lookups by name: the first of the list that has it, for interfaces the last added; null when
    /// there is none.
    /// @{
    ClassDefinition* GetClassDefinition(const std::string& name) const;
    StructDefinition* GetStructDefinition(const std::string& name) const;
    FunctionDefinition* GetFunctionDefinition(const std::string& name) const;
    FunctionPrototype* GetFunctionDeclaration(const std::string& name) const;
    InterfaceDefinition* GetInterfaceDefinition(const std::string& name) const;
    /// @}

    /// Messages are kept for whoever asks; nothing is printed.
    /// @{
    void LogError(const char* message) { _errorMessages.emplace_back(message); }
    void LogError(const std::string& message) { _errorMessages.push_back(message); }
    void LogWarning(const char* message) { _warningMessages.emplace_back(message); }
    void LogWarning(const std::string& message) { _warningMessages.push_back(message); }
    const std::vector<std::string>& ErrorMessages() const { return _errorMessages; }
    const std::vector<std::string>& WarningMessages() const { return _warningMessages; }
    /// @}

    /// For nodes only: destroys @p node, and whatever its destructor hands over in turn, without
    /// recursion. Null is passed over.
    void Dispose(Syntax* node);

private:
    Module();

    std::unique_ptr<StringTable> _pStrings;
    std::vector<DeclarationStatement*> _variableDeclarations;
    std::vector<FunctionPrototype*> _functionDeclarations;
    std::vector<FunctionDefinition*> _functionDefinitions;
    std::vector<StructDefinition*> _structDefinitions;
    std::vector<ClassDefinition*> _classDefinitions;
    std::vector<InterfaceDefinition*> _interfaceDefinitions;
    std::map<std::string, InterfaceDefinition*> _interfacesByName; ///< borrowed from the vector
    std::vector<std::string> _errorMessages;
    std::vector<std::string> _warningMessages;
    std::vector<Statement*> _statements;
    std::vector<Expression*> _expressions;

    std::uint64_t _countStringsMade = 0;
    std::vector<Syntax*> _condemned; ///< owned, waiting for their destruction
    bool _isDisposing = false;
};

} // namespace Tolen::Effects
