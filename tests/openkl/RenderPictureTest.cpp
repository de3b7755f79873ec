#include "RenderFixture.h"

#include <cmath>

namespace Tolen::OpenKL {
namespace {

TEST(RenderPicture, FrameProgram_WithAConstant_FillsEveryPixel) {
    RenderFixture scene;
    scene.MakeFrame("void main() { accumulate(0, vec4(0.25, 0.5, 0.75, 1.0)); }");
    const Picture picture = scene.Render(37, 21, 3);
    for (int y = 0; y < 21; ++y) {
        for (int x = 0; x < 37; ++x) {
            EXPECT_EQ(0.25f, picture.At(x, y, 0));
            EXPECT_EQ(0.5f, picture.At(x, y, 1));
            EXPECT_EQ(0.75f, picture.At(x, y, 2));
            EXPECT_EQ(1.0f, picture.At(x, y, 3));
        }
    }
}

TEST(RenderPicture, Accumulate_OfEveryWidth_AddsToTheChannelsItNames) {
    RenderFixture scene;
    scene.MakeFrame(R"(void main() {
        accumulate(0, 2.0);
        accumulate(1, vec3(1.0, 2.0, 3.0));
        accumulate(2, vec4(1.0, 2.0, 3.0, 4.0));
        accumulate(3, 1.0);
        accumulate(-1, 1.0);
        accumulate(16, 1.0);
    })");
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(2, 2, 3);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), nullptr));
    const float expected[3][4] = {{2, 2, 2, 0}, {1, 2, 3, 0}, {1, 2, 3, 4}};
    for (int attachment = 0; attachment < 3; ++attachment) {
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_EQ(expected[attachment][channel],
                      RenderFixture::Read(*framebuffer, attachment).At(1, 1, channel));
        }
    }
    EXPECT_FALSE(framebuffer->IsAttached(3));
}

TEST(RenderPicture, PixelCoord_OverSamples_AveragesToThePixelsMiddle) {
    RenderFixture scene;
    scene.MakeFrame("void main() { accumulate(0, vec3(kl_PixelCoord, 0.0)); }");
    const Picture picture = scene.Render(40, 33, 64);
    for (int y = 0; y < 33; ++y) {
        for (int x = 0; x < 40; ++x) {
            // 64 samples are stratified to an eighth of a pixel on either axis.
            EXPECT_NEAR(static_cast<float>(x) + 0.5f, picture.At(x, y, 0), 0.02f);
            EXPECT_NEAR(static_cast<float>(y) + 0.5f, picture.At(x, y, 1), 0.02f);
        }
    }
}

TEST(RenderPicture, FrameBuiltins_TellResolutionSamplesAndTime) {
    RenderFixture scene;
    scene.MakeFrame(R"(void main() {
        accumulate(0, vec4(kl_Resolution, float(kl_SampleCount), kl_Time));
        accumulate(1, float(kl_SampleIndex));
    })");
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(5, 7, 2);
    RenderSettings settings;
    settings.firstSample = 2;
    settings.samples = 3;
    settings.sampleCount = 9;
    settings.time = 1.5f;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    const Picture constants = RenderFixture::Read(*framebuffer, 0);
    EXPECT_EQ(5.0f, constants.At(0, 0, 0));
    EXPECT_EQ(7.0f, constants.At(0, 0, 1));
    EXPECT_EQ(9.0f, constants.At(0, 0, 2));
    EXPECT_EQ(1.5f, constants.At(0, 0, 3));
    EXPECT_EQ(3.0f, RenderFixture::Read(*framebuffer, 1).At(4, 6));
    EXPECT_EQ(3, framebuffer->GetSampleCount(4, 6));
}

TEST(RenderPicture, Sphere_HitByAParallelCamera_ShowsItsNormals) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    scene.MakeObject(MakeSphere(0.9f, 256, 128),
                     "varying vec3 Normal; void main() { accumulate(0, Normal); }");
    constexpr int size = 64;
    const Picture picture = scene.Render(size, size, 16);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const float px = (static_cast<float>(x) + 0.5f) / size * 2.0f - 1.0f;
            const float py = (static_cast<float>(y) + 0.5f) / size * 2.0f - 1.0f;
            const float radius = std::hypot(px, py);
            if (radius > 0.95f) {
                EXPECT_EQ(0.0f, picture.At(x, y, 2));
            } else if (radius < 0.8f) {
                // The normal of the sphere at the middle of the pixel.
                EXPECT_NEAR(px / 0.9f, picture.At(x, y, 0), 0.01f);
                EXPECT_NEAR(py / 0.9f, picture.At(x, y, 1), 0.01f);
                EXPECT_NEAR(std::sqrt(0.81f - radius * radius) / 0.9f, picture.At(x, y, 2), 0.01f);
            }
        }
    }
}

TEST(RenderPicture, HitBuiltins_OnATriangle_TellWhereItWasHit) {
    RenderFixture scene;
    scene.MakeFrame(R"(void main() {
        spawnRay(vec3(0.25, 0.5, 3.0), vec3(0.0, 0.0, -2.0), 100.0, 5);
    })");
    IPrimitive* const object = scene.MakeObject(Mesh(), R"(void main() {
        accumulate(0, vec4(kl_HitPosition, kl_HitDistance));
        accumulate(1, vec4(kl_HitNormal, kl_HitFront ? 1.0 : 0.0));
        accumulate(2, vec4(kl_HitBarycentric, float(kl_RayClass), float(kl_RayDepth)));
        accumulate(3, vec4(kl_RayOrigin, kl_RayDirection.z));
        accumulate(4, kl_Missed ? 1.0 : 0.0);
        accumulate(5, vec3(kl_PixelCoord, float(kl_SampleIndex)));
    })");
    const float positions[] = {0, 0, 1, 1, 0, 1, 0, 1, 1};
    const std::uint32_t indices[] = {0, 1, 2};
    EXPECT_TRUE(object->SetAttribute("a_Position", 3, positions, 3));
    EXPECT_TRUE(object->SetTriangles(indices, 1));
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1, 6);
    Result result;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), &result));
    EXPECT_TRUE(result.IsEmpty()) << result.GetLast();
    const float expected[5][4] = {
        {0.25f, 0.5f, 1, 2}, {0, 0, 1, 1}, {0.25f, 0.5f, 5, 0}, {0.25f, 0.5f, 3, -1}, {0, 0, 0, 0}};
    for (int attachment = 0; attachment < 5; ++attachment) {
        const Picture picture = RenderFixture::Read(*framebuffer, attachment);
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_FLOAT_EQ(expected[attachment][channel], picture.At(0, 0, channel))
                << attachment << " " << channel;
        }
    }
    EXPECT_GT(RenderFixture::Read(*framebuffer, 5).At(0, 0), 0.0f);
}

TEST(RenderPicture, Backface_TellsItsSideAndKeepsItsNormal) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(0.1, 0.1, -3.0), vec3(0.0, 0.0, 1.0)); }");
    scene.MakeObject(MakePlane(2.0f, 2.0f),
                     "void main() { accumulate(0, vec4(kl_HitNormal, kl_HitFront ? 1.0 : 0.5)); }");
    const Picture picture = scene.Render(1, 1);
    EXPECT_EQ(1.0f, picture.At(0, 0, 2));
    EXPECT_EQ(0.5f, picture.At(0, 0, 3));
}

TEST(RenderPicture, Transform_MovesPositionsAndCarriesNormals) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(3.0, 0.5, 9.0), vec3(0.0, 0.0, -1.0)); }");
    IPrimitive* const object = scene.MakeObject(MakePlane(2.0f, 2.0f), R"(
        varying vec3 Normal;
        void main() { accumulate(0, vec4(Normal, kl_HitPosition.z)); accumulate(1, kl_HitNormal); })");
    // Sheared, so that a normal goes with the inverse transpose and not with the matrix.
    Matrix44f matrix;
    matrix(0, 3) = 3.0f;
    matrix(2, 0) = 1.0f;
    matrix(2, 3) = 2.0f;
    EXPECT_TRUE(object->SetTransform(matrix));
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1, 2);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), nullptr));
    const float half = std::sqrt(0.5f);
    const Picture varying = RenderFixture::Read(*framebuffer, 0);
    EXPECT_NEAR(-half, varying.At(0, 0, 0), 1e-6f);
    EXPECT_NEAR(0.0f, varying.At(0, 0, 1), 1e-6f);
    EXPECT_NEAR(half, varying.At(0, 0, 2), 1e-6f);
    EXPECT_NEAR(2.0f, varying.At(0, 0, 3), 1e-6f);
    const Picture geometric = RenderFixture::Read(*framebuffer, 1);
    EXPECT_NEAR(-half, geometric.At(0, 0, 0), 1e-6f);
    EXPECT_NEAR(half, geometric.At(0, 0, 2), 1e-6f);
}

TEST(RenderPicture, MirroringTransform_KeepsTheFrontInFront) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(0.1, 0.1, 3.0), vec3(0.0, 0.0, -1.0)); }");
    IPrimitive* const object = scene.MakeObject(
        MakePlane(2.0f, 2.0f),
        "void main() { accumulate(0, vec4(kl_HitNormal, kl_HitFront ? 1.0 : 0.5)); }");
    Matrix44f mirror;
    mirror(0, 0) = -1.0f;
    EXPECT_TRUE(object->SetTransform(mirror));
    const Picture picture = scene.Render(1, 1);
    EXPECT_EQ(1.0f, picture.At(0, 0, 2));
    EXPECT_EQ(1.0f, picture.At(0, 0, 3));
}

TEST(RenderPicture, VaryingKinds_AreTransformedAndNormalizedAsTheySay) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(0.3, 0.2, 9.0), vec3(0.0, 0.0, -1.0)); }");
    IPrimitive* const object = scene.MakeObject(MakePlane(8.0f, 8.0f), R"(
        varying vec3 Plain;
        varying vec3 Unit;
        varying vec3 Point;
        varying vec3 Direction;
        varying vec3 Normal;
        void main() {
            accumulate(0, Plain);
            accumulate(1, Unit);
            accumulate(2, Point);
            accumulate(3, Direction);
            accumulate(4, Normal);
        })",
                                                R"(
        attribute vec3 a_Position;
        varying vec3 Plain;
        normalized varying vec3 Unit;
        transformed varying vec3 Point;
        transformed invariant varying vec3 Direction;
        transformed normalized varying vec3 Normal;
        void main() {
            kl_Position = vec4(a_Position, 1.0);
            Plain = vec3(3.0, 4.0, 0.0);
            Unit = Plain;
            Point = Plain;
            Direction = Plain;
            Normal = Plain;
        })");
    Matrix44f matrix;
    matrix(0, 0) = 2.0f;
    matrix(0, 3) = 1.0f;
    EXPECT_TRUE(object->SetTransform(matrix));
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1, 5);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), nullptr));
    const float length = std::hypot(1.5f, 4.0f);
    const float expected[5][3] = {
        {3, 4, 0}, {0.6f, 0.8f, 0}, {7, 4, 0}, {6, 4, 0}, {1.5f / length, 4.0f / length, 0}};
    for (int attachment = 0; attachment < 5; ++attachment) {
        for (int channel = 0; channel < 3; ++channel) {
            EXPECT_NEAR(expected[attachment][channel],
                        RenderFixture::Read(*framebuffer, attachment).At(0, 0, channel), 1e-5f)
                << attachment << " " << channel;
        }
    }
}

TEST(RenderPicture, Primitive_WithoutAVertexShader_StandsAtItsPositionAttribute) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(0.1, 0.1, 3.0), vec3(0.0, 0.0, -1.0)); }");
    IPrimitive* const object = scene.MakePrimitive(scene.Link({scene.MakeShader(
        IKLShader::kType_Ray, "void main() { accumulate(0, kl_HitDistance); }")}));
    EXPECT_TRUE(SetMesh(*object, MakePlane(2.0f, 2.0f)));
    EXPECT_EQ(3.0f, scene.Render(1, 1).At(0, 0));
}

TEST(RenderPicture, Miss_GoesToTheRaysOwnMissPrimitiveAheadOfTheContexts) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform primitive ownMiss;
        void main() {
            vec3 up = vec3(0.0, 0.0, 1.0);
            if (kl_PixelCoord.x < 1.0) spawnRay(vec3(0.0), up);
            else spawnRay(vec3(0.0), up, 10.0, 0, ownMiss);
        })");
    scene.MakeMiss("void main() { accumulate(0, kl_Missed ? 1.0 : -1.0); }");
    IPrimitive* const own = scene.MakePrimitive(scene.Link({scene.MakeShader(
        IKLShader::kType_Ray, "void main() { accumulate(0, kl_HitDistance); }")}));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "ownMiss", own->GetHandle()));
    const Picture picture = scene.Render(2, 1);
    EXPECT_EQ(1.0f, picture.At(0, 0));
    EXPECT_EQ(10.0f, picture.At(1, 0));
}

TEST(RenderPicture, Miss_WithoutAMissPrimitive_EndsTheRay) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    EXPECT_EQ(0.0f, scene.Render(2, 2).At(0, 0));
    EXPECT_EQ(4, scene.pContext->GetStatistics().misses);
    EXPECT_EQ(0, scene.pContext->GetStatistics().rayInvocations);
}

TEST(RenderPicture, MissProgram_SpawnsFromExactlyWhereItSays) {
    RenderFixture scene;
    scene.MakeFrame("void main() { spawnRay(vec3(1.0, 2.0, 3.0), vec3(0.0, 0.0, 1.0)); }");
    scene.MakeMiss(R"(void main() {
        if (kl_RayDepth == 0) spawnRay(kl_RayOrigin, vec3(0.0, 1.0, 0.0));
        else accumulate(0, vec4(kl_RayOrigin, kl_RayDirection.y));
    })");
    const Picture picture = scene.Render(1, 1);
    const float expected[4] = {1, 2, 3, 1};
    for (int channel = 0; channel < 4; ++channel) {
        EXPECT_EQ(expected[channel], picture.At(0, 0, channel));
    }
}

TEST(RenderPicture, RayAttributes_TravelWithTheValuesThatTheyHadAtTheSpawn) {
    RenderFixture scene;
    scene.MakeFrame(R"(
        rayattribute vec3 weight;
        rayattribute int count;
        void main() {
            weight = vec3(1.0, 2.0, 3.0);
            count = 4;
            spawnRay(vec3(0.1, 0.1, 3.0), vec3(0.0, 0.0, -1.0));
            weight = vec3(100.0);
            count = 100;
        })");
    // Declared in another order, and with another beside.
    scene.MakeObject(MakePlane(2.0f, 2.0f), R"(
        rayattribute float other;
        rayattribute int count;
        rayattribute vec3 weight;
        void main() {
            if (kl_RayDepth == 0) {
                other = other + 5.0;
                weight = weight * 2.0;
                spawnRay(kl_HitPosition + vec3(0.0, 0.0, 1.0), vec3(0.0, 0.0, -1.0));
            } else {
                accumulate(0, vec4(weight, other * 10.0 + float(count)));
            }
        })");
    const Picture picture = scene.Render(1, 1);
    EXPECT_EQ(2.0f, picture.At(0, 0, 0));
    EXPECT_EQ(4.0f, picture.At(0, 0, 1));
    EXPECT_EQ(6.0f, picture.At(0, 0, 2));
    EXPECT_EQ(54.0f, picture.At(0, 0, 3));
}

TEST(RenderPicture, RayAttribute_ThatAProgramDoesNotDeclare_PassesThrough) {
    RenderFixture scene;
    scene.MakeFrame(R"(
        rayattribute float weight;
        void main() { weight = 7.0; spawnRay(vec3(0.1, 0.1, 3.0), vec3(0.0, 0.0, -1.0)); })");
    scene.MakeObject(MakePlane(2.0f, 2.0f),
                     "void main() { spawnRay(kl_HitPosition, vec3(0.0, 0.0, 1.0)); }");
    scene.MakeMiss("rayattribute float weight; void main() { accumulate(0, weight); }");
    EXPECT_EQ(7.0f, scene.Render(1, 1).At(0, 0));
}

TEST(RenderPicture, Prefix_RunsAheadOfWhatTheRayReached) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    scene.MakeObject(MakePlane(1.0f, 4.0f),
                     "rayattribute float weight; void main() { accumulate(0, weight); }");
    scene.MakeMiss("void main() { accumulate(0, 100.0); }");
    // Ends rays below, marks the others.
    scene.MakePrefix(R"(
        rayattribute float weight;
        void main() {
            weight = kl_HitDistance;
            if (kl_RayOrigin.y < 0.0) discardRay();
        })");
    const Picture picture = scene.Render(4, 4);
    EXPECT_EQ(0.0f, picture.At(1, 0));
    EXPECT_EQ(5.0f, picture.At(1, 3));
    EXPECT_EQ(0.0f, picture.At(0, 0));
    EXPECT_EQ(100.0f, picture.At(0, 3));
    EXPECT_EQ(16, scene.pContext->GetStatistics().prefixInvocations);
    EXPECT_EQ(8, scene.pContext->GetStatistics().rayInvocations);
}

TEST(RenderPicture, Prefix_CanAddLightAndEndTheRay) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    scene.MakeObject(MakePlane(4.0f, 4.0f), "void main() { accumulate(0, 1.0); }");
    // A fog that takes the share 1 - exp(-distance / 5) and glows by it.
    scene.MakePrefix(R"(
        void main() {
            float fog = 1.0 - exp(-kl_HitDistance / 5.0);
            accumulate(0, fog * 0.5);
            if (random() < fog) discardRay();
        })");
    const double fog = 1.0 - std::exp(-1.0);
    // 16,384 rays: the error of the surviving share is 0.004 at one standard deviation.
    EXPECT_NEAR(fog * 0.5 + (1.0 - fog), scene.Render(16, 16, 64).GetMean(), 0.012);
}

TEST(RenderPicture, Texture_IsSampledByCoordinates) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    IPrimitive* const object = scene.MakeObject(MakePlane(2.0f, 2.0f), R"(
        uniform sampler2D image;
        varying vec2 Coord;
        void main() { accumulate(0, texture2D(image, Coord)); })");
    const float texels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    IKLTexImage2D* const image = scene.pContext->CreateTexImage2D();
    ASSERT_TRUE(image->Init(2, 2, IKLTexImage2D::kFormat_RGB32F, KL_CLAMP_TO_EDGE, KL_NEAREST,
                            KL_NEAREST, texels, false));
    EXPECT_TRUE(RenderFixture::SetUniform(*object, "image", image->GetTexture()));
    Picture picture = scene.Render(2, 2);
    EXPECT_EQ(1.0f, picture.At(0, 0, 0));
    EXPECT_EQ(5.0f, picture.At(1, 0, 1));
    EXPECT_EQ(9.0f, picture.At(0, 1, 2));
    EXPECT_EQ(1.0f, picture.At(1, 1, 3));

    // An image that is gone reads as black.
    scene.pContext->DestroyTexImage2D(image);
    picture = scene.Render(2, 2);
    EXPECT_EQ(0.0f, picture.At(1, 1, 0));
    EXPECT_EQ(1.0f, picture.At(1, 1, 3));
}

TEST(RenderPicture, BorrowedTexture_ShowsLaterWrites) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform sampler2D image;
        void main() { accumulate(0, texture2D(image, vec2(0.5)).x); })");
    float texel = 1.0f;
    IKLTexImage2D* const image = scene.pContext->CreateTexImage2D();
    ASSERT_TRUE(image->Init(1, 1, IKLTexImage2D::kFormat_R32F, KL_REPEAT, KL_LINEAR, KL_LINEAR,
                            &texel, true));
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "image", image->GetTexture()));
    EXPECT_EQ(1.0f, scene.Render(1, 1).At(0, 0));
    texel = 2.0f;
    EXPECT_EQ(2.0f, scene.Render(1, 1).At(0, 0));
}

TEST(RenderPicture, Differentials_FilterFarTexturesAway) {
    // A board of black and white texels, far finer than the pixels.
    constexpr int size = 256;
    std::vector<float> texels;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            texels.push_back((x + y) % 2 == 0 ? 0.0f : 1.0f);
        }
    }
    const auto render = [&](bool differentials) {
        ContextOptions options;
        options.differentials = differentials;
        RenderFixture scene(options);
        scene.MakeFrame(RenderFixture::perspectiveCamera);
        IPrimitive* const object = scene.MakeObject(MakePlane(4.0f, 4.0f), R"(
            uniform sampler2D image;
            varying vec2 Coord;
            void main() { accumulate(0, texture2D(image, Coord).x); })");
        IKLTexImage2D* const image = scene.pContext->CreateTexImage2D();
        EXPECT_TRUE(image->Init(size, size, IKLTexImage2D::kFormat_R32F, KL_REPEAT, KL_LINEAR,
                                KL_LINEAR, texels.data(), false));
        EXPECT_TRUE(RenderFixture::SetUniform(*object, "image", image->GetTexture()));
        const Picture picture = scene.Render(32, 32);
        float worst = 0.0f;
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x) {
                worst = std::max(worst, std::fabs(picture.At(x, y) - 0.5f));
            }
        }
        return worst;
    };
    EXPECT_GT(render(false), 0.3f);
    EXPECT_LT(render(true), 0.05f);
}

TEST(RenderPicture, FilteredAccumulates_SpreadAnEdgeOverThreePixels) {
    const auto render = [](bool isFiltered) {
        ContextOptions options;
        options.filteredAccumulates = isFiltered;
        RenderFixture scene(options);
        scene.MakeFrame("void main() { accumulate(0, kl_PixelCoord.x < 8.0 ? 0.0 : 1.0); }");
        return scene.Render(16, 1, 256);
    };
    const Picture box = render(false);
    const Picture filtered = render(true);
    EXPECT_EQ(0.0f, box.At(7, 0));
    EXPECT_EQ(1.0f, box.At(8, 0));
    EXPECT_GT(filtered.At(7, 0), 0.02f);
    EXPECT_LT(filtered.At(8, 0), 0.98f);
    EXPECT_NEAR(1.0f, filtered.At(7, 0) + filtered.At(8, 0), 0.03f);
    EXPECT_EQ(0.0f, filtered.At(5, 0));
    EXPECT_EQ(1.0f, filtered.At(10, 0));
}

TEST(RenderPicture, InvisiblePrimitive_LetsRaysPass) {
    RenderFixture scene;
    scene.MakeFrame(RenderFixture::parallelCamera);
    IPrimitive* const object =
        scene.MakeObject(MakePlane(4.0f, 4.0f), "void main() { accumulate(0, 1.0); }");
    EXPECT_EQ(1.0f, scene.Render(1, 1).At(0, 0));
    object->SetVisible(false);
    EXPECT_EQ(0.0f, scene.Render(1, 1).At(0, 0));
    object->SetVisible(true);
    EXPECT_EQ(1.0f, scene.Render(1, 1).At(0, 0));
}

TEST(RenderPicture, Setup_RunsOnceForEachChangeOfProgramOrUniforms) {
    RenderFixture scene;
    IPrimitive* const frame = scene.MakeFrame(R"(
        uniform float value;
        float twice;
        void setup() { twice = value * 2.0; }
        void main() { accumulate(0, twice); twice = 100.0; })");
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "value", 2.0f));
    EXPECT_EQ(4.0f, scene.Render(8, 8, 4).At(3, 3));
    EXPECT_EQ(4.0f, scene.Render(8, 8, 4).At(3, 3));
    EXPECT_EQ(1, scene.pContext->GetStatistics().setupInvocations);
    EXPECT_TRUE(RenderFixture::SetUniform(*frame, "value", 3.0f));
    EXPECT_EQ(6.0f, scene.Render(8, 8, 4).At(3, 3));
    EXPECT_EQ(2, scene.pContext->GetStatistics().setupInvocations);
}

TEST(RenderPicture, OccludedAndTraceDistance_AnswerAtOnce) {
    RenderFixture scene;
    scene.MakeFrame(R"(void main() {
        vec3 o = vec3(0.1, 0.1, 3.0);
        vec3 down = vec3(0.0, 0.0, -1.0);
        accumulate(0, vec4(occluded(o, down, 10.0) ? 1.0 : 0.0, occluded(o, down, 2.0) ? 1.0 : 0.0,
                           occluded(o, -down, 10.0) ? 1.0 : 0.0, traceDistance(o, down, 10.0)));
        accumulate(1, vec3(traceDistance(o, down, 2.0), traceDistance(o, -down, 10.0), 0.0));
    })");
    scene.MakeObject(MakePlane(2.0f, 2.0f), "void main() {}");
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(1, 1, 2);
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, RenderSettings(), nullptr));
    const Picture first = RenderFixture::Read(*framebuffer, 0);
    EXPECT_EQ(1.0f, first.At(0, 0, 0));
    EXPECT_EQ(0.0f, first.At(0, 0, 1));
    EXPECT_EQ(0.0f, first.At(0, 0, 2));
    EXPECT_EQ(3.0f, first.At(0, 0, 3));
    EXPECT_EQ(-1.0f, RenderFixture::Read(*framebuffer, 1).At(0, 0, 0));
    EXPECT_EQ(-1.0f, RenderFixture::Read(*framebuffer, 1).At(0, 0, 1));
    EXPECT_EQ(3, scene.pContext->GetStatistics().occlusionRays);
    EXPECT_EQ(3, scene.pContext->GetStatistics().distanceRays);
}

TEST(RenderPicture, Region_RendersItsPixelsAlone) {
    RenderFixture scene;
    scene.MakeFrame("void main() { accumulate(0, 1.0); }");
    IFramebuffer* const framebuffer = scene.MakeFramebuffer(50, 40);
    RenderSettings settings;
    settings.x = 30;
    settings.y = -5;
    settings.width = 100;
    settings.height = 15;
    EXPECT_EQ(kRender_Finished, scene.pContext->Render(framebuffer, settings, nullptr));
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 50; ++x) {
            EXPECT_EQ(x >= 30 && y < 10 ? 1 : 0, framebuffer->GetSampleCount(x, y));
        }
    }
    EXPECT_EQ(200, scene.pContext->GetStatistics().frameInvocations);
}

} // namespace
} // namespace Tolen::OpenKL
