#include "compiler/LinkedProgram.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL::Tests {

namespace {

struct Text {
    const char* name;
    Stage stage;
    std::string text;
};

/// What linking some texts as the program "p" gave.
struct Linked {
    std::shared_ptr<const LinkedProgram> program;
    std::string messages;
};

Linked Link(std::initializer_list<Text> texts) {
    std::vector<LinkInput> inputs;
    for (const Text& text : texts) {
        std::string messages;
        inputs.push_back({text.name, CompileShader(text.stage, text.text, messages)});
        EXPECT_NE(inputs.back().shader, nullptr) << text.name << ": " << messages;
        if (inputs.back().shader == nullptr) {
            return {};
        }
    }
    Linked linked;
    linked.program = LinkProgram("p", inputs, linked.messages);
    EXPECT_EQ(linked.program == nullptr, !linked.messages.empty());
    return linked;
}

std::string GetLinkMessages(std::initializer_list<Text> texts) {
    return Link(texts).messages;
}

std::string ListFunctions(const LinkedStage& stage) {
    std::string names;
    for (const Function* function : stage.functions) {
        names += (names.empty() ? "" : " ") + std::string(function->name);
    }
    return names;
}

const LinkedGlobal* FindGlobal(const LinkedStage& stage, std::string_view name) {
    for (const LinkedGlobal& global : stage.globals) {
        if (global.name == name) {
            return &global;
        }
    }
    return nullptr;
}

const char* const kVertexText = "attribute vec3 a_Position; attribute vec3 a_Normal; "
                                "attribute vec2 a_uv; attribute float a_unused; "
                                "transformed normalized varying vec3 Normal; varying vec2 uv; "
                                "varying float extra; uniform float scale; "
                                "void main() { kl_Position = vec4(a_Position * scale, 1.0); "
                                "Normal = a_Normal; uv = a_uv; }";

} // namespace

TEST(Linker, TwoTexts_AreOneStage) {
    const Linked linked = Link({{"graph", kStage_Ray,
                                 "float shared; uniform float u; rayattribute vec3 w; "
                                 "void Init(); void Shade(); float helper(float x); "
                                 "void Init() { shared = 1.0; } "
                                 "void Shade() { shared = helper(u); w = vec3(shared); } "
                                 "float helper(float x) { return x; } void never() { }"},
                                {"root", kStage_Ray,
                                 "float shared; rayattribute vec3 w; void Init(); void Shade(); "
                                 "void main() { Shade(); } void setup() { Init(); }"}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    const LinkedStage& stage = linked.program->shading;
    EXPECT_EQ(stage.stage, kStage_Ray);
    ASSERT_NE(stage.main, nullptr);
    ASSERT_NE(stage.setup, nullptr);
    EXPECT_EQ(ListFunctions(stage), "Init setup helper Shade main");
    EXPECT_EQ(stage.globals.size(), 3u);
    EXPECT_EQ(linked.program->rayAttributes.size(), 1u);
    const auto& graph = *linked.program->shaders[0];
    const auto& root = *linked.program->shaders[1];
    EXPECT_EQ(stage.GetGlobal(graph.globals[0]), stage.GetGlobal(root.globals[0]));
    EXPECT_EQ(stage.GetDefinition(root.functions[1]), graph.functions[1]);
    EXPECT_NE(graph.functions[1]->body, nullptr);
    EXPECT_EQ(root.functions[1]->body, nullptr);
    EXPECT_EQ(linked.program->vertex, nullptr);
}

TEST(Linker, Uniforms_HaveLocationsWhetherUsedOrNot) {
    const Linked linked =
        Link({{"a", kStage_Frame,
               "uniform float used; uniform vec3 unused; uniformblock B { vec3 a[1]; }; "
               "uniformblock C { int a[1]; }; uniform sampler2D t; "
               "void main() { float f = used + B.a[0].x; }"},
              {"b", kStage_Frame, "mutable uniform vec3 other; uniform float used;"}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    const LinkedProgram& program = *linked.program;
    EXPECT_EQ(program.GetUniformLocation("used"), 0);
    EXPECT_EQ(program.GetUniformLocation("unused"), 1);
    EXPECT_EQ(program.GetUniformLocation("t"), 2);
    EXPECT_EQ(program.GetUniformLocation("other"), 3);
    EXPECT_EQ(program.GetUniformLocation("B"), -1);
    EXPECT_EQ(program.GetUniformLocation("missing"), -1);
    EXPECT_EQ(program.GetUniformBlockLocation("B"), 0);
    EXPECT_EQ(program.GetUniformBlockLocation("C"), 1);
    EXPECT_EQ(program.GetUniformBlockLocation("used"), -1);
    EXPECT_EQ(program.uniforms[1].type.ToString(), "vec3");
    EXPECT_TRUE(program.uniforms[0].isRead);
    EXPECT_FALSE(program.uniforms[1].isRead);
    EXPECT_TRUE(program.blocks[0].isRead);
    EXPECT_EQ(program.blocks[0].type.ToString(), "vec3");
    EXPECT_EQ(FindGlobal(program.shading, "other")->index, 3);
    EXPECT_EQ(FindGlobal(program.shading, "C")->index, 1);
}

TEST(Linker, Vertex_GivesItsVaryingsToTheRayStage) {
    const Linked linked = Link({{"ray", kStage_Ray,
                                 "varying vec2 uv; varying vec3 Normal; varying float unknown; "
                                 "uniform float scale; uniform float own; "
                                 "void main() { accumulate(0, Normal * scale); }"},
                                {"vertex", kStage_Vertex, kVertexText}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    const LinkedProgram& program = *linked.program;
    ASSERT_NE(program.vertex, nullptr);
    ASSERT_EQ(program.varyings.size(), 3u);
    EXPECT_EQ(program.varyings[0].name, "Normal");
    EXPECT_EQ(program.varyings[0].kind, kVarying_TransformedNormalized);
    EXPECT_TRUE(program.varyings[0].isRead);
    EXPECT_EQ(program.varyings[1].scalarOffset, 3);
    EXPECT_FALSE(program.varyings[1].isRead);
    EXPECT_EQ(program.varyingScalarCount, 6);
    EXPECT_EQ(FindGlobal(program.shading, "Normal")->index, 0);
    EXPECT_EQ(FindGlobal(program.shading, "uv")->index, 1);
    EXPECT_EQ(FindGlobal(program.shading, "unknown")->index, -1);
    EXPECT_EQ(FindGlobal(*program.vertex, "uv")->index, 1);
    EXPECT_EQ(program.GetUniformLocation("scale"), 0);
    EXPECT_EQ(program.GetUniformLocation("own"), 1);
    EXPECT_EQ(FindGlobal(*program.vertex, "scale")->index, 0);
    EXPECT_EQ(program.GetAttributeLocation("a_Position"), 0);
    EXPECT_EQ(program.GetAttributeLocation("a_uv"), 2);
    EXPECT_EQ(program.GetAttributeLocation("a_unused"), -1);
    EXPECT_EQ(program.GetAttributeLocation("a_missing"), -1);
}

TEST(Linker, Entries_MayBeAbsent) {
    const Linked linked = Link({{"a", kStage_Frame, "float f() { return 1.0; }"}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    EXPECT_EQ(linked.program->shading.main, nullptr);
    EXPECT_EQ(linked.program->shading.setup, nullptr);
    EXPECT_TRUE(linked.program->shading.functions.empty());
}

TEST(Linker, FunctionsThatNothingRuns_MayBeIncomplete) {
    EXPECT_EQ(GetLinkMessages({{"a", kStage_Ray,
                                "void missing(); void never() { missing(); } void other(int a); "
                                "void main() { }"}}),
              "");
}

TEST(Linker, Initialisers_RunFunctionsToo) {
    const Linked linked =
        Link({{"a", kStage_Ray, "float f(); float x = f(); float y = x; void main() { }"},
              {"b", kStage_Ray, "float f() { return 2.0; }"}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    EXPECT_EQ(ListFunctions(linked.program->shading), "f main");
    EXPECT_NE(FindGlobal(linked.program->shading, "x")->initializer, nullptr);
    EXPECT_EQ(GetLinkMessages({{"a", kStage_Ray, "float f(); float x = f();"}}),
              "program 'p': error: function 'f()' is called in 'a' line 1 and defined nowhere");
}

TEST(Linker, Overloads_AreTakenApart) {
    const Linked linked =
        Link({{"a", kStage_Ray,
               "float f(float x); float f(vec3 x); void main() { f(1.0); f(vec3(1)); }"},
              {"b", kStage_Ray,
               "float f(vec3 x) { return x.x; } float f(float x) { return x; } "
               "float f(int x) { return 1.0; }"}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    EXPECT_EQ(linked.program->shading.functions.size(), 3u);
}

TEST(Linker, Structs_AreTheSameWhenTheirFieldsAre) {
    const char* declaration =
        "struct S { float a; vec3 b[2]; }; struct T { S s; }; T t; float f(T t);";
    EXPECT_EQ(GetLinkMessages(
                  {{"a", kStage_Ray, std::string(declaration) + "void main() { f(t); }"},
                   {"b", kStage_Ray, std::string(declaration) + "float f(T t) { return t.s.a; }"}}),
              "");
    EXPECT_EQ(GetLinkMessages({{"a", kStage_Ray, "struct S { float a; }; S s;"},
                               {"b", kStage_Ray, "struct S { float b; };\nS s;"}}),
              "program 'p': error: 's' is a global of type S in 'a' line 1 and a global of type S "
              "in 'b' line 2");
}

TEST(Linker, Constants_MayHaveTheSameValueTwice) {
    EXPECT_EQ(GetLinkMessages(
                  {{"a", kStage_Ray, "const float k = 2.0; const vec3 v; float p = 1.0;"},
                   {"b", kStage_Ray, "const float k = 2.0; const vec3 v = vec3(1); float p;"}}),
              "");
    EXPECT_EQ(
        GetLinkMessages({{"a", kStage_Ray, "const float k = 2.0;"},
                         {"b", kStage_Ray, "\nconst float k = 3.0;"}}),
        "program 'p': error: 'k' has one initialiser in 'a' line 1 and another in 'b' line 2");
}

TEST(Linker, Mistakes_NameTheProgramTheTextsAndTheTypes) {
    struct {
        std::vector<Text> texts;
        const char* message;
    } const cases[] = {
        {{}, "there is no ray, frame or prefix shader to link"},
        {{{"v", kStage_Vertex, ""}}, "there is no ray, frame or prefix shader to link"},
        {{{"a", kStage_Ray, ""}, {"b", kStage_Frame, ""}},
         "'a' is a ray shader and 'b' a frame shader, which don't go together"},
        {{{"a", kStage_Frame, ""}, {"b", kStage_Vertex, ""}},
         "'a' is a frame shader and 'b' a vertex shader, which don't go together"},
        {{{"a", kStage_Ray, "float f();\nvoid main() {\nf();\n}"}},
         "function 'f()' is called in 'a' line 3 and defined nowhere"},
        {{{"a", kStage_Ray,
           "float f(int a, out vec3 b);void main() { int a; vec3 b; f(a, b); f(a, b); }"}},
         "function 'f(int, out vec3)' is called in 'a' line 1 and defined nowhere"},
        {{{"a", kStage_Ray, "void f() { }"}, {"b", kStage_Ray, "\nvoid f() { }"}},
         "function 'f()' is defined in 'a' line 1 and again in 'b' line 2"},
        {{{"a", kStage_Ray, "void main() { }"}, {"b", kStage_Ray, "void main() { }"}},
         "function 'main()' is defined in 'a' line 1 and again in 'b' line 1"},
        {{{"a", kStage_Ray, "float f(int a);"}, {"b", kStage_Ray, "int f(int a) { return a; }"}},
         "function 'float f(int)' of 'a' line 1 is 'int f(int)' in 'b' line 1"},
        {{{"a", kStage_Ray, "void f(int a);"}, {"b", kStage_Ray, "void f(out int a) { a = 1; }"}},
         "function 'void f(int)' of 'a' line 1 is 'void f(out int)' in 'b' line 1"},
        {{{"a", kStage_Ray, "uniform float u;"}, {"b", kStage_Ray, "uniform vec3 u;"}},
         "'u' is a uniform of type float in 'a' line 1 and a uniform of type vec3 in 'b' line 1"},
        {{{"a", kStage_Ray, "float u;"}, {"b", kStage_Ray, "\nuniform float u;"}},
         "'u' is a global of type float in 'a' line 1 and a uniform of type float in 'b' line 2"},
        {{{"a", kStage_Ray, "uniformblock u { float a[1]; };"},
          {"b", kStage_Ray, "uniformblock u { int a[1]; };"}},
         "'u' is a uniform block of type float in 'a' line 1 and a uniform block of type int in "
         "'b' line 1"},
        {{{"a", kStage_Ray, "uniform float u;"}, {"v", kStage_Vertex, "uniform vec3 u;"}},
         "uniform 'u' is float in 'a' line 1 and vec3 in 'v' line 1"},
        {{{"a", kStage_Ray, "uniformblock u { float a[1]; };"},
          {"v", kStage_Vertex, "uniform float u;"}},
         "uniform 'u' is a block of float in 'a' line 1 and float in 'v' line 1"},
        {{{"a", kStage_Ray, "varying vec3 uv; void main() { }"},
          {"v", kStage_Vertex, "\nvarying vec2 uv;"}},
         "varying 'uv' is vec2 in 'v' line 2 and vec3 in 'a' line 1"},
        {{{"a", kStage_Ray, "varying vec3 n; void main() { vec3 v = n; }"},
          {"v", kStage_Vertex, ""}},
         "varying 'n' of 'a' line 1 is read, and no vertex shader declares it"},
        {{{"a", kStage_Frame, "varying vec3 n; void main() { vec3 v = n; }"}},
         "varying 'n' of 'a' line 1 is read, and no vertex shader declares it"},
    };
    for (const auto& c : cases) {
        std::vector<LinkInput> inputs;
        for (const Text& text : c.texts) {
            std::string messages;
            inputs.push_back({text.name, CompileShader(text.stage, text.text, messages)});
            ASSERT_NE(inputs.back().shader, nullptr) << text.text << "\n" << messages;
        }
        std::string messages;
        EXPECT_EQ(LinkProgram("p", inputs, messages), nullptr) << c.message;
        EXPECT_EQ(messages, "program 'p': error: " + std::string(c.message));
    }
}

TEST(Linker, Cycles_AreRefusedWithTheirFunctions) {
    EXPECT_EQ(GetLinkMessages({{"a", kStage_Ray, "void f() { f(); } void main() { f(); }"}}),
              "program 'p': error: functions call one another in a cycle: 'f()' calls 'f()' ('a' "
              "line 1)");
    EXPECT_EQ(
        GetLinkMessages({{"a", kStage_Ray, "void g(); void f() { g(); } void main() { f(); }"},
                         {"b", kStage_Ray, "void f(); void h() { f(); }\nvoid g() { h(); }"}}),
        "program 'p': error: functions call one another in a cycle: 'f()' calls 'g()' calls "
        "'h()' calls 'f()' ('a' line 1)");
    EXPECT_EQ(GetLinkMessages({{"a", kStage_Ray, "void f() { f(); } void main() { }"}}),
              "program 'p': error: functions call one another in a cycle: 'f()' calls 'f()' ('a' "
              "line 1)");
    EXPECT_EQ(GetLinkMessages({{"a", kStage_Ray, "void main() { main(); }"}}),
              "program 'p': error: functions call one another in a cycle: 'main()' calls 'main()' "
              "('a' line 1)");
    // Two ways to one function are no cycle.
    EXPECT_EQ(
        GetLinkMessages(
            {{"a", kStage_Ray,
              "void h() { } void g() { h(); } void f() { h(); g(); } void main() { f(); g(); }"}}),
        "");
}

TEST(Linker, LongChainsOfCalls_Link) {
    std::string text = "void f0() { }";
    for (int i = 1; i < 20000; ++i) {
        text += "void f" + std::to_string(i) + "() { f" + std::to_string(i - 1) + "(); }\n";
    }
    const Linked linked = Link({{"a", kStage_Ray, text + "void main() { f19999(); }"}});
    ASSERT_NE(linked.program, nullptr) << linked.messages;
    EXPECT_EQ(linked.program->shading.functions.size(), 20001u);
    EXPECT_EQ(linked.program->shading.functions.front()->name, "f0");
    const std::string cycle = GetLinkMessages(
        {{"a", kStage_Ray,
          "void f19999(); " + text.replace(0, 13, "void f0() { f19999(); }") + "void main() { }"}});
    EXPECT_NE(cycle.find("..., which calls"), std::string::npos);
    EXPECT_LT(cycle.size(), 500u);
}

TEST(Linker, Messages_StopAtTheTwentieth) {
    std::string a;
    std::string b;
    for (int i = 0; i < 50; ++i) {
        a += "float g" + std::to_string(i) + ";";
        b += "int g" + std::to_string(i) + ";";
    }
    const std::string messages = GetLinkMessages({{"a", kStage_Ray, a}, {"b", kStage_Ray, b}});
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 19);
}

} // namespace Tolen::OpenKL::Tests
