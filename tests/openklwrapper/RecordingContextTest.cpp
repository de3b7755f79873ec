#include "support/RecordingContext.h"

#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tolen::Tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordingContextTest : public testing::Test {
protected:
    RecordingContext context;
    RecordingPrimitive primitive{context};

    IKLShader* _MakeShader(const std::string& text) {
        IKLShader* const shader = context.CreateShader(IKLShader::kType_Ray);
        shader->SetString(text, nullptr);
        return shader;
    }
};

TEST_F(RecordingContextTest, EveryCreationAndDestruction_IsLoggedAndCounted) {
    IKLShader* const shader = context.CreateShader(IKLShader::kType_PrefixRay);
    IKLProgram* const program = context.CreateProgram();
    IKLBuffer* const buffer = context.CreateBuffer();
    IKLTexImage2D* const image = context.CreateTexImage2D();
    EXPECT_EQ(shader->GetType(), IKLShader::kType_PrefixRay);
    EXPECT_EQ(context.GetCountLive(), 4);
    context.DestroyShader(shader);
    context.DestroyProgram(program);
    context.DestroyBuffer(buffer);
    context.DestroyTexImage2D(image);
    context.DestroyShader(nullptr);
    EXPECT_EQ(context.GetCountLive(), 0);
    EXPECT_THAT(context.GetLog().GetLines(),
                ElementsAre("CreateShader prefix -> shader1", "CreateProgram -> program1",
                            "CreateBuffer -> buffer1", "CreateTexImage2D -> image1",
                            "DestroyShader shader1", "DestroyProgram program1",
                            "DestroyBuffer buffer1", "DestroyTexImage2D image1"));
    EXPECT_THAT(context.GetLog().GetMisuses(), IsEmpty());
    context.DestroyShader(shader);
    EXPECT_EQ(context.GetLog().GetMisuses().size(), 1u);
}

TEST_F(RecordingContextTest, TheNthCall_FailsAlone) {
    context.GetLog().FailNth("CreateBuffer", 2);
    context.GetLog().FailNth("CreateBuffer", 3);
    EXPECT_NE(context.CreateBuffer(), nullptr);
    EXPECT_EQ(context.CreateBuffer(), nullptr);
    EXPECT_EQ(context.CreateBuffer(), nullptr);
    EXPECT_NE(context.CreateBuffer(), nullptr);
    context.GetLog().FailAll("CreateProgram");
    EXPECT_EQ(context.CreateProgram(), nullptr);
    EXPECT_EQ(context.CreateProgram(), nullptr);
    context.GetLog().FailNone();
    EXPECT_NE(context.CreateProgram(), nullptr);
    EXPECT_EQ(context.GetCountLive(), 3);
    EXPECT_THAT(context.GetLog().GetLines("CreateProgram"),
                ElementsAre("CreateProgram -> failed", "CreateProgram -> failed",
                            "CreateProgram -> program1"));
}

TEST_F(RecordingContextTest, SetString_KeepsTheTextAndReportsTheError) {
    IKLShader* const shader = context.CreateShader(IKLShader::kType_Ray);
    context.SetCompileError("String 0 Line 12: error: 'foo' is not declared");
    context.GetLog().FailNth("SetString", 2);
    Result result;
    EXPECT_TRUE(shader->SetString("good", &result));
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_FALSE(shader->SetString("bad", &result));
    EXPECT_EQ(result.GetLast(), "String 0 Line 12: error: 'foo' is not declared");
    EXPECT_EQ(context.GetShaders()[0]->GetText(), "bad");
    EXPECT_FALSE(context.GetShaders()[0]->HasCode());
}

TEST_F(RecordingContextTest, ALinkedProgram_KnowsTheNamesThatItsTextsDeclare) {
    IKLProgram* const program = context.CreateProgram();
    context.SetUnused("unused");
    program->AddShader(_MakeShader("// uniform int no;\n/* uniform int no; */\n"
                                   "uniform vec3 a, b[2];\nmutable uniform float c = max(1, 2), d;"
                                   "uniformblock Block\n{\n    vec3 values[1];\n};\n"
                                   "void main() { uniform_x = 1; }\nuniform bool unused;\n"));
    program->AddShader(_MakeShader("uniform vec3 a; attribute vec4 a_position;\nuniform mat4 e;"));
    EXPECT_EQ(program->GetUniformLocation("a"), -1);
    ASSERT_TRUE(program->Link(nullptr));
    EXPECT_THAT(context.GetPrograms()[0]->GetUniforms(), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_EQ(program->GetUniformLocation("e"), 4);
    EXPECT_EQ(program->GetUniformLocation("unused"), -1);
    EXPECT_EQ(program->GetUniformLocation("no"), -1);
    EXPECT_EQ(program->GetUniformBlockLocation("Block"), 0);
    EXPECT_EQ(program->GetAttributeLocation("a_position"), 0);
    EXPECT_EQ(program->GetAttributeLocation("a"), -1);
}

TEST_F(RecordingContextTest, Link_FailsWithoutShadersOrWithoutCode) {
    IKLProgram* const program = context.CreateProgram();
    Result result;
    EXPECT_FALSE(program->Link(&result));
    EXPECT_EQ(result.GetCount(), 1u);
    context.GetLog().FailNth("SetString");
    IKLShader* const shader = _MakeShader("x");
    program->AddShader(shader);
    EXPECT_FALSE(program->Link(nullptr));
    shader->SetString("y", nullptr);
    EXPECT_TRUE(program->Link(nullptr));
    context.GetLog().FailNth("Link");
    EXPECT_FALSE(program->Link(nullptr));
    context.DestroyShader(shader);
    EXPECT_THAT(context.GetPrograms()[0]->GetShaders(), IsEmpty());
}

TEST_F(RecordingContextTest, Uniforms_AreWrittenWithTypeAndValue) {
    EXPECT_TRUE(primitive.SetUniform("f", 0, 0.5f));
    EXPECT_TRUE(primitive.SetUniform("v", 1, Vector3f(1, 0, 0)));
    EXPECT_TRUE(primitive.SetUniform("b", 2, true));
    EXPECT_TRUE(primitive.SetUniform("i", 3, Vector2i(1, 2)));
    EXPECT_TRUE(primitive.SetUniform("p", 4, primitive.GetHandle()));
    EXPECT_TRUE(primitive.SetUniform("t", 5, KLtexture()));
    EXPECT_FALSE(primitive.SetUniform("f", -1, 0.75f));
    const int values[] = {1, 2, 3};
    EXPECT_TRUE(primitive.SetUniformArray("n", 6, 3, values));
    EXPECT_THAT(context.GetLog().GetLines(),
                ElementsAre("SetUniform primitive1 \"f\" @0 float 0.5",
                            "SetUniform primitive1 \"v\" @1 vec3 (1,0,0)",
                            "SetUniform primitive1 \"b\" @2 bool true",
                            "SetUniform primitive1 \"i\" @3 ivec2 (1,2)",
                            "SetUniform primitive1 \"p\" @4 primitive 1",
                            "SetUniform primitive1 \"t\" @5 texture null",
                            "SetUniform primitive1 \"f\" @-1 float 0.75 -> failed",
                            "SetUniformArray primitive1 \"n\" @6 int[3] 1 2 3"));
    EXPECT_EQ(primitive.GetUniform("f"), "float 0.5");
    EXPECT_EQ(primitive.GetUniform("none"), "");
}

TEST_F(RecordingContextTest, BuffersAndImages_GoToUniformsByName) {
    IKLBuffer* const buffer = context.CreateBuffer();
    EXPECT_TRUE(primitive.SetUniformBlock("B", 0, buffer));
    EXPECT_EQ(primitive.GetUniform("B"), "block buffer1");
    IKLTexImage2D* const image = context.CreateTexImage2D();
    EXPECT_EQ(image->GetTexture(), nullptr);
    float texels[6] = {1, 2, 3, 4, 5, 6};
    ASSERT_TRUE(image->Init(2, 1, IKLTexImage2D::kFormat_RGB32F, KL_REPEAT, KL_NEAREST, KL_LINEAR,
                            texels, true));
    texels[0] = 7;
    EXPECT_EQ(context.GetImages()[0]->GetTexels()[0], 7.0f);
    EXPECT_EQ(image->GetWidth(), 2);
    EXPECT_TRUE(primitive.SetUniformTexture("s", 1, image->GetTexture()));
    EXPECT_EQ(primitive.GetUniform("s"), "texture image1");
}

TEST_F(RecordingContextTest, ABuffer_HasBytesThatSurviveAResize) {
    IKLBuffer* const buffer = context.CreateBuffer();
    ASSERT_TRUE(buffer->Init(0, 8));
    {
        const AutoBindKLBuffer bind(buffer, KL_UNIFORM_BUFFER);
        const int values[] = {1, 2};
        klBufferSubData(KL_UNIFORM_BUFFER, 0, 8, values);
        klBufferSubData(KL_UNIFORM_BUFFER, 4, 8, values);
    }
    klBufferSubData(KL_UNIFORM_BUFFER, 0, 4, buffer);
    RecordingBuffer* const recording = context.GetBuffers()[0];
    EXPECT_THAT(recording->GetElements<int>(), ElementsAre(1, 2));
    EXPECT_EQ(context.GetLog().GetMisuses().size(), 1u);
    EXPECT_TRUE(buffer->Resize(0, 12, true));
    EXPECT_THAT(recording->GetElements<int>(), ElementsAre(1, 2, 0));
    EXPECT_TRUE(buffer->Resize(0, 4, true));
    EXPECT_TRUE(buffer->Resize(0, 8, true));
    EXPECT_THAT(recording->GetElements<int>(), ElementsAre(1, 0));
    EXPECT_TRUE(buffer->Resize(0, 4, false));
    EXPECT_THAT(recording->GetElements<int>(), ElementsAre(0));
    context.GetLog().FailNth("BufferResize");
    EXPECT_FALSE(buffer->Resize(0, 40, true));
    EXPECT_EQ(buffer->GetSize(), 4);
}

TEST_F(RecordingContextTest, UseProgram_SpeaksOfTheInnermostBoundPrimitive) {
    IKLProgram* const program = context.CreateProgram();
    RecordingPrimitive other(context);
    {
        const AutoBindKLPrimitive outer(&other);
        const AutoBindKLPrimitive inner(&primitive);
        klUseProgram(program->GetHandle());
        EXPECT_EQ(primitive.GetCountBound(), 1);
    }
    EXPECT_EQ(primitive.GetCountBound(), 0);
    EXPECT_EQ(primitive.GetProgram(), context.GetPrograms()[0]);
    EXPECT_EQ(other.GetProgram(), nullptr);
    EXPECT_EQ(context.GetLog().GetCount("UseProgram"), 1);
    EXPECT_THAT(context.GetLog().GetLines("UseProgram"),
                ElementsAre("UseProgram program1 on primitive1"));
    context.DestroyProgram(program);
    EXPECT_EQ(primitive.GetProgram(), nullptr);
}

} // namespace
} // namespace Tolen::Tests
