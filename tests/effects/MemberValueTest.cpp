#include "MemberValueArraySeparate.h"
#include "MemberValueSingleSeparate.h"

#include "Graph.h"

#include "effects/ParameterFixture.h"

#include "TolenEffects/IReferenceMember.h"

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Single = MemberValueSingleSeparate;
using Array = MemberValueArraySeparate;
using Listener = CountingListener<IMember>;

class MemberValueTest : public ParameterFixture {
protected:
    std::vector<std::string> GetDeclarations(IMember& member) {
        const std::unique_ptr<Module> module(Module::Create(nullptr));
        EXPECT_TRUE(member.CollectShader(module.get()));
        return PrintLines(module.get());
    }

    /// The statements that the constructor runs; says in @p isGood what the member answered.
    std::vector<std::string> GetConstructor(IMember& member, bool& isGood) {
        const std::unique_ptr<Module> module(Module::Create(nullptr));
        CompoundStatement* body = module->CreateCompoundStatement();
        isGood = member.CollectConstructor(body);
        module->AddFunctionDefinition(module->CreateFunctionDefinition(
            module->CreateFunctionPrototype(kFunctionQualifier_None, module->CreateType(kType_Void),
                                            module->CreateString("f")),
            body));
        std::vector<std::string> lines = PrintLines(module.get());
        return std::vector<std::string>(lines.begin() + 2, lines.end() - 1);
    }
};

TEST_F(MemberValueTest, Single_BeforeInitAndAfterShutdown_DeclaresNothing) {
    Single member;
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    EXPECT_FALSE(member.CollectShader(module.get()));

    const auto made = Make<Single>("float x;");
    made->Shutdown();
    made->Shutdown();

    EXPECT_FALSE(made->CollectShader(module.get()));
    EXPECT_EQ(made->GetName(), "");
    EXPECT_EQ(_manager.GetCountKeys(), 0u);
}

TEST_F(MemberValueTest, Single_AnswersAsOneValue) {
    const auto member = Make<Single>("vec3 x;");
    ASSERT_NE(member, nullptr);
    Listener listener;

    EXPECT_EQ(member->GetType(), "vec3");
    EXPECT_EQ(member->GetName(), "x");
    EXPECT_FALSE(member->IsArray());
    EXPECT_EQ(member->GetLength(), 1);
    EXPECT_FALSE(member->SetLength(1));
    EXPECT_FALSE(member->IsResizable());
    EXPECT_TRUE(member->AddListenerChangeLength(listener.Get()));
    EXPECT_TRUE(member->RemoveListenerChangeLength(listener.Get()));
}

TEST_F(MemberValueTest, Single_IsAGlobalVariableThatTheConstructorAssigns) {
    const auto plain = Make<Single>("float x;");
    const auto constant = Make<Single>("const vec2 x = vec2(1, y);");
    bool isGood = false;

    EXPECT_THAT(GetDeclarations(*plain), ElementsAre("float p_k1;"));
    EXPECT_THAT(GetConstructor(*plain, isGood), IsEmpty());
    EXPECT_TRUE(isGood);
    EXPECT_THAT(GetDeclarations(*constant), ElementsAre("const vec2 p_k2;"));
    EXPECT_THAT(GetConstructor(*constant, isGood), ElementsAre("p_k2 = vec2(1, y);"));
    EXPECT_TRUE(isGood);
}

TEST_F(MemberValueTest, Single_IsRenamedInCode) {
    const auto member = Make<Single>("float x; float f() { x = x + y; return x; }");
    const auto module = CloneMethods();

    EXPECT_TRUE(Transformer(module.get()).Run(*member));

    EXPECT_THAT(PrintLines(module.get()),
                ElementsAre("float f()", "{", "p_k1 = (p_k1+y);", "return p_k1;", "}"));
}

TEST_F(MemberValueTest, Array_BeforeInitAndAfterShutdown_ShowsInItsNames) {
    Array member;
    EXPECT_EQ(member.GetNameMangled(), "Constructor");
    EXPECT_EQ(member.GetNameLengthMangled(), "Constructor");

    const auto made = Make<Array>("float x[];");
    made->Shutdown();
    made->Shutdown();

    EXPECT_EQ(made->GetNameMangled(), "Shutdown");
    EXPECT_EQ(made->GetNameLengthMangled(), "Shutdown");
    EXPECT_EQ(_manager.GetCountKeys(), 0u);
}

TEST_F(MemberValueTest, Array_TakesItsLengthFromTheDeclaration) {
    struct Case {
        const char* declaration;
        int length;
        bool isResizable;
    };
    for (const Case& c : {
             Case{"float x[3];", 3, false},
             Case{"float x[];", 0, true},
             Case{"float x[] = float[](1, 2);", 2, false},
             Case{"float x[2] = float[](1, 2, 3);", 2, false},
         }) {
        const auto member = Make<Array>(c.declaration);
        ASSERT_NE(member, nullptr) << c.declaration;
        EXPECT_TRUE(member->IsArray());
        EXPECT_EQ(member->GetType(), "float");
        EXPECT_EQ(member->GetTypeSpecifier(), kType_Float);
        EXPECT_EQ(member->GetLength(), c.length) << c.declaration;
        EXPECT_EQ(member->IsResizable(), c.isResizable) << c.declaration;
        EXPECT_EQ(member->GetNameLengthMangled(), member->GetNameMangled() + "Length");
    }
    EXPECT_EQ(Make<Array>("float x[] = 1;"), nullptr);
}

TEST_F(MemberValueTest, Array_IsAGlobalArrayWithALength) {
    const auto plain = Make<Array>("float x[];");
    const auto constant = Make<Array>("const int x[3];");

    EXPECT_THAT(GetDeclarations(*plain), ElementsAre("float p_k1[1];", "uniform int p_k1Length;"));
    EXPECT_THAT(GetDeclarations(*constant),
                ElementsAre("const int p_k2[3];", "uniform int p_k2Length;"));
}

TEST_F(MemberValueTest, Array_IsAssignedElementByElement) {
    const auto member = Make<Array>("float x[] = float[](1, y);");
    bool isGood = false;

    EXPECT_THAT(GetConstructor(*member, isGood), ElementsAre("p_k1[0] = 1;", "p_k1[1] = y;"));
    EXPECT_TRUE(isGood);
    EXPECT_THAT(GetConstructor(*Make<Array>("float x[2];"), isGood), IsEmpty());
    EXPECT_TRUE(isGood);
}

TEST_F(MemberValueTest, Array_WhoseInitializerHasAnotherLength_HasNoConstructor) {
    for (const char* declaration :
         {"float x[2] = float[](1, 2, 3);", "float x[2] = float[](1);", "float x[2] = 1;"}) {
        const auto member = Make<Array>(declaration);
        ASSERT_NE(member, nullptr) << declaration;
        bool isGood = true;
        EXPECT_THAT(GetConstructor(*member, isGood), IsEmpty()) << declaration;
        EXPECT_FALSE(isGood) << declaration;
    }
}

TEST_F(MemberValueTest, Array_IsRenamedInCodeAndSoIsItsLength) {
    const auto member = Make<Array>("float x[2]; float f(int i) { return x[i] + y.length + "
                                    "x.length; }");
    const auto module = CloneMethods();
    Transformer transformer(module.get());

    EXPECT_TRUE(transformer.Run(*member));

    EXPECT_THAT(transformer.GetClasses(), ElementsAre(kClass_Subscript, kClass_FieldSelection));
    EXPECT_THAT(PrintLines(module.get()),
                ElementsAre("float f(int i)", "{", "return ((p_k1[i]+y.length)+p_k1Length);", "}"));
}

TEST_F(MemberValueTest, Array_SetLengthChangesTheDeclarationAndTells) {
    const auto member = Make<Array>("float x[];");
    Listener listener;
    EXPECT_TRUE(member->AddListenerChangeLength(listener.Get()));

    EXPECT_TRUE(member->SetLength(0));
    EXPECT_EQ(listener.GetCount(), 0);
    EXPECT_TRUE(member->SetLength(4));
    EXPECT_EQ(listener.GetCount(), 1);
    EXPECT_THAT(GetDeclarations(*member), ElementsAre("float p_k1[4];", "uniform int p_k1Length;"));
    listener.SetAnswer(false);
    EXPECT_FALSE(member->SetLength(5));
    EXPECT_EQ(member->GetLength(), 5);
    EXPECT_TRUE(member->RemoveListenerChangeLength(listener.Get()));
    EXPECT_TRUE(member->SetLength(6));
    EXPECT_EQ(listener.GetCount(), 2);
}

TEST_F(MemberValueTest, Array_OfFixedLength_RefusesAnother) {
    const auto member = Make<Array>("float x[3];");

    EXPECT_TRUE(member->SetLength(3));
    EXPECT_FALSE(member->SetLength(4));

    EXPECT_EQ(member->GetLength(), 3);
    EXPECT_EQ(_console.GetGeneral(), "MemberValueArraySeparate::SetLength Not Resizable\n");
}

TEST_F(MemberValueTest, Array_ApplyLengthWritesTheLengthOrReports) {
    const auto member = Make<Array>("float x[3];");

    EXPECT_TRUE(member->ApplyLength(&_primitive, nullptr, 0));
    EXPECT_EQ(_primitive.GetUniform("p_k1Length"), "int 3");
    EXPECT_FALSE(member->ApplyLength(&_primitive, nullptr, -1));

    EXPECT_EQ(_console.GetGeneral(), "MemberValueArraySeparate::ApplyLength Set Uniform\n");
}

TEST_F(MemberValueTest, CreateReference_GivesOneOfTheMember) {
    Graph graph;
    const auto single = Make<Single>("float x;");
    const auto array = Make<Array>("float x[3];");
    for (IMember* member : std::initializer_list<IMember*>{single.get(), array.get()}) {
        IReferenceMember* reference = member->CreateReference(&graph);
        ASSERT_NE(reference, nullptr);
        EXPECT_EQ(reference->GetMember(), member);
        EXPECT_TRUE(member->DestroyReference(reference));
    }
}

} // namespace Tolen::Effects::Tests
