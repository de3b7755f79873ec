#include "endtoend/PictureFixture.h"

#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceEffect.h"

namespace Tolen::Tests {
namespace {

using Effects::IEffect;
using Effects::ILocalParameter;
using Effects::IReferenceEffect;
using Effects::IShader;

class PictureTest : public PictureFixture {
protected:
    IEffect* MakeSurface(IShader* root) {
        IEffect* const effect = manager.CreateEffectSurface();
        EXPECT_TRUE(effect->SetRoot(root));
        return effect;
    }

    static void ExpectColor(const Pixel& pixel, float r, float g, float b) {
        EXPECT_FLOAT_EQ(pixel[0], r);
        EXPECT_FLOAT_EQ(pixel[1], g);
        EXPECT_FLOAT_EQ(pixel[2], b);
    }
};

TEST_F(PictureTest, AParameter_IsSeenInThePicture) {
    Load("flat.klsl", "class Flat { input vec3 color = vec3(0.25, 0.5, 0.75);"
                      " void Shade() { accumulate(o_color, color); } }");
    AddSquare(MakeSurface(Make("Flat")));
    Render();
    ExpectColor(GetPixel(), 0.25f, 0.5f, 0.75f);
    ExpectColor(GetPixel(3, 3), 0.25f, 0.5f, 0.75f);
}

TEST_F(PictureTest, ANewValue_ShowsWithoutACompile) {
    Load("flat.klsl", "class Flat { input vec3 color;"
                      " void Shade() { accumulate(o_color, color); } }");
    IShader* const flat = Make("Flat");
    AddSquare(MakeSurface(flat));
    Render();
    ExpectColor(GetPixel(), 0.0f, 0.0f, 0.0f);
    const std::int64_t compiled = context->GetStatistics().shadersCompiled;
    const std::int64_t linked = context->GetStatistics().programsLinked;
    for (int i = 1; i <= 5; ++i) {
        const float value = 0.125f * static_cast<float>(i);
        ASSERT_TRUE(flat->SetParameter(nullptr, "color", Vector3f(value, 1.0f, 0.0f)));
        Render();
        ExpectColor(GetPixel(), value, 1.0f, 0.0f);
    }
    EXPECT_EQ(context->GetStatistics().shadersCompiled, compiled);
    EXPECT_EQ(context->GetStatistics().programsLinked, linked);
}

TEST_F(PictureTest, AChangeOfStructure_CompilesOnce) {
    Load("coords.klsl", "class Coords { coord vec2 uv;"
                        " void Shade() { accumulate(o_color, vec3(uv, 0.0)); } }");
    IShader* const coords = Make("Coords");
    ASSERT_TRUE(coords->SetCoord(nullptr, "uv", "Coord"));
    IEffect* const effect = manager.CreateEffectSurface();
    ASSERT_TRUE(effect->SetRoot(coords));
    OpenKL::IPrimitive* const square = AddSquare(effect);
    const float second[] = {0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f};
    square->SetAttribute("a_Second", 2, second, 4);
    Render();
    ExpectColor(GetPixel(0, 0), 0.125f, 0.125f, 0.0f);
    ExpectColor(GetPixel(3, 1), 0.875f, 0.375f, 0.0f);
    const std::int64_t linked = context->GetStatistics().programsLinked;
    ASSERT_TRUE(coords->SetCoord(nullptr, "uv", "Second"));
    Render();
    ExpectColor(GetPixel(3, 1), 0.5f, 0.5f, 0.0f);
    EXPECT_EQ(context->GetStatistics().programsLinked, linked + 1);
}

TEST_F(PictureTest, AMistakeThatOnlyTheCompilerFinds_IsToldWithTheLineOfTheSource) {
    Load("folder/wrong.klsl", "class Wrong {\n"
                              "    input float gain = 1.0;\n"
                              "    void Shade() {\n"
                              "        accumulate(o_color, vec3(gian));\n"
                              "    }\n"
                              "}\n");
    IEffect* const effect = MakeSurface(Make("Wrong"));
    Result result;
    EXPECT_FALSE(effect->Update(&result));
    ASSERT_FALSE(result.IsEmpty());
    EXPECT_EQ(result.GetLast().rfind("wrong.klsl:4: error: ", 0), 0u) << result.GetLast();
    EXPECT_NE(result.GetLast().find("'gian'"), std::string::npos);
    EXPECT_FALSE(effect->IsCompiled());
}

TEST_F(PictureTest, AValueOfOnePrimitive_ShowsThereAlone) {
    Load("flat.klsl", "class Flat { input float gain = 0.25;"
                      " void Shade() { accumulate(o_color, vec3(gain)); } }");
    IShader* const flat = Make("Flat");
    IEffect* const effect = manager.CreateEffectSurface();
    effect->SetRoot(flat);
    AddSquare(effect, 0.0f, 2.0f);
    OpenKL::IPrimitive* const right = context->CreatePrimitive();
    OpenKL::SetMesh(*right, OpenKL::MakePlane(2.0f, 4.0f));
    Matrix44f place;
    place(0, 3) = 3.0f;
    place(1, 3) = 2.0f;
    right->SetTransform(place);
    IReferenceEffect* const reference = effect->CreateReference(right);
    ILocalParameter* const local = reference->AcquireParameterLocal(flat, "gain");
    ASSERT_NE(local, nullptr);
    EXPECT_TRUE(local->Set(0.75f));
    Render();
    ExpectColor(GetPixel(1), 0.25f, 0.25f, 0.25f);
    ExpectColor(GetPixel(2), 0.75f, 0.75f, 0.75f);
}

TEST_F(PictureTest, AnArray_IsReadAtAnyLengthWithoutACompile) {
    Load("sum.klsl", "class Sum { input float values[] = float[](0.125, 0.25);\n"
                     " void Shade() { float sum = 0.0;\n"
                     "  for (int i = 0; i < values.length; i++) { sum += values[i]; }\n"
                     "  accumulate(o_color, vec3(sum)); } }");
    IShader* const sum = Make("Sum");
    AddSquare(MakeSurface(sum));
    Render();
    ExpectColor(GetPixel(), 0.375f, 0.375f, 0.375f);
    const std::int64_t compiled = context->GetStatistics().shadersCompiled;
    const std::vector<float> ones(300, 1.0f);
    ASSERT_TRUE(sum->GetParameter("values")->SetLength(300));
    ASSERT_TRUE(sum->SetParameter(nullptr, "values", ones.data(), 300));
    Render();
    ExpectColor(GetPixel(), 300.0f, 300.0f, 300.0f);
    EXPECT_EQ(context->GetStatistics().shadersCompiled, compiled);
}

TEST_F(PictureTest, StaticInputsAndMembersAndFreeFunctions_WorkTogether) {
    Load("library.klsl", "float half(float x) { return Scale.Of(x) * 0.5; }\n"
                         "class Scale { static input float by = 2.0;\n"
                         " static float Of(float x) { return x * by; } }\n"
                         "class User { const float weight = 0.25; float count = 3.0;\n"
                         " void Shade() { count += 1.0;\n"
                         "  accumulate(o_color, vec3(half(weight), count, Scale.Of(1.0))); } }");
    AddSquare(MakeSurface(Make("User")));
    Render();
    ExpectColor(GetPixel(), 0.25f, 4.0f, 2.0f);
    ASSERT_TRUE(manager.GetPrototypeShader("Scale", nullptr)->SetParameter("by", 4.0f));
    Render();
    ExpectColor(GetPixel(), 0.5f, 4.0f, 4.0f);
}

TEST_F(PictureTest, APrefix_RunsAheadOfTheSurface) {
    manager.AddRayAttribute(Effects::kType_Float, "weight");
    Load("fog.klsl", "class Fog { input float density = 0.5;\n"
                     " void Shade() { weight = 1.0 - density;\n"
                     "  accumulate(o_color, vec3(density, 0.0, 0.0)); } }\n"
                     "class Flat { void Shade() { accumulate(o_color, vec3(0.0, weight, 0.0)); } }");
    AddSquare(MakeSurface(Make("Flat")));
    IShader* const fog = Make("Fog");
    IEffect* const prefix = manager.CreateEffectPrefix();
    ASSERT_TRUE(prefix->SetRoot(fog));
    OpenKL::IPrimitive* const primitive = context->CreatePrimitive();
    prefix->CreateReference(primitive);
    context->SetPrefixPrimitive(primitive);
    Render();
    ExpectColor(GetPixel(), 0.5f, 0.5f, 0.0f);
    ASSERT_TRUE(fog->SetParameter(nullptr, "density", 0.25f));
    Render();
    ExpectColor(GetPixel(), 0.25f, 0.75f, 0.0f);
}

TEST_F(PictureTest, AnAttachmentIndex_MovesTheOutputWithoutACompile) {
    Load("flat.klsl", "class Flat { void Shade() { accumulate(o_color, vec3(1.0)); } }");
    AddSquare(MakeSurface(Make("Flat")));
    Render();
    ExpectColor(GetPixel(), 1.0f, 1.0f, 1.0f);
    const std::int64_t compiled = context->GetStatistics().shadersCompiled;
    manager.SetOutputAttachmentIndex("o_color", 7);
    Render();
    ExpectColor(GetPixel(), 0.0f, 0.0f, 0.0f);
    manager.SetOutputAttachmentIndex("o_color", 0);
    Render();
    ExpectColor(GetPixel(), 1.0f, 1.0f, 1.0f);
    EXPECT_EQ(context->GetStatistics().shadersCompiled, compiled);
}

TEST_F(PictureTest, ATexture_IsReadThroughItsSampler) {
    Load("image.klsl", "class Image { input sampler2D image; coord vec2 uv;"
                       " void Shade() { accumulate(o_color, texture2D(image, uv).xyz); } }");
    const float texels[] = {1.0f, 0.0f, 0.0f, 1.0f, 0.0f, 1.0f, 0.0f, 1.0f,
                            0.0f, 0.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f};
    IKLTexImage2D* const image = context->CreateTexImage2D();
    ASSERT_TRUE(image->Init(2, 2, IKLTexImage2D::kFormat_RGBA32F, KL_REPEAT, KL_NEAREST, KL_NEAREST,
                            texels, false));
    IShader* const shader = Make("Image");
    shader->SetCoord(nullptr, "uv", "Coord");
    ASSERT_TRUE(shader->SetParameter(nullptr, "image", image->GetTexture()));
    AddSquare(MakeSurface(shader));
    Render();
    ExpectColor(GetPixel(0, 0), 1.0f, 0.0f, 0.0f);
    ExpectColor(GetPixel(3, 0), 0.0f, 1.0f, 0.0f);
    ExpectColor(GetPixel(0, 3), 0.0f, 0.0f, 1.0f);
    manager.Shutdown();
    context->DestroyTexImage2D(image);
}

TEST_F(PictureTest, MistakesAreMended_AndThePictureComesBack) {
    Load("first.klsl", "class First { void Shade() { accumulate(o_color, vec3(1.0)); } }");
    Load("second.klsl", "class Second { void Shade() { accumulate(o_color, wrong); } }");
    IEffect* const effect = MakeSurface(Make("First"));
    AddSquare(effect);
    Render();
    ASSERT_TRUE(effect->SetRoot(Make("Second")));
    EXPECT_FALSE(effect->Update(nullptr));
    ASSERT_TRUE(effect->SetRoot(Make("First")));
    Render();
    ExpectColor(GetPixel(), 1.0f, 1.0f, 1.0f);
}

TEST_F(PictureTest, AShaderWithAGraphOfItsOwn_IsLinkedAndFollowsItsValues) {
    Load("graphs.klsl", R"(
        interface IShade { vec3 shade(); }
        class Leaf : IShade {
            input vec3 color = vec3(0.25, 0.5, 1.0);
            float half = 0.5;
            vec3 shade() { return color * half; }
        }
        class Link : IShade {
            input IShade next;
            coord vec2 uv;
            vec3 shade() { return next.shade() * uv.x; }
        }
        class Root {
            input IShade body;
            void Shade() { accumulate(o_color, body.shade()); }
        })");
    IShader* const leaf = Make("Leaf");
    IShader* const link = Make("Link");
    IShader* const root = Make("Root");
    link->SetCoord(nullptr, "uv", "Coord");
    ASSERT_TRUE(link->SetParameter(nullptr, "next", leaf));
    ASSERT_NE(link->CreateGraphKind0(), nullptr);
    ASSERT_TRUE(root->SetParameter(nullptr, "body", link));
    AddSquare(MakeSurface(root));
    Render();
    ExpectColor(GetPixel(3), 0.125f * 0.875f, 0.25f * 0.875f, 0.5f * 0.875f);
    ASSERT_TRUE(leaf->SetParameter(nullptr, "color", Vector3f(1.0f, 0.0f, 0.0f)));
    Render();
    ExpectColor(GetPixel(3), 0.5f * 0.875f, 0.0f, 0.0f);
    // Another shader in the graph that is linked.
    IShader* const other = Make("Leaf");
    ASSERT_TRUE(link->SetParameter(nullptr, "next", other));
    Render();
    ExpectColor(GetPixel(3), 0.125f * 0.875f, 0.25f * 0.875f, 0.5f * 0.875f);
    // Without a graph of its own its code is part of the other one.
    ASSERT_TRUE(root->SetParameter(nullptr, "body", static_cast<IShader*>(nullptr)));
    ASSERT_TRUE(link->DestroyGraphKind0());
    ASSERT_TRUE(root->SetParameter(nullptr, "body", link));
    Render();
    ExpectColor(GetPixel(3), 0.125f * 0.875f, 0.25f * 0.875f, 0.5f * 0.875f);
}

TEST_F(PictureTest, GraphsOfShadersOwn_MayHoldTheSameShadersAndClasses) {
    Load("shared.klsl", R"(
        float twice(float x) { return 2.0 * x; }
        interface IShade { vec3 shade(); }
        class Leaf : IShade {
            input vec3 color = vec3(0.25, 0.5, 1.0);
            static float gain = 0.25;
            float half = 0.5;
            static float scale(float x) { return twice(x) * gain; }
            vec3 shade() { return color * half * Leaf.scale(1.0); }
        }
        class Halves {
            static float half = 0.5;
            static float get() { return half; }
        }
        class Link : IShade {
            input IShade next;
            vec3 shade() { return next.shade() * Halves.get() * Leaf.scale(4.0); }
        }
        class Pair : IShade {
            input IShade left;
            input IShade right;
            vec3 shade() { return left.shade() + right.shade(); }
        }
        class Root {
            input IShade left;
            input IShade right;
            void Shade() { accumulate(o_color, left.shade() + right.shade() * Leaf.scale(2.0)); }
        })");
    IShader* const leaf = Make("Leaf");
    IShader* const link = Make("Link");
    IShader* const other = Make("Link");
    IShader* const pair = Make("Pair");
    ASSERT_TRUE(link->SetParameter(nullptr, "next", leaf));
    ASSERT_TRUE(other->SetParameter(nullptr, "next", leaf));
    ASSERT_TRUE(pair->SetParameter(nullptr, "left", link));
    ASSERT_TRUE(pair->SetParameter(nullptr, "right", other));
    const auto render = [&] {
        IShader* const root = Make("Root");
        EXPECT_TRUE(root->SetParameter(nullptr, "left", pair));
        EXPECT_TRUE(root->SetParameter(nullptr, "right", leaf));
        IEffect* const effect = MakeSurface(root);
        OpenKL::IPrimitive* const square = AddSquare(effect);
        Render();
        EXPECT_TRUE(effect->IsCompiled()) << console.GetAll();
        ExpectColor(GetPixel(), 0.1875f, 0.375f, 0.75f);
        manager.DestroyEffectSurface(effect);
        context->DestroyPrimitive(square);
    };
    render();
    for (IShader* shader : {link, pair, other, leaf}) {
        ASSERT_NE(shader->CreateGraphKind0(), nullptr);
        render();
    }
}

} // namespace
} // namespace Tolen::Tests
