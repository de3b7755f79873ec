#pragma once

#include "compiler/Type.h"

#include <cstdint>
#include <string_view>

namespace Tolen::OpenKL {

/// The stages that a text can be written for; values as in IKLShader::Type.
enum Stage : std::uint8_t {
    kStage_Ray = 0,
    kStage_Vertex = 1,
    kStage_Frame = 2,
    kStage_Prefix = 3,
};

/// "ray", "vertex", "frame" or "prefix".
std::string_view StageToString(Stage stage);

/// Variables that every text of their stages has without declaring them; X takes the enumerator and
/// the name.
#define TOLEN_OPENKL_BUILTIN_VARIABLES(X)                                                          \
    X(OutputRayCount, "kl_OutputRayCount")                                                         \
    X(Position, "kl_Position")                                                                     \
    X(PrimitiveTransformMatrix, "kl_PrimitiveTransformMatrix")                                     \
    X(PrimitiveTransformMatrixInverseTranspose, "kl_PrimitiveTransformMatrixInverseTranspose")     \
    X(PixelCoord, "kl_PixelCoord")                                                                 \
    X(Resolution, "kl_Resolution")                                                                 \
    X(SampleIndex, "kl_SampleIndex")                                                               \
    X(SampleCount, "kl_SampleCount")                                                               \
    X(Time, "kl_Time")                                                                             \
    X(RayOrigin, "kl_RayOrigin")                                                                   \
    X(RayDirection, "kl_RayDirection")                                                             \
    X(RayDepth, "kl_RayDepth")                                                                     \
    X(RayClass, "kl_RayClass")                                                                     \
    X(HitDistance, "kl_HitDistance")                                                               \
    X(HitPosition, "kl_HitPosition")                                                               \
    X(HitNormal, "kl_HitNormal")                                                                   \
    X(HitFront, "kl_HitFront")                                                                     \
    X(HitBarycentric, "kl_HitBarycentric")                                                         \
    X(HitPrimitive, "kl_HitPrimitive")                                                             \
    X(Missed, "kl_Missed")

enum BuiltinVariable : std::uint8_t {
#define TOLEN_OPENKL_ENUMERATOR(name, text) kVariable_##name,
    TOLEN_OPENKL_BUILTIN_VARIABLES(TOLEN_OPENKL_ENUMERATOR)
#undef TOLEN_OPENKL_ENUMERATOR
        kVariable_Count,
    kVariable_None = kVariable_Count,
};

/// Functions of the language; X takes the enumerator and the name. Where GLSL has a function of
/// that name it means the same. In calls the arguments have the types of the signature that was
/// chosen; a scalar beside vectors, as in `max(vec3, float)`, stays a scalar and counts for every
/// component.
#define TOLEN_OPENKL_BUILTIN_FUNCTIONS(X)                                                          \
    X(Radians, "radians")                                                                          \
    X(Degrees, "degrees")                                                                          \
    X(Sin, "sin")                                                                                  \
    X(Cos, "cos")                                                                                  \
    X(Tan, "tan")                                                                                  \
    X(Asin, "asin")                                                                                \
    X(Acos, "acos")                                                                                \
    X(Atan, "atan")                                                                                \
    X(Sinh, "sinh")                                                                                \
    X(Cosh, "cosh")                                                                                \
    X(Tanh, "tanh")                                                                                \
    X(Asinh, "asinh")                                                                              \
    X(Acosh, "acosh")                                                                              \
    X(Atanh, "atanh")                                                                              \
    X(Pow, "pow")                                                                                  \
    X(Exp, "exp")                                                                                  \
    X(Log, "log")                                                                                  \
    X(Exp2, "exp2")                                                                                \
    X(Log2, "log2")                                                                                \
    X(Sqrt, "sqrt")                                                                                \
    X(InverseSqrt, "inversesqrt")                                                                  \
    X(Abs, "abs")                                                                                  \
    X(Sign, "sign")                                                                                \
    X(Floor, "floor")                                                                              \
    X(Trunc, "trunc")                                                                              \
    X(Round, "round")                                                                              \
    X(RoundEven, "roundEven")                                                                      \
    X(Ceil, "ceil")                                                                                \
    X(Fract, "fract")                                                                              \
    X(Mod, "mod")                                                                                  \
    X(Modf, "modf") /* float or vector x, out whole part */                                        \
    X(Min, "min")                                                                                  \
    X(Max, "max")                                                                                  \
    X(Clamp, "clamp")                                                                              \
    X(Mix, "mix") /* the third argument may be bool or bvec: picks the second where true */        \
    X(Step, "step")                                                                                \
    X(SmoothStep, "smoothstep")                                                                    \
    X(IsNan, "isnan")                                                                              \
    X(IsInf, "isinf")                                                                              \
    X(FloatBitsToInt, "floatBitsToInt")                                                            \
    X(IntBitsToFloat, "intBitsToFloat")                                                            \
    X(Fma, "fma")                                                                                  \
    X(Length, "length")                                                                            \
    X(Distance, "distance")                                                                        \
    X(Dot, "dot")                                                                                  \
    X(Cross, "cross")                                                                              \
    X(Normalize, "normalize")                                                                      \
    X(FaceForward, "faceforward")                                                                  \
    X(Reflect, "reflect")                                                                          \
    X(Refract, "refract")                                                                          \
    X(MatrixCompMult, "matrixCompMult")                                                            \
    X(OuterProduct, "outerProduct")                                                                \
    X(Transpose, "transpose")                                                                      \
    X(Determinant, "determinant")                                                                  \
    X(Inverse, "inverse")                                                                          \
    X(LessThan, "lessThan")                                                                        \
    X(LessThanEqual, "lessThanEqual")                                                              \
    X(GreaterThan, "greaterThan")                                                                  \
    X(GreaterThanEqual, "greaterThanEqual")                                                        \
    X(VectorEqual, "equal")                                                                        \
    X(VectorNotEqual, "notEqual")                                                                  \
    X(Any, "any")                                                                                  \
    X(All, "all")                                                                                  \
    X(Not, "not")                                                                                  \
    X(Texture2D, "texture2D")         /* sampler2D, vec2[, float bias] -> vec4 */                  \
    X(TextureSize, "textureSize")     /* sampler2D[, int level] -> ivec2 */                        \
    X(SpawnRay, "spawnRay")           /* vec3, vec3[, float[, int[, primitive]]] */                \
    X(Accumulate, "accumulate")       /* int, float|vec3|vec4 */                                   \
    X(Occluded, "occluded")           /* vec3, vec3, float -> bool */                              \
    X(TraceDistance, "traceDistance") /* vec3, vec3, float -> float */                             \
    X(Random, "random")                                                                            \
    X(Random2, "random2")                                                                          \
    X(DiscardRay, "discardRay")

enum BuiltinFunction : std::uint8_t {
#define TOLEN_OPENKL_ENUMERATOR(name, text) kFunction_##name,
    TOLEN_OPENKL_BUILTIN_FUNCTIONS(TOLEN_OPENKL_ENUMERATOR)
#undef TOLEN_OPENKL_ENUMERATOR
        kFunction_Count,
};

std::string_view BuiltinVariableToString(BuiltinVariable variable);
std::string_view BuiltinFunctionToString(BuiltinFunction function);

} // namespace Tolen::OpenKL
