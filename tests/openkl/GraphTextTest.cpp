#include "RenderFixture.h"

#include "effects/SmallStack.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Texts as connected shaders become, from the text to the pixel.
namespace Tolen::OpenKL {
namespace {

/// A prefix or ray stage that every ray of a small picture ends in.
class GraphScene : public RenderFixture {
public:
    GraphScene() { MakeFrame(parallelCamera); }

    IPrimitive* Shade(const std::vector<std::string>& texts) {
        std::vector<IKLShader*> shaders;
        shaders.reserve(texts.size());
        for (const std::string& text : texts) {
            shaders.push_back(MakeShader(IKLShader::kType_Ray, text));
        }
        IPrimitive* const primitive = MakePrimitive(Link(shaders));
        pContext->SetMissPrimitive(primitive);
        return primitive;
    }

    /// Red, green and blue, which all pixels share.
    std::array<float, 3> GetColor() {
        const Picture picture = Render(2, 2);
        return {picture.At(0, 0, 0), picture.At(0, 0, 1), picture.At(0, 0, 2)};
    }

    /// The messages of a link that fails.
    std::string GetLinkError(const std::vector<std::string>& texts) {
        IKLProgram* const program = pContext->CreateProgram();
        program->SetName("test");
        for (const std::string& text : texts) {
            EXPECT_TRUE(program->AddShader(MakeShader(IKLShader::kType_Ray, text)));
        }
        Result result;
        EXPECT_FALSE(program->Link(&result));
        return result.IsEmpty() ? "" : result.GetLast();
    }
};

using Color = std::array<float, 3>;

std::string Number(int i) {
    return std::to_string(i);
}

TEST(GraphText, DispatchFunctions_OfEveryTypeGiveTheirDefault) {
    struct {
        const char* type;
        const char* value;  ///< of the connected shader
        const char* ending; ///< the last statement of the dispatch function
        const char* red;    ///< of the result r
        float connected;
        float otherwise;
    } const cases[] = {
        {"float", "2.5", "return 0.000000000000000;", "r", 2.5f, 0.0f},
        {"int", "3", "return 0;", "float(r)", 3.0f, 0.0f},
        {"bool", "true", "return false;", "float(r)", 1.0f, 0.0f},
        {"vec2", "vec2(1.0, 2.0)", "return vec2(0.000000000000000);", "r.y", 2.0f, 0.0f},
        {"vec3", "vec3(3.0)", "return vec3(0.000000000000000);", "r.z", 3.0f, 0.0f},
        {"vec4", "vec4(4.0)", "return vec4(0.000000000000000);", "r.w", 4.0f, 0.0f},
        {"bvec2", "bvec2(true)", "return bvec2(false);", "float(r.y)", 1.0f, 0.0f},
        {"bvec3", "bvec3(true)", "return bvec3(false);", "float(r.z)", 1.0f, 0.0f},
        {"bvec4", "bvec4(true)", "return bvec4(false);", "float(r.w)", 1.0f, 0.0f},
        {"ivec2", "ivec2(5)", "return ivec2(0);", "float(r.y)", 5.0f, 0.0f},
        {"ivec3", "ivec3(6)", "return ivec3(0);", "float(r.z)", 6.0f, 0.0f},
        {"ivec4", "ivec4(7)", "return ivec4(0);", "float(r.w)", 7.0f, 0.0f},
        {"mat2", "mat2(2.0)", "return mat2(0.000000000000000);", "r[1].y", 2.0f, 0.0f},
        {"mat3", "mat3(3.0)", "return mat3(0.000000000000000);", "r[2].z", 3.0f, 0.0f},
        {"mat4", "mat4(4.0)", "return mat4(0.000000000000000);", "r[3].w", 4.0f, 0.0f},
        {"S", "s_k2", "", "r.x", 8.0f, 0.0f},
        {"sampler2D", "map_k2", "", "float(textureSize(r).x)", 0.0f, 0.0f},
        {"primitive", "next_k2", "", "float(r == next_k2)", 1.0f, 1.0f},
    };
    for (const auto& c : cases) {
        const std::string type = c.type;
        GraphScene scene;
        IPrimitive* const primitive = scene.Shade(
            {"struct S\n{\n\tfloat x;\n};\n\nS s_k2;\nuniform int which;\n"
             "uniform sampler2D map_k2;\nuniform primitive next_k2;\n\n" +
             type + " Get_k2(int iThis);\n" + type + " in_k3_Get(int iThis, int iThis_k);\n\n" +
             type + " Get_k2(int iThis)\n{\n\treturn " + c.value + ";\n}\n\n" + type +
             " in_k3_Get(int iThis, int iThis_k)\n{\n"
             "\tif ((iThis==0))\n\treturn Get_k2(iThis_k);\n" +
             "\tif ((iThis==1))\n\treturn Get_k2(iThis_k);\n\t" + c.ending +
             "\n}\n\nvoid main()\n{\n\ts_k2.x = 8.000000000000000;\n\t" + type +
             " r = in_k3_Get(which, 4);\n\taccumulate(0, vec3(" + c.red + "));\n}\n"});
        for (const int which : {0, 1, 2, -1}) {
            EXPECT_TRUE(RenderFixture::SetUniform(*primitive, "which", which));
            const bool isConnected = which == 0 || which == 1;
            EXPECT_EQ(isConnected ? c.connected : c.otherwise, scene.GetColor()[0])
                << type << " " << which;
        }
    }
}

TEST(GraphText, DispatchOfVoidFunctions_RunsTheOneThatIsMeant) {
    GraphScene scene;
    IPrimitive* const primitive = scene.Shade(
        {"uniform int which;\nfloat sum_k1;\n\nvoid Add_k2(float iThis)\n{\n\tsum_k1 += iThis;\n}\n"
         "\nvoid Add_k3(float iThis)\n{\n\tsum_k1 += (iThis*10.0);\n}\n\n"
         "void in_k1_Add(int iThis, float a)\n{\n\tif ((iThis==0))\n\tAdd_k2(a);\n"
         "\tif ((iThis==1))\n\tAdd_k3(a);\n}\n\n"
         "void main()\n{\n\tin_k1_Add(which, 2.0);\n\tin_k1_Add(1, 1.0);\n"
         "\taccumulate(0, sum_k1);\n}\n"});
    for (const auto& [which, expected] : {std::pair(0, 12.0f), {1, 30.0f}, {2, 10.0f}}) {
        RenderFixture::SetUniform(*primitive, "which", which);
        EXPECT_EQ(expected, scene.GetColor()[0]) << which;
    }
}

TEST(GraphText, Counts_AreConstantsOrUniformsThatMayStayUnset) {
    const std::string body = "float Get_k2(int iThis)\n{\n\tif ((iThis==0))\n\treturn 1.0;\n"
                             "\tif ((iThis==1))\n\treturn 20.0;\n\treturn 0.000000000000000;\n}\n\n"
                             "void main()\n{\n\tfloat s = 0.5;\n\tfor(\tint i = 0;\n\t(i<in_k2_"
                             "Count);i++)\n\t{\n\t\ts += Get_k2(i);\n\t}\n\taccumulate(0, s);\n}\n";
    GraphScene constant;
    constant.Shade({"const int in_k2_Count = 2;\n" + body});
    EXPECT_EQ(21.5f, constant.GetColor()[0]);
    for (const char* qualifier : {"uniform", "mutable uniform"}) {
        GraphScene scene;
        IPrimitive* const primitive =
            scene.Shade({qualifier + std::string(" int in_k2_Count;\n") + body});
        EXPECT_EQ(0.5f, scene.GetColor()[0]) << "unset is 0";
        EXPECT_TRUE(RenderFixture::SetUniform(*primitive, "in_k2_Count", 1));
        EXPECT_EQ(1.5f, scene.GetColor()[0]);
        EXPECT_TRUE(RenderFixture::SetUniform(*primitive, "in_k2_Count", 5));
        EXPECT_EQ(21.5f, scene.GetColor()[0]);
    }
}

TEST(GraphText, GraphsThatCallEachOther_LinkAcrossTexts) {
    const std::string root = "\nvarying vec3 Normal;\nrayattribute vec3 weight;\n\n"
                             "void Shade_k1();\nvoid _ctor_instance_k1();\n"
                             "void _ctor_static_k1();\nvoid _ctor_instance_k9();\n"
                             "void _ctor_static_k9();\n\nvoid main()\n{\n\t_ctor_static_k1();\n"
                             "\t_ctor_static_k9();\n\t_ctor_instance_k1();\n"
                             "\t_ctor_instance_k9();\n\tShade_k1();\n}\n\n"
                             "void setup()\n{\n\tkl_OutputRayCount[0] = 2;\n}\n\n";
    const std::string first =
        "uniform int __outputAttachmentIndex_o_color;\n\nuniform float gain_k1;\nfloat base_k1;\n"
        "varying vec3 Normal;\n\nfloat Foo_Eval_k5(float x);\nfloat Foo_Eval_k5(float x);\n"
        "void Shade_k1();\n\nvoid _ctor_instance_k1()\n{\n\tbase_k1 = 1.000000000000000;\n}\n\n"
        "void _ctor_static_k1()\n{\n}\n\nvoid Shade_k1()\n{\n"
        "\taccumulate(__outputAttachmentIndex_o_color, "
        "(Foo_Eval_k5(gain_k1)+(base_k1+Foo_Eval_k5(gain_k1))));\n}\n\n";
    const std::string second =
        "uniform float gain_k9;\nfloat scale_k5;\nfloat count_Foo;\nvarying vec3 Normal;\n\n"
        "float Foo_Eval_k5(float x);\nfloat Foo_Eval_k5(float x);\nvoid __ctor__k5();\n"
        "void __ctor__k5();\n\nfloat Foo_Eval_k5(float x)\n{\n"
        "\treturn ((x*scale_k5)+(gain_k9*count_Foo));\n}\n\nvoid __ctor__k5()\n{\n"
        "\tscale_k5 = (scale_k5+2.000000000000000);\n}\n\n"
        "void _ctor_instance_k9()\n{\n\t__ctor__k5();\n}\n\n"
        "void _ctor_static_k9()\n{\n\tcount_Foo = 10.000000000000000;\n}\n\n";
    // Neither the order of the texts nor who declares what first matters.
    for (const std::vector<std::string>& texts :
         {std::vector{root, first, second}, {second, first, root}, {first, root, second}}) {
        GraphScene scene;
        IPrimitive* const primitive = scene.Shade(texts);
        EXPECT_TRUE(RenderFixture::SetUniform(*primitive, "gain_k1", 3.0f));
        EXPECT_TRUE(RenderFixture::SetUniform(*primitive, "gain_k9", 0.5f));
        EXPECT_EQ(2.0f * (3.0f * 2.0f + 0.5f * 10.0f) + 1.0f, scene.GetColor()[0]);
    }
    GraphScene scene;
    const std::string error = scene.GetLinkError({root, first});
    EXPECT_NE(error.find("'_ctor_instance_k9()' is called in"), std::string::npos) << error;
    EXPECT_NE(scene.GetLinkError({root, first, second, second}).find("is defined in"),
              std::string::npos);
}

TEST(GraphText, VaryingsDeclaredAlikeInAllTexts_AreOne) {
    GraphScene scene;
    IPrimitive* const floor = scene.MakePrimitive(scene.Link(
        {scene.MakeShader(IKLShader::kType_Ray,
                          "varying vec3 Normal;\nvarying vec3 Normal;\nvec3 Get_k2();\n"
                          "void main()\n{\n\taccumulate(0, (Get_k2()+Normal));\n}\n"),
         scene.MakeShader(IKLShader::kType_Ray,
                          "varying vec3 Normal;\nvarying vec3 Normal;\nvec3 Get_k2()\n{\n"
                          "\treturn (Normal*2.0);\n}\n"),
         scene.MakeShader(IKLShader::kType_Vertex, RenderFixture::vertexShader)}));
    EXPECT_TRUE(SetMesh(*floor, MakeSphere(0.9f, 64, 32)));
    EXPECT_NEAR(3.0f, scene.Render(65, 65).At(32, 32, 2), 0.02f);
}

TEST(GraphText, VaryingsThatNothingReads_NeedNoVertexShader) {
    GraphScene scene;
    scene.Shade({"varying vec3 Normal;\nvarying vec2 uv;\nvoid main()\n{\n"
                 "\taccumulate(0, 4.0);\n}\n"});
    EXPECT_EQ(4.0f, scene.GetColor()[0]);
}

TEST(GraphText, SharedShadersAndChains_OfAnyDepthLinkAndRun) {
    // Each node has two inputs that hold the next one, and a member that its constructor sets.
    const auto makeGraph = [](int count) {
        std::string text;
        for (int i = 1; i <= count; ++i) {
            text += "float gain_k" + Number(i) + ";\n";
        }
        for (int i = 1; i <= count; ++i) {
            text +=
                "float Mix_Eval_k" + Number(i) + "(float x);\nvoid __ctor__k" + Number(i) + "();\n";
        }
        for (int i = 1; i <= count; ++i) {
            const std::string n = Number(i);
            const std::string next = Number(i + 1);
            const bool isLast = i == count;
            text += "void __ctor__k" + n + "()\n{\n\tgain_k" + n + " = 0.500000000000000;\n" +
                    (isLast ? "" : "\t__ctor__k" + next + "();\n\t__ctor__k" + next + "();\n") +
                    "}\n\nfloat Mix_Eval_k" + n + "(float x)\n{\n\treturn " +
                    (isLast ? "x"
                            : "((Mix_Eval_k" + next + "(x)+Mix_Eval_k" + next + "(x))*gain_k" + n +
                                  ")") +
                    ";\n}\n\n";
        }
        return text + "void main()\n{\n\t__ctor__k1();\n\taccumulate(0, Mix_Eval_k1(7.0));\n}\n";
    };
    for (const int count : {2, 40, 10000}) {
        const std::string text = makeGraph(count);
        Effects::Tests::OnSmallStack([&] {
            GraphScene scene;
            scene.Shade({text});
            EXPECT_EQ(7.0f, scene.GetColor()[0]) << count;
        });
    }
}

TEST(GraphText, ProgramsBeyondALimit_FailToLinkAndNameIt) {
    // Seventeen arrays of 16,000 words and one more word for each.
    std::string text = "void main()\n{\n\tint k = kl_RayDepth;\n\tfloat s;\n";
    for (int i = 0; i < 17; ++i) {
        const std::string name = "a" + Number(i);
        text += "\tfloat " + name + "[16000];\n\t" + name + "[k] = 1.0;\n\ts += " + name + "[k];\n";
    }
    GraphScene scene;
    const std::string error = scene.GetLinkError({text + "\taccumulate(0, s);\n}\n"});
    EXPECT_NE(error.find("more than the limit of 262144"), std::string::npos) << error;
}

} // namespace
} // namespace Tolen::OpenKL
