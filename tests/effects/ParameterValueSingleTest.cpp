#include "FacadeParameterValueSingle.h"

#include "Graph.h"

#include "effects/ElementSamples.h"
#include "effects/ParameterFixture.h"

#include "TolenEffects/IReferenceParameter.h"

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Parameter = ParameterValueSingleSeparate;
using Listener = CountingListener<IParameter>;

class ParameterValueSingleTest : public ParameterFixture {};

template <class T>
class ParameterValueSingleTypedTest : public ParameterFixture {
protected:
    /// The parameter, by the interface that clients see.
    std::unique_ptr<IParameter> MakeTyped() {
        const char* keyword = TypeSpecifierToString(ElementType<T>::kSpecifier);
        return this->template Make<Parameter>(std::string("input ") + keyword + " x;");
    }

    const T _a = MakeSample<T>(1);
    const T _b = MakeSample<T>(2);
};
TYPED_TEST_SUITE(ParameterValueSingleTypedTest, ElementTypes, ElementTypeName);

TYPED_TEST(ParameterValueSingleTypedTest, Set_RoundTripsWithAndWithoutAnIndex) {
    const std::unique_ptr<IParameter> parameter = this->MakeTyped();
    ASSERT_NE(parameter, nullptr);
    Listener listener;
    EXPECT_TRUE(parameter->AddListenerChangeValue(listener.Get()));
    TypeParam value = this->_b;

    EXPECT_TRUE(parameter->Get(value));
    EXPECT_EQ(value, TypeParam());
    EXPECT_TRUE(parameter->Set(this->_a));
    EXPECT_TRUE(parameter->Get(value, 0));
    EXPECT_EQ(value, this->_a);
    EXPECT_TRUE(parameter->Set(this->_b, 0));
    EXPECT_TRUE(parameter->Get(value));
    EXPECT_EQ(value, this->_b);

    EXPECT_EQ(listener.GetCount(), 2);
    EXPECT_TRUE(parameter->RemoveListenerChangeValue(listener.Get()));
    EXPECT_TRUE(parameter->Set(this->_a));
    EXPECT_EQ(listener.GetCount(), 2);
}

TYPED_TEST(ParameterValueSingleTypedTest, SetAndGet_ThatDontFit_ChangeAndTellNothing) {
    const std::unique_ptr<IParameter> parameter = this->MakeTyped();
    ASSERT_NE(parameter, nullptr);
    ASSERT_TRUE(parameter->Set(this->_a));
    Listener listener;
    parameter->AddListenerChangeValue(listener.Get());

#define TOLEN_EXPECT_REFUSED(specifier, T, name, bytes)                                            \
    if constexpr (!std::is_same_v<T, TypeParam>) {                                                 \
        T other = MakeSample<T>(3);                                                                \
        EXPECT_FALSE(parameter->Set(other)) << name;                                               \
        EXPECT_FALSE(parameter->Set(other, 0)) << name;                                            \
        EXPECT_FALSE(parameter->Set(&other, 1)) << name;                                           \
        EXPECT_FALSE(parameter->Get(other)) << name;                                               \
        EXPECT_FALSE(parameter->Get(other, 0)) << name;                                            \
        EXPECT_EQ(other, MakeSample<T>(3)) << name;                                                \
    }
    TOLEN_ELEMENT_TYPES(TOLEN_EXPECT_REFUSED)
#undef TOLEN_EXPECT_REFUSED
    EXPECT_FALSE(parameter->Set(this->_b, 1));
    EXPECT_FALSE(parameter->Set(this->_b, -1));
    EXPECT_FALSE(parameter->Set(&this->_b, 1));
    EXPECT_FALSE(parameter->Set(std::string("uv")));
    EXPECT_FALSE(parameter->Set(static_cast<IShader*>(nullptr)));

    TypeParam value = this->_b;
    EXPECT_FALSE(parameter->Get(value, 1));
    EXPECT_FALSE(parameter->Get(value, -1));
    EXPECT_EQ(value, this->_b);
    EXPECT_TRUE(parameter->Get(value));
    EXPECT_EQ(value, this->_a);
    EXPECT_EQ(listener.GetCount(), 0);
}

TYPED_TEST(ParameterValueSingleTypedTest, Apply_WritesTheUniformOfTheMangledName) {
    const std::unique_ptr<IParameter> parameter = this->MakeTyped();
    ASSERT_NE(parameter, nullptr);
    parameter->Set(this->_a);

    EXPECT_TRUE(
        static_cast<ParameterValueSingle&>(*parameter).Apply(&this->_primitive, nullptr, 3));

    ASSERT_EQ(this->_primitive.GetUniforms().size(), 1u);
    EXPECT_EQ(this->_primitive.GetUniforms().begin()->first, "p_k1");
    EXPECT_EQ(this->_context.GetLog().GetCount("SetUniform"), 1);
}

TEST_F(ParameterValueSingleTest, New_AnswersAsASingleValue) {
    const auto parameter = Make<Parameter>("input vec3 x = vec3(1, 2, 3);");
    ASSERT_NE(parameter, nullptr);
    Listener listener;

    EXPECT_EQ(parameter->GetClass(), IParameter::kClass_Value);
    EXPECT_EQ(parameter->GetTypeSpecifier(), kType_Vec3);
    EXPECT_EQ(parameter->GetType(), "vec3");
    EXPECT_EQ(parameter->GetName(), "x");
    EXPECT_EQ(parameter->GetNameMangled(), "p_k1");
    EXPECT_FALSE(parameter->IsArray());
    EXPECT_EQ(parameter->GetLength(), 1);
    EXPECT_FALSE(parameter->SetLength(1));
    EXPECT_FALSE(parameter->IsResizable());
    EXPECT_FALSE(parameter->IsDefault());
    EXPECT_FALSE(parameter->IsDefault(0));
    EXPECT_TRUE(parameter->IsComplete(nullptr));
    EXPECT_TRUE(parameter->CollectConstructor(nullptr));
    EXPECT_TRUE(parameter->AddListenerChangeStructure(listener.Get()));
    EXPECT_TRUE(parameter->RemoveListenerChangeStructure(listener.Get()));
    std::string text;
    EXPECT_TRUE(parameter->GetAsString(text));
    EXPECT_EQ(text, "(1,2,3)");
    EXPECT_TRUE(parameter->GetAsString(text, 0));
    EXPECT_FALSE(parameter->GetAsString(text, 1));
    EXPECT_TRUE(_checks.IsEmpty());
}

TEST_F(ParameterValueSingleTest, Samplers_OfAllKindsAreTextures) {
    for (const char* keyword : {"sampler2D", "sampler3D", "samplerCube"}) {
        const auto parameter = Make<Parameter>(std::string("input ") + keyword + " x;");
        ASSERT_NE(parameter, nullptr) << keyword;
        EXPECT_EQ(parameter->GetType(), keyword);
        EXPECT_TRUE(parameter->Set(MakeSample<KLtexture>(1))) << keyword;
    }
}

TEST_F(ParameterValueSingleTest, Init_OfATypeThatIsNoElement_Fails) {
    for (const char* keyword : {"bvec2", "bvec3", "bvec4", "mat2"}) {
        EXPECT_EQ(Make<Parameter>(std::string("input ") + keyword + " x;"), nullptr) << keyword;
        EXPECT_EQ(_manager.GetCountKeys(), 0u) << keyword;
    }
}

TEST_F(ParameterValueSingleTest, Init_WithADefaultItCantRead_NamesTheInput) {
    EXPECT_EQ(Make<Parameter>("input bool x = 1;"), nullptr);

    EXPECT_THAT(_result.GetMessages(),
                ElementsAre("Int Constant", "Unsupported boolean expression",
                            "a.ksl:3: Unsupported Initializer", "Initializer", "x"));
}

TEST_F(ParameterValueSingleTest, Instances_OfOneDeclaration_HaveNamesOfTheirOwn) {
    const auto a = Make<Parameter>("input float x;");
    const auto b = Make<Parameter>("input float x;");

    EXPECT_EQ(a->GetName(), b->GetName());
    EXPECT_NE(a->GetNameMangled(), b->GetNameMangled());
}

TEST_F(ParameterValueSingleTest, Set_WhenAListenerAnswersFalse_AnswersFalseAndKeepsTheValue) {
    const auto parameter = Make<Parameter>("input float x;");
    Listener listener;
    listener.SetAnswer(false);
    parameter->AddListenerChangeValue(listener.Get());

    EXPECT_FALSE(parameter->Set(2.0f));

    float value = 0;
    EXPECT_TRUE(parameter->Get(value));
    EXPECT_EQ(value, 2.0f);
}

TEST_F(ParameterValueSingleTest, Listener_MayDestroyTheParameter) {
    struct Killer {
        std::unique_ptr<Parameter> parameter;
        bool OnChange(IParameter*) {
            parameter.reset();
            return true;
        }
    } killer;
    killer.parameter = Make<Parameter>("input float x;");
    FastDelegate1<IParameter*, bool> listener = MakeDelegate(&killer, &Killer::OnChange);
    killer.parameter->AddListenerChangeValue(listener);

    EXPECT_TRUE(killer.parameter->Set(1.0f));

    EXPECT_EQ(killer.parameter, nullptr);
}

TEST_F(ParameterValueSingleTest, Shutdown_ShowsInNamesAndFailsAllUse) {
    const auto parameter = Make<Parameter>("input float x;");

    parameter->Shutdown();
    parameter->Shutdown();

    EXPECT_EQ(parameter->GetNameMangled(), "Shutdown");
    EXPECT_EQ(parameter->GetName(), "");
    EXPECT_EQ(_manager.GetCountKeys(), 0u);
    EXPECT_FALSE(parameter->Set(1.0f));
    float value = 0;
    EXPECT_FALSE(parameter->Get(value));
    EXPECT_FALSE(parameter->Apply(&_primitive, nullptr, 0));
    std::string text;
    EXPECT_FALSE(parameter->GetAsString(text));
    EXPECT_TRUE(_checks.Contains("_pStorage", "Source/FacadeParameterValueSingle"));
}

TEST_F(ParameterValueSingleTest, CollectShader_DeclaresAUniform) {
    const auto parameter = Make<Parameter>("input mat4 x = mat4(1);");
    const std::unique_ptr<Module> module(Module::Create(nullptr));

    EXPECT_TRUE(parameter->CollectShader(module.get()));

    EXPECT_THAT(PrintLines(module.get()), ElementsAre("uniform mat4 p_k1;"));
}

TEST_F(ParameterValueSingleTest, VisitTransformations_RenamesEveryUseOfTheName) {
    const auto parameter =
        Make<Parameter>("input vec3 x; float f(float y) { return x.x + y * x[1]; }");
    const auto module = CloneMethods();
    Transformer transformer(module.get());

    EXPECT_TRUE(transformer.Run(*parameter));

    EXPECT_THAT(transformer.GetClasses(), ElementsAre(kClass_Variable));
    EXPECT_THAT(PrintLines(module.get()),
                ElementsAre("float f(float y)", "{", "return (p_k1.x+(y*p_k1[1]));", "}"));
}

TEST_F(ParameterValueSingleTest, CreateReference_GivesOneOfThisParameter) {
    const auto parameter = Make<Parameter>("input float x = 2;");

    Graph graph;
    IReferenceParameter* reference = parameter->CreateReference(&graph);

    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->GetParameter(), parameter.get());
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_TRUE(parameter->DestroyReference(reference));
}

} // namespace Tolen::Effects::Tests
