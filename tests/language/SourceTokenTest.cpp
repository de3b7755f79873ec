#include "language/SourceToken.h"

#include "language/Corpus.h"

#include "IParser.h"
#include "KslKeywords.h"
#include "KslScanner.h"
#include "TolenEffects/Syntax.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace Tolen::Language {
namespace {

using Tests::CorpusText;

std::string KindName(SourceToken::Kind kind) {
    static const char* const kNames[] = {"word", "keyword", "number",    "sign",
                                         "line", "block",   "directive", "unknown"};
    return kNames[kind];
}

/// "kind:text" of each token, apart by "|".
std::string Describe(const std::string& text) {
    std::string description;
    for (const SourceToken& token : Tokenize(text)) {
        description += (description.empty() ? "" : "|") + KindName(token.kind) + ":" +
                       text.substr(token.range.begin, token.range.GetLength());
    }
    return description;
}

/// What the library makes of a text.
class Recorder : public Effects::IParser {
public:
    using Range = Effects::LocationRange;

    explicit Recorder(const SourceText& text) : _text(text) {}

    void ParseConstantBool(const Range& range, bool) override { _Add("keyword", range); }
    bool ParseConstantInt(const Range& range, long) override { return _Add("number", range); }
    bool ParseConstantFloat(const Range& range, const char*, int) override {
        return _Add("number", range);
    }
    bool ParseKeyword(const Range& range, int token) override {
        const bool isWord =
            std::isalpha(static_cast<unsigned char>(Effects::kTokenTexts[token][0]));
        return _Add(isWord ? "keyword" : "sign", range);
    }
    bool ParseIdentifier(const Range& range, const char*, int) override {
        return _Add("word", range);
    }
    bool NewLine() override { return true; }

    std::vector<std::string> tokens; ///< with their offsets

private:
    bool _Add(const std::string& kind, const Range& range) {
        // On all lines but the first columns count from the line feed before.
        const auto column = static_cast<std::size_t>(range.firstColumn);
        const std::size_t begin =
            range.firstLine == 1 ? column : _text.GetLineRange(range.firstLine).begin + column - 1;
        const auto length = static_cast<std::size_t>(range.lastColumn - range.firstColumn);
        const std::string piece(_text.GetText({begin, begin + length}));
        tokens.push_back(std::to_string(begin) + " " + kind + " " + piece);
        return true;
    }

    const SourceText& _text;
};

/// The tokens of the library's scanner. Directives are blanked out, as they are taken out of files,
/// and a line feed ends the last line, as one does there.
std::vector<std::string> Scan(std::string text) {
    for (const SourceToken& token : Tokenize(text)) {
        if (token.kind == SourceToken::kKind_Directive) {
            std::fill_n(text.begin() + static_cast<std::ptrdiff_t>(token.range.begin),
                        token.range.GetLength(), ' ');
        }
    }
    text += '\n';
    const SourceText source(text);
    Recorder recorder(source);
    Effects::KslScanner scanner;
    scanner.Init(&recorder, text, 0);
    scanner.Scan();
    return recorder.tokens;
}

/// The same of Tokenize: without comments and directives, up to the first unknown character.
std::vector<std::string> List(const std::string& text) {
    std::vector<std::string> list;
    for (const SourceToken& token : Tokenize(text)) {
        if (token.kind == SourceToken::kKind_Unknown) {
            break;
        }
        if (!token.IsComment() && token.kind != SourceToken::kKind_Directive) {
            list.push_back(std::to_string(token.range.begin) + " " + KindName(token.kind) + " " +
                           text.substr(token.range.begin, token.range.GetLength()));
        }
    }
    return list;
}

/// What the tokens leave is blank, and they stand in order.
void ExpectCover(const std::string& text) {
    std::size_t at = 0;
    const auto expectBlank = [&](std::size_t end) {
        for (; at < end; ++at) {
            EXPECT_NE(std::string(" \t\n\v\f\r").find(text[at]), std::string::npos) << at;
        }
    };
    for (const SourceToken& token : Tokenize(text)) {
        ASSERT_LE(at, token.range.begin);
        ASSERT_LT(token.range.begin, token.range.end);
        ASSERT_LE(token.range.end, text.size());
        expectBlank(token.range.begin);
        at = token.range.end;
    }
    expectBlank(text.size());
}

TEST(Tokenize, TellsTheKindsApart) {
    EXPECT_EQ(Describe("class A9{input float x_=1.5;}"),
              "keyword:class|word:A9|sign:{|keyword:input|keyword:float|word:x_|sign:=|number:1.5|"
              "sign:;|sign:}");
    EXPECT_EQ(Describe("true struct vec5 0x1F<<=.5"),
              "keyword:true|keyword:struct|word:vec5|number:0x1F|sign:<<=|number:.5");
}

TEST(Tokenize, KeepsComments) {
    EXPECT_EQ(Describe("a // b /* c\r\nd /* e\n// f */ g // h"),
              "word:a|line:// b /* c|word:d|block:/* e\n// f */|word:g|line:// h");
    EXPECT_EQ(Describe("/**/a/*/ b"), "block:/**/|word:a|block:/*/ b");
}

TEST(Tokenize, TakesDirectivesAsWholeLines) {
    EXPECT_EQ(Describe("#define A  b\n  #ifdef A // c\r\n#endif"),
              "directive:#define A  b|directive:#ifdef A // c|directive:#endif");
    EXPECT_EQ(Describe("#include \"a b\"\n#else x"),
              "directive:#include \"a b\"|directive:#else x");
}

TEST(Tokenize, TakesOtherLinesWithThatSignForText) {
    EXPECT_EQ(Describe("# define A"), "unknown:#|word:define|word:A");
    EXPECT_EQ(Describe("#if A"), "unknown:#|keyword:if|word:A");
    EXPECT_EQ(Describe("#defined"), "unknown:#|word:defined");
    EXPECT_EQ(Describe("a #define"), "word:a|unknown:#|word:define");
    EXPECT_EQ(Describe("/* a\n*/ #else"), "block:/* a\n*/|unknown:#|keyword:else");
}

TEST(Tokenize, LetsNoDirectiveEndAComment) {
    EXPECT_EQ(Describe("/* a\n#define b */\nc */ d"), "block:/* a\n#define b */\nc */|word:d");
}

TEST(Tokenize, GoesOnBehindUnknownCharacters) {
    EXPECT_EQ(Describe("a$b \"c\""), "word:a|unknown:$|word:b|unknown:\"|word:c|unknown:\"");
    EXPECT_EQ(Describe("x\xc3\xa4\xe2\x82\xac y"), "word:x|unknown:\xc3\xa4\xe2\x82\xac|word:y");
    EXPECT_EQ(Describe(std::string("a\0b", 3)), std::string("word:a|unknown:\0|word:b", 23));
}

TEST(Tokenize, OfNothing_IsNothing) {
    EXPECT_EQ(Describe(""), "");
    EXPECT_EQ(Describe(" \r\n\t\v\f"), "");
}

TEST(Tokenize, FindsTheTokensOfTheLibraryInAllSources) {
    ASSERT_GT(Tests::GetCorpus().size(), 50u);
    for (const CorpusText& source : Tests::GetCorpus()) {
        EXPECT_EQ(List(source.text), Scan(source.text)) << source.name;
        ExpectCover(source.text);
    }
}

TEST(Tokenize, FindsTheTokensOfTheLibraryInRandomTexts) {
    std::mt19937 random(11);
    for (int i = 0; i < 4000; ++i) {
        const std::string text = Tests::MakeRandomText(random, 1 + i % 40);
        // Blanked directives would end comments that they don't end, and begin none.
        if (text.find("#define i */") == std::string::npos) {
            ASSERT_EQ(List(text), Scan(text)) << text;
        }
        ExpectCover(text);
    }
}

TEST(Tokenize, TakesLinearTime) {
    for (const char* piece :
         {"/", "/*", "$", "a ", "#define A\n", "\"", "//\n", "/*\n", "\r", "1"}) {
        std::string text;
        while (text.size() < 200'000) {
            text += piece;
        }
        EXPECT_LE(Tokenize(text).size(), text.size()) << piece;
    }
}

} // namespace
} // namespace Tolen::Language
