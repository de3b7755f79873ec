#include "TreePrinter.h"

#include <charconv>

namespace Tolen::OpenKL::Tests {

namespace {

std::string PrintScalar(BaseType base, ScalarValue value) {
    if (base == kBase_Bool) {
        return value.i != 0 ? "true" : "false";
    }
    if (base == kBase_Int) {
        return std::to_string(value.i);
    }
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof(buffer), value.f);
    std::string text(buffer, end.ptr);
    return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
}

std::string PrintLiteral(const LiteralExpression& literal) {
    if (literal.type.IsVoid()) {
        return "nothing";
    }
    if (literal.type.IsScalar()) {
        return PrintScalar(literal.type.base, literal.values[0]);
    }
    std::string text = literal.type.ToString() + "{";
    for (std::size_t i = 0; i < literal.values.size(); ++i) {
        text += (i == 0 ? "" : " ") + PrintScalar(literal.type.base, literal.values[i]);
    }
    return text + "}";
}

std::string PrintArguments(std::span<const Expression* const> arguments) {
    std::string text;
    for (const Expression* argument : arguments) {
        text += " " + PrintTree(*argument);
    }
    return text + ")";
}

const char* GetSpelling(BinaryOperator operation) {
    static constexpr const char* kSpellings[] = {
        "+", "-", "*", "/",  "%", "mat*mat", "mat*vec", "vec*mat", "<<", ">>", "&",
        "^", "|", "<", "<=", ">", ">=",      "==",      "!=",      "&&", "^^", "||"};
    return kSpellings[operation];
}

std::string PrintSwizzle(const SwizzleExpression& swizzle) {
    std::string text = PrintTree(*swizzle.object) + ".";
    for (std::size_t i = 0; i < swizzle.type.rows; ++i) {
        text += "xyzw"[swizzle.components[i]];
    }
    return text;
}

std::string PrintUnary(const UnaryExpression& unary) {
    static constexpr const char* kSpellings[] = {"(- ", "(! ", "(~ "};
    return kSpellings[unary.operation] + PrintTree(*unary.operand) + ")";
}

std::string PrintBinary(const BinaryExpression& binary) {
    return std::string("(") + GetSpelling(binary.operation) + " " + PrintTree(*binary.left) + " " +
           PrintTree(*binary.right) + ")";
}

std::string PrintAssign(const AssignExpression& assign) {
    return "(" + std::string(assign.isCompound ? GetSpelling(assign.operation) : "") + "= " +
           PrintTree(*assign.target) + " " + PrintTree(*assign.value) + ")";
}

std::string PrintIncrement(const IncrementExpression& increment) {
    const std::string sign = increment.isDecrement ? "--" : "++";
    const std::string target = PrintTree(*increment.target);
    return increment.isPrefix ? "(" + sign + " " + target + ")" : "(" + target + " " + sign + ")";
}

std::string PrintConstruct(const ConstructExpression& construct) {
    static constexpr const char* kForms[] = {"splat", "diagonal", "resize", "components",
                                             "members"};
    return "(" + construct.type.ToString() + ":" + kForms[construct.form] +
           PrintArguments(construct.arguments);
}

std::string PrintOrNone(const Expression* expression) {
    return expression == nullptr ? "none" : PrintTree(*expression);
}

std::string PrintIf(const IfStatement& statement) {
    std::string text = "(if";
    for (const IfBranch& branch : statement.branches) {
        text += " " + PrintTree(*branch.condition) + " " + PrintTree(*branch.body);
    }
    return text +
           (statement.otherwise != nullptr ? " else " + PrintTree(*statement.otherwise) : "") + ")";
}

std::string PrintLoop(const LoopStatement& loop) {
    return std::string(loop.testsFirst ? "(loop " : "(do ") +
           (loop.init != nullptr ? PrintTree(*loop.init) : "none") + " " +
           PrintOrNone(loop.condition) + " " + PrintOrNone(loop.increment) + " " +
           PrintTree(*loop.body) + ")";
}

} // namespace

std::string PrintTree(const Expression& expression) {
    switch (expression.kind) {
    case kExpression_Literal:
        return PrintLiteral(expression.As<LiteralExpression>());
    case kExpression_Variable:
        return std::string(expression.As<VariableExpression>().variable->name);
    case kExpression_Swizzle:
        return PrintSwizzle(expression.As<SwizzleExpression>());
    case kExpression_Index:
        return PrintTree(*expression.As<IndexExpression>().object) + "[" +
               PrintTree(*expression.As<IndexExpression>().index) + "]";
    case kExpression_Field:
        return PrintTree(*expression.As<FieldExpression>().object) + ".#" +
               std::to_string(expression.As<FieldExpression>().field);
    case kExpression_BlockElement:
        return "(block " + std::string(expression.As<BlockElementExpression>().block->name) + " " +
               PrintTree(*expression.As<BlockElementExpression>().index) + ")";
    case kExpression_Unary:
        return PrintUnary(expression.As<UnaryExpression>());
    case kExpression_Binary:
        return PrintBinary(expression.As<BinaryExpression>());
    case kExpression_Assign:
        return PrintAssign(expression.As<AssignExpression>());
    case kExpression_Increment:
        return PrintIncrement(expression.As<IncrementExpression>());
    case kExpression_Conditional:
        return "(? " + PrintTree(*expression.As<ConditionalExpression>().condition) + " " +
               PrintTree(*expression.As<ConditionalExpression>().whenTrue) + " " +
               PrintTree(*expression.As<ConditionalExpression>().whenFalse) + ")";
    case kExpression_Comma:
        return "(, " + PrintTree(*expression.As<CommaExpression>().left) + " " +
               PrintTree(*expression.As<CommaExpression>().right) + ")";
    case kExpression_Call:
        return "(call " + expression.As<CallExpression>().function->GetSignature() +
               PrintArguments(expression.As<CallExpression>().arguments);
    case kExpression_BuiltinCall: {
        const auto& call = expression.As<BuiltinCallExpression>();
        return "(" + std::string(BuiltinFunctionToString(call.function)) +
               PrintArguments(call.arguments);
    }
    case kExpression_Convert:
        return expression.type.ToString() + "(" +
               PrintTree(*expression.As<ConvertExpression>().operand) + ")";
    case kExpression_Construct:
        return PrintConstruct(expression.As<ConstructExpression>());
    }
    return "?";
}

std::string PrintTree(const Statement& statement) {
    switch (statement.kind) {
    case kStatement_Block: {
        std::string text = "{";
        for (const Statement* child : statement.As<BlockStatement>().statements) {
            text += (text.size() > 1 ? " " : "") + PrintTree(*child);
        }
        return text + "}";
    }
    case kStatement_Declaration: {
        const auto& declaration = statement.As<DeclarationStatement>();
        return "(" + declaration.variable->type.ToString() + " " +
               std::string(declaration.variable->name) +
               (declaration.initializer != nullptr ? " " + PrintTree(*declaration.initializer)
                                                   : "") +
               ")";
    }
    case kStatement_Expression:
        return PrintTree(*statement.As<ExpressionStatement>().expression);
    case kStatement_If:
        return PrintIf(statement.As<IfStatement>());
    case kStatement_Loop:
        return PrintLoop(statement.As<LoopStatement>());
    case kStatement_Return: {
        const auto& value = statement.As<ReturnStatement>().value;
        return value == nullptr ? "(return)" : "(return " + PrintTree(*value) + ")";
    }
    case kStatement_Break:
        return "(break)";
    case kStatement_Continue:
        return "(continue)";
    }
    return "?";
}

const Function* FindFunction(const CompiledShader& shader, std::string_view name) {
    for (const Function* function : shader.functions) {
        if (function->name == name) {
            return function;
        }
    }
    return nullptr;
}

std::string GetMessages(std::string_view text, Stage stage) {
    std::string messages;
    const auto shader = CompileShader(stage, text, messages);
    return shader != nullptr && messages.empty() ? "" : messages.empty() ? "no message" : messages;
}

std::string PrintExpression(std::string_view expression, std::string_view locals,
                            std::string_view declarations, Stage stage) {
    std::string text(declarations);
    text += " void main() { " + std::string(locals) + " " + std::string(expression) + "; }";
    std::string messages;
    const auto shader = CompileShader(stage, text, messages);
    if (shader == nullptr) {
        return messages;
    }
    return PrintTree(*FindFunction(*shader, "main")->body->statements.back());
}

std::string PrintStatements(std::string_view statements, std::string_view declarations,
                            Stage stage) {
    std::string messages;
    const auto shader = CompileShader(
        stage, std::string(declarations) + " void main() { " + std::string(statements) + " }",
        messages);
    return shader == nullptr ? messages : PrintTree(*FindFunction(*shader, "main")->body);
}

} // namespace Tolen::OpenKL::Tests
