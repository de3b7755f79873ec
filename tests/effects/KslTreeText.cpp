#include "KslTreeText.h"

#include "TolenEffects/Module.h"

namespace Tolen::Effects::Tests {

namespace {

class TreeWriter {
public:
    explicit TreeWriter(Ranges ranges) : _ranges(ranges) {}

    std::string Write(const Module& module) const {
        std::string text;
        for (const FunctionDefinition* function : module.GetFunctionDefinitions()) {
            text += _Write(function) + "\n";
        }
        for (const InterfaceDefinition* definition : module.GetInterfaceDefinitions()) {
            text += _Write(definition) + "\n";
        }
        for (const ClassDefinition* definition : module.GetClassDefinitions()) {
            text += _Write(definition) + "\n";
        }
        for (const Statement* statement : module.GetStatements()) {
            text += "[" + _Write(statement) + "]\n";
        }
        for (const Expression* expression : module.GetExpressions()) {
            text += "{" + _Write(expression) + "}\n";
        }
        return text;
    }

private:
    std::string _Range(const Syntax* node) const {
        if (_ranges == Ranges::Hidden) {
            return "";
        }
        const LocationRange range = node->GetRange();
        if (range == LocationRange()) {
            return "@-";
        }
        const auto place = [&](int line, int column) {
            const bool isShort = range.firstLine == 1 && range.lastLine == 1;
            return (isShort ? "" : std::to_string(line) + ":") + std::to_string(column);
        };
        return "@" + place(range.firstLine, range.firstColumn) + "-" +
               place(range.lastLine, range.lastColumn) + (range.file == nullptr ? "?" : "");
    }

    template <class... Parts>
    std::string _List(const Syntax* node, const std::string& head, const Parts&... parts) const {
        return "(" + head + (std::string() + ... + _Part(parts)) + ")" + _Range(node);
    }
    std::string _Part(const std::string& text) const { return text.empty() ? "" : " " + text; }
    template <class Node>
    std::string _Part(const Node* node) const {
        return node == nullptr ? "" : " " + _Write(node);
    }
    template <class Node>
    std::string _Part(const std::vector<Node*>& nodes) const {
        std::string text;
        for (const Node* node : nodes) {
            text += _Part(node);
        }
        return text;
    }

    template <class Node>
    static const Node* _As(const Syntax* node) {
        return static_cast<const Node*>(node);
    }
    static std::string _Text(const String* string) { return string->GetString(); }

    std::string _Write(const Type* type) const {
        std::string text = type->GetClass() == kClass_UserType
                               ? ":" + _Text(_As<UserType>(type)->GetName())
                               : TypeSpecifierToString(type->GetTypeSpecifier());
        if (type->IsArray()) {
            text += "[" + (type->GetLength() == nullptr ? "" : _Write(type->GetLength())) + "]";
        }
        return text + _Range(type);
    }

    std::string _Write(const Expression* node) const {
        switch (node->GetClass()) {
        case kClass_Assignment: {
            const auto* a = _As<Assignment>(node);
            const Operator op = a->GetOperator();
            const std::string name =
                op == kOperator_Assign ? "=" : std::string(OperatorToString(op)) + "=";
            return _List(node, name, a->GetLeft(), a->GetRight());
        }
        case kClass_BinaryOperator: {
            const auto* b = _As<BinaryOperator>(node);
            return _List(node, OperatorToString(b->GetOperator()), b->GetLeft(), b->GetRight());
        }
        case kClass_BoolConstant:
            return (_As<BoolConstant>(node)->GetValue() ? "true" : "false") + _Range(node);
        case kClass_IntConstant:
            return std::to_string(_As<IntConstant>(node)->GetValue()) + _Range(node);
        case kClass_FloatConstant:
            return _Text(_As<FloatConstant>(node)->GetString()) + _Range(node);
        case kClass_UnaryOperator: {
            const auto* u = _As<UnaryOperator>(node);
            return _List(node, std::string("pre") + OperatorToString(u->GetOperator()),
                         u->GetExpression());
        }
        case kClass_PostOperator: {
            const auto* u = _As<PostOperator>(node);
            return _List(node, std::string("post") + OperatorToString(u->GetOperator()),
                         u->GetExpression());
        }
        case kClass_Conditional: {
            const auto* c = _As<Conditional>(node);
            return _List(node, "?", c->GetCondition(), c->GetTrue(), c->GetFalse());
        }
        case kClass_Variable:
            return _Text(_As<Variable>(node)->GetIdentifier()) + _Range(node);
        case kClass_FieldSelection: {
            const auto* f = _As<FieldSelection>(node);
            return _List(node, "field", f->GetExpression(), _Text(f->GetField()));
        }
        case kClass_FunctionSelection: {
            const auto* f = _As<FunctionSelection>(node);
            return _List(node, "method", f->GetExpression(),
                         static_cast<const Expression*>(f->GetFunction()));
        }
        case kClass_Subscript:
            return _List(node, "[]", _As<Subscript>(node)->GetArray(),
                         _As<Subscript>(node)->GetIndex());
        case kClass_FunctionCall: {
            const auto* call = _As<FunctionCall>(node);
            return call->GetName() != nullptr
                       ? _List(node, "call", _Text(call->GetName()), call->GetParameters())
                       : _List(node, "make", call->GetType(), call->GetParameters());
        }
        case kClass_Condition: {
            const auto* condition = _As<Condition>(node);
            return _List(node, "condition", condition->GetExpression(),
                         _As<VariableDeclaration>(condition->GetDeclaration()));
        }
        default:
            return "<not an expression>";
        }
    }

    std::string _Write(const VariableDeclaration* node) const {
        const StorageQualifier storage = node->GetStorageQualifier();
        static const char* const kTransformations[] = {"coord", "normal", "tangent"};
        const std::string transformation =
            storage == kStorageQualifier_Coord ? kTransformations[node->GetTransformation()] : "";
        return _List(node, "var", std::string(node->IsStatic() ? "static" : ""),
                     std::string(node->IsConst() ? "const" : ""),
                     std::string(storage == kStorageQualifier_Input ? "input" : ""),
                     transformation, node->GetType(), _Text(node->GetIdentifier()),
                     node->GetInitializer());
    }

    std::string _Write(const Statement* node) const {
        switch (node->GetClass()) {
        case kClass_EmptyStatement:
            return _List(node, "empty");
        case kClass_DeclarationStatement:
            return _List(node, "local", _As<DeclarationStatement>(node)->GetDeclaration());
        case kClass_ExpressionStatement:
            return _List(node, "eval", _As<ExpressionStatement>(node)->GetExpression());
        case kClass_CompoundStatement:
            return _List(node, "block", _As<CompoundStatement>(node)->GetStatements());
        case kClass_SelectionStatement: {
            const auto* s = _As<SelectionStatement>(node);
            return _List(node, "if", s->GetCondition(), s->GetThen(), s->GetElse());
        }
        case kClass_WhileStatement: {
            const auto* w = _As<WhileStatement>(node);
            return _List(node, "while", static_cast<const Expression*>(w->GetCondition()),
                         w->GetStatement());
        }
        case kClass_DoWhileStatement: {
            const auto* d = _As<DoWhileStatement>(node);
            return _List(node, "do", d->GetStatement(), d->GetExpression());
        }
        case kClass_ForStatement: {
            const auto* f = _As<ForStatement>(node);
            const Expression* condition = f->GetCondition();
            return _List(node, "for", f->GetInitialization(),
                         condition == nullptr ? "(condition)" : _Write(condition),
                         f->GetIteration() == nullptr ? "()" : _Write(f->GetIteration()),
                         f->GetStatement());
        }
        case kClass_JumpStatement: {
            static const char* const kNames[] = {"continue", "break", "return"};
            const auto* j = _As<JumpStatement>(node);
            return _List(node, kNames[j->GetType()], j->GetExpression());
        }
        default:
            return "<not a statement>";
        }
    }

    std::string _Write(const FunctionParameter* node) const {
        static const char* const kQualifiers[] = {"?", "in", "out", "inout"};
        return _List(node, kQualifiers[node->GetParameterQualifier()], node->GetType(),
                     node->GetName() == nullptr ? "" : _Text(node->GetName()));
    }

    std::string _Write(const FunctionPrototype* node) const {
        return _List(node, "head",
                     std::string(node->GetQualifier() == kFunctionQualifier_Static ? "static" : ""),
                     node->GetReturnType(), _Text(node->GetName()), node->GetParameters());
    }

    std::string _Write(const FunctionDefinition* node) const {
        return _List(node, "function", node->GetFunctionPrototype(),
                     static_cast<const Statement*>(node->GetCompoundStatement()));
    }

    std::string _Write(const InterfaceDefinition* node) const {
        return _List(node, "interface", _Text(node->GetName()), node->GetMemberFunctions());
    }

    std::string _Write(const ClassDefinition* node) const {
        std::string members;
        for (const auto& [name, coord] : node->GetCoords()) {
            members += _Part(coord);
        }
        for (const auto& [name, type] : node->GetOutputs()) {
            members += " (output " + _Write(type) + " " + _Text(name) + ")";
        }
        members += _Part(node->GetMemberVariables()) + _Part(node->GetMemberFunctions());
        return _List(node, "class", _Text(node->GetName()),
                     node->GetInterface() == nullptr ? "" : ": " + _Text(node->GetInterface()),
                     members.substr(members.empty() ? 0 : 1));
    }

    Ranges _ranges;
};

} // namespace

std::string TreeText(const Module& module, Ranges ranges) {
    return TreeWriter(ranges).Write(module);
}

} // namespace Tolen::Effects::Tests
