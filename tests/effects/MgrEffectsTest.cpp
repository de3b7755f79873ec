#include "TolenEffects/MgrEffects.h"

#include "MgrEffectsImpl.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IPrototypeInterface.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Profiler.h"

#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"
#include "support/ScopedAssets.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/Result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Tolen::Effects {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Variable = FastDelegate2<TypeSpecifier, const std::string&, bool>;
using VisitEffect = FastDelegate1<IEffect*, bool>;

constexpr const char* kClassA = "class A { input float a; void main() { } }\n";

class MgrEffectsTest : public testing::Test {
protected:
    MgrEffectsTest() { EXPECT_TRUE(_manager.Init(_console.Get(), &_context, &_result)); }

    /// Names and types as a visit gives them, ending with its answer.
    template <class Visit>
    static std::string _Visit(Visit visitAll, bool answer = true) {
        std::string text;
        const auto visit = [&](TypeSpecifier type, const std::string& name) {
            text += name + std::to_string(type) + " ";
            return answer;
        };
        Variable delegate = Variable::Borrow(visit);
        return text + (visitAll(delegate) ? "true" : "false");
    }
    std::string _VisitOutputs() {
        return _Visit([&](Variable& visit) { return _manager.VisitOutputs(visit); });
    }

    template <class Visit>
    static std::vector<IEffect*> _Effects(Visit visitAll, bool* answer = nullptr) {
        std::vector<IEffect*> effects;
        const auto visit = [&](IEffect* effect) {
            effects.push_back(effect);
            return effects.size() != 1;
        };
        VisitEffect delegate = VisitEffect::Borrow(visit);
        const bool all = visitAll(delegate);
        if (answer != nullptr) {
            *answer = all;
        }
        return effects;
    }

    Tests::CapturedConsole _console;
    Tests::RecordingContext _context;
    MgrEffects _manager;
    Result _result;
};

/// Writes down what it hears of the manager's outputs.
class Heard : public CreationOrder {
public:
    explicit Heard(MgrEffects& manager) : _manager(manager) {
        _manager.AddListenerAddOutput(_onAdd);
        _manager.AddListenerRemoveOutput(_onRemove);
        _manager.AddListenerChangeOutputIndices(_onChange);
    }

    void Stop() {
        EXPECT_TRUE(_manager.RemoveListenerAddOutput(_onAdd));
        EXPECT_TRUE(_manager.RemoveListenerRemoveOutput(_onRemove));
        EXPECT_TRUE(_manager.RemoveListenerChangeOutputIndices(_onChange));
    }

    std::string text;
    bool answer = true;

private:
    bool _OnAdd(TypeSpecifier type, const std::string& name) {
        text += "+" + name + std::to_string(type);
        return answer;
    }
    bool _OnRemove(const std::string& name) {
        text += "-" + name;
        return answer;
    }
    bool _OnChange() {
        text += "#";
        return answer;
    }

    MgrEffects& _manager;
    Variable _onAdd{this, &Heard::_OnAdd};
    FastDelegate1<const std::string&, bool> _onRemove{this, &Heard::_OnRemove};
    FastDelegate0<bool> _onChange{this, &Heard::_OnChange};
};

TEST(MgrEffects, BeforeInit_NothingIsMadeAndNothingFails) {
    Tests::CapturedConsole console;
    MgrEffects manager;
    Result result;
    EXPECT_NE(manager.GetImplementation(), nullptr);
    EXPECT_EQ(manager.GetConsole(), nullptr);
    EXPECT_EQ(manager.GetOpenKLContext(), nullptr);
    EXPECT_EQ(manager.GetProfiler(), nullptr);
    EXPECT_EQ(manager.GetCountOutputs(), 0);
    EXPECT_EQ(manager.CreateEffectSurface(), nullptr);
    EXPECT_EQ(manager.CreateEffectRenderer(), nullptr);
    EXPECT_EQ(manager.CreateEffectPrefix(), nullptr);
    manager.DestroyEffectSurface(nullptr);
    manager.DestroyShader(nullptr);
    const auto visit = [](IEffect*) { return true; };
    VisitEffect delegate = VisitEffect::Borrow(visit);
    EXPECT_FALSE(manager.VisitEffectsSurface(delegate));
    EXPECT_FALSE(manager.VisitEffectsRenderer(delegate));
    EXPECT_FALSE(manager.VisitEffectsPrefix(delegate));
    EXPECT_FALSE(manager.Update(&result));
    EXPECT_FALSE(manager.AddLibrary("a", kClassA, &result));
    EXPECT_EQ(manager.CreateShader("A", nullptr), nullptr);
    EXPECT_EQ(manager.CreateShader("A"), nullptr);
    manager.Shutdown();
    EXPECT_EQ(console.GetAll(), "");
}

TEST(MgrEffects, WithoutAContext_InitFailsAndLeavesNothing) {
    Tests::CapturedConsole console;
    MgrEffects manager;
    Result result;
    EXPECT_FALSE(manager.Init(console.Get(), nullptr, &result));
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_EQ(console.GetAll(), "");
    EXPECT_EQ(manager.GetCountOutputs(), 0);
    EXPECT_EQ(manager.GetConsole(), nullptr);
    Tests::RecordingContext context;
    EXPECT_TRUE(manager.Init(console.Get(), &context, &result)) << "and can be tried again";
}

TEST(MgrEffects, WithoutAConsole_EverythingWorksInSilence) {
    Tests::CapturedConsole console;
    Tests::RecordingContext context;
    Tests::ScopedAssets assets;
    assets.Add("a.ksl", "#import <x>\n");
    MgrEffects manager;
    EXPECT_TRUE(manager.Init(nullptr, &context, nullptr));
    EXPECT_FALSE(manager.AddLibrary("a.ksl", nullptr));
    EXPECT_FALSE(manager.AddLibrary("none.ksl", nullptr));
    EXPECT_EQ(manager.CreateShader("A"), nullptr);
    ASSERT_NE(manager.CreateEffectSurface(), nullptr);
    EXPECT_FALSE(manager.Update());
    EXPECT_EQ(console.GetErrors(), "");
}

TEST_F(MgrEffectsTest, Init_GivesTheSurroundingsAndOneOutput) {
    EXPECT_TRUE(_result.IsEmpty());
    EXPECT_EQ(_manager.GetConsole(), _console.Get());
    EXPECT_EQ(_manager.GetOpenKLContext(), &_context);
    EXPECT_NE(_manager.GetProfiler(), nullptr);
    EXPECT_EQ(_VisitOutputs(), "o_color5 true");
    EXPECT_EQ(_manager.GetCountOutputs(), 1);
    EXPECT_EQ(_console.GetAll(), "");
}

TEST_F(MgrEffectsTest, ASecondInit_FailsAndChangesNothing) {
    Tests::RecordingContext other;
    EXPECT_FALSE(_manager.Init(nullptr, &other, nullptr));
    EXPECT_EQ(_manager.GetConsole(), _console.Get());
    EXPECT_EQ(_manager.GetOpenKLContext(), &_context);
    EXPECT_EQ(_manager.GetCountOutputs(), 1);
}

TEST_F(MgrEffectsTest, Shutdown_CanBeRepeatedAndUndone) {
    _manager.AddLibrary("a", kClassA, nullptr);
    _manager.CreateEffectSurface();
    _manager.AcquireOutput(kType_Vec4, "o_color2");
    _manager.CreateKey();
    for (int i = 0; i < 2; ++i) {
        _manager.Shutdown();
        EXPECT_EQ(_context.GetCountLive(), 0);
        EXPECT_EQ(_manager.GetConsole(), nullptr);
        EXPECT_EQ(_manager.GetProfiler(), nullptr);
        EXPECT_EQ(_VisitOutputs(), "o_color26 true") << "what a client holds stays";
        EXPECT_EQ(_manager.GetPrototypeShader("A", nullptr), nullptr);
        EXPECT_FALSE(_manager.Update());
    }
    EXPECT_TRUE(_manager.Init(_console.Get(), &_context, nullptr));
    EXPECT_TRUE(_manager.HasOutput("o_color"));
    EXPECT_EQ(_manager.CreateKey(), Key(1));
    EXPECT_THAT(_context.GetLog().GetMisuses(), IsEmpty());
}

TEST_F(MgrEffectsTest, AnOutputThatAClientHolds_SurvivesShutdowns) {
    _manager.AcquireOutput(kType_Vec3, "o_color");
    _manager.Shutdown();
    _manager.Shutdown();
    EXPECT_TRUE(_manager.HasOutput("o_color"));
}

TEST_F(MgrEffectsTest, Shutdown_DestroysWhatIsStillAlive) {
    ASSERT_TRUE(_manager.AddLibrary("a", kClassA, nullptr));
    ASSERT_NE(_manager.CreateShader("A"), nullptr);
    _manager.CreateEffectSurface();
    _manager.CreateEffectRenderer();
    _manager.CreateEffectPrefix();
    EXPECT_GT(_context.GetCountLive(), 0);
    _manager.Shutdown();
    EXPECT_EQ(_context.GetCountLive(), 0);
    EXPECT_EQ(_console.GetGeneral(), "A shut down with 1 remaining shader(s)\n");
}

TEST_F(MgrEffectsTest, ALibraryName_IsTakenOnce) {
    EXPECT_TRUE(_manager.AddLibrary("a", kClassA, &_result));
    EXPECT_TRUE(_manager.AddLibrary("a", "class B { void main() { } }", &_result));
    EXPECT_TRUE(_manager.AddLibrary("a", "no KLSL at all", &_result));
    EXPECT_TRUE(_result.IsEmpty());
    EXPECT_NE(_manager.GetPrototypeShader("A", nullptr), nullptr);
    EXPECT_EQ(_manager.GetPrototypeShader("B", nullptr), nullptr);
}

TEST_F(MgrEffectsTest, ALibraryWithErrors_IsToldAndForgotten) {
    EXPECT_FALSE(_manager.AddLibrary("100%", "class", &_result));
    EXPECT_GE(_result.GetCount(), 2u);
    EXPECT_EQ(_result.GetLast(), "Effects Manager: Failed to initialize Shader Library '100%'\n");
    EXPECT_EQ(_console.GetGeneral(), "Library::Init Parse\n");
    EXPECT_FALSE(_manager.AddLibrary("100%", "class", nullptr));
    EXPECT_TRUE(_manager.AddLibrary("100%", kClassA, nullptr));
}

TEST_F(MgrEffectsTest, AFile_BecomesALibraryUnderItsFullPath) {
    Tests::ScopedAssets assets;
    assets.Add("a.ksl", "#define NAME A\nclass NAME { void main() { } }\n");
    EXPECT_TRUE(_manager.AddLibrary("./a.ksl", &_result));
    EXPECT_NE(_manager.GetPrototypeShader("A", nullptr), nullptr);
    EXPECT_TRUE(_manager.AddLibrary("a.ksl", "not parsed", &_result)) << "the name is in use";
    assets.Add("a.ksl", "not KLSL");
    EXPECT_TRUE(_manager.AddLibrary("a.ksl", &_result)) << "read again, but not parsed";
    assets.Add("a.ksl", "#endif");
    EXPECT_FALSE(_manager.AddLibrary("a.ksl", &_result)) << "preprocessed again";
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(MgrEffectsTest, ErrorsBehindAnInclude_AreToldWithTheLineOfTheMainFile) {
    Tests::ScopedAssets assets;
    assets.Add("inner.ksl", "class I { void main() { } }\n\n\n");
    assets.Add("a.ksl", "#include \"inner.ksl\"\nclass A { void main() { x = ; } }\n");
    EXPECT_FALSE(_manager.AddLibrary("a.ksl", &_result));
    ASSERT_GE(_result.GetCount(), 2u);
    EXPECT_THAT(_result.GetMessage(_result.GetCount() - 2), testing::HasSubstr("a.ksl"));
    EXPECT_THAT(_result.GetMessage(_result.GetCount() - 2), testing::HasSubstr("2"));
}

TEST_F(MgrEffectsTest, WithoutLibraries_OnlyCreateShaderSaysSo) {
    EXPECT_EQ(_manager.GetPrototypeShader("A", &_result), nullptr);
    EXPECT_EQ(_manager.GetPrototypeInterface("A"), nullptr);
    EXPECT_TRUE(_result.IsEmpty());
    EXPECT_EQ(_manager.CreateShader("A", &_result), nullptr);
    EXPECT_EQ(_result.GetMessages(),
              std::vector<std::string>{"Could not create shader named \"A\""});
    EXPECT_EQ(_manager.CreateShader("A", nullptr), nullptr);
    EXPECT_EQ(_console.GetAll(), "");
    EXPECT_EQ(_manager.CreateShader("A"), nullptr);
    EXPECT_EQ(_console.GetErrors(), "Could not create shader named \"A\"\n");
}

TEST_F(MgrEffectsTest, TheFirstLibraryByName_GivesTheClass) {
    ASSERT_TRUE(_manager.AddLibrary("b", "interface I { } class A { void b() { } }", nullptr));
    IPrototypeShader* const b = _manager.GetPrototypeShader("A", nullptr);
    IPrototypeInterface* const i = _manager.GetPrototypeInterface("I");
    ASSERT_NE(b, nullptr);
    ASSERT_NE(i, nullptr);
    ASSERT_TRUE(_manager.AddLibrary("a", "interface J { } class A { void a() { } }", nullptr));
    IPrototypeShader* const a = _manager.GetPrototypeShader("A", nullptr);
    EXPECT_NE(a, b);
    EXPECT_EQ(_manager.GetPrototypeShader("A", nullptr), a);
    EXPECT_EQ(_manager.GetPrototypeInterface("I"), i);
    IShader* const shader = _manager.CreateShader("A");
    ASSERT_NE(shader, nullptr);
    EXPECT_EQ(shader->GetPrototype(), a);
}

TEST_F(MgrEffectsTest, AShaderOfAnyLibrary_CanBeDestroyed) {
    ASSERT_TRUE(_manager.AddLibrary("a", "class A { void main() { } }", nullptr));
    ASSERT_TRUE(_manager.AddLibrary("b", "class B { void main() { } }", nullptr));
    _manager.DestroyShader(_manager.CreateShader("B"));
    _manager.DestroyShader(_manager.CreateShader("A"));
    _manager.DestroyShader(nullptr);
    _manager.Shutdown();
    EXPECT_EQ(_console.GetAll(), "");
}

TEST_F(MgrEffectsTest, RayAttributesAndGlobals_KeepTheirOrderAndTheirDoubles) {
    const auto rays = [&](Variable& visit) { return _manager.VisitRayAttributes(visit); };
    const auto globals = [&](Variable& visit) { return _manager.VisitVariablesGlobal(visit); };
    EXPECT_EQ(_Visit(rays), "true");
    EXPECT_EQ(_Visit(globals), "true");
    EXPECT_TRUE(_manager.AddRayAttribute(kType_Vec3, "b"));
    EXPECT_TRUE(_manager.AddRayAttribute(kType_Float, "a"));
    EXPECT_TRUE(_manager.AddRayAttribute(kType_Vec3, "b"));
    EXPECT_TRUE(_manager.AddVariableGlobal(kType_Int, "g"));
    EXPECT_EQ(_Visit(rays), "b5 a1 b5 true");
    EXPECT_EQ(_Visit(globals), "g2 true");
    EXPECT_EQ(_Visit(rays, false), "b5 a1 b5 false") << "all are visited whatever they answer";
}

TEST_F(MgrEffectsTest, AVisitorOfRayAttributes_MayAddSome) {
    _manager.AddRayAttribute(kType_Float, "a");
    const auto add = [&](TypeSpecifier type, const std::string& name) {
        for (int i = 0; i < 100; ++i) {
            _manager.AddRayAttribute(type, name + "x");
        }
        return true;
    };
    Variable delegate = Variable::Borrow(add);
    EXPECT_TRUE(_manager.VisitRayAttributes(delegate));
    std::string all = _Visit([&](Variable& visit) { return _manager.VisitRayAttributes(visit); });
    EXPECT_EQ(std::count(all.begin(), all.end(), ' '), 101);
}

TEST_F(MgrEffectsTest, EachKindOfEffect_IsVisitedInTheOrderOfCreation) {
    IEffect* const a = _manager.CreateEffectSurface();
    IEffect* const b = _manager.CreateEffectSurface();
    IEffect* const renderer = _manager.CreateEffectRenderer();
    IEffect* const prefix = _manager.CreateEffectPrefix();
    const auto surfaces = [&](VisitEffect& visit) { return _manager.VisitEffectsSurface(visit); };
    bool answer = true;
    EXPECT_THAT(_Effects(surfaces, &answer), ElementsAre(a, b));
    EXPECT_FALSE(answer) << "the first call answered false";
    EXPECT_THAT(_Effects([&](VisitEffect& v) { return _manager.VisitEffectsRenderer(v); }),
                ElementsAre(renderer));
    EXPECT_THAT(_Effects([&](VisitEffect& v) { return _manager.VisitEffectsPrefix(v); }),
                ElementsAre(prefix));
    EXPECT_EQ(a->GetMgrEffects(), &_manager) << "effects know the facade";
    _manager.DestroyEffectSurface(a);
    _manager.DestroyEffectSurface(nullptr);
    _manager.DestroyEffectRenderer(renderer);
    _manager.DestroyEffectPrefix(prefix);
    EXPECT_THAT(_Effects(surfaces), ElementsAre(b));
    EXPECT_EQ(_console.GetAll(), "");
    _manager.DestroyEffectPrefix(b);
    EXPECT_EQ(_console.GetGeneral(), "FactoryTEffect::DestroyEffect Effect Not Found\n");
}

TEST_F(MgrEffectsTest, AnEffectThatCouldNotBeMade_LeavesANullThatUpdatesPassOver) {
    _context.GetLog().FailNth("CreateProgram");
    EXPECT_EQ(_manager.CreateEffectRenderer(), nullptr);
    EXPECT_THAT(_Effects([&](VisitEffect& v) { return _manager.VisitEffectsRenderer(v); }),
                ElementsAre(nullptr));
    EXPECT_TRUE(_manager.Update());
}

TEST_F(MgrEffectsTest, Update_WithNoEffects_AnswersTrue) {
    EXPECT_TRUE(_manager.Update());
    EXPECT_TRUE(_manager.Update(&_result));
    EXPECT_TRUE(_manager.Update(nullptr));
    EXPECT_EQ(_console.GetAll(), "");
}

TEST_F(MgrEffectsTest, FailedUpdates_PrintTheResultOnceForEach) {
    // Effects without a root can't be updated.
    _manager.CreateEffectRenderer();
    _manager.CreateEffectSurface();
    _result.Add("so far");
    EXPECT_FALSE(_manager.Update(&_result));
    const std::string errors = _console.GetErrors();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 2);
    EXPECT_THAT(errors, testing::HasSubstr("so far"));
    _console.Clear();
    EXPECT_FALSE(_manager.Update(nullptr));
    EXPECT_EQ(_console.GetErrors(), "");
}

TEST_F(MgrEffectsTest, AChange_ReachesClientListenersButNotThatOfColor) {
    Heard heard(_manager);
    EXPECT_TRUE(_manager.AcquireOutput(kType_Vec4, "a"));
    EXPECT_TRUE(_manager.AcquireOutput(kType_Vec4, "a"));
    EXPECT_FALSE(_manager.AcquireOutput(kType_Vec3, "a"));
    EXPECT_TRUE(_manager.ReleaseOutput("a"));
    EXPECT_TRUE(_manager.ReleaseOutput("a"));
    EXPECT_TRUE(_manager.ReleaseOutput("a"));
    EXPECT_EQ(heard.text, "+a6-a");
    EXPECT_EQ(_VisitOutputs(), "o_color5 true");
    _manager.AcquireOutput(kType_Vec3, "o_color");
    _manager.ReleaseOutput("o_color");
    EXPECT_EQ(heard.text, "+a6-a");
    _manager.Shutdown();
    EXPECT_EQ(heard.text, "+a6-a");
    _manager.Init(nullptr, &_context, nullptr);
    _manager.AcquireOutput(kType_Vec4, "b");
    EXPECT_EQ(heard.text, "+a6-a") << "shutdown forgets listeners";
}

TEST_F(MgrEffectsTest, AFalseListener_OnlyShowsWhereTheLastUseGoes) {
    Heard heard(_manager);
    heard.answer = false;
    EXPECT_TRUE(_manager.AcquireOutput(kType_Vec4, "a"));
    EXPECT_FALSE(_manager.ReleaseOutput("a"));
    EXPECT_FALSE(_manager.HasOutput("a"));
    EXPECT_TRUE(_manager.SetOutputAttachmentIndex("a", 1));
    EXPECT_TRUE(_manager.ClearOutputAttachmentIndex("a"));
    EXPECT_EQ(heard.text, "+a6-a##");
}

TEST_F(MgrEffectsTest, AttachmentIndices_AreToldWhenTheyChange) {
    Heard heard(_manager);
    int index = 0;
    EXPECT_TRUE(_manager.GetOutputAttachmentIndex(index, "none"));
    EXPECT_EQ(index, 15);
    EXPECT_FALSE(_manager.ClearOutputAttachmentIndex("none"));
    EXPECT_EQ(heard.text, "");
    EXPECT_TRUE(_manager.SetOutputAttachmentIndex("none", 4));
    EXPECT_FALSE(_manager.HasOutput("none"));
    EXPECT_TRUE(_manager.GetOutputAttachmentIndex(index, "none"));
    EXPECT_EQ(index, 4);
    EXPECT_EQ(heard.text, "#");
    EXPECT_TRUE(_manager.ClearOutputAttachmentIndex("none"));
    EXPECT_EQ(heard.text, "##");
    heard.Stop();
    _manager.SetOutputAttachmentIndex("none", 5);
    _manager.AcquireOutput(kType_Vec4, "a");
    _manager.ReleaseOutput("a");
    EXPECT_EQ(heard.text, "##");
}

TEST_F(MgrEffectsTest, Keys_ComeBackLastFirst) {
    std::vector<Key> keys;
    keys.reserve(3);
    for (int i = 0; i < 3; ++i) {
        keys.push_back(_manager.CreateKey());
    }
    EXPECT_THAT(keys, ElementsAre(Key(1), Key(2), Key(3)));
    for (Key& key : keys) {
        _manager.DestroyKey(key);
    }
    for (unsigned int expected : {3u, 2u, 1u, 4u}) {
        EXPECT_EQ(_manager.CreateKey(), Key(expected));
    }
    Key unknown(99);
    _manager.DestroyKey(unknown);
    EXPECT_EQ(_console.GetGeneral(), "MgrKeys::Destroy Key Not Found\n");
}

TEST_F(MgrEffectsTest, ResultMessages_GoToTheCurrentResultAndTheConsole) {
    MgrEffectsImpl& implementation = *_manager.GetImplementation();
    implementation.AddResultMessage("%s", "nobody hears");
    Result other;
    other.Add("other");
    implementation.AddResult(other);
    EXPECT_EQ(_console.GetAll(), "");
    implementation.SetResult(&_result);
    implementation.AddResultMessage("%d%% of %s\n", 5, "%s");
    implementation.AddResult(other);
    EXPECT_EQ(_result.GetMessages(), (std::vector<std::string>{"5% of %s\n", "other"}));
    EXPECT_EQ(_console.GetGeneral(), "5% of %s\n");
    EXPECT_EQ(_console.GetAll(), _console.GetGeneral());
    implementation.SetResult(nullptr);
    implementation.AddResultMessage("nobody hears");
    EXPECT_EQ(_result.GetCount(), 2u);
}

TEST_F(MgrEffectsTest, Operations_AreTimedUnderTheirNames) {
    _manager.AddLibrary("a", kClassA, nullptr);
    _manager.AddLibrary("a", kClassA, nullptr);
    _manager.GetPrototypeInterface("I");
    _manager.GetPrototypeShader("A", nullptr);
    _manager.CreateShader("None");
    const Profiler::Samples& samples = _manager.GetProfiler()->GetTimeSamples();
    EXPECT_EQ(samples.at("Add Library").size(), 2u);
    EXPECT_EQ(samples.at("GetPrototypeInterface").size(), 1u);
    EXPECT_EQ(samples.at("GetPrototypeShader").size(), 1u);
    EXPECT_EQ(samples.at("CreateShader").size(), 2u) << "one for each of the two forms";
}

} // namespace
} // namespace Tolen::Effects
