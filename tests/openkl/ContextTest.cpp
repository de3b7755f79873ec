#include "RenderFixture.h"

#include "TolenCore/Console.h"

#include <cmath>
#include <limits>

namespace Tolen::OpenKL {
namespace {

TEST(Context, Options_OutOfRange_GiveNoContextAndAMessage) {
    struct Case {
        const char* name;
        void (*change)(ContextOptions&);
    };
    const Case cases[] = {
        {"threads below 0", [](ContextOptions& options) { options.threads = -1; }},
        {"too many threads", [](ContextOptions& options) { options.threads = 100000; }},
        {"depth", [](ContextOptions& options) { options.limits.depth = -1; }},
        {"loop steps", [](ContextOptions& options) { options.limits.loopSteps = 0; }},
        {"too few rays", [](ContextOptions& options) { options.limits.raysInFlight = 1; }},
        {"too many rays",
         [](ContextOptions& options) { options.limits.raysInFlight = std::int64_t{1} << 40; }},
        {"image side", [](ContextOptions& options) { options.limits.imageSide = 0; }},
        {"image pixels", [](ContextOptions& options) { options.limits.imagePixels = 0; }},
        {"texture memory", [](ContextOptions& options) { options.limits.textureBytes = -1; }},
    };
    for (const Case& test : cases) {
        ContextOptions options;
        test.change(options);
        Result result;
        EXPECT_EQ(nullptr, ContextPointer(CreateContext(options, &result))) << test.name;
        EXPECT_EQ(1u, result.GetCount()) << test.name;
        EXPECT_EQ(nullptr, ContextPointer(CreateContext(options, nullptr))) << test.name;
    }
}

TEST(Context, Options_AreKept) {
    ContextOptions options;
    options.differentials = true;
    options.limits.depth = 7;
    const RenderFixture scene(options);
    EXPECT_TRUE(scene.pContext->AreDifferentialsEnabled());
    EXPECT_FALSE(scene.pContext->AreFilteredAccumulatesEnabled());
    EXPECT_EQ(7, scene.pContext->GetOptions().limits.depth);
}

TEST(Context, Destructions_OfNullAndForeignObjects_ArePassedOver) {
    RenderFixture scene;
    RenderFixture other;
    scene.pContext->DestroyShader(nullptr);
    scene.pContext->DestroyProgram(nullptr);
    scene.pContext->DestroyBuffer(nullptr);
    scene.pContext->DestroyTexImage2D(nullptr);
    scene.pContext->DestroyPrimitive(nullptr);
    scene.pContext->DestroyFramebuffer(nullptr);
    DestroyContext(nullptr);
    IPrimitive* const foreign = other.pContext->CreatePrimitive();
    scene.pContext->DestroyPrimitive(foreign);
    EXPECT_EQ(foreign, other.pContext->FindPrimitive(foreign->GetHandle()));
    EXPECT_EQ(nullptr, scene.pContext->FindPrimitive(foreign->GetHandle()));
    IKLProgram* const program = scene.pContext->CreateProgram();
    EXPECT_FALSE(program->AddShader(other.pContext->CreateShader(IKLShader::kType_Ray)));
    EXPECT_FALSE(program->AddShader(nullptr));
    EXPECT_FALSE(program->DetachShader(nullptr));
}

TEST(Context, Roles_TakeOwnPrimitivesAndEndWithThem) {
    RenderFixture scene;
    RenderFixture other;
    IPrimitive* const primitive = scene.pContext->CreatePrimitive();
    scene.pContext->SetFramePrimitive(primitive);
    scene.pContext->SetPrefixPrimitive(primitive);
    scene.pContext->SetMissPrimitive(primitive);
    EXPECT_EQ(primitive, scene.pContext->GetFramePrimitive());
    EXPECT_EQ(primitive, scene.pContext->GetPrefixPrimitive());
    EXPECT_EQ(primitive, scene.pContext->GetMissPrimitive());
    scene.pContext->SetMissPrimitive(other.pContext->CreatePrimitive());
    EXPECT_EQ(nullptr, scene.pContext->GetMissPrimitive());
    scene.pContext->DestroyPrimitive(primitive);
    EXPECT_EQ(nullptr, scene.pContext->GetFramePrimitive());
    EXPECT_EQ(nullptr, scene.pContext->GetPrefixPrimitive());
}

TEST(Context, Primitives_DestroyedWhileBound_AreBoundNoMore) {
    RenderFixture scene;
    IPrimitive* const primitive = scene.pContext->CreatePrimitive();
    primitive->Bind();
    scene.pContext->DestroyPrimitive(primitive);
    IKLProgram* const program =
        scene.Link({scene.MakeShader(IKLShader::kType_Ray, "void main() {}")});
    klUseProgram(program->GetHandle());
    IPrimitive* const next = scene.pContext->CreatePrimitive();
    next->Unbind();
    EXPECT_EQ(nullptr, next->GetProgram());
}

TEST(Context, Framebuffers_BeyondTheLimits_AreRefusedWithAMessage) {
    ContextOptions options;
    options.limits.imageSide = 100;
    options.limits.imagePixels = 1000;
    RenderFixture scene(options);
    const int sizes[][2] = {{0, 10}, {10, 0}, {-1, 10}, {101, 1}, {1, 101}, {50, 50}};
    for (const auto& size : sizes) {
        Result result;
        EXPECT_EQ(nullptr, scene.pContext->CreateFramebuffer(size[0], size[1], &result));
        EXPECT_EQ(1u, result.GetCount());
        EXPECT_EQ(nullptr, scene.pContext->CreateFramebuffer(size[0], size[1], nullptr));
    }
    EXPECT_NE(nullptr, scene.pContext->CreateFramebuffer(100, 10, nullptr));
}

TEST(Context, Images_WithOddArguments_AreRefused) {
    IMgrConsole* const console = SetMgrConsole(nullptr);
    ContextOptions options;
    options.limits.imageSide = 100;
    options.limits.imagePixels = 1000;
    options.limits.textureBytes = 4000;
    RenderFixture scene(options);
    const std::vector<float> texels(1000);
    struct Case {
        const char* name;
        int width, height, format, wrap, minification, magnification;
        const void* data;
    };
    constexpr int good = IKLTexImage2D::kFormat_R32F;
    const Case cases[] = {
        {"empty", 0, 1, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data()},
        {"negative", 1, -1, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data()},
        {"wide", 101, 1, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data()},
        {"big", 50, 50, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data()},
        {"format", 1, 1, 7, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data()},
        {"wrap", 1, 1, good, 0, KL_NEAREST, KL_NEAREST, texels.data()},
        {"filter", 1, 1, good, KL_REPEAT, 0, KL_NEAREST, texels.data()},
        {"other filter", 1, 1, good, KL_REPEAT, KL_NEAREST, 0, texels.data()},
        {"no data", 1, 1, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, nullptr},
    };
    for (const Case& test : cases) {
        IKLTexImage2D* const image = scene.pContext->CreateTexImage2D();
        EXPECT_FALSE(image->Init(test.width, test.height, test.format, test.wrap, test.minification,
                                 test.magnification, test.data, false))
            << test.name;
        EXPECT_EQ(nullptr, image->GetTexture()) << test.name;
        EXPECT_EQ(0, image->GetWidth()) << test.name;
    }
    // Memory is counted while images live; borrowed texels are not.
    IKLTexImage2D* const first = scene.pContext->CreateTexImage2D();
    IKLTexImage2D* const second = scene.pContext->CreateTexImage2D();
    EXPECT_TRUE(
        first->Init(100, 10, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data(), false));
    EXPECT_FALSE(second->Init(1, 1, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data(), false));
    EXPECT_TRUE(second->Init(1, 1, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data(), true));
    scene.pContext->DestroyTexImage2D(first);
    EXPECT_TRUE(second->Init(2, 3, good, KL_REPEAT, KL_NEAREST, KL_NEAREST, texels.data(), false));
    EXPECT_EQ(2, second->GetWidth());
    EXPECT_EQ(3, second->GetHeight());
    SetMgrConsole(console);
}

TEST(Context, Primitive_WithOddArguments_RefusesThem) {
    RenderFixture scene;
    IPrimitive* const primitive = scene.pContext->CreatePrimitive();
    const float values[] = {1, 2, 3, 4};
    EXPECT_FALSE(primitive->SetAttribute("", 1, values, 1));
    EXPECT_FALSE(primitive->SetAttribute("a", 0, values, 1));
    EXPECT_FALSE(primitive->SetAttribute("a", 5, values, 1));
    EXPECT_FALSE(primitive->SetAttribute("a", 1, nullptr, 1));
    EXPECT_FALSE(primitive->SetAttribute("a", 1, values, std::size_t{1} << 40));
    EXPECT_FALSE(primitive->SetTriangles(nullptr, 1));
    EXPECT_EQ(0u, primitive->GetVertexCount());
    EXPECT_TRUE(primitive->SetAttribute("a", 2, values, 2));
    EXPECT_TRUE(primitive->SetAttribute("b", 4, values, 1));
    EXPECT_EQ(2u, primitive->GetVertexCount());
    EXPECT_TRUE(primitive->SetAttribute("a", 2, nullptr, 0));
    EXPECT_EQ(1u, primitive->GetVertexCount());
    EXPECT_TRUE(primitive->SetTriangles(nullptr, 0));

    Matrix44f matrix(2.0f);
    EXPECT_TRUE(primitive->SetTransform(matrix));
    Matrix44f bad(0.0f);
    EXPECT_FALSE(primitive->SetTransform(bad));
    bad = Matrix44f();
    bad(1, 2) = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(primitive->SetTransform(bad));
    EXPECT_EQ(matrix, primitive->GetTransform());
}

TEST(Context, Meshes_AreClosedAndOutward) {
    for (const Mesh& mesh : {MakeSphere(2.0f, 12, 7), MakeBox({1.0f, 2.0f, 3.0f})}) {
        ASSERT_EQ(mesh.positions.size(), mesh.normals.size());
        ASSERT_EQ(mesh.positions.size(), mesh.coords.size());
        ASSERT_EQ(0u, mesh.indices.size() % 3);
        // The volume that the triangles enclose, positive when they are wound outward.
        double volume = 0.0;
        for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
            const Vector3f& a = mesh.positions.at(mesh.indices[i]);
            const Vector3f& b = mesh.positions.at(mesh.indices[i + 1]);
            const Vector3f& c = mesh.positions.at(mesh.indices[i + 2]);
            volume += double{a.x} * double{b.y * c.z - b.z * c.y} +
                      double{a.y} * double{b.z * c.x - b.x * c.z} +
                      double{a.z} * double{b.x * c.y - b.y * c.x};
        }
        EXPECT_GT(volume / 6.0, 5.9);
        EXPECT_LT(volume / 6.0, 33.6);
    }
    EXPECT_EQ(5u, MakeDisc(1.0f, 4).positions.size());
    EXPECT_EQ(3u, MakeDisc(1.0f, -7).indices.size() / 3);
    EXPECT_EQ(4u, MakePlane(1.0f, 2.0f).positions.size());
}

} // namespace
} // namespace Tolen::OpenKL
