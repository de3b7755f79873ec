#include "AccessBuffer.h"
#include "AccessSubscriptSeparate.h"
#include "AccessTexture.h"
#include "AccessVariableSeparate.h"

#include "effects/ParsedClass.h"
#include "support/CapturedChecks.h"

#include <gmock/gmock.h>

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;
using Tolen::Tests::CapturedChecks;

/// The lines of what an access declares.
std::vector<std::string> GetDeclarations(IAccess& access) {
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    EXPECT_TRUE(access.CollectDeclaration(module.get()));
    return PrintLines(module.get());
}

/// What `return expression;` in a method becomes, without "return" and the semicolon.
std::string Transform(IAccess& access, const std::string& expression) {
    const ParsedClass parsed("float f(int i, int j) { return " + expression + "; }");
    const auto module = parsed.CloneMethods();
    EXPECT_TRUE(Transformer(module.get()).Run(access));
    const std::string line = PrintLines(module.get()).at(2);
    const std::string head = "return ";
    return line.substr(head.size(), line.size() - head.size() - 1);
}

bool Refuse(Class, Visitor*) {
    return false;
}

TEST(AccessTest, Buffer_IsABlockWithOneArrayOfLengthOne) {
    AccessBuffer access;
    ASSERT_TRUE(access.Init(kType_Vec2, "x", "x_k1", 7));

    EXPECT_THAT(GetDeclarations(access), ElementsAre("uniformblock x_k1", "{", "vec2 a[1];", "};"));
    EXPECT_EQ(Transform(access, "x[i]"), "x_k1.a[i]");
    EXPECT_EQ(Transform(access, "x[i].y"), "x_k1.a[i].y");
    EXPECT_EQ(Transform(access, "y[x[i]]"), "y[x_k1.a[i]]");
    EXPECT_EQ(Transform(access, "x[x[i]]"), "x_k1.a[x_k1.a[i]]");
    EXPECT_EQ(Transform(access, "x"), "x");
    EXPECT_EQ(Transform(access, "y.x[i]"), "y.x[i]");
    EXPECT_EQ(access.GetLength(), 7);
    EXPECT_TRUE(access.SetLength(9));
    EXPECT_EQ(access.GetLength(), 9);
}

TEST(AccessTest, Texture_IsASamplerAndItsWidth) {
    AccessTexture access;
    ASSERT_TRUE(access.Init(kType_Vec4, "x", "x_k1", 7));

    EXPECT_THAT(GetDeclarations(access),
                ElementsAre("uniform sampler2D x_k1;", "uniform int x_k1Width;"));
    EXPECT_EQ(access.GetLength(), 7);
    EXPECT_TRUE(access.SetLength(9));
    EXPECT_EQ(access.GetLength(), 9);
}

TEST(AccessTest, Texture_ReadsTheTexelOfAnElementAndItsChannels) {
    const std::string read = "texture2D(x_k1,vec2(((float((i%x_k1Width))+0.5)/float(x_k1Width)),"
                             "((float((i/x_k1Width))+0.5)/float(x_k1Width))))";
    struct Case {
        TypeSpecifier type;
        const char* channels;
    };
    for (const Case& c : {Case{kType_Vec4, ""}, Case{kType_Float, ".x"}, Case{kType_Vec2, ".xy"},
                          Case{kType_Vec3, ".xyz"}}) {
        AccessTexture access;
        ASSERT_TRUE(access.Init(c.type, "x", "x_k1", 7));
        std::string text = Transform(access, "x[i]");
        std::erase(text, ' ');
        EXPECT_EQ(text, read + c.channels) << c.type;
        EXPECT_EQ(Transform(access, "y[i]"), "y[i]");
    }
}

TEST(AccessTest, SubscriptSeparate_IsAGlobalArrayWithRoomForOneAtLeast) {
    struct Case {
        int length;
        AccessQualifier qualifier;
        const char* expected;
    };
    for (const Case& c : {
             Case{3, kAccessQualifier_None, "float x_k1[3];"},
             Case{0, kAccessQualifier_None, "float x_k1[1];"},
             Case{-5, kAccessQualifier_Uniform, "uniform float x_k1[1];"},
             Case{2, kAccessQualifier_Const, "const float x_k1[2];"},
         }) {
        AccessSubscriptSeparate access;
        ASSERT_TRUE(access.Init(kType_Float, "x", "x_k1", c.length, c.qualifier, nullptr));
        EXPECT_THAT(GetDeclarations(access), ElementsAre(c.expected));
    }
    AccessSubscriptSeparate access;
    ASSERT_TRUE(access.Init(kType_Float, "x", "x_k1", 3, kAccessQualifier_None, nullptr));
    EXPECT_TRUE(access.SetLength(8));
    EXPECT_THAT(GetDeclarations(access), ElementsAre("float x_k1[8];"));
    EXPECT_EQ(Transform(access, "x[x[i]]"), "x_k1[x_k1[i]]");
    EXPECT_EQ(Transform(access, "x"), "x");
    EXPECT_EQ(Transform(access, "y[i]"), "y[i]");
}

TEST(AccessTest, SubscriptSeparate_WithAQualifierAndAnInitializer_FailsACheck) {
    const CapturedChecks checks;
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    const std::unique_ptr<Expression> initializer(module->CreateIntConstant(1));
    AccessSubscriptSeparate access;

    EXPECT_FALSE(
        access.Init(kType_Float, "x", "x_k1", 3, kAccessQualifier_Const, initializer.get()));

    EXPECT_TRUE(checks.Contains("Internal error: Initializer for the access should be defined only "
                                "for member values.",
                                "Source/AccessSubscriptSeparate"));
    EXPECT_TRUE(access.Init(kType_Float, "x", "x_k1", 3, kAccessQualifier_None, initializer.get()));
    EXPECT_THAT(GetDeclarations(access), ElementsAre("float x_k1[3] = 1;"));
}

TEST(AccessTest, VariableSeparate_IsAGlobalVariable) {
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    const std::unique_ptr<Expression> initializer(module->CreateIntConstant(1));
    AccessVariableSeparate access;

    ASSERT_TRUE(access.Init(kType_Int, "x", "x_k1", kAccessQualifier_Const, nullptr));
    EXPECT_THAT(GetDeclarations(access), ElementsAre("const int x_k1;"));
    ASSERT_TRUE(access.Init(kType_Int, "x", "x_k1", kAccessQualifier_Uniform, nullptr));
    EXPECT_THAT(GetDeclarations(access), ElementsAre("uniform int x_k1;"));
    ASSERT_TRUE(access.Init(kType_Int, "x", "x_k1", kAccessQualifier_None, initializer.get()));
    EXPECT_THAT(GetDeclarations(access), ElementsAre("int x_k1 = 1;"));
    EXPECT_EQ(Transform(access, "x + y.x + x[x]"), "((x_k1+y.x)+x_k1[x_k1])");
}

TEST(AccessTest, VisitTransformations_AnswersWhatTheDelegateAnswers) {
    FastDelegate2<Class, Visitor*, bool> refuse(&Refuse);
    AccessBuffer buffer;
    AccessTexture texture;
    AccessSubscriptSeparate subscript;
    AccessVariableSeparate variable;
    for (IAccess* access :
         std::initializer_list<IAccess*>{&buffer, &texture, &subscript, &variable}) {
        EXPECT_FALSE(access->VisitTransformations(refuse));
    }
}

} // namespace Tolen::Effects::Tests
