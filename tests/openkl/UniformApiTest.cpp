#include "RenderFixture.h"

#include <limits>

namespace Tolen::OpenKL {
namespace {

/// One uniform of every type, and what a frame reads of them.
constexpr const char* kEveryType = R"(
    uniform primitive thePrimitive;
    uniform sampler2D theTexture;
    uniform mat4 theMat4;
    uniform mat3 theMat3;
    uniform vec4 theVec4;
    uniform vec3 theVec3;
    uniform vec2 theVec2;
    uniform float theFloat;
    uniform ivec4 theIvec4;
    uniform ivec3 theIvec3;
    uniform ivec2 theIvec2;
    uniform int theInt;
    uniform bool theBool;
    void main() {
        accumulate(0, theMat4[1]);
        accumulate(1, theMat3[2]);
        accumulate(2, theVec4);
        accumulate(3, theVec3);
        accumulate(4, vec3(theVec2, theFloat));
        accumulate(5, vec4(theIvec4));
        accumulate(6, vec3(theIvec3));
        accumulate(7, vec4(vec2(theIvec2), float(theInt), theBool ? 1.0 : 0.0));
        accumulate(8, texture2D(theTexture, vec2(0.5)));
    })";

constexpr const char* kNames[] = {"thePrimitive", "theTexture", "theMat4",  "theMat3",  "theVec4",
                                  "theVec3",      "theVec2",    "theFloat", "theIvec4", "theIvec3",
                                  "theIvec2",     "theInt",     "theBool"};

TEST(UniformApi, Write_OfEveryType_IsWhatProgramsRead) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(kEveryType);
    Matrix44f mat4;
    for (int i = 0; i < 16; ++i) {
        mat4.m[i] = static_cast<float>(i);
    }
    Matrix33f mat3;
    for (int i = 0; i < 9; ++i) {
        mat3.m[i] = static_cast<float>(i);
    }
    const float texel = 7.0f;
    IKLTexImage2D* const image = scene.pContext->CreateTexImage2D();
    ASSERT_TRUE(image->Init(1, 1, IKLTexImage2D::kFormat_R32F, KL_REPEAT, KL_NEAREST, KL_NEAREST,
                            &texel, false));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "thePrimitive", frame->GetHandle()));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theTexture", image->GetTexture()));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theMat4", mat4));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theMat3", mat3));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theVec4", Vector4f(1, 2, 3, 4)));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theVec3", Vector3f(5, 6, 7)));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theVec2", Vector2f(8, 9)));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theFloat", 10.0f));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theIvec4", Vector4i(-1, -2, -3, -4)));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theIvec3", Vector3i(-5, -6, -7)));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theIvec2", Vector2i(-8, -9)));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theInt", -10));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "theBool", true));

    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1, 9);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), nullptr));
    const float expected[9][4] = {{4, 5, 6, 7},    {6, 7, 8, 0},     {1, 2, 3, 4},
                                  {5, 6, 7, 0},    {8, 9, 10, 0},    {-1, -2, -3, -4},
                                  {-5, -6, -7, 0}, {-8, -9, -10, 1}, {7, 0, 0, 1}};
    for (int attachment = 0; attachment < 9; ++attachment) {
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_EQ(expected[attachment][channel],
                      RenderFixture::Read(*framebuffer, attachment).At(0, 0, channel))
                << attachment << " " << channel;
        }
    }
}

/// Writes a value to every uniform and counts the writes that work.
template <class T>
int CountAcceptingTypes(IPrimitive& primitive, const T& value) {
    int accepted = 0;
    for (const char* name : kNames) {
        accepted += RenderFixture::SetUniform(primitive, name, value) ? 1 : 0;
    }
    return accepted;
}

TEST(UniformApi, Write_OfAnotherType_AnswersFalse) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(kEveryType);
    EXPECT_EQ(1, CountAcceptingTypes(*frame, frame->GetHandle()));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, KLtexture(nullptr)));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, Matrix44f()));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, Matrix33f()));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, Vector4f()));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, Vector3f()));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, Vector2f()));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, 1.0f));
    EXPECT_EQ(1, CountAcceptingTypes(*frame, true));
    // Integers also go where floats of the same shape are declared.
    EXPECT_EQ(2, CountAcceptingTypes(*frame, Vector4i()));
    EXPECT_EQ(2, CountAcceptingTypes(*frame, Vector3i()));
    EXPECT_EQ(2, CountAcceptingTypes(*frame, Vector2i()));
    EXPECT_EQ(2, CountAcceptingTypes(*frame, 1));
}

TEST(UniformApi, Write_OfIntegersToFloats_Converts) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(
        "uniform float x; uniform vec2 y; void main() { accumulate(0, vec3(x, y)); }");
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "x", 3));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "y", Vector2i(-4, 5)));
    const Picture picture = scene.Render(1, 1);
    EXPECT_EQ(3.0f, picture.At(0, 0, 0));
    EXPECT_EQ(-4.0f, picture.At(0, 0, 1));
    EXPECT_EQ(5.0f, picture.At(0, 0, 2));
}

TEST(UniformApi, Write_ToWrongLocations_AnswersFalse) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(kEveryType);
    for (const int location : {-1, 13, 1000000, std::numeric_limits<int>::min()}) {
        EXPECT_FALSE(frame->SetUniform("x", location, 1.0f));
        EXPECT_FALSE(frame->SetUniformTexture("x", location, nullptr));
        EXPECT_FALSE(frame->SetUniformBlock("x", location, nullptr));
    }
    IPrimitive* const bare = scene.pContext->CreatePrimitive();
    EXPECT_FALSE(bare->SetUniform("x", 0, 1.0f));
    EXPECT_FALSE(bare->SetUniformBlock("x", 0, nullptr));
}

TEST(UniformApi, WriteArray_UpToItsLength_LeavesTheNeighboursAlone) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform float before;
        uniform vec3 list[4];
        uniform float behind;
        void main() {
            accumulate(0, vec4(list[0], before));
            accumulate(1, vec4(list[1], behind));
            accumulate(2, vec4(list[3], 0.0));
        })");
    const int location = frame->GetProgram()->GetUniformLocation("list");
    const Vector3f values[5] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}, {13, 14, 15}};
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "before", -1.0f));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "behind", -2.0f));
    EXPECT_TRUE(frame->SetUniformArray("list", location, 4, values));
    EXPECT_FALSE(frame->SetUniformArray("list", location, 5, values));
    EXPECT_FALSE(frame->SetUniformArray("list", location, 0, values));
    EXPECT_FALSE(frame->SetUniformArray("list", location, -1, values));
    EXPECT_FALSE(frame->SetUniformArray("list", location, 1, static_cast<Vector3f*>(nullptr)));
    // Fewer values, and a single one, start at the first element.
    EXPECT_TRUE(frame->SetUniformArray("list", location, 2, values + 1));
    EXPECT_TRUE(frame->SetUniform("list", location, Vector3f(20, 21, 22)));
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1, 3);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), nullptr));
    const float expected[3][4] = {{20, 21, 22, -1}, {7, 8, 9, -2}, {10, 11, 12, 0}};
    for (int attachment = 0; attachment < 3; ++attachment) {
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_EQ(expected[attachment][channel],
                      RenderFixture::Read(*framebuffer, attachment).At(0, 0, channel));
        }
    }
}

TEST(UniformApi, Blocks_ReadTheBuffersLaterContentAndSize) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform int index;
        uniformblock Values { vec3 a[1]; };
        uniformblock Flags { bool a[1]; };
        void main() { accumulate(0, vec4(Values.a[index], Flags.a[index] ? 1.0 : 0.0)); })");
    IKLProgram* const program = frame->GetProgram();
    IKLBuffer* const values = scene.pContext->CreateBuffer();
    IKLBuffer* const flags = scene.pContext->CreateBuffer();
    EXPECT_TRUE(
        frame->SetUniformBlock("Values", program->GetUniformBlockLocation("Values"), values));
    EXPECT_TRUE(frame->SetUniformBlock("Flags", program->GetUniformBlockLocation("Flags"), flags));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "index", 1));
    EXPECT_EQ(0.0f, scene.Render(1, 1).At(0, 0)) << "a buffer without storage";

    ASSERT_TRUE(values->Init(0, 24));
    ASSERT_TRUE(flags->Init(0, 8));
    {
        const AutoBindKLBuffer bind(values, KL_UNIFORM_BUFFER);
        const float data[3] = {4, 5, 6};
        klBufferSubData(KL_UNIFORM_BUFFER, 12, 12, data);
    }
    {
        const KLBufferSafeMapping<std::int32_t> map(flags, KLBufferMapping::kAccess_Write,
                                                    KLBufferMapping::kBindPoint_UniformBlock);
        ASSERT_EQ(2u, map.GetCount());
        *map.Get(1) = 1;
    }
    Picture picture = scene.Render(1, 1);
    EXPECT_EQ(4.0f, picture.At(0, 0, 0));
    EXPECT_EQ(6.0f, picture.At(0, 0, 2));
    EXPECT_EQ(1.0f, picture.At(0, 0, 3));

    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "index", 2));
    EXPECT_EQ(0.0f, scene.Render(1, 1).At(0, 0)) << "behind the end";
    ASSERT_TRUE(values->Resize(0, 36, true));
    {
        const AutoBindKLBuffer bind(values, KL_UNIFORM_BUFFER);
        const float data[1] = {9};
        klBufferSubData(KL_UNIFORM_BUFFER, 24, 4, data);
    }
    EXPECT_EQ(9.0f, scene.Render(1, 1).At(0, 0));
    scene.pContext->DestroyBuffer(values);
    EXPECT_EQ(0.0f, scene.Render(1, 1).At(0, 0)) << "a buffer that is gone";
}

TEST(UniformApi, SetUniformBlock_WithAForeignBuffer_AnswersFalse) {
    RenderFixture scene;
    RenderFixture other;
    IPrimitive* const frame =
        scene.MakeFrame("uniformblock B { float a[1]; }; void main() { accumulate(0, B.a[0]); }");
    const int location = frame->GetProgram()->GetUniformBlockLocation("B");
    EXPECT_FALSE(frame->SetUniformBlock("B", location, other.pContext->CreateBuffer()));
    EXPECT_TRUE(frame->SetUniformBlock("B", location, nullptr));
}

TEST(UniformApi, Uniforms_OfTwoPrimitivesOfOneProgram_AreTheirOwn) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    IPrimitive* const left = scene.MakeObject(
        MakePlane(0.9f, 2.0f), "uniform float value; void main() { accumulate(0, value); }");
    IPrimitive* const right = scene.MakePrimitive(left->GetProgram());
    EXPECT_TRUE(SetMesh(*right, MakePlane(0.9f, 2.0f)));
    Matrix44f matrix;
    matrix(0, 3) = -0.5f;
    EXPECT_TRUE(left->SetTransform(matrix));
    matrix(0, 3) = 0.5f;
    EXPECT_TRUE(right->SetTransform(matrix));
    // Neither a bound primitive nor a current program is needed.
    EXPECT_TRUE(RenderFixture::SetUniform(*left, "value", 1.0f));
    EXPECT_TRUE(RenderFixture::SetUniform(*right, "value", 2.0f));
    const Picture picture = scene.Render(4, 4, 4);
    EXPECT_GT(picture.At(3, 2), 1.4f);
    EXPECT_LT(picture.At(0, 2), 1.01f);
    EXPECT_GT(picture.At(0, 2), 0.7f);
}

TEST(UniformApi, VertexShader_ThatReadsAUniform_RunsAgainWhenItChanges) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(0.1, 0.1, 9.0), vec3(0.0, 0.0, -1.0)); }");
    IPrimitive* const object = scene.MakeObject(
        MakePlane(2.0f, 2.0f), "void main() { accumulate(0, kl_HitPosition.z); }", R"(
        uniform float height;
        attribute vec3 a_Position;
        void main() { kl_Position = vec4(a_Position.xy, height, 1.0); })");
    EXPECT_EQ(0.0f, scene.Render(1, 1).At(0, 0));
    EXPECT_TRUE(RenderFixture::SetUniform(*object, "height", 2.0f));
    EXPECT_EQ(2.0f, scene.Render(1, 1).At(0, 0));
    const std::int64_t invocations = scene.pContext->GetStatistics().vertexInvocations;
    EXPECT_EQ(8, invocations);
    EXPECT_EQ(2.0f, scene.Render(1, 1).At(0, 0));
    EXPECT_EQ(invocations, scene.pContext->GetStatistics().vertexInvocations);
}

} // namespace
} // namespace Tolen::OpenKL
