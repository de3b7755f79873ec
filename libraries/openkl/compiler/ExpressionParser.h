#pragma once

#include "compiler/AccessChecker.h"
#include "compiler/CallChecker.h"
#include "compiler/OperatorChecker.h"
#include "compiler/Token.h"

#include <cstddef>
#include <vector>

namespace Tolen::OpenKL {

struct CheckContext;
class TokenStream;

/// What reading an expression gave.
struct ParsedExpression {
    bool isWellFormed = false;         ///< false when the tokens made no expression
    const Expression* value = nullptr; ///< null when anything was reported
};

/// Reads expressions. Operators, parentheses and calls that wait for their operands are kept in a
/// list, so that no text can exhaust the stack.
class ExpressionParser {
public:
    ExpressionParser(CheckContext& context, TokenStream& tokens);

    /// Reads an expression, commas included, up to the first token that can't belong to it.
    ParsedExpression ParseExpression() { return _Parse(true); }
    /// Reads an expression up to the first comma outside of parentheses.
    ParsedExpression ParseAssignment() { return _Parse(false); }

    AccessChecker& GetAccess() { return _access; }
    OperatorChecker& GetOperators() { return _operators; }
    CallChecker& GetCalls() { return _calls; }

private:
    enum FrameKind {
        kFrame_Prefix,
        kFrame_Binary,
        kFrame_Assign,
        kFrame_CompoundAssign,
        kFrame_Comma,
        kFrame_Colon,
        // From here on frames wait for a closing token.
        kFrame_Question,
        kFrame_Parenthesis,
        kFrame_Braces,
        kFrame_Call,
        kFrame_Construct,
        kFrame_Index,
    };

    /// Something that waits for operands.
    struct Frame {
        FrameKind kind;
        int precedence;            ///< of operators
        Token token;               ///< the operator, the opening token or the function's name
        BinaryOperator operation;  ///< of binary operators and compound assignments
        Type type;                 ///< of constructors
        std::size_t firstArgument; ///< of calls and constructors, in `_operands`
    };

    enum Step { kStep_Operand, kStep_Operator, kStep_Done, kStep_Fail };

    ParsedExpression _Parse(bool takesCommas);
    Step _ReadOperand();
    Step _ReadName();
    Step _ReadConstructor();
    Step _ReadLeftOut();
    Step _ReadOperator();
    Step _ReadMember();
    Step _ReadBinaryOperator();
    Step _ReadComma();
    Step _ReadColon();
    Step _ReadClosing(TokenKind kind);
    Step _ReadSemicolonInBraces();
    Step _Finish();

    void _Push(FrameKind kind, int precedence = 0, BinaryOperator operation = kBinary_Add);
    bool _HasFrames() const { return !_frames.empty(); }
    bool _IsTop(FrameKind kind) const { return _HasFrames() && _frames.back().kind == kind; }
    /// Applies waiting operators that bind more tightly than @p precedence, up to the innermost
    /// frame that waits for a closing token.
    void _Reduce(int precedence);
    void _ReduceTop();
    const Expression* _Pop();
    void _CloseCall();
    Step _Report(const char* expected);

    CheckContext& _context;
    TokenStream& _tokens;
    AccessChecker _access;
    OperatorChecker _operators;
    CallChecker _calls;
    std::vector<Frame> _frames;
    std::vector<const Expression*> _operands;
    bool _takesCommas = false; ///< outside of all frames
};

/// The type that a keyword names; void for `void` and for tokens that name none.
Type GetKeywordType(TokenKind kind);
bool IsTypeKeyword(TokenKind kind);

} // namespace Tolen::OpenKL
