#include "LoadedManager.h"
#include "SmallStack.h"

#include "ParameterInterfaceArray.h"
#include "ParameterInterfaceSingle.h"

#include "TolenEffects/Limits.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

namespace Tolen::Effects {
namespace {

using Tests::LoadedManager;
using Tests::OnSmallStack;

constexpr const char* kSource =
    "interface I { float f(); }"
    "interface J { float f(); }"
    "class Leaf : I { float f() { return 1.0; } }"
    "class Other : J { float f() { return 2.0; } }"
    "class Free { float f() { return 3.0; } }"
    "class Node : I { input I x; float f() { return x.f() + 1.0; } }"
    "class Two : I { input I x; input I y; float f() { return x.f() + y.f(); } }"
    "class Plain { input Free x; float f() { return x.f(); } }"
    "class Kept : I { input I x = Leaf(); float f() { return x.f(); } }"
    "class Open : I { input I x[]; float f() { return x[0].f(); } }"
    "class Fixed : I { input I x[3]; float f() { return x[0].f(); } }"
    "class Filled : I { input I x[] = Leaf(); float f() { return x[0].f(); } }"
    "class Listed : I { input I x[] = I[](Leaf(), Kept()); float f() { return x[0].f(); } }";

/// Counts the notices of a shader or an input.
struct Counter {
    int count = 0;
    bool answer = true;
    bool OnShader(IShader*) { return ++count, answer; }
    bool OnParameter(IParameter*) { return ++count, answer; }
    void ListenTo(IShader* shader) {
        auto listener = MakeDelegate(this, &Counter::OnShader);
        shader->AddListenerChangeStructure(listener);
    }
    void ListenTo(IParameter* parameter) {
        auto listener = MakeDelegate(this, &Counter::OnParameter);
        parameter->AddListenerChangeStructure(listener);
    }
};

class ParameterInterfaceTest : public ::testing::Test {
protected:
    bool Connect(Shader* shader, IShader* held, const char* name = "x") {
        result = Result();
        return shader->SetParameter(&result, name, held);
    }
    bool Connect(Shader* shader, IShader* held, int index) {
        result = Result();
        return shader->SetParameter(&result, "x", held, index);
    }
    static IShader* Held(IShader* shader, int index = 0) {
        IShader* held = nullptr;
        EXPECT_TRUE(shader->GetParameter("x")->Get(held, index));
        return held;
    }
    std::string Messages() const { return LoadedManager::Join(result); }

    std::deque<Counter> counters; ///< outlive the shaders that tell them
    LoadedManager loaded{kSource};
    Result result;
};

TEST_F(ParameterInterfaceTest, AnInputOfAnInterface_TakesWhatImplementsIt) {
    Shader* node = loaded.Create("Node");
    Shader* leaf = loaded.Create("Leaf");
    EXPECT_TRUE(Connect(node, leaf));
    EXPECT_EQ(Held(node), leaf);
}

TEST_F(ParameterInterfaceTest, AnInputOfAClass_TakesShadersOfIt) {
    Shader* plain = loaded.Create("Plain");
    EXPECT_TRUE(Connect(plain, loaded.Create("Free")));
    EXPECT_FALSE(Connect(plain, loaded.Create("Leaf")));
    EXPECT_NE(Messages().find("Input type mismatch. Expected \"Free\" but got \"I::Leaf\"\n"),
              std::string::npos);
}

TEST_F(ParameterInterfaceTest, AnotherInterface_IsRefusedWithBothNames) {
    Shader* node = loaded.Create("Node");
    EXPECT_FALSE(Connect(node, loaded.Create("Other")));
    EXPECT_NE(Messages().find("Input type mismatch. Expected \"I\" but got \"J::Other\"\n"),
              std::string::npos);
    EXPECT_EQ(Held(node), nullptr);

    Shader* open = loaded.Create("Open");
    EXPECT_FALSE(Connect(open, loaded.Create("Other"), 0));
    EXPECT_NE(Messages().find("Interface mismatch. Expected \"I\" but got \"J::Other\""),
              std::string::npos);
}

TEST_F(ParameterInterfaceTest, FixedAnswers_AreThoseOfAnInput) {
    IParameter* single = loaded.Create("Node")->GetParameter("x");
    IParameter* array = loaded.Create("Fixed")->GetParameter("x");
    for (IParameter* parameter : {single, array}) {
        EXPECT_EQ(parameter->GetClass(), IParameter::kClass_Interface);
        EXPECT_EQ(parameter->GetTypeSpecifier(), 20);
        EXPECT_EQ(parameter->GetType(), "I");
        EXPECT_EQ(parameter->GetName(), "x");
        EXPECT_FALSE(parameter->SetLength(7));
        EXPECT_FALSE(parameter->IsResizable());
        EXPECT_FALSE(parameter->Set(1.0f));
    }
    EXPECT_FALSE(single->IsArray());
    EXPECT_EQ(single->GetLength(), 1);
    EXPECT_TRUE(array->IsArray());
    EXPECT_EQ(array->GetLength(), 3);
    IParameter* open = loaded.Create("Open")->GetParameter("x");
    EXPECT_EQ(open->GetLength(), 1);
    EXPECT_TRUE(open->IsResizable());
}

TEST_F(ParameterInterfaceTest, TheSameShaderAgain_FiresOnce) {
    Shader* node = loaded.Create("Node");
    Shader* leaf = loaded.Create("Leaf");
    Counter& ofShader = counters.emplace_back();
    Counter& ofInput = counters.emplace_back();
    ofShader.ListenTo(node);
    ofInput.ListenTo(node->GetParameter("x"));
    EXPECT_TRUE(Connect(node, leaf));
    EXPECT_TRUE(Connect(node, leaf));
    EXPECT_EQ(ofShader.count, 1);
    EXPECT_EQ(ofInput.count, 1);
}

TEST_F(ParameterInterfaceTest, AListenerThatSaysFalse_IsAnsweredWithTheChangeInPlace) {
    Shader* node = loaded.Create("Node");
    Counter& refusing = counters.emplace_back();
    refusing.answer = false;
    refusing.ListenTo(node);
    EXPECT_FALSE(Connect(node, loaded.Create("Leaf")));
    EXPECT_NE(Held(node), nullptr);
}

TEST_F(ParameterInterfaceTest, ADeletedShader_EmptiesItsCellsAndFiresOnce) {
    Shader* fixed = loaded.Create("Fixed");
    Shader* leaf = loaded.Create("Leaf");
    IShader* cells[] = {leaf, leaf, leaf};
    ASSERT_TRUE(fixed->SetParameter(nullptr, "x", cells, 3));
    ASSERT_TRUE(fixed->IsComplete(nullptr));
    Counter& counter = counters.emplace_back();
    counter.ListenTo(fixed);
    loaded.manager.DestroyShader(leaf);
    EXPECT_EQ(counter.count, 1);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Held(fixed, i), nullptr);
    }
    EXPECT_FALSE(fixed->IsComplete(nullptr));
}

TEST_F(ParameterInterfaceTest, AnIndexOutOfBounds_IsReportedWithTheLength) {
    Shader* open = loaded.Create("Open");
    ASSERT_TRUE(open->GetParameter("x")->SetLength(2));
    for (const int index : {3, 2, -1}) {
        EXPECT_FALSE(Connect(open, loaded.Create("Leaf"), index));
        EXPECT_NE(Messages().find("Index (" + std::to_string(index) + ") out of bounds (length=2)"),
                  std::string::npos);
    }
    EXPECT_NE(loaded.console.GetAll().find("ParameterInterfaceArray::Set Index Out of Bounds\n"),
              std::string::npos);
}

TEST_F(ParameterInterfaceTest, ADefault_IsDestroyedWhenReplaced_AClientsShaderIsNot) {
    Counter& farewell = counters.emplace_back();
    auto onDelete = MakeDelegate(&farewell, &Counter::OnShader);
    Shader* kept = loaded.Create("Kept");
    EXPECT_TRUE(kept->GetParameter("x")->IsDefault());
    Held(kept)->AddListenerDelete(onDelete);
    Shader* leaf = loaded.Create("Leaf");
    EXPECT_TRUE(Connect(kept, leaf));
    EXPECT_EQ(farewell.count, 1);
    EXPECT_FALSE(kept->GetParameter("x")->IsDefault());
    leaf->AddListenerDelete(onDelete);
    EXPECT_TRUE(Connect(kept, nullptr));
    EXPECT_EQ(farewell.count, 1);
    loaded.manager.DestroyShader(leaf);
    EXPECT_EQ(farewell.count, 2);
}

TEST_F(ParameterInterfaceTest, ADefaultInSeveralCells_LeavesThemAllWhenItGoes) {
    Shader* filled = loaded.Create("Filled");
    ASSERT_TRUE(filled->GetParameter("x")->SetLength(3));
    IShader* made = Held(filled, 0);
    ASSERT_TRUE(Connect(filled, made, 1));
    ASSERT_TRUE(Connect(filled, loaded.Create("Leaf"), 0));
    EXPECT_EQ(Held(filled, 1), nullptr);
    EXPECT_NE(Held(filled, 2), nullptr);
}

TEST_F(ParameterInterfaceTest, ADefaultOfAnArray_FillsAllCellsAndThoseThatComeLater) {
    Shader* filled = loaded.Create("Filled");
    IParameter* input = filled->GetParameter("x");
    EXPECT_EQ(input->GetLength(), 1);
    ASSERT_TRUE(input->SetLength(3));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(input->IsDefault(i));
    }
    EXPECT_NE(Held(filled, 0), Held(filled, 1));
    EXPECT_TRUE(filled->IsComplete(nullptr));

    Shader* listed = loaded.Create("Listed");
    input = listed->GetParameter("x");
    ASSERT_EQ(input->GetLength(), 2);
    EXPECT_EQ(Held(listed, 0)->GetClassName(), "Leaf");
    EXPECT_EQ(Held(listed, 1)->GetClassName(), "Kept");
    ASSERT_TRUE(input->SetLength(3));
    EXPECT_EQ(Held(listed, 2), nullptr);
    EXPECT_FALSE(input->IsDefault(2));
}

TEST_F(ParameterInterfaceTest, AnArrayThatIsTooLong_IsRefused) {
    Shader* fixed = loaded.Create("Fixed");
    Shader* leaf = loaded.Create("Leaf");
    ASSERT_TRUE(Connect(fixed, leaf, 0));
    std::vector<IShader*> cells(4, leaf);
    EXPECT_FALSE(fixed->SetParameter(nullptr, "x", cells.data(), 4));
    EXPECT_EQ(Held(fixed, 0), leaf);
    EXPECT_EQ(Held(fixed, 1), nullptr);
    // It still hears of the shader that it holds.
    loaded.manager.DestroyShader(leaf);
    EXPECT_EQ(Held(fixed, 0), nullptr);
}

TEST_F(ParameterInterfaceTest, AnArrayWithAMisfit_ChangesNothing) {
    Shader* fixed = loaded.Create("Fixed");
    IShader* cells[] = {loaded.Create("Leaf"), loaded.Create("Other")};
    EXPECT_FALSE(fixed->SetParameter(nullptr, "x", cells, 2));
    EXPECT_EQ(Held(fixed, 0), nullptr);
}

TEST_F(ParameterInterfaceTest, Cycles_AreRefusedAndChangeNothing) {
    Shader* a = loaded.Create("Node");
    Shader* b = loaded.Create("Two");
    Shader* c = loaded.Create("Open");
    ASSERT_TRUE(Connect(a, b));
    ASSERT_TRUE(Connect(b, c, "y"));
    Counter& counter = counters.emplace_back();
    counter.ListenTo(a);
    counter.ListenTo(c);
    for (Shader* upper : {a, b, c}) {
        EXPECT_FALSE(Connect(c, upper, 0));
        EXPECT_NE(Messages().find("Input cycle. \"I::" + upper->GetClassName() +
                                  "\" already depends on this input's shader\n"),
                  std::string::npos);
        IShader* cells[] = {upper};
        EXPECT_FALSE(c->SetParameter(nullptr, "x", cells, 1));
    }
    EXPECT_EQ(Held(c, 0), nullptr);
    EXPECT_EQ(counter.count, 0);
}

TEST_F(ParameterInterfaceTest, AStaticInput_RefusesWhatDependsOnItsClass) {
    loaded.Load("more", "class Shared : I { static input I s; input I x;"
                        " float f() { return s.f() + x.f(); } }");
    PrototypeShader* shared = loaded.GetPrototype("Shared");
    Shader* instance = loaded.Create("Shared");
    Shader* node = loaded.Create("Node");
    ASSERT_TRUE(Connect(node, instance));
    EXPECT_FALSE(shared->SetParameter("s", static_cast<IShader*>(instance)));
    EXPECT_FALSE(shared->SetParameter("s", static_cast<IShader*>(node)));
    Shader* leaf = loaded.Create("Leaf");
    EXPECT_FALSE(instance->IsComplete(nullptr));
    EXPECT_TRUE(shared->SetParameter("s", static_cast<IShader*>(leaf)));
    EXPECT_FALSE(instance->IsComplete(nullptr));
    EXPECT_TRUE(Connect(instance, leaf));
    EXPECT_TRUE(node->IsComplete(nullptr));
    loaded.manager.DestroyShader(leaf);
    EXPECT_FALSE(node->IsComplete(nullptr));
}

TEST_F(ParameterInterfaceTest, ADiamond_TellsEveryShaderOnceAndFromBelow) {
    Shader* leaf = loaded.Create("Node");
    std::vector<Shader*> shaders{leaf};
    for (int level = 0; level < 40; ++level) {
        Shader* left = loaded.Create("Node");
        Shader* right = loaded.Create("Node");
        Shader* top = loaded.Create("Two");
        ASSERT_TRUE(Connect(left, shaders.back()));
        ASSERT_TRUE(Connect(right, shaders.back()));
        ASSERT_TRUE(Connect(top, left));
        ASSERT_TRUE(Connect(top, right, "y"));
        shaders.push_back(top);
    }
    for (Shader* shader : shaders) {
        counters.emplace_back().ListenTo(shader);
    }
    EXPECT_FALSE(shaders.back()->IsComplete(nullptr));
    ASSERT_TRUE(Connect(leaf, loaded.Create("Leaf")));
    EXPECT_TRUE(shaders.back()->IsComplete(nullptr));
    for (const Counter& counter : counters) {
        EXPECT_EQ(counter.count, 1);
    }
}

TEST_F(ParameterInterfaceTest, ADeepChange_ReachesTheListenersOfInputsAbove) {
    Shader* upper = loaded.Create("Node");
    Shader* middle = loaded.Create("Node");
    ASSERT_TRUE(Connect(upper, middle));
    Counter& counter = counters.emplace_back();
    counter.ListenTo(upper->GetParameter("x"));
    ASSERT_TRUE(Connect(middle, loaded.Create("Leaf")));
    EXPECT_EQ(counter.count, 1);
}

TEST_F(ParameterInterfaceTest, IsComplete_NamesTheWayToWhatIsMissing) {
    Shader* upper = loaded.Create("Two");
    Shader* middle = loaded.Create("Node");
    ASSERT_TRUE(Connect(upper, loaded.Create("Leaf")));
    ASSERT_TRUE(Connect(upper, middle, "y"));
    Result missing;
    EXPECT_FALSE(upper->IsComplete(&missing));
    EXPECT_EQ(LoadedManager::Join(missing), "Shader::IsComplete() failed for Parameter: x\n"
                                            "Shader::IsComplete() failed for Parameter: y\n");
}

TEST_F(ParameterInterfaceTest, AListenerThatDestroysTheOwner_EndsTheChange) {
    Shader* node = loaded.Create("Node");
    struct Destroyer {
        MgrEffects* manager;
        bool On(IShader* shader) { return manager->DestroyShader(shader), true; }
    } destroyer{&loaded.manager};
    auto listener = MakeDelegate(&destroyer, &Destroyer::On);
    node->AddListenerChangeStructure(listener);
    Shader* leaf = loaded.Create("Leaf");
    Connect(node, leaf);
    // Nothing holds the leaf any more.
    loaded.manager.DestroyShader(leaf);
}

TEST_F(ParameterInterfaceTest, AListenerThatConnectsAnew_LeavesTheLastConnection) {
    Shader* node = loaded.Create("Node");
    Shader* first = loaded.Create("Leaf");
    Shader* second = loaded.Create("Kept");
    struct Replacer {
        Shader* pSecond;
        bool On(IShader* shader) { return shader->SetParameter(nullptr, "x", pSecond); }
    } replacer{second};
    auto listener = MakeDelegate(&replacer, &Replacer::On);
    node->AddListenerChangeStructure(listener);
    EXPECT_TRUE(Connect(node, first));
    EXPECT_EQ(Held(node), second);
    node->RemoveListenerChangeStructure(listener);
}

TEST_F(ParameterInterfaceTest, ADefaultThatMisfits_FailsTheCreation) {
    loaded.Load("bad", "class Wrong { input I x = Other(); } class Selfish : I { input I x = "
                       "Selfish(); float f() { return x.f(); } }");
    loaded.CreateFails("Wrong");
    EXPECT_NE(
        loaded.console.GetAll().find("ParameterInterfaceSingle::_InitInitializer Create Shader\n"),
        std::string::npos);
    loaded.CreateFails("Selfish");
}

/// Classes whose defaults nest: D0 has a D1, which has a D2, and so on to @p depth.
std::string _GetNestedDefaults(int depth) {
    std::string source = "interface K { float f(); }";
    for (int i = 0; i < depth; ++i) {
        source += "class D" + std::to_string(i) + " : K { input K x = D" + std::to_string(i + 1) +
                  "(); float f() { return x.f(); } }";
    }
    return source + "class D" + std::to_string(depth) + " : K { float f() { return 1.0; } }";
}

TEST_F(ParameterInterfaceTest, DefaultsNest_UpToTheLimit) {
    OnSmallStack([] {
        LoadedManager good(_GetNestedDefaults(kLimitDefaultDepth));
        EXPECT_TRUE(good.Create("D0")->IsComplete(nullptr));
        LoadedManager bad(_GetNestedDefaults(kLimitDefaultDepth + 1));
        EXPECT_NE(bad.CreateFails("D0").find("lib:1: default shaders nest deeper than the limit of "
                                             "64"),
                  std::string::npos);
    });
}

TEST_F(ParameterInterfaceTest, TenThousandInAChain_WireInAnyOrderOnASmallStack) {
    OnSmallStack([] {
        constexpr int kCount = 10000;
        for (const bool isTopDown : {false, true}) {
            Counter counter;
            LoadedManager many(kSource);
            std::vector<Shader*> chain;
            chain.reserve(kCount);
            for (int i = 0; i < kCount; ++i) {
                chain.push_back(many.Create("Node"));
            }
            counter.ListenTo(chain.front());
            for (int i = 0; i + 1 < kCount; ++i) {
                const auto upper = static_cast<std::size_t>(isTopDown ? i : kCount - 2 - i);
                ASSERT_TRUE(chain[upper]->SetParameter(nullptr, "x",
                                                       static_cast<IShader*>(chain[upper + 1])));
                if (isTopDown && i == 100) {
                    // Until here everybody above was told; nobody hears the rest.
                    auto listener = MakeDelegate(&counter, &Counter::OnShader);
                    chain.front()->RemoveListenerChangeStructure(listener);
                }
            }
            EXPECT_FALSE(chain.front()->IsComplete(nullptr));
            Result missing;
            EXPECT_FALSE(chain.front()->IsComplete(&missing));
            EXPECT_EQ(missing.GetMessages().size(), static_cast<std::size_t>(kCount));
            IShader* leaf = many.Create("Leaf");
            ASSERT_TRUE(chain.back()->SetParameter(nullptr, "x", leaf));
            EXPECT_TRUE(chain.front()->IsComplete(nullptr));
            EXPECT_FALSE(
                chain.back()->SetParameter(nullptr, "x", static_cast<IShader*>(chain.front())));
            EXPECT_EQ(counter.count, isTopDown ? 101 : 2);
            many.manager.DestroyShader(leaf);
            EXPECT_FALSE(chain.front()->IsComplete(nullptr));
        }
    });
}

} // namespace
} // namespace Tolen::Effects
