#include "engine/UsageScan.h"

#include "compiler/LinkedProgram.h"
#include "compiler/Statements.h"

#include <utility>
#include <vector>

namespace Tolen::OpenKL {

namespace {

/// Walks expressions and statements with lists in place of recursion, since order has no meaning.
class UsageScanner {
public:
    explicit UsageScanner(const LinkedStage& stage) : _stage(stage) {}

    Usage Scan(const Function* entry, bool withInitializers) {
        _AddFunction(entry);
        if (withInitializers) {
            for (const LinkedGlobal& global : _stage.globals) {
                _AddExpression(global.initializer);
            }
            _DrainExpressions();
        }
        while (!_functions.empty()) {
            const Function* function = _functions.back();
            _functions.pop_back();
            _AddStatement(function->body);
            _DrainStatements();
        }
        return std::move(_usage);
    }

private:
    void _AddFunction(const Function* function) {
        if (function != nullptr && function->body != nullptr && _seen.insert(function).second) {
            _functions.push_back(function);
        }
    }

    void _AddStatement(const Statement* statement) {
        if (statement != nullptr) {
            _statements.push_back(statement);
        }
    }

    void _AddExpression(const Expression* expression) {
        if (expression != nullptr) {
            _expressions.push_back(expression);
        }
    }

    void _AddAll(std::span<const Expression* const> expressions) {
        for (const Expression* expression : expressions) {
            _AddExpression(expression);
        }
    }

    void _DrainStatements() {
        _DrainExpressions();
        while (!_statements.empty()) {
            const Statement* statement = _statements.back();
            _statements.pop_back();
            _VisitStatement(*statement);
            _DrainExpressions();
        }
    }

    void _VisitStatement(const Statement& statement) {
        switch (statement.kind) {
        case kStatement_Block:
            for (const Statement* child : statement.As<BlockStatement>().statements) {
                _AddStatement(child);
            }
            break;
        case kStatement_Declaration:
            _AddExpression(statement.As<DeclarationStatement>().initializer);
            break;
        case kStatement_Expression:
            _AddExpression(statement.As<ExpressionStatement>().expression);
            break;
        case kStatement_If: {
            const auto& choice = statement.As<IfStatement>();
            for (const IfBranch& branch : choice.branches) {
                _AddExpression(branch.condition);
                _AddStatement(branch.body);
            }
            _AddStatement(choice.otherwise);
            break;
        }
        case kStatement_Loop: {
            const auto& loop = statement.As<LoopStatement>();
            _AddStatement(loop.init);
            _AddExpression(loop.condition);
            _AddExpression(loop.increment);
            _AddStatement(loop.body);
            break;
        }
        case kStatement_Return:
            _AddExpression(statement.As<ReturnStatement>().value);
            break;
        case kStatement_Break:
        case kStatement_Continue:
            break;
        }
    }

    void _DrainExpressions() {
        while (!_expressions.empty()) {
            const Expression* expression = _expressions.back();
            _expressions.pop_back();
            _VisitExpression(*expression);
        }
    }

    /// The variable that a target or an object is a part of; null when it is part of none.
    static const Variable* _FindRoot(const Expression* expression) {
        while (true) {
            switch (expression->kind) {
            case kExpression_Variable:
                return expression->As<VariableExpression>().variable;
            case kExpression_Swizzle:
                expression = expression->As<SwizzleExpression>().object;
                break;
            case kExpression_Index:
                expression = expression->As<IndexExpression>().object;
                break;
            case kExpression_Field:
                expression = expression->As<FieldExpression>().object;
                break;
            default:
                return nullptr;
            }
        }
    }

    void _MarkWritten(const Expression* target) {
        if (const Variable* variable = _FindRoot(target)) {
            _usage.written.insert(variable);
        }
    }

    void _VisitExpression(const Expression& expression) {
        switch (expression.kind) {
        case kExpression_Literal:
        case kExpression_Variable:
            break;
        case kExpression_Swizzle:
            _AddExpression(expression.As<SwizzleExpression>().object);
            break;
        case kExpression_Index: {
            const auto& subscript = expression.As<IndexExpression>();
            if (subscript.object->type.IsArray() && subscript.index->kind != kExpression_Literal) {
                if (const Variable* variable = _FindRoot(subscript.object)) {
                    _usage.dynamicallyIndexed.insert(variable);
                }
            }
            _AddExpression(subscript.object);
            _AddExpression(subscript.index);
            break;
        }
        case kExpression_Field:
            _AddExpression(expression.As<FieldExpression>().object);
            break;
        case kExpression_BlockElement:
            _AddExpression(expression.As<BlockElementExpression>().index);
            break;
        case kExpression_Unary:
            _AddExpression(expression.As<UnaryExpression>().operand);
            break;
        case kExpression_Binary:
            _AddExpression(expression.As<BinaryExpression>().left);
            _AddExpression(expression.As<BinaryExpression>().right);
            break;
        case kExpression_Assign:
            _MarkWritten(expression.As<AssignExpression>().target);
            _AddExpression(expression.As<AssignExpression>().target);
            _AddExpression(expression.As<AssignExpression>().value);
            break;
        case kExpression_Increment:
            _MarkWritten(expression.As<IncrementExpression>().target);
            _AddExpression(expression.As<IncrementExpression>().target);
            break;
        case kExpression_Conditional:
            _AddExpression(expression.As<ConditionalExpression>().condition);
            _AddExpression(expression.As<ConditionalExpression>().whenTrue);
            _AddExpression(expression.As<ConditionalExpression>().whenFalse);
            break;
        case kExpression_Comma:
            _AddExpression(expression.As<CommaExpression>().left);
            _AddExpression(expression.As<CommaExpression>().right);
            break;
        case kExpression_Call:
            _VisitCall(expression.As<CallExpression>());
            break;
        case kExpression_BuiltinCall: {
            const auto& call = expression.As<BuiltinCallExpression>();
            if (call.function == kFunction_Modf) {
                _MarkWritten(call.arguments[1]);
            }
            _AddAll(call.arguments);
            break;
        }
        case kExpression_Convert:
            _AddExpression(expression.As<ConvertExpression>().operand);
            break;
        case kExpression_Construct:
            _AddAll(expression.As<ConstructExpression>().arguments);
            break;
        }
    }

    void _VisitCall(const CallExpression& call) {
        for (std::size_t i = 0; i < call.arguments.size(); ++i) {
            if (call.function->parameters[i]->direction != kDirection_In) {
                _MarkWritten(call.arguments[i]);
            }
        }
        _AddAll(call.arguments);
        _AddFunction(_stage.GetDefinition(call.function));
    }

    const LinkedStage& _stage;
    Usage _usage;
    std::unordered_set<const Function*> _seen;
    std::vector<const Function*> _functions;
    std::vector<const Statement*> _statements;
    std::vector<const Expression*> _expressions;
};

} // namespace

Usage ScanUsage(const LinkedStage& stage, const Function* entry, bool withInitializers) {
    return UsageScanner(stage).Scan(entry, withInitializers);
}

} // namespace Tolen::OpenKL
