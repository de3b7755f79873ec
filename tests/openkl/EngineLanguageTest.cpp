#include "EngineRig.h"

#include <cmath>
#include <limits>

namespace Tolen::OpenKL::Testing {
namespace {

/// Statements and what they accumulate, in order.
struct Case {
    const char* name;
    const char* globals;
    const char* statements;
    std::vector<float> expected;
};

std::ostream& operator<<(std::ostream& stream, const Case& testCase) {
    return stream << testCase.name;
}

class EngineLanguage : public ::testing::TestWithParam<Case> {};

/// Optimised or not, on every instruction set.
TEST_P(EngineLanguage, Statements_AccumulateWhatTheyShould) {
    const Case& testCase = GetParam();
    std::string text =
        std::string(testCase.globals) + "\nvoid main()\n{\n" + testCase.statements + "\n}\n";
    for (bool isOptimized : {true, false}) {
        KernelOptions options;
        options.isOptimized = isOptimized;
        EngineRig rig(text, kStage_Ray, options);
        for (InstructionSet instructionSet : kInstructionSets) {
            std::vector<float> values;
            for (const AccumulateRecord& record : rig.Run(1, 0, instructionSet).accumulates) {
                values.insert(values.end(), record.value, record.value + record.components);
            }
            EXPECT_EQ(values, testCase.expected)
                << GetName(instructionSet) << ", optimized " << isOptimized;
        }
    }
}

const Case kOperatorCases[] = {
    {"FloatSum", "", "accumulate(0, 1.5 + 2.0 * 3.0 - 4.0 / 8.0);", {7.0f}},
    {"IntSum", "", "accumulate(0, float(7 + 2 * 3 - 9 / 2));", {9.0f}},
    {"IntDivisionRoundsToZero",
     "",
     "int a = -7; accumulate(0, float(a / 2)); accumulate(0, float(a % 2));",
     {-3.0f, -1.0f}},
    {"IntDivisionByZero",
     "",
     "int z = kl_RayDepth; accumulate(0, vec3(5 / z, 5 % z, -5 / z));",
     {0.0f, 0.0f, 0.0f}},
    {"IntDivisionOverflow",
     "",
     "int a = -2147483647 - 1; int b = kl_RayDepth - 1; accumulate(0, float(a / b)); accumulate(0, "
     "float(a % b));",
     {-2147483648.0f, 0.0f}},
    {"Shifts",
     "",
     "int s = kl_RayDepth; accumulate(0, vec4(1 << (s + 4), -16 >> (s + 2), 1 << (s + 32), -1 >> "
     "(s + 40)));",
     {16.0f, -4.0f, 0.0f, 0.0f}},
    {"NegativeShift",
     "",
     "int s = kl_RayDepth - 1; accumulate(0, float(8 << s)); accumulate(0, float(8 >> s));",
     {0.0f, 0.0f}},
    {"Bits",
     "",
     "int a = kl_RayDepth + 12; accumulate(0, vec4(a & 10, a | 3, a ^ 5, ~a));",
     {8.0f, 15.0f, 9.0f, -13.0f}},
    {"Comparisons",
     "",
     "float a = kl_HitDistance; accumulate(0, vec4(a < 1.0, a <= 0.0, a > 0.0, a >= 0.0)); "
     "accumulate(0, float(a == 0.0)); accumulate(0, float(a != 0.0));",
     {1.0f, 1.0f, 0.0f, 1.0f, 1.0f, 0.0f}},
    {"NanComparesUnequal",
     "",
     "float n = kl_HitDistance / kl_HitDistance; accumulate(0, vec4(n == n, n != n, n < n, n >= "
     "n));",
     {0.0f, 1.0f, 0.0f, 0.0f}},
    {"Logic",
     "",
     "bool t = kl_RayDepth == 0; bool f = !t; accumulate(0, vec4(t && f, t || f, t ^^ f, t ^^ t));",
     {0.0f, 1.0f, 1.0f, 0.0f}},
    {"VectorByScalar", "", "accumulate(0, vec3(1.0, 2.0, 3.0) * 2.0 + 1.0);", {3.0f, 5.0f, 7.0f}},
    {"ScalarByVector", "", "accumulate(0, 12.0 / vec3(1.0, 2.0, 3.0));", {12.0f, 6.0f, 4.0f}},
    {"IntVectors",
     "",
     "ivec3 a = ivec3(7, -8, 9); a %= ivec3(4); accumulate(0, vec3(a)); accumulate(0, vec3(a << "
     "1));",
     {3.0f, 0.0f, 1.0f, 6.0f, 0.0f, 2.0f}},
    {"Conversions",
     "",
     "accumulate(0, vec4(int(2.9), int(-2.9), float(true), float(int(bool(0.5)))));",
     {2.0f, -2.0f, 1.0f, 1.0f}},
    {"FloatToIntSaturates",
     "",
     "float h = 1e20; h += kl_HitDistance; accumulate(0, vec3(int(h), int(-h), int(kl_HitDistance "
     "/ kl_HitDistance)));",
     {2147483648.0f, -2147483648.0f, 0.0f}},
    {"ImplicitConversion",
     "",
     "float a = 3; vec2 b = ivec2(1, 2); accumulate(0, vec3(b + 1, a));",
     {2.0f, 3.0f, 3.0f}},
    {"Increments",
     "",
     "int i = kl_RayDepth; int a = i++; int b = ++i; int c = i--; int d = --i; accumulate(0, "
     "vec4(a, b, c, d)); vec2 v = vec2(1.0); v++; accumulate(0, vec3(v, 0.0));",
     {0.0f, 2.0f, 2.0f, 0.0f, 2.0f, 2.0f, 0.0f}},
    {"Comma",
     "",
     "int i = 1; int j = (i += 4, i * 2); accumulate(0, vec3(i, j, 0.0));",
     {5.0f, 10.0f, 0.0f}},
    {"AssignmentIsAValue",
     "",
     "float a; float b = a = 4.0; accumulate(0, vec3(a, b, a += b));",
     {4.0f, 4.0f, 8.0f}},
    {"Equality",
     "struct S { float a; int b[2]; };",
     "S s; s.a = 1.0; s.b[0] = 2; s.b[1] = 3; S t = s; bool same = s == t; t.b[1] = 4; "
     "accumulate(0, vec3(same, s == t, vec2(1.0) != vec2(1.0, 2.0)));",
     {1.0f, 0.0f, 1.0f}},
    {"Conditional",
     "",
     "float a = kl_HitDistance; accumulate(0, a > 1.0 ? vec3(1.0) : vec3(2.0, 3.0, 4.0));",
     {2.0f, 3.0f, 4.0f}},
    {"OnlyTheChosenSideRuns",
     "int n; int f(int x) { n += x; return x; }",
     "int a = kl_RayDepth == 0 ? f(1) : f(10); accumulate(0, vec3(a, n, 0.0));",
     {1.0f, 1.0f, 0.0f}},
    {"AndIsShort",
     "int n; bool f(bool x) { ++n; return x; }",
     "bool a = f(false) && f(true); bool b = f(true) && f(true); accumulate(0, vec3(a, b, n));",
     {0.0f, 1.0f, 3.0f}},
    {"OrIsShort",
     "int n; bool f(bool x) { ++n; return x; }",
     "bool a = f(true) || f(true); bool b = f(false) || f(false); accumulate(0, vec3(a, b, n));",
     {1.0f, 0.0f, 3.0f}},
    {"BitCasts",
     "",
     "accumulate(0, vec3(floatBitsToInt(1.0 + kl_HitDistance) == 1065353216, "
     "intBitsToFloat(1073741824), floatBitsToInt(0.0 / kl_HitDistance) == 2143289344));",
     {1.0f, 2.0f, 1.0f}},
};

const Case kVectorCases[] = {
    {"Swizzle",
     "",
     "vec4 v = vec4(1.0, 2.0, 3.0, 4.0); accumulate(0, v.wzyx); accumulate(0, v.rgb); "
     "accumulate(0, v.sstt);",
     {4, 3, 2, 1, 1, 2, 3, 1, 1, 2, 2}},
    {"SwizzleTarget",
     "",
     "vec4 v = vec4(0.0); v.zx = vec2(5.0, 6.0); v.y += 2.0; accumulate(0, v);",
     {6, 2, 5, 0}},
    {"IndexOfSwizzle",
     "",
     "vec4 v = vec4(1.0, 2.0, 3.0, 4.0); int i = kl_RayDepth + 1; v.wzy[i] = 9.0; v.wzy[0] = 8.0; "
     "accumulate(0, v); accumulate(0, v.yxw[i]);",
     {1, 2, 9, 8, 1}},
    {"DynamicComponent",
     "",
     "vec3 v = vec3(1.0, 2.0, 3.0); int i = kl_RayDepth; accumulate(0, vec3(v[i], v[i + 2], v[i + "
     "7])); v[i + 1] = 7.0; v[i - 3] = 8.0; accumulate(0, v);",
     {1, 3, 3, 8, 7, 3}},
    {"DynamicColumn",
     "",
     "mat3 m = mat3(1.0); int i = kl_RayDepth + 1; m[i] = vec3(4.0, 5.0, 6.0); m[i][i + 1] += "
     "10.0; accumulate(0, m[i]); accumulate(0, m[0]); accumulate(0, m[i][i]);",
     {4, 5, 16, 1, 0, 0, 5}},
    {"Constructors",
     "",
     "accumulate(0, vec4(vec2(1.0, 2.0), ivec2(3, 4))); accumulate(0, vec3(vec4(5.0, 6.0, 7.0, "
     "8.0))); accumulate(0, vec3(9.0));",
     {1, 2, 3, 4, 5, 6, 7, 9, 9, 9}},
    {"Matrices",
     "",
     "mat2 a = mat2(1.0, 2.0, 3.0, 4.0); accumulate(0, vec4(a * vec2(1.0, 10.0), vec2(1.0, 10.0) * "
     "a)); mat2 b = a * a; accumulate(0, vec4(b[0], b[1])); mat2 c = matrixCompMult(a, a); "
     "accumulate(0, vec4(c[0], c[1]));",
     {31, 42, 21, 43, 7, 10, 15, 22, 1, 4, 9, 16}},
    {"MatrixByScalar",
     "",
     "mat2 a = mat2(1.0, 2.0, 3.0, 4.0) * 2.0 + 1.0; accumulate(0, vec4(a[0], a[1])); a = -a; "
     "accumulate(0, vec3(a[1], a == a));",
     {3, 5, 7, 9, -7, -9, 1}},
    {"MatrixResize",
     "",
     "mat4 a = mat4(mat2(1.0, 2.0, 3.0, 4.0)); accumulate(0, a[0]); accumulate(0, a[1]); "
     "accumulate(0, a[3]); mat2 b = mat2(a); accumulate(0, vec4(b[0], b[1]));",
     {1, 2, 0, 0, 3, 4, 0, 0, 0, 0, 0, 1, 1, 2, 3, 4}},
    {"Transpose",
     "",
     "mat3 m = transpose(mat3(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0)); accumulate(0, m[0]); "
     "accumulate(0, m[2]);",
     {1, 4, 7, 3, 6, 9}},
    {"Determinant",
     "",
     "accumulate(0, vec3(determinant(mat2(1.0, 2.0, 3.0, 4.0)), determinant(mat3(2.0, 0.0, 0.0, "
     "0.0, 3.0, 0.0, 1.0, 1.0, 4.0)), determinant(mat4(2.0))));",
     {-2, 24, 16}},
    {"Inverse",
     "",
     "mat4 m = mat4(2.0, 0.0, 0.0, 0.0, 0.0, 4.0, 0.0, 0.0, 0.0, 0.0, 8.0, 0.0, 1.0, 2.0, 3.0, "
     "1.0); mat4 n = inverse(m); accumulate(0, n[0]); accumulate(0, n[3]); mat3 o = "
     "inverse(mat3(0.0, 2.0, 0.0, 4.0, 0.0, 0.0, 0.0, 0.0, 1.0)); accumulate(0, o[0]); "
     "accumulate(0, o[1]);",
     {0.5f, 0, 0, 0, -0.5f, -0.5f, -0.375f, 1, 0, 0.25f, 0, 0.5f, 0, 0}},
    {"OuterProduct",
     "",
     "mat2 m = outerProduct(vec2(1.0, 2.0), vec2(3.0, 4.0)); accumulate(0, vec4(m[0], m[1]));",
     {3, 6, 4, 8}},
    {"Relations",
     "",
     "vec3 a = vec3(1.0, 2.0, 3.0); vec3 b = vec3(2.0); accumulate(0, vec3(lessThan(a, b))); "
     "accumulate(0, vec3(lessThanEqual(a, b))); accumulate(0, vec3(greaterThan(a, b))); "
     "accumulate(0, vec3(greaterThanEqual(a, b))); accumulate(0, vec3(equal(a, b))); accumulate(0, "
     "vec3(notEqual(a, b)));",
     {1, 0, 0, 1, 1, 0, 0, 0, 1, 0, 1, 1, 0, 1, 0, 1, 0, 1}},
    {"AnyAllNot",
     "",
     "bvec3 b = bvec3(true, false, true); accumulate(0, vec3(any(b), all(b), "
     "all(not(bvec2(false))))); accumulate(0, vec3(not(b)));",
     {1, 0, 1, 0, 1, 0}},
};

const Case kFunctionCases[] = {
    {"OutAndInout",
     "void f(in float a, out float b, inout float c) { b = a * 2.0; c += b; a = 100.0; }",
     "float x = 1.0; float y = 50.0; float z = 3.0; f(x, y, z); accumulate(0, vec3(x, y, z));",
     {1, 2, 5}},
    {"OutStartsAtZero",
     "void f(out float b) { b += 1.0; }",
     "float y = 50.0; f(y); accumulate(0, y);",
     {1}},
    {"CopyOutFollowsTheOrder",
     "void f(out float a, out float b) { a = 1.0; b = 2.0; }",
     "float y; f(y, y); accumulate(0, y);",
     {2}},
    {"OutIntoAPart",
     "void f(out vec2 a) { a = vec2(1.0, 2.0); }",
     "vec4 v = vec4(9.0); f(v.wy); vec2 a[3]; int i = kl_RayDepth + 1; f(a[i]); accumulate(0, v); "
     "accumulate(0, vec4(a[0], a[1]));",
     {9, 2, 9, 1, 0, 0, 1, 2}},
    {"EarlyReturn",
     "float f(float x) { if (x > 1.0) { return 10.0; } if (x > 0.0) return 20.0; return 30.0; }",
     "accumulate(0, vec3(f(2.0 + kl_HitDistance), f(0.5 + kl_HitDistance), f(kl_HitDistance)));",
     {10, 20, 30}},
    {"ReturnFromALoop",
     "int f(int n) { for (int i = 0; i < 10; ++i) { while (true) { if (i == n) return i * 100; "
     "break; } } return -1; }",
     "accumulate(0, vec3(f(3), f(kl_RayDepth + 5), f(99)));",
     {300, 500, -1}},
    {"NoReturnGivesZero",
     "float f(float x) { if (x > 1.0) return 1.0; }",
     "accumulate(0, f(kl_HitDistance));",
     {0}},
    {"Overloads",
     "float f(float x) { return 1.0; } float f(vec2 x) { return 2.0; } float f(int x) { return "
     "3.0; }",
     "accumulate(0, vec3(f(0.0), f(vec2(0.0)), f(0)));",
     {1, 2, 3}},
    {"NestedCalls",
     "float f(float x) { return x + 1.0; } float g(float x) { return f(f(x)) * 2.0; }",
     "accumulate(0, f(g(f(1.0))));",
     {9}},
    {"ParameterIsACopy",
     "float n = 1.0; float f(float x) { n = 5.0; return x; }",
     "accumulate(0, vec3(f(n), n, 0.0));",
     {1, 5, 0}},
    {"StructsByValue",
     "struct S { vec2 a; float b[3]; }; S f(S s) { s.a.x = 7.0; s.b[1] = 8.0; return s; }",
     "S s; S t = f(s); accumulate(0, vec4(s.a.x, s.b[1], t.a.x, t.b[1]));",
     {0, 0, 7, 8}},
    {"ArraysByValue",
     "float f(float a[3], int i) { a[i] = 5.0; return a[0] + a[1] + a[2]; }",
     "float a[3]; a[0] = 1.0; a[1] = 2.0; a[2] = 3.0; accumulate(0, vec3(f(a, kl_RayDepth + 2), "
     "a[2], 0.0));",
     {8, 3, 0}},
    {"ArrayResult",
     "struct S { float a[4]; }; S f() { S s; for (int i = 0; i < 4; ++i) s.a[i] = float(i * i); "
     "return s; }",
     "accumulate(0, vec3(f().a[3], f().a[kl_RayDepth + 2], f().a[kl_RayDepth + 9]));",
     {9, 4, 9}},
    {"CallInACondition",
     "int n; bool f() { return ++n < 4; }",
     "int i = 0; while (f()) ++i; accumulate(0, vec3(i, n, 0.0));",
     {3, 4, 0}},
};

const Case kStatementCases[] = {
    {"For",
     "",
     "float s = 0.0; for (int i = 0; i < 10; ++i) { if (i == 7) break; if (i == 3) continue; s += "
     "float(i); } accumulate(0, s);",
     {18}},
    {"While",
     "",
     "int i = 10; int n = 0; while (i > 0) { i -= 3; if (i == 4) continue; ++n; } accumulate(0, "
     "vec3(i, n, 0.0));",
     {-2, 3, 0}},
    {"DoRunsOnce", "", "int n = 0; do { ++n; } while (false); accumulate(0, float(n));", {1}},
    {"ContinueInDo",
     "",
     "int n = 0; int m = 0; do { ++n; if (n < 3) continue; ++m; } while (n < 5); accumulate(0, "
     "vec3(n, m, 0.0));",
     {5, 3, 0}},
    {"BreakLeavesTheInnerLoop",
     "",
     "int n = 0; for (int i = 0; i < 3; ++i) { for (int j = 0; j < 10; ++j) { if (j == i) break; "
     "++n; } } accumulate(0, float(n));",
     {3}},
    {"ElseIf",
     "",
     "int d = kl_RayDepth + 2; if (d == 0) accumulate(0, 1.0); else if (d == 1) accumulate(0, "
     "2.0); else if (d == 2) accumulate(0, 3.0); else accumulate(0, 4.0);",
     {3}},
    {"LocalsStartAtZero",
     "",
     "for (int i = 0; i < 3; ++i) { float x; x += 1.0; accumulate(0, x); }",
     {1, 1, 1}},
    {"Shadowing",
     "",
     "float x = 1.0; { float x = 2.0; x += 1.0; accumulate(0, x); } accumulate(0, x);",
     {3, 1}},
    {"Return", "", "accumulate(0, 1.0); if (kl_RayDepth == 0) return; accumulate(0, 2.0);", {1}},
    {"LocalArray",
     "",
     "int a[8]; for (int i = 0; i < 8; ++i) a[i] = i * i; int s = 0; for (int i = 7; i >= 0; i -= "
     "2) s += a[i]; accumulate(0, float(s));",
     {84}},
    {"IndexIsClamped",
     "",
     "int a[3]; a[0] = 1; a[1] = 2; a[2] = 3; int i = kl_RayDepth; accumulate(0, vec3(a[i - 5], "
     "a[i + 5], a[i + 1])); a[i + 100] = 9; accumulate(0, float(a[2]));",
     {1, 3, 2, 9}},
    {"ArrayOfStructs",
     "struct S { vec3 p; float w; };",
     "S a[4]; for (int i = 0; i < 4; ++i) { a[i].p.y = float(i); a[i].w = 10.0; } accumulate(0, "
     "vec3(a[kl_RayDepth + 2].p.y, a[3].p.y, a[kl_RayDepth + 1].w));",
     {2, 3, 10}},
    {"WholeArrays",
     "",
     "float a[3]; int i = kl_RayDepth + 1; a[i] = 4.0; float b[3] = a; b[0] = 1.0; accumulate(0, "
     "vec3(b[0], b[i], a[0]));",
     {1, 4, 0}},
    {"GlobalArray",
     "float g[3];",
     "int i = kl_RayDepth; g[i] = 1.0; g[i + 2] = 3.0; accumulate(0, vec3(g[0], g[1], g[2]));",
     {1, 0, 3}},
    {"ConstArray",
     "const float k[3] = float[3](1.0, 2.0, 4.0);",
     "float s = 0.0; for (int i = 0; i < 3; ++i) s += k[i]; accumulate(0, s);",
     {7}},
    {"NothingBehindDiscard",
     "",
     "accumulate(0, 1.0); accumulate(99, 5.0); accumulate(-1, 5.0); return; accumulate(0, 2.0);",
     {1}},
};

std::string NameOf(const ::testing::TestParamInfo<Case>& testCase) {
    return testCase.param.name;
}

INSTANTIATE_TEST_SUITE_P(Operators, EngineLanguage, ::testing::ValuesIn(kOperatorCases), NameOf);
INSTANTIATE_TEST_SUITE_P(Vectors, EngineLanguage, ::testing::ValuesIn(kVectorCases), NameOf);
INSTANTIATE_TEST_SUITE_P(Functions, EngineLanguage, ::testing::ValuesIn(kFunctionCases), NameOf);
INSTANTIATE_TEST_SUITE_P(Statements, EngineLanguage, ::testing::ValuesIn(kStatementCases), NameOf);

} // namespace
} // namespace Tolen::OpenKL::Testing
