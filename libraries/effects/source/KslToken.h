#pragma once

#include <cstdint>

namespace Tolen::Effects {

/// X(name, text) for every token of KLSL, in the order of the codes 1 to 91. The text is the
/// spelling, or what messages call a token that has many spellings. RESERVED is spelled by no
/// input: the word is an identifier.
#define TOLEN_KSL_TOKENS(X)                                                                        \
    X(LeftBracket, "[")                                                                            \
    X(RightBracket, "]")                                                                           \
    X(LeftBrace, "{")                                                                              \
    X(RightBrace, "}")                                                                             \
    X(Interface, "interface")                                                                      \
    X(Identifier, "identifier")                                                                    \
    X(Class, "class")                                                                              \
    X(Colon, ":")                                                                                  \
    X(Semicolon, ";")                                                                              \
    X(Coord, "coord")                                                                              \
    X(Normal, "normal")                                                                            \
    X(Tangent, "tangent")                                                                          \
    X(Output, "output")                                                                            \
    X(Out, "out")                                                                                  \
    X(Float, "float")                                                                              \
    X(Vec2, "vec2")                                                                                \
    X(Vec3, "vec3")                                                                                \
    X(Vec4, "vec4")                                                                                \
    X(IntConstant, "int constant")                                                                 \
    X(Static, "static")                                                                            \
    X(Const, "const")                                                                              \
    X(Assign, "=")                                                                                 \
    X(Minus, "-")                                                                                  \
    X(FloatConstant, "float constant")                                                             \
    X(BoolConstant, "bool constant")                                                               \
    X(RightParenthesis, ")")                                                                       \
    X(Comma, ",")                                                                                  \
    X(LeftParenthesis, "(")                                                                        \
    X(Bool, "bool")                                                                                \
    X(Int, "int")                                                                                  \
    X(IVec2, "ivec2")                                                                              \
    X(IVec3, "ivec3")                                                                              \
    X(IVec4, "ivec4")                                                                              \
    X(Mat2, "mat2")                                                                                \
    X(Mat3, "mat3")                                                                                \
    X(Mat4, "mat4")                                                                                \
    X(Input, "input")                                                                              \
    X(Void, "void")                                                                                \
    X(In, "in")                                                                                    \
    X(InOut, "inout")                                                                              \
    X(If, "if")                                                                                    \
    X(While, "while")                                                                              \
    X(Do, "do")                                                                                    \
    X(For, "for")                                                                                  \
    X(Continue, "continue")                                                                        \
    X(Break, "break")                                                                              \
    X(Return, "return")                                                                            \
    X(Else, "else")                                                                                \
    X(Dot, ".")                                                                                    \
    X(Increment, "++")                                                                             \
    X(Decrement, "--")                                                                             \
    X(BVec2, "bvec2")                                                                              \
    X(BVec3, "bvec3")                                                                              \
    X(BVec4, "bvec4")                                                                              \
    X(Plus, "+")                                                                                   \
    X(Not, "!")                                                                                    \
    X(Complement, "~")                                                                             \
    X(Multiply, "*")                                                                               \
    X(Divide, "/")                                                                                 \
    X(Modulo, "%")                                                                                 \
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
    X(LogicalAnd, "&&")                                                                            \
    X(LogicalXor, "^^")                                                                            \
    X(LogicalOr, "||")                                                                             \
    X(Question, "?")                                                                               \
    X(MultiplyAssign, "*=")                                                                        \
    X(DivideAssign, "/=")                                                                          \
    X(ModuloAssign, "%=")                                                                          \
    X(AddAssign, "+=")                                                                             \
    X(SubtractAssign, "-=")                                                                        \
    X(ShiftLeftAssign, "<<=")                                                                      \
    X(ShiftRightAssign, ">>=")                                                                     \
    X(AndAssign, "&=")                                                                             \
    X(XorAssign, "^=")                                                                             \
    X(OrAssign, "|=")                                                                              \
    X(Sampler2D, "sampler2D")                                                                      \
    X(Sampler3D, "sampler3D")                                                                      \
    X(SamplerCube, "samplerCube")                                                                  \
    X(Primitive, "primitive")                                                                      \
    X(Reserved, "RESERVED")                                                                        \
    X(Struct, "struct")

/// The code of a token: the terminals of the grammar. 0 is the end of the input.
enum KslToken : std::int32_t {
    kToken_End = 0,
#define TOLEN_ENUMERATOR(name, text) kToken_##name,
    TOLEN_KSL_TOKENS(TOLEN_ENUMERATOR)
#undef TOLEN_ENUMERATOR
    kToken_Count, ///< one more than the highest code
};

static_assert(kToken_Identifier == 6 && kToken_IntConstant == 19 && kToken_FloatConstant == 24 &&
                  kToken_Input == 37 && kToken_Less == 63 && kToken_Struct == 91,
              "the codes follow from the order of the list");

/// The text of each token by its code, "" for the end of the input.
inline constexpr const char* kTokenTexts[kToken_Count] = {
    "",
#define TOLEN_TEXT(name, text) text,
    TOLEN_KSL_TOKENS(TOLEN_TEXT)
#undef TOLEN_TEXT
};

/// What messages call the token @p code; "Unknown" for the keyword "input", which has no name, and
/// for any number outside 1 to 91.
const char* TokenName(int code);

} // namespace Tolen::Effects
