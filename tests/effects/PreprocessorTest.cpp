#include "MgrEffectsImpl.h"

#include "TolenEffects/Limits.h"

#include "SmallStack.h"

#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"
#include "support/ScopedAssets.h"

#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace Tolen::Effects {
namespace {

/// Keeps the texts that come out of the preprocessor instead of parsing them.
class Preprocessor : public MgrEffectsImpl {
public:
    struct Text {
        std::string name;
        std::string source;
        long long lineAdjustment;
    };

    bool AddLibrary(const std::string& name, const std::string& source, Result*) override {
        texts.push_back({name, source, GetLineAdjustment()});
        return accept;
    }
    using MgrEffectsImpl::AddLibrary;

    std::vector<Text> texts;
    bool accept = true;
};

class PreprocessorTest : public testing::Test {
protected:
    PreprocessorTest() {
        EXPECT_TRUE(_preprocessor.Init(&_preprocessor, _console.Get(), &_context, nullptr));
    }

    /// The text of a file that stands alone; "(failed)" when there is none.
    std::string _Run(const std::string& text) {
        _assets.Add("main.ksl", text);
        _preprocessor.texts.clear();
        _console.Clear();
        if (!_preprocessor.AddLibrary("main.ksl", &_result)) {
            return "(failed)";
        }
        return _preprocessor.texts.empty() ? "(none)" : _preprocessor.texts.back().source;
    }
    void _TestNesting();
    long long _GetLineAdjustment() const { return _preprocessor.texts.back().lineAdjustment; }

    Tolen::Tests::CapturedConsole _console;
    Tolen::Tests::ScopedAssets _assets;
    Tolen::Tests::RecordingContext _context;
    Preprocessor _preprocessor;
    Result _result;
};

constexpr const char* kMismatch = "Effects Manager: Pre-Processor Condition Stack mismatch while "
                                  "reading file 'main.ksl'\n";

TEST_F(PreprocessorTest, Text_IsPassedOnLineByLine) {
    EXPECT_EQ(_Run("a\nb"), "a\nb\n");
    EXPECT_EQ(_Run("a\n\n\nb\n"), "a\n\n\nb\n");
    EXPECT_EQ(_Run("\n"), "\n");
    EXPECT_EQ(_Run("  a\t\r\n#pragma x\n# define A 1\nA"), "  a\t\r\n#pragma x\n# define A 1\nA\n");
    EXPECT_EQ(_preprocessor.texts.back().name, "main.ksl");
    EXPECT_EQ(_GetLineAdjustment(), 0);
    EXPECT_EQ(_console.GetAll(), "Acquired shader source asset successfully: 'main.ksl'\n");
}

TEST_F(PreprocessorTest, EveryDirective_LeavesAnEmptyLine) {
    EXPECT_EQ(_Run("#define A 1\n#ifdef A\nA\n#else\nb\n#endif\n#undef A\nA\n#ifndef A\nc\n#endif"),
              "\n\n1\n\n\n\n\nA\n\nc\n\n");
}

TEST_F(PreprocessorTest, Conditions_SelectLines) {
    struct Case {
        const char* name;
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"not defined", "#ifdef A\na\n#else\nb\n#endif\n", "\n\n\nb\n\n"},
        {"defined", "#define A\n#ifdef A\na\n#else\nb\n#endif\n", "\n\na\n\n\n\n"},
        {"ifndef", "#ifndef A\na\n#else\nb\n#endif\n", "\na\n\n\n\n"},
        {"else twice", "#ifdef A\na\n#else\nb\n#else\nc\n#endif\n", "\n\n\nb\n\n\n\n"},
        {"inside an inactive block", "#ifdef A\n#ifdef B\na\n#else\nb\n#endif\n#endif\nc\n",
         "\n\n\n\n\n\n\nc\n"},
        {"ifndef inside an inactive block",
         "#ifdef A\n#ifndef B\na\n#else\nb\n#endif\n#else\nc\n#endif\n", "\n\n\n\n\n\n\nc\n\n"},
        {"directives that don't count", "#ifdef A\n#define B 1\n#undef C\n#endif\nB\n",
         "\n\n\n\nB\n"},
        {"without a name", "#ifdef\na\n#else\nb\n#endif\n", "\n\n\nb\n\n"},
        {"a name is one word", "#define A\n#ifdef A B\na\n#endif\n", "\n\na\n\n"},
        {"deep", "#ifndef A\n#ifndef A\n#ifndef A\na\n#endif\n#endif\n#endif\n", "\n\n\na\n\n\n\n"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(_Run(c.text), c.expected) << c.name;
    }
}

TEST_F(PreprocessorTest, BlocksThatDontMatch_FailWithTheFilesName) {
    const char* const texts[] = {
        "#endif",
        "a\n#endif\n",
        "#endif\na\n#include \"none.ksl\"\n",
        "#else\n#endif\n",
        "#ifdef A\n",
        "#ifndef A\na\n#else\n",
        "#ifdef A\n#endif\n#endif\n",
    };
    for (const char* text : texts) {
        EXPECT_EQ(_Run(text), "(failed)") << text;
        EXPECT_EQ(_console.GetErrors(), kMismatch) << text;
        EXPECT_TRUE(_preprocessor.texts.empty()) << text;
    }
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(PreprocessorTest, ADefinition_HoldsFromItsLineOn) {
    EXPECT_EQ(_Run("A\n#define A 1\nA\n#define A 2\nA"), "A\n\n1\n\n2\n");
    EXPECT_EQ(_console.GetWarnings(),
              "Effects Manager: Pre-Processor found redefinition of 'A' as '2' (was '1')\n");
    EXPECT_EQ(_Run("#define A B\n#define B 1\nA"), "\n\nB\n");
    EXPECT_EQ(_Run("#define B 1\n#define A B\nA"), "\n\n1\n");
    EXPECT_EQ(_Run("#define A B\n#define B 1\n#define A B\nA"), "\n\n\n1\n")
        << "a redefinition moves the name to the end";
    EXPECT_EQ(_Run("#define A 1  2 \t\r\n<A>\r"), "\n<1  2>\r\n");
    EXPECT_EQ(_Run("#define A\n<A>"), "\n<>\n");
    EXPECT_EQ(_Run("#define\nA\n#ifdef\nb\n#endif"), "\nA\n\nb\n\n");
    EXPECT_EQ(_Run("#undef A\nA"), "\nA\n");
}

TEST_F(PreprocessorTest, Definitions_EndWithTheCall) {
    EXPECT_EQ(_Run("#define A 1\nA"), "\n1\n");
    EXPECT_EQ(_Run("A"), "A\n");
}

TEST_F(PreprocessorTest, APercentSign_ReachesTheConsoleAsItStands) {
    EXPECT_EQ(_Run("#define A %s\n#define A %n\nA"), "\n\n%n\n");
    EXPECT_EQ(_console.GetWarnings(),
              "Effects Manager: Pre-Processor found redefinition of 'A' as '%n' (was '%s')\n");
}

TEST_F(PreprocessorTest, TheContextsFeatures_AreDefined) {
    const std::string text =
        "#ifdef KL_DIFFERENTIALS_ENABLED\nd\n#endif\n#ifdef KL_FILTERED_ACCUMULATES_ENABLED\nf\n"
        "#endif\nKL_DIFFERENTIALS_ENABLED KL_FILTERED_ACCUMULATES_ENABLED\n";
    EXPECT_EQ(_Run(text), "\n\n\n\n\n\nKL_DIFFERENTIALS_ENABLED KL_FILTERED_ACCUMULATES_ENABLED\n");
    _context.SetDifferentialsEnabled(true);
    EXPECT_EQ(_Run(text), "\nd\n\n\n\n\n1 KL_FILTERED_ACCUMULATES_ENABLED\n");
    _context.SetFilteredAccumulatesEnabled(true);
    EXPECT_EQ(_Run(text), "\nd\n\n\nf\n\n1 1\n");
    EXPECT_EQ(_console.GetWarnings(), "");
}

TEST_F(PreprocessorTest, AFeatureThatIsUndefined_StillStandsForOneInAnInclude) {
    // Every file that is entered brings one more copy; #undef takes one away.
    _context.SetDifferentialsEnabled(true);
    _assets.Add("inner.ksl", "KL_DIFFERENTIALS_ENABLED\n#undef KL_DIFFERENTIALS_ENABLED\n");
    EXPECT_EQ(_Run("#include \"inner.ksl\"\n#ifdef KL_DIFFERENTIALS_ENABLED\nd\n#endif\n"
                   "KL_DIFFERENTIALS_ENABLED"),
              "1\n\n\n\n\n1\n");
}

TEST_F(PreprocessorTest, AnInclude_IsReplacedByItsFile) {
    _assets.Add("inner.ksl", "i\nj\n");
    EXPECT_EQ(_Run("a\n#include \"inner.ksl\"\nb\n#include \"inner.ksl\"\nc"),
              "a\ni\nj\nb\ni\nj\nc\n");
    EXPECT_EQ(_GetLineAdjustment(), 2 * (1 - 2));
    _assets.Add("inner.ksl", "i\nj");
    EXPECT_EQ(_Run("a\n#include \"inner.ksl\""), "a\ni\nj\n");
    EXPECT_EQ(_GetLineAdjustment(), 1 - 1);
}

TEST_F(PreprocessorTest, NestedIncludes_AddUpAndShareDefinitions) {
    _assets.Add("outer.ksl", "#include \"inner.ksl\"\n#define B b\nA\n");
    _assets.Add("inner.ksl", "#define A a\nX\n");
    EXPECT_EQ(_Run("#define X x\n#include \"outer.ksl\"\nA B\n"), "\n\nx\n\na\na b\n");
    EXPECT_EQ(_GetLineAdjustment(), (1 - 3) + (1 - 2));
}

TEST_F(PreprocessorTest, AnIncludeThatDoesntCount_LosesItsLine) {
    EXPECT_EQ(_Run("#ifdef A\n#include \"none.ksl\"\n#include <x>\n#endif\nb"), "\n\nb\n");
    EXPECT_EQ(_GetLineAdjustment(), 0);
    EXPECT_EQ(_console.GetErrors(), "");
}

TEST_F(PreprocessorTest, AnIncludeWithoutQuotes_Fails) {
    EXPECT_EQ(_Run("#include <file>\n#include \"none.ksl\"\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Failed to interpret '#include filename "
                                    "<file>' in file 'main.ksl'\n");
    EXPECT_TRUE(_result.IsEmpty());
}

TEST_F(PreprocessorTest, AFileThatIsMissing_FailsTheWhole) {
    EXPECT_EQ(_Run("a\n#include \"none 1.ksl\"\n#include \"other.ksl\"\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "Failed to read shader source file 'none' (not found)\n");
    EXPECT_FALSE(_preprocessor.AddLibrary("missing.ksl", nullptr));
}

TEST_F(PreprocessorTest, AFailureInsideABlock_TellsOfTheBlockToo) {
    EXPECT_EQ(_Run("#ifndef A\n#include \"none\"\n#endif\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(),
              std::string("Failed to read shader source file 'none' (not found)\n") + kMismatch);
}

TEST_F(PreprocessorTest, AnEmptyFile_FailsInSilence) {
    _assets.Add("empty.ksl", "");
    EXPECT_EQ(_Run("#include \"empty.ksl\"\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "");
    EXPECT_EQ(_Run(""), "(failed)");
    EXPECT_EQ(_Run(std::string("\0a", 2)), "(failed)") << "a text ends at its zero";
    EXPECT_EQ(_console.GetErrors(), "");
}

TEST_F(PreprocessorTest, ABlock_EndsInItsOwnFile) {
    _assets.Add("open.ksl", "#ifndef A\n");
    _assets.Add("close.ksl", "#endif\n");
    EXPECT_EQ(_Run("#include \"open.ksl\"\n#endif\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Pre-Processor Condition Stack mismatch while "
                                    "reading file 'open.ksl'\n");
    EXPECT_EQ(_Run("#ifndef A\n#include \"close.ksl\"\n"), "(failed)");
}

TEST_F(PreprocessorTest, AnImport_BecomesALibraryOfItsOwn) {
    _assets.Add("inner.ksl", "#define B b\nA\n");
    EXPECT_EQ(_Run("#define A a\n#import \"inner.ksl\"\nA B\n"), "\n\na b\n");
    ASSERT_EQ(_preprocessor.texts.size(), 2u);
    EXPECT_EQ(_preprocessor.texts[0].name, "inner.ksl");
    EXPECT_EQ(_preprocessor.texts[0].source, "\na\n");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Deprecated preprocessor directive #import "
                                    "\"inner.ksl\"' in file 'main.ksl'\n");
}

TEST_F(PreprocessorTest, AnImport_LeavesTheLinesOfItsImporterAlone) {
    _assets.Add("include.ksl", "1\n2\n3\n");
    _assets.Add("inner.ksl", "#include \"include.ksl\"\n#include \"include.ksl\"\n");
    EXPECT_EQ(_Run("#include \"include.ksl\"\n#import \"inner.ksl\"\n"), "1\n2\n3\n\n");
    EXPECT_EQ(_preprocessor.texts[0].lineAdjustment, -4);
    EXPECT_EQ(_preprocessor.texts[1].lineAdjustment, -2);
}

TEST_F(PreprocessorTest, AnImportThatDoesntCount_IsStillTold) {
    EXPECT_EQ(_Run("#ifdef A\n#import \"none.ksl\"\n#endif\n"), "\n\n\n");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Deprecated preprocessor directive #import "
                                    "\"none.ksl\"' in file 'main.ksl'\n");
}

TEST_F(PreprocessorTest, AnImportWithoutQuotesOrFile_Fails) {
    const std::string deprecated = "Effects Manager: Deprecated preprocessor directive #import ";
    EXPECT_EQ(_Run("#import x\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), deprecated + "x' in file 'main.ksl'\nEffects Manager: Failed "
                                                 "to interpret '#import filename x' in file "
                                                 "'main.ksl'\n");
    EXPECT_EQ(_Run("#import \"none\"\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), deprecated + "\"none\"' in file 'main.ksl'\nFailed to read "
                                                 "shader source file 'none' (not found)\n");
}

TEST_F(PreprocessorTest, AFailure_LeavesTheLinesOfTheFailedFileBehind) {
    _assets.Add("include.ksl", "1\n2\n3\n");
    EXPECT_EQ(_Run("#include \"include.ksl\"\n#endif\n"), "(failed)");
    EXPECT_EQ(_preprocessor.GetLineAdjustment(), -2);
    EXPECT_EQ(_Run("a"), "a\n");
    EXPECT_EQ(_GetLineAdjustment(), 0);
    EXPECT_EQ(_preprocessor.GetLineAdjustment(), -2) << "a good file puts back what it found";
}

TEST_F(PreprocessorTest, ARejectedLibrary_FailsWithItsAnswer) {
    _preprocessor.accept = false;
    EXPECT_EQ(_Run("a"), "(failed)");
    EXPECT_EQ(_preprocessor.texts.size(), 1u);
}

TEST_F(PreprocessorTest, WithoutAssets_ACheckFails) {
    Tolen::Tests::CapturedChecks checks;
    IMgrAssets* const previous = SetMgrAssets(nullptr);
    EXPECT_FALSE(_preprocessor.AddLibrary("main.ksl", nullptr));
    SetMgrAssets(previous);
    EXPECT_TRUE(checks.Contains("pMgrAssets != NULL", "Source/MgrEffectsImpl"));
}

TEST_F(PreprocessorTest, NoAsset_IsKept) {
    _assets.Add("inner.ksl", "x\n");
    _Run("#include \"inner.ksl\"\n#import \"inner.ksl\"\n#include \"none\"\n");
    EXPECT_EQ(_assets.GetCountAcquired(), 0u);
}

TEST_F(PreprocessorTest, Nesting_WorksUpToItsLimitAndIsToldBeyond) {
    Tests::OnSmallStack([this] { _TestNesting(); });
}

void PreprocessorTest::_TestNesting() {
    for (const char* directive : {"include", "import"}) {
        for (int i = 0; i < kLimitIncludeDepth; ++i) {
            _assets.Add(Format("%d.ksl", i), Format("#%s \"%d.ksl\"\n", directive, i + 1));
        }
        // The file of the client's call is the first; as many as the limit are inside of it.
        _assets.Add(Format("%d.ksl", kLimitIncludeDepth), "end\n");
        EXPECT_TRUE(_preprocessor.AddLibrary("0.ksl", nullptr)) << directive;
        _assets.Add(Format("%d.ksl", kLimitIncludeDepth),
                    Format("\n#%s \"%d.ksl\"\n", directive, kLimitIncludeDepth + 1));
        _assets.Add(Format("%d.ksl", kLimitIncludeDepth + 1), "end\n");
        Result result;
        _console.Clear();
        EXPECT_FALSE(_preprocessor.AddLibrary("0.ksl", &result)) << directive;
        const std::string message = "Effects Manager: Limit of 64 files inside each other exceeded "
                                    "in file '64.ksl' line 2";
        EXPECT_NE(_console.GetErrors().find(message + "\n"), std::string::npos);
        ASSERT_FALSE(result.IsEmpty());
        EXPECT_EQ(result.GetMessage(0), message);
    }
}

TEST_F(PreprocessorTest, AFileThatNamesItself_MeetsTheLimit) {
    EXPECT_EQ(_Run("#include \"main.ksl\"\n"), "(failed)");
    EXPECT_TRUE(_console.Contains("Limit of 64 files inside each other exceeded in file 'main.ksl' "
                                  "line 1\n"));
    EXPECT_EQ(_Run("\n#import \"main.ksl\"\n"), "(failed)");
    EXPECT_TRUE(_console.Contains("Limit of 64 files inside each other exceeded in file 'main.ksl' "
                                  "line 2\n"));
}

TEST_F(PreprocessorTest, ManyFiles_WorkUpToTheirLimitAndAreToldBeyond) {
    _assets.Add("inner.ksl", "x\n");
    std::string text;
    for (int i = 1; i < kLimitFiles; ++i) {
        text += "#include \"inner.ksl\"\n";
    }
    EXPECT_EQ(_Run(text).size(), 2u * (kLimitFiles - 1));
    EXPECT_EQ(_Run(text + "#include \"inner.ksl\"\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Limit of 4096 files for one library exceeded "
                                    "in file 'main.ksl' line 4096\n");
    EXPECT_EQ(_Run("a"), "a\n") << "the next library starts afresh";
}

TEST_F(PreprocessorTest, FilesThatIncludeEachOtherTwice_MeetTheLimitSoon) {
    // Two to the power of sixty files, if nobody counted.
    for (int i = 0; i < 60; ++i) {
        _assets.Add(Format("%d.ksl", i),
                    Format("#include \"%d.ksl\"\n#import \"%d.ksl\"\n", i + 1, i + 1));
    }
    _assets.Add("60.ksl", "x\n");
    EXPECT_FALSE(_preprocessor.AddLibrary("0.ksl", nullptr));
    EXPECT_TRUE(_console.Contains("Limit of 4096 files for one library exceeded"));
}

TEST_F(PreprocessorTest, ExpandedText_WorksUpToItsLimitAndIsToldBeyond) {
    const std::string megabyte((1 << 20) - 1, 'x');
    _assets.Add("inner.ksl", megabyte + "\n");
    std::string text;
    for (int i = 0; i < 63; ++i) {
        text += "#include \"inner.ksl\"\n";
    }
    EXPECT_EQ(_Run(text + megabyte).size(), kLimitExpandedSource);
    EXPECT_EQ(_Run(text + megabyte + "x"), "(failed)");
    const std::string message = "Effects Manager: Limit of 67108864 bytes of expanded source "
                                "exceeded in file 'main.ksl' line ";
    EXPECT_EQ(_console.GetErrors(), message + "64\n");
    EXPECT_EQ(_Run(text + megabyte + "\n\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), message + "65\n");
}

TEST_F(PreprocessorTest, AChainOfDoublings_MeetsTheLimitSoon) {
    // Long names fill the text with fewer words, which takes less time.
    const std::string name = "N" + std::string(1000, '_');
    std::string text = "#define " + name + "0 x\n";
    for (int i = 1; i < 100; ++i) {
        const std::string half = name + std::to_string(i - 1);
        text += "#define " + name + std::to_string(i) + " " + half + " " + half + "\n";
    }
    EXPECT_EQ(_Run(text + name + "3\n").substr(100), "x x x x x x x x\n");
    EXPECT_EQ(_Run(text + "\n" + name + "99\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Limit of 67108864 bytes of expanded source "
                                    "exceeded in file 'main.ksl' line 102\n");
}

TEST_F(PreprocessorTest, ALongName_WorksUpToItsLimitAndIsToldBeyond) {
    const std::string name(kLimitDefinitionName, 'n');
    EXPECT_EQ(_Run("#define " + name + " 1\n" + name), "\n1\n");
    EXPECT_EQ(_Run("\n#define " + name + "n 1\n"), "(failed)");
    EXPECT_EQ(_console.GetErrors(), "Effects Manager: Limit of 1024 characters in the name of a "
                                    "#define exceeded in file 'main.ksl' line 2\n");
}

TEST_F(PreprocessorTest, AConditionDeepInside_NeedsNoStack) {
    std::string text;
    std::string expected;
    for (int i = 0; i < 100000; ++i) {
        text += "#ifndef A\n";
        expected += "\n\n";
    }
    text += "a\n";
    for (int i = 0; i < 100000; ++i) {
        text += "#endif\n";
    }
    EXPECT_EQ(_Run(text), expected.substr(0, 100000) + "a\n" + expected.substr(100000));
}

TEST_F(PreprocessorTest, RandomTexts_EndWithOneLineForEachLine) {
    const char* const pieces[] = {"#define",  "#undef",  "#ifdef", "#ifndef", "#else", "#endif",
                                  "#include", "#import", " ",      "\t",      "\n",    "\r\n",
                                  "A",        "B",       "AB",     "\"",      "\"i\"", "1",
                                  "A A",      "_",       "\xff",   "%s%n",    "#",     "\n\n"};
    std::mt19937 random(3);
    _assets.Add("i", "A\n#define A B A\n");
    int good = 0;
    for (int n = 0; n < 5000; ++n) {
        std::string text = "x";
        for (auto count = random() % 40; count > 0; --count) {
            text += pieces[random() % std::size(pieces)];
            text += random() % 3 == 0 ? " " : "";
        }
        const std::string expanded = _Run(text);
        if (expanded == "(failed)") {
            continue;
        }
        ++good;
        if (text.find("#include") == std::string::npos) {
            const auto lines = std::count(text.begin(), text.end(), '\n');
            EXPECT_EQ(std::count(expanded.begin(), expanded.end(), '\n'),
                      text.back() == '\n' ? lines : lines + 1)
                << text;
        }
    }
    EXPECT_GT(good, 500);
    EXPECT_EQ(_assets.GetCountAcquired(), 0u);
}

TEST_F(PreprocessorTest, AThousandFiles_AreReadIntoOneText) {
    // Each has two symbols of its own from the context, and lines to match.
    _context.SetDifferentialsEnabled(true);
    _context.SetFilteredAccumulatesEnabled(true);
    std::string inner = "#define LOCAL 1\n";
    for (int i = 0; i < 100; ++i) {
        inner += "    color = color * LOCAL + texture2D(map, uv) * KL_DIFFERENTIALS_ENABLED;\n";
    }
    inner += "#undef LOCAL\n";
    _assets.Add("inner.ksl", inner);
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += "#include \"inner.ksl\"\n";
    }
    const std::string expanded = _Run(text);
    EXPECT_EQ(std::count(expanded.begin(), expanded.end(), ';'), 100000);
}

} // namespace
} // namespace Tolen::Effects
