#include "compiler/ExpressionParser.h"

#include "compiler/CheckContext.h"
#include "compiler/TokenStream.h"

#include <optional>

namespace Tolen::OpenKL {

namespace {

/// How tightly operators bind.
enum Precedence {
    kPrecedence_Lowest = 0,
    kPrecedence_Comma,
    kPrecedence_Assign, ///< and the last part of a conditional
    kPrecedence_Conditional,
    kPrecedence_LogicalOr,
    kPrecedence_LogicalXor,
    kPrecedence_LogicalAnd,
    kPrecedence_BitOr,
    kPrecedence_BitXor,
    kPrecedence_BitAnd,
    kPrecedence_Equality,
    kPrecedence_Relation,
    kPrecedence_Shift,
    kPrecedence_Add,
    kPrecedence_Multiply,
    kPrecedence_Prefix,
};

struct BinaryToken {
    BinaryOperator operation;
    int precedence;
};

std::optional<BinaryToken> FindBinary(TokenKind kind) {
    switch (kind) {
    case kToken_OrOr:
        return BinaryToken{kBinary_LogicalOr, kPrecedence_LogicalOr};
    case kToken_XorXor:
        return BinaryToken{kBinary_LogicalXor, kPrecedence_LogicalXor};
    case kToken_AndAnd:
        return BinaryToken{kBinary_LogicalAnd, kPrecedence_LogicalAnd};
    case kToken_Or:
        return BinaryToken{kBinary_BitOr, kPrecedence_BitOr};
    case kToken_Xor:
        return BinaryToken{kBinary_BitXor, kPrecedence_BitXor};
    case kToken_And:
        return BinaryToken{kBinary_BitAnd, kPrecedence_BitAnd};
    case kToken_Equal:
        return BinaryToken{kBinary_Equal, kPrecedence_Equality};
    case kToken_NotEqual:
        return BinaryToken{kBinary_NotEqual, kPrecedence_Equality};
    case kToken_Less:
        return BinaryToken{kBinary_Less, kPrecedence_Relation};
    case kToken_Greater:
        return BinaryToken{kBinary_Greater, kPrecedence_Relation};
    case kToken_LessEqual:
        return BinaryToken{kBinary_LessEqual, kPrecedence_Relation};
    case kToken_GreaterEqual:
        return BinaryToken{kBinary_GreaterEqual, kPrecedence_Relation};
    case kToken_ShiftLeft:
        return BinaryToken{kBinary_ShiftLeft, kPrecedence_Shift};
    case kToken_ShiftRight:
        return BinaryToken{kBinary_ShiftRight, kPrecedence_Shift};
    case kToken_Plus:
        return BinaryToken{kBinary_Add, kPrecedence_Add};
    case kToken_Minus:
        return BinaryToken{kBinary_Subtract, kPrecedence_Add};
    case kToken_Star:
        return BinaryToken{kBinary_Multiply, kPrecedence_Multiply};
    case kToken_Slash:
        return BinaryToken{kBinary_Divide, kPrecedence_Multiply};
    case kToken_Percent:
        return BinaryToken{kBinary_Modulo, kPrecedence_Multiply};
    default:
        return std::nullopt;
    }
}

std::optional<BinaryOperator> FindCompoundAssign(TokenKind kind) {
    switch (kind) {
    case kToken_AddAssign:
        return kBinary_Add;
    case kToken_SubtractAssign:
        return kBinary_Subtract;
    case kToken_MultiplyAssign:
        return kBinary_Multiply;
    case kToken_DivideAssign:
        return kBinary_Divide;
    case kToken_ModuloAssign:
        return kBinary_Modulo;
    case kToken_ShiftLeftAssign:
        return kBinary_ShiftLeft;
    case kToken_ShiftRightAssign:
        return kBinary_ShiftRight;
    case kToken_AndAssign:
        return kBinary_BitAnd;
    case kToken_XorAssign:
        return kBinary_BitXor;
    case kToken_OrAssign:
        return kBinary_BitOr;
    default:
        return std::nullopt;
    }
}

bool IsPrefixOperator(TokenKind kind) {
    return kind == kToken_Plus || kind == kToken_Minus || kind == kToken_Exclamation ||
           kind == kToken_Tilde || kind == kToken_PlusPlus || kind == kToken_MinusMinus;
}

} // namespace

bool IsTypeKeyword(TokenKind kind) {
    return kind >= kToken_Void && kind <= kToken_Primitive;
}

Type GetKeywordType(TokenKind kind) {
    switch (kind) {
    case kToken_Float:
        return kFloat;
    case kToken_Int:
        return kInt;
    case kToken_Bool:
        return kBool;
    case kToken_Vec2:
    case kToken_Vec3:
    case kToken_Vec4:
        return MakeVector(kBase_Float, kind - kToken_Vec2 + 2);
    case kToken_IVec2:
    case kToken_IVec3:
    case kToken_IVec4:
        return MakeVector(kBase_Int, kind - kToken_IVec2 + 2);
    case kToken_BVec2:
    case kToken_BVec3:
    case kToken_BVec4:
        return MakeVector(kBase_Bool, kind - kToken_BVec2 + 2);
    case kToken_Mat2:
    case kToken_Mat3:
    case kToken_Mat4:
        return MakeMatrix(kind - kToken_Mat2 + 2);
    case kToken_Sampler2D:
        return MakeScalar(kBase_Sampler2D);
    case kToken_Sampler3D:
        return MakeScalar(kBase_Sampler3D);
    case kToken_SamplerCube:
        return MakeScalar(kBase_SamplerCube);
    case kToken_Primitive:
        return kPrimitive;
    default:
        return kVoid;
    }
}

ExpressionParser::ExpressionParser(CheckContext& context, TokenStream& tokens)
    : _context(context), _tokens(tokens), _access(context), _operators(context, _access),
      _calls(context, _access) {}

ParsedExpression ExpressionParser::_Parse(bool takesCommas) {
    _takesCommas = takesCommas;
    _frames.clear();
    _operands.clear();
    Step step = kStep_Operand;
    while (step == kStep_Operand || step == kStep_Operator) {
        step = step == kStep_Operand ? _ReadOperand() : _ReadOperator();
    }
    return {step == kStep_Done, step == kStep_Done ? _operands.back() : nullptr};
}

ExpressionParser::Step ExpressionParser::_Report(const char* expected) {
    _context.diagnostics.Error(_tokens.Peek().line, std::string("expected ") + expected +
                                                        ", found " + Describe(_tokens.Peek()));
    return kStep_Fail;
}

void ExpressionParser::_Push(FrameKind kind, int precedence, BinaryOperator operation) {
    _frames.push_back({kind, precedence, _tokens.Peek(), operation, kVoid, _operands.size()});
}

const Expression* ExpressionParser::_Pop() {
    const Expression* operand = _operands.back();
    _operands.pop_back();
    return operand;
}

ExpressionParser::Step ExpressionParser::_ReadOperand() {
    const Token& token = _tokens.Peek();
    switch (token.kind) {
    case kToken_IntConstant:
        _operands.push_back(_context.nodes.MakeInt(token.line, token.value.i));
        break;
    case kToken_FloatConstant:
        _operands.push_back(_context.nodes.MakeFloat(token.line, token.value.f));
        break;
    case kToken_True:
    case kToken_False:
        _operands.push_back(_context.nodes.MakeBool(token.line, token.kind == kToken_True));
        break;
    case kToken_Identifier:
        return _ReadName();
    case kToken_LeftParenthesis:
        _Push(kFrame_Parenthesis);
        _tokens.Take();
        return kStep_Operand;
    default:
        if (IsPrefixOperator(token.kind)) {
            _Push(kFrame_Prefix, kPrecedence_Prefix);
            _tokens.Take();
            return kStep_Operand;
        }
        if (IsTypeKeyword(token.kind)) {
            return _ReadConstructor();
        }
        return _ReadLeftOut();
    }
    _tokens.Take();
    return kStep_Operator;
}

ExpressionParser::Step ExpressionParser::_ReadName() {
    if (!_tokens.Is(kToken_LeftParenthesis, 1)) {
        _operands.push_back(_access.Name(_tokens.Take()));
        return kStep_Operator;
    }
    _Push(kFrame_Call);
    _tokens.Take();
    _tokens.Take();
    if (_tokens.Is(kToken_Void) && _tokens.Is(kToken_RightParenthesis, 1)) {
        _tokens.Take();
    }
    if (_tokens.Accept(kToken_RightParenthesis)) {
        _CloseCall();
        return kStep_Operator;
    }
    return kStep_Operand;
}

/// `vec3(`, or for an array `float[2](` and `float[](`.
ExpressionParser::Step ExpressionParser::_ReadConstructor() {
    _Push(kFrame_Construct);
    Type& type = _frames.back().type;
    type = GetKeywordType(_tokens.Take().kind);
    if (_tokens.Accept(kToken_LeftBracket)) {
        // Without a length the number of arguments is the length.
        type.arrayLength = -1;
        if (!_tokens.Is(kToken_RightBracket)) {
            const Token& length = _tokens.Peek();
            const Expression* value = length.kind == kToken_IntConstant
                                          ? _context.nodes.MakeInt(length.line, length.value.i)
                                      : length.kind == kToken_Identifier ? _access.Name(length)
                                                                         : nullptr;
            if (value == nullptr || value->kind != kExpression_Literal || value->type != kInt ||
                value->As<LiteralExpression>().values[0].i < 1) {
                return _Report("a constant length above 0");
            }
            type.arrayLength = value->As<LiteralExpression>().values[0].i;
            _tokens.Take();
        }
        if (!_tokens.Expect(kToken_RightBracket, "']'")) {
            return kStep_Fail;
        }
    }
    if (!_tokens.Is(kToken_LeftParenthesis)) {
        return _Report("'(' behind the type of a constructor");
    }
    _tokens.Take();
    if (_tokens.Accept(kToken_RightParenthesis)) {
        _CloseCall();
        return kStep_Operator;
    }
    return kStep_Operand;
}

/// Calls that were taken out of a text leave an empty place in parentheses, or their arguments as
/// statements in braces; either is an operand that has no value.
ExpressionParser::Step ExpressionParser::_ReadLeftOut() {
    const bool isAfterComma = _IsTop(kFrame_Comma);
    const bool isInParentheses =
        _IsTop(kFrame_Parenthesis) ||
        (isAfterComma && _frames.size() > 1 &&
         _frames[_frames.size() - 2].kind == kFrame_Parenthesis);
    const bool endsHere = _tokens.Is(kToken_RightParenthesis) || _tokens.Is(kToken_Comma);
    if (isInParentheses && endsHere) {
        _operands.push_back(_context.nodes.MakeNothing(_tokens.Peek().line));
        return kStep_Operator;
    }
    if (_tokens.Is(kToken_LeftBrace) && (isInParentheses || (!_HasFrames() && _takesCommas))) {
        _Push(kFrame_Braces);
        _tokens.Take();
        return kStep_Operand;
    }
    return _Report("an expression");
}

ExpressionParser::Step ExpressionParser::_ReadOperator() {
    switch (_tokens.Peek().kind) {
    case kToken_Dot:
        return _ReadMember();
    case kToken_LeftBracket:
        _Push(kFrame_Index);
        _tokens.Take();
        return kStep_Operand;
    default:
        break;
    }
    _operands.back() = _access.Complete(_operands.back());
    const Token& token = _tokens.Peek();
    switch (token.kind) {
    case kToken_PlusPlus:
    case kToken_MinusMinus:
        _operands.back() = _operators.Increment(token.line, _operands.back(),
                                                token.kind == kToken_MinusMinus, false);
        _tokens.Take();
        return kStep_Operator;
    case kToken_Question:
        _Reduce(kPrecedence_Conditional);
        _Push(kFrame_Question);
        _tokens.Take();
        return kStep_Operand;
    case kToken_Colon:
        return _ReadColon();
    case kToken_Comma:
        return _ReadComma();
    case kToken_RightParenthesis:
    case kToken_RightBracket:
        return _ReadClosing(token.kind);
    case kToken_Semicolon:
        return _ReadSemicolonInBraces();
    default:
        return _ReadBinaryOperator();
    }
}

ExpressionParser::Step ExpressionParser::_ReadMember() {
    _tokens.Take();
    if (!_tokens.Is(kToken_Identifier)) {
        return _Report("a name behind '.'");
    }
    const Token& name = _tokens.Take();
    if (name.text == "length" && _tokens.Is(kToken_LeftParenthesis)) {
        _tokens.Take();
        if (!_tokens.Expect(kToken_RightParenthesis, "')'")) {
            return kStep_Fail;
        }
        _operands.back() = _access.Length(_operands.back(), name.line);
    } else {
        _operands.back() = _access.Member(_operands.back(), name);
    }
    return kStep_Operator;
}

ExpressionParser::Step ExpressionParser::_ReadBinaryOperator() {
    const TokenKind kind = _tokens.Peek().kind;
    if (const auto binary = FindBinary(kind)) {
        _Reduce(binary->precedence - 1);
        _Push(kFrame_Binary, binary->precedence, binary->operation);
    } else if (kind == kToken_Assign) {
        _Reduce(kPrecedence_Assign);
        _Push(kFrame_Assign, kPrecedence_Assign);
    } else if (const auto compound = FindCompoundAssign(kind)) {
        _Reduce(kPrecedence_Assign);
        _Push(kFrame_CompoundAssign, kPrecedence_Assign, *compound);
    } else {
        return _Finish();
    }
    _tokens.Take();
    return kStep_Operand;
}

ExpressionParser::Step ExpressionParser::_ReadComma() {
    _Reduce(kPrecedence_Comma - 1);
    if (_IsTop(kFrame_Call) || _IsTop(kFrame_Construct)) {
        _tokens.Take(); // the operand stays where it is: it is an argument
        return kStep_Operand;
    }
    if (!_HasFrames() && !_takesCommas) {
        return _Finish();
    }
    _Push(kFrame_Comma, kPrecedence_Comma);
    _tokens.Take();
    return kStep_Operand;
}

ExpressionParser::Step ExpressionParser::_ReadColon() {
    _Reduce(kPrecedence_Lowest);
    if (!_IsTop(kFrame_Question)) {
        return _Finish();
    }
    _frames.back().kind = kFrame_Colon;
    _frames.back().precedence = kPrecedence_Assign;
    _tokens.Take();
    return kStep_Operand;
}

ExpressionParser::Step ExpressionParser::_ReadClosing(TokenKind kind) {
    _Reduce(kPrecedence_Lowest);
    if (!_HasFrames()) {
        return kStep_Done;
    }
    const Frame& frame = _frames.back();
    if (kind == kToken_RightBracket) {
        if (frame.kind != kFrame_Index) {
            return _Finish();
        }
        const int line = frame.token.line;
        _frames.pop_back();
        _tokens.Take();
        const Expression* index = _Pop();
        _operands.back() = _access.Index(_operands.back(), index, line);
        return kStep_Operator;
    }
    if (frame.kind == kFrame_Parenthesis) {
        _frames.pop_back();
    } else if (frame.kind == kFrame_Call || frame.kind == kFrame_Construct) {
        _CloseCall();
    } else {
        return _Finish();
    }
    _tokens.Take();
    return kStep_Operator;
}

/// Inside of braces expressions stand as statements: they run in order and have no value.
ExpressionParser::Step ExpressionParser::_ReadSemicolonInBraces() {
    _Reduce(kPrecedence_Lowest);
    if (!_IsTop(kFrame_Braces)) {
        return _Finish();
    }
    const int line = _tokens.Take().line;
    if (!_tokens.Accept(kToken_RightBrace)) {
        _Push(kFrame_Comma, kPrecedence_Comma);
        return kStep_Operand;
    }
    _frames.pop_back();
    _operands.back() = _operators.Comma(line, _operands.back(), _context.nodes.MakeNothing(line));
    return kStep_Operator;
}

ExpressionParser::Step ExpressionParser::_Finish() {
    _Reduce(kPrecedence_Lowest);
    if (!_HasFrames()) {
        return kStep_Done;
    }
    const char* closing = nullptr;
    switch (_frames.back().kind) {
    case kFrame_Question:
        closing = "':'";
        break;
    case kFrame_Index:
        closing = "']'";
        break;
    case kFrame_Braces:
        closing = "';'";
        break;
    default:
        closing = "')'";
        break;
    }
    const Token opening = _frames.back().token;
    _Report(closing);
    if (opening.line != _tokens.Peek().line) {
        _context.diagnostics.Note(opening.line, "it belongs to " + Quote(opening.text) + " here");
    }
    return kStep_Fail;
}

void ExpressionParser::_Reduce(int precedence) {
    while (_HasFrames() && _frames.back().kind < kFrame_Question &&
           _frames.back().precedence > precedence) {
        _ReduceTop();
    }
}

void ExpressionParser::_ReduceTop() {
    const Frame frame = _frames.back();
    _frames.pop_back();
    const int line = frame.token.line;
    const Expression* last = _Pop();
    if (frame.kind == kFrame_Prefix) {
        const TokenKind kind = frame.token.kind;
        if (kind == kToken_Plus) {
            _operands.push_back(_operators.Plus(line, last));
        } else if (kind == kToken_PlusPlus || kind == kToken_MinusMinus) {
            _operands.push_back(_operators.Increment(line, last, kind == kToken_MinusMinus, true));
        } else {
            const UnaryOperator operation = kind == kToken_Minus         ? kUnary_Negate
                                            : kind == kToken_Exclamation ? kUnary_LogicalNot
                                                                         : kUnary_BitNot;
            _operands.push_back(_operators.Unary(operation, frame.token.text, line, last));
        }
        return;
    }
    const Expression* first = _Pop();
    switch (frame.kind) {
    case kFrame_Binary:
        _operands.push_back(
            _operators.Binary(frame.operation, frame.token.text, line, first, last));
        break;
    case kFrame_Assign:
        _operands.push_back(_operators.Assign(line, first, last));
        break;
    case kFrame_CompoundAssign:
        _operands.push_back(
            _operators.CompoundAssign(frame.operation, frame.token.text, line, first, last));
        break;
    case kFrame_Comma:
        _operands.push_back(_operators.Comma(line, first, last));
        break;
    default: {
        const Expression* condition = _Pop();
        _operands.push_back(_operators.Conditional(line, condition, first, last));
        break;
    }
    }
}

void ExpressionParser::_CloseCall() {
    const Frame frame = _frames.back();
    _frames.pop_back();
    const CallChecker::Arguments arguments(_operands.data() + frame.firstArgument,
                                           _operands.size() - frame.firstArgument);
    const Expression* call = nullptr;
    if (frame.kind == kFrame_Call) {
        call = _calls.Call(frame.token, arguments);
    } else {
        Type type = frame.type;
        if (type.arrayLength < 0) {
            type.arrayLength = static_cast<int>(arguments.size());
        }
        call = _calls.Construct(type, frame.token.line, arguments);
    }
    _operands.resize(frame.firstArgument);
    _operands.push_back(call);
}

} // namespace Tolen::OpenKL
