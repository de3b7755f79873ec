#include "TreePrinter.h"

#include <gtest/gtest.h>

#include <string>

/// Generated texts in the exact layout in which generators print them: removed calls as comments,
/// doubled line feeds before `else`, every operand in parentheses.
namespace Tolen::OpenKL::Tests {

TEST(CompilerEmittedText, AGraph_WithAllItsParts) {
    const char* text =
        "uniform int __outputAttachmentIndex_o_color;\n"
        "uniform int __outputAttachmentIndex_o_normal;\n"
        "\n"
        "uniformblock lights_k3_k9\n"
        "{\n"
        "\tvec3 a[1];\n"
        "};\n"
        "\n"
        "uniformblock flags_k4_k9\n"
        "{\n"
        "\tbool a[1];\n"
        "};\n"
        "\n"
        "\n"
        "const float k_k5;\n"
        ";\n"
        "float table_k7[3];\n"
        "vec3 sum_k6;\n"
        "varying vec3 Normal;\n"
        "varying vec2 uv;\n"
        "uniform sampler2D map_k9;\n"
        "uniform primitive sky_kb;\n"
        "uniform int table_k7Length;\n"
        "rayattribute vec3 weight;\n"
        "\n"
        "void Init_k1();\n"
        "int GetRayCount_k1(int i);\n"
        "void Shade_k1();\n"
        "vec3 Eval_k1(vec3 a, out float b, inout vec2 c, float d[2]);\n"
        "// optimizer removed prototype for empty function Nothing_k1;\n"
        "// optimizer removed prototype for never-called function Unused_k1;\n"
        "void _ctor__k2();\n"
        "\n"
        "void _ctor_instance_k1()\n"
        "{\n"
        "\t_ctor__k2();\n"
        "}\n"
        "\n"
        "void _ctor_static_k1()\n"
        "{\n"
        "}\n"
        "\n"
        "vec3 hidden_k8;\n"
        "void Init_k1()\n"
        "{\n"
        "\t// optimizer removed call to empty function Nothing_k1\n"
        ";\n"
        "}\n"
        "\n"
        "int GetRayCount_k1(int i)\n"
        "{\n"
        "\treturn 2;\n"
        "}\n"
        "\n"
        "// optimizer removed definition of empty function Nothing_k1\n"
        "\n"
        "void Shade_k1()\n"
        "{\n"
        "\tfloat b = 0.0;\n"
        "\tvec2 c = vec2(0.5, 1.0);\n"
        "\tfloat d[2];\n"
        "\td[0] = 1;\n"
        "\thidden_k8 = Eval_k1(lights_k3_k9.a[1], b, c, d);\n"
        "\taccumulate(__outputAttachmentIndex_o_color, (hidden_k8*weight));\n"
        "\taccumulate(3, vec4(hidden_k8, 1.000000000000000));\n"
        "\t;\n"
        "\tfor(\tint i = 0;\n"
        "\t(i<table_k7Length);i++)\n"
        "\t{\n"
        "\t\tsum_k6 += (texture2D(map_k9, vec2(uv.x, table_k7[i])).xyz*k_k5);\n"
        "\t}\n"
        "\tif (flags_k4_k9.a[0])\n"
        "\t\tspawnRay(kl_HitPosition, reflect(kl_RayDirection, Normal), 1000.0, 1, sky_kb);\n"
        "\n"
        "\telse\n"
        "\tif ((b>0.5))\n"
        "\t{\n"
        "\t\treturn ;\n"
        "\t}\n"
        "\n"
        "\telse\n"
        "\t{\n"
        "\t}\n"
        "}\n"
        "\n"
        "vec3 Eval_k1(vec3 a, out float b, inout vec2 c, float d[2])\n"
        "{\n"
        "\tb = (a.x<0.0) ? ((- -d[0])) : (1);\n"
        "\tc *= 2.0;\n"
        "\treturn (a*(b-c.y));\n"
        "}\n"
        "\n"
        "void _ctor__k2()\n"
        "{\n"
        "\tk_k5 = -1.5;\n"
        "\ttable_k7[0] = 1.000000000000000;\n"
        "\ttable_k7[1] = -2;\n"
        "}\n"
        "\n"
        "\n";
    EXPECT_EQ(GetMessages(text), "");
}

TEST(CompilerEmittedText, Roots_OfEveryStage) {
    EXPECT_EQ(
        GetMessages("\n\nrayattribute vec3 weight;\n\nvoid Init_k1();\nint GetRayCount_k1();\n"
                    "void Render_k1();\n\nvoid main()\n{\n\tRender_k1();\n}\n\n"
                    "void setup()\n{\n\tInit_k1();\n\tkl_OutputRayCount = GetRayCount_k1();\n}\n\n",
                    kStage_Frame),
        "");
    const char* ray = "\nfloat g;\nvarying vec3 Normal;\nrayattribute vec3 weight;\n\n"
                      "void Shade_k1();\nint GetRayCount_k1(int a);\nvoid _ctor_instance_k1();\n"
                      "void _ctor_static_k1();\n\nvoid main()\n{\n\t_ctor_static_k1();\n"
                      "\t_ctor_instance_k1();\n\tShade_k1();\n}\n\nvoid setup()\n{\n"
                      "\tkl_OutputRayCount[0] = GetRayCount_k1(0);\n"
                      "\tkl_OutputRayCount[7] = GetRayCount_k1(7);\n}\n\n";
    EXPECT_EQ(GetMessages(ray, kStage_Ray), "");
    EXPECT_EQ(GetMessages(ray, kStage_Prefix), "");
    EXPECT_EQ(
        GetMessages("\nattribute vec3 a_Normal;\nattribute vec3 a_Position;\n"
                    "attribute vec2 a_uv;\nattribute vec3 a_t;\nvarying vec2 uv;\n"
                    "transformed normalized varying vec3 Normal;\n"
                    "normalized varying vec3 t;\n\n\nvoid main()\n{\n\tNormal = a_Normal;\n"
                    "\tkl_Position = vec4(a_Position, 1.000000000000000);\n"
                    "\tt = (mat3(kl_PrimitiveTransformMatrix)*a_t);\n"
                    "\tNormal = (mat3(kl_PrimitiveTransformMatrixInverseTranspose)*a_Normal);\n"
                    "\tuv = a_uv;\n}\n\n",
                    kStage_Vertex),
        "");
}

TEST(CompilerEmittedText, RemovedCalls_InEveryPlaceOfAStatement) {
    const std::string removed = "// optimizer removed call to empty function f\n";
    const std::string arguments =
        "// optimizer removed call to empty function f\n"
        "\t// emitting parameters of removed call as standalone expressions:\n"
        "\t{\n\t\ti++;\n\t\t(i+1);\n\t}";
    struct {
        std::string statements;
        const char* expected;
    } const cases[] = {
        {"\t" + removed + ";\n", "{(int i) {}}"},
        {"\t" + arguments + ";\n", "{(int i) {(i ++) (+ i 1)} {}}"},
        {"\tif ((i>0))\n\t\t" + removed + ";\n\n\telse\n\ti++;\n",
         "{(int i) (if (> i 0) {} else (i ++))}"},
        {"\tif ((i>0))\n\t\t" + arguments + ";\n\n\telse\n\ti++;\n",
         "{(int i) (if (> i 0) {(i ++) (+ i 1)} else (i ++))}"},
        {"\tif ((i>0))\n\t{\n\t}\n\n\telse\n\t" + arguments + ";\n",
         "{(int i) (if (> i 0) {} else {(i ++) (+ i 1)}) {}}"},
        {"\tfor(\t" + removed + ";\n\t(i<3);" + removed + ")\n\t;",
         "{(int i) (loop {} (< i 3) none {})}"},
        {"\tfor(\t;\n\t(i<3);" + arguments + ")\n\t;",
         "{(int i) (loop {} (< i 3) (, (, (i ++) (+ i 1)) nothing) {})}"},
        {"\twhile((i<3))\n\t" + removed + ";\n", "{(int i) (loop none (< i 3) none {})}"},
        {"\t(" + removed + ",i++);\n", "{(int i) (, nothing (i ++))}"},
        {"\t(" + arguments + ",i++);\n", "{(int i) (, (, (, (i ++) (+ i 1)) nothing) (i ++))}"},
        {"\t(i<3) ? (" + removed + ") : (" + arguments + ");\n",
         "{(int i) (? (< i 3) nothing (, (, (i ++) (+ i 1)) nothing))}"},
        {"\treturn " + removed + ";\n", "{(int i) (return)}"},
        {"\treturn " + arguments + ";\n", "{(int i) {(, (, (i ++) (+ i 1)) nothing) (return)}}"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(PrintStatements("int i;\n" + c.statements), c.expected) << c.statements;
    }
}

TEST(CompilerEmittedText, ChainsOfOperators_InParenthesesOfAnyDepth) {
    constexpr int kLength = 50000;
    std::string text = "void main()\n{\n\tfloat a;\n\ta = ";
    text += std::string(kLength, '(') + "a";
    for (int i = 0; i < kLength; ++i) {
        text += i % 2 == 0 ? "+a)" : "*2)";
    }
    EXPECT_EQ(GetMessages(text + ";\n}\n"), "");
    text = "void main()\n{\n\tbool a;\n\ta = " + std::string(kLength, '(') + "a";
    for (int i = 0; i < kLength; ++i) {
        text += "||a)";
    }
    EXPECT_EQ(GetMessages(text + ";\n}\n"), "");
    text = "void main()\n{\n\tint a;\n\t" + std::string(kLength, '(') + "a";
    for (int i = 0; i < kLength; ++i) {
        text += ",a++)";
    }
    EXPECT_EQ(GetMessages(text + ";\n}\n"), "");
}

TEST(CompilerEmittedText, ChainsOfElse_OfAnyLength) {
    std::string text = "void main()\n{\n\tint a;\n";
    for (int i = 0; i < 20000; ++i) {
        text += "\tif ((a==" + std::to_string(i) + "))\n\t{\n\t\ta++;\n\t}\n\n\telse\n";
    }
    EXPECT_EQ(GetMessages(text + "\t;\n}\n"), "");
}

} // namespace Tolen::OpenKL::Tests
