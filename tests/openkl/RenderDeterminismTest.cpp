#include "RenderFixture.h"

#include <cstring>

namespace Tolen::OpenKL {
namespace {

/// Everything that could depend on an order: random paths among objects of several programs, that
/// touch and share edges, in a room of light.
void FillScene(RenderFixture& scene) {
    scene.MakeFrame(R"(
        rayattribute vec3 weight;
        void main() {
            vec2 p = kl_PixelCoord / kl_Resolution * 4.0 - 2.0;
            weight = vec3(1.0);
            spawnRay(vec3(0.0, 0.0, 5.0), vec3(p, -5.0));
        })");
    const std::string bounce = R"(
        rayattribute vec3 weight;
        varying vec3 Normal;
        void main() {
            accumulate(0, weight * 0.1);
            if (kl_RayDepth > 6 || random() < 0.1) return;
            vec3 n = kl_HitFront ? Normal : -Normal;
            vec2 r = random2();
            float phi = 6.2831853 * r.x;
            float z = 2.0 * r.y - 1.0;
            float s = sqrt(1.0 - z * z);
            weight *= ALBEDO;
            spawnRay(kl_HitPosition, n + vec3(s * cos(phi), s * sin(phi), z) * 0.999);
            if (kl_RayDepth < 2) spawnRay(kl_HitPosition, reflect(kl_RayDirection, n));
        }
        void setup() { for (int i = 0; i < 8; i++) kl_OutputRayCount[i] = 2; })";
    const char* const albedos[] = {"vec3(0.9, 0.5, 0.3)", "vec3(0.2, 0.8, 0.9)", "vec3(0.7)"};
    for (int i = 0; i < 9; ++i) {
        std::string text = bounce;
        text.replace(text.find("ALBEDO"), 6, albedos[i % 3]);
        IPrimitive* const object = scene.MakeObject(
            i % 2 == 0 ? MakeSphere(0.5f, 24, 12) : MakeBox({1.0f, 1.0f, 1.0f}), text);
        const int row = i / 3;
        Matrix44f matrix;
        // Boxes touch their neighbours' faces.
        matrix(0, 3) = static_cast<float>(i % 3) - 1.0f;
        matrix(1, 3) = static_cast<float>(row) - 1.0f;
        EXPECT_TRUE(object->SetTransform(matrix));
    }
    scene.MakeMiss("rayattribute vec3 weight;"
                   "void main() { accumulate(0, weight * (kl_RayDirection * 0.5 + 0.5)); }");
}

std::vector<float> Render(int threads, InstructionChoice instructions = kInstructions_Best) {
    ContextOptions options;
    options.threads = threads;
    options.instructions = instructions;
    RenderFixture scene(options);
    FillScene(scene);
    return scene.Render(70, 50, 5).rgba;
}

bool AreSame(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

TEST(RenderDeterminism, AnyNumberOfThreads_GivesTheSameBits) {
    const std::vector<float> one = Render(1);
    double sum = 0.0;
    for (const float value : one) {
        sum += double{value};
    }
    EXPECT_GT(sum, 100.0);
    EXPECT_TRUE(AreSame(one, Render(2)));
    EXPECT_TRUE(AreSame(one, Render(4)));
    EXPECT_TRUE(AreSame(one, Render(0)));
}

TEST(RenderDeterminism, EveryInstructionSet_GivesTheSameBits) {
    const std::vector<float> best = Render(2);
    for (const InstructionChoice choice :
         {kInstructions_Baseline, kInstructions_Avx2, kInstructions_Avx512}) {
        ContextOptions options;
        options.instructions = choice;
        const ContextPointer context(CreateContext(options, nullptr));
        if (context != nullptr) {
            EXPECT_TRUE(AreSame(best, Render(2, choice))) << choice;
        }
    }
}

TEST(RenderDeterminism, SampleRanges_AddUpExactly) {
    RenderFixture scene;
    FillScene(scene);
    constexpr int samples = 20;
    const auto render = [&](IFramebuffer* framebuffer, int first, int count) {
        RenderSettings settings;
        settings.firstSample = first;
        settings.samples = count;
        settings.sampleCount = samples;
        EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    };
    IFramebuffer* const whole = scene.MakeFramebuffer(45, 37);
    render(whole, 0, samples);

    IFramebuffer* const continued = scene.MakeFramebuffer(45, 37);
    render(continued, 0, 7);
    render(continued, 7, 1);
    render(continued, 8, 12);
    EXPECT_TRUE(AreSame(RenderFixture::Read(*whole).rgba, RenderFixture::Read(*continued).rgba));

    IFramebuffer* const first = scene.MakeFramebuffer(45, 37);
    IFramebuffer* const second = scene.MakeFramebuffer(45, 37);
    render(first, 11, 9);
    render(second, 0, 11);
    EXPECT_FALSE(AreSame(RenderFixture::Read(*whole).rgba, RenderFixture::Read(*first).rgba));
    EXPECT_TRUE(first->Add(*second));
    EXPECT_TRUE(AreSame(RenderFixture::Read(*whole).rgba, RenderFixture::Read(*first).rgba));
    EXPECT_EQ(samples, first->GetSampleCount(44, 36));
}

TEST(RenderDeterminism, TwoRenders_OfOneContext_GiveTheSameBits) {
    RenderFixture scene;
    FillScene(scene);
    EXPECT_TRUE(AreSame(scene.Render(40, 40, 2).rgba, scene.Render(40, 40, 2).rgba));
}

TEST(RenderDeterminism, Tiles_OfTheSize_DoNotShow) {
    // Every pixel of a picture has the value that it has when it is rendered alone.
    RenderFixture scene;
    scene.MakeFrame("void main() { accumulate(0, vec3(random2(), kl_PixelCoord.x)); }");
    IFramebuffer* const whole = scene.MakeFramebuffer(70, 40);
    IFramebuffer* const pieces = scene.MakeFramebuffer(70, 40);
    RenderSettings settings;
    settings.samples = 3;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(whole, settings, nullptr));
    for (int y = 0; y < 40; y += 13) {
        for (int x = 0; x < 70; x += 19) {
            settings.x = x;
            settings.y = y;
            settings.width = 19;
            settings.height = 13;
            EXPECT_EQ(kRender_Finished, scene.pContext->Render(pieces, settings, nullptr));
        }
    }
    EXPECT_TRUE(AreSame(RenderFixture::Read(*whole).rgba, RenderFixture::Read(*pieces).rgba));
}

class Progress {
public:
    explicit Progress(int cancelAt) : _cancelAt(cancelAt) {}

    bool OnProgress(const RenderProgress& progress) {
        EXPECT_EQ(last.tilesDone + 1, progress.tilesDone);
        last = progress;
        return progress.tilesDone != _cancelAt;
    }
    RenderProgress last;

private:
    int _cancelAt;
};

TEST(RenderDeterminism, Progress_CountsTilesAndCanCancel) {
    ContextOptions options;
    options.threads = 2;
    RenderFixture scene(options);
    scene.MakeFrame("void main() { accumulate(0, 1.0); }");
    RenderSettings settings;
    settings.samples = 40;
    Progress all(-1);
    settings.progress = MakeDelegate(&all, &Progress::OnProgress);
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(100, 40);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    EXPECT_EQ(all.last.tiles, all.last.tilesDone);

    framebuffer->Clear();
    Progress some(3);
    settings.progress = MakeDelegate(&some, &Progress::OnProgress);
    EXPECT_EQ(kRender_Cancelled, scene.pContext->Render(framebuffer, settings, nullptr));
    EXPECT_LT(some.last.tilesDone, some.last.tiles);
    const Picture picture = RenderFixture::Read(*framebuffer);
    std::int64_t counted = 0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 100; ++x) {
            counted += framebuffer->GetSampleCount(x, y);
            EXPECT_EQ(framebuffer->GetSampleCount(x, y) != 0 ? 1.0f : 0.0f, picture.At(x, y));
        }
    }
    EXPECT_GT(counted, 0);
    EXPECT_LT(counted, 100 * 40 * 40);

    // Cancelling between renders does nothing to the next one.
    scene.pContext->Cancel();
    settings.progress = {};
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
}

} // namespace
} // namespace Tolen::OpenKL
