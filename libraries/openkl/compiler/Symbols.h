#pragma once

#include "compiler/Builtins.h"
#include "compiler/Type.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Tolen::OpenKL {

struct BlockStatement;
struct Expression;
struct LiteralExpression;

/// Where a variable lives.
enum Storage : std::uint8_t {
    kStorage_Global,         ///< no qualifier: belongs to the invocation, starts as setup left it
    kStorage_Const,          ///< as kStorage_Global; without an initialiser it may be assigned
    kStorage_Static,         ///< as kStorage_Global
    kStorage_Uniform,        ///< read-only, one value for each primitive
    kStorage_MutableUniform, ///< as kStorage_Uniform
    kStorage_UniformBlock,   ///< `type` is the element's; read by BlockElementExpression alone
    kStorage_Attribute,      ///< vertex stage, read-only
    kStorage_Varying,        ///< written by the vertex stage, read by the ray stage
    kStorage_RayAttribute,   ///< travels with rays: read, assigned, and captured by spawnRay
    kStorage_Local,
    kStorage_Parameter, ///< of a function; assignable inside whatever its direction
    kStorage_Builtin,
};

/// What happens to a varying between the vertex and the ray stage.
enum VaryingKind : std::uint8_t {
    kVarying_Plain,
    kVarying_Normalized,            ///< normalised after interpolation
    kVarying_Transformed,           ///< carried by the transform of the primitive
    kVarying_TransformedInvariant,  ///< carried by the transform of the primitive
    kVarying_TransformedNormalized, ///< carried by the inverse transpose, then normalised
};

enum Direction : std::uint8_t {
    kDirection_In,
    kDirection_Out,   ///< copied out on return; undefined, here 0, on entry
    kDirection_InOut, ///< copied in, and out on return
};

/// A variable of one text. Globals of several texts that are one variable of the program are
/// brought together by LinkedProgram.
struct Variable {
    std::string_view name;
    Type type;
    Storage storage = kStorage_Local;
    VaryingKind varyingKind = kVarying_Plain;
    Direction direction = kDirection_In;
    BuiltinVariable builtin = kVariable_None;
    bool isConst = false;   ///< a local or parameter declared const
    bool isWritten = false; ///< some expression of its text writes it
    int reads = 0;          ///< how many expressions of its text read it
    int line = 0;           ///< 0 for built-ins
    /// Of a global; null when there is none. A local has it in its DeclarationStatement.
    const Expression* initializer = nullptr;
    /// The value of a const variable whose initialiser is constant; uses have become literals.
    const LiteralExpression* constant = nullptr;
    /// Of a uniform block: the name of its one array member.
    std::string_view blockMember;
};

/// A function of one text: a prototype, or with `body` a definition. A text has one Function for
/// each signature, so that calls need not tell whether they stand before or behind the definition.
struct Function {
    std::string_view name;
    Type returnType;
    std::span<Variable* const> parameters;
    const BlockStatement* body = nullptr; ///< null when the text only declares the function
    /// Every local variable in order of declaration; parameters are not among them.
    std::span<Variable* const> locals;
    /// The functions that the body calls, each once, in order of first call.
    std::span<Function* const> callees;
    int line = 0;      ///< of the definition if there is one, otherwise of the first prototype
    int firstCall = 0; ///< line of the first call in its text; 0 when nothing calls it

    /// "name(vec3, out float)".
    std::string GetSignature() const;
};

} // namespace Tolen::OpenKL
