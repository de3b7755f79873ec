#include "EngineRig.h"

#include "engine/FloatingPointScope.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace Tolen::OpenKL::Testing {
namespace {

/// Values that every operator meets in every pairing.
const float kFloats[] = {0.0f,
                         -0.0f,
                         1.0f,
                         -1.0f,
                         0.5f,
                         -2.5f,
                         3.0f,
                         1e-20f,
                         1e20f,
                         -1e30f,
                         16777216.0f,
                         std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity(),
                         std::numeric_limits<float>::quiet_NaN(),
                         3.4028235e38f,
                         1.17549435e-38f};
const std::int32_t kInts[] = {
    0,     1,   -1,    2,          -2,
    3,     7,   -7,    31,         32,
    33,    100, 65536, 2147483647, std::numeric_limits<std::int32_t>::min(),
    -65537};

struct FloatOperator {
    const char* name;
    const char* expression; ///< of a and b
    std::function<float(float, float)> compute;
};

const FloatOperator kFloatOperators[] = {
    {"add", "a + b", [](float a, float b) { return a + b; }},
    {"subtract", "a - b", [](float a, float b) { return a - b; }},
    {"multiply", "a * b", [](float a, float b) { return a * b; }},
    {"divide", "a / b", [](float a, float b) { return a / b; }},
    {"negate", "-a", [](float a, float) { return -a; }},
    {"less", "float(a < b)", [](float a, float b) { return a < b ? 1.0f : 0.0f; }},
    {"lessEqual", "float(a <= b)", [](float a, float b) { return a <= b ? 1.0f : 0.0f; }},
    {"greater", "float(a > b)", [](float a, float b) { return a > b ? 1.0f : 0.0f; }},
    {"greaterEqual", "float(a >= b)", [](float a, float b) { return a >= b ? 1.0f : 0.0f; }},
    {"equal", "float(a == b)", [](float a, float b) { return a == b ? 1.0f : 0.0f; }},
    {"notEqual", "float(a != b)", [](float a, float b) { return a != b ? 1.0f : 0.0f; }},
    {"min", "min(a, b)", [](float a, float b) { return b < a ? b : a; }},
    {"max", "max(a, b)", [](float a, float b) { return a < b ? b : a; }},
    {"step", "step(a, b)", [](float a, float b) { return b < a ? 0.0f : 1.0f; }},
    {"abs", "abs(a)", [](float a, float) { return std::fabs(a); }},
    {"sign", "sign(a)", [](float a, float) { return a > 0.0f   ? 1.0f
                                                    : a < 0.0f ? -1.0f
                                                               : 0.0f; }},
    {"floor", "floor(a)", [](float a, float) { return std::floor(a); }},
    {"ceil", "ceil(a)", [](float a, float) { return std::ceil(a); }},
    {"trunc", "trunc(a)", [](float a, float) { return std::trunc(a); }},
    {"roundEven", "roundEven(a)", [](float a, float) { return std::nearbyint(a); }},
    {"fract", "fract(a)", [](float a, float) { return a - std::floor(a); }},
    {"sqrt", "sqrt(a)", [](float a, float) { return std::sqrt(a); }},
    {"inversesqrt", "inversesqrt(a)", [](float a, float) { return 1.0f / std::sqrt(a); }},
    {"mod", "mod(a, b)", [](float a, float b) { return a - b * std::floor(a / b); }},
    {"clamp", "clamp(a, -1.0, b)",
     [](float a, float b) {
         float low = a < -1.0f ? -1.0f : a;
         return b < low ? b : low;
     }},
    {"mixByBool", "mix(a, b, a < b)", [](float a, float b) { return a < b ? b : a; }},
    {"isnan", "float(isnan(a))", [](float a, float) { return std::isnan(a) ? 1.0f : 0.0f; }},
    {"isinf", "float(isinf(a))", [](float a, float) { return std::isinf(a) ? 1.0f : 0.0f; }},
    {"mulAdd", "a * b + 1.0", [](float a, float b) { return a * b + 1.0f; }},
    {"mulSub", "a * b - b", [](float a, float b) { return a * b - b; }},
    {"negMulAdd", "1.0 - a * b", [](float a, float b) { return 1.0f - a * b; }},
    {"fma", "fma(a, b, 3.0)", [](float a, float b) { return a * b + 3.0f; }},
    {"square", "pow(a, 2.0)", [](float a, float) { return a * a; }},
    {"divideByPowerOfTwo", "a / 4.0", [](float a, float) { return a / 4.0f; }},
    {"negated", "a - (-b)", [](float a, float b) { return a + b; }},
    {"modf", "whole(a) * 0.0 + part(a)",
     [](float a, float) {
         float part = std::isinf(a) ? 0.0f : a - std::trunc(a);
         return std::trunc(a) * 0.0f + part;
     }},
};

const char* const kHelpers = "float whole(float a) { float w; modf(a, w); return w; }\n"
                             "float part(float a) { float w; return modf(a, w); }\n";

struct IntOperator {
    const char* name;
    const char* expression;
    std::function<std::int32_t(std::int32_t, std::int32_t)> compute;
};

std::uint32_t U(std::int32_t value) {
    return static_cast<std::uint32_t>(value);
}
std::int32_t S(std::uint32_t value) {
    return static_cast<std::int32_t>(value);
}

const IntOperator kIntOperators[] = {
    {"add", "a + b", [](auto a, auto b) { return S(U(a) + U(b)); }},
    {"subtract", "a - b", [](auto a, auto b) { return S(U(a) - U(b)); }},
    {"multiply", "a * b", [](auto a, auto b) { return S(U(a) * U(b)); }},
    {"divide", "a / b", [](auto a, auto b) { return b == 0    ? 0
                                                    : b == -1 ? S(0u - U(a))
                                                              : a / b; }},
    {"modulo", "a % b", [](auto a, auto b) { return b == 0 || b == -1 ? 0 : a % b; }},
    {"and", "a & b", [](auto a, auto b) { return a & b; }},
    {"or", "a | b", [](auto a, auto b) { return a | b; }},
    {"xor", "a ^ b", [](auto a, auto b) { return a ^ b; }},
    {"not", "~a", [](auto a, auto) { return ~a; }},
    {"negate", "-a", [](auto a, auto) { return S(0u - U(a)); }},
    {"shiftLeft", "a << b", [](auto a, auto b) { return U(b) < 32 ? S(U(a) << b) : 0; }},
    {"shiftRight", "a >> b", [](auto a, auto b) { return U(b) < 32 ? a >> b : 0; }},
    {"less", "int(a < b)", [](auto a, auto b) { return a < b ? 1 : 0; }},
    {"lessEqual", "int(a <= b)", [](auto a, auto b) { return a <= b ? 1 : 0; }},
    {"greater", "int(a > b)", [](auto a, auto b) { return a > b ? 1 : 0; }},
    {"greaterEqual", "int(a >= b)", [](auto a, auto b) { return a >= b ? 1 : 0; }},
    {"equal", "int(a == b)", [](auto a, auto b) { return a == b ? 1 : 0; }},
    {"notEqual", "int(a != b)", [](auto a, auto b) { return a != b ? 1 : 0; }},
    {"min", "min(a, b)", [](auto a, auto b) { return std::min(a, b); }},
    {"max", "max(a, b)", [](auto a, auto b) { return std::max(a, b); }},
    {"clamp", "clamp(a, -5, 9)", [](auto a, auto) { return std::clamp(a, -5, 9); }},
    {"abs", "abs(a)", [](auto a, auto) { return a < 0 ? S(0u - U(a)) : a; }},
    {"sign", "sign(a)", [](auto a, auto) { return a > 0   ? 1
                                                  : a < 0 ? -1
                                                          : 0; }},
    {"toFloatAndBack", "int(float(a / 256))", [](auto a, auto) { return a / 256; }},
};

bool AreSame(float a, float b) {
    return ToWord(a) == ToWord(b) || (std::isnan(a) && std::isnan(b));
}

/// Each operand as a value of each lane, and as one of all lanes: those take different ways.
const char* const kUniforms =
    "uniform float ua; uniform float ub; uniform int ia; uniform int ib;\n";

TEST(EngineOperators, FloatOperators_GiveIeeeResultsInRowsAndScalars) {
    FloatingPointScope scope; // denormals count as 0 here too
    for (const FloatOperator& operation : kFloatOperators) {
        std::string text = std::string(kUniforms) + kHelpers;
        for (const char* form : {"vv", "vs", "sv", "ss"}) {
            text += std::string("float ") + form + "(float a, float b) { return " +
                    operation.expression + "; }\n";
        }
        text += "void main()\n{\nfloat a = kl_HitDistance; float b = kl_RayOrigin.x;\n"
                "accumulate(0, vec4(vv(a, b), vs(a, ub), sv(ua, b), ss(ua, ub)));\n}\n";
        EngineRig rig(text);
        for (float b : kFloats) {
            for (std::size_t i = 0; i < std::size(kFloats); ++i) {
                rig.GetLaneRow(kLaneInput_HitDistance)[i] = ToWord(kFloats[i]);
                rig.GetLaneRow(kLaneInput_RayOriginX)[i] = ToWord(b);
            }
            rig.SetUniform("ua", std::vector<float>{kFloats[3]});
            rig.SetUniform("ub", std::vector<float>{b});
            for (InstructionSet instructionSet : kInstructionSets) {
                const BatchOutput& output =
                    rig.Run(static_cast<int>(std::size(kFloats)), 0, instructionSet);
                for (const AccumulateRecord& record : output.accumulates) {
                    float a = kFloats[record.lane];
                    std::string what = std::string(operation.name) + " of " + std::to_string(a) +
                                       " and " + std::to_string(b) + " on " +
                                       GetName(instructionSet);
                    EXPECT_TRUE(AreSame(record.value[0], operation.compute(a, b)))
                        << what << " " << record.value[0];
                    EXPECT_TRUE(AreSame(record.value[1], operation.compute(a, b))) << what;
                    float uniform = operation.compute(kFloats[3], b);
                    EXPECT_TRUE(AreSame(record.value[2], uniform)) << what;
                    EXPECT_TRUE(AreSame(record.value[3], uniform)) << what;
                }
            }
        }
    }
}

TEST(EngineOperators, IntOperators_WrapAndNeverTrapInRowsAndScalars) {
    for (const IntOperator& operation : kIntOperators) {
        std::string text = kUniforms;
        text += std::string("int f(int a, int b) { return ") + operation.expression + "; }\n";
        text +=
            "void add(int x) { accumulate(0, float(x >> 16)); accumulate(0, float(x & 65535)); }\n"
            "void main()\n{\nint a = kl_RayDepth; int b = kl_SampleIndex;\n"
            "add(f(a, b)); add(f(a, ib)); add(f(ia, b)); add(f(ia, ib));\n}\n";
        EngineRig rig(text);
        for (std::int32_t b : kInts) {
            for (std::size_t i = 0; i < std::size(kInts); ++i) {
                rig.GetLaneRow(kLaneInput_RayDepth)[i] = U(kInts[i]);
                rig.GetLaneRow(kLaneInput_SampleIndex)[i] = U(b);
            }
            rig.SetUniform("ia", std::vector<std::uint32_t>{U(kInts[7])});
            rig.SetUniform("ib", std::vector<std::uint32_t>{U(b)});
            for (InstructionSet instructionSet : kInstructionSets) {
                const BatchOutput& output =
                    rig.Run(static_cast<int>(std::size(kInts)), 0, instructionSet);
                std::vector<std::vector<std::int32_t>> halves(std::size(kInts));
                for (const AccumulateRecord& record : output.accumulates) {
                    halves[record.lane].push_back(static_cast<std::int32_t>(record.value[0]));
                }
                for (std::size_t lane = 0; lane < halves.size(); ++lane) {
                    std::int32_t varying = operation.compute(kInts[lane], b);
                    std::int32_t uniform = operation.compute(kInts[7], b);
                    std::int32_t expected[] = {varying, varying, uniform, uniform};
                    ASSERT_EQ(halves[lane].size(), 8u);
                    for (std::size_t form = 0; form < 4; ++form) {
                        std::int32_t value =
                            S((U(halves[lane][form * 2]) << 16) | U(halves[lane][form * 2 + 1]));
                        EXPECT_EQ(value, expected[form])
                            << operation.name << " of " << kInts[lane] << " and " << b << ", form "
                            << form << " on " << GetName(instructionSet);
                    }
                }
            }
        }
    }
}

/// Functions by component for every width of vector.
TEST(EngineOperators, ComponentwiseFunctions_WorkOnVectorsOfEveryWidth) {
    for (int width = 2; width <= 4; ++width) {
        std::string type = "vec" + std::to_string(width);
        std::string text =
            "void main()\n{\n" + type + " a = " + type + "(vec4(-1.5, 2.25, 0.5, 8.0));\n" + type +
            " b = " + type + "(2.0);\n" + type +
            " r = min(a, 1.0) + max(a, b) + clamp(a, 0.0, 1.0) + mix(a, b, 0.5) + step(0.5, a) + "
            "smoothstep(0.0, 4.0, a) + abs(a) + floor(a) + mod(a, 2.0) + sign(a);\n"
            "for (int i = 0; i < " +
            std::to_string(width) + "; ++i) accumulate(0, r[i]);\n}\n";
        EngineRig rig(text);
        const BatchOutput& output = rig.Run();
        ASSERT_EQ(output.accumulates.GetCount(), static_cast<std::size_t>(width));
        const float values[] = {-1.5f, 2.25f, 0.5f, 8.0f};
        for (int i = 0; i < width; ++i) {
            float a = values[i];
            float t = std::clamp(a / 4.0f, 0.0f, 1.0f);
            float expected = std::min(a, 1.0f) + std::max(a, 2.0f) + std::clamp(a, 0.0f, 1.0f) +
                             (a + 2.0f) * 0.5f + (a < 0.5f ? 0.0f : 1.0f) +
                             t * t * (3.0f - 2.0f * t) + std::fabs(a) + std::floor(a) +
                             (a - 2.0f * std::floor(a / 2.0f)) + (a > 0.0f ? 1.0f : -1.0f);
            EXPECT_NEAR(output.accumulates[static_cast<std::size_t>(i)].value[0], expected, 1e-5f);
        }
    }
}

TEST(EngineOperators, GeometricFunctions_FollowTheirFormulas) {
    std::vector<float> values = RunStatements(R"(
        vec3 a = vec3(1.0, 2.0, 2.0);
        vec3 b = vec3(-3.0, 0.0, 4.0);
        accumulate(0, vec3(length(a), distance(a, b), dot(a, b)));
        accumulate(0, cross(a, b));
        accumulate(0, normalize(a));
        accumulate(0, reflect(vec3(1.0, -1.0, 0.0), vec3(0.0, 1.0, 0.0)));
        accumulate(0, faceforward(a, b, -b));
        accumulate(0, faceforward(a, b, b));
        accumulate(0, refract(vec3(0.0, -1.0, 0.0), vec3(0.0, 1.0, 0.0), 0.5));
        accumulate(0, refract(normalize(vec3(1.0, -0.1, 0.0)), vec3(0.0, 1.0, 0.0), 1.5));
        accumulate(0, vec3(radians(180.0), degrees(3.14159265), length(-2.0)));
    )");
    std::vector<float> expected = {3,
                                   std::sqrt(24.0f),
                                   5,
                                   8,
                                   -10,
                                   6,
                                   1 / 3.0f,
                                   2 / 3.0f,
                                   2 / 3.0f,
                                   1,
                                   1,
                                   0,
                                   1,
                                   2,
                                   2,
                                   -1,
                                   -2,
                                   -2,
                                   0,
                                   -1,
                                   0,
                                   0,
                                   0,
                                   0,
                                   3.14159265f,
                                   180,
                                   2};
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_NEAR(values[i], expected[i], 2e-6f * std::max(1.0f, std::fabs(expected[i]))) << i;
    }
}

} // namespace
} // namespace Tolen::OpenKL::Testing
