#pragma once

#include "TolenEffects/Visitor.h"

#include "TolenCore/Export.h"

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IMgrEffects;

/// Prints a tree as source text for the API's compiler.
///
/// The text is complete once `module->AcceptVisitor(&printer)` has answered true; it is made of the
/// same bytes whenever the tree is the same. Parentheses stand where a reader needs them to get the
/// same tree back, and around every binary operator. Calls and functions with an Optimization
/// become comments; an `accumulate` call that names an output gets the uniform of that output's
/// index.
///
/// Printing fails at a method call that nothing has resolved, at an `accumulate` call that can't be
/// printed and beyond kLimitGeneratedText; the text then ends there. It sorts the lists of the
/// module and takes the "f" off the spelling of its float constants.
class TOLEN_EXPORT VisitorPrintKsl : public Visitor {
public:
    /// A printer for one tree.
    /// @param result           borrowed; gets the errors; may be null
    /// @param manager          borrowed; asked which outputs there are; may be null, for none
    /// @param useOutputIndices whether `accumulate` may name outputs, whose index uniforms then
    ///                         stand before everything else
    VisitorPrintKsl(Result* result, IMgrEffects* manager, bool useOutputIndices);
    ~VisitorPrintKsl() override;

    /// The text so far, which is complete when the walk has succeeded.
    const std::string& GetText() const { return _text; }
    /// The outputs that `accumulate` calls of the text refer to.
    const std::set<std::string>& GetOutputsUsed() const { return _outputsUsed; }
    /// The node that was printed on a line of the text: the last statement or definition that began
    /// there. The module for lines that belong to none, and for those that the text doesn't have.
    /// @param line from 1
    Syntax* GetSyntaxForLine(int line) const;

    /// @cond
    using Visitor::Visit;
    bool Visit(Module* node) override;
    bool Visit(InterfaceDefinition* node) override;
    bool Visit(ClassDefinition* node) override;
    bool Visit(StructDefinition* node) override;
    bool Visit(FunctionParameter* node) override;
    bool Visit(FunctionDefinition* node) override;
    bool Visit(FunctionPrototype* node) override;
    bool Visit(VariableDeclaration* node) override;
    bool Visit(UserType* node) override;
    bool Visit(Type* node) override;
    bool Visit(JumpStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(ForStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(DoWhileStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(WhileStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(SelectionStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(CompoundStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(ExpressionStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(DeclarationStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(EmptyStatement* node, TIParentSyntax<Statement>* slot) override;
    bool Visit(Condition* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(FunctionCall* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(Subscript* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(FunctionSelection* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(FieldSelection* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(Variable* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(Conditional* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(BinaryOperator* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(PostOperator* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(UnaryOperator* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(FloatConstant* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(IntConstant* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(BoolConstant* node, TIParentSyntax<Expression>* slot) override;
    bool Visit(Assignment* node, TIParentSyntax<Expression>* slot) override;
    /// @endcond

private:
    /// Begins a line with its tabs and makes @p node the line's.
    bool StartNewLine(Syntax* node);
    /// Ends a line; @p node is the next one's until something begins there.
    bool EndLine(Syntax* node);

    /// @return false beyond the limit of the text
    bool _Append(std::string_view text);
    bool _AppendTabs();
    bool _AppendUniforms();

    bool _Print(Expression* expression);
    bool _Print(Statement* statement);
    bool _Print(Type* type);
    bool _Print(Declaration* declaration);
    /// The operand of an operator, in parentheses if @p parentheses says so.
    bool _PrintOperand(Expression* operand, bool parentheses);
    bool _PrintList(const std::vector<Expression*>& expressions, std::size_t first);
    bool _PrintBranch(Statement* statement);
    bool _PrintRemoved(const char* what, Optimization optimization, const String* name);
    bool _PrintRemovedCall(FunctionCall* call);
    bool _PrintAccumulate(FunctionCall* call);
    /// Leaves a message with the module by @p log and prints it on the console.
    void _TellUser(const std::string& message, void (Module::*log)(const std::string&));

    IMgrEffects* _pMgrEffects; ///< borrowed
    Result* _pResult;          ///< borrowed
    bool _useOutputIndices;
    Module* _pModule = nullptr; ///< borrowed
    std::string _text;
    int _indent = 0;
    std::vector<Syntax*> _lines; ///< entry i is line i + 1
    std::set<std::string> _outputsUsed;
    bool _isOverLimit = false;
};

} // namespace Tolen::Effects
