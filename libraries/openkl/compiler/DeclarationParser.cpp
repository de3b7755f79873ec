#include "compiler/DeclarationParser.h"

#include "compiler/CheckContext.h"
#include "compiler/Limits.h"
#include "compiler/OverloadChooser.h"
#include "compiler/TokenStream.h"

#include <vector>

namespace Tolen::OpenKL {

namespace {

bool IsPrecision(const Token& token) {
    return token.kind == kToken_Identifier &&
           (token.text == "highp" || token.text == "mediump" || token.text == "lowp");
}

} // namespace

bool DeclarationParser::StartsLocal() const {
    const Token& next = _tokens.Peek();
    if (next.kind == kToken_Const) {
        return true;
    }
    if (IsTypeKeyword(next.kind)) {
        return !_tokens.Is(kToken_LeftParenthesis, 1);
    }
    return next.kind == kToken_Identifier &&
           (_tokens.Is(kToken_Identifier, 1) ||
            (IsPrecision(next) && IsTypeKeyword(_tokens.Peek(1).kind)));
}

void DeclarationParser::SkipPrecision() {
    const Token& next = _tokens.Peek(1);
    if (IsPrecision(_tokens.Peek()) &&
        (next.kind == kToken_Identifier || IsTypeKeyword(next.kind))) {
        _tokens.Take();
    }
}

std::optional<Type> DeclarationParser::ParseType(bool takesVoid) {
    SkipPrecision();
    const Token& token = _tokens.Peek();
    Type type;
    if (IsTypeKeyword(token.kind)) {
        type = GetKeywordType(token.kind);
        if (token.kind == kToken_Void && !takesVoid) {
            _context.diagnostics.Error(token.line, "only a function can be void");
        }
    } else if (token.kind != kToken_Identifier) {
        _context.diagnostics.Error(token.line, "expected a type, found " + Describe(token));
        return std::nullopt;
    } else if (const StructType* structure = _context.symbols.FindStruct(token.text)) {
        type = {.base = kBase_Struct, .structure = structure};
    } else if (_context.symbols.MarkUnknown(token.text)) {
        _context.diagnostics.Error(token.line, "type " + Quote(token.text) + " is not declared");
    }
    _tokens.Take();
    if (!ParseArrayPart(type, "")) {
        return std::nullopt;
    }
    return type;
}

bool DeclarationParser::ParseArrayPart(Type& type, std::string_view name) {
    if (!_tokens.Is(kToken_LeftBracket)) {
        return true;
    }
    const int line = _tokens.Take().line;
    std::int32_t length = -1;
    if (!_tokens.Is(kToken_RightBracket)) {
        const ParsedExpression parsed = _expressions.ParseExpression();
        if (!parsed.isWellFormed) {
            return false;
        }
        length = 1; // after a message, to go on with
        if (parsed.value != nullptr) {
            const bool isConstant =
                parsed.value->kind == kExpression_Literal && parsed.value->type == kInt;
            if (!isConstant) {
                _context.diagnostics.Error(line, "the length of an array must be a constant int");
            } else if (const std::int32_t value = parsed.value->As<LiteralExpression>().values[0].i;
                       value < 1) {
                _context.diagnostics.Error(line, "the length of an array must be above 0, found " +
                                                     std::to_string(value));
            } else {
                length = value;
            }
        }
    }
    if (!_tokens.Expect(kToken_RightBracket, "']'")) {
        return false;
    }
    if (type.IsArray() || _tokens.Is(kToken_LeftBracket)) {
        _context.diagnostics.Error(line, "arrays of arrays are not supported");
        return false;
    }
    if (type.IsVoid()) {
        return true;
    }
    type.arrayLength = length;
    return length < 0 || CheckSize(type, name, line);
}

bool DeclarationParser::CheckSize(const Type& type, std::string_view name, int line) {
    Type element = type;
    element.arrayLength = 0;
    const std::int64_t scalars =
        static_cast<std::int64_t>(element.CountScalars()) * (type.IsArray() ? type.arrayLength : 1);
    if (scalars <= kMaxScalarsInVariable) {
        return true;
    }
    _context.diagnostics.Error(line, (name.empty() ? std::string("an array") : Quote(name)) +
                                         " of type " + type.ToString() + " holds " +
                                         std::to_string(scalars) + " scalars; the limit is " +
                                         std::to_string(kMaxScalarsInVariable));
    return false;
}

bool DeclarationParser::ParseInitializer(Variable& variable, const Expression*& initializer) {
    const int line = _tokens.Peek().line;
    const ParsedExpression parsed = _expressions.ParseAssignment();
    if (!parsed.isWellFormed) {
        return false;
    }
    if (parsed.value == nullptr || variable.type.IsVoid()) {
        if (variable.type.arrayLength < 0) {
            variable.type = kVoid;
        }
        return true;
    }
    if (variable.type.arrayLength < 0 && parsed.value->type.IsArray()) {
        variable.type.arrayLength = parsed.value->type.arrayLength;
    }
    if (!IsConvertible(parsed.value->type, variable.type)) {
        _context.diagnostics.Error(line, "cannot initialise " + Quote(variable.name) + " (" +
                                             variable.type.ToString() + ") with " +
                                             parsed.value->type.ToString());
        return true;
    }
    initializer = _expressions.GetAccess().Convert(parsed.value, variable.type);
    return true;
}

Variable* DeclarationParser::MakeVariable(const Token& name, const Type& type, Storage storage) {
    Variable* variable = _context.arena.New<Variable>();
    variable->name = name.text;
    variable->type = type;
    variable->storage = storage;
    variable->line = name.line;
    return variable;
}

void DeclarationParser::Declare(Variable* variable) {
    if (variable->name.empty()) {
        return;
    }
    if (const Variable* other = _context.symbols.FindVariableInScope(variable->name)) {
        _context.diagnostics.Error(variable->line, Quote(variable->name) + " is declared twice");
        _context.diagnostics.Note(other->line, "the other declaration is here");
    }
    _context.symbols.AddVariable(variable);
}

const Statement* DeclarationParser::ParseLocal() {
    const int line = _tokens.Peek().line;
    const bool isConst = _tokens.Accept(kToken_Const);
    const std::optional<Type> type = ParseType();
    if (!type) {
        return nullptr;
    }
    std::vector<const Statement*> statements;
    do {
        const Statement* statement = _ParseLocalVariable(*type, isConst);
        if (statement == nullptr) {
            return nullptr;
        }
        statements.push_back(statement);
    } while (_tokens.Accept(kToken_Comma));
    return statements.size() == 1
               ? statements[0]
               : _context.arena.New<BlockStatement>(line, _context.arena.Copy(statements));
}

const Statement* DeclarationParser::_ParseLocalVariable(const Type& type, bool isConst) {
    if (!_tokens.Is(kToken_Identifier)) {
        _context.diagnostics.Error(_tokens.Peek().line,
                                   "expected a name, found " + Describe(_tokens.Peek()));
        return nullptr;
    }
    const Token& name = _tokens.Take();
    if (_tokens.Is(kToken_LeftParenthesis)) {
        _context.diagnostics.Error(name.line, "function " + Quote(name.text) +
                                                  " cannot be declared inside of a function");
        return nullptr;
    }
    Variable* variable = MakeVariable(name, type, kStorage_Local);
    variable->isConst = isConst;
    if (!ParseArrayPart(variable->type, name.text)) {
        return nullptr;
    }
    const Expression* initializer = nullptr;
    if (_tokens.Accept(kToken_Assign) && !ParseInitializer(*variable, initializer)) {
        return nullptr;
    }
    if (variable->type.arrayLength < 0) {
        _context.diagnostics.Error(name.line, "array " + Quote(name.text) + " needs a length");
        variable->type = kVoid;
    }
    if (isConst && initializer == nullptr && !variable->type.IsVoid()) {
        variable->isConst = false; // without a value it may be given one later
    }
    if (isConst && initializer != nullptr && initializer->kind == kExpression_Literal) {
        variable->constant = &initializer->As<LiteralExpression>();
    }
    // Only now: the initialiser may still mean an outer variable of that name.
    Declare(variable);
    _context.body->locals.push_back(variable);
    return _context.arena.New<DeclarationStatement>(name.line, variable, initializer);
}

ParsedExpression DeclarationParser::ParseCondition(const Statement*& declaration) {
    const std::optional<Type> type = ParseType();
    if (!type) {
        return {};
    }
    if (!_tokens.Is(kToken_Identifier)) {
        _context.diagnostics.Error(_tokens.Peek().line,
                                   "expected a name, found " + Describe(_tokens.Peek()));
        return {};
    }
    const Token& name = _tokens.Take();
    Variable* variable = MakeVariable(name, *type, kStorage_Local);
    if (!_tokens.Expect(kToken_Assign, "'=' and the value of a condition")) {
        return {};
    }
    const Expression* initializer = nullptr;
    if (!ParseInitializer(*variable, initializer)) {
        return {};
    }
    Declare(variable);
    _context.body->locals.push_back(variable);
    declaration = _context.arena.New<DeclarationStatement>(name.line, variable, nullptr);
    if (initializer == nullptr) {
        return {true, nullptr};
    }
    variable->isWritten = true;
    return {true, _context.nodes.MakeAssign(
                      name.line, _context.nodes.MakeVariable(name.line, variable), initializer)};
}

} // namespace Tolen::OpenKL
