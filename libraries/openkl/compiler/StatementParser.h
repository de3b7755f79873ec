#pragma once

#include "compiler/DeclarationParser.h"
#include "compiler/Statements.h"

#include <initializer_list>
#include <string_view>

namespace Tolen::OpenKL {

/// Reads the bodies of functions. After a mistake it goes on with the next statement.
class StatementParser {
public:
    StatementParser(CheckContext& context, TokenStream& tokens, ExpressionParser& expressions,
                    DeclarationParser& declarations)
        : _context(context), _tokens(tokens), _expressions(expressions),
          _declarations(declarations) {}

    /// Reads the body of the function that the context says, from its "{" to its "}".
    const BlockStatement* ParseBody();

private:
    /// @return null when the tokens made no statement
    const Statement* _ParseStatement();
    const Statement* _ParseStatementUnguarded();
    /// A statement with a scope of its own, such as the body of a loop.
    const Statement* _ParseScoped();
    const BlockStatement* _ParseBlock();
    const Statement* _ParseSimple();
    const Statement* _ParseExpressionStatement();
    const Statement* _ParseIf();
    const Statement* _ParseFor();
    const Statement* _ParseForParts(int line);
    const Statement* _ParseWhile();
    const Statement* _ParseDo();
    const Statement* _ParseReturn();
    const Statement* _ParseBreakOrContinue();
    const Statement* _ParseLoopBody();
    bool _RefuseUnknownStatement();

    /// Reads a condition between parentheses. @param what how messages call it
    bool _ParseParenthesized(const Expression*& condition, std::string_view what);
    /// Reads the condition of a loop, which may declare a variable.
    bool _ParseLoopCondition(const Statement*& declaration, const Expression*& condition,
                             std::string_view what);
    const Statement* _MakeEmpty(int line);
    const Statement* _MakeBlock(int line, std::initializer_list<const Statement*> statements);

    CheckContext& _context;
    TokenStream& _tokens;
    ExpressionParser& _expressions;
    DeclarationParser& _declarations;
    int _depth = 0;
    int _loops = 0; ///< around the statement that is being read
};

} // namespace Tolen::OpenKL
