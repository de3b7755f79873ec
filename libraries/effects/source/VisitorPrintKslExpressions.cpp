#include "TolenEffects/VisitorPrintKsl.h"

#include "LocationText.h"
#include "SyntaxWalk.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Console.h"
#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cmath>

/// The text of expressions. They stand on the line that is begun already.

namespace Tolen::Effects {

namespace {

/// Whether @p operand binds weaker than every operator and prints no parentheses around itself.
bool IsLoose(const Expression* operand) {
    return AsExactly<Conditional>(operand) != nullptr || AsExactly<Assignment>(operand) != nullptr;
}

bool IsNegative(const Expression* operand) {
    if (const auto* integer = AsExactly<IntConstant>(operand)) {
        return integer->GetValue() < 0;
    }
    const auto* number = AsExactly<FloatConstant>(operand);
    return number != nullptr && std::signbit(number->GetValue());
}

/// Whether the operand of something behind it would lose it to an operator of its own before it.
bool IsPrefixed(const Expression* operand) {
    return AsExactly<UnaryOperator>(operand) != nullptr || IsNegative(operand);
}

bool NeedsParenthesesBeforePostfix(const Expression* operand) {
    return IsLoose(operand) || IsPrefixed(operand);
}

/// What stands first in @p node when the text goes on to the left below it, otherwise null.
const Expression* LeftPart(const Expression* node) {
    if (const auto* subscript = AsExactly<Subscript>(node)) {
        return subscript->GetArray();
    }
    if (const auto* selection = AsExactly<FieldSelection>(node)) {
        return selection->GetExpression();
    }
    const auto* post = AsExactly<PostOperator>(node);
    return post == nullptr ? nullptr : post->GetExpression();
}

/// Whether the text of @p operand begins with the sign that ends @p op, so that both would be read
/// as one longer operator.
bool JoinsOperator(Operator op, const Expression* operand) {
    const char sign = std::string_view(OperatorToString(op)).back();
    if (sign != '+' && sign != '-') {
        return false;
    }
    while (const Expression* left = LeftPart(operand)) {
        if (NeedsParenthesesBeforePostfix(left)) {
            return false;
        }
        operand = left;
    }
    if (const auto* unary = AsExactly<UnaryOperator>(operand)) {
        return OperatorToString(unary->GetOperator())[0] == sign;
    }
    return sign == '-' && IsNegative(operand);
}

bool NeedsParenthesesBehind(Operator op, const Expression* operand) {
    return IsLoose(operand) || JoinsOperator(op, operand);
}

bool IsDigitsOnly(std::string_view spelling) {
    if (!spelling.empty() && spelling.front() == '-') {
        spelling.remove_prefix(1);
    }
    return !spelling.empty() && spelling.find_first_not_of("0123456789") == std::string_view::npos;
}

/// What is called: a function, or a built-in type that is constructed.
std::string_view CalleeText(const FunctionCall& call) {
    if (call.GetName() != nullptr) {
        return call.GetName()->GetString();
    }
    const TypeSpecifier specifier =
        call.GetType() == nullptr ? kType_Void : call.GetType()->GetTypeSpecifier();
    return specifier >= kType_Float && specifier <= kType_Mat4 ? TypeSpecifierToString(specifier)
                                                               : "";
}

} // namespace

bool VisitorPrintKsl::_Print(Expression* expression) {
    return expression == nullptr ||
           expression->AcceptVisitor(this, static_cast<TIParentSyntax<Expression>*>(nullptr));
}

bool VisitorPrintKsl::_PrintOperand(Expression* operand, bool parentheses) {
    return parentheses ? _Append("(") && _Print(operand) && _Append(")") : _Print(operand);
}

bool VisitorPrintKsl::_PrintList(const std::vector<Expression*>& expressions, std::size_t first) {
    for (std::size_t i = first; i < expressions.size(); ++i) {
        if ((i > 0 && !_Append(", ")) || !_Print(expressions[i])) {
            return false;
        }
    }
    return true;
}

bool VisitorPrintKsl::Visit(Variable* node, TIParentSyntax<Expression>*) {
    return node->GetIdentifier() == nullptr || _Append(node->GetIdentifier()->GetString());
}

bool VisitorPrintKsl::Visit(BoolConstant* node, TIParentSyntax<Expression>*) {
    return _Append(node->GetValue() ? "true" : "false");
}

bool VisitorPrintKsl::Visit(IntConstant* node, TIParentSyntax<Expression>*) {
    return _Append(std::to_string(node->GetValue()));
}

bool VisitorPrintKsl::Visit(FloatConstant* node, TIParentSyntax<Expression>*) {
    if (node->GetString() == nullptr) {
        return _Append(Format("%#.16g", node->GetValue()));
    }
    std::string& spelling = node->GetString()->GetString();
    if (!spelling.empty() && spelling.back() == 'f') {
        spelling.pop_back();
    }
    // Without the "f" such a number would be read as an integer.
    return _Append(spelling) && (!IsDigitsOnly(spelling) || _Append(".0"));
}

bool VisitorPrintKsl::Visit(BinaryOperator* node, TIParentSyntax<Expression>*) {
    // The operators along the left operands may be of any number: print upwards from the last.
    std::vector<BinaryOperator*> chain;
    for (BinaryOperator* next = node; next != nullptr;
         next = AsExactly<BinaryOperator>(next->GetLeft())) {
        chain.push_back(next);
        if (!_Append("(")) {
            return false;
        }
    }
    Expression* first = chain.back()->GetLeft();
    if (!_PrintOperand(first, IsLoose(first))) {
        return false;
    }
    return std::all_of(chain.rbegin(), chain.rend(), [this](const BinaryOperator* next) {
        const Operator op = next->GetOperator();
        Expression* right = next->GetRight();
        return _Append(OperatorToString(op)) &&
               _PrintOperand(right, NeedsParenthesesBehind(op, right)) && _Append(")");
    });
}

bool VisitorPrintKsl::Visit(UnaryOperator* node, TIParentSyntax<Expression>*) {
    const Operator op = node->GetOperator();
    Expression* operand = node->GetExpression();
    return _Append(OperatorToString(op)) &&
           _PrintOperand(operand, NeedsParenthesesBehind(op, operand));
}

bool VisitorPrintKsl::Visit(PostOperator* node, TIParentSyntax<Expression>*) {
    Expression* operand = node->GetExpression();
    return _PrintOperand(operand, NeedsParenthesesBeforePostfix(operand)) &&
           _Append(OperatorToString(node->GetOperator()));
}

bool VisitorPrintKsl::Visit(Assignment* node, TIParentSyntax<Expression>*) {
    const Operator op = node->GetOperator();
    Expression* left = node->GetLeft();
    if (!_PrintOperand(left, IsLoose(left))) {
        return false;
    }
    if (op == kOperator_Assign) {
        return _Append(" = ") && _Print(node->GetRight());
    }
    return _Append(OperatorToString(op)) && _Append("= ") && _Print(node->GetRight());
}

bool VisitorPrintKsl::Visit(Conditional* node, TIParentSyntax<Expression>*) {
    return _Append("(") && _Print(node->GetCondition()) && _Append(") ? (") &&
           _Print(node->GetTrue()) && _Append(") : (") && _Print(node->GetFalse()) && _Append(")");
}

bool VisitorPrintKsl::Visit(Subscript* node, TIParentSyntax<Expression>*) {
    Expression* array = node->GetArray();
    return _PrintOperand(array, NeedsParenthesesBeforePostfix(array)) && _Append("[") &&
           _Print(node->GetIndex()) && _Append("]");
}

bool VisitorPrintKsl::Visit(FieldSelection* node, TIParentSyntax<Expression>*) {
    // The "." behind an integer would make it a float.
    Expression* object = node->GetExpression();
    const bool parentheses =
        NeedsParenthesesBeforePostfix(object) || AsExactly<IntConstant>(object) != nullptr;
    return _PrintOperand(object, parentheses) && _Append(".") &&
           (node->GetField() == nullptr || _Append(node->GetField()->GetString()));
}

bool VisitorPrintKsl::Visit(FunctionSelection* node, TIParentSyntax<Expression>*) {
    if (_pResult == nullptr) {
        return false;
    }
    const std::string location = LocationText(node->GetRange());
    const auto* object = AsExactly<Variable>(node->GetExpression());
    if (object != nullptr && object->GetIdentifier() != nullptr) {
        _pResult->Add("%s: Class \"%s\" cannot be found.", location.c_str(),
                      object->GetIdentifier()->GetString().c_str());
    } else {
        _pResult->Add("%s: Class for function selection cannot be resolved.", location.c_str());
    }
    return false;
}

bool VisitorPrintKsl::Visit(Condition* node, TIParentSyntax<Expression>*) {
    return node->GetDeclaration() != nullptr ? _Print(node->GetDeclaration())
                                             : _Print(node->GetExpression());
}

bool VisitorPrintKsl::Visit(FunctionCall* node, TIParentSyntax<Expression>*) {
    if (node->GetName() != nullptr && node->GetOptimization() != OptimizationNone) {
        return _PrintRemovedCall(node);
    }
    if (node->GetName() != nullptr && node->GetName()->GetString() == "accumulate") {
        return _PrintAccumulate(node);
    }
    return _Append(CalleeText(*node)) && _Append("(") && _PrintList(node->GetParameters(), 0) &&
           _Append(")");
}

bool VisitorPrintKsl::_PrintRemovedCall(FunctionCall* call) {
    if (!_PrintRemoved("call to", call->GetOptimization(), call->GetName()) || !EndLine(call)) {
        return false;
    }
    if (call->GetCountParameters() == 0) {
        return true;
    }
    // The arguments may have effects of their own.
    if (!_AppendTabs() ||
        !_Append("// emitting parameters of removed call as standalone expressions:") ||
        !EndLine(call) || !_AppendTabs() || !_Append("{") || !EndLine(call)) {
        return false;
    }
    ++_indent;
    bool printed = true;
    for (Expression* parameter : call->GetParameters()) {
        printed = printed && _AppendTabs() && _Print(parameter) && _Append(";") && EndLine(call);
    }
    --_indent;
    return printed && _AppendTabs() && _Append("}");
}

bool VisitorPrintKsl::_PrintAccumulate(FunctionCall* call) {
    const std::vector<Expression*>& parameters = call->GetParameters();
    if (parameters.size() != 2) {
        _TellUser("Malformed accumulate() call found during code generation - must be of the form "
                  "accumulate(output, value)",
                  &Module::LogError);
        return false;
    }
    std::string slot;
    if (const auto* output = AsExactly<Variable>(parameters[0])) {
        const std::string& name = output->GetIdentifier()->GetString();
        if (!_useOutputIndices) {
            _TellUser("CANNOT GENERATE KLSL WITHOUT OUTPUT ATTACHMENT INDEX ARRAY",
                      &Module::LogWarning);
            return false;
        }
        if (_pMgrEffects == nullptr || !_pMgrEffects->HasOutput(name)) {
            _TellUser("accumulate() call refers to unknown output '" + name + "', call omitted...",
                      &Module::LogWarning);
            return true;
        }
        slot = "__outputAttachmentIndex_" + name;
        _outputsUsed.insert(name);
    } else if (const auto* index = AsExactly<IntConstant>(parameters[0])) {
        slot = std::to_string(index->GetValue());
    } else {
        _TellUser(
            "First parameter of an accumulate() call must be an output variable or int constant",
            &Module::LogError);
        return false;
    }
    return _Append("accumulate(") && _Append(slot) && _PrintList(parameters, 1) && _Append(")");
}

void VisitorPrintKsl::_TellUser(const std::string& message,
                                void (Module::*log)(const std::string&)) {
    if (_pModule != nullptr) {
        (_pModule->*log)(message);
    }
    ConsolePrint("%s\n", message.c_str());
}

} // namespace Tolen::Effects
