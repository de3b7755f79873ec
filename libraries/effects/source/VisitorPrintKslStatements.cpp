#include "TolenEffects/VisitorPrintKsl.h"

#include "SyntaxWalk.h"

#include "TolenEffects/Module.h"

/// The text of statements. Each begins with its own tabs and ends its own line.

namespace Tolen::Effects {

bool VisitorPrintKsl::_Print(Statement* statement) {
    return statement == nullptr ||
           statement->AcceptVisitor(this, static_cast<TIParentSyntax<Statement>*>(nullptr));
}

bool VisitorPrintKsl::_PrintBranch(Statement* statement) {
    if (AsExactly<CompoundStatement>(statement) != nullptr) {
        return _Print(statement);
    }
    ++_indent;
    const bool printed = _Print(statement);
    --_indent;
    return printed;
}

bool VisitorPrintKsl::Visit(CompoundStatement* node, TIParentSyntax<Statement>*) {
    if (!StartNewLine(node) || !_Append("{") || !EndLine(node)) {
        return false;
    }
    ++_indent;
    bool printed = true;
    for (Statement* statement : node->GetStatements()) {
        printed = printed && _Print(statement);
    }
    --_indent;
    return printed && StartNewLine(node) && _Append("}") && EndLine(node);
}

bool VisitorPrintKsl::Visit(DeclarationStatement* node, TIParentSyntax<Statement>*) {
    return StartNewLine(node) && _Print(node->GetDeclaration()) && _Append(";") && EndLine(node);
}

bool VisitorPrintKsl::Visit(ExpressionStatement* node, TIParentSyntax<Statement>*) {
    return StartNewLine(node) && _Print(node->GetExpression()) && _Append(";") && EndLine(node);
}

bool VisitorPrintKsl::Visit(EmptyStatement*, TIParentSyntax<Statement>*) {
    return _Append(";");
}

bool VisitorPrintKsl::Visit(JumpStatement* node, TIParentSyntax<Statement>*) {
    if (!StartNewLine(node)) {
        return false;
    }
    bool printed = true;
    switch (node->GetType()) {
    case kJumpType_Continue:
        printed = _Append("continue");
        break;
    case kJumpType_Break:
        printed = _Append("break");
        break;
    case kJumpType_Return:
        printed = _Append("return ") && _Print(node->GetExpression());
        break;
    }
    return printed && _Append(";") && EndLine(node);
}

bool VisitorPrintKsl::Visit(WhileStatement* node, TIParentSyntax<Statement>*) {
    return StartNewLine(node) && _Append("while(") && _Print(node->GetCondition()) &&
           _Append(")") && EndLine(node) && _Print(node->GetStatement());
}

bool VisitorPrintKsl::Visit(DoWhileStatement* node, TIParentSyntax<Statement>*) {
    return StartNewLine(node) && _Append("do") && EndLine(node) && _Print(node->GetStatement()) &&
           StartNewLine(node) && _Append("while(") && _Print(node->GetExpression()) &&
           _Append(");") && EndLine(node->GetExpression());
}

bool VisitorPrintKsl::Visit(ForStatement* node, TIParentSyntax<Statement>*) {
    // The initialization ends with its own ";".
    Statement* initialization = node->GetInitialization();
    return StartNewLine(node) && _Append("for(") &&
           (initialization == nullptr ? _Append(";") : _Print(initialization)) &&
           StartNewLine(node) && _Print(node->GetCondition()) && _Append(";") &&
           _Print(node->GetIteration()) && _Append(")") && EndLine(node) &&
           _Print(node->GetStatement());
}

bool VisitorPrintKsl::Visit(SelectionStatement* node, TIParentSyntax<Statement>*) {
    // An `else if` line may be of any length.
    while (true) {
        if (!StartNewLine(node) || !_Append("if (") || !_Print(node->GetCondition()) ||
            !_Append(")") || !EndLine(node->GetCondition()) || !_PrintBranch(node->GetThen())) {
            return false;
        }
        Statement* otherwise = node->GetElse();
        if (otherwise == nullptr) {
            return true;
        }
        if (!EndLine(node->GetThen()) || !StartNewLine(otherwise) || !_Append("else") ||
            !EndLine(otherwise) || !StartNewLine(otherwise)) {
            return false;
        }
        node = AsExactly<SelectionStatement>(otherwise);
        if (node == nullptr) {
            return _Print(otherwise);
        }
    }
}

} // namespace Tolen::Effects
