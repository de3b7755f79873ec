#include "PrototypeInterface.h"
#include "LoadedManager.h"
#include "ReferencePrototypeInterface.h"

#include "TolenEffects/IGraph.h"

#include <gtest/gtest.h>

namespace Tolen::Effects::Tests {

namespace {

constexpr const char* kSource = "interface I { float f(float a); void g(); }"
                                "interface Empty { }"
                                "class A : I { float f(float a) { return a; } void g() { } }";

class PrototypeInterfaceTest : public testing::Test {
protected:
    PrototypeInterface* Get(const std::string& name) {
        return static_cast<PrototypeInterface*>(loaded.manager.GetPrototypeInterface(name));
    }

    LoadedManager loaded{kSource};
};

TEST_F(PrototypeInterfaceTest, GetMethodNameMangled_OfAnyName_JoinsInterfaceAndMethod) {
    EXPECT_EQ(Get("I")->GetMethodNameMangled("f"), "__I_f");
    EXPECT_FALSE(Get("I")->HasMethod("nope"));
    EXPECT_EQ(Get("I")->GetMethodNameMangled("nope"), "__I_nope");
}

TEST_F(PrototypeInterfaceTest, HasMethod_ComparesExactNamesOnly) {
    EXPECT_TRUE(Get("I")->HasMethod("f"));
    EXPECT_TRUE(Get("I")->HasMethod("g"));
    EXPECT_FALSE(Get("I")->HasMethod("F"));
    EXPECT_FALSE(Get("I")->HasMethod(""));
    EXPECT_FALSE(Get("I")->HasMethod("ff"));
}

TEST_F(PrototypeInterfaceTest, HasMethod_OfAnEmptyInterface_IsAlwaysFalse) {
    EXPECT_FALSE(Get("Empty")->HasMethod("f"));
    EXPECT_FALSE(Get("Empty")->HasMethod(""));
}

TEST_F(PrototypeInterfaceTest, BeforeInit_AnswersWithoutADefinition) {
    PrototypeInterface prototype;
    EXPECT_EQ(prototype.GetDefinition(), nullptr);
    EXPECT_EQ(prototype.GetMgrEffects(), nullptr);
    EXPECT_FALSE(prototype.HasMethod("f"));
    EXPECT_EQ(prototype.GetMethodNameMangled("f"), "___f");
    EXPECT_EQ(prototype.GetReference(nullptr), nullptr);
}

TEST_F(PrototypeInterfaceTest, GetReference_ForOneGraph_GivesOneObjectAndAnotherForAnother) {
    Shader* shader = loaded.Create("A");
    IGraph* rays = shader->CreateGraphKind0();
    IGraph* frames = shader->CreateGraphKind2();
    ASSERT_NE(rays, nullptr);
    ASSERT_NE(frames, nullptr);
    ReferencePrototypeInterface* reference = Get("I")->GetReference(rays);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(Get("I")->GetReference(rays), reference);
    EXPECT_NE(Get("I")->GetReference(frames), reference);
    EXPECT_EQ(reference->GetGraph(), rays);
    EXPECT_EQ(reference->GetMethodNameMangled("f"), "__I_f");
}

TEST_F(PrototypeInterfaceTest, GetReference_OfAGraphThatDies_GoesWithTheGraph) {
    Shader* shader = loaded.Create("A");
    IGraph* graph = shader->CreateGraphKind0();
    ASSERT_NE(Get("I")->GetReference(graph), nullptr);
    EXPECT_NE(Get("I")->FindReference(graph), nullptr);
    shader->DestroyGraphKind0();
    EXPECT_EQ(Get("I")->FindReference(graph), nullptr);
}

TEST_F(PrototypeInterfaceTest, AClassInAGraph_IsEnteredThereAndLeavesWithoutAMessage) {
    Shader* shader = loaded.Create("A");
    IGraph* graph = shader->CreateGraphKind0();
    EXPECT_NE(Get("I")->FindReference(graph), nullptr);
    loaded.manager.DestroyShader(shader);
    EXPECT_EQ(Get("I")->FindReference(graph), nullptr);
    EXPECT_FALSE(loaded.console.Contains("Not Found"));
}

TEST_F(PrototypeInterfaceTest, Shutdown_Twice_LeavesNothing) {
    PrototypeInterface* prototype = Get("I");
    prototype->Shutdown();
    prototype->Shutdown();
    EXPECT_EQ(prototype->GetDefinition(), nullptr);
    EXPECT_EQ(prototype->GetMgrEffects(), nullptr);
}

} // namespace
} // namespace Tolen::Effects::Tests
