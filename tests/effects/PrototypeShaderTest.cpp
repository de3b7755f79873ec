#include "LoadedManager.h"
#include "PrototypeInterface.h"
#include "SmallStack.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/Limits.h"

#include "TolenCore/Format.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace Tolen::Effects::Tests {

namespace {

TEST(PrototypeShaderTest, BeforeInit_AnswersWithoutAClass) {
    PrototypeShader prototype;
    EXPECT_EQ(prototype.GetClassName(), "");
    EXPECT_EQ(prototype.GetInterfaceName(), "");
    EXPECT_EQ(prototype.GetDefinition(), nullptr);
    EXPECT_EQ(prototype.GetMgrEffects(), nullptr);
    EXPECT_EQ(prototype.GetTemplate(), nullptr);
    EXPECT_EQ(prototype.GetParameter("x"), nullptr);
    EXPECT_EQ(prototype.CreateShader(nullptr), nullptr);
    EXPECT_FALSE(prototype.CollectShader(nullptr));
    Tolen::Tests::CapturedConsole console;
    EXPECT_FALSE(prototype.ReleaseReference(nullptr));
    EXPECT_EQ(console.GetGeneral(), "PrototypeShader::ReleaseReference Reference Not Found\n");
    prototype.DestroyShader(nullptr);
    prototype.Shutdown();
}

TEST(PrototypeShaderTest, Init_SortsVariablesByStaticAndInput) {
    LoadedManager loaded("class A { static input float p; static int m; input vec3 i; float n;"
                         " coord vec2 uv; normal vec3 nn; output vec3 o; output vec4 b; }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    ASSERT_NE(prototype, nullptr);
    EXPECT_EQ(prototype->GetClassName(), "A");
    EXPECT_EQ(prototype->GetInterfaceName(), "");
    EXPECT_EQ(prototype->GetInterface(), nullptr);
    EXPECT_EQ(prototype->GetMgrEffects(), &loaded.manager);
    EXPECT_EQ(prototype->GetConstructorStatic(), "__ctor_A");
    EXPECT_NE(prototype->GetParameter("p"), nullptr);
    EXPECT_NE(prototype->GetMember("m"), nullptr);
    EXPECT_NE(prototype->GetPrototypeParameter("i"), nullptr);
    EXPECT_NE(prototype->GetPrototypeMember("n"), nullptr);
    for (const char* name : {"p", "m", "i", "n", "uv", "nn", "o", "nope"}) {
        SCOPED_TRACE(name);
        const int count = (prototype->GetParameter(name) != nullptr) +
                          (prototype->GetMember(name) != nullptr) +
                          (prototype->GetPrototypeParameter(name) != nullptr) +
                          (prototype->GetPrototypeMember(name) != nullptr);
        EXPECT_EQ(count, std::string("pmin").find(name) != std::string::npos ? 1 : 0);
    }
}

TEST(PrototypeShaderTest, Visits_GoByNameAndCallEveryCallback) {
    LoadedManager loaded("class A { static input float q; static input float p; static int n;"
                         " static int m; input vec3 j; input vec3 i; float z; float y;"
                         " coord vec2 uw; normal vec3 nn; output vec3 o; output vec4 b; }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    std::string names;
    auto parameter = [&](const std::string& name, IParameter*) {
        names += name + " ";
        return false;
    };
    auto visitParameter = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(parameter);
    EXPECT_FALSE(prototype->VisitParameters(visitParameter));
    auto member = [&](const std::string& name, IMember*) {
        names += name + " ";
        return name == "m";
    };
    auto visitMember = FastDelegate2<const std::string&, IMember*, bool>::Borrow(member);
    EXPECT_FALSE(prototype->VisitMembers(visitMember));
    auto prototypeParameter = [&](const std::string& name, IPrototypeParameter*) {
        names += name + " ";
        return true;
    };
    auto visitPrototypeParameter =
        FastDelegate2<const std::string&, IPrototypeParameter*, bool>::Borrow(prototypeParameter);
    EXPECT_TRUE(prototype->VisitPrototypeParameters(visitPrototypeParameter));
    auto prototypeMember = [&](const std::string& name, IPrototypeMember*) {
        names += name + " ";
        return true;
    };
    auto visitPrototypeMember =
        FastDelegate2<const std::string&, IPrototypeMember*, bool>::Borrow(prototypeMember);
    EXPECT_TRUE(prototype->VisitPrototypeMembers(visitPrototypeMember));
    auto coord = [&](TypeSpecifier type, const std::string& name, TransformationCoord how) {
        names += name + ":" + std::to_string(type) + ":" + std::to_string(how) + " ";
        return true;
    };
    auto visitCoord =
        FastDelegate3<TypeSpecifier, const std::string&, TransformationCoord, bool>::Borrow(coord);
    EXPECT_TRUE(prototype->VisitCoords(visitCoord));
    auto output = [&](TypeSpecifier type, const std::string& name) {
        names += name + ":" + std::to_string(type) + " ";
        return true;
    };
    auto visitOutput = FastDelegate2<TypeSpecifier, const std::string&, bool>::Borrow(output);
    EXPECT_TRUE(prototype->VisitOutputs(visitOutput));
    EXPECT_EQ(names, "p q m n i j y z nn:5:1 uw:4:0 b:6 o:5 ");
}

// Interfaces.

TEST(PrototypeShaderTest, Init_WithoutTwoMethodsOfItsInterface_ReportsBothAndNothingElse) {
    LoadedManager loaded("interface I { float f(); void g(vec3 a); int h(); }"
                         "class A : I { int h() { return 1; } }");
    EXPECT_EQ(loaded.CreateFails("A"),
              "Class \"A\" is missing implementation of method \"f\" from interface \"I\"\n"
              "Class \"A\" is missing implementation of method \"g\" from interface \"I\"\n"
              "Could not create shader named \"A\"\n");
}

TEST(PrototypeShaderTest, Init_ComparesMethodsByTheirWholePrototype) {
    struct Case {
        const char* method;
        bool isImplemented;
    };
    const Case cases[] = {
        {"float f(vec3 other) { return 1.0; }", true},
        {"float f(vec3 a, int more) { return 1.0; }", true},
        {"float f() { return 1.0; }", false},
        {"int f(vec3 a) { return 1; }", false},
        {"float f(vec2 a) { return 1.0; }", false},
        {"float f(out vec3 a) { return 1.0; }", false},
        {"static float f(vec3 a) { return 1.0; }", false},
        {"float f(vec2 a) { return 1.0; } float f(vec3 a) { return 1.0; }", true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.method);
        LoadedManager loaded(std::string("interface I { float f(vec3 a); } class A : I {") +
                             test.method + "}");
        EXPECT_EQ(loaded.GetPrototype("A") != nullptr, test.isImplemented);
    }
}

TEST(PrototypeShaderTest, Init_WithAnUnknownInterface_TellsTheConsoleAtEveryRequest) {
    LoadedManager loaded("class A : Missing { }");
    const std::string line =
        "Failed to find interface Missing while initializing PrototypeShader A.\n";
    EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
    EXPECT_EQ(loaded.console.GetGeneral(), line);
    EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
    EXPECT_EQ(loaded.console.GetGeneral(), line + line);
}

TEST(PrototypeShaderTest, Init_WithAnInterfaceOfALaterLibrary_Works) {
    LoadedManager loaded;
    loaded.Load("a", "class A : I { float f() { return 1.0; } }");
    EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
    loaded.Load("b", "interface I { float f(); }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    ASSERT_NE(prototype, nullptr);
    EXPECT_EQ(prototype->GetInterfaceName(), "I");
    EXPECT_EQ(prototype->GetInterface(), loaded.manager.GetPrototypeInterface("I"));
}

// Failures.

TEST(PrototypeShaderTest, Init_ThatFails_TellsWhereItFailed) {
    struct Case {
        const char* source;
        const char* messages;
        const char* console;
    };
    const Case cases[] = {
        {"class A { static input Missing x; }", "Prototype shader \"A\" parameter init failed\n",
         "PrototypeShader::_InitParameters Prototype Not Found\n"},
        {"class A { static input float x = float(sin(1.0)); }", nullptr, nullptr},
        {"class A { input Missing x; }",
         "Initialization of prototype param \"x\" in class \"A\" failed.\n"
         "Prototype shader \"A\" prototype parameter init failed\n",
         ""},
        {"interface I { } class A { static input I x = B(); }",
         "Could not create shader named \"B\"\n"
         "Prototype shader \"A\" parameter init failed\n",
         "ParameterInterfaceSingle::_InitInitializer Create Shader\n"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.source);
        LoadedManager loaded(test.source);
        Result result;
        EXPECT_EQ(loaded.GetPrototype("A", &result), nullptr);
        if (test.messages != nullptr) {
            EXPECT_EQ(LoadedManager::Join(result), test.messages);
        } else {
            EXPECT_EQ(result.GetLast(), "Prototype shader \"A\" parameter init failed");
        }
        if (test.console != nullptr) {
            EXPECT_EQ(loaded.console.GetGeneral(), test.console);
        }
        EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
    }
}

TEST(PrototypeShaderTest, CreateShader_WithAnInputThatTakesShaders_LeavesItEmptyWithoutADefault) {
    LoadedManager loaded("interface I { } class A { input I x; input I y = B(); } class B : I { }");
    Result result;
    IShader* shader = loaded.manager.CreateShader("A", &result);
    ASSERT_NE(shader, nullptr);
    IShader* held = shader;
    EXPECT_TRUE(shader->GetParameter("x")->Get(held));
    EXPECT_EQ(held, nullptr);
    EXPECT_FALSE(shader->GetParameter("x")->IsDefault());
    ASSERT_TRUE(shader->GetParameter("y")->Get(held));
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(held->GetClassName(), "B");
    EXPECT_TRUE(shader->GetParameter("y")->IsDefault());
    EXPECT_FALSE(shader->IsComplete(nullptr));
}

// Static calls.

TEST(PrototypeShaderTest, StaticCode_HasConstructorMethodsAndVariablesUnderTheirNames) {
    LoadedManager loaded("class A { static input float p; static int m = 3;"
                         " static float f(float a) { return a * p + float(m); }"
                         " static float g() { return f(1.0); } }");
    EXPECT_EQ(loaded.Collect(loaded.GetPrototype("A")),
              "\nint A_m_k2;\nuniform float A_p_k1;\n\n\n"
              "void __ctor_A()\n{\n\tA_m_k2 = 3;\n}\n\n"
              "float A_f(float a)\n{\n\treturn ((a*A_p_k1)+float(A_m_k2));\n}\n\n"
              "float A_g()\n{\n\treturn A_f(1.0);\n}\n\n");
}

TEST(PrototypeShaderTest, StaticCall_OfAnotherClass_BecomesACallOfItsMethod) {
    LoadedManager loaded("class B { static float f(float a) { return a; } }"
                         "class A { float g() { return B.f(B.f(2.0)); }"
                         " static float h() { return B.f(1.0); } }");
    PrototypeShader* a = loaded.GetPrototype("A");
    EXPECT_NE(loaded.Collect(a).find("return B_f(1.0);"), std::string::npos);
    const std::string text = loaded.Collect(loaded.Create("A"));
    EXPECT_NE(text.find("return B_f(B_f(2.0));"), std::string::npos) << text;

    std::vector<IPrototypeShader*> called;
    auto add = [&](IPrototypeShader* prototype) {
        called.push_back(prototype);
        return true;
    };
    auto visit = FastDelegate1<IPrototypeShader*, bool>::Borrow(add);
    EXPECT_TRUE(a->VisitPrototypeShadersStatic(visit));
    EXPECT_EQ(called, std::vector<IPrototypeShader*>{loaded.GetPrototype("B")});
}

TEST(PrototypeShaderTest, StaticCall_OfAMethodThatIsNotThere_FailsWithThePlace) {
    LoadedManager loaded;
    loaded.Load("some/folder/x.ksl", "class Foo { }\nclass A {\n float g() {\n return Foo.bar();"
                                     "\n}\n}");
    Result result;
    EXPECT_EQ(loaded.GetPrototype("A", &result), nullptr);
    EXPECT_EQ(LoadedManager::Join(result),
              "x.ksl:4: Class \"Foo\" has no static method named \"bar\".\n");
}

TEST(PrototypeShaderTest, StaticCall_OfAMethodThatIsNotStatic_Fails) {
    LoadedManager loaded("class Foo { void bar() { } } class A { void g() { Foo.bar(); } }");
    EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
}

TEST(PrototypeShaderTest, Call_OnWhatIsNoClass_StaysASelection) {
    LoadedManager loaded("class A { void g() { S Foo; Foo.bar(); } }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    ASSERT_NE(prototype, nullptr);
    const FunctionDefinition* method = prototype->GetTemplate()->GetMemberFunctions().front();
    const auto& statements = method->GetCompoundStatement()->GetStatements();
    const auto* statement = static_cast<const ExpressionStatement*>(statements.back());
    EXPECT_EQ(statement->GetExpression()->GetClass(), kClass_FunctionSelection);
}

TEST(PrototypeShaderTest, GetStaticMethodNameMangled_KnowsStaticMethodsOnly) {
    LoadedManager loaded("class A { static void f() { } void g() { } }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    EXPECT_EQ(prototype->GetStaticMethodNameMangled("f"), "A_f");
    EXPECT_EQ(prototype->GetStaticMethodNameMangled("g"), "Undefined");
    EXPECT_EQ(prototype->GetStaticMethodNameMangled("nope"), "Undefined");
}

TEST(PrototypeShaderTest, Template_HoldsTheMethodsAndCoordsThatAreNotStatic) {
    LoadedManager loaded("interface I { } class A : I { static void f() { } void g() { f(); }"
                         " input float x; coord vec2 uv; }");
    const ClassDefinition* copy = loaded.GetPrototype("A")->GetTemplate();
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, loaded.GetPrototype("A")->GetDefinition());
    EXPECT_EQ(copy->GetName()->GetString(), "A");
    EXPECT_EQ(copy->GetInterface()->GetString(), "I");
    EXPECT_EQ(copy->GetCountMemberFunctions(), 1u);
    EXPECT_EQ(copy->GetCountMemberVariables(), 0u);
    EXPECT_EQ(copy->GetCountCoords(), 1u);
}

// Classes that refer to each other and to themselves.

TEST(PrototypeShaderTest, ClassesInCircles_AreMade) {
    struct Case {
        const char* name;
        const char* source;
        bool canCreate;
    };
    const Case cases[] = {
        {"input of its own class", "class A { input A a; }", true},
        {"array of its own class", "class A { input A a[]; }", true},
        {"inputs of each other", "class A { input B b; } class B { input A a; }", true},
        {"a call of its own static method",
         "class A { static float f() { return 1.0; } float g() { return A.f(); } }", true},
        {"a static method that calls itself",
         "class A { static float f() { return A.f(); } float g() { return f(); } }", true},
        {"static calls of each other",
         "class A { static float f() { return B.f(); } }"
         "class B { static float f() { return A.f(); } }",
         true},
        {"a circle of three",
         "class A { float g() { return B.f(); } static float f() { return 1.0; } }"
         "class B { static float f() { return C.f(); } }"
         "class C { static float f() { return A.f(); } }",
         true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        LoadedManager loaded(test.source);
        PrototypeShader* prototype = loaded.GetPrototype("A");
        ASSERT_NE(prototype, nullptr);
        EXPECT_EQ(loaded.GetPrototype("A"), prototype);
        EXPECT_TRUE(prototype->IsComplete(nullptr));
        Result result;
        EXPECT_EQ(loaded.manager.CreateShader("A", &result) != nullptr, test.canCreate);
        auto notItself = [&](IPrototypeShader* called) { return called != prototype; };
        auto visit = FastDelegate1<IPrototypeShader*, bool>::Borrow(notItself);
        EXPECT_TRUE(prototype->VisitPrototypeShadersStatic(visit));
    }
}

TEST(PrototypeShaderTest, AClassThatFails_TakesAlongWhatWasMadeOfItInACircle) {
    LoadedManager loaded("class A { static float f() { return B.f(); }"
                         " float g() { return B.nope(); } }"
                         "class B { static float f() { return A.f(); } }");
    EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
    EXPECT_EQ(loaded.GetPrototype("A"), nullptr);
    loaded.manager.Shutdown();
}

/// Classes A0, A1, ... each of which calls a static method of the next.
std::string MakeChain(int count) {
    std::string source;
    for (int i = 0; i + 1 < count; ++i) {
        source += Format("class A%d { static float f() { return A%d.f(); } }", i, i + 1);
    }
    return source + Format("class A%d { static float f() { return 1.0; } }", count - 1);
}

TEST(PrototypeShaderTest, ALongChainOfClasses_WorksUpToTheLimit) {
    OnSmallStack([] {
        LoadedManager loaded(MakeChain(kLimitPrototypeDepth));
        EXPECT_NE(loaded.GetPrototype("A0"), nullptr);
    });
    OnSmallStack([] {
        LoadedManager loaded(MakeChain(kLimitPrototypeDepth + 1));
        Result result;
        // The class beyond the limit is as good as absent, so that its call stays as it is.
        loaded.GetPrototype("A0", &result);
        EXPECT_NE(LoadedManager::Join(result).find("Limit of 128"), std::string::npos);
    });
}

TEST(PrototypeShaderTest, AChainThatIsMadeFromItsEnd_HasNoLimit) {
    constexpr int kCount = 3000;
    OnSmallStack([] {
        LoadedManager loaded(MakeChain(kCount));
        for (int i = kCount - 1; i >= 0; --i) {
            ASSERT_NE(loaded.GetPrototype(Format("A%d", i)), nullptr);
        }
        EXPECT_TRUE(loaded.GetPrototype("A0")->IsComplete(nullptr));
        Shader* shader = loaded.Create("A0");
        EXPECT_NE(shader->CreateGraphKind0(), nullptr);
        loaded.manager.DestroyShader(shader);
    });
}

// Setting static inputs.

template <class T>
class PrototypeShaderSetTest : public testing::Test {};

template <class T>
T MakeValue(int n) {
    if constexpr (std::is_same_v<T, bool>) {
        return n != 0;
    } else if constexpr (std::is_same_v<T, KLtexture>) {
        return reinterpret_cast<KLtexture>(static_cast<std::uintptr_t>(n * 16));
    } else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>) {
        return static_cast<T>(n);
    } else {
        T value;
        if constexpr (std::is_same_v<T, Matrix33f> || std::is_same_v<T, Matrix44f>) {
            value.m[1] = static_cast<float>(n);
        } else {
            value.y = static_cast<decltype(value.y)>(n);
        }
        return value;
    }
}

template <class T>
std::string KeywordOf() {
    return TypeSpecifierToString(ElementType<T>::kSpecifier);
}

#define TOLEN_TYPE_OF(specifier, T, name, bytes) , T
template <class First, class... Types>
struct TypesAfter {
    using List = testing::Types<Types...>;
};
using ElementTypeList = TypesAfter<void TOLEN_ELEMENT_TYPES(TOLEN_TYPE_OF)>::List;
#undef TOLEN_TYPE_OF
TYPED_TEST_SUITE(PrototypeShaderSetTest, ElementTypeList);

TYPED_TEST(PrototypeShaderSetTest, SetParameter_OfItsType_SetsTheStaticInput) {
    LoadedManager loaded("class A { static input " + KeywordOf<TypeParam>() + " x; static input " +
                         KeywordOf<TypeParam>() + " y[3]; }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    ASSERT_NE(prototype, nullptr);
    TypeParam value{};
    EXPECT_TRUE(prototype->SetParameter("x", MakeValue<TypeParam>(1)));
    EXPECT_TRUE(prototype->GetParameter("x")->Get(value));
    EXPECT_TRUE(value == MakeValue<TypeParam>(1));

    EXPECT_TRUE(prototype->SetParameter("y", MakeValue<TypeParam>(1), 2));
    EXPECT_TRUE(prototype->GetParameter("y")->Get(value, 2));
    EXPECT_TRUE(value == MakeValue<TypeParam>(1));
    EXPECT_FALSE(prototype->SetParameter("y", MakeValue<TypeParam>(1), 3));

    const TypeParam values[2] = {MakeValue<TypeParam>(1), MakeValue<TypeParam>(0)};
    EXPECT_TRUE(prototype->SetParameter("y", values, 2));
    EXPECT_TRUE(prototype->GetParameter("y")->Get(value, 0));
    EXPECT_TRUE(value == values[0]);
    EXPECT_FALSE(prototype->SetParameter("x", values, 2));
}

TYPED_TEST(PrototypeShaderSetTest, SetParameter_OfAnUnknownName_PrintsForValuesOnly) {
    LoadedManager loaded("class A { }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    const TypeParam value = MakeValue<TypeParam>(1);
    EXPECT_FALSE(prototype->SetParameter("no%s", value));
    EXPECT_FALSE(prototype->SetParameter("nope", value, 1));
    EXPECT_FALSE(prototype->SetParameter("nope", &value, 1));
    EXPECT_EQ(loaded.console.GetGeneral(),
              "PrototypeShader::_SetParameter Parameter Not Found (no%s)\n"
              "PrototypeShader::_SetParameter Index Parameter Not Found\n");
}

TEST(PrototypeShaderTest, SetParameter_OfAnUnknownNameToAShader_IsSilent) {
    LoadedManager loaded("class A { }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    IShader* shader = loaded.Create("A");
    EXPECT_FALSE(prototype->SetParameter("nope", shader));
    EXPECT_FALSE(prototype->SetParameter("nope", shader, 0));
    EXPECT_FALSE(prototype->SetParameter("nope", &shader, 1));
    EXPECT_EQ(loaded.console.GetAll(), "");
}

TEST(PrototypeShaderTest, SetParameter_OfAValueInputToAShader_IsRefused) {
    LoadedManager loaded("class A { static input float x; }");
    IShader* shader = loaded.Create("A");
    EXPECT_FALSE(loaded.GetPrototype("A")->SetParameter("x", shader));
    EXPECT_FALSE(loaded.GetPrototype("A")->SetParameter("x", &shader, 1));
}

// Changes of structure.

class StructureListener {
public:
    explicit StructureListener(PrototypeShader* prototype) : _pPrototype(prototype) {
        prototype->AddListenerChangeStructure(delegate);
    }
    ~StructureListener() { _pPrototype->RemoveListenerChangeStructure(delegate); }

    int count = 0;
    bool answer = true;

private:
    bool _OnChange(PrototypeShader* prototype) {
        EXPECT_EQ(prototype, _pPrototype);
        ++count;
        return answer;
    }

    PrototypeShader* _pPrototype;
    FastDelegate1<PrototypeShader*, bool> delegate{this, &StructureListener::_OnChange};
};

TEST(PrototypeShaderTest, LengthOfAStaticMember_MakesTheCodeAgainAndTellsListeners) {
    LoadedManager loaded("class A { static float m[]; static float f() { return m[0]; }"
                         " float g() { return m[1]; } }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    Shader* shader = loaded.Create("A");
    StructureListener listener(prototype);
    EXPECT_TRUE(prototype->GetMember("m")->SetLength(5));
    EXPECT_EQ(listener.count, 1);
    EXPECT_NE(loaded.Collect(prototype).find("float A_m_k1[5];"), std::string::npos);
    EXPECT_NE(loaded.Collect(shader).find("return A_m_k1[1];"), std::string::npos);
    EXPECT_TRUE(prototype->GetMember("m")->SetLength(5));
    EXPECT_EQ(listener.count, 1);
    listener.answer = false;
    EXPECT_FALSE(prototype->GetMember("m")->SetLength(6));
    EXPECT_NE(loaded.Collect(prototype).find("float A_m_k1[6];"), std::string::npos);
}

// The life of shaders and prototypes.

TEST(PrototypeShaderTest, DestroyShader_OfWhatIsNotHere_DoesNothing) {
    LoadedManager loaded("class A { } class B { }");
    Shader* a = loaded.Create("A");
    loaded.GetPrototype("B")->DestroyShader(a);
    loaded.GetPrototype("B")->DestroyShader(nullptr);
    EXPECT_EQ(a->GetClassName(), "A");
    loaded.GetPrototype("A")->DestroyShader(a);
    loaded.GetPrototype("A")->DestroyShader(a);
}

/// Notes the names of what dies.
template <class T>
class DeathNotes {
public:
    explicit DeathNotes(std::string* notes) : _pNotes(notes) {}
    FastDelegate1<T*, bool> delegate{this, &DeathNotes::_OnDelete};

private:
    bool _OnDelete(T* object) {
        if constexpr (std::is_same_v<T, IShader>) {
            *_pNotes += object->GetName() + " ";
        } else {
            *_pNotes += object->GetClassName() + " ";
        }
        return true;
    }
    std::string* _pNotes;
};

TEST(PrototypeShaderTest, Shutdown_WithShadersAlive_TellsAndDestroysThemInTheirOrder) {
    std::string notes;
    DeathNotes<IPrototypeShader> ofPrototypes(&notes);
    DeathNotes<IShader> ofShaders(&notes);
    LoadedManager loaded("class Foo { }");
    loaded.GetPrototype("Foo")->AddListenerDelete(ofPrototypes.delegate);
    for (const char* name : {"c", "a", "x", "b"}) {
        Shader* shader = loaded.Create("Foo");
        shader->SetName(name);
        shader->AddListenerDelete(ofShaders.delegate);
        if (shader->GetName() == "x") {
            loaded.manager.DestroyShader(shader);
        }
    }
    EXPECT_EQ(notes, "x ");
    loaded.manager.Shutdown();
    EXPECT_EQ(notes, "x Foo c a b ");
    EXPECT_EQ(loaded.console.GetGeneral(), "Foo shut down with 3 remaining shader(s)\n");
}

TEST(PrototypeShaderTest, Shutdown_WhileADyingShaderDestroysTheNext_DestroysEachOnce) {
    struct Chain {
        IShader* next = nullptr;
        MgrEffects* manager = nullptr;
        int deaths = 0;
        bool OnDelete(IShader*) {
            ++deaths;
            manager->DestroyShader(next);
            return true;
        }
    };
    Chain chain;
    LoadedManager loaded("class Foo { }");
    IShader* first = loaded.Create("Foo");
    chain.next = loaded.Create("Foo");
    loaded.Create("Foo");
    chain.manager = &loaded.manager;
    FastDelegate1<IShader*, bool> onDelete(&chain, &Chain::OnDelete);
    first->AddListenerDelete(onDelete);
    loaded.manager.Shutdown();
    EXPECT_EQ(chain.deaths, 1);
}

TEST(PrototypeShaderTest, Shutdown_OfACalledClass_IsForgottenByItsCaller) {
    // The library that dies first holds the class that the other one calls.
    LoadedManager loaded;
    loaded.Load("a", "class B { static float f() { return 1.0; } }");
    loaded.Load("b", "class A { float g() { return B.f(); } }");
    loaded.Create("A");
    loaded.manager.Shutdown();
    loaded.manager.Shutdown();
}

TEST(PrototypeShaderTest, CreateAndDestroy_OfManyShaders_IsLinear) {
    LoadedManager loaded("class A { }");
    std::vector<IShader*> shaders;
    shaders.reserve(20000);
    for (int i = 0; i < 20000; ++i) {
        shaders.push_back(loaded.manager.CreateShader("A"));
    }
    for (IShader* shader : shaders) {
        loaded.manager.DestroyShader(shader);
    }
    loaded.manager.Shutdown();
    EXPECT_EQ(loaded.console.GetGeneral(), "");
}

} // namespace
} // namespace Tolen::Effects::Tests
