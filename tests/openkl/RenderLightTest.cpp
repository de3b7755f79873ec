#include "RenderFixture.h"

#include <cmath>

namespace Tolen::OpenKL {
namespace {

/// A direction around the normal n, distributed by the cosine.
constexpr const char* kCosineDirection = R"(
    vec3 cosineDirection(vec3 n) {
        vec2 r = random2();
        float phi = 6.28318530718 * r.x;
        float radius = sqrt(r.y);
        vec3 u = normalize(cross(abs(n.x) > 0.5 ? vec3(0.0, 1.0, 0.0) : vec3(1.0, 0.0, 0.0), n));
        return u * (radius * cos(phi)) + cross(n, u) * (radius * sin(phi)) + n * sqrt(1.0 - r.y);
    })";

TEST(RenderLight, WhiteFurnace_ShowsNothing) {
    // White matt objects in white light, closed and convex or not, look like the light.
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::perspectiveCamera);
    const std::string white = std::string(kCosineDirection) + R"(
        void main() { spawnRay(kl_HitPosition, cosineDirection(kl_HitNormal)); })";
    scene.MakeObject(MakeSphere(1.0f, 32, 16), white);
    IPrimitive* const box = scene.MakeObject(MakeBox({1.0f, 3.0f, 1.0f}), white);
    Matrix44f matrix;
    matrix(0, 3) = 1.0f;
    EXPECT_TRUE(box->SetTransform(matrix));
    scene.MakeMiss("void main() { accumulate(0, 1.0); }");
    const Picture picture = scene.Render(32, 32, 8);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            EXPECT_EQ(1.0f, picture.At(x, y)) << x << " " << y;
        }
    }
    EXPECT_EQ(0, scene.pContext->GetStatistics().raysDroppedByDepth);
}

TEST(RenderLight, ClosedMesh_LeaksNoRay) {
    // Paths inside a closed room, far from the origin too, never get out.
    for (const float offset : {0.0f, 1000.0f}) {
        RenderFixture scene;
        IPrimitive* const frame = scene.MakeFrame(R"(
            uniform vec3 middle;
            void main() {
                vec2 r = random2();
                spawnRay(middle, vec3(r - 0.5, 0.3));
            })");
        EXPECT_TRUE(RenderFixture::SetUniform(*frame, "middle", Vector3f(offset, offset, offset)));
        IPrimitive* const room =
            scene.MakeObject(MakeSphere(2.0f, 40, 20), std::string(kCosineDirection) + R"(
            void main() {
                accumulate(0, 1.0);
                spawnRay(kl_HitPosition, cosineDirection(kl_HitFront ? kl_HitNormal : -kl_HitNormal));
            })");
        Matrix44f matrix;
        for (int i = 0; i < 3; ++i) {
            matrix(i, 3) = offset;
        }
        EXPECT_TRUE(room->SetTransform(matrix));
        scene.MakeMiss("void main() { accumulate(1, 1.0); }");
        IFramebuffer* const framebuffer = scene.MakeFramebuffer(16, 16, 2);
        RenderSettings settings;
        settings.samples = 4;
        EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
        EXPECT_EQ(0, scene.pContext->GetStatistics().misses) << offset;
        EXPECT_EQ(65.0, RenderFixture::Read(*framebuffer, 0).GetMean()) << offset;
        EXPECT_EQ(1024, scene.pContext->GetStatistics().raysDroppedByDepth) << offset;
    }
}

TEST(RenderLight, RayThatLeavesASurface_NeverMeetsItAgain) {
    // From every hit of a flat and a finely curved convex surface no ray to the outside is stopped.
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::perspectiveCamera);
    const std::string text = std::string(kCosineDirection) + R"(
        void main() {
            vec3 d = cosineDirection(kl_HitNormal);
            accumulate(0, occluded(kl_HitPosition, d, 100.0) ? 1.0 : 0.0);
            accumulate(0, traceDistance(kl_HitPosition, d, 100.0) >= 0.0 ? 1.0 : 0.0);
            vec3 grazing = normalize(d - kl_HitNormal * (dot(d, kl_HitNormal) - 0.001));
            accumulate(0, occluded(kl_HitPosition, grazing, 100.0) ? 1.0 : 0.0);
        })";
    IPrimitive* const object = scene.MakeObject(MakeBox({2.0f, 2.0f, 2.0f}), text);
    for (const float scale : {0.001f, 1.0f, 1.9f}) {
        Matrix44f matrix;
        // Turned, so that no face lies along an axis.
        const float c = 0.8f, s = 0.6f;
        matrix(0, 0) = c * scale;
        matrix(0, 2) = s * scale;
        matrix(1, 1) = scale;
        matrix(2, 0) = -s * scale;
        matrix(2, 2) = c * scale;
        EXPECT_TRUE(object->SetTransform(matrix));
        EXPECT_EQ(0.0, scene.Render(64, 64, 4).GetMean()) << scale;
    }
    EXPECT_GT(scene.pContext->GetStatistics().occlusionRays, 10000);
}

TEST(RenderLight, RayThatLeavesASurface_FromAProgramOfManyVariables_NeverMeetsItAgain) {
    // Programs of many variables run in parts of a batch; each lane keeps its own surface.
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::perspectiveCamera);
    scene.MakeObject(MakeSphere(1.5f, 16, 8), std::string(kCosineDirection) + R"(
        void main() {
            float many[96];
            for (int i = 0; i < 96; i++) many[i] = float(i) * kl_HitPosition.x;
            vec3 d = cosineDirection(kl_HitNormal);
            accumulate(0, occluded(kl_HitPosition, d, 100.0) ? 1.0 : 0.0);
            accumulate(0, traceDistance(kl_HitPosition, d, 100.0) >= 0.0 ? 1.0 : 0.0);
            float sum = 0.0;
            for (int i = 0; i < 96; i++) sum += many[95 - i];
            accumulate(1, sum);
        })");
    EXPECT_EQ(0.0, scene.Render(64, 64, 4).GetMean());
    EXPECT_GT(scene.pContext->GetStatistics().occlusionRays, 4000);
}

TEST(RenderLight, FormFactor_OfParallelSquares_MeetsItsClosedForm) {
    // Two unit squares at distance 1: the share of the light of one that reaches the other.
    RenderFixture scene;
    scene.MakeFrame(R"(void main() {
        spawnRay(vec3(kl_PixelCoord / kl_Resolution - 0.5, 0.5), vec3(0.0, 0.0, -1.0)); })");
    scene.MakeObject(MakePlane(1.0f, 1.0f), std::string(kCosineDirection) + R"(
        void main() { spawnRay(kl_HitPosition, cosineDirection(vec3(0.0, 0.0, 1.0))); })");
    IPrimitive* const emitter =
        scene.MakeObject(MakePlane(1.0f, 1.0f), "void main() { accumulate(0, 1.0); }");
    Matrix44f matrix;
    matrix(2, 3) = 1.0f;
    EXPECT_TRUE(emitter->SetTransform(matrix));
    // 262,144 paths: one standard deviation of plain random paths is 0.0008.
    EXPECT_NEAR(0.199825, scene.Render(64, 64, 64).GetMean(), 0.002);
}

TEST(RenderLight, PointLight_ByOcclusion_FallsWithTheSquareOfTheDistance) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    scene.MakeObject(MakePlane(4.0f, 4.0f), R"(void main() {
        vec3 toLight = vec3(0.0, 0.0, 2.0) - kl_HitPosition;
        float distance = length(toLight);
        if (!occluded(kl_HitPosition, toLight, distance))
            accumulate(0, dot(normalize(toLight), kl_HitNormal) / (distance * distance));
    })");
    // Shades the left half.
    IPrimitive* const blocker = scene.MakeObject(MakePlane(2.0f, 4.0f), "void main() {}");
    Matrix44f matrix;
    matrix(0, 3) = -1.5f;
    matrix(2, 3) = 1.0f;
    EXPECT_TRUE(blocker->SetTransform(matrix));
    const Picture picture = scene.Render(8, 8, 16);
    EXPECT_EQ(0.0f, picture.At(0, 4));
    const float px = 5.5f / 8.0f * 2.0f - 1.0f;
    const float py = 4.5f / 8.0f * 2.0f - 1.0f;
    const float squared = 4.0f + px * px + py * py;
    EXPECT_NEAR(2.0f / std::pow(squared, 1.5f), picture.At(5, 4), 0.003f);
}

} // namespace
} // namespace Tolen::OpenKL
