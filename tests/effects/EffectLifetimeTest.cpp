#include "EffectsFixture.h"
#include "OnceListener.h"
#include "TolenEffects/IGraph.h"
#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IReferenceEffect.h"
#include "TolenEffects/IReferenceParameter.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

/// Listeners that change or destroy what calls them.

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
class Paint {
    input vec3 color = vec3(0.5);
    coord vec2 uv;
    void Shade() { accumulate(o_color, color * uv.x); }
}
class Plain { void Shade() { accumulate(o_color, vec3(1.0)); } }
)";

class EffectLifetimeTest : public EffectsFixture {
protected:
    EffectLifetimeTest() {
        Load(kSource);
        root = MakePaint();
        effect = MakeSurface(root);
        reference = effect->CreateReference(&primitive);
    }

    IShader* MakePaint() {
        IShader* const shader = Make("Paint");
        EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Coord"));
        return shader;
    }

    /// The reference of the root's color, and with it the graph.
    IReferenceParameter* GetColor() {
        return reference->AcquireParameterLocal(root, "color")->GetReferenceParameter();
    }

    void Destroy() { manager.DestroyEffectSurface(effect); }

    bool HasEffects() {
        bool any = false;
        auto visit = [&any](IEffect*) { return any = true; };
        auto visitor = FastDelegate1<IEffect*, bool>::Borrow(visit);
        manager.VisitEffectsSurface(visitor);
        return any;
    }

    RecordingPrimitive primitive{context};
    RecordingPrimitive second{context};
    IShader* root = nullptr;
    IEffect* effect = nullptr;
    IReferenceEffect* reference = nullptr;
};

TEST_F(EffectLifetimeTest, AnyListenerOfAnEffect_MayDestroyIt) {
    using Add = std::function<void(FastDelegate1<IEffect*, bool>&)>;
    using Call = std::function<bool()>;
    const Call update = [this] { return effect->Update(nullptr); };
    const Call setRoot = [this] { return effect->SetRoot(root); };
    const struct {
        const char* name;
        Add add;
        Call call;
        bool answer;
    } cases[] = {
        {"Delete", [&](auto& l) { effect->AddListenerDelete(l); },
         [&] { return effect->SetRoot(nullptr); }, false},
        {"ChangeStructure", [&](auto& l) { effect->AddListenerChangeStructure(l); }, setRoot, true},
        {"Compile", [&](auto& l) { effect->AddListenerCompile(l); }, update, false},
        {"Update", [&](auto& l) { effect->AddListenerUpdate(l); }, update, false},
        {"ChangeAttribute", [&](auto& l) { effect->AddListenerChangeAttribute(l); }, setRoot,
         false},
        {"Apply", [&](auto& l) { effect->AddListenerApply(l); },
         [&] { return effect->Apply(nullptr); }, true},
    };
    for (const auto& [name, add, call, answer] : cases) {
        SCOPED_TRACE(name);
        Destroy();
        effect = MakeSurface(root);
        effect->CreateReference(&primitive);
        if (name == std::string("Apply")) {
            ASSERT_TRUE(effect->Update(nullptr));
        }
        Once<IEffect*> destroy([this] { Destroy(); });
        // Behind the one that destroys the effect: it must not hear of a dead one.
        Listener<IEffect*> behind;
        add(*destroy);
        add(*behind);
        EXPECT_EQ(call(), answer);
        EXPECT_TRUE(destroy.HasRun());
        EXPECT_FALSE(HasEffects());
    }
}

TEST_F(EffectLifetimeTest, AListenerOfItsGraphsEnd_MayDestroyTheEffect) {
    ASSERT_TRUE(effect->Update(nullptr));
    Once<IGraph*> destroy([this] { Destroy(); });
    GetColor()->GetGraph()->AddListenerDelete(*destroy);
    EXPECT_FALSE(effect->SetRoot(root));
    EXPECT_TRUE(destroy.HasRun());
    EXPECT_FALSE(HasEffects());
}

TEST_F(EffectLifetimeTest, AListenerOfItsGraphsEnd_CannotSetAnotherRoot) {
    bool answer = true;
    IShader* const plain = Make("Plain");
    Once<IGraph*> set([&] { answer = effect->SetRoot(plain); });
    GetColor()->GetGraph()->AddListenerDelete(*set);
    IShader* const next = MakePaint();
    EXPECT_TRUE(effect->SetRoot(next));
    EXPECT_TRUE(set.HasRun());
    EXPECT_FALSE(answer);
    IShader* now = nullptr;
    EXPECT_TRUE(effect->GetRoot(now));
    EXPECT_EQ(now, next);
    EXPECT_TRUE(checks.IsEmpty());
    EXPECT_TRUE(effect->Update(nullptr));
}

TEST_F(EffectLifetimeTest, AnyOtherListener_MaySetAnotherRoot) {
    using Add = std::function<void(FastDelegate1<IEffect*, bool>&)>;
    const Add adds[] = {[&](auto& l) { effect->AddListenerChangeStructure(l); },
                        [&](auto& l) { effect->AddListenerCompile(l); },
                        [&](auto& l) { effect->AddListenerUpdate(l); },
                        [&](auto& l) { effect->AddListenerApply(l); }};
    std::vector<std::unique_ptr<Once<IEffect*>>> listeners;
    for (const Add& add : adds) {
        IShader* const next = MakePaint();
        listeners.push_back(std::make_unique<Once<IEffect*>>(
            [this, next] { EXPECT_TRUE(effect->SetRoot(next)); }));
        Once<IEffect*>& set = *listeners.back();
        add(*set);
        EXPECT_TRUE(effect->SetRoot(root));
        effect->Update(nullptr);
        effect->Apply(nullptr);
        EXPECT_TRUE(set.HasRun());
        IShader* now = nullptr;
        effect->GetRoot(now);
        EXPECT_EQ(now, next);
        EXPECT_TRUE(effect->Update(nullptr));
        EXPECT_TRUE(effect->IsCompiled());
        EXPECT_EQ(primitive.GetUniform("color" + next->GetKeyName()), "");
    }
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(EffectLifetimeTest, AChangeDuringTheLink_LeavesTheEffectDirty) {
    Once<IKLProgram*> change([this] { root->SetCoord(nullptr, "uv", "Other"); });
    effect->GetKLProgram()->AddListenerLink(*change);
    effect->Update(nullptr);
    EXPECT_TRUE(change.HasRun());
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_TRUE(effect->Update(nullptr));
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_NE(GetText("Init_k").find("Other"), std::string::npos);
}

TEST_F(EffectLifetimeTest, ANewRootDuringTheLink_LeavesTheEffectDirty) {
    IShader* const plain = Make("Plain");
    Once<IKLProgram*> change([&] { EXPECT_TRUE(effect->SetRoot(plain)); });
    effect->GetKLProgram()->AddListenerLink(*change);
    effect->Update(nullptr);
    EXPECT_TRUE(change.HasRun());
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_TRUE(effect->Update(nullptr));
    EXPECT_TRUE(effect->IsCompiled());
}

TEST_F(EffectLifetimeTest, AListenerOfAValueInTheGraph_MayDestroyTheEffect) {
    ASSERT_TRUE(effect->Update(nullptr));
    Once<IReferenceParameter*> destroy([this] { Destroy(); });
    GetColor()->AddListenerChangeValue(*destroy);
    EXPECT_FALSE(root->SetParameter(nullptr, "color", Vector3f(1.0f, 0.0f, 0.0f)));
    EXPECT_TRUE(destroy.HasRun());
    EXPECT_FALSE(HasEffects());
}

TEST_F(EffectLifetimeTest, AWriteInAFullApply_MayDestroyTheEffect) {
    ASSERT_TRUE(effect->Update(nullptr));
    Once<IKLPrimitive*, IKLProgram*> destroy([this] { Destroy(); });
    GetColor()->GetGraph()->AddDelegateApply(*destroy);
    effect->Apply(nullptr);
    EXPECT_TRUE(destroy.HasRun());
    EXPECT_FALSE(HasEffects());
}

TEST_F(EffectLifetimeTest, ACoordThatAListenerSetsAgain_HasTheLastName) {
    ASSERT_TRUE(effect->Update(nullptr));
    for (const char* last : {"Third", ""}) {
        SCOPED_TRACE(last);
        Once<IEffect*> again([&] { root->SetCoord(nullptr, "uv", last); });
        effect->AddListenerChangeStructure(*again);
        root->SetCoord(nullptr, "uv", "Second");
        EXPECT_TRUE(again.HasRun());
        EXPECT_TRUE(checks.IsEmpty());
        EXPECT_EQ(GetColor()->GetGraph()->GetCountAttributes(), *last == 0 ? 0 : 1);
        EXPECT_EQ(effect->Update(nullptr), *last != 0);
        effect->RemoveListenerChangeStructure(*again);
    }
    EXPECT_TRUE(root->SetCoord(nullptr, "uv", "Fourth"));
    EXPECT_TRUE(effect->Update(nullptr));
}

TEST_F(EffectLifetimeTest, AReference_MayBeDestroyedByWhoHearsOfItsEnd) {
    Listener<IReferenceEffect*> told;
    Once<IReferenceEffect*> destroy([this] { effect->DestroyReference(reference); });
    reference->AddListenerDelete(*destroy);
    reference->AddListenerDelete(*told);
    Destroy();
    EXPECT_TRUE(destroy.HasRun());
    EXPECT_FALSE(HasEffects());
}

TEST_F(EffectLifetimeTest, AReference_MayBeDestroyedInItsOwnOperations) {
    const std::vector<std::function<void(FastDelegate1<IReferenceEffect*, bool>&)>> adds = {
        [&](auto& l) { reference->AddListenerApply(l); },
        [&](auto& l) { reference->AddListenerUpdate(l); }};
    ASSERT_TRUE(effect->Update(nullptr));
    for (const auto& add : adds) {
        Once<IReferenceEffect*> destroy([this] { effect->DestroyReference(reference); });
        add(*destroy);
        reference->Apply(nullptr);
        if (!destroy.HasRun()) {
            reference->Update(nullptr);
        }
        EXPECT_TRUE(destroy.HasRun());
        reference = effect->CreateReference(&primitive);
        EXPECT_TRUE(effect->Update(nullptr));
    }
}

TEST_F(EffectLifetimeTest, TheManager_MayBeShutDownByAnyListener) {
    using Add = std::function<void(FastDelegate1<IEffect*, bool>&)>;
    const std::pair<const char*, Add> adds[] = {
        {"Compile", [&](auto& l) { effect->AddListenerCompile(l); }},
        {"Update", [&](auto& l) { effect->AddListenerUpdate(l); }},
        {"ChangeStructure", [&](auto& l) { effect->AddListenerChangeStructure(l); }},
        {"Delete", [&](auto& l) { effect->AddListenerDelete(l); }}};
    for (const auto& [name, add] : adds) {
        SCOPED_TRACE(name);
        Once<IEffect*> shutdown([this] { manager.Shutdown(); });
        add(*shutdown);
        manager.Update();
        if (!shutdown.HasRun()) {
            effect->SetRoot(name == std::string("Delete") ? nullptr : root);
        }
        EXPECT_TRUE(shutdown.HasRun());
        EXPECT_EQ(context.GetCountLive(), 0);

        Result result;
        ASSERT_TRUE(manager.Init(console.Get(), &context, &result));
        Load(kSource);
        root = MakePaint();
        effect = MakeSurface(root);
        effect->CreateReference(&primitive);
    }
}

TEST_F(EffectLifetimeTest, AFailureOfTheApi_MayEndInTheEffectsDestruction) {
    Once<IEffect*> destroy([this] { Destroy(); });
    effect->AddListenerDelete(*destroy);
    context.GetLog().FailNth("AddShader", 1);
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_TRUE(destroy.HasRun());
    EXPECT_FALSE(HasEffects());
}

TEST_F(EffectLifetimeTest, ShadersEffectsAndReferences_DieInAnyOrder) {
    for (const int order : {0, 1, 2, 3, 4, 5}) {
        SCOPED_TRACE(order);
        IShader* const shader = MakePaint();
        IEffect* const one = MakeSurface(shader);
        IEffect* const two = MakeSurface(shader);
        IReferenceEffect* const onPrimitive = one->CreateReference(&second);
        ASSERT_TRUE(manager.Update());
        ASSERT_NE(onPrimitive->AcquireParameterLocal(shader, "color"), nullptr);
        // A write is queued when they die.
        shader->SetParameter(nullptr, "color", Vector3f(0.1f, 0.2f, 0.3f));
        std::vector<std::function<void()>> steps = {
            [&] { manager.DestroyShader(shader); },
            [&] { one->DestroyReference(onPrimitive); },
            [&] { manager.DestroyEffectSurface(two); },
        };
        std::swap(steps[0], steps[static_cast<std::size_t>(order % 3)]);
        if (order >= 3) {
            std::swap(steps[1], steps[2]);
        }
        for (const auto& step : steps) {
            step();
            one->Update(nullptr);
        }
        manager.DestroyEffectSurface(one);
        console.Clear();
    }
}

} // namespace
} // namespace Tolen::Effects::Tests
