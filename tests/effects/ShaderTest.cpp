#include "LoadedManager.h"

#include "MgrEffectsImpl.h"
#include "support/CapturedChecks.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IReferenceShader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Effects::Tests {

namespace {

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(IShaderTest, EveryDefault_DoesNothing) {
    class Bare : public IShader {};
    Bare shader;
    FastDelegate1<IShader*, bool> listener;
    EXPECT_FALSE(shader.AddListenerDelete(listener));
    EXPECT_FALSE(shader.CollectShader(nullptr));
    EXPECT_EQ(shader.GetInterfaceName(), "");
    EXPECT_EQ(shader.GetClassName(), "");
    EXPECT_EQ(shader.GetMethodNameMangled("f"), "");
    EXPECT_FALSE(shader.HasConstructor());
    EXPECT_EQ(shader.GetPrototype(), nullptr);
    EXPECT_EQ(shader.CreateGraphKind0(), nullptr);
    EXPECT_EQ(shader.GetGraphKind2(), nullptr);
    EXPECT_FALSE(shader.DestroyGraphKind3());
    EXPECT_EQ(shader.CreateReference(nullptr), nullptr);
    EXPECT_FALSE(shader.ReleaseReference(nullptr));
    EXPECT_FALSE(shader.IsComplete(nullptr));
    EXPECT_EQ(shader.GetName(), "");
    EXPECT_FALSE(shader.SetParameter(nullptr, "x", 1.0f));
    EXPECT_FALSE(shader.SetParameter(nullptr, "x", true, 0));
    const int values[1] = {1};
    EXPECT_FALSE(shader.SetParameter(nullptr, "x", values, 1));
    EXPECT_FALSE(shader.SetParameter(nullptr, "x", static_cast<IShader*>(nullptr)));
    EXPECT_EQ(shader.GetShaderType(), IShader::kShaderType_Undefined);
}

constexpr const char* kClass = "interface I { float f(float a); }"
                               "class A : I { input float x = 2.0; float m = 1.0; coord vec2 uv;"
                               " float f(float a) { m = a * x; return g(uv); }"
                               " float g(vec2 c) { return c.x; }"
                               " static float s() { return 1.0; } }";

TEST(ShaderTest, BeforeInit_AnswersWithoutAPrototype) {
    Shader shader;
    EXPECT_EQ(shader.GetName(), "");
    EXPECT_EQ(shader.GetClassName(), "");
    EXPECT_EQ(shader.GetInterfaceName(), "");
    EXPECT_EQ(shader.GetMgrEffects(), nullptr);
    EXPECT_EQ(shader.GetPrototype(), nullptr);
    EXPECT_FALSE(shader.IsComplete(nullptr));
    EXPECT_EQ(shader.CreateGraphKind0(), nullptr);
    EXPECT_EQ(shader.CreateReference(nullptr), nullptr);
    EXPECT_FALSE(shader.SetParameter(nullptr, "x", 1.0f));
    EXPECT_FALSE(shader.CollectShader(nullptr));
    shader.Shutdown();
    shader.Shutdown();
}

TEST(ShaderTest, Init_NamesTheShaderAfterItsClass) {
    LoadedManager loaded(kClass);
    Shader* shader = loaded.Create("A");
    EXPECT_EQ(shader->GetName(), "A");
    EXPECT_EQ(shader->GetClassName(), "A");
    EXPECT_EQ(shader->GetInterfaceName(), "I");
    EXPECT_EQ(shader->GetPrototype(), loaded.GetPrototype("A"));
    EXPECT_EQ(shader->GetMgrEffects(), &loaded.manager);
    EXPECT_EQ(shader->GetShaderType(), 1);
    EXPECT_TRUE(shader->HasConstructor());
    EXPECT_EQ(shader->GetKeyName(), "_k3");
    EXPECT_EQ(shader->GetConstructorName(), "__ctor__k3");
    EXPECT_TRUE(shader->SetName("mine"));
    EXPECT_EQ(shader->GetName(), "mine");
    EXPECT_EQ(shader->GetClassName(), "A");
}

TEST(ShaderTest, MethodNames_AreClassMethodAndKey) {
    LoadedManager loaded(kClass);
    Shader* shader = loaded.Create("A");
    EXPECT_TRUE(shader->HasMethod("f"));
    EXPECT_EQ(shader->GetMethodNameMangled("f"), "A_f_k3");
    EXPECT_FALSE(shader->HasMethod("nope"));
    EXPECT_EQ(shader->GetMethodNameMangled("nope"), "MethodNotFound");
    // Static methods exist once, in the class.
    EXPECT_FALSE(shader->HasMethod("s"));
    EXPECT_EQ(shader->GetMethodNameMangled("s"), "MethodNotFound");
}

TEST(ShaderTest, CollectShader_WritesTheClassUnderTheNamesOfTheInstance) {
    LoadedManager loaded(kClass);
    Shader* shader = loaded.Create("A");
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "uv0"));
    EXPECT_EQ(loaded.Collect(shader),
              "\nfloat PrototypeMemberValueSingle_k2_k5;\nuniform float x_k1_k4;\n\n\n"
              "float A_f_k3(float a)\n{\n\tPrototypeMemberValueSingle_k2_k5 = (a*x_k1_k4);\n"
              "\treturn A_g_k3(uv0);\n}\n\n"
              "float A_g_k3(vec2 c)\n{\n\treturn c.x;\n}\n\n"
              "void __ctor__k3()\n{\n\tPrototypeMemberValueSingle_k2_k5 = 1.0;\n}\n\n");
}

TEST(ShaderTest, TwoInstances_ShareNoName) {
    LoadedManager loaded(kClass);
    Shader* a = loaded.Create("A");
    Shader* b = loaded.Create("A");
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    EXPECT_TRUE(a->CollectShader(module.get()));
    EXPECT_TRUE(b->CollectShader(module.get()));
    std::multiset<std::string> names;
    for (const FunctionDefinition* definition : module->GetFunctionDefinitions()) {
        names.insert(definition->GetFunctionPrototype()->GetName()->GetString());
    }
    EXPECT_EQ(names.size(), 6u);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
}

TEST(ShaderTest, TheSameCalls_GiveTheSameText) {
    const auto run = [] {
        LoadedManager loaded(kClass);
        loaded.Create("A");
        Shader* gone = loaded.Create("A");
        loaded.manager.DestroyShader(gone);
        return loaded.Collect(loaded.Create("A"));
    };
    EXPECT_EQ(run(), run());
}

TEST(ShaderTest, CollectDeclarationMethod_DeclaresUnderTheMangledName) {
    LoadedManager loaded("class A { float f(float a) { return a; } float f(vec2 a) { return a.x; }"
                         " static float f(vec3 a) { return a.x; } }");
    Shader* shader = loaded.Create("A");
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    EXPECT_TRUE(shader->CollectDeclarationMethod(module.get(), "f"));
    EXPECT_EQ(loaded.Print(module.get()), "\n\nfloat A_f_k1(float a);\nfloat A_f_k1(vec2 a);\n\n");
    EXPECT_FALSE(shader->CollectDeclarationMethod(module.get(), "nope"));
    EXPECT_EQ(loaded.console.GetGeneral(), "Shader::CollectDeclarationMethod Method Not Found\n");
}

TEST(ShaderTest, VisitMethods_GivesTheMangledMethodsWithoutConstructorAndStatics) {
    LoadedManager loaded(kClass);
    std::vector<std::string> names;
    auto note = [&](const FunctionDefinition* method) {
        names.push_back(method->GetFunctionPrototype()->GetName()->GetString());
        return names.size() != 1;
    };
    auto visit = FastDelegate1<const FunctionDefinition*, bool>::Borrow(note);
    EXPECT_FALSE(loaded.Create("A")->VisitMethods(visit));
    EXPECT_EQ(names, (std::vector<std::string>{"A_f_k3", "A_g_k3"}));
}

TEST(ShaderTest, AMethodNamedLikeAnotherOnesMangledName_KeepsItsOwn) {
    LoadedManager loaded("class A { float f() { return A_f_k1(); }"
                         " float A_f_k1() { return f(); } }");
    const std::string text = loaded.Collect(loaded.Create("A"));
    EXPECT_TRUE(Has(text, "float A_f_k1()\n{\n\treturn A_A_f_k1_k1();"));
    EXPECT_TRUE(Has(text, "float A_A_f_k1_k1()\n{\n\treturn A_f_k1();"));
}

// Coords.

TEST(ShaderTest, SetCoord_RenamesTheVariable) {
    LoadedManager loaded("class A { coord vec2 uv; float f() { return uv.x; } }");
    Shader* shader = loaded.Create("A");
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "map1"));
    EXPECT_TRUE(Has(loaded.Collect(shader), "return map1.x;"));
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "map2"));
    EXPECT_TRUE(Has(loaded.Collect(shader), "return map2.x;"));
}

TEST(ShaderTest, SetCoord_OfTwoCoordsToEachOthersNames_Swaps) {
    LoadedManager loaded("class A { coord vec2 uv0; coord vec2 uv1;"
                         " float f() { return uv0.x * uv1.y; } }");
    Shader* shader = loaded.Create("A");
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv0", "uv1"));
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv1", "uv0"));
    EXPECT_TRUE(Has(loaded.Collect(shader), "return (uv1.x*uv0.y);"));
}

TEST(ShaderTest, SetCoord_OfAnUnknownName_Tells) {
    LoadedManager loaded("class A { input float x; }");
    Shader* shader = loaded.Create("A");
    Result result;
    EXPECT_FALSE(shader->SetCoord(&result, "x", "uv0"));
    EXPECT_EQ(LoadedManager::Join(result),
              "Parameter error \"Can't find parameter\" parameter:\"x\" class:\"A\"\n");
    EXPECT_EQ(loaded.console.GetGeneral(), LoadedManager::Join(result));
}

TEST(ShaderTest, Init_WithATransformedCoordThatIsNoVec3_Fails) {
    LoadedManager loaded("class A { normal vec4 n; input float x; }");
    EXPECT_EQ(loaded.CreateFails("A"), "Could not create shader named \"A\"\n");
    EXPECT_TRUE(
        loaded.console.Contains("ParameterCoord::Init Transformed Coords must be declared vec3\n"));
    // Everything that was drawn is given back: the prototype holds the first key.
    EXPECT_EQ(loaded.manager.CreateKey().GetNumber() + loaded.manager.CreateKey().GetNumber(), 5u);
}

// Look-ups.

TEST(ShaderTest, LookUpsAndVisits_GoByName) {
    LoadedManager loaded("class A { input float b; input float a; float n; float m;"
                         " coord vec2 d; coord vec2 c; }");
    Shader* shader = loaded.Create("A");
    EXPECT_NE(shader->GetParameter("a"), nullptr);
    EXPECT_EQ(shader->GetParameter("m"), nullptr);
    EXPECT_NE(shader->GetMember("m"), nullptr);
    EXPECT_EQ(shader->GetMember("c"), nullptr);
    EXPECT_NE(shader->GetCoord("c"), nullptr);
    EXPECT_EQ(shader->GetCoord("a"), nullptr);
    std::string names;
    auto parameter = [&](const std::string& name, IParameter*) {
        names += name;
        return false;
    };
    auto visitParameter = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(parameter);
    EXPECT_FALSE(shader->VisitParameters(visitParameter));
    EXPECT_FALSE(shader->VisitCoords(visitParameter));
    auto member = [&](const std::string& name, IMember*) {
        names += name;
        return true;
    };
    auto visitMember = FastDelegate2<const std::string&, IMember*, bool>::Borrow(member);
    EXPECT_TRUE(shader->VisitMembers(visitMember));
    EXPECT_EQ(names, "abcdmn");
}

// Completeness and structure.

TEST(ShaderTest, IsComplete_OfAShaderWithValuesOnly_IsTrue) {
    LoadedManager loaded(kClass);
    Shader* shader = loaded.Create("A");
    Result result;
    EXPECT_TRUE(shader->IsComplete(&result));
    EXPECT_TRUE(shader->IsComplete(nullptr));
    EXPECT_TRUE(result.IsEmpty());
}

/// Counts structure notices and does what a test wants in them.
struct StructureListener {
    std::function<bool(IShader*)> onChange = [](IShader*) { return true; };
    int count = 0;
    bool OnChange(IShader* shader) {
        ++count;
        return onChange(shader);
    }
    FastDelegate1<IShader*, bool> delegate{this, &StructureListener::OnChange};
};

TEST(ShaderTest, ChangesOfStructure_AreTold) {
    LoadedManager loaded("class A { coord vec2 uv; float m[]; input float x;"
                         " float f() { return m[0] * uv.x * x; } }");
    Shader* shader = loaded.Create("A");
    StructureListener listener;
    shader->AddListenerChangeStructure(listener.delegate);
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "uv0"));
    EXPECT_EQ(listener.count, 1);
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "uv0"));
    EXPECT_EQ(listener.count, 1);
    EXPECT_TRUE(shader->GetMember("m")->SetLength(3));
    EXPECT_EQ(listener.count, 2);
    EXPECT_TRUE(Has(loaded.Collect(shader), "float PrototypeMemberValueArray_k2_k5[3];"));
    EXPECT_TRUE(shader->SetParameter(nullptr, "x", 2.0f));
    EXPECT_EQ(listener.count, 2);
    shader->RemoveListenerChangeStructure(listener.delegate);
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "uv1"));
    EXPECT_EQ(listener.count, 2);
}

TEST(ShaderTest, AChangeOfTheClass_IsTold) {
    LoadedManager loaded("class A { static float m[]; float f() { return m[0]; } }");
    Shader* shader = loaded.Create("A");
    StructureListener listener;
    shader->AddListenerChangeStructure(listener.delegate);
    EXPECT_TRUE(loaded.GetPrototype("A")->GetMember("m")->SetLength(2));
    EXPECT_EQ(listener.count, 1);
}

TEST(ShaderTest, AStructureListenerThatAnswersFalse_FailsTheSetterWithTheChangeInPlace) {
    LoadedManager loaded("class A { coord vec2 uv; float f() { return uv.x; } }");
    Shader* shader = loaded.Create("A");
    StructureListener listener;
    listener.onChange = [](IShader*) { return false; };
    shader->AddListenerChangeStructure(listener.delegate);
    Result result;
    EXPECT_FALSE(shader->SetCoord(&result, "uv", "uv0"));
    EXPECT_EQ(LoadedManager::Join(result),
              "Parameter error \"Can't set parameter\" parameter:\"uv\" class:\"A\"\n");
    EXPECT_TRUE(Has(loaded.Collect(shader), "return uv0.x;"));
}

TEST(ShaderTest, Init_OfACompleteShaderWhoseCodeCannotBeBuilt_Fails) {
    // A length that doesn't fit the initializer makes the constructor impossible.
    LoadedManager loaded("class A { coord vec2 uv; float m[2] = float[](1.0, 2.0, 3.0);"
                         " float f() { return m[0] + uv.x; } }");
    EXPECT_EQ(loaded.CreateFails("A"), "Could not create shader named \"A\"\n");
}

TEST(ShaderTest, AListenerThatChangesTheShaderAgain_HasEverybodyToldAgain) {
    LoadedManager loaded("class A { coord vec2 uv; float f() { return uv.x; } }");
    Shader* shader = loaded.Create("A");
    std::vector<std::string> seen;
    StructureListener first;
    StructureListener second;
    StructureListener* before = first.delegate < second.delegate ? &first : &second;
    StructureListener* after = before == &first ? &second : &first;
    before->onChange = [&](IShader* changed) {
        std::string name;
        changed->GetCoord("uv")->Get(name);
        seen.push_back(name);
        return true;
    };
    after->onChange = [&](IShader* changed) { return changed->SetCoord(nullptr, "uv", "last"); };
    shader->AddListenerChangeStructure(first.delegate);
    shader->AddListenerChangeStructure(second.delegate);
    EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "first"));
    EXPECT_EQ(seen, (std::vector<std::string>{"first", "last"}));
    EXPECT_TRUE(Has(loaded.Collect(shader), "return last.x;"));
}

TEST(ShaderTest, AStructureListenerThatDestroysTheShader_EndsTheChange) {
    LoadedManager loaded("class A { coord vec2 uv; float f() { return uv.x; } }");
    Shader* shader = loaded.Create("A");
    StructureListener listener;
    listener.onChange = [&](IShader* changed) {
        loaded.manager.DestroyShader(changed);
        return false;
    };
    shader->AddListenerChangeStructure(listener.delegate);
    Result result;
    EXPECT_FALSE(shader->SetCoord(&result, "uv", "uv0"));
    EXPECT_TRUE(result.IsEmpty());
}

TEST(ShaderTest, AValueListenerThatDestroysTheShader_EndsTheSetter) {
    struct Destroyer {
        MgrEffects* manager;
        IShader* shader;
        bool OnChange(IParameter*) {
            manager->DestroyShader(shader);
            return false;
        }
    };
    LoadedManager loaded("class A { input float x; }");
    Shader* shader = loaded.Create("A");
    Destroyer destroyer{&loaded.manager, shader};
    FastDelegate1<IParameter*, bool> onChange(&destroyer, &Destroyer::OnChange);
    shader->GetParameter("x")->AddListenerChangeValue(onChange);
    EXPECT_FALSE(shader->SetParameter(nullptr, "x", 1.0f));
}

// Setting inputs.

template <class T>
class ShaderSetTest : public testing::Test {};

#define TOLEN_TYPE_OF(specifier, T, name, bytes) , T
template <class First, class... Types>
struct TypesAfter {
    using List = testing::Types<Types...>;
};
using ElementTypeList = TypesAfter<void TOLEN_ELEMENT_TYPES(TOLEN_TYPE_OF)>::List;
#undef TOLEN_TYPE_OF
TYPED_TEST_SUITE(ShaderSetTest, ElementTypeList);

/// A value that differs from the one that a new parameter has.
template <class T>
T MakeOther() {
    if constexpr (std::is_same_v<T, bool>) {
        return true;
    } else if constexpr (std::is_same_v<T, KLtexture>) {
        return reinterpret_cast<KLtexture>(std::uintptr_t{64});
    } else if constexpr (std::is_class_v<T>) {
        T value;
        if constexpr (std::is_same_v<T, Matrix33f> || std::is_same_v<T, Matrix44f>) {
            value.m[1] = 7.0f;
        } else {
            value.y = 7;
        }
        return value;
    } else {
        return static_cast<T>(7);
    }
}

TYPED_TEST(ShaderSetTest, SetParameter_OfItsType_ReachesTheParameterAndNoOther) {
    const std::string type = TypeSpecifierToString(ElementType<TypeParam>::kSpecifier);
    LoadedManager loaded("class A { input " + type + " x; input " + type + " other; input " + type +
                         " y[3]; }");
    Shader* shader = loaded.Create("A");
    TypeParam initial{};
    EXPECT_TRUE(shader->GetParameter("other")->Get(initial));
    const TypeParam value = MakeOther<TypeParam>();
    TypeParam read{};
    Result result;
    EXPECT_TRUE(shader->SetParameter(&result, "x", value));
    EXPECT_TRUE(shader->GetParameter("x")->Get(read));
    EXPECT_TRUE(read == value);
    EXPECT_TRUE(shader->GetParameter("other")->Get(read));
    EXPECT_TRUE(read == initial);

    EXPECT_TRUE(shader->SetParameter(&result, "y", value, 1));
    EXPECT_TRUE(shader->GetParameter("y")->Get(read, 1));
    EXPECT_TRUE(read == value);
    const TypeParam values[2] = {value, value};
    EXPECT_TRUE(shader->SetParameter(&result, "y", values, 2));
    EXPECT_TRUE(shader->GetParameter("y")->Get(read, 0));
    EXPECT_TRUE(read == value);
    EXPECT_TRUE(result.IsEmpty()) << LoadedManager::Join(result);
}

TYPED_TEST(ShaderSetTest, SetParameter_ThatFails_SaysWhy) {
    using Wrong = std::conditional_t<std::is_same_v<TypeParam, int>, float, int>;
    const std::string type = TypeSpecifierToString(ElementType<Wrong>::kSpecifier);
    LoadedManager loaded("class A { input " + type + " x; input " + type + " y[3]; }");
    Shader* shader = loaded.Create("A");
    const TypeParam value = MakeOther<TypeParam>();
    const auto message = [](const char* text, const char* parameter) {
        return std::string("Parameter error \"") + text + "\" parameter:\"" + parameter +
               "\" class:\"A\"\n";
    };
    Result result;
    EXPECT_FALSE(shader->SetParameter(&result, "no%s", value));
    EXPECT_EQ(result.GetLast(), message("Can't find parameter", "no%s"));
    EXPECT_FALSE(shader->SetParameter(&result, "nope", value, 0));
    EXPECT_EQ(result.GetLast(), message("Can't find indexed parameter", "nope"));
    EXPECT_FALSE(shader->SetParameter(&result, "nope", &value, 1));
    EXPECT_EQ(result.GetLast(), message("Can't find indexed parameter", "nope"));
    EXPECT_FALSE(shader->SetParameter(&result, "x", value));
    EXPECT_EQ(result.GetLast(), message("Can't set parameter", "x"));
    EXPECT_FALSE(shader->SetParameter(&result, "y", value, 0));
    EXPECT_EQ(result.GetLast(), message("Can't set indexed parameter", "y"));
    EXPECT_FALSE(shader->SetParameter(&result, "y", &value, 1));
    EXPECT_EQ(result.GetLast(), message("Can't set indexed parameter", "y"));
    EXPECT_FALSE(shader->SetParameter(nullptr, "x", value));
    EXPECT_TRUE(loaded.console.Contains(message("Can't find parameter", "no%s")));
    EXPECT_TRUE(loaded.console.Contains(message("Can't set parameter", "x")));
}

TEST(ShaderTest, SetParameter_BeyondTheLength_Fails) {
    LoadedManager loaded("class A { input float y[2]; }");
    Shader* shader = loaded.Create("A");
    EXPECT_FALSE(shader->SetParameter(nullptr, "y", 1.0f, 2));
    EXPECT_FALSE(shader->SetParameter(nullptr, "y", 1.0f, -1));
    const float values[3] = {1.0f, 2.0f, 3.0f};
    EXPECT_FALSE(shader->SetParameter(nullptr, "y", values, 3));
    EXPECT_TRUE(shader->SetParameter(nullptr, "y", values, 2));
}

TEST(ShaderTest, SetParameter_InsideAnother_RestoresTheResultOfTheOuterOne) {
    struct Nested {
        Shader* shader;
        MgrEffectsImpl* manager;
        Result inner;
        bool OnChange(IParameter*) {
            EXPECT_TRUE(shader->SetParameter(&inner, "b", 1.0f));
            manager->AddResultMessage("outer");
            return true;
        }
    };
    LoadedManager loaded("class A { input float a; input float b; }");
    Shader* shader = loaded.Create("A");
    Nested nested{shader, loaded.manager.GetImplementation(), {}};
    FastDelegate1<IParameter*, bool> onChange(&nested, &Nested::OnChange);
    shader->GetParameter("a")->AddListenerChangeValue(onChange);
    Result outer;
    EXPECT_TRUE(shader->SetParameter(&outer, "a", 1.0f));
    EXPECT_EQ(LoadedManager::Join(outer), "outer\n");
    EXPECT_TRUE(nested.inner.IsEmpty());
    EXPECT_EQ(loaded.manager.GetImplementation()->GetResult(), nullptr);
}

TEST(ShaderTest, SetParameter_OfAValueToAShader_IsRefused) {
    LoadedManager loaded("class A { input float x; }");
    Shader* shader = loaded.Create("A");
    IShader* other = loaded.Create("A");
    Result result;
    EXPECT_FALSE(shader->SetParameter(&result, "x", other));
    EXPECT_EQ(result.GetLast(),
              "Parameter error \"Can't set parameter\" parameter:\"x\" class:\"A\"\n");
    EXPECT_FALSE(shader->SetParameter(&result, "x", other, 0));
    EXPECT_EQ(result.GetLast(),
              "Parameter error \"Can't set indexed parameter\" parameter:\"x\" class:\"A\"\n");
    EXPECT_FALSE(shader->SetParameter(&result, "x", &other, 1));
    EXPECT_EQ(result.GetLast(),
              "Parameter error \"Can't set indexed parameter\" parameter:\"x\" class:\"A\"\n");
}

TEST(ShaderTest, SetParameter_OfAnUnknownInputToAShader_HasATextOfItsOwn) {
    LoadedManager loaded("class A { input float x; }");
    Shader* shader = loaded.Create("A");
    shader->SetName("mine");
    Result result;
    EXPECT_FALSE(shader->SetParameter(&result, "nope", static_cast<IShader*>(nullptr)));
    EXPECT_EQ(LoadedManager::Join(result), "Can't get parameter nope of the shader mine\n");
    EXPECT_EQ(loaded.console.GetGeneral(), LoadedManager::Join(result));
}

TEST(ShaderTest, SetParameter_ToAShaderOfAnUnknownKind_IsRefused) {
    class Foreign : public IShader {
    public:
        const std::string& GetName() override { return name; }
        std::string name = "foreign";
    };
    LoadedManager loaded("class A { input float x; }");
    Shader* shader = loaded.Create("A");
    Foreign foreign;
    IShader* shaders[2] = {nullptr, &foreign};
    const std::string message =
        "sub shader foreign can not be attached to A, it's not compatible\n";
    Result result;
    EXPECT_FALSE(shader->SetParameter(&result, "x", &foreign));
    EXPECT_EQ(LoadedManager::Join(result), message);
    EXPECT_FALSE(shader->SetParameter(&result, "x", &foreign, 0));
    EXPECT_FALSE(shader->SetParameter(&result, "x", shaders, 2));
    EXPECT_EQ(LoadedManager::Join(result), message + message + message);
}

// References and graphs.

TEST(ShaderTest, CreateReference_CountsItsUses) {
    LoadedManager loaded("class A { float f() { return 1.0; } } class B { }");
    Shader* shader = loaded.Create("A");
    IGraph* graph = loaded.Create("B")->CreateGraphKind0();
    EXPECT_EQ(shader->GetReference(graph), nullptr);
    IReferenceShader* reference = shader->CreateReference(graph);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(shader->CreateReference(graph), reference);
    EXPECT_EQ(shader->GetReference(graph), reference);
    EXPECT_TRUE(shader->ReleaseReference(reference));
    EXPECT_EQ(shader->GetReference(graph), reference);
    EXPECT_TRUE(shader->ReleaseReference(reference));
    EXPECT_EQ(shader->GetReference(graph), nullptr);
}

TEST(ShaderTest, ReleaseReference_OfWhatIsNotHere_Tells) {
    LoadedManager loaded("class A { }");
    Shader* a = loaded.Create("A");
    Shader* b = loaded.Create("A");
    IGraph* graph = a->CreateGraphKind0();
    const std::string line = "Shader::ReleaseReference Reference Not Found\n";
    EXPECT_FALSE(b->ReleaseReference(nullptr));
    EXPECT_EQ(loaded.console.GetGeneral(), line);
    EXPECT_FALSE(b->ReleaseReference(a->GetReference(graph)));
    EXPECT_EQ(loaded.console.GetGeneral(), line + line);
    EXPECT_NE(a->GetReference(graph), nullptr);
}

TEST(ShaderTest, AReferenceOfAShaderWithAGraphOfItsOwn_IsCountedForTheUser) {
    LoadedManager loaded("class A { float f() { return 1.0; } }");
    Shader* user = loaded.Create("A");
    Shader* shader = loaded.Create("A");
    IGraph* own = shader->CreateGraphKind0();
    IGraph* graph = user->CreateGraphKind0();
    IReferenceShader* reference = shader->CreateReference(graph);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->GetGraph(), own);
    EXPECT_TRUE(shader->ReleaseReference(reference));
    EXPECT_EQ(shader->GetReference(graph), nullptr);
    EXPECT_NE(shader->GetReference(own), nullptr);
}

TEST(ShaderTest, AReferenceThatCannotBeMade_IsAskedForOnceForEachGraph) {
    // The class has an output whose type the graph already has otherwise.
    LoadedManager loaded("class A { output vec4 o_color; } class B { }");
    Shader* shader = loaded.Create("A");
    Shader* root = loaded.Create("B");
    IGraph* graph = root->CreateGraphKind0();
    EXPECT_EQ(shader->CreateReference(graph), nullptr);
    loaded.console.Clear();
    EXPECT_EQ(shader->CreateReference(graph), nullptr);
    EXPECT_EQ(loaded.console.GetAll(), "");
    EXPECT_EQ(shader->GetReference(graph), nullptr);
    // Another graph that may lie at the same address asks anew.
    root->DestroyGraphKind0();
    graph = root->CreateGraphKind0();
    EXPECT_EQ(shader->CreateReference(graph), nullptr);
    EXPECT_NE(loaded.console.GetAll(), "");
}

struct GraphKind {
    const char* name;
    IKLShader::Type type;
    bool (IShader::*add)(FastDelegate2<IShader*, IGraph*, bool>&);
    bool (IShader::*remove)(FastDelegate2<IShader*, IGraph*, bool>&);
    IGraph* (IShader::*create)();
    IGraph* (IShader::*get)();
    bool (IShader::*destroy)();
};

#define TOLEN_GRAPH_KIND(name, N, type)                                                            \
    {                                                                                              \
        name, type, &IShader::AddListenerCreateGraphKind##N,                                       \
            &IShader::RemoveListenerCreateGraphKind##N, &IShader::CreateGraphKind##N,              \
            &IShader::GetGraphKind##N, &IShader::DestroyGraphKind##N                               \
    }
const GraphKind kGraphKinds[] = {TOLEN_GRAPH_KIND("Ray", 0, IKLShader::kType_Ray),
                                 TOLEN_GRAPH_KIND("Frame", 2, IKLShader::kType_Frame),
                                 TOLEN_GRAPH_KIND("Prefix", 3, IKLShader::kType_PrefixRay)};
#undef TOLEN_GRAPH_KIND

class ShaderGraphTest : public testing::TestWithParam<GraphKind> {
protected:
    bool OnCreate(IShader* shader, IGraph* graph) {
        EXPECT_EQ((shader->*GetParam().get)(), graph);
        ++count;
        if (destroys) {
            (shader->*GetParam().destroy)();
        }
        if (destroysShader) {
            loaded.manager.DestroyShader(shader);
        }
        return true;
    }

    LoadedManager loaded{"class A { float f() { return 1.0; } }"};
    FastDelegate2<IShader*, IGraph*, bool> listener{this, &ShaderGraphTest::OnCreate};
    int count = 0;
    bool destroys = false;
    bool destroysShader = false;
};

TEST_P(ShaderGraphTest, CreateGraph_Twice_GivesOneGraphAndTellsOnce) {
    IShader* shader = loaded.Create("A");
    shader->SetName("mine");
    EXPECT_EQ((shader->*GetParam().get)(), nullptr);
    EXPECT_TRUE((shader->*GetParam().add)(listener));
    IGraph* graph = (shader->*GetParam().create)();
    ASSERT_NE(graph, nullptr);
    EXPECT_EQ((shader->*GetParam().create)(), graph);
    EXPECT_EQ((shader->*GetParam().get)(), graph);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(graph->GetType(), GetParam().type);
    EXPECT_EQ(graph->GetName(), "mine");
    EXPECT_EQ(graph->GetShader(), shader);
    for (const GraphKind& other : kGraphKinds) {
        EXPECT_EQ((shader->*other.get)() != nullptr, other.type == GetParam().type);
    }
    EXPECT_TRUE((shader->*GetParam().destroy)());
    EXPECT_EQ((shader->*GetParam().get)(), nullptr);
    EXPECT_EQ(shader->GetReference(graph), nullptr);
    EXPECT_TRUE((shader->*GetParam().remove)(listener));
    EXPECT_NE((shader->*GetParam().create)(), nullptr);
    EXPECT_EQ(count, 1);
}

TEST_P(ShaderGraphTest, AListenerThatDestroysTheNewGraph_LeavesNone) {
    IShader* shader = loaded.Create("A");
    destroys = true;
    (shader->*GetParam().add)(listener);
    EXPECT_EQ((shader->*GetParam().create)(), nullptr);
    EXPECT_EQ((shader->*GetParam().get)(), nullptr);
}

TEST_P(ShaderGraphTest, AListenerThatDestroysTheShader_LeavesNone) {
    IShader* shader = loaded.Create("A");
    destroysShader = true;
    (shader->*GetParam().add)(listener);
    EXPECT_EQ((shader->*GetParam().create)(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ShaderGraphTest, testing::ValuesIn(kGraphKinds),
                         [](const auto& test) { return std::string(test.param.name); });

// The end.

TEST(ShaderTest, Destruction_TellsWhileTheShaderIsWholeAndGivesItsKeysBack) {
    struct Witness {
        int count = 0;
        bool OnDelete(IShader* shader) {
            ++count;
            EXPECT_EQ(shader->GetName(), "A");
            EXPECT_NE(shader->GetParameter("x"), nullptr);
            EXPECT_EQ(shader->GetKeyName(), "_k2");
            return true;
        }
    };
    LoadedManager loaded("class A { input float x; }");
    Shader* shader = loaded.Create("A");
    Witness witness;
    FastDelegate1<IShader*, bool> listener(&witness, &Witness::OnDelete);
    shader->AddListenerDelete(listener);
    shader->AddListenerDelete(listener);
    loaded.manager.DestroyShader(shader);
    EXPECT_EQ(witness.count, 1);
    // The parameter's key went first, then the shader's; the last one back is the first one out.
    EXPECT_EQ(loaded.Create("A")->GetKeyName(), "_k2");
}

TEST(ShaderTest, ADeleteListenerThatDestroysTheShaderAgain_HarmsNothing) {
    struct Again {
        MgrEffects* manager;
        int count = 0;
        bool OnDelete(IShader* shader) {
            ++count;
            manager->DestroyShader(shader);
            return true;
        }
    };
    LoadedManager loaded("class A { }");
    Shader* shader = loaded.Create("A");
    Again again{&loaded.manager};
    FastDelegate1<IShader*, bool> listener(&again, &Again::OnDelete);
    shader->AddListenerDelete(listener);
    loaded.manager.DestroyShader(shader);
    EXPECT_EQ(again.count, 1);
}

TEST(ShaderTest, ADeleteListenerThatIsTakenOff_HearsNothing) {
    StructureListener listener;
    LoadedManager loaded("class A { }");
    Shader* shader = loaded.Create("A");
    shader->AddListenerDelete(listener.delegate);
    shader->RemoveListenerDelete(listener.delegate);
    loaded.manager.DestroyShader(shader);
    EXPECT_EQ(listener.count, 0);
}

TEST(ShaderTest, ShutdownOfTheManager_WithGraphsAndReferencesAlive_IsClean) {
    Tolen::Tests::CapturedChecks checks;
    LoadedManager loaded("interface I { } class A : I { input float x; float m[2]; coord vec2 uv;"
                         " output vec3 o; static input float s; } class B { }");
    Shader* a = loaded.Create("A");
    Shader* b = loaded.Create("B");
    EXPECT_NE(a->CreateGraphKind0(), nullptr);
    EXPECT_NE(a->CreateGraphKind2(), nullptr);
    EXPECT_NE(b->CreateGraphKind3(), nullptr);
    EXPECT_NE(a->CreateReference(b->GetGraphKind3()), nullptr);
    loaded.manager.Shutdown();
    EXPECT_FALSE(loaded.console.Contains("Not Found"));
    EXPECT_EQ(loaded.context.GetCountLive(), 0);
}

} // namespace
} // namespace Tolen::Effects::Tests
