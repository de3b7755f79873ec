#include "compiler/StatementParser.h"

#include "compiler/CheckContext.h"
#include "compiler/Limits.h"
#include "compiler/OverloadChooser.h"
#include "compiler/TokenStream.h"

#include <algorithm>
#include <vector>

namespace Tolen::OpenKL {

const BlockStatement* StatementParser::ParseBody() {
    _depth = 0;
    _loops = 0;
    return _ParseBlock();
}

const Statement* StatementParser::_MakeEmpty(int line) {
    return _MakeBlock(line, {});
}

const Statement* StatementParser::_MakeBlock(int line,
                                             std::initializer_list<const Statement*> statements) {
    return _context.arena.New<BlockStatement>(line, _context.arena.Copy(statements));
}

const BlockStatement* StatementParser::_ParseBlock() {
    const int line = _tokens.Take().line;
    _context.symbols.PushScope();
    std::vector<const Statement*> statements;
    while (!_tokens.Is(kToken_RightBrace) && !_tokens.Is(kToken_End)) {
        if (_context.diagnostics.IsFull()) {
            _tokens.GoToEnd();
            break;
        }
        if (const Statement* statement = _ParseStatement()) {
            statements.push_back(statement);
        } else {
            _tokens.SkipStatement();
        }
    }
    _tokens.Accept(kToken_RightBrace);
    _context.symbols.PopScope();
    return _context.arena.New<BlockStatement>(line, _context.arena.Copy(statements));
}

const Statement* StatementParser::_ParseStatement() {
    if (_depth == kMaxNesting) {
        _context.diagnostics.FinalError(_tokens.Peek().line,
                                        "statements nest deeper than the limit of " +
                                            std::to_string(kMaxNesting) + " levels");
        _tokens.GoToEnd();
        return nullptr;
    }
    ++_depth;
    const Statement* statement = _ParseStatementUnguarded();
    --_depth;
    return statement;
}

const Statement* StatementParser::_ParseStatementUnguarded() {
    switch (_tokens.Peek().kind) {
    case kToken_LeftBrace:
        return _ParseBlock();
    case kToken_Semicolon:
        return _MakeEmpty(_tokens.Take().line);
    case kToken_If:
        return _ParseIf();
    case kToken_For:
        return _ParseFor();
    case kToken_While:
        return _ParseWhile();
    case kToken_Do:
        return _ParseDo();
    case kToken_Return:
        return _ParseReturn();
    case kToken_Break:
    case kToken_Continue:
        return _ParseBreakOrContinue();
    default:
        return _ParseSimple();
    }
}

const Statement* StatementParser::_ParseScoped() {
    // A block has its scope already, and is no level of its own.
    if (_tokens.Is(kToken_LeftBrace)) {
        return _ParseBlock();
    }
    _context.symbols.PushScope();
    const Statement* statement = _ParseStatement();
    _context.symbols.PopScope();
    return statement;
}

/// A declaration or an expression with its ";".
const Statement* StatementParser::_ParseSimple() {
    if (_RefuseUnknownStatement()) {
        return nullptr;
    }
    if (!_declarations.StartsLocal()) {
        return _ParseExpressionStatement();
    }
    const Statement* declaration = _declarations.ParseLocal();
    return declaration != nullptr && _tokens.ExpectSemicolon() ? declaration : nullptr;
}

const Statement* StatementParser::_ParseExpressionStatement() {
    const int line = _tokens.Peek().line;
    const ParsedExpression parsed = _expressions.ParseExpression();
    if (!parsed.isWellFormed || !_tokens.ExpectSemicolon()) {
        return nullptr;
    }
    return parsed.value == nullptr ? _MakeEmpty(line)
                                   : _context.arena.New<ExpressionStatement>(line, parsed.value);
}

/// Reports statements that other languages have here.
bool StatementParser::_RefuseUnknownStatement() {
    static constexpr std::string_view kWords[] = {"switch", "case", "default", "goto", "discard"};
    const Token& word = _tokens.Peek();
    const TokenKind next = _tokens.Peek(1).kind;
    const bool isStatement =
        word.kind == kToken_Identifier &&
        std::find(std::begin(kWords), std::end(kWords), word.text) != std::end(kWords) &&
        (next == kToken_LeftParenthesis || next == kToken_Semicolon || next == kToken_Colon ||
         next == kToken_IntConstant) &&
        _context.symbols.FindVariable(word.text) == nullptr &&
        _context.symbols.FindFunctions(word.text).empty();
    if (!isStatement) {
        return false;
    }
    std::string text = Quote(word.text) + " is not supported";
    if (word.text == "discard") {
        text += "; prefix programs end a ray by discardRay()";
    }
    _context.diagnostics.Error(word.line, text);
    return true;
}

const Statement* StatementParser::_ParseIf() {
    const int line = _tokens.Peek().line;
    std::vector<IfBranch> branches;
    const Statement* otherwise = nullptr;
    while (true) {
        _tokens.Take();
        IfBranch branch;
        if (!_ParseParenthesized(branch.condition, "the condition of 'if'")) {
            return nullptr;
        }
        branch.body = _ParseScoped();
        if (branch.body == nullptr) {
            return nullptr;
        }
        branches.push_back(branch);
        // Where a call was replaced by a block of its arguments, its ";" is still there.
        if (branch.body->kind == kStatement_Block && _tokens.Is(kToken_Semicolon) &&
            _tokens.Is(kToken_Else, 1)) {
            _tokens.Take();
        }
        if (!_tokens.Accept(kToken_Else)) {
            break;
        }
        if (!_tokens.Is(kToken_If)) {
            otherwise = _ParseScoped();
            if (otherwise == nullptr) {
                return nullptr;
            }
            break;
        }
    }
    return _context.arena.New<IfStatement>(line, _context.arena.Copy(branches), otherwise);
}

bool StatementParser::_ParseParenthesized(const Expression*& condition, std::string_view what) {
    if (!_tokens.Expect(kToken_LeftParenthesis, "'('")) {
        return false;
    }
    const ParsedExpression parsed = _expressions.ParseExpression();
    if (!parsed.isWellFormed || !_tokens.Expect(kToken_RightParenthesis, "')'")) {
        return false;
    }
    if (parsed.value != nullptr) {
        _expressions.GetAccess().RequireBool(parsed.value, what);
    }
    condition = parsed.value;
    return true;
}

bool StatementParser::_ParseLoopCondition(const Statement*& declaration,
                                          const Expression*& condition, std::string_view what) {
    const ParsedExpression parsed = _declarations.StartsLocal()
                                        ? _declarations.ParseCondition(declaration)
                                        : _expressions.ParseExpression();
    if (parsed.value != nullptr) {
        _expressions.GetAccess().RequireBool(parsed.value, what);
    }
    condition = parsed.value;
    return parsed.isWellFormed;
}

const Statement* StatementParser::_ParseLoopBody() {
    ++_loops;
    const Statement* body = _ParseScoped();
    --_loops;
    return body;
}

const Statement* StatementParser::_ParseFor() {
    const int line = _tokens.Take().line;
    if (!_tokens.Expect(kToken_LeftParenthesis, "'('")) {
        return nullptr;
    }
    _context.symbols.PushScope();
    const Statement* loop = _ParseForParts(line);
    _context.symbols.PopScope();
    return loop;
}

const Statement* StatementParser::_ParseForParts(int line) {
    const Statement* init =
        _tokens.Is(kToken_Semicolon) ? _MakeEmpty(_tokens.Take().line) : _ParseSimple();
    if (init == nullptr) {
        return nullptr;
    }
    const Statement* declaration = nullptr;
    const Expression* condition = nullptr;
    if (!_tokens.Is(kToken_Semicolon) &&
        !_ParseLoopCondition(declaration, condition, "the condition of 'for'")) {
        return nullptr;
    }
    if (!_tokens.Expect(kToken_Semicolon, "';' behind the condition of 'for'")) {
        return nullptr;
    }
    ParsedExpression increment;
    if (!_tokens.Is(kToken_RightParenthesis)) {
        increment = _expressions.ParseExpression();
        if (!increment.isWellFormed) {
            return nullptr;
        }
    }
    if (!_tokens.Expect(kToken_RightParenthesis, "')'")) {
        return nullptr;
    }
    const Statement* body = _ParseLoopBody();
    if (body == nullptr) {
        return nullptr;
    }
    if (declaration != nullptr) {
        init = _MakeBlock(line, {init, declaration});
    }
    return _context.arena.New<LoopStatement>(line, init, condition, increment.value, body, true);
}

const Statement* StatementParser::_ParseWhile() {
    const int line = _tokens.Take().line;
    if (!_tokens.Expect(kToken_LeftParenthesis, "'('")) {
        return nullptr;
    }
    _context.symbols.PushScope();
    const Statement* declaration = nullptr;
    const Expression* condition = nullptr;
    const Statement* body = nullptr;
    if (_ParseLoopCondition(declaration, condition, "the condition of 'while'") &&
        _tokens.Expect(kToken_RightParenthesis, "')'")) {
        body = _ParseLoopBody();
    }
    _context.symbols.PopScope();
    return body == nullptr ? nullptr
                           : _context.arena.New<LoopStatement>(line, declaration, condition,
                                                               nullptr, body, true);
}

const Statement* StatementParser::_ParseDo() {
    const int line = _tokens.Take().line;
    const Statement* body = _ParseLoopBody();
    if (body == nullptr || !_tokens.Expect(kToken_While, "'while' behind the body of 'do'")) {
        return nullptr;
    }
    const Expression* condition = nullptr;
    if (!_ParseParenthesized(condition, "the condition of 'do'") || !_tokens.ExpectSemicolon()) {
        return nullptr;
    }
    return _context.arena.New<LoopStatement>(line, nullptr, condition, nullptr, body, false);
}

const Statement* StatementParser::_ParseBreakOrContinue() {
    const Token& token = _tokens.Take();
    if (_loops == 0) {
        _context.diagnostics.Error(token.line, Describe(token) + " is outside of a loop");
    }
    if (!_tokens.ExpectSemicolon()) {
        return nullptr;
    }
    return _context.arena.New<Statement>(
        token.kind == kToken_Break ? kStatement_Break : kStatement_Continue, token.line);
}

const Statement* StatementParser::_ParseReturn() {
    const int line = _tokens.Take().line;
    const Function& function = *_context.body->function;
    ParsedExpression parsed{true, nullptr};
    const bool hasValue = !_tokens.Is(kToken_Semicolon);
    if (hasValue) {
        parsed = _expressions.ParseExpression();
    }
    if (!parsed.isWellFormed || !_tokens.ExpectSemicolon()) {
        return nullptr;
    }
    if (!hasValue) {
        if (!function.returnType.IsVoid()) {
            _context.diagnostics.Error(line, "'return' needs a value: " + Quote(function.name) +
                                                 " returns " + function.returnType.ToString());
        }
        return _context.arena.New<ReturnStatement>(line, nullptr);
    }
    if (parsed.value == nullptr) {
        return _MakeEmpty(line);
    }
    if (!IsConvertible(parsed.value->type, function.returnType)) {
        _context.diagnostics.Error(line, "cannot return " + parsed.value->type.ToString() + ": " +
                                             Quote(function.name) + " returns " +
                                             function.returnType.ToString());
        return _MakeEmpty(line);
    }
    const Expression* value = _expressions.GetAccess().Convert(parsed.value, function.returnType);
    // A value of type void is a call that runs ahead of returning.
    if (function.returnType.IsVoid()) {
        return _MakeBlock(line, {_context.arena.New<ExpressionStatement>(line, value),
                                 _context.arena.New<ReturnStatement>(line, nullptr)});
    }
    return _context.arena.New<ReturnStatement>(line, value);
}

} // namespace Tolen::OpenKL
