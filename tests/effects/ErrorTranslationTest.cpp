#include "ErrorTranslation.h"

#include "LocationText.h"
#include "TreeBuilder.h"

#include "TolenEffects/VisitorPrintKsl.h"

namespace Tolen::Effects::Tests {

namespace {

const std::string kFile = "shaders/metal.kl";

TEST(LocationTextTest, Files_AreNamedWithoutTheirFolders) {
    const auto text = [](const char* file) {
        const std::string name = file;
        return LocationText({&name, 12, 3, 14, 5});
    };
    EXPECT_EQ(text("a/b/c.kl"), "c.kl:12");
    EXPECT_EQ(text("a\\b\\c.kl"), "c.kl:12");
    EXPECT_EQ(text("a/b\\c.kl"), "c.kl:12");
    EXPECT_EQ(text("a\\b/c.kl"), "c.kl:12");
    EXPECT_EQ(text("c.kl"), "c.kl:12");
    EXPECT_EQ(text("a/"), ":12");
    EXPECT_EQ(text(""), ":12");
    EXPECT_EQ(LocationText(LocationRange()), "<generated>:0");
    EXPECT_EQ(LocationText({&kFile, -3, 0, 0, 0}), "metal.kl:-3");
}

/// A printed function whose statement stands on line 7 of the text and line 40 of the source.
class ErrorTranslationTest : public testing::Test {
protected:
    ErrorTranslationTest() {
        ExpressionStatement* statement = t.Do(t.Var("a"));
        statement->SetRange(Lines(&kFile, 40, 41));
        FunctionDefinition* function = t.Function(t.Prototype(kType_Void, "f"), {statement});
        function->SetRange(Lines(&kFile, 38, 42));
        t->AddFunctionDefinition(function);
        EXPECT_TRUE(t->AcceptVisitor(&printer));
        EXPECT_EQ(printer.GetText(), "\n\n\nvoid f()\n{\n\ta;\n}\n\n");
    }
    std::string Translate(const std::string& log) { return TranslateErrorMessage(log, printer); }

    TreeBuilder t;
    VisitorPrintKsl printer{nullptr, nullptr, false};
};

TEST_F(ErrorTranslationTest, NumberedLine_BecomesItsSourceLine) {
    EXPECT_EQ(Translate("error: String 0 Line 6: unknown variable 'a'\n"),
              "metal.kl:40: unknown variable 'a'\n");
    EXPECT_EQ(Translate("String 0 Line 6: x"), "metal.kl:40: x");
}

TEST_F(ErrorTranslationTest, LinesWithoutANumber_PassUnchanged) {
    for (const char* log :
         {"", "\n\n", "compile failed\n", "short", "String 0 Line ", "String 0 Line 6",
          "String 0 Line x\n", "String 1 Line 6: x\n", "String 0 Line 0: x\n",
          "String 0 Line -6: x\n", "String 0 Line 99999999999999999999: x\n"}) {
        // A line feed at the very start is dropped.
        const std::string text = log;
        EXPECT_EQ(Translate(text), text.substr(0, 1) == "\n" ? text.substr(1) : text);
    }
}

TEST_F(ErrorTranslationTest, NumberAtTheEndOfALine_IsTranslatedBeforeItsLineFeed) {
    EXPECT_EQ(Translate("at String 0 Line 6\nmore"), "metal.kl:40\nmore");
}

TEST_F(ErrorTranslationTest, NumbersPastTheText_BecomeTheModule) {
    EXPECT_EQ(Translate("String 0 Line 9: x\n"), "<generated>:0: x\n");
    EXPECT_EQ(Translate("String 0 Line 2147483647: x\n"), "<generated>:0: x\n");
    EXPECT_EQ(Translate("String 0 Line 1: x\n"), "<generated>:0: x\n");
}

TEST_F(ErrorTranslationTest, SecondNumberOfALine_Stays) {
    EXPECT_EQ(Translate("String 0 Line 6: as in String 0 Line 6: y\n"),
              "metal.kl:40: as in String 0 Line 6: y\n");
}

TEST_F(ErrorTranslationTest, ManyLines_AreTranslatedEachByItself) {
    EXPECT_EQ(Translate("\nfirst\nString 0 Line 6: a\n\nString 0 Line 6: b"),
              "first\nmetal.kl:40: a\n\nmetal.kl:40: b");
}

} // namespace

} // namespace Tolen::Effects::Tests
