#include "EffectsFixture.h"
#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IReferenceEffect.h"

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
class Paint {
    input vec3 color = vec3(0.5);
    input float list[] = float[](1.0);
    void Shade() { accumulate(o_color, color * list[0]); }
}
)";

class ReferenceEffectTest : public EffectsFixture {
protected:
    ReferenceEffectTest() {
        Load(kSource);
        root = Make("Paint");
        effect = MakeSurface(root);
        reference = effect->CreateReference(&primitive);
        EXPECT_TRUE(effect->Update(nullptr));
    }

    std::string GetColor(const RecordingPrimitive& of) const {
        for (const auto& [name, value] : of.GetUniforms()) {
            if (name.rfind("color_k", 0) == 0) {
                return value;
            }
        }
        return "";
    }

    bool SetColor(float x) {
        return root->SetParameter(nullptr, "color", Vector3f(x, 0.0f, 0.0f));
    }

    RecordingPrimitive primitive{context};
    RecordingPrimitive second{context};
    IShader* root = nullptr;
    IEffect* effect = nullptr;
    IReferenceEffect* reference = nullptr;
};

TEST_F(ReferenceEffectTest, ANewOne_IgnoresValuesAndGetsEverythingAtItsFirstUpdate) {
    IReferenceEffect* const late = effect->CreateReference(&second);
    SetColor(1.0f);
    SetColor(2.0f);
    context.GetLog().Clear();
    EXPECT_TRUE(late->Update(nullptr));
    EXPECT_EQ(GetColor(second), "vec3 (2,0,0)");
    EXPECT_EQ(GetColor(primitive), "vec3 (0.5,0.5,0.5)");
}

TEST_F(ReferenceEffectTest, EveryChange_IsQueuedAndRunInOrder) {
    SetColor(1.0f);
    SetColor(2.0f);
    SetColor(3.0f);
    context.GetLog().Clear();
    Listener<IReferenceEffect*> updated;
    reference->AddListenerUpdate(*updated);
    EXPECT_TRUE(reference->Update(nullptr));
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 3);
    EXPECT_EQ(updated.count, 1);
    context.GetLog().Clear();
    EXPECT_TRUE(reference->Update(nullptr));
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 0);
}

TEST_F(ReferenceEffectTest, WhileStopped_ChangesQueueUp) {
    reference->SetStopUpdate(true);
    SetColor(1.0f);
    SetColor(2.0f);
    context.GetLog().Clear();
    EXPECT_TRUE(reference->Update(nullptr));
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 0);
    reference->SetStopUpdate(false);
    EXPECT_TRUE(reference->Update(nullptr));
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 2);
    EXPECT_EQ(GetColor(primitive), "vec3 (2,0,0)");
}

TEST_F(ReferenceEffectTest, AWriteThatFails_LeavesTheWholeQueue) {
    SetColor(1.0f);
    SetColor(2.0f);
    context.GetLog().FailNth("SetUniform", 2);
    EXPECT_FALSE(reference->Update(nullptr));
    context.GetLog().Clear();
    EXPECT_TRUE(reference->Update(nullptr));
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 2);
}

TEST_F(ReferenceEffectTest, AnApplyThatFails_IsDueAgain) {
    context.GetLog().FailNth("SetUniform", 1);
    IReferenceEffect* const late = effect->CreateReference(&second);
    EXPECT_FALSE(late->Update(nullptr));
    EXPECT_TRUE(late->Update(nullptr));
    EXPECT_EQ(GetColor(second), "vec3 (0.5,0.5,0.5)");
}

TEST_F(ReferenceEffectTest, Update_BeforeTheCompile_IsFollowedByAFullApply) {
    ASSERT_TRUE(effect->SetRoot(root));
    primitive.ClearUniforms();
    EXPECT_TRUE(reference->Update(nullptr));
    EXPECT_EQ(GetColor(primitive), "");
    EXPECT_TRUE(effect->Update(nullptr));
    EXPECT_EQ(GetColor(primitive), "vec3 (0.5,0.5,0.5)");
}

TEST_F(ReferenceEffectTest, AValueOfOnePrimitive_StandsInForTheSharedOneThere) {
    effect->CreateReference(&second);
    ILocalParameter* const local = reference->AcquireParameterLocal(root, "color");
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(reference->AcquireParameterLocal(root, "color"), local);
    EXPECT_TRUE(reference->ExistsParameterLocal(root, "color"));
    EXPECT_TRUE(local->Set(Vector3f(9.0f, 9.0f, 9.0f)));
    EXPECT_TRUE(effect->Apply(nullptr));
    // A value of one primitive is written under the name as declared, at the same location.
    EXPECT_EQ(primitive.GetUniform("color"), "vec3 (9,9,9)");
    EXPECT_EQ(GetColor(second), "vec3 (0.5,0.5,0.5)");
    primitive.ClearUniforms();
    SetColor(1.0f);
    EXPECT_TRUE(effect->Update(nullptr));
    EXPECT_EQ(primitive.GetUniform("color"), "vec3 (9,9,9)");
    EXPECT_EQ(GetColor(primitive), "");
    EXPECT_EQ(GetColor(second), "vec3 (1,0,0)");
    reference->ReleaseParameterLocal(local);
    EXPECT_FALSE(reference->ExistsParameterLocal(root, "color"));
    EXPECT_TRUE(effect->Apply(nullptr));
    EXPECT_EQ(GetColor(primitive), "vec3 (1,0,0)");
}

TEST_F(ReferenceEffectTest, AcquireParameterLocal_OfWhatCantBeLocal_AnswersNull) {
    EXPECT_EQ(reference->AcquireParameterLocal(root, "nothing"), nullptr);
    EXPECT_EQ(reference->AcquireParameterLocal(root, "list"), nullptr);
    EXPECT_EQ(reference->AcquireParameterLocal(nullptr, "color"), nullptr);
    EXPECT_EQ(reference->AcquireParameterLocal(Make("Paint"), "color"), nullptr);
    EXPECT_FALSE(reference->ExistsParameterLocal(root, "nothing"));
}

TEST_F(ReferenceEffectTest, LocalValues_GoWithTheShader) {
    ASSERT_NE(reference->AcquireParameterLocal(root, "color"), nullptr);
    manager.DestroyShader(root);
    reference->ReleaseParameterLocalAll();
}

TEST_F(ReferenceEffectTest, AShaderThatDies_TakesItsQueuedWritesAlong) {
    IReferenceEffect* const held = effect->CreateReference(&second);
    EXPECT_TRUE(held->Update(nullptr));
    SetColor(4.0f);
    manager.DestroyShader(root);
    reference->Update(nullptr);
    held->Update(nullptr);
}

TEST_F(ReferenceEffectTest, TheEndOfTheEffect_IsToldOnce) {
    Listener<IReferenceEffect*> deleted;
    reference->AddListenerDelete(*deleted);
    effect->SetRoot(nullptr);
    EXPECT_EQ(deleted.count, 1);
}

TEST_F(ReferenceEffectTest, DestroyReference_OfAStranger_DoesNothing) {
    effect->DestroyReference(nullptr);
    effect->DestroyReference(reference);
    effect->DestroyReference(reference);
    SetColor(5.0f);
    EXPECT_TRUE(effect->Update(nullptr));
    EXPECT_EQ(GetColor(primitive), "vec3 (0.5,0.5,0.5)");
}

} // namespace
} // namespace Tolen::Effects::Tests
