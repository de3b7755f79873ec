#include "RenderFixture.h"

#include <limits>

namespace Tolen::OpenKL {
namespace {

TEST(RenderLimits, NumbersThatAreNone_NeverReachAFramebuffer) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform float zero;
        void main() {
            accumulate(0, vec4(zero / zero, 1.0 / zero, -1.0 / zero, 0.5));
            accumulate(0, sqrt(zero - 1.0));
            accumulate(0, vec3(1.0, 2.0, 3.0));
        })");
    frame->SetName("the frame");
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(3, 2);
    Result result;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), &result));
    const Picture picture = RenderFixture::Read(*framebuffer);
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(static_cast<float>(channel) + 1.0f, picture.At(2, 1, channel));
    }
    EXPECT_EQ(0.5f, picture.At(2, 1, 3));
    EXPECT_EQ(24, scene.pContext->GetStatistics().valuesReplaced);
    ASSERT_EQ(1u, result.GetCount());
    EXPECT_EQ("program 'test', primitive 'the frame': 24 accumulated components were NaN or "
              "infinite and count as 0",
              result.GetLast());
}

TEST(RenderLimits, Reports_ComeOnceForEachLink) {
    RenderFixture scene;
    IPrimitive* const frame =
        scene.MakeFrame("uniform float zero; void main() { accumulate(0, 1.0 / zero); }");
    EXPECT_NE("", scene.RenderMessages(2, 2));
    EXPECT_EQ("", scene.RenderMessages(2, 2));
    EXPECT_EQ(8, scene.pContext->GetStatistics().valuesReplaced);
    EXPECT_TRUE(frame->GetProgram()->Link(nullptr));
    EXPECT_NE("", scene.RenderMessages(2, 2));
    EXPECT_EQ("", scene.RenderMessages(2, 2));
    scene.pContext->ResetStatistics();
    EXPECT_NE("", scene.RenderMessages(2, 2));
    EXPECT_EQ(4, scene.pContext->GetStatistics().valuesReplaced);
}

TEST(RenderLimits, Depth_EndsThePathAtTheLimit) {
    for (const int depth : {0, 1, 5}) {
        ContextOptions options;
        options.limits.depth = depth;
        RenderFixture scene(options);
        scene.MakeFrame("void main() { spawnRay(vec3(0.0), vec3(0.0, 0.0, 1.0)); }");
        IPrimitive* const mirrors = scene.MakeMiss(
            "void main() { accumulate(0, 1.0); spawnRay(vec3(0.0), vec3(0.0, 0.0, 1.0)); }");
        mirrors->SetName("mirrors");
        IFramebuffer* const framebuffer = scene.MakeFramebuffer(2, 2);
        Result result;
        EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), &result));
        EXPECT_EQ(static_cast<float>(depth) + 1.0f, RenderFixture::Read(*framebuffer).At(0, 0));
        EXPECT_EQ(4, scene.pContext->GetStatistics().raysDroppedByDepth);
        EXPECT_EQ("program 'test', primitive 'mirrors': 4 rays dropped at the limit of depth " +
                      std::to_string(depth),
                  result.GetLast());
    }
}

TEST(RenderLimits, OutputRayCount_LimitsWhatAnInvocationSpawns) {
    RenderFixture scene;
    scene.MakeFrame(R"(
        void setup() { kl_OutputRayCount = 3; }
        void main() { for (int i = 0; i < 5; i++) spawnRay(vec3(0.0), vec3(0.0, 0.0, 1.0), 1.0, i); })");
    // By the class of the incoming ray.
    scene.MakeMiss(R"(
        void setup() { kl_OutputRayCount[1] = 0; kl_OutputRayCount[2] = 2; }
        void main() {
            accumulate(0, 1.0);
            if (kl_RayDepth == 0)
                for (int i = 0; i < 4; i++) spawnRay(vec3(0.0), vec3(0.0, 0.0, 1.0));
        })");
    const std::string messages = scene.RenderMessages(1, 1);
    // The frame spawns 3 of 5; those spawn 1, 0 and 2 of 4.
    const Statistics statistics = scene.pContext->GetStatistics();
    EXPECT_EQ(3, statistics.cameraRays);
    EXPECT_EQ(3, statistics.secondaryRays);
    EXPECT_EQ(2 + 3 + 4 + 2, statistics.raysDroppedByCount);
    EXPECT_NE(std::string::npos, messages.find(": 2 rays dropped that were more than"));
    EXPECT_NE(std::string::npos, messages.find(": 9 rays dropped that were more than"));
}

TEST(RenderLimits, LoopSteps_StopTheInvocationAndNameTheLine) {
    ContextOptions options;
    options.limits.loopSteps = 1000;
    RenderFixture scene(options);
    IKLShader* const shader = scene.MakeShader(IKLShader::kType_Frame, R"(void main() {
        accumulate(0, 1.0);
        int i = 0;
        while (kl_PixelCoord.x < 1.0) {
            i++;
        }
        accumulate(0, 1.0);
    })");
    shader->SetName("endless");
    scene.pContext->SetFramePrimitive(scene.MakePrimitive(scene.Link({shader})));
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(2, 1);
    Result result;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), &result));
    EXPECT_EQ(1.0f, RenderFixture::Read(*framebuffer).At(0, 0));
    EXPECT_EQ(2.0f, RenderFixture::Read(*framebuffer).At(1, 0));
    EXPECT_EQ(1, scene.pContext->GetStatistics().loopsStopped);
    EXPECT_EQ("program 'test', primitive '', shader 'endless', line 4: 1 invocations stopped at "
              "the limit of 1000 loop steps",
              result.GetLast());
}

TEST(RenderLimits, LoopSteps_OfSetupAndVertexShaders_StopThemToo) {
    ContextOptions options;
    options.limits.loopSteps = 1000;
    RenderFixture scene(options);
    scene.MakeFrame(R"(
        uniform int zero;
        void setup() { while (zero == 0) {} }
        void main() { accumulate(0, 1.0); })");
    IPrimitive* const object = scene.MakeObject(MakePlane(1.0f, 1.0f), "void main() {}", R"(
        attribute vec3 a_Position;
        uniform int zero;
        void main() { kl_Position = vec4(a_Position, 1.0); while (zero == 0) {} })");
    object->SetName("plane");
    const std::string messages = scene.RenderMessages(1, 1);
    EXPECT_NE(std::string::npos,
              messages.find("primitive 'plane': the vertex shader reached the limit of 1000 loop "
                            "steps in 4 invocations"))
        << messages;
    EXPECT_NE(std::string::npos, messages.find("1 invocations stopped")) << messages;
    EXPECT_EQ(5, scene.pContext->GetStatistics().loopsStopped);
}

TEST(RenderLimits, RaysInFlight_AreHeldToTheLimit) {
    ContextOptions options;
    options.limits.raysInFlight = 64;
    RenderFixture scene(options);
    scene.MakeFrame(R"(
        void setup() { kl_OutputRayCount = 1000; }
        void main() { for (int i = 0; i < 100; i++) spawnRay(vec3(0.0), vec3(0.0, 0.0, 1.0)); })");
    scene.MakeMiss("void main() { accumulate(0, 1.0); }");
    const std::string messages = scene.RenderMessages(1, 1);
    EXPECT_EQ(64, scene.pContext->GetStatistics().cameraRays);
    EXPECT_EQ(36, scene.pContext->GetStatistics().raysDroppedByMemory);
    EXPECT_NE(std::string::npos,
              messages.find(": 36 rays dropped at the limit of 64 rays in flight"))
        << messages;
}

TEST(RenderLimits, AccumulatesOfABatch_AreHeldToTheLimit) {
    RenderFixture scene;
    scene.MakeFrame("void main() { for (int i = 0; i < 20000; i++) accumulate(15, 1.0); }");
    const std::string messages = scene.RenderMessages(16, 16);
    EXPECT_EQ(256 * 20000 - 4194304, scene.pContext->GetStatistics().accumulatesDropped);
    EXPECT_NE(std::string::npos, messages.find("dropped at the limit of 4194304 in one batch"))
        << messages;
}

TEST(RenderLimits, RaysThatAreNone_AreDroppedAndReported) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform float zero;
        void setup() { kl_OutputRayCount = 9; }
        void main() {
            vec3 up = vec3(0.0, 0.0, 1.0);
            float nan = zero / zero;
            float infinity = 1.0 / zero;
            spawnRay(vec3(nan, 0.0, 0.0), up);
            spawnRay(vec3(infinity, 0.0, 0.0), up);
            spawnRay(vec3(0.0), vec3(0.0));
            spawnRay(vec3(0.0), vec3(nan));
            spawnRay(vec3(0.0), vec3(infinity, 0.0, 0.0));
            spawnRay(vec3(0.0), up, nan);
            accumulate(0, occluded(vec3(nan), up, 1.0) ? 1.0 : 0.0);
            accumulate(0, traceDistance(vec3(0.0), vec3(0.0), 1.0));
            spawnRay(vec3(0.0), up, infinity, -5);
            spawnRay(vec3(0.0), up, -1.0, 100);
            spawnRay(vec3(0.0), vec3(0.0, 0.0, 1e-20), 1.0);
        })");
    EXPECT_NE(nullptr, frame);
    scene.MakeMiss("void main() { accumulate(0, float(kl_RayClass) + 1.0); }");
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1);
    Result result;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), &result));
    // Classes are held to 0 and 7.
    EXPECT_EQ(-1.0f + 1.0f + 8.0f + 1.0f, RenderFixture::Read(*framebuffer).At(0, 0));
    EXPECT_EQ(8, scene.pContext->GetStatistics().raysDroppedAsInvalid);
    EXPECT_EQ(3, scene.pContext->GetStatistics().cameraRays);
    EXPECT_EQ(1u, result.GetCount());
}

TEST(RenderLimits, Triangles_WithoutUsableVertices_AreLeftOutAndReported) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(0.1, 0.1, 3.0), vec3(0.0, 0.0, -1.0)); }");
    IPrimitive* const object = scene.MakeObject(Mesh(), "void main() { accumulate(0, 1.0); }");
    object->SetName("shape");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float positions[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, nan, 0, 0};
    const std::uint32_t indices[] = {0, 1, 2, 0, 1, 3, 0, 1, 4, 0, 1, 0xffffffffu, 0, 0, 1};
    EXPECT_TRUE(object->SetAttribute("a_Position", 3, positions, 4));
    EXPECT_TRUE(object->SetTriangles(indices, 5));
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1);
    Result result;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), &result));
    EXPECT_EQ(1.0f, RenderFixture::Read(*framebuffer).At(0, 0));
    ASSERT_EQ(1u, result.GetCount());
    EXPECT_EQ("primitive 'shape': 3 triangles left out, of which a vertex is missing or not finite",
              result.GetLast());
}

TEST(RenderLimits, OddSettings_FailWithAMessage) {
    RenderFixture scene;
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(4, 4);
    Result result;
    EXPECT_EQ(kRender_Failed, scene.pContext->Render(framebuffer, RenderSettings(), &result));
    EXPECT_EQ(1u, result.GetCount()) << "there is no frame primitive";
    scene.MakeFrame("void main() { accumulate(0, 1.0); }");
    EXPECT_EQ(kRender_Failed, scene.pContext->Render(nullptr, RenderSettings(), &result));
    EXPECT_EQ(2u, result.GetCount());
    struct Case {
        const char* name;
        void (*change)(RenderSettings&);
    };
    const Case cases[] = {
        {"first sample", [](RenderSettings& settings) { settings.firstSample = -1; }},
        {"samples", [](RenderSettings& settings) { settings.samples = -1; }},
        {"all samples", [](RenderSettings& settings) { settings.sampleCount = -1; }},
        {"width", [](RenderSettings& settings) { settings.width = -1; }},
        {"height", [](RenderSettings& settings) { settings.height = -1; }},
        {"sum",
         [](RenderSettings& settings) { settings.firstSample = std::numeric_limits<int>::max(); }},
    };
    for (const Case& test : cases) {
        RenderSettings settings;
        test.change(settings);
        EXPECT_EQ(kRender_Failed, scene.pContext->Render(framebuffer, settings, nullptr))
            << test.name;
    }
    // Nothing to do is no failure.
    RenderSettings settings;
    settings.samples = 0;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    settings.samples = 1;
    settings.x = 1000;
    settings.y = std::numeric_limits<int>::min();
    settings.width = std::numeric_limits<int>::max();
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    EXPECT_EQ(0, framebuffer->GetSampleCount(0, 0));
}

TEST(RenderLimits, RoleWithAProgramOfAnotherStage_IsNoFrame) {
    RenderFixture scene;
    scene.MakeMiss("void main() { accumulate(0, 1.0); }");
    scene.pContext->SetFramePrimitive(scene.pContext->GetMissPrimitive());
    EXPECT_NE("", scene.RenderMessages(1, 1));
    // A frame program on a surface stops rays and shades none.
    scene.MakeFrame(RenderFixture::parallelCamera);
    IPrimitive* const surface =
        scene.MakePrimitive(scene.pContext->GetFramePrimitive()->GetProgram());
    EXPECT_TRUE(SetMesh(*surface, MakePlane(4.0f, 4.0f)));
    scene.pContext->SetPrefixPrimitive(surface);
    EXPECT_EQ(0.0f, scene.Render(2, 2).At(0, 0));
    EXPECT_EQ(4, scene.pContext->GetStatistics().hits);
}

TEST(RenderLimits, ObjectsDestroyedBetweenRenders_AreGone) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    std::vector<IPrimitive*> planes;
    for (int i = 0; i < 4; ++i) {
        planes.push_back(scene.MakeObject(MakePlane(4.0f, 4.0f),
                                          "void main() { accumulate(0, kl_HitPosition.z); }"));
        Matrix44f matrix;
        matrix(2, 3) = static_cast<float>(i);
        EXPECT_TRUE(planes.back()->SetTransform(matrix));
    }
    EXPECT_EQ(3.0f, scene.Render(1, 1).At(0, 0));
    scene.pContext->DestroyPrimitive(planes[3]);
    scene.pContext->DestroyPrimitive(planes[0]);
    EXPECT_EQ(2.0f, scene.Render(1, 1).At(0, 0));
    planes[2]->SetTriangles(nullptr, 0);
    EXPECT_EQ(1.0f, scene.Render(1, 1).At(0, 0));
    scene.pContext->DestroyPrimitive(planes[2]);
    scene.pContext->DestroyPrimitive(planes[1]);
    EXPECT_EQ(0.0f, scene.Render(1, 1).At(0, 0));
    EXPECT_TRUE(scene.pContext->Prepare(nullptr));
}

TEST(RenderLimits, ManyPrimitivesAndPrograms_RenderEachPixelOnce) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    std::vector<IPrimitive*> programs;
    for (int i = 0; i < 256; ++i) {
        IPrimitive* const object =
            i < 5 ? scene.MakeObject(MakePlane(0.125f, 0.125f),
                                     "void main() { accumulate(0, kl_HitPosition); }")
                  : scene.MakePrimitive(programs[static_cast<std::size_t>(i % 5)]->GetProgram());
        programs.push_back(object);
        EXPECT_TRUE(SetMesh(*object, MakePlane(0.125f, 0.125f)));
        const int row = i / 16;
        Matrix44f matrix;
        matrix(0, 3) = (static_cast<float>(i % 16) + 0.5f) / 8.0f - 1.0f;
        matrix(1, 3) = (static_cast<float>(row) + 0.5f) / 8.0f - 1.0f;
        EXPECT_TRUE(object->SetTransform(matrix));
    }
    const Picture picture = scene.Render(64, 64, 1);
    EXPECT_EQ(64 * 64, scene.pContext->GetStatistics().rayInvocations);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            EXPECT_NEAR((static_cast<float>(x) + 0.5f) / 32.0f - 1.0f, picture.At(x, y, 0), 0.016f);
            EXPECT_NEAR((static_cast<float>(y) + 0.5f) / 32.0f - 1.0f, picture.At(x, y, 1), 0.016f);
        }
    }
}

} // namespace
} // namespace Tolen::OpenKL
