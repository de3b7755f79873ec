#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Words and signs with one spelling; X takes the enumerator and the spelling. Words that are only
/// special in one place, such as `varying` or `normalized`, are identifiers, so that code can use
/// them as names.
#define TOLEN_OPENKL_KEYWORDS(X)                                                                   \
    X(Void, "void")                                                                                \
    X(Float, "float")                                                                              \
    X(Int, "int")                                                                                  \
    X(Bool, "bool")                                                                                \
    X(Vec2, "vec2")                                                                                \
    X(Vec3, "vec3")                                                                                \
    X(Vec4, "vec4")                                                                                \
    X(IVec2, "ivec2")                                                                              \
    X(IVec3, "ivec3")                                                                              \
    X(IVec4, "ivec4")                                                                              \
    X(BVec2, "bvec2")                                                                              \
    X(BVec3, "bvec3")                                                                              \
    X(BVec4, "bvec4")                                                                              \
    X(Mat2, "mat2")                                                                                \
    X(Mat3, "mat3")                                                                                \
    X(Mat4, "mat4")                                                                                \
    X(Sampler2D, "sampler2D")                                                                      \
    X(Sampler3D, "sampler3D")                                                                      \
    X(SamplerCube, "samplerCube")                                                                  \
    X(Primitive, "primitive")                                                                      \
    X(Struct, "struct")                                                                            \
    X(Const, "const")                                                                              \
    X(Static, "static")                                                                            \
    X(In, "in")                                                                                    \
    X(Out, "out")                                                                                  \
    X(InOut, "inout")                                                                              \
    X(If, "if")                                                                                    \
    X(Else, "else")                                                                                \
    X(For, "for")                                                                                  \
    X(While, "while")                                                                              \
    X(Do, "do")                                                                                    \
    X(Break, "break")                                                                              \
    X(Continue, "continue")                                                                        \
    X(Return, "return")                                                                            \
    X(True, "true")                                                                                \
    X(False, "false")

#define TOLEN_OPENKL_SIGNS(X)                                                                      \
    X(LeftParenthesis, "(")                                                                        \
    X(RightParenthesis, ")")                                                                       \
    X(LeftBracket, "[")                                                                            \
    X(RightBracket, "]")                                                                           \
    X(LeftBrace, "{")                                                                              \
    X(RightBrace, "}")                                                                             \
    X(Semicolon, ";")                                                                              \
    X(Comma, ",")                                                                                  \
    X(Dot, ".")                                                                                    \
    X(Question, "?")                                                                               \
    X(Colon, ":")                                                                                  \
    X(Assign, "=")                                                                                 \
    X(AddAssign, "+=")                                                                             \
    X(SubtractAssign, "-=")                                                                        \
    X(MultiplyAssign, "*=")                                                                        \
    X(DivideAssign, "/=")                                                                          \
    X(ModuloAssign, "%=")                                                                          \
    X(ShiftLeftAssign, "<<=")                                                                      \
    X(ShiftRightAssign, ">>=")                                                                     \
    X(AndAssign, "&=")                                                                             \
    X(XorAssign, "^=")                                                                             \
    X(OrAssign, "|=")                                                                              \
    X(Plus, "+")                                                                                   \
    X(Minus, "-")                                                                                  \
    X(Star, "*")                                                                                   \
    X(Slash, "/")                                                                                  \
    X(Percent, "%")                                                                                \
    X(PlusPlus, "++")                                                                              \
    X(MinusMinus, "--")                                                                            \
    X(Exclamation, "!")                                                                            \
    X(Tilde, "~")                                                                                  \
    X(ShiftLeft, "<<")                                                                             \
    X(ShiftRight, ">>")                                                                            \
    X(Less, "<")                                                                                   \
    X(Greater, ">")                                                                                \
    X(LessEqual, "<=")                                                                             \
    X(GreaterEqual, ">=")                                                                          \
    X(Equal, "==")                                                                                 \
    X(NotEqual, "!=")                                                                              \
    X(And, "&")                                                                                    \
    X(Xor, "^")                                                                                    \
    X(Or, "|")                                                                                     \
    X(AndAnd, "&&")                                                                                \
    X(XorXor, "^^")                                                                                \
    X(OrOr, "||")

namespace Tolen::OpenKL {

enum TokenKind : std::uint8_t {
    kToken_End,
    kToken_Identifier,
    kToken_IntConstant,
    kToken_FloatConstant,
#define TOLEN_OPENKL_ENUMERATOR(name, spelling) kToken_##name,
    TOLEN_OPENKL_KEYWORDS(TOLEN_OPENKL_ENUMERATOR) TOLEN_OPENKL_SIGNS(TOLEN_OPENKL_ENUMERATOR)
#undef TOLEN_OPENKL_ENUMERATOR
};

struct Token {
    TokenKind kind = kToken_End;
    int line = 1;
    std::string_view text; ///< as it stands in the source
    union {
        std::int32_t i;
        float f;
    } value = {0};
};

/// What a message calls a token: its quoted text, or "the end of the text".
std::string Describe(const Token& token);

} // namespace Tolen::OpenKL
