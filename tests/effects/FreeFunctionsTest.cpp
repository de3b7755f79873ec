#include "LoadedManager.h"

#include "TolenCore/Format.h"

#include <gtest/gtest.h>

#include <string>

namespace Tolen::Effects::Tests {

namespace {

int CountOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// The 32-bit FNV-1a hash of a text.
std::string Hash(const std::string& text) {
    std::uint32_t hash = 2166136261u;
    for (const char c : text) {
        hash = (hash ^ static_cast<std::uint32_t>(c)) * 16777619u;
    }
    return Format("%x", hash);
}

TEST(FreeFunctionsTest, AFunctionThatAMethodCalls_ComesWithTheClass) {
    LoadedManager loaded("float twice(float a) { return a * 2.0; }"
                         "float unused(float a) { return a; }"
                         "class A { float f() { return twice(1.0); } }");
    const std::string text = loaded.Collect(loaded.GetPrototype("A"));
    EXPECT_EQ(CountOf(text, "float twice(float a)"), 1);
    EXPECT_FALSE(Has(text, "unused"));
    EXPECT_TRUE(Has(loaded.Collect(loaded.Create("A")), "return twice(1.0);"));
}

TEST(FreeFunctionsTest, FunctionsThatAreCalledInTurn_ComeToo) {
    LoadedManager loaded("float a() { return b() + 1.0; } float b() { return c(); }"
                         "float c() { return a(); } float d() { return a(); }"
                         "class A { static float f() { return a(); } }");
    const std::string text = loaded.Collect(loaded.GetPrototype("A"));
    EXPECT_TRUE(Has(text, "float a()") && Has(text, "float b()") && Has(text, "float c()"));
    EXPECT_FALSE(Has(text, "float d()"));
}

TEST(FreeFunctionsTest, AllDefinitionsOfAName_Come) {
    LoadedManager loaded("float f(float a) { return a; } float f(vec2 a) { return a.x; }"
                         "class A { float g() { return f(1.0); } }");
    const std::string text = loaded.Collect(loaded.GetPrototype("A"));
    EXPECT_TRUE(Has(text, "float f(float a)"));
    EXPECT_TRUE(Has(text, "float f(vec2 a)"));
}

TEST(FreeFunctionsTest, TwoClassesThatCallOneFunction_BringItOnce) {
    LoadedManager loaded("float h() { return 1.0; } class A { float f() { return h(); } }"
                         "class B { float f() { return h(); } }");
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    EXPECT_TRUE(loaded.GetPrototype("A")->CollectShader(module.get()));
    EXPECT_TRUE(loaded.GetPrototype("B")->CollectShader(module.get()));
    EXPECT_EQ(CountOf(loaded.Print(module.get()), "float h()"), 1);
}

TEST(FreeFunctionsTest, AMethodOfTheName_HidesTheFunction) {
    LoadedManager loaded("float h() { return 1.0; }"
                         "class A { float h() { return 2.0; } float f() { return h(); } }");
    EXPECT_FALSE(Has(loaded.Collect(loaded.GetPrototype("A")), "float h()"));
    EXPECT_TRUE(Has(loaded.Collect(loaded.Create("A")), "return A_h_k1();"));
}

TEST(FreeFunctionsTest, TheInitialValueOfAMember_MayCallAFunction) {
    LoadedManager loaded("float h(float a) { return a; }"
                         "class A { float m = h(2.0); static float n = float(h(3.0)); }");
    EXPECT_TRUE(Has(loaded.Collect(loaded.GetPrototype("A")), "float h(float a)"));
    EXPECT_TRUE(Has(loaded.Collect(loaded.Create("A")), " = h(2.0);"));
}

TEST(FreeFunctionsTest, AFunctionOfAnotherLibrary_IsFoundByLibraryName) {
    LoadedManager loaded;
    loaded.Load("b", "float h() { return 2.0; }");
    loaded.Load("z", "class A { float f() { return h(); } }");
    EXPECT_TRUE(Has(loaded.Collect(loaded.GetPrototype("A")), "return 2.0;"));
}

TEST(FreeFunctionsTest, ANameOfTwoLibraries_IsWrittenWithTheHashOfItsLibrary) {
    LoadedManager loaded;
    loaded.Load("b", "float h() { return i(); } float i() { return 1.0; }"
                     "class B { float f() { return h(); } }");
    loaded.Load("c", "float h() { return 3.0; } class C { float f() { return h(); } }");
    loaded.Load("d", "float h() { return 4.0; }");
    loaded.Load("z", "class Z { float f() { return h(); } static float g() { return h(); } }");
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    for (const char* name : {"B", "C", "Z"}) {
        EXPECT_TRUE(loaded.GetPrototype(name)->CollectShader(module.get()));
        EXPECT_TRUE(loaded.Create(name)->CollectShader(module.get()));
    }
    const std::string text = loaded.Print(module.get());
    const std::string ofB = "h_l" + Hash("b");
    const std::string ofC = "h_l" + Hash("c");
    EXPECT_EQ(CountOf(text, "float " + ofB + "()"), 1) << text;
    EXPECT_EQ(CountOf(text, "float " + ofC + "()"), 1);
    EXPECT_FALSE(Has(text, "h_l" + Hash("d")));
    // Its own library comes first for C, the first by name for Z; both the method and the static
    // method call it.
    EXPECT_EQ(CountOf(text, "return " + ofB + "();"), 3);
    EXPECT_EQ(CountOf(text, "return " + ofC + "();"), 1);
    // What only one library defines keeps its name.
    EXPECT_TRUE(Has(text, "return i();"));
}

TEST(FreeFunctionsTest, AFunction_CallsThoseOfItsOwnLibrary) {
    LoadedManager loaded;
    loaded.Load("a", "float inner() { return 1.0; } class A { float f() { return outer(); } }");
    loaded.Load("b", "float inner() { return 2.0; } float outer() { return inner(); }");
    const std::string text = loaded.Collect(loaded.GetPrototype("A"));
    EXPECT_TRUE(Has(text, "return inner_l" + Hash("b") + "();")) << text;
    EXPECT_TRUE(Has(text, "return 2.0;"));
    EXPECT_FALSE(Has(text, "return 1.0;"));
}

TEST(FreeFunctionsTest, ALibraryThatComesLater_RenamesAtTheNextCollection) {
    LoadedManager loaded;
    loaded.Load("b", "float h() { return 2.0; } class A { float f() { return h(); } }");
    Shader* shader = loaded.Create("A");
    EXPECT_TRUE(Has(loaded.Collect(shader), "return h();"));
    loaded.Load("a", "float h() { return 1.0; }");
    EXPECT_TRUE(Has(loaded.Collect(shader), "return h_l" + Hash("b") + "();"));
    EXPECT_TRUE(Has(loaded.Collect(loaded.GetPrototype("A")), "float h_l" + Hash("b") + "()"));
}

TEST(FreeFunctionsTest, StaticCallsInAFunction_AreRewritten) {
    LoadedManager loaded;
    loaded.Load("a", "class B { static float f() { return 1.0; } } "
                     "class A { float g() { return h(); } static float f() { return 3.0; } }");
    loaded.Load("b", "class B { static float f() { return 2.0; } } "
                     "float h() { return B.f() + f(); } float f() { return 4.0; }");
    PrototypeShader* prototype = loaded.GetPrototype("A");
    const std::string text = loaded.Collect(prototype);
    // The class of the function's own library, and its own function, not the method of the caller.
    EXPECT_TRUE(Has(text, "return (B_f()+f());")) << text;
    IPrototypeShader* called = nullptr;
    auto note = [&](IPrototypeShader* other) {
        called = other;
        return true;
    };
    auto visit = FastDelegate1<IPrototypeShader*, bool>::Borrow(note);
    prototype->VisitPrototypeShadersStatic(visit);
    ASSERT_NE(called, nullptr);
    EXPECT_TRUE(Has(loaded.Collect(static_cast<PrototypeShader*>(called)), "return 2.0;"));
}

TEST(FreeFunctionsTest, AStaticCallThatFailsInAFunction_FailsTheClass) {
    LoadedManager loaded("class B { } float h() { return B.f(); }"
                         "class A { float g() { return h(); } }");
    Result result;
    EXPECT_EQ(loaded.GetPrototype("A", &result), nullptr);
    EXPECT_EQ(LoadedManager::Join(result),
              "lib:1: Class \"B\" has no static method named \"f\".\n");
}

TEST(FreeFunctionsTest, TheMethodOfAnotherObject_IsNoCallOfAFunction) {
    LoadedManager loaded("float h() { return 1.0; } class A { void f() { S s; s.h(); } }");
    EXPECT_FALSE(Has(loaded.Collect(loaded.GetPrototype("A")), "float h()"));
}

TEST(FreeFunctionsTest, AChainOfManyFunctions_IsFollowed) {
    constexpr int kCount = 2000;
    std::string source = "class A { float f() { return f0(); } }";
    for (int i = 0; i < kCount; ++i) {
        source += Format("float f%d() { return f%d(); }", i, i + 1);
    }
    source += Format("float f%d() { return 1.0; }", kCount);
    LoadedManager loaded(source);
    const std::string text = loaded.Collect(loaded.GetPrototype("A"));
    EXPECT_TRUE(Has(text, Format("float f%d()", kCount)));
}

} // namespace
} // namespace Tolen::Effects::Tests
