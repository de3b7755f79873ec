#include "RenderFixture.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {
namespace {

constexpr const char* kWhite = "void main() { accumulate(0, 1.0); }";

Statistics Render(RenderFixture& scene, int width, int height, int samples = 1) {
    scene.pContext->ResetStatistics();
    scene.RenderMessages(width, height, samples);
    return scene.pContext->GetStatistics();
}

TEST(Statistics, BatchesOfFrames_FillWithTheSizeOfThePicture) {
    RenderFixture scene;
    scene.MakeFrame(kWhite);
    const Statistics whole = Render(scene, 64, 32, 3);
    EXPECT_EQ(64 * 32 * 3, whole.frameInvocations);
    EXPECT_EQ(4 * 2 * 3, whole.frameBatches);
    EXPECT_EQ(1.0, GetBatchFill(whole.frameInvocations, whole.frameBatches));
    const Statistics part = Render(scene, 8, 4);
    EXPECT_EQ(1, part.frameBatches);
    EXPECT_EQ(0.125, GetBatchFill(part.frameInvocations, part.frameBatches));
    EXPECT_EQ(0, part.rayBatches);
    EXPECT_EQ(0.0, GetBatchFill(part.rayInvocations, part.rayBatches));
}

TEST(Statistics, BatchesOfEachStage_AreCountedApart) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    scene.MakePrefix("void main() {}");
    scene.MakeObject(MakePlane(1.0f, 4.0f), kWhite);
    scene.MakeMiss(kWhite);
    const Statistics statistics = Render(scene, 32, 16);
    EXPECT_EQ(2, statistics.frameBatches);
    // All rays go through the prefix together, then half of them to each primitive.
    EXPECT_EQ(512, statistics.prefixInvocations);
    EXPECT_EQ(2, statistics.prefixBatches);
    EXPECT_EQ(512, statistics.rayInvocations);
    EXPECT_EQ(2, statistics.rayBatches);
    EXPECT_EQ(256, statistics.hits);
    EXPECT_EQ(4, statistics.vertexInvocations);
    EXPECT_EQ(1, statistics.vertexBatches);
}

TEST(Statistics, VertexBatches_AreAsManyAsTheVerticesNeed) {
    RenderFixture scene;
    const Mesh sphere = MakeSphere(1.0f, 32, 16);
    IPrimitive* const object = scene.MakeObject(sphere, kWhite);
    scene.pContext->Prepare(nullptr);
    const Statistics statistics = scene.pContext->GetStatistics();
    const auto vertices = static_cast<std::int64_t>(object->GetVertexCount());
    EXPECT_GT(vertices, 256);
    EXPECT_EQ(vertices, statistics.vertexInvocations);
    EXPECT_EQ((vertices + 255) / 256, statistics.vertexBatches);
}

TEST(Statistics, UniformWrites_CountWhatIsTaken) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform float one;
        uniform vec3 many[3];
        uniform sampler2D image;
        uniformblock Block { float values[2]; };
        void main() { accumulate(0, one * many[1].x * Block.values[0]); })");
    const auto count = [&] { return scene.pContext->GetStatistics().uniformWrites; };
    const IKLProgram& program = *frame->GetProgram();
    EXPECT_EQ(0, count());
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "one", 1.0f));
    EXPECT_EQ(1, count());
    const Vector3f values[3] = {};
    EXPECT_TRUE(frame->SetUniformArray("many", program.GetUniformLocation("many"), 3, values));
    EXPECT_EQ(2, count());
    EXPECT_TRUE(frame->SetUniformTexture("image", program.GetUniformLocation("image"), nullptr));
    EXPECT_TRUE(frame->SetUniformBlock("Block", program.GetUniformBlockLocation("Block"), nullptr));
    EXPECT_EQ(4, count());
    EXPECT_FALSE(RenderFixture::SetUniform(*frame, "one", Vector3f()));
    EXPECT_FALSE(frame->SetUniform("none", -1, 1.0f));
    EXPECT_EQ(4, count());
}

TEST(Statistics, CompilingAndLinking_TakeTime) {
    RenderFixture scene;
    EXPECT_EQ(0.0, scene.pContext->GetStatistics().compileSeconds);
    IKLShader* const shader = scene.MakeShader(IKLShader::kType_Frame, kWhite);
    const Statistics compiled = scene.pContext->GetStatistics();
    EXPECT_GT(compiled.compileSeconds, 0.0);
    EXPECT_EQ(0.0, compiled.linkSeconds);
    scene.Link({shader});
    const Statistics linked = scene.pContext->GetStatistics();
    EXPECT_EQ(compiled.compileSeconds, linked.compileSeconds);
    EXPECT_GT(linked.linkSeconds, 0.0);
}

TEST(Statistics, TimesOfThreads_LieWithinTheRender) {
    for (const int threads : {1, 2}) {
        ContextOptions options;
        options.threads = threads;
        RenderFixture scene(options);
        scene.MakeFrame(RenderFixture::perspectiveCamera);
        scene.MakeObject(MakePlane(4.0f, 4.0f), R"(void main() {
            float sum = 0.0;
            for (int i = 0; i < 4; i++)
                if (!occluded(kl_HitPosition, vec3(random2(), 1.0), 10.0)) sum += 0.25;
            accumulate(0, sum); })");
        const auto begin = std::chrono::steady_clock::now();
        const Statistics statistics = Render(scene, 128, 128, 4);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
        EXPECT_EQ(4 * 4 * 128 * 128, statistics.occlusionRays);
        EXPECT_GT(statistics.intersectSeconds, 0.0);
        EXPECT_GT(statistics.shadeSeconds, 0.0);
        EXPECT_LE(statistics.renderSeconds, elapsed.count());
        EXPECT_LE(statistics.intersectSeconds + statistics.shadeSeconds,
                  statistics.renderSeconds * threads * 1.0001);
    }
}

TEST(Statistics, RaysThatProgramsAskAbout_AreNotTimedAsShading) {
    ContextOptions options;
    options.threads = 1;
    RenderFixture scene(options);
    scene.MakeFrame(R"(void main() {
        for (int i = 0; i < 200; i++)
            if (occluded(vec3(kl_PixelCoord, 1.0), vec3(0.0, 0.0, -1.0), 10.0)) return;
        accumulate(0, 1.0); })");
    const Statistics statistics = Render(scene, 32, 32);
    EXPECT_EQ(200 * 32 * 32, statistics.occlusionRays);
    EXPECT_GT(statistics.intersectSeconds, 0.0);
    EXPECT_GT(statistics.shadeSeconds, 0.0);
    EXPECT_LE(statistics.intersectSeconds + statistics.shadeSeconds, statistics.renderSeconds);
}

TEST(Statistics, Counts_AreTheSameForAnyNumberOfThreads) {
    const auto count = [](int threads) {
        ContextOptions options;
        options.threads = threads;
        RenderFixture scene(options);
        scene.MakeFrame(RenderFixture::perspectiveCamera);
        scene.MakeObject(MakeSphere(1.0f, 16, 8), kWhite);
        Statistics statistics = Render(scene, 100, 70, 20);
        return std::vector<std::int64_t>{statistics.frameInvocations, statistics.frameBatches,
                                         statistics.rayInvocations,   statistics.rayBatches,
                                         statistics.cameraRays,       statistics.hits};
    };
    EXPECT_EQ(count(1), count(2));
}

/// Keeps what it is told of a render.
struct ProgressKeeper {
    bool OnProgress(const RenderProgress& progress) {
        EXPECT_GE(progress.statistics.frameInvocations, last.statistics.frameInvocations);
        EXPECT_GT(progress.statistics.frameBatches, last.statistics.frameBatches);
        last = progress;
        return last.tilesDone != cancelAt;
    }
    RenderProgress last;
    std::int64_t cancelAt = -1;
};

TEST(Statistics, Progress_TellsWhatTheRenderHasCounted) {
    RenderFixture scene;
    scene.MakeFrame(R"(void main() {
        spawnRay(vec3(kl_PixelCoord, 0.0), vec3(0.0, 0.0, 1.0)); accumulate(0, 0.0 / 0.0); })");
    Render(scene, 8, 8);
    scene.pContext->ResetStatistics();
    ProgressKeeper keeper;
    RenderSettings settings;
    settings.samples = 20;
    settings.progress = MakeDelegate(&keeper, &ProgressKeeper::OnProgress);
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(96, 64);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    const Statistics all = scene.pContext->GetStatistics();
    EXPECT_EQ(20 * 96 * 64, all.cameraRays);
    EXPECT_EQ(20 * 96 * 64, all.valuesReplaced);
    EXPECT_EQ(all.cameraRays, keeper.last.statistics.cameraRays);
    EXPECT_EQ(all.valuesReplaced, keeper.last.statistics.valuesReplaced);
    EXPECT_EQ(all.setupInvocations, keeper.last.statistics.setupInvocations);
    EXPECT_EQ(all.shadeSeconds, keeper.last.statistics.shadeSeconds);
    EXPECT_GT(keeper.last.statistics.renderSeconds, 0.0);
    EXPECT_LE(keeper.last.statistics.renderSeconds, all.renderSeconds);

    // Cancelled, the finished tiles count; the next render tells of itself alone.
    keeper = ProgressKeeper();
    keeper.cancelAt = 2;
    EXPECT_EQ(kRender_Cancelled, scene.pContext->Render(framebuffer, settings, nullptr));
    EXPECT_GE(keeper.last.statistics.cameraRays, 2 * 16 * 32 * 32);
    EXPECT_LT(keeper.last.statistics.cameraRays, all.cameraRays);
    EXPECT_EQ(all.cameraRays + keeper.last.statistics.cameraRays,
              scene.pContext->GetStatistics().cameraRays);
}

} // namespace
} // namespace Tolen::OpenKL
