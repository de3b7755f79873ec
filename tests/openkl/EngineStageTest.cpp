#include "EngineRig.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace Tolen::OpenKL::Testing {
namespace {

std::vector<float> GetValues(const BatchOutput& output) {
    std::vector<float> values;
    for (const AccumulateRecord& record : output.accumulates) {
        values.insert(values.end(), record.value, record.value + record.components);
    }
    return values;
}

using Floats = std::vector<float>;
using Words = std::vector<std::uint32_t>;

// Setup and state.

TEST(EngineStage, Setup_LeavesGlobalsThatEveryMainStartsFrom) {
    EngineRig rig(
        "uniform float u; float a = 2.0; bool b; vec3 c[2]; int n = 5;\n"
        "void setup() { a += u; b = a > 5.0; c[1].y = 7.0; n *= 2; }\n"
        "void main() { accumulate(0, vec4(a, b, c[1].y, n)); a = 100.0; n = 0; b = false; }");
    rig.SetUniform("u", Floats{4.0f});
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(GetValues(rig.Run(2)), (Floats{6, 1, 7, 10, 6, 1, 7, 10}));
    }
    EXPECT_EQ(rig.output.accumulates[1].lane, 1);
}

TEST(EngineStage, WithoutSetup_InitialisersHold) {
    EngineRig rig("const float k = 3.0; float a = k * 2.0; static int s = 4;\n"
                  "const vec2 late;\nvoid Make() { late = vec2(8.0, 9.0); }\n"
                  "void main() { Make(); accumulate(0, vec4(a, s, late)); }");
    EXPECT_EQ(GetValues(rig.Run()), (Floats{6, 4, 8, 9}));
}

TEST(EngineStage, Setup_MaySampleTextures) {
    EngineRig rig("uniform sampler2D t; vec3 color; ivec2 size; float n;\n"
                  "void setup() { color = texture2D(t, vec2(0.5)).rgb; size = textureSize(t); if "
                  "(color.g > 1.0) n = random(); }\n"
                  "void main() { accumulate(0, vec4(color.g, size, n > 0.0)); }");
    const float texel[] = {1, 2, 3};
    TextureLevel level{texel, 1, 1};
    TextureView view;
    view.pLevels = &level;
    view.levelCount = 1;
    view.components = 3;
    rig.SetTextures({view});
    rig.SetUniform("t", Words{1});
    for (InstructionSet instructionSet : kInstructionSets) {
        rig.RunSetup(instructionSet);
        EXPECT_EQ(GetValues(rig.Run()), (Floats{2, 1, 1, 1}));
    }
}

TEST(EngineStage, MainsWithoutAState_ReadZeros) {
    EngineRig rig("float a = 1.0; void main() { accumulate(0, a); }");
    PrimitiveBinding primitive;
    BatchConstants constants;
    BatchInput input;
    input.laneCount = 1;
    input.pConstants = &constants;
    input.pPrimitive = &primitive;
    KernelScratch scratch;
    BatchOutput output;
    rig.GetKernel().Run(input, output, scratch);
    EXPECT_EQ(GetValues(output), Floats{0});
}

// Uniforms and blocks.

TEST(EngineStage, Uniforms_OfEveryTypeAreReadByTheirWords) {
    EngineRig rig(
        "uniform vec3 v; uniform mat2 m; uniform int i; uniform bool b; uniform float a[4];\n"
        "uniform ivec2 j[3]; uniform bool c[2]; uniform primitive p; mutable uniform float q;\n"
        "void main() { int k = kl_RayDepth;\n"
        "accumulate(0, v); accumulate(0, vec4(m[0], m[1])); accumulate(0, vec3(i, b, q));\n"
        "accumulate(0, vec3(a[k], a[k + 3], a[k + 10])); accumulate(0, vec3(j[k], j[2].y));\n"
        "accumulate(0, vec3(c[k], c[1], 3.0)); spawnRay(v, v, 1.0, 0, p); }");
    rig.SetUniform("v", Floats{1, 2, 3});
    rig.SetUniform("m", Floats{4, 5, 6, 7});
    rig.SetUniform("i", Words{static_cast<std::uint32_t>(-8)});
    rig.SetUniform("b", Words{1});
    rig.SetUniform("a", Floats{10, 11, 12, 13});
    rig.SetUniform("j", Words{1, 2, 3, 4, 5, 6});
    rig.SetUniform("c", Words{1, 0});
    rig.SetUniform("p", Words{77});
    rig.SetUniform("q", Floats{0.5f});
    rig.GetLaneRow(kLaneInput_RayDepth)[1] = 1;
    EXPECT_EQ(GetValues(rig.Run(2)),
              (Floats{1,    2,  3,  1,  2,  3,  4,  5, 6, 7, 4, 5, 6, 7, -8, 1, 0.5f, -8, 1,
                      0.5f, 10, 13, 13, 11, 13, 13, 1, 2, 6, 3, 4, 6, 1, 0,  3, 0,    0,  3}));
    EXPECT_EQ(rig.output.rays[1].missPrimitive, 77);
}

TEST(EngineStage, Blocks_AreTightAndZeroOutside) {
    EngineRig rig(
        "uniformblock B { vec3 a[1]; }; uniformblock C { bool b[1]; };\n"
        "uniformblock D { float a[1]; };\n"
        "void main() { int i = kl_RayDepth; accumulate(0, B.a[i]); accumulate(0, B.a[i + 1]);\n"
        "accumulate(0, B.a[i - 3]); accumulate(0, B.a[2147483647]);\n"
        "accumulate(0, vec3(C.b[0], C.b[i + 1], D.a[i])); }");
    const float vectors[] = {1, 2, 3, 4, 5}; // the second is cut off
    const std::uint32_t bools[] = {0, 2};
    rig.SetBlock("B", vectors, sizeof vectors);
    rig.SetBlock("C", bools, sizeof bools);
    EXPECT_EQ(GetValues(rig.Run()), (Floats{1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0}));
    const float more[] = {1, 2, 3, 4, 5, 6};
    rig.SetBlock("B", more, sizeof more);
    EXPECT_EQ(GetValues(rig.Run())[4], 5.0f);
}

// Inputs.

TEST(EngineStage, BuiltInVariables_ComeFromTheirRows) {
    EngineRig rig("void main() { accumulate(0, vec4(kl_PixelCoord, kl_Resolution));\n"
                  "accumulate(0, vec3(kl_SampleIndex, kl_SampleCount, kl_Time));\n"
                  "accumulate(0, kl_RayOrigin); accumulate(0, kl_RayDirection);\n"
                  "accumulate(0, vec4(kl_RayDepth, kl_RayClass, kl_HitDistance, kl_HitFront));\n"
                  "accumulate(0, kl_HitPosition); accumulate(0, kl_HitNormal);\n"
                  "accumulate(0, vec3(kl_HitBarycentric, kl_Missed));\n"
                  "spawnRay(kl_RayOrigin, kl_RayDirection, 1.0, 0, kl_HitPrimitive); }");
    for (int input = 0; input < kLaneInput_Count; ++input) {
        auto value = static_cast<float>(input + 1);
        for (std::uint32_t& word : rig.GetLaneRow(static_cast<LaneInput>(input))) {
            word = ToWord(value);
        }
    }
    for (LaneInput input : {kLaneInput_SampleIndex, kLaneInput_RayDepth, kLaneInput_RayClass,
                            kLaneInput_HitPrimitive}) {
        rig.GetLaneRow(input)[0] = static_cast<std::uint32_t>(input + 1);
    }
    rig.constants.resolution[0] = 640;
    rig.constants.resolution[1] = 480;
    rig.constants.sampleCount = 16;
    rig.constants.time = 2.5f;
    auto of = [](LaneInput input) { return static_cast<float>(input + 1); };
    Floats expected = {of(kLaneInput_PixelCoordX),
                       of(kLaneInput_PixelCoordY),
                       640,
                       480,
                       of(kLaneInput_SampleIndex),
                       16,
                       2.5f};
    for (LaneInput first : {kLaneInput_RayOriginX, kLaneInput_RayDirectionX}) {
        for (int i = 0; i < 3; ++i) {
            expected.push_back(of(static_cast<LaneInput>(first + i)));
        }
    }
    expected.insert(expected.end(), {of(kLaneInput_RayDepth), of(kLaneInput_RayClass),
                                     of(kLaneInput_HitDistance), 1.0f});
    for (LaneInput first : {kLaneInput_HitPositionX, kLaneInput_HitNormalX}) {
        for (int i = 0; i < 3; ++i) {
            expected.push_back(of(static_cast<LaneInput>(first + i)));
        }
    }
    expected.insert(expected.end(),
                    {of(kLaneInput_HitBarycentricX), of(kLaneInput_HitBarycentricY), 1.0f});
    EXPECT_EQ(GetValues(rig.Run()), expected);
    EXPECT_EQ(rig.output.rays[0].missPrimitive, kLaneInput_HitPrimitive + 1);
}

TEST(EngineStage, FrameBuiltIns_AreThere) {
    EngineRig rig("void main() { accumulate(3, vec4(kl_PixelCoord, kl_Resolution)); }",
                  kStage_Frame);
    rig.GetLaneRow(kLaneInput_PixelCoordX)[0] = ToWord(1.5f);
    EXPECT_EQ(GetValues(rig.Run()), (Floats{1.5f, 0, 0, 0}));
    EXPECT_EQ(rig.output.accumulates[0].attachment, 3);
}

TEST(EngineStage, VertexStage_FillsPositionAndVaryings) {
    EngineRig rig("attribute vec3 a_Position; attribute vec2 a_Uv; varying vec2 Uv; varying vec3 "
                  "Position; varying float unused;\n"
                  "void main() { Uv = a_Uv * 2.0; Position = a_Position + 1.0;\n"
                  "kl_Position = kl_PrimitiveTransformMatrix * vec4(a_Position, 1.0); }",
                  kStage_Vertex);
    rig.constants.transform[12] = 100.0f;
    for (std::size_t lane = 0; lane < 20; ++lane) {
        rig.GetInterpolatedRow("a_Position", 0)[lane] = ToWord(static_cast<float>(lane));
        rig.GetInterpolatedRow("a_Uv", 1)[lane] = ToWord(static_cast<float>(lane) * 0.5f);
    }
    const BatchOutput& output = rig.Run(20);
    const KernelLayout& layout = rig.GetLayout();
    std::map<std::string, int> words;
    for (const KernelVariable& varying : layout.varyings) {
        words[varying.name] = varying.firstWord;
    }
    auto at = [](const void* row, int lane) { return static_cast<const float*>(row)[lane]; };
    for (int lane = 0; lane < 20; ++lane) {
        auto x = static_cast<float>(lane);
        EXPECT_EQ(at(output.GetPosition(0), lane), 100.0f + x);
        EXPECT_EQ(at(output.GetPosition(3), lane), 1.0f);
        EXPECT_EQ(at(output.GetVarying(words["Uv"] + 1), lane), x);
        EXPECT_EQ(at(output.GetVarying(words["Position"]), lane), x + 1.0f);
        EXPECT_EQ(at(output.GetVarying(words["unused"]), lane), 0.0f);
    }
}

// Rays.

TEST(EngineStage, SpawnRay_CarriesTheAttributesAsTheyWere) {
    EngineRig rig(
        "rayattribute vec3 weight; rayattribute int count; rayattribute bool inside;\n"
        "void setup() { for (int i = 0; i < 8; ++i) kl_OutputRayCount[i] = 2; }\n"
        "void main() { weight *= 2.0; spawnRay(vec3(1.0), vec3(2.0)); count += 1; inside = "
        "!inside;\n"
        "if (kl_RayDepth == 1) spawnRay(vec3(3.0), vec3(4.0), 5.0, 6, kl_HitPrimitive); }");
    for (std::size_t lane = 0; lane < 2; ++lane) {
        rig.GetRayAttributeRow("weight", 0)[lane] = ToWord(1.0f + static_cast<float>(lane));
        rig.GetRayAttributeRow("count", 0)[lane] = 10;
        rig.GetRayAttributeRow("inside", 0)[lane] = 1;
        rig.GetLaneRow(kLaneInput_RayDepth)[lane] = static_cast<std::uint32_t>(lane);
        rig.GetLaneRow(kLaneInput_HitPrimitive)[lane] = 9;
    }
    const BatchOutput& output = rig.Run(2);
    ASSERT_EQ(output.rays.GetCount(), 3u);
    const KernelLayout& layout = rig.GetLayout();
    auto word = [&](const SpawnedRay& ray, std::size_t variable) {
        return output.rayAttributes[ray.attributes + static_cast<std::size_t>(
                                                         layout.rayAttributes[variable].firstWord)];
    };
    const SpawnedRay& first = output.rays[0];
    EXPECT_EQ(first.lane, 0u);
    EXPECT_EQ(first.origin[1], 1.0f);
    EXPECT_EQ(first.direction[2], 2.0f);
    EXPECT_EQ(first.maxDistance, std::numeric_limits<float>::infinity());
    EXPECT_EQ(first.rayClass, 0);
    EXPECT_EQ(first.missPrimitive, 0);
    EXPECT_EQ(ToFloat(word(first, 0)), 2.0f);
    EXPECT_EQ(word(first, 1), 10u);
    EXPECT_EQ(word(first, 2), 1u);
    const SpawnedRay& last = output.rays[2];
    EXPECT_EQ(last.lane, 1u);
    EXPECT_EQ(last.maxDistance, 5.0f);
    EXPECT_EQ(last.rayClass, 6);
    EXPECT_EQ(last.missPrimitive, 9);
    EXPECT_EQ(ToFloat(word(last, 0)), 4.0f);
    EXPECT_EQ(word(last, 1), 11u);
    EXPECT_EQ(word(last, 2), 0u);
    EXPECT_NE(first.randomSeed, last.randomSeed);
}

TEST(EngineStage, RaysAboveTheCount_AreDroppedAndCounted) {
    std::string text = "void setup() { kl_OutputRayCount[2] = 3; kl_OutputRayCount[3] = 0; "
                       "kl_OutputRayCount[4] = -1; }\n"
                       "void main() { for (int i = 0; i < 5; ++i) spawnRay(vec3(i), vec3(1.0)); }";
    EngineRig rig(text);
    const std::uint32_t expected[] = {1, 1, 3, 0, 0, 1};
    for (std::uint32_t rayClass = 0; rayClass < 6; ++rayClass) {
        rig.GetLaneRow(kLaneInput_RayClass)[0] = rayClass;
        EXPECT_EQ(rig.Run().rays.GetCount(), expected[rayClass]) << rayClass;
        EXPECT_EQ(rig.output.droppedRays, 5 - expected[rayClass]) << rayClass;
    }
    EXPECT_EQ(rig.GetKernel().GetOutputRayCount(rig.state.data(), 2), 3);
    EXPECT_EQ(rig.GetKernel().GetOutputRayCount(rig.state.data(), 7), 1);

    EngineRig frame("void setup() { kl_OutputRayCount = 2; }\n"
                    "void main() { for (int i = 0; i < 5; ++i) spawnRay(vec3(i), vec3(1.0)); }",
                    kStage_Frame);
    EXPECT_EQ(frame.Run(3).rays.GetCount(), 6u);
    EXPECT_EQ(frame.output.droppedRays, 9u);
}

TEST(EngineStage, FrameRayAttributes_StartAsSetupLeftThem) {
    EngineRig rig("rayattribute float weight;\nvoid setup() { weight = 2.0; }\n"
                  "void main() { spawnRay(vec3(0.0), vec3(1.0)); }",
                  kStage_Frame);
    EXPECT_EQ(ToFloat(rig.Run().rayAttributes[0]), 2.0f);
}

TEST(EngineStage, DiscardRay_EndsTheInvocation) {
    EngineRig rig("void main() { accumulate(0, 1.0); if (kl_RayDepth > 1) discardRay();\n"
                  "for (int i = 0; i < 3; ++i) { if (kl_RayDepth == i) { discardRay(); } }\n"
                  "accumulate(0, 2.0); }",
                  kStage_Prefix);
    for (std::uint32_t lane = 0; lane < 4; ++lane) {
        rig.GetLaneRow(kLaneInput_RayDepth)[lane] = lane - 1;
    }
    const BatchOutput& output = rig.Run(4);
    EXPECT_TRUE(output.hasDiscarded);
    EXPECT_EQ(output.discarded[0], 0u);
    EXPECT_EQ(output.discarded[1], 1u);
    EXPECT_EQ(output.discarded[2], 1u);
    EXPECT_EQ(output.discarded[3], 1u);
    EXPECT_EQ(output.accumulates.GetCount(), 5u);
    rig.GetLaneRow(kLaneInput_RayDepth)[0] = 0xffffffffu;
    EXPECT_FALSE(rig.Run(1).hasDiscarded);
    EXPECT_EQ(rig.output.discarded[1], 0u);
}

TEST(EngineStage, WhenAllLanesDiscard_EndlessLoopsEnd) {
    EngineRig rig("void main() { while (true) { if (kl_RayDepth >= 0) discardRay(); } }",
                  kStage_Prefix);
    EXPECT_TRUE(rig.Run(5).hasDiscarded);
    EXPECT_EQ(rig.output.stoppedInvocations, 0u);
}

/// Answers from the rays themselves.
class FakeQueries : public IRayQueries {
public:
    void FindOcclusion(const RayQuery& query, std::uint32_t* pOccluded) override {
        for (int lane = 0; lane < query.laneCount; ++lane) {
            if (query.pMask[lane] != 0) {
                ++asked;
                pOccluded[lane] = query.pOrigin[0][lane] > query.pMaxDistance[lane] ? 1 : 0;
            }
        }
    }
    void FindDistance(const RayQuery& query, float* pDistance) override {
        for (int lane = 0; lane < query.laneCount; ++lane) {
            if (query.pMask[lane] != 0) {
                ++asked;
                pDistance[lane] = query.pDirection[2][lane] * 10.0f;
            }
        }
    }
    int asked = 0;
};

TEST(EngineStage, Queries_AskForActiveLanesAlone) {
    EngineRig rig("void main() { float x = kl_HitDistance; if (x > 0.0) {\n"
                  "accumulate(0, vec3(occluded(vec3(x), vec3(1.0), 2.0), traceDistance(vec3(0.0), "
                  "vec3(x), 9.0), 0.0)); } }");
    for (std::size_t lane = 0; lane < 4; ++lane) {
        rig.GetLaneRow(kLaneInput_HitDistance)[lane] = ToWord(static_cast<float>(lane));
    }
    FakeQueries queries;
    rig.pRayQueries = &queries;
    EXPECT_EQ(GetValues(rig.Run(4)), (Floats{0, 10, 0, 0, 20, 0, 1, 30, 0}));
    EXPECT_EQ(queries.asked, 6);
    rig.pRayQueries = nullptr;
    EXPECT_EQ(GetValues(rig.Run(2)), (Floats{0, -1, 0}));
}

// Limits.

TEST(EngineLimits, LoopSteps_StopTheInvocationsThatReachThem) {
    KernelOptions options;
    options.loopSteps = 100;
    EngineRig rig("void main()\n{\nint n = 0;\nfor (int i = 0; i < kl_RayDepth; ++i)\n{\n++n;\n}\n"
                  "while (kl_RayClass == 1)\n{\n++n;\n}\naccumulate(0, float(n));\n}\n",
                  kStage_Ray, options);
    for (InstructionSet instructionSet : kInstructionSets) {
        for (std::uint32_t lane = 0; lane < 8; ++lane) {
            rig.GetLaneRow(kLaneInput_RayDepth)[lane] = 97 + lane;
            rig.GetLaneRow(kLaneInput_RayClass)[lane] = 0;
        }
        rig.Run(8, 0, instructionSet);
        EXPECT_EQ(GetValues(rig.output), (Floats{97, 98, 99, 100}));
        EXPECT_EQ(rig.output.stoppedInvocations, 4u);
        EXPECT_EQ(rig.output.stoppedLine, 4);
        rig.GetLaneRow(kLaneInput_RayClass)[2] = 1;
        rig.Run(4, 0, instructionSet);
        EXPECT_EQ(GetValues(rig.output), (Floats{97, 98, 100}));
        EXPECT_EQ(rig.output.stoppedInvocations, 1u);
        EXPECT_EQ(rig.output.stoppedLine, 8);
    }
}

TEST(EngineLimits, ALimitForAllLanesTogether_IsNone) {
    KernelOptions options;
    options.loopSteps = 100;
    // Each lane does 60 steps, but in loops that other lanes are not in.
    EngineRig rig("void main() { int n = 0; for (int c = 0; c < 8; ++c) { if (kl_RayClass == c) {\n"
                  "for (int i = 0; i < 50; ++i) ++n; } } accumulate(0, float(n)); }",
                  kStage_Ray, options);
    for (std::uint32_t lane = 0; lane < 8; ++lane) {
        rig.GetLaneRow(kLaneInput_RayClass)[lane] = lane;
    }
    EXPECT_EQ(GetValues(rig.Run(8)), Floats(8, 50.0f));
    EXPECT_EQ(rig.output.stoppedInvocations, 0u);
}

TEST(EngineLimits, EndlessLoops_EndInMainAndInSetup) {
    KernelOptions options;
    options.loopSteps = 1000;
    EngineRig rig("int n;\nvoid setup()\n{\nwhile (true) { ++n; }\n}\n"
                  "void main() { accumulate(0, 1.0); do { n++; } while (true); }\n",
                  kStage_Ray, options);
    rig.RunSetup();
    EXPECT_EQ(rig.output.stoppedInvocations, 1u);
    EXPECT_EQ(rig.output.stoppedLine, 4);
    EXPECT_EQ(GetValues(rig.Run(3)), (Floats{1, 1, 1}));
    EXPECT_EQ(rig.output.stoppedInvocations, 3u);
}

/// A chain of functions, each of which calls the one before twice.
std::string MakeTree(int levels) {
    std::string text = "int f0(int x) { return x * 3 + kl_RayDepth; }\n";
    for (int i = 1; i <= levels; ++i) {
        std::string below = "f" + std::to_string(i - 1);
        text += "int f" + std::to_string(i) + "(int x) { return " + below + "(x + 1) - " + below +
                "(x * 2); }\n";
    }
    return text + "void main() { accumulate(0, float(f" + std::to_string(levels) + "(1))); }\n";
}

TEST(EngineLimits, CodeThatGrowsWithoutEnd_IsRefusedWithTheLimit) {
    EngineRig small(MakeTree(8));
    EXPECT_EQ(small.Run().accumulates.GetCount(), 1u);
    std::shared_ptr<const LinkedProgram> program = LinkText(MakeTree(40), kStage_Ray);
    ASSERT_NE(program, nullptr);
    std::string error;
    EXPECT_EQ(Kernel::Compile(*program, KernelStage::Main, {}, &error), nullptr);
    EXPECT_EQ(error, "'main' has more than the limit of 1048576 operations once its calls are "
                     "inlined, which it reaches in 'f1(int)'");
}

TEST(EngineLimits, VariablesWithoutEnd_AreRefusedWithTheLimit) {
    std::string text = "void main() { int k = kl_RayDepth; float s = 0.0;\n";
    for (int i = 0; i < 17; ++i) {
        std::string name = "a" + std::to_string(i);
        text += "float " + name + "[16000]; " + name + "[k] = kl_HitDistance; s += " + name +
                "[k + 1];\n";
    }
    std::shared_ptr<const LinkedProgram> program =
        LinkText(text + "accumulate(0, s); }", kStage_Ray);
    std::string error;
    EXPECT_EQ(Kernel::Compile(*program, KernelStage::Main, {}, &error), nullptr);
    EXPECT_NE(error.find("words for its variables, more than the limit of 262144"),
              std::string::npos)
        << error;
}

TEST(EngineLimits, DeepCode_CompilesAndRuns) {
    // Each function nests some way and calls the next at the bottom.
    std::string text = "float f0(float x) { return x + 1.0; }\n";
    for (int i = 1; i <= 40; ++i) {
        std::string body = "f" + std::to_string(i - 1) + "(x)";
        for (int k = 0; k < 40; ++k) {
            body = "(kl_RayDepth == 0 ? " + body + " : f0(x))";
        }
        text += "float f" + std::to_string(i) + "(float x) { return " + body + "; }\n";
    }
    EngineRig rig(text + "void main() { accumulate(0, f40(1.0)); }\n");
    EXPECT_EQ(GetValues(rig.Run()), Floats{2});
}

TEST(EngineLimits, LongChains_Work) {
    std::string sum = "1.0";
    std::string choice = "if (kl_RayDepth == -1) n = -1;\n";
    for (int i = 0; i < 20000; ++i) {
        sum += " + kl_HitDistance";
    }
    for (int i = 0; i < 2000; ++i) {
        choice += "else if (kl_RayDepth == " + std::to_string(i) + ") n = " + std::to_string(i) +
                  " + 1;\n";
    }
    EngineRig rig("void main() { int n = 0;\n" + choice + "accumulate(0, vec3(" + sum +
                  ", n, 0.0)); }");
    rig.GetLaneRow(kLaneInput_RayDepth)[0] = 1500;
    rig.GetLaneRow(kLaneInput_RayDepth)[1] = 0xffffffffu;
    EXPECT_EQ(GetValues(rig.Run(2)), (Floats{1, 1501, 0, 1, -1, 0}));
}

// Random numbers.

/// random() and random2() for samples 0 to 255 of one pixel.
std::vector<std::vector<float>> DrawSamples(std::uint32_t pixel) {
    EngineRig rig(
        "void main() { accumulate(0, random()); accumulate(0, vec3(random2(), random())); }");
    for (std::uint32_t lane = 0; lane < kMaxLanes; ++lane) {
        rig.GetLaneRow(kLaneInput_SampleIndex)[lane] = lane;
        rig.GetLaneRow(kLaneInput_RandomSeed)[lane] = HashSeed(pixel);
    }
    std::vector<std::vector<float>> samples(kMaxLanes);
    for (const AccumulateRecord& record : rig.Run(kMaxLanes).accumulates) {
        samples[record.lane].insert(samples[record.lane].end(), record.value,
                                    record.value + record.components);
    }
    return samples;
}

TEST(EngineRandomNumbers, SamplesOfAPixel_AreStratified) {
    for (std::uint32_t pixel = 0; pixel < 20; ++pixel) {
        std::vector<std::vector<float>> samples = DrawSamples(pixel);
        for (std::size_t dimension = 0; dimension < 4; ++dimension) {
            std::vector<int> strata(kMaxLanes);
            for (const std::vector<float>& sample : samples) {
                ASSERT_GE(sample[dimension], 0.0f);
                ASSERT_LT(sample[dimension], 1.0f);
                ++strata[static_cast<std::size_t>(sample[dimension] * kMaxLanes)];
            }
            EXPECT_EQ(std::count(strata.begin(), strata.end(), 1), kMaxLanes) << dimension;
        }
        // The pair has one point in each cell of every grid of 256 cells.
        for (int columns = 1; columns <= kMaxLanes; columns *= 2) {
            std::vector<int> cells(kMaxLanes);
            int rows = kMaxLanes / columns;
            for (const std::vector<float>& sample : samples) {
                int x = static_cast<int>(sample[1] * static_cast<float>(columns));
                int y = static_cast<int>(sample[2] * static_cast<float>(rows));
                ++cells[static_cast<std::size_t>(x * rows + y)];
            }
            EXPECT_EQ(std::count(cells.begin(), cells.end(), 1), kMaxLanes) << columns;
        }
    }
}

TEST(EngineRandomNumbers, PixelsAndCalls_AreIndependent) {
    double sums[3] = {};
    const int pixels = 60;
    for (std::uint32_t pixel = 0; pixel < pixels; ++pixel) {
        std::vector<std::vector<float>> samples = DrawSamples(pixel);
        std::vector<std::vector<float>> others = DrawSamples(pixel + 1000);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            sums[0] += (samples[i][0] - 0.5) * (samples[i][3] - 0.5);
            sums[1] += (samples[i][0] - 0.5) * (others[i][0] - 0.5);
            sums[2] += (samples[i][1] - 0.5) * (samples[i][2] - 0.5);
        }
    }
    for (double sum : sums) {
        EXPECT_LT(std::fabs(sum / (pixels * kMaxLanes)), 0.003);
    }
}

TEST(EngineRandomNumbers, DivergingLanes_CountTheirOwnCalls) {
    EngineRig rig("void main() { if (kl_RayDepth == 1) random(); accumulate(0, random()); }");
    EngineRig straight(
        "void main() { float a = random(); float b = random(); accumulate(0, vec3(a, b, 0.0)); }");
    rig.GetLaneRow(kLaneInput_RayDepth)[1] = 1;
    std::vector<float> values = GetValues(rig.Run(2));
    std::vector<float> expected = GetValues(straight.Run());
    EXPECT_EQ(values[0], expected[0]);
    EXPECT_EQ(values[1], expected[1]);
}

// Textures.

TextureView MakeTexture(const std::vector<TextureLevel>& levels, int components, TextureWrap wrap,
                        TextureFilter filter) {
    TextureView view;
    view.pLevels = levels.data();
    view.levelCount = static_cast<std::int32_t>(levels.size());
    view.components = components;
    view.wrap = wrap;
    view.minification = filter;
    view.magnification = filter;
    return view;
}

TEST(EngineTextures, WrapModesAndFilters_ReadTheRightTexels) {
    const float texels[] = {1, 2, 3, 4}; // one row
    std::vector<TextureLevel> levels = {{texels, 4, 1}};
    struct Case {
        TextureWrap wrap;
        TextureFilter filter;
        float u;
        float expected;
    };
    const Case cases[] = {
        {TextureWrap::Repeat, TextureFilter::Nearest, 0.3f, 2},
        {TextureWrap::Repeat, TextureFilter::Nearest, 1.3f, 2},
        {TextureWrap::Repeat, TextureFilter::Nearest, -0.1f, 4},
        {TextureWrap::Clamp, TextureFilter::Nearest, 7.0f, 4},
        {TextureWrap::Clamp, TextureFilter::Nearest, -7.0f, 1},
        {TextureWrap::Mirror, TextureFilter::Nearest, 1.1f, 4},
        {TextureWrap::Mirror, TextureFilter::Nearest, -0.3f, 2},
        {TextureWrap::Mirror, TextureFilter::Nearest, 2.3f, 2},
        {TextureWrap::Repeat, TextureFilter::Linear, 0.25f, 1.5f},
        {TextureWrap::Repeat, TextureFilter::Linear, 0.0f, 2.5f},
        {TextureWrap::Clamp, TextureFilter::Linear, 0.0f, 1},
        {TextureWrap::Mirror, TextureFilter::Linear, 1.0f, 4},
        {TextureWrap::Repeat, TextureFilter::Linear, std::numeric_limits<float>::quiet_NaN(), 2.5f},
        {TextureWrap::Clamp, TextureFilter::Nearest, 1e30f, 4},
    };
    for (const Case& testCase : cases) {
        EngineRig rig("uniform sampler2D t; void main() { accumulate(0, texture2D(t, "
                      "vec2(kl_HitDistance, 0.5))); }");
        rig.SetTextures({MakeTexture(levels, 1, testCase.wrap, testCase.filter)});
        rig.SetUniform("t", Words{1});
        rig.GetLaneRow(kLaneInput_HitDistance)[0] = ToWord(testCase.u);
        EXPECT_EQ(GetValues(rig.Run()), (Floats{testCase.expected, 0, 0, 1})) << testCase.u;
    }
}

TEST(EngineTextures, ComponentsAndSizes_AreThoseOfTheImage) {
    const float texels[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    std::vector<TextureLevel> three = {{texels, 2, 2}};
    std::vector<TextureLevel> four = {{texels, 1, 3}};
    EngineRig rig(
        "uniform sampler2D t[3];\nvec4 get(sampler2D s, vec2 p) { return texture2D(s, p); }\n"
        "void main() { accumulate(0, get(t[0], vec2(0.75, 0.75))); accumulate(0, get(t[1], "
        "vec2(0.5, 0.5)));\n"
        "accumulate(0, get(t[2], vec2(0.5))); accumulate(0, get(t[kl_RayDepth + 1], vec2(0.5, "
        "0.9)));\n"
        "accumulate(0, vec4(textureSize(t[0]), textureSize(t[1], 1)));\n"
        "accumulate(0, vec3(textureSize(t[2], 0), 0)); }");
    rig.SetTextures({MakeTexture(three, 3, TextureWrap::Clamp, TextureFilter::Nearest),
                     MakeTexture(four, 4, TextureWrap::Clamp, TextureFilter::Nearest)});
    rig.SetUniform("t", Words{1, 2, 0});
    EXPECT_EQ(GetValues(rig.Run()),
              (Floats{10, 11, 12, 1, 5, 6, 7, 8, 0, 0, 0, 1, 9, 10, 11, 12, 2, 2, 1, 1, 0, 0, 0}));
}

TEST(EngineTextures, FootprintAndBias_ChooseAmongLevels) {
    const float fine[] = {0, 0, 0, 0};
    const float coarse[] = {8};
    std::vector<TextureLevel> levels = {{fine, 2, 2}, {coarse, 1, 1}};
    EngineRig rig("uniform sampler2D t; uniform float bias; void main() { accumulate(0, "
                  "texture2D(t, vec2(0.5), bias).x); }");
    rig.SetTextures({MakeTexture(levels, 1, TextureWrap::Repeat, TextureFilter::Linear)});
    rig.SetUniform("t", Words{1});
    const float footprints[] = {0.0f, 0.25f, 0.5f, 0.75f, 1.0f, 50.0f};
    for (std::size_t i = 0; i < 6; ++i) {
        rig.GetLaneRow(kLaneInput_TextureFootprint)[i] = ToWord(footprints[i]);
    }
    rig.SetUniform("bias", Floats{0});
    EXPECT_EQ(GetValues(rig.Run(6)), (Floats{0, 0, 0, 4, 8, 8}));
    rig.SetUniform("bias", Floats{0.5f});
    EXPECT_EQ(GetValues(rig.Run(3)), (Floats{4, 0, 4}));
}

} // namespace
} // namespace Tolen::OpenKL::Testing
