#include "EngineRig.h"

#include "engine/EntryCompiler.h"
#include "engine/IrPrinter.h"
#include "engine/ProgramLayout.h"

#include <algorithm>

namespace Tolen::OpenKL::Testing {
namespace {

/// The linear code of a ray text's main.
std::string PrintMain(const std::string& text) {
    std::shared_ptr<const LinkedProgram> program = LinkText(text, kStage_Ray);
    std::vector<int> globalWords;
    KernelLayout layout = MakeLayout(*program, program->shading, globalWords);
    LinearUnit linear;
    EntryCompiler compiler(*program, program->shading, layout, globalWords, true);
    EXPECT_EQ(compiler.Compile(Entry::Main, linear), "");
    return Print(linear);
}

int Count(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(EngineCode, AnExpression_IsOneOperationForEachStep) {
    EXPECT_EQ(PrintMain("void main() { accumulate(0, kl_HitDistance * 2.0 + kl_RayOrigin.y); }"),
              "    LoadLane r1 = [5, 0]\n"
              "    LoadLane r2 = [12, 0]\n"
              "    FMulAdd r3 = r2 s0 r1\n"
              "    Call service 5 s1 r3\n"
              "L0:\n"
              "    End [0, 0]\n"
              " s0 #40000000\n"
              " s1 #0\n");
}

TEST(EngineCode, WhatIsTheSame_IsComputedOnce) {
    std::string code =
        PrintMain("float f(float x) { return sin(x) * 2.0; }\n"
                  "void main() { float a = kl_HitDistance; vec2 v = vec2(f(a), 1.0); float b = a;\n"
                  "accumulate(0, vec3(f(b), v.x, sin(a))); accumulate(1, f(a - 0.0)); }");
    EXPECT_EQ(Count(code, "FSin"), 1) << code;
    EXPECT_EQ(Count(code, "FMul "), 1) << code;
    EXPECT_EQ(Count(code, "Move"), 0) << code;
}

TEST(EngineCode, ConstantsAreComputed_AndDeadCodeIsGone) {
    std::string code = PrintMain(
        "const float k = 3.0; float unused; int g(int n) { return n > 2 ? n * 2 : 0; }\n"
        "void main() { float dead = sin(kl_HitDistance); if (g(2) == 1) accumulate(5, dead);\n"
        "unused = dead * 2.0; int i = g(4); accumulate(0, k * float(i) + sqrt(16.0)); }");
    EXPECT_EQ(code, "    Call service 5 s0 s1\nL0:\n    End [0, 0]\n s0 #0\n s1 #41e00000\n");
}

TEST(EngineCode, ASmallBranch_IsASelection) {
    std::string code = PrintMain("void main() { float a = kl_HitDistance; if (a < 0.0) a = -a;\n"
                                 "else a += 1.0; accumulate(0, a); }");
    EXPECT_EQ(Count(code, "Select"), 1) << code;
    EXPECT_EQ(Count(code, "JumpIfNone"), 0) << code;
    EXPECT_EQ(Count(code, "MaskedMove"), 0) << code;
}

TEST(EngineCode, EarlyReturns_BecomeSelections) {
    std::string code = PrintMain(
        "float f(float x) { if (x < 0.0) return 0.0; if (x > 1.0) return 1.0; return x; }\n"
        "void main() { accumulate(0, f(kl_HitDistance)); }");
    EXPECT_EQ(Count(code, "Select"), 2) << code;
    EXPECT_EQ(Count(code, "Jump"), 0) << code;
}

TEST(EngineCode, WhatALoopDoesNotChange_StandsAheadOfIt) {
    std::string code = PrintMain("uniform int n; uniform float u;\n"
                                 "void main() { float s = 0.0; for (int i = 0; i < n; ++i)\n"
                                 "{ s += sin(kl_HitDistance) * sqrt(u) * s; } accumulate(0, s); }");
    std::size_t loop = code.find("L1:");
    ASSERT_NE(loop, std::string::npos);
    for (const char* work : {"FSin", "FSqrt", "LoadTable", "LoadLane"}) {
        EXPECT_LT(code.find(work), loop) << work << "\n" << code;
    }
}

TEST(EngineCode, ALoopCounter_IsAScalarAlsoWhenLanesLeaveEarly) {
    for (const char* loop :
         {"for (int i = 0; i < 9; ++i) { if (kl_HitDistance < float(i)) break; s += float(i); }",
          "int i = 0; while (i < 9) { ++i; if (kl_HitDistance < float(i)) break; s += float(i); }",
          "for (int i = 0; i < 9; ++i) { if (kl_HitDistance < float(i)) continue; s += float(i); "
          "}"}) {
        std::string code =
            PrintMain(std::string("void main() { float s = 0.0; ") + loop + " accumulate(0, s); }");
        std::size_t sum = code.find("IAdd s");
        EXPECT_NE(sum, std::string::npos) << code;
        EXPECT_EQ(code.find("IAdd r"), std::string::npos) << code;
        EXPECT_NE(code.find("IToF s"), std::string::npos) << code;
    }
}

TEST(EngineCode, ACounterThatLanesLookAtAfterwards_Varies) {
    std::string code = PrintMain(
        "void main() { int i = 0; while (i < 9) { ++i; if (kl_HitDistance < float(i)) break; }\n"
        "accumulate(0, float(i)); }");
    EXPECT_NE(code.find("IAdd r"), std::string::npos) << code;
}

TEST(EngineCode, UniformBranches_JumpWithoutMasks) {
    std::string code =
        PrintMain("uniform bool u; void main() { if (u) { accumulate(0, kl_HitDistance); }\n"
                  "else { accumulate(1, kl_HitDistance); } }");
    EXPECT_EQ(Count(code, "JumpIfFalse"), 1) << code;
    EXPECT_EQ(Count(code, "IAnd"), 0) << code;
}

TEST(EngineCode, ManyVariablesThatChaseEachOther_CompileAndRun) {
    // Each round of the loop makes one more of them vary.
    const int count = 300;
    std::string text = "void main() {\n";
    for (int i = 0; i < count; ++i) {
        text += "float x" + std::to_string(i) + " = 0.0;\n";
    }
    text += "for (int n = 0; n < 400; ++n) {\n";
    for (int i = count - 1; i > 0; --i) {
        text += "x" + std::to_string(i) + " = x" + std::to_string(i - 1) + ";\n";
    }
    text += "x0 = kl_HitDistance;\n}\naccumulate(0, x" + std::to_string(count - 1) + "); }";
    EngineRig rig(text);
    rig.GetLaneRow(kLaneInput_HitDistance)[1] = ToWord(5.0f);
    const BatchOutput& output = rig.Run(2);
    EXPECT_EQ(output.accumulates[0].value[0], 0.0f);
    EXPECT_EQ(output.accumulates[1].value[0], 5.0f);
}

} // namespace
} // namespace Tolen::OpenKL::Testing
