#include "EngineRig.h"
#include "RandomProgram.h"

#include <cmath>
#include <random>

namespace Tolen::OpenKL::Testing {
namespace {

constexpr int kProgramCount = 48;

std::vector<RandomProgramInput> MakeInputs(std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<RandomProgramInput> inputs;
    for (int i = 0; i < kMaxLanes; ++i) {
        auto depth = static_cast<std::int32_t>(random() % 9u) - 2;
        inputs.push_back({static_cast<float>(random() % 64u) * 0.25f - 4.0f, depth});
    }
    return inputs;
}

void SetInputs(EngineRig& rig, const std::vector<RandomProgramInput>& inputs) {
    for (std::size_t lane = 0; lane < inputs.size(); ++lane) {
        rig.GetLaneRow(kLaneInput_HitDistance)[lane] = ToWord(inputs[lane].distance);
        rig.GetLaneRow(kLaneInput_RayDepth)[lane] = static_cast<std::uint32_t>(inputs[lane].depth);
    }
}

std::vector<std::vector<float>> SplitByLane(const BatchOutput& output) {
    std::vector<std::vector<float>> lanes(kMaxLanes);
    for (const AccumulateRecord& record : output.accumulates) {
        lanes[record.lane].push_back(record.value[0]);
    }
    return lanes;
}

bool AreSame(const std::vector<float>& a, const std::vector<float>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](float x, float y) {
        return ToWord(x) == ToWord(y) || (std::isnan(x) && std::isnan(y));
    });
}

TEST(EngineRandom, RandomPrograms_DoWhatTheirTreesDo) {
    for (std::uint32_t seed = 0; seed < kProgramCount; ++seed) {
        RandomProgram program(seed);
        std::vector<RandomProgramInput> inputs = MakeInputs(seed);
        std::vector<std::vector<float>> expected;
        expected.reserve(inputs.size());
        for (const RandomProgramInput& input : inputs) {
            expected.push_back(program.Run(input));
        }
        for (bool isOptimized : {false, true}) {
            KernelOptions options;
            options.isOptimized = isOptimized;
            EngineRig rig(program.GetText(), kStage_Ray, options);
            SetInputs(rig, inputs);
            std::vector<std::vector<float>> lanes = SplitByLane(rig.Run(kMaxLanes));
            for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
                ASSERT_TRUE(AreSame(lanes[lane], expected[lane]))
                    << "seed " << seed << ", lane " << lane << ", optimized " << isOptimized
                    << ", got " << ::testing::PrintToString(lanes[lane]) << "\nexpected "
                    << ::testing::PrintToString(expected[lane]) << "\n"
                    << program.GetText();
            }
        }
    }
}

TEST(EngineRandom, InstructionSetsAndBatchSizes_GiveTheSameBits) {
    for (std::uint32_t seed = 1000; seed < 1000 + kProgramCount / 4; ++seed) {
        EngineRig rig(RandomProgram(seed).GetText());
        SetInputs(rig, MakeInputs(seed));
        std::vector<std::uint32_t> expected =
            ToBits(rig.Run(kMaxLanes, 0, InstructionSet::Baseline));
        std::vector<std::vector<float>> lanes = SplitByLane(rig.output);
        for (InstructionSet instructionSet : {InstructionSet::Avx2, InstructionSet::Avx512}) {
            ASSERT_EQ(ToBits(rig.Run(kMaxLanes, 0, instructionSet)), expected)
                << GetName(instructionSet) << ", seed " << seed;
        }
        for (int lane = 0; lane < kMaxLanes; lane += 7) {
            std::vector<std::vector<float>> alone = SplitByLane(rig.Run(1, lane));
            ASSERT_TRUE(AreSame(alone[0], lanes[static_cast<std::size_t>(lane)]))
                << "seed " << seed << ", lane " << lane;
        }
    }
}

} // namespace
} // namespace Tolen::OpenKL::Testing
