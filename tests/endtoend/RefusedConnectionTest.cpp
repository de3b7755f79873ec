// A live client connects what can't be connected: the answer is no, with a message, and the picture
// stays the one of the last good state.

#include "endtoend/PictureFixture.h"

#include "TolenEffects/IParameter.h"

#include <functional>

namespace Tolen::Tests {
namespace {

using Effects::IEffect;
using Effects::IShader;

class RefusedConnection : public PictureFixture {
protected:
    RefusedConnection() {
        Load("nodes.klsl", R"(interface IColor { vec3 Color(); }
interface IScalar { float Scalar(); }
class Plain : IColor { input vec3 value = vec3(0.25); vec3 Color() { return value; } }
class Half : IScalar { float Scalar() { return 0.5; } }
class Tint : IColor {
    input IColor base;
    input IScalar gain = Half();
    vec3 Color() { return base.Color() * gain.Scalar(); }
}
class Sum : IColor {
    input IColor layers[];
    vec3 Color() {
        vec3 sum = vec3(0.0);
        for (int i = 0; i < layers.length; ++i) { sum += layers[i].Color(); }
        return sum;
    }
}
class Faulty : IColor { vec3 Color() { return vec3(nothing); } }
class Lit { input IColor color; void Shade() { accumulate(o_color, color.Color()); } }
)");
        root = Make("Lit");
        sum = Make("Sum");
        tint = Make("Tint");
        plain = Make("Plain");
        EXPECT_TRUE(sum->GetParameter("layers")->SetLength(2));
        EXPECT_TRUE(sum->SetParameter(nullptr, "layers", tint, 0));
        EXPECT_TRUE(sum->SetParameter(nullptr, "layers", plain, 1));
        EXPECT_TRUE(tint->SetParameter(nullptr, "base", plain));
        EXPECT_TRUE(root->SetParameter(nullptr, "color", sum));
        effect = manager.CreateEffectSurface();
        EXPECT_TRUE(effect->SetRoot(root));
        AddSquare(effect);
        Render();
        ExpectGray(0.375f);
    }

    void ExpectGray(float value) const {
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_FLOAT_EQ(GetPixel()[i], value);
        }
    }

    IShader* root;
    IShader* sum;
    IShader* tint;
    IShader* plain;
    IEffect* effect;
};

TEST_F(RefusedConnection, LeavesThePictureAndItsProgramsAsTheyAre) {
    IShader* const half = Make("Half");
    struct Case {
        const char* name;
        std::function<bool(Result&)> connect;
        const char* message;
    };
    const Case cases[] = {
        {"another interface",
         [&](Result& result) { return root->SetParameter(&result, "color", half); },
         "Input type mismatch. Expected \"IColor\" but got \"IScalar::Half\""},
        {"another interface in a cell",
         [&](Result& result) { return sum->SetParameter(&result, "layers", half, 1); },
         "Interface mismatch. Expected \"IColor\" but got \"IScalar::Half\""},
        {"no such input",
         [&](Result& result) { return root->SetParameter(&result, "colour", plain); }, "colour"},
        {"a cycle", [&](Result& result) { return tint->SetParameter(&result, "base", sum); },
         "Input cycle. \"IColor::Sum\" already depends on this input's shader"},
        {"a cycle through a cell",
         [&](Result& result) { return sum->SetParameter(&result, "layers", sum, 0); },
         "Input cycle. \"IColor::Sum\" already depends on this input's shader"},
        {"no such cell",
         [&](Result& result) { return sum->SetParameter(&result, "layers", plain, 2); }, "layers"},
        {"a value", [&](Result& result) { return root->SetParameter(&result, "color", 1.0f); },
         "color"},
    };
    const std::int64_t compiled = context->GetStatistics().shadersCompiled;
    for (const Case& refused : cases) {
        SCOPED_TRACE(refused.name);
        console.Clear();
        Result result;
        EXPECT_FALSE(refused.connect(result));
        const std::string told =
            (result.IsEmpty() ? std::string() : result.GetLast()) + console.GetAll();
        EXPECT_NE(told.find(refused.message), std::string::npos) << told;
        Render();
        ExpectGray(0.375f);
    }
    EXPECT_EQ(context->GetStatistics().shadersCompiled, compiled);
    ASSERT_TRUE(plain->SetParameter(nullptr, "value", Vector3f(0.5f, 0.5f, 0.5f)));
    Render();
    ExpectGray(0.75f);
}

TEST_F(RefusedConnection, AHoleIsToldAtEachUpdateUntilItIsFilled) {
    ASSERT_TRUE(sum->SetParameter(nullptr, "layers", static_cast<IShader*>(nullptr), 1));
    for (int i = 0; i < 2; ++i) {
        Result result;
        EXPECT_FALSE(effect->Update(&result)) << i;
        EXPECT_FALSE(effect->IsCompiled());
        EXPECT_FALSE(result.IsEmpty());
    }
    ASSERT_TRUE(sum->SetParameter(nullptr, "layers", plain, 1));
    Render();
    ExpectGray(0.375f);
}

TEST_F(RefusedConnection, CodeThatDoesNotCompileIsToldWithItsLineAndCanBeTakenOut) {
    IShader* const faulty = Make("Faulty");
    ASSERT_TRUE(root->SetParameter(nullptr, "color", faulty));
    Result result;
    EXPECT_FALSE(effect->Update(&result));
    ASSERT_FALSE(result.IsEmpty());
    EXPECT_EQ(result.GetLast().rfind("nodes.klsl:18: error: ", 0), 0u) << result.GetLast();
    ASSERT_TRUE(root->SetParameter(nullptr, "color", sum));
    Render();
    ExpectGray(0.375f);
}

} // namespace
} // namespace Tolen::Tests
