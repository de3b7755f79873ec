#include "SourceReader.h"

#include "PreprocessorState.h"

#include "TolenEffects/Limits.h"

#include "TolenCore/Format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace Tolen::Effects {
namespace {

/// Writes down what a reader tells, a line each.
class Listener : public SourceReader::Client {
public:
    bool Read(const std::string& text) {
        heard.clear();
        return SourceReader(*this, state).Read("main", text);
    }

    void DefineNames(Definitions& definitions) override { definitions.Define("LIBRARY", "1"); }

    bool BeginIncluded(const std::string& file, const SourceReader::Place& place, std::string& path,
                       std::string& text) override {
        _Hear("begin " + file, place);
        const auto found = files.find(file);
        if (found == files.end()) {
            return false;
        }
        path = "/" + file;
        text = found->second;
        return true;
    }

    void EndIncluded() override { heard.emplace_back("end"); }

    bool Import(const std::string& file, const SourceReader::Place& place) override {
        _Hear("import " + file, place);
        const auto found = files.find(file);
        return found != files.end() && SourceReader(*this, state).Read("/" + file, found->second);
    }

    void OnDefine(const std::string& name, const SourceReader::Place& place) override {
        _Hear("define " + name, place);
    }

    void Write(const SourceReader::Place& place, const std::string& text,
               const Definitions&) override {
        heard.push_back(
            Format("%d: '%s' was '%s'", place.line, text.c_str(), std::string(place.text).c_str()));
    }

    void Tell(const SourceReader::Remark& remark) override {
        kinds.push_back(remark.kind);
        _Hear(remark.text, remark.place);
    }

    std::map<std::string, std::string> files;
    std::vector<std::string> heard;
    std::vector<SourceReader::Remark::Kind> kinds;
    PreprocessorState state;

private:
    void _Hear(const std::string& what, const SourceReader::Place& place) {
        heard.push_back(Format("%s, at %d %s", what.c_str(), place.line,
                               std::string(place.word.empty() ? place.text : place.word).c_str()));
    }
};

using Lines = std::vector<std::string>;
using Kinds = std::vector<SourceReader::Remark::Kind>;

TEST(SourceReader, EachLine_IsWrittenWithWhatItWas) {
    Listener listener;

    EXPECT_TRUE(listener.Read("#define A 1\nint a = A;\n#ifdef B\nint b;\n#endif\nLIBRARY"));
    EXPECT_EQ(listener.heard,
              (Lines{"define A, at 1 A", "1: '' was '#define A 1'",
                     "2: 'int a = 1;' was 'int a = A;'", "3: '' was '#ifdef B'",
                     "4: '' was 'int b;'", "5: '' was '#endif'", "6: '1' was 'LIBRARY'"}));
    EXPECT_TRUE(listener.kinds.empty());
}

TEST(SourceReader, AnInclude_WritesTheLinesOfItsFileAndNoneOfItsOwn) {
    Listener listener;
    listener.files["inner"] = "one\ntwo\n";

    EXPECT_TRUE(listener.Read("#include \"inner\"\nthree"));
    EXPECT_EQ(listener.heard, (Lines{"begin inner, at 1 \"inner\"", "1: 'one' was 'one'",
                                     "2: 'two' was 'two'", "end", "2: 'three' was 'three'"}));
}

TEST(SourceReader, AnIncludeWithoutAText_EndsTheReading) {
    Listener listener;

    EXPECT_FALSE(listener.Read("#include \"nothing\"\nthree"));
    EXPECT_EQ(listener.heard, (Lines{"begin nothing, at 1 \"nothing\""}));
    EXPECT_EQ(listener.state.depth, 0);
}

TEST(SourceReader, AnImport_IsToldAndSharesTheDefinitions) {
    Listener listener;
    listener.files["inner"] = "#define A 2";

    EXPECT_TRUE(listener.Read("#import \"inner\"\nA"));
    const std::string deprecated = "Effects Manager: Deprecated preprocessor directive #import "
                                   "\"inner\"' in file 'main', at 1 #import \"inner\"";
    EXPECT_EQ(listener.heard, (Lines{deprecated, "import inner, at 1 \"inner\"", "define A, at 1 A",
                                     "1: '' was '#define A 2'", "1: '' was '#import \"inner\"'",
                                     "2: '2' was 'A'"}));
    EXPECT_EQ(listener.kinds, (Kinds{SourceReader::Remark::kKind_Error}));
}

TEST(SourceReader, ARedefinition_IsToldBeforeTheNewDefinition) {
    Listener listener;

    EXPECT_TRUE(listener.Read("#define A 1\n#define A 2"));
    const std::string redefined = "Effects Manager: Pre-Processor found redefinition of 'A' as "
                                  "'2' (was '1'), at 2 A";
    EXPECT_EQ(listener.heard, (Lines{"define A, at 1 A", "1: '' was '#define A 1'", redefined,
                                     "define A, at 2 A", "2: '' was '#define A 2'"}));
    EXPECT_EQ(listener.kinds, (Kinds{SourceReader::Remark::kKind_Redefinition}));
}

TEST(SourceReader, AMismatch_IsToldOfTheLineThatMeantIt) {
    struct Case {
        const char* text;
        const char* place;
    };
    const Case cases[] = {
        {"a\n#endif\nb", "2 #endif"},
        {"#else", "1 #else"},
        {"#ifdef A\nb", "1 #ifdef A"},
        {"#ifdef A\n#ifndef B\nb", "2 #ifndef B"},
        {"#ifdef A\n#ifndef B\n#endif\nb", "1 #ifdef A"},
        {"#ifdef A\n#endif\n#endif\n#ifdef C", "3 #endif"},
    };
    for (const Case& c : cases) {
        Listener listener;
        EXPECT_FALSE(listener.Read(c.text)) << c.text;
        EXPECT_EQ(listener.heard.back(),
                  std::string("Effects Manager: Pre-Processor Condition Stack mismatch while "
                              "reading file 'main', at ") +
                      c.place);
    }
}

TEST(SourceReader, AFileThatIncludesItself_EndsAtALimitThatNamesTheLine) {
    Listener listener;
    listener.files["main"] = "\n#include \"main\"";

    EXPECT_FALSE(listener.Read(listener.files["main"]));
    EXPECT_EQ(std::count(listener.heard.begin(), listener.heard.end(), "end"), kLimitIncludeDepth);
    const std::string message = Format("Effects Manager: Limit of %d files inside each other "
                                       "exceeded in file '/main' line 2, at 2 #include \"main\"",
                                       kLimitIncludeDepth);
    EXPECT_EQ(std::count(listener.heard.begin(), listener.heard.end(), message), 1);
    EXPECT_EQ(listener.kinds, (Kinds{SourceReader::Remark::kKind_Limit}));
    EXPECT_EQ(listener.state.depth, 0);
}

TEST(SourceReader, TooManyFiles_EndAtALimit) {
    Listener listener;
    listener.files["inner"] = " ";
    std::string text;
    for (int i = 0; i < kLimitFiles; ++i) {
        text += "#include \"inner\"\n";
    }

    EXPECT_FALSE(listener.Read(text));
    EXPECT_EQ(std::count(listener.heard.begin(), listener.heard.end(), "end"), kLimitFiles - 1)
        << "the file itself is one of them";
    EXPECT_EQ(listener.kinds, (Kinds{SourceReader::Remark::kKind_Limit}));
}

} // namespace
} // namespace Tolen::Effects
