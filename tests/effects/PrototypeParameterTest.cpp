#include "IReferencePrototypeMember.h"
#include "IReferencePrototypeParameter.h"
#include "LoadedManager.h"
#include "PrototypeMemberValueArray.h"
#include "PrototypeMemberValueSingle.h"
#include "PrototypeParameterInterfaceArray.h"
#include "PrototypeParameterInterfaceSingle.h"
#include "PrototypeParameterValueArray.h"
#include "PrototypeParameterValueSingle.h"
#include "support/CapturedChecks.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"

#include <gtest/gtest.h>

namespace Tolen::Effects::Tests {

namespace {

constexpr const char* kValues = "class A { input float s; input vec3 a[2]; int m; float n[3]; }"
                                "class B { input float s; input vec3 a[2]; int m; float n[3]; }";

TEST(PrototypeParameterTest, NewPrototypes_BearTheirDefaultNames) {
    EXPECT_EQ(PrototypeMemberValueSingle().GetNameMangled(), "uninitialized");
    EXPECT_EQ(PrototypeMemberValueArray().GetNameMangled(), "Constructor");
    EXPECT_EQ(PrototypeParameterValueSingle().GetNameMangled(), "");
    EXPECT_EQ(PrototypeParameterValueArray().GetNameMangled(), "");
    EXPECT_EQ(PrototypeParameterValueSingle().GetName(), "");
    EXPECT_EQ(PrototypeParameterValueSingle().GetType(), kType_Void);
}

TEST(PrototypeParameterTest, Init_MakesNamesOfDeclarationAndKey) {
    LoadedManager loaded(kValues);
    PrototypeShader* prototype = loaded.GetPrototype("A");
    EXPECT_EQ(prototype->GetPrototypeParameter("s")->GetNameMangled(), "s_k1");
    EXPECT_EQ(prototype->GetPrototypeParameter("a")->GetNameMangled(), "a_k2");
    EXPECT_EQ(prototype->GetPrototypeMember("m")->GetNameMangled(),
              "PrototypeMemberValueSingle_k3");
    EXPECT_EQ(prototype->GetPrototypeMember("n")->GetNameMangled(), "PrototypeMemberValueArray_k4");
    EXPECT_EQ(prototype->GetPrototypeParameter("s")->GetName(), "s");
    EXPECT_EQ(prototype->GetPrototypeParameter("s")->GetType(), kType_Float);
    EXPECT_EQ(prototype->GetPrototypeParameter("a")->GetType(), kType_Vec3);
    EXPECT_EQ(prototype->GetPrototypeMember("m")->GetType(), kType_Int);
    EXPECT_EQ(prototype->GetPrototypeMember("n")->GetName(), "n");
}

TEST(PrototypeParameterTest, OneNameInTwoClasses_GivesTwoMangledNames) {
    LoadedManager loaded(kValues);
    EXPECT_NE(loaded.GetPrototype("A")->GetPrototypeParameter("s")->GetNameMangled(),
              loaded.GetPrototype("B")->GetPrototypeParameter("s")->GetNameMangled());
    EXPECT_NE(loaded.GetPrototype("A")->GetPrototypeMember("m")->GetNameMangled(),
              loaded.GetPrototype("B")->GetPrototypeMember("m")->GetNameMangled());
}

TEST(PrototypeParameterTest, Create_GivesTheObjectOfOneShader) {
    LoadedManager loaded(kValues);
    PrototypeShader* prototype = loaded.GetPrototype("A");
    const std::unique_ptr<IParameter> single(
        prototype->GetPrototypeParameter("s")->CreateParameter(nullptr, nullptr));
    const std::unique_ptr<IParameter> array(
        prototype->GetPrototypeParameter("a")->CreateParameter(nullptr, nullptr));
    const std::unique_ptr<IMember> memberSingle(
        prototype->GetPrototypeMember("m")->CreateMember(nullptr, nullptr));
    const std::unique_ptr<IMember> memberArray(
        prototype->GetPrototypeMember("n")->CreateMember(nullptr, nullptr));
    ASSERT_TRUE(single && array && memberSingle && memberArray);
    EXPECT_FALSE(single->IsArray());
    EXPECT_EQ(single->GetName(), "s");
    EXPECT_TRUE(array->IsArray());
    EXPECT_EQ(array->GetLength(), 2);
    EXPECT_FALSE(memberSingle->IsArray());
    EXPECT_TRUE(memberArray->IsArray());
    EXPECT_EQ(memberArray->GetLength(), 3);
}

TEST(PrototypeParameterTest, CreateParameter_WithAnInitializerThatIsNoConstant_TellsAndGivesNull) {
    LoadedManager loaded("class A { input float x = float(sin(1.0)); }");
    Result result;
    EXPECT_EQ(
        loaded.GetPrototype("A")->GetPrototypeParameter("x")->CreateParameter(nullptr, &result),
        nullptr);
    EXPECT_FALSE(result.IsEmpty());
}

TEST(PrototypeParameterTest, Shutdown_GivesTheKeyBackOnce) {
    LoadedManager loaded(kValues);
    PrototypeShader* owner = loaded.GetPrototype("A");
    const VariableDeclaration* declaration = owner->GetDefinition()->GetMemberVariables().front();
    PrototypeParameterValueSingle prototype;
    EXPECT_TRUE(prototype.Init(owner, declaration));
    EXPECT_EQ(prototype.GetNameMangled(), "s_k5");
    prototype.Shutdown();
    prototype.Shutdown();
    EXPECT_EQ(loaded.manager.CreateKey().GetNumber(), 5u);
    EXPECT_EQ(loaded.manager.CreateKey().GetNumber(), 6u);
    EXPECT_FALSE(loaded.console.Contains("Key Not Found"));
}

/// References of the four kinds, each by one function.
struct ReferenceCase {
    const char* className;
    void* (*create)(PrototypeShader*, ReferencePrototypeShader*);
    bool (*destroy)(PrototypeShader*, void*);
};

const ReferenceCase kReferenceCases[] = {
    {"PrototypeParameterValueSingle",
     [](PrototypeShader* p, ReferencePrototypeShader* r) -> void* {
         return p->GetPrototypeParameter("s")->CreateReference(r);
     },
     [](PrototypeShader* p, void* r) {
         return p->GetPrototypeParameter("s")->DestroyReference(
             static_cast<IReferencePrototypeParameter*>(r));
     }},
    {"PrototypeParameterValueArray",
     [](PrototypeShader* p, ReferencePrototypeShader* r) -> void* {
         return p->GetPrototypeParameter("a")->CreateReference(r);
     },
     [](PrototypeShader* p, void* r) {
         return p->GetPrototypeParameter("a")->DestroyReference(
             static_cast<IReferencePrototypeParameter*>(r));
     }},
    {"PrototypeMemberValueSingle",
     [](PrototypeShader* p, ReferencePrototypeShader* r) -> void* {
         return p->GetPrototypeMember("m")->CreateReference(r);
     },
     [](PrototypeShader* p, void* r) {
         return p->GetPrototypeMember("m")->DestroyReference(
             static_cast<IReferencePrototypeMember*>(r));
     }},
    {"PrototypeMemberValueArray",
     [](PrototypeShader* p, ReferencePrototypeShader* r) -> void* {
         return p->GetPrototypeMember("n")->CreateReference(r);
     },
     [](PrototypeShader* p, void* r) {
         return p->GetPrototypeMember("n")->DestroyReference(
             static_cast<IReferencePrototypeMember*>(r));
     }},
};

class PrototypeReferenceTest : public testing::TestWithParam<ReferenceCase> {
protected:
    void SetUp() override {
        graphA = loaded.Create("A")->CreateGraphKind0();
        graphB = loaded.Create("B")->CreateGraphKind0();
        referenceA = loaded.GetPrototype("A")->AcquireReference(graphA);
        referenceB = loaded.GetPrototype("B")->AcquireReference(graphB);
        ASSERT_TRUE(referenceA && referenceB);
    }
    void TearDown() override {
        loaded.GetPrototype("A")->ReleaseReference(referenceA);
        loaded.GetPrototype("B")->ReleaseReference(referenceB);
    }

    LoadedManager loaded{kValues};
    IGraph* graphA = nullptr;
    IGraph* graphB = nullptr;
    ReferencePrototypeShader* referenceA = nullptr;
    ReferencePrototypeShader* referenceB = nullptr;
};

TEST_P(PrototypeReferenceTest, CreateReference_TwiceForOneGraph_GivesOneObject) {
    PrototypeShader* prototype = loaded.GetPrototype("A");
    void* reference = GetParam().create(prototype, referenceA);
    EXPECT_NE(reference, nullptr);
    EXPECT_EQ(GetParam().create(prototype, referenceA), reference);
}

TEST_P(PrototypeReferenceTest, DestroyReference_OfAnotherVariable_TellsAndAnswersFalse) {
    void* foreign = GetParam().create(loaded.GetPrototype("B"), referenceB);
    EXPECT_FALSE(GetParam().destroy(loaded.GetPrototype("A"), foreign));
    EXPECT_EQ(loaded.console.GetGeneral(),
              std::string(GetParam().className) + "::DestroyReference Reference Not Found\n");
}

TEST_P(PrototypeReferenceTest, DestroyReference_OfNothing_TellsAndAnswersFalse) {
    EXPECT_FALSE(GetParam().destroy(loaded.GetPrototype("A"), nullptr));
    EXPECT_TRUE(loaded.console.Contains("::DestroyReference Reference Not Found\n"));
}

INSTANTIATE_TEST_SUITE_P(Kinds, PrototypeReferenceTest, testing::ValuesIn(kReferenceCases),
                         [](const auto& test) { return std::string(test.param.className); });

constexpr const char* kInterfaces = "interface I { float f(); }"
                                    "class C : I { float f() { return 1.0; } }"
                                    "class A { input I i; input C c = C(); input I n[];"
                                    " input I three[3]; input C d[2]; input I made = C(); }";

TEST(PrototypeParameterInterfaceTest, Init_TellsInterfacesAndClassesApart) {
    LoadedManager loaded(kInterfaces);
    PrototypeShader* prototype = loaded.GetPrototype("A");
    ASSERT_NE(prototype, nullptr);
    auto* i =
        dynamic_cast<PrototypeParameterInterfaceSingle*>(prototype->GetPrototypeParameter("i"));
    auto* c =
        dynamic_cast<PrototypeParameterInterfaceSingle*>(prototype->GetPrototypeParameter("c"));
    ASSERT_TRUE(i && c);
    EXPECT_TRUE(i->IsInterface());
    EXPECT_EQ(i->GetInterfaceDefinition()->GetName()->GetString(), "I");
    EXPECT_EQ(i->GetClassDefinition(), nullptr);
    EXPECT_FALSE(c->IsInterface());
    EXPECT_EQ(c->GetClassDefinition()->GetName()->GetString(), "C");
    EXPECT_EQ(c->GetInterfaceDefinition(), nullptr);
    EXPECT_EQ(i->GetType(), kType_Void);
    EXPECT_EQ(i->GetName(), "i");
    EXPECT_EQ(i->GetNameMangled().substr(0, 3), "i_k");
}

TEST(PrototypeParameterInterfaceTest, Init_OfAnArray_ReadsTheDeclaredLength) {
    struct Case {
        const char* name;
        int length;
        bool isFixed;
        bool isInterface;
    };
    const Case cases[] = {{"n", 0, false, true}, {"three", 3, true, true}, {"d", 2, true, false}};
    LoadedManager loaded(kInterfaces);
    PrototypeShader* prototype = loaded.GetPrototype("A");
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        auto* array = dynamic_cast<PrototypeParameterInterfaceArray*>(
            prototype->GetPrototypeParameter(test.name));
        ASSERT_NE(array, nullptr);
        EXPECT_EQ(array->GetLength(), test.length);
        EXPECT_EQ(array->IsFixedLength(), test.isFixed);
        EXPECT_EQ(array->IsInterface(), test.isInterface);
        EXPECT_EQ(array->GetType(), kType_Void);
    }
}

TEST(PrototypeParameterInterfaceTest, Init_WithAnInitializerThatIsNoClass_FailsACheck) {
    struct Case {
        const char* source;
        const char* check;
    };
    const Case cases[] = {
        {"interface I { } class A { input I i = 1.0; }",
         "_pDecl->GetInitializer()->GetClass() == kClass_FunctionCall"},
        {"interface I { } class A { input I i = vec3(1.0); }",
         "pInit->GetType()->GetClass() == kClass_UserType"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.source);
        LoadedManager loaded(test.source);
        Tolen::Tests::CapturedChecks checks;
        Result result;
        EXPECT_EQ(loaded.GetPrototype("A", &result), nullptr);
        EXPECT_TRUE(checks.Contains(test.check, "Source/PrototypeParameterInterfaceSingle"));
        EXPECT_EQ(LoadedManager::Join(result),
                  "Initialization of prototype param \"i\" in class \"A\" failed.\n"
                  "Prototype shader \"A\" prototype parameter init failed\n");
    }
}

} // namespace
} // namespace Tolen::Effects::Tests
