#include "tools/Process.h"

#include "support/paths/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// Takes the temporary folder out of the paths in @p text.
std::string WithoutFolder(std::string text) {
    const std::string folder = GetTemporary("");
    for (std::size_t at; (at = text.find(folder)) != std::string::npos;) {
        text.erase(at, folder.size());
    }
    return text;
}

/// Runs the program on files of the temporary folder, which its output then leaves out.
Ended RunKlsl(std::vector<std::string> arguments) {
    for (std::string& argument : arguments) {
        if (argument.ends_with(".klsl") && !argument.starts_with("/")) {
            argument = GetTemporary(argument);
        }
    }
    Ended ended = RunProgram("klsl", arguments);
    ended.output = WithoutFolder(ended.output);
    ended.errors = WithoutFolder(ended.errors);
    return ended;
}

Ended Check(const std::string& file) {
    return RunKlsl({"check", file});
}

Ended Print(const std::string& file, const std::string& name, const std::string& effect) {
    return RunKlsl({"print", file, "--class", name, "--effect", effect});
}

// ---- check

TEST(Klsl, Check_OfGoodLibraries_SaysNothing) {
    WriteTemporary("a.klsl", "class A : I { input float x = 1.5; float f() { return x; } }\n");
    WriteTemporary("b.klsl", "interface I { float f(); }\n");
    const Ended run = RunKlsl({"check", "a.klsl", "b.klsl"});
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(run.status, 0);
}

TEST(Klsl, Check_OfAShaderLibraryOfOurs_SaysNothing) {
    std::vector<std::string> arguments = {"check"};
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(SourceFolder() + "/shaders")) {
        if (entry.path().extension() == ".klsl") {
            arguments.push_back(entry.path());
        }
    }
    std::sort(arguments.begin() + 1, arguments.end());
    ASSERT_GT(arguments.size(), 1u);
    const Ended run = RunKlsl(arguments);
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(run.status, 0);
}

TEST(Klsl, Check_ShowsTheLineAndPointsAtTheTokenOfASyntaxError) {
    WriteTemporary("a.klsl", "class A {\n\tfloat x = ;\n    vec3 y = foo.bar;\n}\n\n$");
    const Ended run = Check("a.klsl");
    EXPECT_THAT(run.errors, StartsWith("a.klsl:2:12: error: Syntax Error. Near \";\"\n"
                                       "\tfloat x = ;\n"
                                       "\t          ^\n"));
    EXPECT_EQ(run.status, 1);
}

TEST(Klsl, Check_ShowsErrorsInTheOrderOfTheSource) {
    WriteTemporary("a.klsl", "class A {}\nclass A {}\ninterface I {}\ninterface I {}\n;\n");
    EXPECT_EQ(Check("a.klsl").errors, "a.klsl:2:7: error: Duplicate class definition: \"A\"\n"
                                      "class A {}\n"
                                      "      ^\n"
                                      "a.klsl:1:7: note: the first one is here\n"
                                      "class A {}\n"
                                      "      ^\n"
                                      "a.klsl:4:11: error: Duplicate interface definition: \"I\"\n"
                                      "interface I {}\n"
                                      "          ^\n"
                                      "a.klsl:3:11: note: the first one is here\n"
                                      "interface I {}\n"
                                      "          ^\n"
                                      "a.klsl:5:1: error: Syntax Error. Near \";\"\n"
                                      ";\n"
                                      "^\n");
}

TEST(Klsl, Check_PointsAtTheTokenThatTheParserMeans) {
    WriteTemporary("a.klsl", "[ a = b a; ]\n");
    EXPECT_THAT(Check("a.klsl").errors,
                StartsWith("a.klsl:1:9: error: Syntax Error. Near \"identifier\" a\n"
                           "[ a = b a; ]\n"
                           "        ^\n"));
    WriteTemporary("b.klsl", "class A { input input; }\n");
    EXPECT_THAT(Check("b.klsl").errors,
                StartsWith("b.klsl:1:17: error: Syntax Error. Near \"Unknown\"\n"
                           "class A { input input; }\n"
                           "                ^~~~~\n"));
}

TEST(Klsl, Check_LoadsEveryClass) {
    WriteTemporary("a.klsl", "interface I { float f(); }\n"
                             "class A : I { }\n"
                             "class B : None { }\n"
                             "class C { void f() { A.g(); } }\n"
                             "class D { }\n");
    const Ended run = Check("a.klsl");
    EXPECT_THAT(run.errors,
                StartsWith("a.klsl:2:7: error: Class \"A\" is missing implementation of method "
                           "\"f\" from interface \"I\"\n"
                           "class A : I { }\n"
                           "      ^\n"
                           "a.klsl:1:21: note: 'f' is declared here\n"
                           "interface I { float f(); }\n"
                           "                    ^\n"));
    EXPECT_THAT(run.errors, HasSubstr("a.klsl:3:11: error: Failed to find interface None"));
    EXPECT_THAT(run.errors, HasSubstr("class B : None { }\n          ^~~~\n"));
    EXPECT_THAT(run.errors, Not(HasSubstr("class D")));
    EXPECT_EQ(run.status, 1);
}

TEST(Klsl, Check_EvaluatesDefaults) {
    WriteTemporary("a.klsl", "class A {\n    input float x = float(a + 1);\n}\n");
    const Ended run = Check("a.klsl");
    EXPECT_THAT(run.errors, StartsWith("a.klsl:2:17: error: x: Initializer: Unsupported Initializer"));
    EXPECT_THAT(run.errors, HasSubstr("\n    input float x = float(a + 1);\n"));
    EXPECT_EQ(run.status, 1);
}

TEST(Klsl, Check_FindsIncludedAndImportedFilesInSearchPaths) {
    std::filesystem::create_directories(GetTemporary("lib"));
    WriteTemporary("lib/part.h", "class P {}\n\n");
    WriteTemporary("lib/other.klsl", "class O {");
    WriteTemporary("a.klsl", "#include \"part.h\"\nclass A {}\n");
    const std::string folder = GetTemporary("lib");
    EXPECT_EQ(RunKlsl({"check", "-I", folder, "a.klsl"}).status, 0);
    EXPECT_THAT(Check("a.klsl").errors,
                StartsWith("a.klsl:1:10: error: Failed to read shader source file 'part.h'"));

    WriteTemporary("b.klsl", "#import \"other.klsl\"\n");
    const Ended run = RunKlsl({"check", "b.klsl", "-I", folder});
    EXPECT_THAT(run.errors, HasSubstr("b.klsl:1:1: warning: Effects Manager: Deprecated"));
    EXPECT_THAT(run.errors, HasSubstr("lib/other.klsl:1:9: error: Parse Failure."));
    EXPECT_EQ(run.status, 1);
}

TEST(Klsl, Check_OfWarningsAlone_Succeeds) {
    WriteTemporary("a.klsl", "#define A 1\n#define A 2\nclass B {}\n");
    const Ended run = Check("a.klsl");
    EXPECT_THAT(run.errors, StartsWith("a.klsl:2:9: warning: Effects Manager: Pre-Processor found "
                                       "redefinition of 'A' as '2' (was '1')"));
    EXPECT_EQ(run.status, 0);
}

TEST(Klsl, Check_OfMissingOrEmptyFiles_Fails) {
    WriteTemporary("empty.klsl", "");
    EXPECT_EQ(Check("none.klsl").errors,
              "none.klsl: error: Failed to read shader source file 'none.klsl' (not found)\n");
    EXPECT_EQ(Check("none.klsl").status, 1);
    EXPECT_THAT(Check("empty.klsl").errors, StartsWith("empty.klsl: error: "));
    EXPECT_EQ(Check("empty.klsl").status, 1);
}

TEST(Klsl, Check_GoesOnBehindABadFile) {
    WriteTemporary("a.klsl", "class {}\n");
    WriteTemporary("b.klsl", "class B : None {}\n");
    const Ended run = RunKlsl({"check", "a.klsl", "b.klsl"});
    EXPECT_THAT(run.errors, HasSubstr("a.klsl:1:7: error: Syntax Error."));
    EXPECT_THAT(run.errors, HasSubstr("b.klsl:1:11: error: Failed to find interface None"));
}

// ---- check --watch

/// A running check and all that it has said so far.
class Watch {
public:
    explicit Watch(const std::vector<std::string>& files)
        : _output(GetTemporary("watch.txt")), _program("klsl", MakeArguments(files), _output) {}

    /// Waits until the last check has said something with @p text and ended. @return what it said
    std::string WaitFor(const std::string& text) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        for (;;) {
            std::ifstream file(_output);
            const std::string all{std::istreambuf_iterator<char>(file), {}};
            const std::string said = WithoutFolder(all.substr(std::min(_seen, all.size())));
            const std::size_t found = said.find(text);
            if (found != std::string::npos && said.ends_with("\n")) {
                _seen = all.size();
                return said;
            }
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "'" << text << "' is not said, but " << said;
                return said;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    int End() {
        _program.Interrupt();
        return _program.Wait();
    }

private:
    static std::vector<std::string> MakeArguments(std::vector<std::string> files) {
        files.insert(files.begin(), {"check", "--watch", "-I", GetTemporary("")});
        return files;
    }

    std::string _output;
    BackgroundProgram _program;
    std::size_t _seen = 0;
};

TEST(Klsl, Watch_ChecksAtEachChangeUntilItIsInterrupted) {
    const std::string file = WriteTemporary("watched.klsl", "class A { float f() { return a; } }");
    Watch watch({file});
    EXPECT_THAT(watch.WaitFor(" 1 error"), StartsWith("watched.klsl:1:30: error: 'a' is not "));

    WriteTemporary("watched.klsl", "class A { float f() { return 1.0; } }");
    watch.WaitFor(" no errors");

    // Editors put a new file in the place of the old one.
    WriteTemporary("watched.new", "#include \"later.h\"\nclass A { }");
    std::filesystem::rename(GetTemporary("watched.new"), file);
    EXPECT_THAT(watch.WaitFor(" 1 error"), HasSubstr("Failed to read shader source file"));

    WriteTemporary("later.h", "float later() { return 1.0; }\n");
    watch.WaitFor(" no errors");

    std::filesystem::remove(file);
    EXPECT_THAT(watch.WaitFor(" 1 error"), HasSubstr("not found"));

    WriteTemporary("watched.klsl", "class A { }");
    watch.WaitFor(" no errors");
    EXPECT_EQ(watch.End(), 0);
}

// ---- print

constexpr const char* kPlain = "class Plain {\n"
                               "    input vec3 tint = vec3(1.0);\n"
                               "    normal vec3 N;\n"
                               "    void Shade() { accumulate(o_color, tint * N); }\n"
                               "    void Render() { accumulate(o_color, tint); }\n"
                               "}\n";

/// Where each part of a printed program starts.
struct Parts {
    explicit Parts(const std::string& text)
        : root(text.find("// ---- root\n")), graph(text.find("// ---- graph\n")),
          vertex(text.find("// ---- vertex\n")) {}

    std::size_t root;
    std::size_t graph;
    std::size_t vertex;
};

TEST(Klsl, Print_OfASurface_ShowsRootGraphAndVertexStage) {
    WriteTemporary("a.klsl", kPlain);
    const Ended run = Print("a.klsl", "Plain", "surface");
    const Parts parts(run.output);
    EXPECT_EQ(parts.root, 0u);
    EXPECT_LT(parts.root, parts.graph);
    EXPECT_LT(parts.graph, parts.vertex);
    EXPECT_NE(parts.vertex, std::string::npos);
    EXPECT_THAT(run.output, HasSubstr("void Plain_Shade_k"));
    EXPECT_THAT(run.output, HasSubstr("attribute vec3 a_N;"));
    EXPECT_EQ(run.status, 0);
}

TEST(Klsl, Print_OfARenderer_HasNoVertexStage) {
    WriteTemporary("a.klsl", "class Camera { void Render() { accumulate(o_color, vec3(1.0)); } }");
    const Ended run = Print("a.klsl", "Camera", "renderer");
    const Parts parts(run.output);
    EXPECT_EQ(parts.root, 0u);
    EXPECT_NE(parts.graph, std::string::npos);
    EXPECT_EQ(parts.vertex, std::string::npos);
    EXPECT_THAT(run.output, HasSubstr("Camera_Render_k"));
    EXPECT_EQ(run.status, 0);
}

TEST(Klsl, Print_OfAPrefix_HasNoVertexStage) {
    WriteTemporary("a.klsl", "class Haze { void Shade() { accumulate(o_color, vec3(1.0)); } }");
    const Ended run = Print("a.klsl", "Haze", "prefix");
    EXPECT_EQ(Parts(run.output).root, 0u);
    EXPECT_EQ(Parts(run.output).vertex, std::string::npos);
    EXPECT_EQ(run.status, 0);
}

TEST(Klsl, Print_TwiceTheSame_GivesTheSameText) {
    WriteTemporary("a.klsl", kPlain);
    EXPECT_EQ(Print("a.klsl", "Plain", "surface").output,
              Print("a.klsl", "Plain", "surface").output);
}

TEST(Klsl, Print_OfCodeThatDoesNotCompile_ShowsThePlaceInTheSource) {
    WriteTemporary("a.klsl", "class Bad {\n    void Shade() { none = 1; }\n}\n");
    const Ended run = Print("a.klsl", "Bad", "surface");
    EXPECT_THAT(run.errors, StartsWith("a.klsl:2:20: error: 'none' is not declared\n"));
    EXPECT_THAT(run.errors, HasSubstr("\n    void Shade() { none = 1; }\n                   ^~~~\n"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(Print("a.klsl", "Bad", "surface").output, HasSubstr("none = 1"));
}

TEST(Klsl, Print_OfAnUnknownClass_Fails) {
    WriteTemporary("a.klsl", kPlain);
    const Ended run = Print("a.klsl", "None", "surface");
    EXPECT_EQ(run.errors, "a.klsl: error: Could not create shader named \"None\"\n");
    EXPECT_EQ(run.status, 1);
}

TEST(Klsl, Print_OfAMisspeltClass_TellsTheOneThatIsMeant) {
    WriteTemporary("a.klsl", kPlain);
    const Ended run = Print("a.klsl", "Plane", "surface");
    EXPECT_EQ(run.errors, "a.klsl: error: Could not create shader named \"Plane\" (did you mean "
                          "'Plain'?)\n");
    EXPECT_EQ(run.status, 1);
}

// ---- misuse

TEST(Klsl, Misuse_HasAStatusOfItsOwn) {
    WriteTemporary("a.klsl", kPlain);
    const std::vector<std::string> kCases[] = {
        {},
        {"check"},
        {"unknown", "a.klsl"},
        {"check", "--unknown", "a.klsl"},
        {"print", "a.klsl"},
        {"print", "a.klsl", "--class", "Plain"},
        {"print", "a.klsl", "--effect", "surface"},
        {"print", "a.klsl", "--class", "Plain", "--effect", "none"},
        {"print", "--class", "Plain", "--effect", "surface"},
    };
    for (const std::vector<std::string>& arguments : kCases) {
        const Ended run = RunKlsl(arguments);
        EXPECT_EQ(run.status, 2) << testing::PrintToString(arguments);
        EXPECT_NE(run.errors, "") << testing::PrintToString(arguments);
    }
}

TEST(Klsl, Help_IsNoMisuse) {
    EXPECT_EQ(RunKlsl({"--help"}).status, 0);
    EXPECT_THAT(RunKlsl({"check", "--help"}).output, HasSubstr("files"));
}

} // namespace
} // namespace Tolen::Tests
