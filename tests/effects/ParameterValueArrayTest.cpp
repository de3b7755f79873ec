#include "ParameterValueArraySeparate.h"

#include "Graph.h"

#include "effects/ElementSamples.h"
#include "effects/ParameterFixture.h"

#include "TolenEffects/IReferenceParameter.h"

#include <climits>

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

using Parameter = ParameterValueArraySeparate;
using Listener = CountingListener<IParameter>;

template <class T>
std::vector<T> GetElements(IParameter& parameter) {
    std::vector<T> elements;
    for (int i = 0; i < parameter.GetLength(); ++i) {
        T element = T();
        EXPECT_TRUE(parameter.Get(element, i));
        elements.push_back(element);
    }
    return elements;
}

/// One listener of each kind on one parameter.
struct Listeners {
    explicit Listeners(Parameter& parameter) {
        EXPECT_TRUE(parameter.AddListenerChangeValue(value.Get()));
        EXPECT_TRUE(parameter.AddListenerChangeLength(length.Get()));
        EXPECT_TRUE(parameter.AddListenerChangeStructure(structure.Get()));
    }
    std::vector<int> GetCounts() const {
        return {value.GetCount(), length.GetCount(), structure.GetCount()};
    }

    Listener value, length, structure;
};

class ParameterValueArrayTest : public ParameterFixture {};

template <class T>
class ParameterValueArrayTypedTest : public ParameterFixture {
protected:
    std::unique_ptr<Parameter> MakeTyped(const std::string& size) {
        const std::string keyword = TypeSpecifierToString(ElementType<T>::kSpecifier);
        return this->template Make<Parameter>("input " + keyword + " x[" + size + "];");
    }

    const T _a = MakeSample<T>(1);
    const T _b = MakeSample<T>(2);
};
TYPED_TEST_SUITE(ParameterValueArrayTypedTest, ElementTypes, ElementTypeName);

TYPED_TEST(ParameterValueArrayTypedTest, Set_RoundTripsElementsAndArrays) {
    const auto parameter = this->MakeTyped("3");
    ASSERT_NE(parameter, nullptr);
    IParameter& client = *parameter;
    Listeners listeners(*parameter);
    const std::array<TypeParam, 2> values = {this->_a, this->_b};

    EXPECT_TRUE(client.Set(values.data(), 2));
    EXPECT_TRUE(client.Set(this->_a, 2));

    EXPECT_THAT(GetElements<TypeParam>(client), ElementsAre(this->_a, this->_b, this->_a));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(2, 0, 0));
}

TYPED_TEST(ParameterValueArrayTypedTest, SetAndGet_ThatDontFit_ChangeAndTellNothing) {
    const auto parameter = this->MakeTyped("1");
    ASSERT_NE(parameter, nullptr);
    IParameter& client = *parameter;
    Listeners listeners(*parameter);
    const std::array<TypeParam, 2> values = {this->_a, this->_b};
    TypeParam value = this->_b;

    EXPECT_FALSE(client.Set(this->_a));
    EXPECT_FALSE(client.Get(value));
    EXPECT_FALSE(client.Set(this->_a, 1));
    EXPECT_FALSE(client.Set(this->_a, -1));
    EXPECT_FALSE(client.Set(values.data(), 2));
    EXPECT_FALSE(client.Set(values.data(), -1));
    EXPECT_FALSE(client.Get(value, 1));
    EXPECT_FALSE(client.Get(value, -1));
    EXPECT_EQ(value, this->_b);
#define TOLEN_EXPECT_REFUSED(specifier, T, name, bytes)                                            \
    if constexpr (!std::is_same_v<T, TypeParam>) {                                                 \
        T other = MakeSample<T>(3);                                                                \
        EXPECT_FALSE(client.Set(other, 0)) << name;                                                \
        EXPECT_FALSE(client.Set(&other, 1)) << name;                                               \
        EXPECT_FALSE(client.Get(other, 0)) << name;                                                \
    }
    TOLEN_ELEMENT_TYPES(TOLEN_EXPECT_REFUSED)
#undef TOLEN_EXPECT_REFUSED

    EXPECT_THAT(GetElements<TypeParam>(client), ElementsAre(TypeParam()));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 0, 0));
}

TYPED_TEST(ParameterValueArrayTypedTest, SetLength_KeepsTheFirstElements) {
    const auto parameter = this->MakeTyped("");
    ASSERT_NE(parameter, nullptr);

    EXPECT_EQ(parameter->GetLength(), 0);
    EXPECT_TRUE(parameter->SetLength(1));
    EXPECT_TRUE(parameter->Set(this->_a, 0));
    EXPECT_TRUE(parameter->SetLength(2));
    EXPECT_TRUE(parameter->Set(this->_b, 1));

    EXPECT_THAT(GetElements<TypeParam>(*parameter), ElementsAre(this->_a, this->_b));
}

TEST_F(ParameterValueArrayTest, New_AnswersAsAnArray) {
    const auto parameter = Make<Parameter>("input ivec2 x[2] = ivec2(1, 2);");
    ASSERT_NE(parameter, nullptr);

    EXPECT_EQ(parameter->GetClass(), IParameter::kClass_Value);
    EXPECT_EQ(parameter->GetTypeSpecifier(), kType_IVec2);
    EXPECT_EQ(parameter->GetType(), "ivec2");
    EXPECT_EQ(parameter->GetName(), "x");
    EXPECT_EQ(parameter->GetNameMangled(), "p_k1");
    EXPECT_EQ(parameter->GetNameLengthMangled(), "p_k1Length");
    EXPECT_TRUE(parameter->IsArray());
    EXPECT_EQ(parameter->GetLength(), 2);
    EXPECT_FALSE(parameter->IsResizable());
    EXPECT_FALSE(parameter->IsDefault());
    EXPECT_FALSE(parameter->IsDefault(0));
    EXPECT_TRUE(parameter->IsComplete(nullptr));
    EXPECT_TRUE(parameter->CollectConstructor(nullptr));
    std::string text;
    EXPECT_TRUE(parameter->GetAsString(text));
    EXPECT_EQ(text, "(1,2)");
    EXPECT_FALSE(parameter->GetAsString(text, 2));
    EXPECT_TRUE(_checks.IsEmpty());
}

TEST_F(ParameterValueArrayTest, Init_TakesLengthAndElementsFromTheDeclaration) {
    struct Case {
        const char* declaration;
        std::vector<float> elements;
        bool isResizable;
    };
    for (const Case& c : {
             Case{"input float x[3];", {0, 0, 0}, false},
             Case{"input float x[3] = 5.0;", {5, 5, 5}, false},
             Case{"input float x[2] = float[](1, 2);", {1, 2}, false},
             Case{"input float x[];", {}, true},
             Case{"input float x[] = 5.0;", {}, true},
             Case{"input float x[] = float[](1, 2);", {1, 2}, true},
             Case{"input float x[0];", {}, false},
         }) {
        const auto parameter = Make<Parameter>(c.declaration);
        ASSERT_NE(parameter, nullptr) << c.declaration;
        EXPECT_THAT(GetElements<float>(*parameter), ElementsAreArray(c.elements)) << c.declaration;
        EXPECT_EQ(parameter->IsResizable(), c.isResizable) << c.declaration;
    }
}

TEST_F(ParameterValueArrayTest, Init_WithADefaultOfAnotherLength_NamesTheInput) {
    EXPECT_EQ(Make<Parameter>("input float x[3] = float[](1, 2);"), nullptr);

    EXPECT_THAT(_result.GetMessages(), ElementsAre("Length Mismatch", "Initializer", "x"));
}

TEST_F(ParameterValueArrayTest, Init_WithoutABuffer_Fails) {
    for (const char* operation : {"CreateBuffer", "BufferInit"}) {
        _context.GetLog().FailNth(operation);
        EXPECT_EQ(Make<Parameter>("input float x[3];"), nullptr) << operation;
        EXPECT_THAT(_result.GetMessages(),
                    ElementsAre("Input \"x\" can't be 3 elements of type float"))
            << operation;
    }
}

TEST_F(ParameterValueArrayTest, Init_OfATypeThatIsNoElement_Fails) {
    for (const char* keyword : {"bvec2", "bvec3", "bvec4", "mat2"}) {
        EXPECT_EQ(Make<Parameter>(std::string("input ") + keyword + " x[2];"), nullptr) << keyword;
    }
}

TEST_F(ParameterValueArrayTest, SetLength_OfAFixedArray_IsRefusedUnlessItIsTheSame) {
    const auto parameter = Make<Parameter>("input float x[3];");
    Listeners listeners(*parameter);

    EXPECT_TRUE(parameter->SetLength(3));
    EXPECT_EQ(_console.GetAll(), "");
    EXPECT_FALSE(parameter->SetLength(4));

    EXPECT_EQ(parameter->GetLength(), 3);
    EXPECT_EQ(_console.GetGeneral(), "ParameterValueArraySeparate::SetLength Not Resizable\n");
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 0, 0));
}

TEST_F(ParameterValueArrayTest, SetLength_OfABufferedArray_TellsTheLengthOnly) {
    const auto parameter = Make<Parameter>("input float x[];");
    Listeners listeners(*parameter);

    EXPECT_TRUE(parameter->SetLength(3));
    EXPECT_TRUE(parameter->SetLength(3));
    EXPECT_TRUE(parameter->SetLength(0));

    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 2, 0));
}

TEST_F(ParameterValueArrayTest, SetLength_GivesTheDefaultToNewElementsOnly) {
    const auto parameter = Make<Parameter>("input float x[] = 5.0;");

    EXPECT_TRUE(parameter->SetLength(2));
    EXPECT_TRUE(parameter->Set(1.0f, 0));
    EXPECT_TRUE(parameter->SetLength(3));

    EXPECT_THAT(GetElements<float>(*parameter), ElementsAre(1, 5, 5));
}

TEST_F(ParameterValueArrayTest, SetLength_BeyondAnArrayConstructor_LeavesNewElementsUntouched) {
    const auto parameter = Make<Parameter>("input float x[] = float[](1, 2);");

    EXPECT_TRUE(parameter->SetLength(3));

    EXPECT_THAT(GetElements<float>(*parameter), ElementsAre(1, 2, 0));
}

TEST_F(ParameterValueArrayTest, SetLength_FillsAllNewElementsWhateverListenersAnswer) {
    const auto parameter = Make<Parameter>("input float x[] = 5.0;");
    Listeners listeners(*parameter);
    listeners.value.SetAnswer(false);

    EXPECT_TRUE(parameter->SetLength(3));

    EXPECT_THAT(GetElements<float>(*parameter), ElementsAre(5, 5, 5));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(3, 1, 0));
}

TEST_F(ParameterValueArrayTest, SetLength_WithADefaultThatIsNoConstant_ReportsOnce) {
    const auto parameter = Make<Parameter>("input vec2 x[] = vec2(y);");
    ASSERT_NE(parameter, nullptr);

    EXPECT_TRUE(parameter->SetLength(3));

    EXPECT_EQ(_console.GetGeneral(), "_GetExpressionValue Unsupported Expression\n");
    EXPECT_THAT(GetElements<Vector2f>(*parameter), ElementsAre(Vector2f(), Vector2f(), Vector2f()));
}

TEST_F(ParameterValueArrayTest, SetLength_WhenTheBufferRefuses_ChangesAndTellsNothing) {
    const auto parameter = Make<Parameter>("input float x[] = float[](1, 2);");
    Listeners listeners(*parameter);
    _context.GetLog().FailNth("BufferResize");

    EXPECT_FALSE(parameter->SetLength(9));

    EXPECT_THAT(GetElements<float>(*parameter), ElementsAre(1, 2));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 0, 0));
}

TEST_F(ParameterValueArrayTest, SetLength_AnswersWhatTheListenersAnswer) {
    const auto parameter = Make<Parameter>("input float x[];");
    Listeners listeners(*parameter);
    listeners.length.SetAnswer(false);

    EXPECT_FALSE(parameter->SetLength(1));

    EXPECT_EQ(parameter->GetLength(), 1);
}

TEST_F(ParameterValueArrayTest, SetLength_AcrossZero_ReplacesTheStorageAndTellsTheStructure) {
    const auto parameter = Make<Parameter>("input float x[];");
    parameter->SetLength(1);
    Listeners listeners(*parameter);

    EXPECT_TRUE(parameter->SetLength(-2));
    EXPECT_EQ(parameter->GetLength(), -2);
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 1, 1));
    EXPECT_TRUE(parameter->ApplyStorage(&_primitive, nullptr, 0));
    EXPECT_EQ(_primitive.GetUniform("p_k1"), "float[0]");
    EXPECT_TRUE(parameter->SetLength(-3));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 2, 2));
    EXPECT_TRUE(parameter->SetLength(2));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 3, 3));

    EXPECT_THAT(GetElements<float>(*parameter), ElementsAre(0, 0));
    EXPECT_TRUE(parameter->Set(1.0f, 1));
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(1, 3, 3));
}

TEST_F(ParameterValueArrayTest, SetLength_ThatCantReplaceTheStorage_KeepsTheOneBefore) {
    const auto parameter = Make<Parameter>("input float x[];");
    ASSERT_TRUE(parameter->SetLength(-2));
    Listeners listeners(*parameter);
    _context.GetLog().FailNth("CreateBuffer");

    EXPECT_FALSE(parameter->SetLength(2));

    EXPECT_EQ(parameter->GetLength(), -2);
    EXPECT_THAT(listeners.GetCounts(), ElementsAre(0, 0, 0));
    EXPECT_TRUE(_console.Contains("Input \"x\" can't be 2 elements of type float"));
    EXPECT_TRUE(parameter->ApplyStorage(&_primitive, nullptr, 0));
    EXPECT_TRUE(parameter->SetLength(2));
}

TEST_F(ParameterValueArrayTest, Listener_MayDestroyTheParameterWhileItGrows) {
    struct Killer {
        std::unique_ptr<Parameter> parameter;
        bool OnChange(IParameter*) {
            parameter.reset();
            return true;
        }
    };
    FastDelegate1<IParameter*, bool> listener;
    {
        Killer killer{Make<Parameter>("input float x[] = 5.0;")};
        listener = MakeDelegate(&killer, &Killer::OnChange);
        killer.parameter->AddListenerChangeValue(listener);
        EXPECT_TRUE(killer.parameter->SetLength(3));
        EXPECT_EQ(killer.parameter, nullptr);
    }
    {
        Killer killer{Make<Parameter>("input float x[] = 5.0;")};
        listener = MakeDelegate(&killer, &Killer::OnChange);
        killer.parameter->AddListenerChangeLength(listener);
        EXPECT_TRUE(killer.parameter->SetLength(3));
        EXPECT_EQ(killer.parameter, nullptr);
    }
}

TEST_F(ParameterValueArrayTest, Listener_MayChangeTheLengthWhileItGrows) {
    struct Shortener {
        Parameter* parameter;
        bool OnChange(IParameter*) { return parameter->SetLength(1); }
    };
    const auto parameter = Make<Parameter>("input float x[] = 5.0;");
    Shortener shortener{parameter.get()};
    FastDelegate1<IParameter*, bool> listener = MakeDelegate(&shortener, &Shortener::OnChange);
    parameter->AddListenerChangeValue(listener);

    EXPECT_TRUE(parameter->SetLength(3));

    EXPECT_THAT(GetElements<float>(*parameter), ElementsAre(5));
}

TEST_F(ParameterValueArrayTest, ApplyStorage_PointsTheBlockAtTheBuffer) {
    const auto parameter = Make<Parameter>("input float x[2];");
    _context.GetLog().Clear();

    EXPECT_TRUE(parameter->ApplyStorage(&_primitive, nullptr, 1));

    EXPECT_THAT(_context.GetLog().GetLines(),
                ElementsAre("SetUniformBlock primitive1 \"p_k1\" @1 block buffer1"));
}

TEST_F(ParameterValueArrayTest, ApplyLength_WritesTheLengthOrReports) {
    const auto parameter = Make<Parameter>("input float x[2];");

    EXPECT_TRUE(parameter->ApplyLength(&_primitive, nullptr, 1));
    EXPECT_EQ(_primitive.GetUniform("p_k1Length"), "int 2");
    EXPECT_FALSE(parameter->ApplyLength(&_primitive, nullptr, -1));

    EXPECT_EQ(_console.GetGeneral(), "ParameterValueArraySeparate::_ApplyLength Set Uniform\n");
}

TEST_F(ParameterValueArrayTest, CollectShader_DeclaresABlockAndTheLength) {
    const auto parameter = Make<Parameter>("input vec3 x[4];");
    const std::unique_ptr<Module> module(Module::Create(nullptr));

    EXPECT_TRUE(parameter->CollectShader(module.get()));

    EXPECT_THAT(PrintLines(module.get()), ElementsAre("uniformblock p_k1", "{", "vec3 a[1];", "};",
                                                      "uniform int p_k1Length;"));
}

TEST_F(ParameterValueArrayTest, CollectShader_OfANegativeLength_DeclaresAUniformArray) {
    const auto parameter = Make<Parameter>("input vec3 x[];");
    parameter->SetLength(-4);
    const std::unique_ptr<Module> module(Module::Create(nullptr));

    EXPECT_TRUE(parameter->CollectShader(module.get()));

    EXPECT_THAT(PrintLines(module.get()),
                ElementsAre("uniform vec3 p_k1[1];", "uniform int p_k1Length;"));
}

TEST_F(ParameterValueArrayTest, VisitTransformations_RewritesSubscriptsAndLengths) {
    const auto parameter = Make<Parameter>("input float x[4]; input float y[4];"
                                           "float f(int i) { return x[x[i + 1]] + y[i] + "
                                           "float(x.length + y.length); }");
    const auto module = CloneMethods();
    Transformer transformer(module.get());

    EXPECT_TRUE(transformer.Run(*parameter));

    EXPECT_THAT(transformer.GetClasses(), ElementsAre(kClass_Subscript, kClass_FieldSelection));
    EXPECT_THAT(PrintLines(module.get()),
                ElementsAre("float f(int i)", "{",
                            "return ((p_k1.a[p_k1.a[(i+1)]]+y[i])+float((p_k1Length+y.length)));",
                            "}"));
}

TEST_F(ParameterValueArrayTest, VisitTransformations_OfDeepSubscripts_StaysQuick) {
    constexpr int kDepth = 1000;
    std::string expression;
    for (int i = 0; i < kDepth; ++i) {
        expression += "x[";
    }
    expression += "0" + std::string(kDepth, ']');
    const auto parameter =
        Make<Parameter>("input int x[4]; int f() { return " + expression + "; }");
    const auto module = CloneMethods();

    EXPECT_TRUE(Transformer(module.get()).Run(*parameter));

    std::string text;
    for (const std::string& line : PrintLines(module.get())) {
        text += line;
    }
    std::size_t count = 0;
    for (std::size_t at = text.find("p_k1.a["); at != std::string::npos;
         at = text.find("p_k1.a[", at + 1)) {
        ++count;
    }
    EXPECT_EQ(count, static_cast<std::size_t>(kDepth));
}

TEST_F(ParameterValueArrayTest, Shutdown_ShowsInNamesAndFailsAllUse) {
    const auto parameter = Make<Parameter>("input float x[];");

    parameter->Shutdown();
    parameter->Shutdown();

    EXPECT_EQ(parameter->GetNameMangled(), "Shutdown");
    EXPECT_EQ(parameter->GetNameLengthMangled(), "Shutdown");
    EXPECT_FALSE(parameter->Set(1.0f, 0));
    EXPECT_FALSE(parameter->ApplyStorage(&_primitive, nullptr, 0));
    EXPECT_FALSE(parameter->ApplyLength(&_primitive, nullptr, 0));
    EXPECT_TRUE(_checks.Contains("_pStorage", "Source/ParameterValueArraySeparate"));
    EXPECT_FALSE(parameter->SetLength(2));
    EXPECT_TRUE(_checks.Contains("_pStorage != NULL", "Source/ParameterValueArraySeparate"));
}

TEST_F(ParameterValueArrayTest, CreateReference_GivesOneOfThisParameter) {
    const auto parameter = Make<Parameter>("input float x[2];");

    Graph graph;
    IReferenceParameter* reference = parameter->CreateReference(&graph);

    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->GetParameter(), parameter.get());
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_TRUE(parameter->DestroyReference(reference));
}

} // namespace Tolen::Effects::Tests
