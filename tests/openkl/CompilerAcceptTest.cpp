#include "TreePrinter.h"

#include <gtest/gtest.h>

namespace Tolen::OpenKL::Tests {

namespace {

struct Case {
    const char* name;
    const char* text;
    Stage stage = kStage_Ray;
};

void ExpectAccepted(std::span<const Case> cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(GetMessages(c.text, c.stage), "") << c.name << "\n" << c.text;
    }
}

} // namespace

TEST(CompilerAccept, Globals_OfEveryStorageAndType) {
    const Case cases[] = {
        {"nothing", ""},
        {"blanks", " \n\t"},
        {"a comment", "// nothing"},
        {"semicolons", ";;;"},
        {"numbers", "float a; int b; bool c;"},
        {"vectors",
         "vec2 a; vec3 b; vec4 c; ivec2 d; ivec3 e; ivec4 f; bvec2 g; bvec3 h; bvec4 i;"},
        {"matrices", "mat2 a; mat3 b; mat4 c;"},
        {"handles", "sampler2D a; sampler3D b; samplerCube c; primitive d;"},
        {"arrays", "float a[3]; sampler2D b[2]; primitive c[1]; mat4 d[8]; bool e[2];"},
        {"the length in front", "float[3] a;"},
        {"several at once", "float a, b[2], c = 1.0;"},
        {"initialisers", "float a = 1.0; vec3 b = vec3(1); int c = 1 + 2; float d = 3;"},
        {"initialisers that call", "float f(); float a = f() + sin(1.0);"},
        {"an initialiser from a global", "float a = 1.0; float b = a * 2;"},
        {"arrays with initialisers",
         "float a[2] = float[2](1.0, 2.0); float b[] = float[](1, 2, 3);"},
        {"const", "const float a = 1.0; const vec3 b;"},
        {"static", "static float a; static const int b = 1; static float c[2];"},
        {"uniforms",
         "uniform float a; uniform sampler2D b; uniform primitive c; uniform mat4 d[4]; "
         "uniform bool e; uniform bvec2 f; uniform sampler3D g; uniform samplerCube h;"},
        {"mutable uniforms", "mutable uniform vec3 a;"},
        {"ray attributes",
         "rayattribute vec3 a; rayattribute int b; rayattribute bool c; "
         "rayattribute mat3 d; rayattribute primitive e; rayattribute float f[2];"},
        {"varyings", "varying vec3 a; normalized varying vec3 b; transformed varying vec3 c; "
                     "transformed invariant varying vec3 d; "
                     "transformed normalized varying vec3 e; varying float f; varying mat3 g;"},
        {"the words of a qualifier in any order", "varying transformed normalized vec3 e;"},
        {"attributes", "attribute vec3 a; attribute int b; attribute mat4 c;", kStage_Vertex},
        {"precisions", "precision highp float; uniform mediump float a; highp vec3 b; "
                       "lowp float f(mediump float x);"},
        {"uniform blocks of every type",
         "uniformblock A { float a[1]; }; uniformblock B { vec3 a[1]; }; "
         "uniformblock C { bool a[1]; }; uniformblock D { mat4 a[1]; }; "
         "uniformblock E { primitive a[1]; }; uniformblock F { sampler2D a[1]; }; "
         "uniformblock G { ivec4 values[7]; };"},
        {"uniform blocks on lines", "uniformblock\nA\n{\n\tint a[1];\n};\n"},
        {"structs",
         "struct S { float a; vec3 b[2]; }; S s; S t[3]; struct T { S s; int n; }; T u;"},
        {"a struct and its variable", "struct S { float a; } s, t[2];"},
        {"a struct without a name", "struct { float a; } s;"},
        {"a varying twice alike", "varying vec3 Normal; varying vec3 Normal;"},
        {"a varying twice with other words", "normalized varying vec3 n; varying vec3 n;"},
        {"uniforms and ray attributes twice", "uniform float a; uniform float a; "
                                              "rayattribute vec3 b; rayattribute vec3 b;"},
        {"plain globals twice", "float a; float a; const float b = 1.0; const float b;"},
        {"a uniform block twice", "uniformblock A { int a[1]; }; uniformblock A { int a[1]; };"},
        {"a length from constants", "const int n = 2; float a[n * 2 + 1]; float b[int(2.0)];"},
        {"a variable called like a type of elsewhere", "float double; float uint; float texture;"},
    };
    ExpectAccepted(cases);
}

TEST(CompilerAccept, Functions_InAnyOrderAndNumber) {
    const Case cases[] = {
        {"a prototype that nobody defines or calls", "float f(int a);"},
        {"repeated prototypes", "float f(int a); float f(int); float f(int b); float f(int c) { "
                                "return 1.0; } float f(int d);"},
        {"prototypes without names", "void f(float, out vec3, inout int[2], const in float);"},
        {"void as the list", "void f(void) { f2(void); } void f2() { }"},
        {"a call ahead of the definition", "void main() { f(); } void f() { }"},
        {"a call ahead of an overload",
         "void main() { f(1); f(1.0); } void f(int a) { } void f(float a) { }"},
        {"a global behind its use", "void main() { a = 1.0; } float a;"},
        {"overloads",
         "void f(float a) { } void f(vec2 a) { } void f(int a) { } void f(float a, int b) { }"},
        {"other names in the definition", "float f(float a); float f(float b) { return b; }"},
        {"static functions", "static float f() { return 1.0; }"},
        {"a function called like a built-in one", "float mix(float a) { return mix(a, a, a); }"},
        {"a function that hides a built-in one", "float dot(vec3 a, vec3 b) { return 1.0; }"},
        {"arrays as parameters and results", "float[2] f(float a[2]) { a[0] = 1; return a; }"},
        {"structs as parameters and results", "struct S { int a; }; S f(S s) { s.a++; return s; }"},
        {"samplers as parameters", "uniform sampler2D t; vec4 f(sampler2D s, vec2 c) { return "
                                   "texture2D(s, c); } void main() { f(t, vec2(0)); }"},
        {"primitives as parameters", "uniform primitive p; bool f(primitive q) { return q == p; }"},
        {"handles as locals", "uniform sampler2D t; void f() { sampler2D s = t; s = t; vec4 c = "
                              "texture2D(s, vec2(0)); }"},
        {"parameters that are assigned", "void f(float a) { a = 1.0; }"},
        {"locals called like parameters", "void f(float a) { float a = 1.0; { float a = a; } }"},
        {"return of an empty call", "void g(); void f() { return g(); }"},
        {"a function without a return", "float f() { }"},
        {"setup and main", "void setup() { } void main() { }"},
        {"a function called like a variable", "float f; float f() { return f; }"},
        {"as many parameters as may be",
         "void f(int a, int b, int c, int d, int e, int g, int h, int i, int j, int k);"},
    };
    ExpectAccepted(cases);
}

TEST(CompilerAccept, Statements_OfEveryKind) {
    const Case cases[] = {
        {"empty ones", "void f() { ; ;; {} {;} }"},
        {"declarations", "void f() { float a; float b = 1, c[2], d = b; const int n = 3; const "
                         "float e; vec3 v[n]; highp float g; }"},
        {"if", "void f(bool a) { if (a) ; if (a) {} else {} if (a) ; else if (!a) ; else ; }"},
        {"a block with its semicolon before else",
         "void f(bool a) { if (a) { a = true; }; else a = false; }"},
        {"dangling else", "void f(bool a) { if (a) if (a) ; else ; }"},
        {"for", "void f() { for (int i = 0; i < 3; i++) ; for (;;) break; int j; for (j = 0; j < "
                "1; ++j) { continue; } }"},
        {"for with several variables", "void f() { for (int i = 0, j = 1; i < j; i++, j--) ; }"},
        {"for with a declared condition", "void f(int n) { for (; bool go = n > 0; n--) ; }"},
        {"while", "void f(bool a) { while (a) a = false; while (bool b = a) { b = a; } }"},
        {"do", "void f(bool a) { do a = !a; while (a); do { } while (false); }"},
        {"return", "float f(int a) { if (a > 0) return 1; return a; } void g() { return; }"},
        {"a local called like an outer one",
         "float a; void f() { float a = a; { int a; } for (int a = 0;;) { float a; } }"},
        {"a declaration as a body", "void f(bool a) { if (a) float b = 1.0; while (a) int c; }"},
        {"expression statements", "void f() { 1; f(); (f(), 2); }"},
        {"keywords of other languages as names", "void f() { int switch, goto, case, discard, "
                                                 "flat, sample; switch = goto; discard = case; }"},
    };
    ExpectAccepted(cases);
}

TEST(CompilerAccept, BuiltinVariables_InTheirStages) {
    const Case cases[] = {
        {"frame",
         "void setup() { kl_OutputRayCount = 4; } void main() { vec2 p = kl_PixelCoord / "
         "kl_Resolution; int s = kl_SampleIndex + kl_SampleCount; float t = kl_Time; }",
         kStage_Frame},
        {"ray", "void setup() { kl_OutputRayCount[0] = 4; for (int i = 0; i < 8; i++) "
                "kl_OutputRayCount[i] = i; } "
                "void main() { vec3 a = kl_RayOrigin + kl_RayDirection * kl_HitDistance + "
                "kl_HitPosition + kl_HitNormal; "
                "int b = kl_RayDepth + kl_RayClass; bool c = kl_HitFront || kl_Missed; vec2 d = "
                "kl_HitBarycentric + kl_PixelCoord; primitive e = kl_HitPrimitive; }"},
        {"prefix",
         "void setup() { kl_OutputRayCount[7] = 4; } void main() { if (kl_HitDistance < 1.0) "
         "discardRay(); }",
         kStage_Prefix},
        {"vertex",
         "attribute vec3 a_Position; void main() { kl_Position = vec4(a_Position, 1.0); "
         "kl_Position.x += 1; mat3 m = mat3(kl_PrimitiveTransformMatrix) * "
         "mat3(kl_PrimitiveTransformMatrixInverseTranspose); }",
         kStage_Vertex},
        {"a local may hide one", "void main() { float kl_Time = 1.0; kl_Time = 2.0; }",
         kStage_Vertex},
    };
    ExpectAccepted(cases);
}

TEST(CompilerAccept, BuiltinFunctions_InTheirStages) {
    for (const Stage stage : {kStage_Ray, kStage_Frame, kStage_Prefix}) {
        EXPECT_EQ(GetMessages("void main() { vec3 o, d; spawnRay(o, d); accumulate(0, o); "
                              "bool b = occluded(o, d, 1); float t = traceDistance(o, d, 1); "
                              "t = random(); vec2 r = random2(); }",
                              stage),
                  "");
    }
    EXPECT_EQ(GetMessages("void main() { discardRay(); }", kStage_Prefix), "");
    EXPECT_EQ(GetMessages(
                  "uniform sampler2D t; varying vec4 c; void main() { c = texture2D(t, vec2(0)); }",
                  kStage_Vertex),
              "");
}

TEST(CompilerAccept, Targets_ThatMayBeWritten) {
    const Case cases[] = {
        {"a const global without a value",
         "const float k; const float m[2]; void c() { k = 1.0; m[1] = 2.0; }"},
        {"globals",
         "float a; static float b; rayattribute float c; void main() { a = b = c = 1.0; }"},
        {"parts", "struct S { vec3 v[2]; }; S s[2]; mat3 m; void main() { s[1].v[0].xz = vec2(1); "
                  "m[1][2] = 1; m[0].yx = vec2(2); m[kl_RayDepth] = vec3(0); }"},
        {"out arguments", "void f(out vec2 a, inout float b); vec3 v; float a[2]; void main() { "
                          "f(v.xy, a[1]); f(v.zx, v.y); }"},
        {"varyings of a vertex program", "varying vec3 v; void main() { v = vec3(1); v.x++; }",
         kStage_Vertex},
        {"a parenthesised name", "float a; void main() { (a) = 1; (a)++; }"},
    };
    ExpectAccepted(cases);
}

TEST(CompilerAccept, Reads_AndWritesAreCounted) {
    std::string messages;
    const auto shader = CompileShader(
        kStage_Vertex,
        "float read; float written; float both; float none; vec3 part; float array[2]; int index; "
        "float out1; float inout1; float step; void f(out float a, inout float b) { } "
        "void main() { written = read; both += 1; part.x = 1; array[index] = 1; f(out1, inout1); "
        "step++; }",
        messages);
    ASSERT_NE(shader, nullptr) << messages;
    std::string summary;
    for (const Variable* global : shader->globals) {
        summary += std::string(global->name) + (global->reads > 0 ? ":r" : ":") +
                   (global->isWritten ? "w " : " ");
    }
    EXPECT_EQ(summary,
              "read:r written:w both:rw none: part:w array:w index:r out1:w inout1:rw step:rw ");
}

TEST(CompilerAccept, Functions_KnowTheirLocalsAndCallees) {
    std::string messages;
    const auto shader = CompileShader(kStage_Ray,
                                      "void g(); void h(); void f(float p) { float a; { int b; } "
                                      "for (int i = 0; i < 2; i++) { vec3 c; } h(); g(); h(); }",
                                      messages);
    ASSERT_NE(shader, nullptr) << messages;
    const Function* function = FindFunction(*shader, "f");
    ASSERT_EQ(function->locals.size(), 4u);
    EXPECT_EQ(function->locals[3]->name, "c");
    EXPECT_EQ(function->locals[3]->type.ToString(), "vec3");
    ASSERT_EQ(function->callees.size(), 2u);
    EXPECT_EQ(function->callees[0]->name, "h");
    EXPECT_EQ(function->callees[1]->name, "g");
    EXPECT_EQ(function->parameters[0]->name, "p");
}

TEST(StatementTree, Statements_KeepTheirOrderAndMeaning) {
    struct {
        const char* statements;
        const char* expected;
    } const cases[] = {
        {"", "{}"},
        {";", "{{}}"},
        {"int a = 1; a = 2;", "{(int a 1) (= a 2)}"},
        {"int a, b = 2;", "{{(int a) (int b 2)}}"},
        {"float a = 1;", "{(float a 1.0)}"},
        {"const int n = 2; int a = n;", "{(int n 2) (int a 2)}"},
        {"bool a; if (a) a = false;", "{(bool a) (if a (= a false))}"},
        {"bool a; if (a) ; else a = true;", "{(bool a) (if a {} else (= a true))}"},
        {"bool a, b; if (a) 1; else if (b) 2; else 3;",
         "{{(bool a) (bool b)} (if a 1 b 2 else 3)}"},
        {"bool a, b; if (a) if (b) 1; else 2;", "{{(bool a) (bool b)} (if a (if b 1 else 2))}"},
        {"bool a; if (a) { 1; }; else { 2; }", "{(bool a) (if a {1} else {2})}"},
        {"for (int i = 0; i < 3; i++) 1;", "{(loop (int i 0) (< i 3) (i ++) 1)}"},
        {"for (;;) break;", "{(loop {} none none (break))}"},
        {"bool a; while (a) continue;", "{(bool a) (loop none a none (continue))}"},
        {"bool a; while (bool b = !a) { b = a; }",
         "{(bool a) (loop (bool b) (= b (! a)) none {(= b a)})}"},
        {"bool a; for (1; bool b = a; 2) { }", "{(bool a) (loop {1 (bool b)} (= b a) 2 {})}"},
        {"bool a; do a = false; while (a);", "{(bool a) (do none a none (= a false))}"},
        {"return;", "{(return)}"},
        {"return V();", "{{(call V()) (return)}}"},
        {"int i; for ({ i = 1; }; true; { i++; }) ;",
         "{(int i) (loop (, (= i 1) nothing) true (, (i ++) nothing) {})}"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(PrintStatements(c.statements, "void V();"), c.expected) << c.statements;
    }
}

} // namespace Tolen::OpenKL::Tests
