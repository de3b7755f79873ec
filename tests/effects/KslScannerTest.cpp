#include "KslScanner.h"

#include "IParser.h"
#include "KslKeywords.h"
#include "KslToken.h"

#include "TolenEffects/Syntax.h"

#include "TolenCore/Format.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Tolen::Effects {
namespace {

/// Writes down what a scanner delivers: words apart by blanks, with the kind of every token that
/// is no keyword or operator.
class TokenLog : public IParser {
public:
    void ParseConstantBool(const LocationRange& range, bool value) override {
        _Add(range, value ? "bool:true" : "bool:false");
    }
    bool ParseConstantInt(const LocationRange& range, long value) override {
        return _Add(range, "int:" + std::to_string(value));
    }
    bool ParseConstantFloat(const LocationRange& range, const char* text, int length) override {
        return _Add(range, "float:" + std::string(text, static_cast<std::size_t>(length)));
    }
    bool ParseKeyword(const LocationRange& range, int token) override {
        codes.push_back(token);
        return _Add(range, kTokenTexts[token]);
    }
    bool ParseIdentifier(const LocationRange& range, const char* text, int length) override {
        return _Add(range, "id:" + std::string(text, static_cast<std::size_t>(length)));
    }
    bool NewLine() override {
        ++newLines;
        return false;
    }

    std::string tokens;
    std::vector<LocationRange> ranges;
    std::vector<int> codes;
    int newLines = 0;

private:
    // The scanner goes on whatever it is answered.
    bool _Add(const LocationRange& range, const std::string& token) {
        tokens += (tokens.empty() ? "" : " ") + token;
        ranges.push_back(range);
        return false;
    }
};

struct Scanned {
    TokenLog log;
    bool success = false;
};

Scanned Scan(const std::string& source, int line = 0) {
    Scanned scanned;
    KslScanner scanner;
    EXPECT_TRUE(scanner.Init(&scanned.log, source, line));
    scanned.success = scanner.Scan();
    return scanned;
}

struct Case {
    const char* source;
    const char* tokens;
};

void ExpectTokens(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        const Scanned scanned = Scan(c.source);
        EXPECT_EQ(scanned.log.tokens, c.tokens) << "source: " << c.source;
        EXPECT_TRUE(scanned.success) << "source: " << c.source;
    }
}

TEST(KslScanner, EveryKeywordAndOperator_HasItsCodeAndItsName) {
    for (int code = 1; code < kToken_Count; ++code) {
        if (code == kToken_Identifier || code == kToken_IntConstant ||
            code == kToken_FloatConstant || code == kToken_BoolConstant ||
            code == kToken_Reserved) {
            continue;
        }
        const Scanned scanned = Scan(kTokenTexts[code]);
        EXPECT_TRUE(scanned.success) << kTokenTexts[code];
        EXPECT_EQ(scanned.log.codes, std::vector<int>{code}) << kTokenTexts[code];
        if (code != kToken_Input) {
            EXPECT_STREQ(TokenName(code), kTokenTexts[code]);
        }
    }
}

TEST(KslScanner, TokenName_NamesTheClassesOfTokensAndLeavesInputUnknown) {
    EXPECT_STREQ(TokenName(6), "identifier");
    EXPECT_STREQ(TokenName(19), "int constant");
    EXPECT_STREQ(TokenName(24), "float constant");
    EXPECT_STREQ(TokenName(25), "bool constant");
    EXPECT_STREQ(TokenName(90), "RESERVED");
    EXPECT_STREQ(TokenName(91), "struct");
    for (const int code : {-1, 0, 37, 92, 1000}) {
        EXPECT_STREQ(TokenName(code), "Unknown") << code;
    }
}

TEST(KslScanner, Codes_AreThoseOfTheGrammar) {
    const struct {
        int code;
        const char* text;
    } kCases[] = {{1, "["},     {4, "}"},     {5, "interface"}, {9, ";"},       {13, "output"},
                  {22, "="},    {26, ")"},    {28, "("},        {33, "ivec4"},  {38, "void"},
                  {48, "else"}, {49, "."},    {54, "bvec4"},    {57, "~"},      {66, ">="},
                  {75, "?"},    {85, "|="},   {86, "sampler2D"}, {89, "primitive"}};
    for (const auto& c : kCases) {
        EXPECT_STREQ(kTokenTexts[c.code], c.text);
    }
}

TEST(KslScanner, Keywords_AreOnlyTheExactWords) {
    ExpectTokens({
        {"float2 intx in1 vec5 sampler1D", "id:float2 id:intx id:in1 id:vec5 id:sampler1D"},
        {"True FALSE Class iF", "id:True id:FALSE id:Class id:iF"},
        {"uniform varying attribute rayattribute switch",
         "id:uniform id:varying id:attribute id:rayattribute id:switch"},
        {"RESERVED identifier", "id:RESERVED id:identifier"},
        {"true false", "bool:true bool:false"},
        {"trues fals", "id:trues id:fals"},
        {"_ _1 a_B9 Z", "id:_ id:_1 id:a_B9 id:Z"},
        {"i f", "id:i id:f"},
        {"iif iff", "id:iif id:iff"},
    });
}

TEST(KslScanner, EveryKeywordWithALetterMoreOrLess_IsAnIdentifier) {
    for (const KslKeyword& keyword : Detail::kKeywords) {
        if (keyword.text.empty()) {
            continue;
        }
        const std::string word(keyword.text);
        for (const std::string& other :
             {word + "x", "x" + word, word.substr(1), word.substr(0, word.size() - 1)}) {
            if (TokenOfWord(other) == kToken_Identifier) {
                EXPECT_EQ(Scan(other).log.tokens, "id:" + other);
            } else {
                EXPECT_TRUE(word == "inout" || word == "output" || word == "interface" ||
                            word == "int" || word == "ivec2" || word == "bvec2" ||
                            word == "ivec3" || word == "bvec3" || word == "ivec4" ||
                            word == "bvec4")
                    << other;
            }
        }
    }
}

TEST(KslScanner, Integers_InThreeBases) {
    ExpectTokens({
        {"0 00 1 42", "int:0 int:0 int:1 int:42"},
        {"017 0777", "int:15 int:511"},
        {"0x1F 0XaB 0x0", "int:31 int:171 int:0"},
        {"2147483647 2147483648", "int:2147483647 int:-2147483648"},
        {"4294967295 4294967296", "int:-1 int:-1"},
        {"99999999999999999999", "int:-1"},
        {"0xFFFFFFFF 0x100000000 037777777777 040000000000", "int:-1 int:-1 int:-1 int:-1"},
    });
}

TEST(KslScanner, Integers_SplitAtWhatTheyCannotHold) {
    ExpectTokens({
        {"1u", "int:1 id:u"},
        {"08", "int:0 int:8"},
        {"0778", "int:63 int:8"},
        {"0x", "int:0 id:x"},
        {"0xG", "int:0 id:xG"},
        {"0x1G", "int:1 id:G"},
        {"00x1", "int:0 id:x1"},
        {"0908", "int:0 int:908"},
    });
}

TEST(KslScanner, Floats_OfEveryForm) {
    for (const char* text : {"1.",    "1.5",    "08.5",  ".5",   "1.e3", "1.5E+2", ".5e-3", "1e3",
                             "0e1",   "08e1",   "1f",    "0f",   "007f", "08f",    "1.5f",  "1.f",
                             ".5f",   "1E+007", "0.0e0", "123456789.123456789e-10"}) {
        const Scanned scanned = Scan(text);
        EXPECT_EQ(scanned.log.tokens, std::string("float:") + text);
        EXPECT_TRUE(scanned.success);
    }
}

TEST(KslScanner, Floats_EndWhereTheLongestFormEnds) {
    ExpectTokens({
        {"1.5F", "float:1.5 id:F"},
        {"1e3f", "float:1e3 id:f"},
        {"1.5e3f", "float:1.5e3 id:f"},
        {"1e", "int:1 id:e"},
        {"1e+", "int:1 id:e +"},
        {"1.e", "float:1. id:e"},
        {"1.e+x", "float:1. id:e + id:x"},
        {"08e", "int:0 int:8 id:e"},
        {"1..2", "float:1. float:.2"},
        {"1.5.5", "float:1.5 float:.5"},
        {"a.5", "id:a float:.5"},
        {"1.x", "float:1. id:x"},
        {"1foo", "float:1f id:oo"},
        {"0x1.5", "int:1 float:.5"},
        {"1f.5", "float:1f float:.5"},
        {". .", ". ."},
        {"...", ". . ."},
        {"1-1", "int:1 - int:1"},
    });
}

TEST(KslScanner, Operators_TakeTheLongestSpelling) {
    ExpectTokens({
        {"+++", "++ +"},
        {"<<<=", "<< <="},
        {">>>=", ">> >="},
        {"===", "== ="},
        {"^^=", "^^ ="},
        {"++=", "++ ="},
        {"&&&", "&& &"},
        {"&&=", "&& ="},
        {"|||=", "|| |="},
        {"---", "-- -"},
        {"!==", "!= ="},
        {"~=", "~ ="},
        {"<=<", "<= <"},
        {"<<=>>=", "<<= >>="},
        {"*/", "* /"},
        {"/=/", "/= /"},
        {"a+-b", "id:a + - id:b"},
    });
}

TEST(KslScanner, LineComment_NeedsALineFeed) {
    ExpectTokens({
        {"a // b\nc", "id:a id:c"},
        {"// abc", "/ / id:abc"},
        {"//", "/ /"},
        {"////", "/ / / /"},
        {"//=1", "/ /= int:1"},
        {"a\n// b /* c", "id:a / / id:b"},
        {"// a\n// b", "/ / id:b"},
        {"// a /* b\nc", "id:c"},
        {"//\n", ""},
        {"a//\\\nb", "id:a id:b"},
    });
    EXPECT_EQ(Scan("// abc\n").log.newLines, 1);
}

TEST(KslScanner, BlockComment_EndsAtTheFirstEndOrWithTheText) {
    ExpectTokens({
        {"/* /* */ */", "* /"},
        {"/*", ""},
        {"/**/a", "id:a"},
        {"/*/a", ""},
        {"/***/a", "id:a"},
        {"a/* b // c */d", "id:a id:d"},
        {"a /* b\n\n c", "id:a"},
        {"/*\"'#$@`\\*/ a", "id:a"},
    });
    EXPECT_EQ(Scan("/* a\nb\n").log.newLines, 2);
}

TEST(KslScanner, WhiteSpace_IsSkippedAndOnlyLineFeedsEndLines) {
    ExpectTokens({{" \t\v\f\r a\rb\r\nc \n", "id:a id:b id:c"}});
    EXPECT_EQ(Scan("a\r\nb\r\n\rc").log.newLines, 2);
}

TEST(KslScanner, EmptyText_FailsAndBlankTextDoesNot) {
    EXPECT_FALSE(Scan("").success);
    EXPECT_TRUE(Scan(" ").success);
    EXPECT_TRUE(Scan("\n").success);
}

TEST(KslScanner, IllegalCharacter_EndsTheScan) {
    for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        const bool isLegal = byte == '\t' || (byte >= '\n' && byte <= '\r') ||
                             (byte >= ' ' && byte < 127 &&
                              std::string("\"'#$@`\\").find(character) == std::string::npos);
        const Scanned scanned = Scan(std::string("a ") + character + " b");
        EXPECT_EQ(scanned.success, isLegal) << byte;
        if (!isLegal) {
            EXPECT_EQ(scanned.log.tokens, "id:a") << byte;
        }
    }
    EXPECT_EQ(Scan("a$b").log.tokens, "id:a");
}

TEST(KslScanner, NulInAComment_IsPartOfIt) {
    using namespace std::string_literals;
    EXPECT_EQ(Scan("a/*\0*/b//\0\nc"s).log.tokens, "id:a id:b id:c");
    EXPECT_TRUE(Scan("a/*\0*/b//\0\nc"s).success);
}

TEST(KslScanner, Columns_CountFromZeroOnTheFirstLineAndFromOneBelow) {
    const Scanned scanned = Scan("ab\nef  1.5\n\n /* \n */ x");
    ASSERT_EQ(scanned.log.ranges.size(), 4u);
    const LocationRange kExpected[] = {
        {nullptr, 1, 0, 1, 2}, {nullptr, 2, 1, 2, 3}, {nullptr, 2, 5, 2, 8}, {nullptr, 5, 5, 5, 6}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(scanned.log.ranges[i], kExpected[i]) << i;
    }
}

TEST(KslScanner, Lines_CountFromTheGivenOne) {
    const Scanned scanned = Scan("a\nb", -7);
    EXPECT_EQ(scanned.log.ranges[0].firstLine, -6);
    EXPECT_EQ(scanned.log.ranges[1].lastLine, -5);
}

TEST(KslScanner, SlashesWithoutALineFeed_TakeLinearTime) {
    const std::string source(400'000, '/');
    EXPECT_EQ(Scan(source).log.codes.size(), source.size());
}

} // namespace
} // namespace Tolen::Effects
