#include "Library.h"

#include "PrototypeShader.h"

#include "TolenEffects/IPrototypeInterface.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Limits.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenEffects/Module.h"

#include "SmallStack.h"

#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"

#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Tolen::Effects {
namespace {

using testing::HasSubstr;
using testing::Not;

class LibraryTest : public testing::Test {
protected:
    LibraryTest() { EXPECT_TRUE(_manager.Init(_console.Get(), &_context, nullptr)); }

    bool _Init(const std::string& source) {
        return _library.Init(&_manager, "library", source, &_result, 0);
    }

    Tolen::Tests::CapturedConsole _console;
    Tolen::Tests::RecordingContext _context;
    MgrEffects _manager;
    Library _library;
    Result _result;
};

TEST_F(LibraryTest, ANewOne_HasNothing) {
    EXPECT_EQ(_library.GetName(), "");
    EXPECT_EQ(_library.GetModule(), nullptr);
    EXPECT_EQ(_library.GetMgrEffects(), nullptr);
    EXPECT_EQ(_library.GetPrototypeShader("A", &_result), nullptr);
    EXPECT_EQ(_library.GetPrototypeInterface("I"), nullptr);
    EXPECT_EQ(_library.CreateShader("A", &_result), nullptr);
    _library.DestroyShader(nullptr);
    _library.Shutdown();
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(LibraryTest, Init_ParsesAndMakesNothingElse) {
    ASSERT_TRUE(_Init("interface I { } class A : I { } class B : Unknown { }"));
    EXPECT_EQ(_library.GetName(), "library");
    EXPECT_EQ(_library.GetMgrEffects(), &_manager);
    ASSERT_NE(_library.GetModule(), nullptr);
    EXPECT_EQ(_library.GetModule()->GetCountClassDefinitions(), 2u);
    EXPECT_TRUE(_result.IsEmpty()) << "the unknown interface is nobody's business yet";
    EXPECT_EQ(_console.GetAll(), "");
    EXPECT_EQ(*_library.GetModule()->GetClassDefinitions()[0]->GetRange().file, "library");
    EXPECT_EQ(_library.GetModule()->GetClassDefinitions()[0]->GetRange().file, &_library.GetName())
        << "locations outlive the caller's text";
}

TEST_F(LibraryTest, ErrorsOfTheParser_ComeNewestFirst) {
    EXPECT_FALSE(_Init("void f() { x = ; }\nvoid g() { y = ; }"));
    ASSERT_EQ(_result.GetCount(), 2u);
    EXPECT_THAT(_result.GetMessage(0), HasSubstr("2"));
    EXPECT_THAT(_result.GetMessage(1), HasSubstr("1"));
    EXPECT_EQ(_console.GetGeneral(), "Library::Init Parse\n");
    EXPECT_EQ(_library.GetModule(), nullptr);
    EXPECT_EQ(_library.GetPrototypeShader("A", nullptr), nullptr);
    _library.Shutdown();
    EXPECT_FALSE(_library.Init(&_manager, "library", "class", nullptr, 0));
}

TEST_F(LibraryTest, AskingTwice_GivesTheSamePrototypes) {
    ASSERT_TRUE(_Init("interface I { } class A : I { }"));
    PrototypeShader* const shader = _library.GetPrototypeShader("A", &_result);
    IPrototypeInterface* const interface = _library.GetPrototypeInterface("I");
    ASSERT_NE(shader, nullptr);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(_library.GetPrototypeShader("A", &_result), shader);
    EXPECT_EQ(_library.GetPrototypeInterface("I"), interface);
    EXPECT_EQ(_library.GetPrototypeShader("I", &_result), nullptr);
    EXPECT_EQ(_library.GetPrototypeInterface("A"), nullptr);
    EXPECT_TRUE(_result.IsEmpty()) << "an unknown name is no failure";
}

TEST_F(LibraryTest, AShader_GoesBackToItsOwnPrototype) {
    ASSERT_TRUE(_Init("class A { }"));
    Library other;
    ASSERT_TRUE(other.Init(&_manager, "other", "class A { }", &_result, 0));
    IShader* const shader = _library.CreateShader("A", &_result);
    ASSERT_NE(shader, nullptr);
    EXPECT_EQ(shader->GetPrototype(), _library.GetPrototypeShader("A", nullptr));
    other.DestroyShader(shader);
    _library.Shutdown();
    EXPECT_EQ(_console.GetAll(), "");
}

TEST_F(LibraryTest, APrototypeThatFails_IsTriedAndToldEachTime) {
    ASSERT_TRUE(_Init("interface I { void f(); } class A : I { }"));
    for (std::size_t i = 1; i <= 2; ++i) {
        EXPECT_EQ(_library.GetPrototypeShader("A", &_result), nullptr);
        EXPECT_EQ(_result.GetCount(), i);
        EXPECT_EQ(_result.GetLast(), "Class \"A\" is missing implementation of method \"f\" from "
                                     "interface \"I\"\n");
    }
    EXPECT_EQ(_library.CreateShader("A", nullptr), nullptr);
}

TEST_F(LibraryTest, ANameOfALibraryThatCameLater_IsFound) {
    ASSERT_TRUE(_manager.AddLibrary("b", "class A : I { void f() { } }", &_result));
    EXPECT_EQ(_manager.CreateShader("A", nullptr), nullptr);
    ASSERT_TRUE(_manager.AddLibrary("a", "interface I { void f(); }", &_result));
    EXPECT_NE(_manager.CreateShader("A", &_result), nullptr);
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(LibraryTest, ItsOwnDeclarations_ShadowThoseOfOthers) {
    ASSERT_TRUE(_manager.AddLibrary("a", "interface I { void no(); } class H { }", &_result));
    ASSERT_TRUE(_manager.AddLibrary("b",
                                    "interface I { void f(); } class H { static void g() { } }"
                                    "class A : I { void f() { H.g(); } }",
                                    &_result));
    EXPECT_NE(_manager.CreateShader("A", &_result), nullptr);
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(LibraryTest, ClassesThatReferToThemselvesAndEachOther_AreMadeOnce) {
    ASSERT_TRUE(_Init("class A { static void f() { A.f(); B.g(); } void main() { A.f(); } }"
                      "class B { static void g() { A.f(); } }"));
    PrototypeShader* const a = _library.GetPrototypeShader("A", &_result);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(_library.GetPrototypeShader("B", &_result), nullptr);
    EXPECT_EQ(_library.GetPrototypeShader("A", &_result), a);
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(LibraryTest, AClassThatFails_TakesThoseAlongThatReferBackToIt) {
    // B is made while A is; A fails in the end, and B with it. C is nobody's concern.
    ASSERT_TRUE(_Init("class A { static void f() { B.g(); A.none(); } }"
                      "class B { static void g() { A.f(); C.h(); } }"
                      "class C { static void h() { } }"));
    PrototypeShader* const c = _library.GetPrototypeShader("C", &_result);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(_library.GetPrototypeShader("A", &_result), nullptr);
    EXPECT_THAT(_result.GetMessage(0),
                HasSubstr("Class \"A\" has no static method named \"none\""));
    EXPECT_EQ(_library.GetPrototypeShader("C", &_result), c);
    _library.Shutdown();
}

TEST_F(LibraryTest, AChainThatFailsAtItsEnd_IsTriedOnce) {
    // Each class refers to the next twice; the last one fails. Without a memory of failures the
    // attempts would double at each step.
    std::string source;
    for (int i = 0; i < 60; ++i) {
        source += Format("class C%d { static void f() { C%d.f(); C%d.f(); } }\n", i, i + 1, i + 1);
    }
    source += "class C60 : None { static void f() { } }\n";
    ASSERT_TRUE(_Init(source));
    _library.GetPrototypeShader("C0", &_result);
    const std::string line =
        "Failed to find interface None while initializing PrototypeShader C60.\n";
    EXPECT_EQ(_console.GetGeneral(), line);
}

/// Classes of which each calls the next one's static method.
std::string MakeChain(int count) {
    std::string source;
    for (int i = 0; i + 1 < count; ++i) {
        source += Format("class C%d { static void f() { C%d.f(); } }\n", i, i + 1);
    }
    return source + Format("class C%d { static void f() { } }\n", count - 1);
}

TEST_F(LibraryTest, AChainOfClasses_WorksUpToItsLimitAndIsToldBeyond) {
    Tests::OnSmallStack([this] {
        ASSERT_TRUE(_Init(MakeChain(kLimitPrototypeDepth)));
        EXPECT_NE(_library.GetPrototypeShader("C0", &_result), nullptr);
        EXPECT_TRUE(_result.IsEmpty());
        _library.Shutdown();

        ASSERT_TRUE(_Init(MakeChain(kLimitPrototypeDepth + 1)));
        _library.GetPrototypeShader("C0", &_result);
        const std::string message = "Limit of 128 classes that refer to each other in a chain "
                                    "exceeded by class \"C128\" in "
                                    "file 'library' line 129";
        ASSERT_FALSE(_result.IsEmpty());
        EXPECT_EQ(_result.GetMessage(0), message);
        EXPECT_THAT(_console.GetErrors(), HasSubstr(message + "\n"));
        EXPECT_NE(_library.GetPrototypeShader("C1", nullptr), nullptr);
    });
}

TEST_F(LibraryTest, AfterItsPrototypesAreShutDown_LookUpsAnswerNull) {
    ASSERT_TRUE(_Init("interface I { } class A : I { } class B { }"));
    ASSERT_NE(_library.CreateShader("A", &_result), nullptr);
    _library.ShutdownPrototypeShaders();
    EXPECT_EQ(_console.GetGeneral(), "A shut down with 1 remaining shader(s)\n");
    EXPECT_EQ(_library.GetPrototypeShader("A", &_result), nullptr);
    EXPECT_EQ(_library.GetPrototypeShader("B", &_result), nullptr);
    EXPECT_EQ(_library.GetPrototypeInterface("I"), nullptr);
    _library.Shutdown();
    _library.Shutdown();
    EXPECT_EQ(_library.GetModule(), nullptr);
    ASSERT_TRUE(_Init("class A { }"));
    EXPECT_NE(_library.GetPrototypeShader("A", &_result), nullptr);
}

} // namespace
} // namespace Tolen::Effects
