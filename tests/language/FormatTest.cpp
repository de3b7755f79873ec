#include "language/Format.h"

#include "language/Corpus.h"
#include "language/SourceToken.h"

#include "docs/Markdown.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <string>
#include <vector>

namespace Tolen::Language {
namespace {

using Tests::CorpusText;

/// The tokens of a text. Comments are free to lose blanks at the end, and to move their lines.
std::vector<std::string> List(const std::string& text) {
    std::vector<std::string> list;
    for (const SourceToken& token : Tokenize(text)) {
        std::string piece = text.substr(token.range.begin, token.range.GetLength());
        if (token.kind == SourceToken::kKind_LineComment) {
            piece.erase(piece.find_last_not_of(" \t") + 1);
        } else if (token.kind == SourceToken::kKind_BlockComment) {
            piece = std::regex_replace(piece, std::regex("\n +"), "\n");
        }
        list.push_back(std::to_string(token.kind) + piece);
    }
    return list;
}

void ExpectSound(const std::string& text) {
    const std::string formatted = Format(text);
    ASSERT_EQ(List(formatted), List(text)) << text << "\n----\n" << formatted;
    ASSERT_EQ(Format(formatted), formatted) << text << "\n----\n" << formatted;
}

std::string InMethod(const std::string& lines) {
    return "class A\n{\n    void f()\n    {\n" + lines + "    }\n}\n";
}

/// Formats the lines of a method's body.
void ExpectBody(const std::string& written, const std::string& expected) {
    EXPECT_EQ(Format(InMethod(written)), InMethod(expected));
}

TEST(Format, LaysOutDeclarations) {
    EXPECT_EQ(Format("interface  I{float At(vec2 p) ;vec3 b( );}\n"
                     "float  f ( float x ){return x*x;}\n"
                     "class A:I{input float a[ ]=float [ ]( 1.0,-2 ) ; const int  n=- 1;\n\n\n"
                     "  coord vec2 uv;float At(vec2 p){return p.x;}}"),
              "interface I\n{\n    float At(vec2 p);\n    vec3 b();\n}\n"
              "float f(float x) { return x * x; }\n"
              "class A : I\n{\n    input float a[] = float[](1.0, -2);\n    const int n = -1;\n\n"
              "    coord vec2 uv;\n    float At(vec2 p) { return p.x; }\n}\n");
}

TEST(Format, LaysOutStatements) {
    ExpectBody(
        "if(a){b;}else if(c){d;} else {e;}\nfor(int i=0;i<9;++i){ x+=i; }\n"
        "while(a)b;do{c;}\nwhile(d);\nfor(;;){}\nreturn(a);\n",
        "        if (a)\n        {\n            b;\n        }\n        else if (c)\n"
        "        {\n            d;\n        }\n        else\n        {\n            e;\n"
        "        }\n        for (int i = 0; i < 9; ++i)\n        {\n            x += i;\n"
        "        }\n        while (a) b;\n        do\n        {\n            c;\n"
        "        } while (d);\n        for (;;)\n        {\n        }\n        return (a);\n");
}

TEST(Format, IndentsTheStatementsOfControlWords) {
    ExpectBody("if (a)\nfor (int i = 0; i < 9; ++i)\nif (b)\nc;\nelse\nd;\nelse if (e)\nf;\n"
               "else\ng;\nh;\n",
               "        if (a)\n            for (int i = 0; i < 9; ++i)\n                if (b)\n"
               "                    c;\n                else\n                    d;\n"
               "        else if (e)\n            f;\n        else\n            g;\n        h;\n");
}

TEST(Format, SetsBlanksAroundOperators) {
    ExpectBody("a=b+c*-d- -e-(-f);x=!a&&~b==c^^d;y= a?b:c;++i;j ++;if (a) ++i;z = a [ 1 ] . x;\n",
               "        a = b + c * -d - -e - (-f);\n        x = !a && ~b == c ^^ d;\n"
               "        y = a ? b : c;\n        ++i;\n        j++;\n        if (a) ++i;\n"
               "        z = a[1].x;\n");
}

TEST(Format, LeavesBlanksThatKeepTokensApart) {
    ExpectBody("a = - -x; b = + +x; c = 1 .x; d = a - --b; e = - --b; f = & & a;\n",
               "        a = - -x;\n        b = + +x;\n        c = 1 .x;\n        d = a - --b;\n"
               "        e = - --b;\n        f = & & a;\n");
    // Behind a sign a name may stand for another sign.
    ExpectBody("a = - NEGATIVE;\n", "        a = - NEGATIVE;\n");
}

TEST(Format, KeepsShortBodiesOnTheirLine) {
    EXPECT_EQ(
        Format("class A\n{\n    void f(){}\n    int g() { a; return b; }\n"
               "    int h()\n    { return b; }\n    int i() { if (a) { b; } }\n}\n"),
        "class A\n{\n    void f() { }\n    int g() { a; return b; }\n"
        "    int h()\n    {\n        return b;\n    }\n"
        "    int i()\n    {\n        if (a)\n        {\n            b;\n        }\n    }\n}\n");
    const std::string name(80, 'n');
    EXPECT_EQ(Format("float f() { return " + name + "; }"),
              "float f()\n{\n    return " + name + ";\n}\n");
    EXPECT_EQ(Format("float f() { return " + name.substr(2) + "; }"),
              "float f() { return " + name.substr(2) + "; }\n");
}

TEST(Format, KeepsLineEndsWithinStatementsAndAligns) {
    ExpectBody("float a = b *\n(c +\nd);\nreturn e +\nf;\nfoo(a,\nb,\nbar(\nc), d);\nx +\ny;\n"
               "z = a ? b\n: c ? d\n: e;\nz = a\n? b\n: c;\nfoo(\na\n)\n;\n",
               "        float a = b *\n                  (c +\n                   d);\n"
               "        return e +\n               f;\n"
               "        foo(a,\n            b,\n            bar(\n                c), d);\n"
               "        x +\n            y;\n"
               "        z = a ? b\n              : c ? d\n              : e;\n"
               "        z = a\n                ? b\n                : c;\n"
               "        foo(\n            a);\n");
}

TEST(Format, BreaksLinesThatAreTooLong) {
    const std::string a(50, 'a');
    const std::string b(40, 'b');
    ExpectBody("x = " + a + " * " + b + " + " + a + ";\n",
               "        x = " + a + " *\n            " + b + " +\n            " + a + ";\n");
    ExpectBody("foo(" + a + " * " + a + ", " + b + ");\n",
               "        foo(" + a + " *\n            " + a + ",\n            " + b + ");\n");
    ExpectBody("return " + a + " ? " + b + " : " + b + ";\n",
               "        return " + a + "\n                   ? " + b +
                   "\n                   : " + b + ";\n");
    ExpectBody("if (" + a + ") return " + b + ";\n",
               "        if (" + a + ")\n            return " + b + ";\n");
    // What can't be broken stays, and so do comments.
    ExpectBody("x = " + a + a + ";\nx = " + a + "; // " + b + "\n",
               "        x =\n            " + a + a + ";\n        x = " + a + "; // " + b + "\n");
}

TEST(Format, KeepsComments) {
    EXPECT_EQ(Format("// Head.\n//   | a |\n\n\n\n// Of A.   \nclass A // behind\n{ // more\n"
                     "// Of a.\nfloat a;   // aligned\nfloat b; /* c */ float c;\n"
                     "/* Of f,\n   on two lines. */\nvoid f(/* in */ vec2 x) { } // end\n\n"
                     "// Last.\n}\n// Tail."),
              "// Head.\n//   | a |\n\n// Of A.\nclass A // behind\n{ // more\n"
              "    // Of a.\n    float a;   // aligned\n    float b; /* c */\n    float c;\n"
              "    /* Of f,\n       on two lines. */\n    void f(/* in */ vec2 x) { } // end\n\n"
              "    // Last.\n}\n// Tail.\n");
    ExpectBody("a = b + // why\nc;\nif (a) // when\n{ }\n// or\nelse { }\n",
               "        a = b + // why\n            c;\n        if (a) // when\n        {\n"
               "        }\n        // or\n        else\n        {\n        }\n");
}

TEST(Format, KeepsDirectivesAtTheBeginningOfTheirLines) {
    EXPECT_EQ(Format("  #define A  1\nclass B{\n    #ifdef A\nfloat f() {\n  #else\nfloat g() {\n"
                     "#endif\nreturn A;}}"),
              "#define A  1\nclass B\n{\n#ifdef A\n    float f()\n    {\n#else\n    float g()\n"
              "    {\n#endif\n        return A;\n    }\n}\n");
}

TEST(Format, KeepsWhatLinesHold_WhereDefinitionsDependOnIt) {
    // A name that is no word, and values that comment out what is behind them.
    EXPECT_EQ(Format("#define a+b 3\nvoid f(){\nx=a+b ;\ny  = a + b;}\n"),
              "#define a+b 3\nvoid f(){\n    x=a+b ;\n    y  = a + b;}\n");
    EXPECT_EQ(Format("#define SKIP //\n  SKIP a ; b\n"), "#define SKIP //\nSKIP a ; b\n");
    EXPECT_EQ(Format("#define SKIP /*\n  SKIP a ; b\n"), "#define SKIP /*\nSKIP a ; b\n");
}

TEST(Format, KeepsLinesWithUnknownCharacters) {
    EXPECT_EQ(Format("#define{a\n  # else\nint  a ;#define  $\n  b=c;\n"),
              "#define{a\n    # else\n    int  a ;#define  $\n        b = c;\n");
}

TEST(Format, OfATextThatIsNotClosed_LosesNothing) {
    EXPECT_EQ(Format("class A{void f(){if(a){b;\nclass B{"),
              "class A\n{\n    void f()\n    {\n        if (a)\n        {\n            b;\n"
              "class B\n{\n");
    EXPECT_EQ(Format("}}float f(){return a;}}  /* b\n c"),
              "}\n}\nfloat f() { return a; }\n}  /* b\n c");
}

TEST(Format, KeepsTheEndsOfLines) {
    EXPECT_EQ(Format("class A{\r\n\r\n\r\nfloat a;\r\n/* b\r\n*/}"),
              "class A\r\n{\r\n    float a;\r\n    /* b\r\n    */\r\n}\r\n");
    EXPECT_EQ(Format("float\tf();\n\n\n"), "float f();\n");
    EXPECT_EQ(Format(""), "");
    EXPECT_EQ(Format(" \n\n"), "");
}

TEST(Format, OfTheExampleInTheDocument_IsTheExample) {
    int count = 0;
    for (const Tests::CodeBlock& block : Tests::ReadCodeBlocks("docs/klsl.md")) {
        if (block.language == "klsl" && block.section == "Layout") {
            ++count;
            EXPECT_EQ(Format(block.text), block.text);
        }
    }
    EXPECT_EQ(count, 1);
}

TEST(Format, OfEverySource_IsSound) {
    for (const CorpusText& source : Tests::GetCorpus()) {
        SCOPED_TRACE(source.name);
        ExpectSound(source.text);
    }
}

TEST(Format, OfSourcesWithoutTheirBlanks_IsSound) {
    for (const CorpusText& source : Tests::GetCorpus()) {
        std::string crowded;
        std::size_t end = 0;
        for (const SourceToken& token : Tokenize(source.text)) {
            const std::string gap = source.text.substr(end, token.range.begin - end);
            const bool isLine = token.IsComment() || crowded.ends_with('\n') ||
                                token.kind == SourceToken::kKind_Directive;
            crowded += isLine ? gap : gap.empty() ? "" : " ";
            crowded += source.text.substr(token.range.begin, token.range.GetLength());
            crowded += token.kind == SourceToken::kKind_LineComment ||
                               token.kind == SourceToken::kKind_Directive
                           ? "\n"
                           : "";
            end = token.range.end;
        }
        SCOPED_TRACE(source.name);
        ExpectSound(crowded);
    }
}

TEST(Format, OfDamagedAndRandomTexts_IsSound) {
    std::mt19937 random(3);
    const auto& corpus = Tests::GetCorpus();
    for (std::size_t i = 0; i < 150 && !HasFatalFailure(); ++i) {
        ExpectSound(Tests::Damage(random, corpus[i % corpus.size()].text));
        ExpectSound(Tests::MakeRandomText(random, 20));
        ExpectSound(Tests::MakeRandomText(random, 120));
    }
}

TEST(Format, TakesLinearTimeAndNoStack) {
    for (const char* piece :
         {"{", "}", "(", "class A {", "if (x) ", "f(a, ", "do ", "else ", "a ? ",
          "a ? b : ", "a = ", "#ifdef A\n(", "// c\n", "/* d */", "- ", "$", "a, ", "\"\n"}) {
        std::string text = "class A { void f() { ";
        while (text.size() < 10'000) {
            text += piece;
        }
        EXPECT_GE(Format(text).size(), text.size() / 2) << piece;
    }
}

} // namespace
} // namespace Tolen::Language
