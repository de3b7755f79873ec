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
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_Module; }

    ~Module() override;
    Class GetClass() const override { return kClass_Module; }
    /// Appends clones of all declarations and definitions to @p target, where an interface takes
    /// the place of one with its name in the lookup, and copies the range. Stand-alone statements
    /// and expressions and the messages stay out. @return @p target
    virtual Module* Clone(Module* target) const;
    /// Calls the reading Visit of @p visitor, which visits all of the tree. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor) const;
    /// Calls the mutating Visit of @p visitor, which visits all of the tree. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor);

    /// A new empty module.
    /// @param allocation ignored; null is the usual value
    /// @return owned by the caller, who deletes it
    static Module* Create(AllocationDummy* allocation);

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// @name Nodes
    /// Each factory takes the ownership of the nodes given to it and returns a node with a cleared
    /// range that belongs to the caller until a parent or one of the Add operations takes it.
    /// @{

    /// `left op= right`; kOperator_Assign for the plain one.
    Assignment* CreateAssignment(Operator op, Expression* left, Expression* right);
    /// `left op right`.
    BinaryOperator* CreateBinaryOperator(Operator op, Expression* left, Expression* right);
    /// `true` or `false`.
    BoolConstant* CreateBoolConstant(bool value);
    /// A class without a name and members.
    ClassDefinition* CreateClassDefinition();
    /// A block without statements.
    CompoundStatement* CreateCompoundStatement();
    /// A block with a first statement and, still, a cleared range.
    CompoundStatement* CreateCompoundStatement(Statement* first);
    /// The condition of a loop that declares a variable.
    Condition* CreateCondition(Declaration* declaration);
    /// The condition of a loop that is an expression.
    Condition* CreateCondition(Expression* expression);
    /// `condition ? ifTrue : ifFalse`.
    Conditional* CreateConditional(Expression* condition, Expression* ifTrue, Expression* ifFalse);
    /// The declaration of a variable as a statement.
    DeclarationStatement* CreateDeclarationStatement(VariableDeclaration* declaration);
    /// `do statement while (expression);`.
    DoWhileStatement* CreateDoWhileStatement(Statement* statement, Expression* expression);
    /// A lone ";".
    EmptyStatement* CreateEmptyStatement();
    /// An expression as a statement.
    ExpressionStatement* CreateExpressionStatement(Expression* expression);
    /// `expression.field`.
    FieldSelection* CreateFieldSelection(Expression* expression, String* field);
    /// Spells the value by "%#.16g".
    FloatConstant* CreateFloatConstant(double value);
    /// Reads the value from the spelling; a trailing "f" doesn't matter.
    FloatConstant* CreateFloatConstant(String* string);
    /// Takes the spelling and the value as they are.
    FloatConstant* CreateFloatConstant(String* string, double value);
    /// A loop with nothing but what runs after each round, which may be null.
    ForStatement* CreateForStatement(Expression* iteration);
    /// The call of a function, without arguments.
    FunctionCall* CreateFunctionCall(String* name);
    /// The constructor of a type, without arguments.
    FunctionCall* CreateFunctionCall(Type* type);
    /// A function: its head and its body.
    FunctionDefinition* CreateFunctionDefinition(FunctionPrototype* prototype,
                                                 CompoundStatement* statement);
    /// A parameter without a name.
    FunctionParameter* CreateFunctionParameter(Type* type);
    /// The head of a function, without parameters.
    FunctionPrototype* CreateFunctionPrototype(FunctionQualifier qualifier, Type* returnType,
                                               String* name);
    /// `expression.function(...)`.
    FunctionSelection* CreateFunctionSelection(Expression* expression, FunctionCall* function);
    /// Keeps the low 32 bits of the value.
    IntConstant* CreateIntConstant(long value);
    /// An interface without a name and methods.
    InterfaceDefinition* CreateInterfaceDefinition();
    /// `continue`, `break` or `return`; @p expression is the value of a `return`, or null.
    JumpStatement* CreateJumpStatement(JumpType type, Expression* expression);
    /// `expression op`.
    PostOperator* CreatePostOperator(Operator op, Expression* expression);
    /// An `if` of which everything is still to be set.
    SelectionStatement* CreateSelectionStatement();
    /// A structure without a name and members.
    StructDefinition* CreateStructDefinition();
    /// `array[index]`.
    Subscript* CreateSubscript(Expression* array, Expression* index);
    /// A type that is no array.
    Type* CreateType(TypeSpecifier typeSpecifier);
    /// `op expression`.
    UnaryOperator* CreateUnaryOperator(Operator op, Expression* expression);
    /// A type by its name.
    UserType* CreateUserType(String* name);
    /// The use of a variable.
    Variable* CreateVariable(String* identifier);
    /// The declaration of a variable; @p initializer may be null.
    VariableDeclaration* CreateVariableDeclaration(Type* type, String* identifier,
                                                   Expression* initializer);
    /// `while (condition) statement`.
    WhileStatement* CreateWhileStatement(Condition* condition, Statement* statement);
    /// @}

    /// @name Names
    /// @{

    /// Makes a name that lives until DestroyString or the end of the module.
    String* CreateString(const char* text);
    /// Deletes the name and sets @p string to null if the module has it; otherwise does nothing.
    void DestroyString(String*& string);
    /// Leaves the name to the caller, who deletes it. @return whether the module had it
    bool RemoveString(String* string);

    /// @}

    /// @name Contents
    /// The lists own their elements. The Remove operations give an element back to the caller and
    /// do nothing for one that isn't there; the vectors may be reordered in place.
    /// @{

    /// Appends a global variable.
    void AddVariableDeclaration(DeclarationStatement* declaration);
    /// Takes a global variable out.
    void RemoveVariableDeclaration(DeclarationStatement* declaration);
    /// The global variables in order, owned by the module.
    std::vector<DeclarationStatement*>& GetVariableDeclarations() { return _variableDeclarations; }
    /// The global variables, to be read.
    const std::vector<DeclarationStatement*>& GetVariableDeclarations() const {
        return _variableDeclarations;
    }
    /// The number of global variables.
    std::size_t GetCountVariableDeclarations() const { return _variableDeclarations.size(); }

    /// Appends the prototype of a function.
    void AddFunctionDeclaration(FunctionPrototype* prototype);
    /// Takes the prototype of a function out.
    void RemoveFunctionDeclaration(FunctionPrototype* prototype);
    /// Deletes all prototypes of the list.
    void ClearFunctionDeclarations();
    /// The prototypes in order, owned by the module.
    std::vector<FunctionPrototype*>& GetFunctionDeclarations() { return _functionDeclarations; }
    /// The prototypes, to be read.
    const std::vector<FunctionPrototype*>& GetFunctionDeclarations() const {
        return _functionDeclarations;
    }
    /// The number of prototypes.
    std::size_t GetCountFunctionDeclarations() const { return _functionDeclarations.size(); }

    /// Appends a function.
    void AddFunctionDefinition(FunctionDefinition* definition);
    /// Takes a function out.
    void RemoveFunctionDefinition(FunctionDefinition* definition);
    /// The functions in order, owned by the module.
    std::vector<FunctionDefinition*>& GetFunctionDefinitions() { return _functionDefinitions; }
    /// The functions, to be read.
    const std::vector<FunctionDefinition*>& GetFunctionDefinitions() const {
        return _functionDefinitions;
    }
    /// The number of functions.
    std::size_t GetCountFunctionDefinitions() const { return _functionDefinitions.size(); }

    /// Appends a structure.
    void AddStructDefinition(StructDefinition* definition);
    /// Takes a structure out.
    void RemoveStructDefinition(StructDefinition* definition);
    /// The structures in order, owned by the module.
    std::vector<StructDefinition*>& GetStructDefinitions() { return _structDefinitions; }
    /// The structures, to be read.
    const std::vector<StructDefinition*>& GetStructDefinitions() const {
        return _structDefinitions;
    }
    /// The number of structures.
    std::size_t GetCountStructDefinitions() const { return _structDefinitions.size(); }

    /// Appends a class.
    void AddClassDefinition(ClassDefinition* definition);
    /// Takes a class out.
    void RemoveClassDefinition(ClassDefinition* definition);
    /// The classes in order, owned by the module.
    std::vector<ClassDefinition*>& GetClassDefinitions() { return _classDefinitions; }
    /// The classes, to be read.
    const std::vector<ClassDefinition*>& GetClassDefinitions() const { return _classDefinitions; }
    /// The number of classes.
    std::size_t GetCountClassDefinitions() const { return _classDefinitions.size(); }

    /// Appends an interface, which also takes over the lookup of its name; that must be set before.
    void AddInterfaceDefinition(InterfaceDefinition* definition);
    /// Takes an interface out. The lookup of its name ends if it leads to this very definition.
    void RemoveInterfaceDefinition(InterfaceDefinition* definition);
    /// The interfaces in order, owned by the module.
    std::vector<InterfaceDefinition*>& GetInterfaceDefinitions() { return _interfaceDefinitions; }
    /// The interfaces, to be read.
    const std::vector<InterfaceDefinition*>& GetInterfaceDefinitions() const {
        return _interfaceDefinitions;
    }
    /// The number of interfaces.
    std::size_t GetCountInterfaceDefinitions() const { return _interfaceDefinitions.size(); }
    /// The interfaces that lookups find, by the names under which they were added.
    const std::map<std::string, InterfaceDefinition*>& GetInterfacesByName() const {
        return _interfacesByName;
    }

    /// Appends a statement that stands alone. @return true
    bool AddStatement(Statement* statement);
    /// The stand-alone statements in order, owned by the module.
    std::vector<Statement*>& GetStatements() { return _statements; }
    /// The stand-alone statements, to be read.
    const std::vector<Statement*>& GetStatements() const { return _statements; }
    /// The number of stand-alone statements.
    std::size_t GetCountStatements() const { return _statements.size(); }

    /// Appends an expression that stands alone. @return true
    bool AddExpression(Expression* expression);
    /// The stand-alone expressions in order, owned by the module.
    std::vector<Expression*>& GetExpressions() { return _expressions; }
    /// The stand-alone expressions, to be read.
    const std::vector<Expression*>& GetExpressions() const { return _expressions; }
    /// The number of stand-alone expressions.
    std::size_t GetCountExpressions() const { return _expressions.size(); }
    /// @}

    /// @name Lookups
    /// By name: the first of the list that has it, for interfaces the last added; null when there
    /// is none. What is found belongs to the module.
    /// @{

    /// A class by its name; null when there is none.
    ClassDefinition* GetClassDefinition(const std::string& name) const;
    /// A structure by its name; null when there is none.
    StructDefinition* GetStructDefinition(const std::string& name) const;
    /// A function by its name; null when there is none.
    FunctionDefinition* GetFunctionDefinition(const std::string& name) const;
    /// A prototype by its name; null when there is none.
    FunctionPrototype* GetFunctionDeclaration(const std::string& name) const;
    /// An interface by its name; null when there is none.
    InterfaceDefinition* GetInterfaceDefinition(const std::string& name) const;
    /// @}

    /// @name Messages
    /// They are kept for whoever asks; nothing is printed.
    /// @{

    /// Keeps an error.
    void LogError(const char* message) { _errorMessages.emplace_back(message); }
    /// Keeps an error.
    void LogError(const std::string& message) { _errorMessages.push_back(message); }
    /// Keeps a warning.
    void LogWarning(const char* message) { _warningMessages.emplace_back(message); }
    /// Keeps a warning.
    void LogWarning(const std::string& message) { _warningMessages.push_back(message); }
    /// The errors, oldest first.
    const std::vector<std::string>& ErrorMessages() const { return _errorMessages; }
    /// The warnings, oldest first.
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
