#include "TreePrinter.h"

#include "compiler/Limits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace Tolen::OpenKL::Tests {

namespace {

struct Case {
    const char* text;
    const char* message; ///< all of it, the heads of errors left out
    Stage stage = kStage_Ray;
};

/// "L: text" for each error and "L: note: text" for each note.
std::string Shorten(std::string messages) {
    const auto replaceAll = [&](const std::string& from, const std::string& to) {
        for (std::size_t at = 0; (at = messages.find(from, at)) != std::string::npos;) {
            messages.replace(at, from.size(), to);
        }
    };
    replaceAll("String 0 Line ", "");
    replaceAll(": error: ", ": ");
    return messages;
}

void Check(std::span<const Case> cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(Shorten(GetMessages(c.text, c.stage)), c.message) << c.text;
    }
}

std::string InMain(const std::string& statements) {
    return "void main() { float f; int i; bool b; vec2 v2; vec3 v3; vec4 v4; mat3 m3; mat4 m4; "
           "float a[4]; primitive p;\n" +
           statements + "\n}";
}

struct StatementCase {
    const char* statements;
    const char* message; ///< of line 2
};

void CheckStatements(std::span<const StatementCase> cases) {
    for (const StatementCase& c : cases) {
        EXPECT_EQ(Shorten(GetMessages(InMain(c.statements))), "2: " + std::string(c.message))
            << c.statements;
    }
}

} // namespace

TEST(CompilerMessages, Lines_HaveTheFormThatTheirReadersExpect) {
    EXPECT_EQ(GetMessages("\n\nvoid main() {\n foo = 1;\n}\n"),
              "String 0 Line 4: error: 'foo' is not declared");
    EXPECT_EQ(GetMessages("float a;\nint a;"),
              "String 0 Line 2: error: 'a' is declared twice\n"
              "String 0 Line 1: note: the other declaration is here");
}

TEST(CompilerMessages, Names_ThatNothingDeclares) {
    const StatementCase cases[] = {
        {"foo = 1;", "'foo' is not declared"},
        {"f = foo;", "'foo' is not declared"},
        {"f = foo + foo * foo;", "'foo' is not declared"},
        {"foo(1);", "function 'foo' is not declared"},
        {"f = foo(f, i);", "function 'foo' is not declared"},
        {"Foo x;", "type 'Foo' is not declared"},
        {"Foo x = 1; x = 2; f = x.y + x[1];", "type 'Foo' is not declared"},
        {"f = kl_Foo;", "'kl_Foo' is not declared"},
        {"{ int inner; } inner = 1;", "'inner' is not declared"},
        {"for (int k = 0; k < 1; k++) ; k = 1;", "'k' is not declared"},
        {"int later = later;", "'later' is not declared"},
        {"f = kl_Position.x;",
         "'kl_Position' belongs to vertex programs and cannot be used in a ray program"},
        {"discardRay();",
         "'discardRay' belongs to prefix programs and cannot be called in a ray program"},
        {"f = texture3D(f, v3).x;",
         "'texture3D' is not supported; textures are read by texture2D(sampler2D, vec2)"},
        {"f = textureCube(f, v3).x;",
         "'textureCube' is not supported; textures are read by texture2D(sampler2D, vec2)"},
    };
    CheckStatements(cases);
}

TEST(CompilerMessages, Stages_KeepTheirVariablesAndFunctions) {
    const Case cases[] = {
        {"void main() { vec3 d = kl_RayDirection; }",
         "1: 'kl_RayDirection' belongs to ray and prefix programs and cannot be used in a frame "
         "program",
         kStage_Frame},
        {"void main() { vec2 d = kl_PixelCoord; }",
         "1: 'kl_PixelCoord' belongs to frame, ray and prefix programs and cannot be used in a "
         "vertex program",
         kStage_Vertex},
        {"void setup() { kl_OutputRayCount[0] = 1; }", "1: int has no elements", kStage_Frame},
        {"void setup() { kl_OutputRayCount = 1; }", "1: cannot assign int to int[8]"},
        {"void setup() { kl_OutputRayCount[8] = 1; }",
         "1: subscript 8 is outside of int[8], whose subscripts go from 0 to 7"},
        {"void main() { accumulate(0, 1.0); }",
         "1: 'accumulate' belongs to frame, ray and prefix programs and cannot be called in a "
         "vertex program",
         kStage_Vertex},
        {"void main() { discardRay(); }",
         "1: 'discardRay' belongs to prefix programs and cannot be called in a frame program",
         kStage_Frame},
        {"attribute vec3 a;", "1: 'a' is an attribute, which belongs to vertex programs"},
        {"varying vec3 v; void main() { v = vec3(1); }",
         "1: cannot assign to 'v', which is a varying\n1: note: 'v' is declared here"},
        {"attribute vec3 a; void main() { a = vec3(1); }",
         "1: cannot assign to 'a', which is an attribute\n1: note: 'a' is declared here",
         kStage_Vertex},
        {"void main() { kl_RayDirection = vec3(1); }",
         "1: cannot assign to 'kl_RayDirection', which is a built-in variable"},
    };
    Check(cases);
}

TEST(CompilerMessages, Operators_NameTheTypesThatTheyCannotTake) {
    const StatementCase cases[] = {
        {"f = f + b;", "operator '+' cannot take float and bool"},
        {"v3 = v3 + v2;", "operator '+' cannot take vec3 and vec2"},
        {"v3 = m4 * v3;", "operator '*' cannot take mat4 and vec3"},
        {"m3 = m3 * m4;", "operator '*' cannot take mat3 and mat4"},
        {"m3 = m3 + v3;", "operator '+' cannot take mat3 and vec3"},
        {"f = f % f;", "operator '%' cannot take float and float; mod() works on floats"},
        {"i = i & f;", "operator '&' cannot take int and float"},
        {"b = v3 < v3;",
         "operator '<' cannot take vec3 and vec3; lessThan() and its kin compare vectors"},
        {"b = i && b;", "operator '&&' cannot take int and bool"},
        {"b = b ^^ f;", "operator '^^' cannot take bool and float"},
        {"b = v3 == v2;", "operator '==' cannot take vec3 and vec2"},
        {"b = b == i;", "operator '==' cannot take bool and int"},
        {"b = p == i;", "operator '==' cannot take primitive and int"},
        {"f = a + a;", "operator '+' cannot take float[4] and float[4]"},
        {"b = !i;", "operator '!' cannot take int"},
        {"f = -b;", "operator '-' cannot take bool"},
        {"i = ~f;", "operator '~' cannot take float"},
        {"b = +b;", "operator '+' cannot take bool"},
        {"b++;", "operator '++' cannot take bool"},
        {"--p;", "operator '--' cannot take primitive"},
        {"f += b;", "operator '+=' cannot change float by bool"},
        {"i += f;", "operator '+=' cannot change int by float"},
        {"f *= v3;", "operator '*=' cannot change float by vec3"},
        {"f %= 2.0;", "operator '%=' cannot change float by float"},
        {"f = b ? v2 : v3;", "the two sides of ':' differ: vec2 and vec3"},
        {"f = i ? f : f;", "what stands before '?' must be a bool, found int"},
        {"f = discardAll();", "function 'discardAll' is not declared"},
        {"f = accumulate(0, f) + 1;", "operator '+' cannot take void and int"},
        {"i = 1 << f;", "operator '<<' cannot take int and float"},
    };
    CheckStatements(cases);
}

TEST(CompilerMessages, Conversions_ThatNothingMakes) {
    const StatementCase cases[] = {
        {"i = f;", "cannot assign float to int"},
        {"f = b;", "cannot assign bool to float"},
        {"v3 = f;", "cannot assign float to vec3"},
        {"v3 = v4;", "cannot assign vec4 to vec3"},
        {"m3 = m4;", "cannot assign mat4 to mat3"},
        {"a = f;", "cannot assign float to float[4]"},
        {"p = i;", "cannot assign int to primitive"},
        {"i = accumulate(0, 1.0);", "cannot assign void to int"},
        {"int n = 1.5;", "cannot initialise 'n' (int) with float"},
        {"vec3 c = 1.0;", "cannot initialise 'c' (vec3) with float"},
        {"float c[2] = 1.0;", "cannot initialise 'c' (float[2]) with float"},
        {"bool c = 1;", "cannot initialise 'c' (bool) with int"},
        {"return 1;", "cannot return int: 'main' returns void"},
        {"if (i) ;", "the condition of 'if' must be a bool, found int"},
        {"while (f) ;", "the condition of 'while' must be a bool, found float"},
        {"for (;i;) ;", "the condition of 'for' must be a bool, found int"},
        {"do ; while (v3);", "the condition of 'do' must be a bool, found vec3"},
        {"while (int k = 1) ;", "the condition of 'while' must be a bool, found int"},
        {"a[f] = 1;", "a subscript must be an int, found float"},
    };
    CheckStatements(cases);
}

TEST(CompilerMessages, Targets_ThatCannotBeWritten) {
    const StatementCase cases[] = {
        {"1 = 2;", "cannot assign to a value that is not a variable or a part of one"},
        {"f + f = 2;", "cannot assign to a value that is not a variable or a part of one"},
        {"f++ = 2;", "cannot assign to a value that is not a variable or a part of one"},
        {"f++++;", "cannot apply '++' to a value that is not a variable or a part of one"},
        {"(true ? f : f) = 1;", "cannot assign to a value that is not a variable or a part of one"},
        {"mat3(m3)[0] = v3;", "cannot assign to a value that is not a variable or a part of one"},
        {"vec3(v3).x = 1;", "cannot assign to a value that is not a variable or a part of one"},
        {"float(v3)++;", "cannot apply '++' to a value that is not a variable or a part of one"},
        {"float(f) = 1;", "cannot assign to a value that is not a variable or a part of one"},
        {"+f = 1;", "cannot assign to a value that is not a variable or a part of one"},
        {"(b ? f : f) = 1;", "cannot assign to a value that is not a variable or a part of one"},
        {"v3.xx = v2;", "cannot assign to a swizzle that names a component twice"},
        {"v4.xyz.yy = v2;", "cannot assign to a swizzle that names a component twice"},
        {"modf(f, 1.0);",
         "cannot pass as out argument 2 a value that is not a variable or a part of one"},
        {"normalize(v3).x = 1;",
         "cannot assign to a value that is not a variable or a part of one"},
    };
    CheckStatements(cases);
    const Case globals[] = {
        {"uniform vec3 u;\nvoid main() { u.x = 1; }",
         "2: cannot assign to 'u', which is a uniform\n1: note: 'u' is declared here"},
        {"mutable uniform float u;\nvoid main() { u++; }",
         "2: cannot apply '++' to 'u', which is a uniform\n1: note: 'u' is declared here"},
        {"const vec3 c = vec3(random());\nvoid main() { c.x = 1; }",
         "2: cannot assign to 'c', which is a constant\n1: note: 'c' is declared here"},
        {"const float c = 1;\nvoid main() { c = 1; }",
         "2: cannot assign to a value that is not a variable or a part of one"},
        {"void main() {\nconst float c = random();\nc = 1; }",
         "3: cannot assign to 'c', which is a constant\n2: note: 'c' is declared here"},
        {"void f(const float c) { c = 1; }",
         "1: cannot assign to 'c', which is a constant\n1: note: 'c' is declared here"},
        {"uniformblock B { float a[1]; };\nvoid main() { B.a[0] = 1; }",
         "2: cannot assign to an element of uniform block 'B'"},
        {"uniform float u;\nvoid f(inout float x);\nvoid main() { f(u); }",
         "3: cannot pass as inout argument 1 'u', which is a uniform\n1: note: 'u' is declared "
         "here"},
    };
    Check(globals);
}

TEST(CompilerMessages, Parts_ThatAreNotThere) {
    const StatementCase cases[] = {
        {"f = v2.z;", "'z' selects nothing of vec2: it has 2 components"},
        {"f = v3.q;", "'q' selects nothing of vec3: it has 3 components"},
        {"v2 = v3.xg;", "'xg' selects nothing of vec3: components are named by letters of xyzw, of "
                        "rgba or of stpq"},
        {"v2 = v3.foo;", "'foo' selects nothing of vec3: components are named by letters of xyzw, "
                         "of rgba or of stpq"},
        {"v4 = v3.xyzxy;", "'xyzxy' selects nothing of vec3: at most 4 components can be named"},
        {"f = f.x;", "float has no member 'x'"},
        {"f = m3.x;", "mat3 has no member 'x'"},
        {"f = a.x;", "float[4] has no member 'x'"},
        {"f = f[0];", "float has no elements"},
        {"f = a[4];", "subscript 4 is outside of float[4], whose subscripts go from 0 to 3"},
        {"f = a[-1];", "subscript -1 is outside of float[4], whose subscripts go from 0 to 3"},
        {"f = v3[3];", "subscript 3 is outside of vec3, whose subscripts go from 0 to 2"},
        {"v3 = m3[3];", "subscript 3 is outside of mat3, whose subscripts go from 0 to 2"},
        {"i = f.length();", "float has no length"},
        {"f = v3.;", "expected a name behind '.', found ';'"},
    };
    CheckStatements(cases);
    const Case globals[] = {
        {"struct S { float x; };\nS s;\nvoid main() { s.y = 1; }",
         "3: struct 'S' has no field 'y'\n1: note: 'S' is declared here"},
        {"uniformblock B { float a[1]; };\nvoid main() { float f = B.b[0]; }",
         "2: uniform block 'B' has no 'b' here, only the array 'a'\n1: note: 'B' is declared here"},
        {"uniformblock B { float a[1]; };\nvoid main() { float f = B.a; }",
         "2: uniform block 'B' is no value; read 'B.a[i]'"},
        {"uniformblock B { float a[1]; };\nvoid main() { B; }",
         "2: uniform block 'B' is no value; read 'B.a[i]'"},
        {"uniformblock B { float a[1]; };\nvoid main() { float f = B[0]; }",
         "2: uniform block 'B' is no value; read 'B.a[i]'"},
        {"uniformblock B { float a[1]; };\nvoid main() { int n = B.a.length(); }",
         "2: uniform block 'B' is no value; read 'B.a[i]'"},
        {"uniformblock B { float a[1]; };\nvoid main() { float f = sin(B.a); }",
         "2: uniform block 'B' is no value; read 'B.a[i]'"},
        {"uniformblock B { float a[1]; };\nvoid main() { float f = B.a[0.5]; }",
         "2: a subscript must be an int, found float"},
    };
    Check(globals);
}

TEST(CompilerMessages, Calls_NameWhatWasPassedAndWhatIsTaken) {
    const StatementCase cases[] = {
        {"f = dot(v2, v3);", "no function 'dot' takes (vec2, vec3); it takes (float, float), "
                             "(vec2, vec2), (vec3, vec3) or (vec4, vec4)"},
        {"f = sin();", "no function 'sin' takes (); it takes (float), (vec2), (vec3) or (vec4)"},
        {"f = sin(b);",
         "no function 'sin' takes (bool); it takes (float), (vec2), (vec3) or (vec4)"},
        {"v3 = cross(v2, v2);", "no function 'cross' takes (vec2, vec2); it takes (vec3, vec3)"},
        {"f = min(v3, b);",
         "no function 'min' takes (vec3, bool); it takes (float, float), (vec2, vec2), (vec3, "
         "vec3), (vec4, vec4), (float, float), (vec2, float) and more"},
        {"accumulate(f, v3);", "no function 'accumulate' takes (float, vec3); it takes (int, "
                               "float), (int, vec3) or (int, vec4)"},
        {"accumulate(0, v2);", "no function 'accumulate' takes (int, vec2); it takes (int, float), "
                               "(int, vec3) or (int, vec4)"},
        {"f = modf(f);", "no function 'modf' takes (float); it takes (float, out float), (vec2, "
                         "out vec2), (vec3, out vec3) or (vec4, out vec4)"},
        {"v4 = texture2D(v2, v2);", "no function 'texture2D' takes (vec2, vec2); it takes "
                                    "(sampler2D, vec2) or (sampler2D, vec2, float)"},
        {"main(1);", "no function 'main' takes (int)\n1: note: 'main()' is declared here"},
    };
    CheckStatements(cases);
    const Case globals[] = {
        {"void f(vec2 a);\nvoid f(int a, out float b);\nvoid main() { f(true); }",
         "3: no function 'f' takes (bool)\n1: note: 'f(vec2)' is declared here\n2: note: 'f(int, "
         "out float)' is declared here"},
        {"void f(float a, int b);\nvoid f(int a, float b);\nvoid main() { f(1, 2); }",
         "3: several functions 'f' can take (int, int)\n1: note: 'f(float, int)' is declared "
         "here\n2: note: 'f(int, float)' is declared here"},
        {"void f(out float a);\nvoid main() { int i; f(i); }",
         "2: no function 'f' takes (int)\n1: note: 'f(out float)' is declared here"},
        {"struct S { float a; int b; };\nvoid main() { S s = S(1.0); }",
         "2: 'S' takes 2 arguments, found 1"},
        {"struct S { float a; int b; };\nvoid main() { S s = S(1.0, 1.0); }",
         "2: argument 2 of 'S' must be int, found float"},
    };
    Check(globals);
}

TEST(CompilerMessages, Constructors_CountTheirComponents) {
    const StatementCase cases[] = {
        {"v3 = vec3();", "'vec3' needs at least one argument"},
        {"v3 = vec3(1, 2);", "too few arguments for 'vec3', which has 3 components: (int, int)"},
        {"v3 = vec3(v2);", "too few arguments for 'vec3', which has 3 components: (vec2)"},
        {"v3 = vec3(1, 2, 3, 4);",
         "too many arguments for 'vec3', which has 3 components: (int, int, int, int)"},
        {"v3 = vec3(v3, f);",
         "too many arguments for 'vec3', which has 3 components: (vec3, float)"},
        {"f = float(1, 2);", "'float' takes one argument, found 2"},
        {"m3 = mat3(1, 2);", "too few arguments for 'mat3', which has 9 components: (int, int)"},
        {"f = float(p);", "cannot make float of primitive"},
        {"v3 = vec3(a);", "cannot make vec3 of float[4]"},
        {"p = primitive(1);", "primitive has no constructor"},
        {"f = (float[2](1.0))[0];", "'float[2]' takes 2 arguments, found 1"},
        {"f = (float[2](1.0, b))[0];", "argument 2 of 'float[2]' must be float, found bool"},
        {"f = (float[i](1.0))[0];", "expected a constant length above 0, found 'i'"},
        {"f = void(1);", "void has no constructor"},
        {"v3 = vec3;", "expected '(' behind the type of a constructor, found ';'"},
    };
    CheckStatements(cases);
}

TEST(CompilerMessages, Syntax_SaysWhatWasExpectedAndFound) {
    const StatementCase cases[] = {
        {"f = ;", "expected an expression, found ';'"},
        {"f = f +;", "expected an expression, found ';'"},
        {"f = (f;", "expected ')', found ';'"},
        {"f = f);", "expected ';' behind 'f', found ')'"},
        {"f = a[1;", "expected ']', found ';'"},
        {"f = a[1);", "expected ']', found ')'"},
        {"f = b ? f;", "expected ':', found ';'"},
        {"f = sin(f;", "expected ')', found ';'"},
        {"f = sin(f,);", "expected an expression, found ')'"},
        {"f = sin(,f);", "expected an expression, found ','"},
        {"f = f f;", "expected ';' behind 'f', found 'f'"},
        {"if f > 1 ;", "expected '(', found 'f'"},
        {"if (b ;", "expected ')', found ';'"},
        {"for (i = 0; i < 1) ;", "expected ';' behind the condition of 'for', found ')'"},
        {"do ; f = 1;", "expected 'while' behind the body of 'do', found 'f'"},
        {"else f = 1;", "expected an expression, found 'else'"},
        {"float 3;", "expected a name, found '3'"},
        {"float;", "expected a name, found ';'"},
        {"int int;", "expected a name, found 'int'"},
        {"void x;", "only a function can be void"},
        {"float g(int x);", "function 'g' cannot be declared inside of a function"},
        {"break;", "'break' is outside of a loop"},
        {"continue;", "'continue' is outside of a loop"},
        {"switch (i) { case 1: break; }", "'switch' is not supported"},
        {"goto end;", "type 'goto' is not declared"},
        {"discard;", "'discard' is not supported; prefix programs end a ray by discardRay()"},
        {"float f2[];", "array 'f2' needs a length"},
        {"float f2[0];", "the length of an array must be above 0, found 0"},
        {"float f2[-1];", "the length of an array must be above 0, found -1"},
        {"float f2[i];", "the length of an array must be a constant int"},
        {"float f2[2.0];", "the length of an array must be a constant int"},
        {"float f2[2][2];", "arrays of arrays are not supported"},
        {"float x; int x;", "'x' is declared twice\n2: note: the other declaration is here"},
        {"f = $;", "unexpected character '$'\n2: expected an expression, found ';'"},
    };
    CheckStatements(cases);
    EXPECT_EQ(Shorten(GetMessages(InMain("for (;;"))), "3: expected an expression, found '}'");
}

TEST(CompilerMessages, Declarations_OfGlobals) {
    const Case cases[] = {
        {"foo", "1: type 'foo' is not declared\n1: expected a name, found the end of the text"},
        {"float", "1: expected a name, found the end of the text"},
        {"float a", "1: expected ';' behind 'a', found the end of the text"},
        {"float a\nfloat b;", "1: expected ';' behind 'a', found 'float'"},
        {"1;", "1: expected a type, found '1'"},
        {"}", "1: expected a type, found '}'"},
        {"Foo a;", "1: type 'Foo' is not declared"},
        {"void a;", "1: only a function can be void"},
        {"float a; int a;", "1: 'a' is declared twice\n1: note: the other declaration is here"},
        {"uniform float a; float a;",
         "1: 'a' is declared twice\n1: note: the other declaration is here"},
        {"float a = 1.0; float a = 1.0;",
         "1: 'a' is declared twice\n1: note: the other declaration is here"},
        {"uniform float a = 1.0;", "1: 'a' is a uniform and cannot have an initialiser"},
        {"rayattribute float a = 1.0;", "1: 'a' is a ray attribute and cannot have an initialiser"},
        {"varying float a = 1.0;", "1: 'a' is a varying and cannot have an initialiser"},
        {"uniform uniform float a;", "1: 'uniform uniform' names a qualifier twice"},
        {"normalized vec3 a;", "1: the qualifiers 'normalized' don't go together"},
        {"uniform varying vec3 a;", "1: the qualifiers 'uniform varying' don't go together"},
        {"mutable float a;", "1: the qualifiers 'mutable' don't go together"},
        {"const uniform float a;", "1: the qualifiers 'const uniform' don't go together"},
        {"uniform float f();", "1: function 'f' cannot have storage qualifiers"},
        {"varying int a;",
         "1: 'a' is a varying and must be a float, a vector of floats or a matrix, found int"},
        {"varying vec3 a[2];",
         "1: 'a' is a varying and must be a float, a vector of floats or a matrix, found vec3[2]"},
        {"rayattribute sampler2D a;", "1: 'a' is a ray attribute and must be a number, a vector, a "
                                      "matrix or a primitive, found sampler2D"},
        {"attribute float a[2];",
         "1: 'a' is an attribute and must be a number, a vector or a matrix, found float[2]",
         kStage_Vertex},
        {"struct S { float a; }; uniform S s;",
         "1: 's' is a uniform and must be no struct, found S"},
        {"struct S { };", "1: a struct needs at least one field"},
        {"struct S { float a; float a; };", "1: field 'a' is declared twice"},
        {"struct S { float a; };\nstruct S { float b; };",
         "2: struct 'S' is declared twice\n1: note: the other declaration is here"},
        {"struct S { S s; };", "1: type 'S' is not declared"},
        {"struct S { float a }", "1: expected ';' behind 'a', found '}'"},
        {"struct S { float a[]; };", "1: array 'a' needs a length"},
        {"uniformblock { float a[1]; };", "1: a uniform block needs a name"},
        {"uniformblock B { float a; };", "1: a uniform block holds one array of a built-in type, "
                                         "as in 'uniformblock B { vec3 a[1]; };'"},
        {"uniformblock B { float a[1]; float b[1]; };",
         "1: a uniform block holds one array of a built-in type, as in 'uniformblock B { vec3 "
         "a[1]; };'"},
        {"float a[2] = float[3](1,2,3);", "1: cannot initialise 'a' (float[2]) with float[3]"},
        {"float a[];", "1: array 'a' needs a length"},
        {"float a[n];", "1: 'n' is not declared"},
        {"float a = {1.0};", "1: expected an expression, found '{'"},
    };
    Check(cases);
}

TEST(CompilerMessages, Declarations_OfFunctions) {
    const Case cases[] = {
        {"void f() { }\nvoid f() { }",
         "2: 'f()' is defined twice\n1: note: the other definition is here"},
        {"float f(int a);\nint f(int b);", "2: 'f(int)' is declared with the return types int and "
                                           "float\n1: note: the other declaration is here"},
        {"void f(int a);\nvoid f(out int a);",
         "2: 'f(int)' is declared with other directions of its parameters\n1: note: the other "
         "declaration is here"},
        {"void f(int a, int a) { }",
         "1: 'a' is declared twice\n1: note: the other declaration is here"},
        {"void f(Foo a);", "1: type 'Foo' is not declared"},
        {"void f(void a);", "1: only a function can be void"},
        {"void f(float a[]);", "1: an array that is a parameter needs a length"},
        {"void f(float a", "1: expected ',' or ')', found the end of the text"},
        {"void f(float a;", "1: expected ',' or ')', found ';'"},
        {"void f(,);", "1: expected a type, found ','"},
        {"void f() {\nint a;", "1: the body of 'f' has no '}'"},
        {"int main() { return 1; }", "1: 'main' must be 'void main()', found 'int main()'"},
        {"void setup(int a) { }", "1: 'setup' must be 'void setup()', found 'void setup(int)'"},
        {"float f() { return; }", "1: 'return' needs a value: 'f' returns float"},
        {"float f() { return true; }", "1: cannot return bool: 'f' returns float"},
        {"int f() { return 1.0; }", "1: cannot return float: 'f' returns int"},
        {"void f() { } }", "1: expected a type, found '}'"},
        {"void f() { } else", "1: expected a type, found 'else'"},
    };
    Check(cases);
}

TEST(CompilerMessages, Mistakes_AreAllReportedAndNoneTwice) {
    EXPECT_EQ(Shorten(GetMessages("void f() {\n"
                                  "  foo = 1;\n"
                                  "  float a = foo + true;\n"
                                  "  a = 1 +;\n"
                                  "  a = bar(foo);\n"
                                  "  vec3 v = vec2(1);\n"
                                  "  a = v.x + baz(1);\n"
                                  "  a = baz(2);\n"
                                  "  float b = 1\n"
                                  "  b = true;\n"
                                  "}\n"
                                  "Bar g(Bar x) { return x; }\n"
                                  "void h() { int a = 1.0; }\n")),
              "2: 'foo' is not declared\n"
              "4: expected an expression, found ';'\n"
              "5: function 'bar' is not declared\n"
              "6: cannot initialise 'v' (vec3) with vec2\n"
              "7: function 'baz' is not declared\n"
              "9: expected ';' behind '1', found 'b'\n"
              "10: cannot assign bool to float\n"
              "12: type 'Bar' is not declared\n"
              "13: cannot initialise 'a' (int) with float");
}

TEST(CompilerMessages, Mistakes_BeyondTheTwentiethAreLeftOut) {
    std::string text = "void main() {\n";
    for (int i = 0; i < 100; ++i) {
        text += "  unknown" + std::to_string(i) + " = 1;\n";
    }
    const std::string messages = GetMessages(text + "}\n");
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n') + 1, kMaxMessages);
    EXPECT_NE(messages.find("Line 21: error: 'unknown19' is not declared"), std::string::npos);
}

TEST(CompilerMessages, LongAndStrangeNames_AreCutInMessages) {
    const std::string messages =
        GetMessages("void main() { " + std::string(100000, 'q') + " = 1; }");
    EXPECT_LT(messages.size(), 200u);
    EXPECT_NE(messages.find("qqq...' is not declared"), std::string::npos);
}

} // namespace Tolen::OpenKL::Tests
