#include "RenderFixture.h"

#include <vector>

namespace Tolen::OpenKL {
namespace {

constexpr const char* kEmptyRay = "void main() {}";

TEST(ProgramApi, Locations_OfDeclaredUniformsAndBlocks_AreThereUsedOrNot) {
    RenderFixture scene;
    IKLProgram* const program = scene.Link({scene.MakeShader(IKLShader::kType_Frame, R"(
        uniform float used;
        uniform vec3 unused;
        uniformblock Unused { float a[1]; };
        uniformblock Used { vec3 a[1]; };
        void main() { accumulate(0, used + Used.a[3].x); })")});
    EXPECT_GE(program->GetUniformLocation("used"), 0);
    EXPECT_GE(program->GetUniformLocation("unused"), 0);
    EXPECT_NE(program->GetUniformLocation("used"), program->GetUniformLocation("unused"));
    EXPECT_GE(program->GetUniformBlockLocation("Used"), 0);
    EXPECT_GE(program->GetUniformBlockLocation("Unused"), 0);
    EXPECT_LT(program->GetUniformLocation("Used"), 0);
    EXPECT_LT(program->GetUniformBlockLocation("used"), 0);
    EXPECT_LT(program->GetUniformLocation("other"), 0);
    EXPECT_LT(program->GetAttributeLocation("used"), 0);
}

TEST(ProgramApi, Locations_BeforeALinkAndAfterAFailedOne_AreNegative) {
    RenderFixture scene;
    IKLShader* const good = scene.MakeShader(IKLShader::kType_Frame,
                                             "uniform float x; void main() { accumulate(0, x); }");
    IKLProgram* const program = scene.pContext->CreateProgram();
    EXPECT_TRUE(program->AddShader(good));
    EXPECT_LT(program->GetUniformLocation("x"), 0);
    EXPECT_TRUE(program->Link(nullptr));
    EXPECT_GE(program->GetUniformLocation("x"), 0);
    EXPECT_TRUE(program->DetachShader(good));
    EXPECT_GE(program->GetUniformLocation("x"), 0) << "what is linked stays until the next link";
    EXPECT_FALSE(program->Link(nullptr));
    EXPECT_LT(program->GetUniformLocation("x"), 0);
}

TEST(ProgramApi, AddShader_Twice_AnswersTrueAndAttachesOnce) {
    RenderFixture scene;
    IKLShader* const shader = scene.MakeShader(IKLShader::kType_Ray, kEmptyRay);
    IKLProgram* const program = scene.pContext->CreateProgram();
    EXPECT_TRUE(program->AddShader(shader));
    EXPECT_TRUE(program->AddShader(shader));
    EXPECT_TRUE(program->Link(nullptr));
    EXPECT_TRUE(program->DetachShader(shader));
    EXPECT_FALSE(program->DetachShader(shader));
}

TEST(ProgramApi, DestroyedShader_IsDetachedEverywhereAndWhatIsLinkedRuns) {
    RenderFixture scene;
    IKLShader* const shader =
        scene.MakeShader(IKLShader::kType_Frame, "void main() { accumulate(0, 3.0); }");
    IKLProgram* const first = scene.Link({shader});
    IKLProgram* const second = scene.Link({shader});
    scene.pContext->SetFramePrimitive(scene.MakePrimitive(first));
    scene.pContext->DestroyShader(shader);
    EXPECT_EQ(3.0f, scene.Render(2, 2).At(0, 0));
    EXPECT_FALSE(first->DetachShader(shader));
    EXPECT_FALSE(second->DetachShader(shader));
    Result result;
    EXPECT_FALSE(first->Link(&result));
    EXPECT_EQ(1u, result.GetCount());
}

TEST(ProgramApi, Relink_ReplacesWhatRuns) {
    RenderFixture scene;
    IKLShader* const shader =
        scene.MakeShader(IKLShader::kType_Frame, "void main() { accumulate(0, 1.0); }");
    IKLProgram* const program = scene.Link({shader});
    scene.pContext->SetFramePrimitive(scene.MakePrimitive(program));
    EXPECT_EQ(1.0f, scene.Render(1, 1).At(0, 0));
    EXPECT_TRUE(shader->SetString("void main() { accumulate(0, 2.0); }", nullptr));
    EXPECT_EQ(1.0f, scene.Render(1, 1).At(0, 0)) << "a new text waits for the link";
    EXPECT_TRUE(program->Link(nullptr));
    EXPECT_EQ(2.0f, scene.Render(1, 1).At(0, 0));
}

TEST(ProgramApi, Relink_KeepsValuesOfTheSameNameAndType) {
    RenderFixture scene;
    IKLShader* const shader = scene.MakeShader(
        IKLShader::kType_Frame,
        "uniform float a; uniform float b; void main() { accumulate(0, vec3(a, b, 0.0)); }");
    IKLProgram* const program = scene.Link({shader});
    IPrimitive* const frame = scene.MakePrimitive(program);
    scene.pContext->SetFramePrimitive(frame);
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "a", 1.0f));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "b", 2.0f));
    EXPECT_TRUE(shader->SetString("uniform int a; uniform float c; uniform float b;"
                                  "void main() { accumulate(0, vec3(float(a), b, c)); }",
                                  nullptr));
    EXPECT_TRUE(program->Link(nullptr));
    const Picture picture = scene.Render(1, 1);
    EXPECT_EQ(0.0f, picture.At(0, 0, 0));
    EXPECT_EQ(2.0f, picture.At(0, 0, 1));
    EXPECT_EQ(0.0f, picture.At(0, 0, 2));
}

TEST(ProgramApi, FailedCompile_LeavesOneMessageAndNoCode) {
    RenderFixture scene;
    IKLShader* const shader = scene.MakeShader(IKLShader::kType_Frame, "void main() {}");
    Result result;
    EXPECT_FALSE(shader->SetString("void main() {\n  foo;\n  bar;\n}", &result));
    ASSERT_EQ(1u, result.GetCount());
    EXPECT_EQ(0u, result.GetLast().find("String 0 Line 2: error: ")) << result.GetLast();
    EXPECT_NE(std::string::npos, result.GetLast().find("\nString 0 Line 3: error: "));
    EXPECT_FALSE(shader->SetString("also bad", nullptr));
    IKLProgram* const program = scene.pContext->CreateProgram();
    EXPECT_TRUE(program->AddShader(shader));
    EXPECT_FALSE(program->Link(nullptr));
}

TEST(ProgramApi, Texts_ShareGlobalsAndFunctions) {
    RenderFixture scene;
    IPrimitive* const frame =
        scene.MakePrimitive(scene.Link({scene.MakeShader(IKLShader::kType_Frame, R"(
            uniform float scale;
            float shared;
            void prepare();
            float nowhere(float x);
            float nowhere(float x);
            void main() { prepare(); accumulate(0, shared * scale); })"),
                                        scene.MakeShader(IKLShader::kType_Frame, R"(
            uniform float scale;
            float shared;
            void prepare() { shared = scale + 1.0; })")}));
    scene.pContext->SetFramePrimitive(frame);
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "scale", 3.0f));
    EXPECT_EQ(12.0f, scene.Render(1, 1).At(0, 0));
}

class LinkListener {
public:
    bool OnLink(IKLProgram* program) {
        programs.push_back(program);
        return false;
    }
    std::vector<IKLProgram*> programs;
};

TEST(ProgramApi, LinkListeners_RunAfterEveryGoodLink) {
    RenderFixture scene;
    IKLShader* const shader = scene.MakeShader(IKLShader::kType_Ray, kEmptyRay);
    IKLProgram* const program = scene.pContext->CreateProgram();
    LinkListener first;
    LinkListener second;
    program->AddListenerLink(MakeDelegate(&first, &LinkListener::OnLink));
    program->AddListenerLink(MakeDelegate(&second, &LinkListener::OnLink));
    EXPECT_FALSE(program->Link(nullptr));
    EXPECT_TRUE(first.programs.empty());
    EXPECT_TRUE(program->AddShader(shader));
    EXPECT_TRUE(program->Link(nullptr)) << "listeners' answers are not looked at";
    EXPECT_EQ(std::vector<IKLProgram*>{program}, first.programs);
    EXPECT_EQ(std::vector<IKLProgram*>{program}, second.programs);
    program->RemoveListenerLink(MakeDelegate(&first, &LinkListener::OnLink));
    EXPECT_TRUE(program->Link(nullptr));
    EXPECT_EQ(1u, first.programs.size());
    EXPECT_EQ(2u, second.programs.size());
}

TEST(ProgramApi, UseProgram_SpeaksOfTheInnermostBind) {
    RenderFixture scene;
    IKLProgram* const a = scene.Link({scene.MakeShader(IKLShader::kType_Ray, kEmptyRay)});
    IKLProgram* const b = scene.Link({scene.MakeShader(IKLShader::kType_Ray, kEmptyRay)});
    IPrimitive* const outer = scene.pContext->CreatePrimitive();
    IPrimitive* const inner = scene.pContext->CreatePrimitive();
    klUseProgram(a->GetHandle());
    {
        const AutoBindKLPrimitive bindOuter(outer);
        {
            const AutoBindKLPrimitive bindInner(inner);
            klUseProgram(a->GetHandle());
        }
        klUseProgram(b->GetHandle());
    }
    klUseProgram(a->GetHandle());
    EXPECT_EQ(a, inner->GetProgram());
    EXPECT_EQ(b, outer->GetProgram());
    {
        const AutoBindKLPrimitive bind(outer);
        klUseProgram(987654321);
        EXPECT_EQ(b, outer->GetProgram()) << "an unknown handle changes nothing";
        klUseProgram(0);
        EXPECT_EQ(nullptr, outer->GetProgram());
    }
}

TEST(ProgramApi, DestroyedProgram_LeavesItsPrimitivesWithout) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame("uniform float x; void main() { accumulate(0, x); }");
    IKLProgram* const program = frame->GetProgram();
    const int location = program->GetUniformLocation("x");
    EXPECT_TRUE(frame->SetUniform("x", location, 1.0f));
    scene.pContext->DestroyProgram(program);
    EXPECT_EQ(nullptr, frame->GetProgram());
    EXPECT_FALSE(frame->SetUniform("x", location, 1.0f));
    EXPECT_NE("", scene.RenderMessages(1, 1)) << "there is no frame program";
}

TEST(ProgramApi, Names_AreKept) {
    RenderFixture scene;
    IKLShader* const shader = scene.pContext->CreateShader(IKLShader::kType_PrefixRay);
    shader->SetName("a shader");
    EXPECT_EQ("a shader", shader->GetName());
    EXPECT_EQ(IKLShader::kType_PrefixRay, shader->GetType());
    IKLProgram* const program = scene.pContext->CreateProgram();
    program->SetName("a program");
    EXPECT_EQ("a program", program->GetName());
    IPrimitive* const primitive = scene.pContext->CreatePrimitive();
    primitive->SetName("a primitive");
    EXPECT_EQ("a primitive", primitive->GetName());
}

} // namespace
} // namespace Tolen::OpenKL
