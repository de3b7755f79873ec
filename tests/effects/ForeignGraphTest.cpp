#include "EffectsFixture.h"
#include "GoldenFile.h"
#include "Graph.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IReferenceEffect.h"
#include "TolenEffects/IReferenceShader.h"

#include <algorithm>
#include <functional>

/// Shaders that keep a graph of their own when another graph uses them.

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
interface IShade { vec3 Shade(); float Weight(int i); }
class Leaf : IShade {
    input float level = 0.5;
    coord vec2 uv;
    float half;
    output vec4 o_extra;
    vec3 Shade() { half = 0.5; accumulate(o_extra, vec4(1.0)); return vec3(level * half * uv.x); }
    float Weight(int i) { return level; }
}
class Plain : IShade {
    input float level = 0.25;
    vec3 Shade() { return vec3(level); }
    float Weight(int i) { return level; }
}
class Link : IShade {
    input IShade next;
    float factor = 2.0;
    vec3 Shade() { return next.Shade() * factor; }
    float Weight(int i) { return next.Weight(i) * factor; }
}
class Root {
    input IShade body;
    void Shade() { accumulate(o_color, body.Shade() * body.Weight(1)); }
}
)";

class ForeignGraphTest : public EffectsFixture {
protected:
    ForeignGraphTest() { Load(kSource); }

    void Connect(IShader* shader, const char* input, IShader* value) {
        Result result;
        EXPECT_TRUE(shader->SetParameter(&result, input, value)) << result.GetLast();
    }

    /// A root over a link over a leaf; the link keeps a graph of its own.
    void MakeScene() {
        leaf = Make("Leaf");
        leaf->SetCoord(nullptr, "uv", "Coord");
        link = Make("Link");
        Connect(link, "next", leaf);
        own = link->CreateGraphKind0();
        own->SetName("Foreign");
        root = Make("Root");
        Connect(root, "body", link);
        effect = MakeSurface(root);
        effect->SetName("Using");
    }

    bool IsCurrent() {
        Result result;
        const bool updated = effect->Update(&result) && effect->IsCompiled();
        return updated && own->IsCompiled();
    }

    /// The text of the last compile of the graph @p name; its API shaders end in a count, unlike
    /// those that the effect makes around it.
    std::string GetTextOfGraph(const std::string& name) {
        std::string text;
        for (const RecordingShader* shader : context.GetShaders()) {
            const std::string shaderName = shader->GetName();
            if (shaderName.rfind(name + "_k", 0) == 0 && shaderName.back() >= '0' &&
                shaderName.back() <= '9') {
                text = shader->GetText();
            }
        }
        return text;
    }

    bool Has(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    IShader* leaf = nullptr;
    IShader* link = nullptr;
    IShader* root = nullptr;
    IGraph* own = nullptr;
    IEffect* effect = nullptr;
};

TEST_F(ForeignGraphTest, TheTexts_DeclareOnOneSideAndDefineOnTheOther) {
    MakeScene();
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    ExpectGolden("foreign_using.txt", GetTextOfGraph("Using"));
    ExpectGolden("foreign_own.txt", GetTextOfGraph("Foreign"));
}

TEST_F(ForeignGraphTest, TheUser_HasPrototypesOnlyAndCallsTheConstructor) {
    MakeScene();
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    const std::string shade = link->GetMethodNameMangled("Shade");
    const std::string constructor = link->GetConstructorName();
    const std::string user = GetTextOfGraph("Using");
    EXPECT_TRUE(Has(user, "vec3 " + shade + "();\n"));
    EXPECT_FALSE(Has(user, "vec3 " + shade + "()\n{"));
    EXPECT_TRUE(Has(user, "void " + constructor + "();\n"));
    EXPECT_TRUE(Has(user, "\t" + constructor + "();\n"));
    EXPECT_FALSE(Has(user, leaf->GetMethodNameMangled("Shade")));
    const std::string foreign = GetTextOfGraph("Foreign");
    EXPECT_TRUE(Has(foreign, "vec3 " + shade + "()\n{"));
    EXPECT_TRUE(Has(foreign, "void " + constructor + "()\n{"));
    EXPECT_TRUE(Has(foreign, "float " + link->GetMethodNameMangled("Weight") + "(int i)\n{"));
    // What is no part of its interface carries the graph's key, as other texts may have it too.
    const std::string key = own->GetNameMangled().substr(own->GetName().size());
    EXPECT_TRUE(Has(foreign, "vec3 " + leaf->GetMethodNameMangled("Shade") + key + "()\n{"));
    EXPECT_TRUE(Has(foreign, "return (" + leaf->GetMethodNameMangled("Shade") + key + "()*"));
    EXPECT_TRUE(Has(foreign, "void " + own->GetConstructorStatic() + "()\n{"));
    EXPECT_TRUE(Has(user, "void " + own->GetConstructorStatic() + "();\n"));
    EXPECT_TRUE(Has(user, "\t" + own->GetConstructorStatic() + "();\n"));
}

TEST_F(ForeignGraphTest, AMethodThatOnlyTheUserCalls_StaysInItsText) {
    // Its constructor has nothing to do, and is called by that of the root all the same.
    leaf = link = Make("Plain");
    own = link->CreateGraphKind0();
    own->SetName("Foreign");
    root = Make("Root");
    Connect(root, "body", link);
    effect = MakeSurface(root);
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    const std::string foreign = GetTextOfGraph("Foreign");
    EXPECT_TRUE(Has(foreign, "float " + link->GetMethodNameMangled("Weight") + "(int i)\n{"));
    EXPECT_TRUE(Has(foreign, "void " + link->GetConstructorName() + "()\n{"));
}

TEST_F(ForeignGraphTest, Values_ArriveWithoutACompile) {
    MakeScene();
    RecordingPrimitive primitive(context);
    IReferenceEffect* const reference = effect->CreateReference(&primitive);
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    const auto find = [&primitive](const std::string& part) {
        for (const auto& [name, value] : primitive.GetUniforms()) {
            if (name.rfind(part, 0) == 0) {
                return value;
            }
        }
        return std::string("none");
    };
    EXPECT_EQ(find("level"), "float 0.5");
    EXPECT_TRUE(leaf->SetParameter(nullptr, "level", 0.75f));
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_TRUE(manager.Update(nullptr));
    EXPECT_EQ(find("level"), "float 0.75");
    // An update that waits for a shader which goes is forgotten.
    EXPECT_TRUE(leaf->SetParameter(nullptr, "level", 1.0f));
    manager.DestroyShader(leaf);
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_FALSE(effect->Update(nullptr));
    Connect(link, "next", Make("Plain"));
    EXPECT_TRUE(IsCurrent()) << console.GetAll();
    effect->DestroyReference(reference);
}

TEST_F(ForeignGraphTest, AChangeOfStructure_CompilesBothAndLinksAgain) {
    MakeScene();
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    const std::string before = GetTextOfGraph("Foreign");
    ASSERT_TRUE(Has(before, "Coord"));
    EXPECT_TRUE(leaf->SetCoord(nullptr, "uv", "Other"));
    EXPECT_FALSE(own->IsCompiled());
    EXPECT_FALSE(effect->IsCompiled());
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    EXPECT_TRUE(Has(GetTextOfGraph("Foreign"), "Other"));
    Connect(link, "next", Make("Plain"));
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_TRUE(IsCurrent()) << console.GetAll();
}

TEST_F(ForeignGraphTest, AChangeOfTheGraphAlone_MakesTheProgramStale) {
    MakeScene();
    EXPECT_TRUE(own->AcquireAttribute(kType_Vec2, "Coord", kTransformationCoord_Coord));
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    // The attribute stays, as the leaf has it too, so that nothing else tells of it.
    EXPECT_TRUE(own->ReleaseAttribute("Coord"));
    EXPECT_FALSE(own->IsCompiled());
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_TRUE(IsCurrent()) << console.GetAll();
}

TEST_F(ForeignGraphTest, AGraphThatGoesWhileItIsUsed_LeavesItsShaderToTheUser) {
    MakeScene();
    ASSERT_TRUE(IsCurrent()) << console.GetAll();
    EXPECT_TRUE(checks.IsEmpty());
    EXPECT_TRUE(link->DestroyGraphKind0());
    EXPECT_TRUE(checks.Contains("false", "Source/ReferenceShaderGraph"));
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_TRUE(effect->Update(nullptr)) << console.GetAll();
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_TRUE(Has(GetTextOfGraph("Using"), "vec3 " + link->GetMethodNameMangled("Shade") + "()\n{"));
    EXPECT_TRUE(Has(GetTextOfGraph("Using"), "vec3 " + leaf->GetMethodNameMangled("Shade") + "()\n{"));
}

TEST_F(ForeignGraphTest, DestroyingThings_IsSurvivedInEveryOrder) {
    using Step = std::function<void()>;
    const Step steps[] = {
        [this] { manager.DestroyShader(leaf); },
        [this] { manager.DestroyShader(link); },
        [this] { manager.DestroyShader(root); },
        [this] { manager.DestroyEffectSurface(effect); },
    };
    constexpr int kSteps = 4;
    int order[kSteps] = {0, 1, 2, 3};
    do {
        MakeScene();
        ASSERT_TRUE(IsCurrent()) << console.GetAll();
        for (const int step : order) {
            steps[step]();
            manager.Update(nullptr);
        }
        EXPECT_FALSE(console.Contains("Not Found"));
    } while (std::next_permutation(order, order + kSteps));
}

TEST_F(ForeignGraphTest, AShaderWithItsOwnGraph_MayBeTheRootToo) {
    leaf = Make("Plain");
    own = leaf->CreateGraphKind0();
    Graph graph;
    ASSERT_TRUE(graph.Init(&manager, IKLShader::kType_Ray, leaf, "graph"));
    EXPECT_EQ(graph.GetReferenceShader()->GetGraph(), &graph);
    EXPECT_NE(graph.GetReferenceShader()->GetReferencePrototype(), nullptr);
    EXPECT_TRUE(graph.GetGraphsForeign().empty());
    EXPECT_TRUE(graph.Compile(nullptr));
    graph.Shutdown();
}

} // namespace
} // namespace Tolen::Effects::Tests
