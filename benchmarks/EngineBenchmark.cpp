// How long shading takes: nanoseconds for each invocation of two kernels on every instruction set,
// for full and for nearly empty batches, and the latency of compiling them.

#include "engine/Kernel.h"

#include "compiler/LinkedProgram.h"

#include <benchmark/benchmark.h>

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace Tolen::OpenKL;

namespace {

/// Gradient noise: hashing, dot products and blends without any branch.
const char* const kNoise = R"(
vec3 Gradient(ivec3 p)
{
    int h = p.x * 73856093 ^ p.y * 19349663 ^ p.z * 83492791;
    h = (h ^ (h >> 13)) * 1274126177;
    return vec3(float(h & 1023), float((h >> 10) & 1023), float((h >> 20) & 1023)) / 512.0 - 1.0;
}

float Noise(vec3 x)
{
    vec3 cell = floor(x);
    ivec3 i = ivec3(cell);
    vec3 d = x - cell;
    vec3 u = d * d * d * (d * (d * 6.0 - 15.0) + 10.0);
    float a = dot(Gradient(i), d);
    float b = dot(Gradient(i + ivec3(1, 0, 0)), d - vec3(1.0, 0.0, 0.0));
    float c = dot(Gradient(i + ivec3(0, 1, 0)), d - vec3(0.0, 1.0, 0.0));
    float e = dot(Gradient(i + ivec3(1, 1, 0)), d - vec3(1.0, 1.0, 0.0));
    float f = dot(Gradient(i + ivec3(0, 0, 1)), d - vec3(0.0, 0.0, 1.0));
    float g = dot(Gradient(i + ivec3(1, 0, 1)), d - vec3(1.0, 0.0, 1.0));
    float h = dot(Gradient(i + ivec3(0, 1, 1)), d - vec3(0.0, 1.0, 1.0));
    float k = dot(Gradient(i + ivec3(1, 1, 1)), d - vec3(1.0));
    return mix(mix(mix(a, b, u.x), mix(c, e, u.x), u.y), mix(mix(f, g, u.x), mix(h, k, u.x), u.y),
               u.z);
}

void main()
{
    accumulate(0, vec3(Noise(kl_HitPosition * 3.0)));
}
)";

/// A loop over sixteen lights in blocks, which some lanes skip.
const char* const kLights = R"(
uniform int count;
uniformblock Positions { vec3 a[1]; };
uniformblock Colors { vec3 a[1]; };

void main()
{
    vec3 sum = vec3(0.0);
    for (int i = 0; i < count; ++i) {
        vec3 toLight = Positions.a[i] - kl_HitPosition;
        float cosine = dot(kl_HitNormal, toLight);
        if (cosine <= 0.0)
            continue;
        float squared = dot(toLight, toLight);
        sum += Colors.a[i] * (cosine / (squared * sqrt(squared) + 0.01));
    }
    accumulate(0, sum);
}
)";

constexpr int kLightCount = 16;

std::shared_ptr<const LinkedProgram> Link(const char* text) {
    std::string messages;
    std::vector<LinkInput> inputs = {{"text", CompileShader(kStage_Ray, text, messages)}};
    std::shared_ptr<const LinkedProgram> program;
    if (inputs[0].shader != nullptr) {
        program = LinkProgram("benchmark", inputs, messages);
    }
    if (program == nullptr) {
        std::fprintf(stderr, "%s\n", messages.c_str());
        std::exit(1);
    }
    return program;
}

/// Inputs that differ from lane to lane, and the lights.
class Scene {
public:
    explicit Scene(const KernelLayout& layout)
        : _rows(kLaneInput_Count, std::vector<float>(kMaxLanes)), _positions(3 * kLightCount),
          _colors(3 * kLightCount, 1.0f), _state(static_cast<std::size_t>(layout.stateWords)) {
        for (std::size_t lane = 0; lane < kMaxLanes; ++lane) {
            for (std::size_t i = 0; i < 3; ++i) {
                auto spread = static_cast<float>(lane * (7 + i) % 13);
                _rows[kLaneInput_HitPositionX + i][lane] = spread + 0.37f * static_cast<float>(i);
                _rows[kLaneInput_HitNormalX + i][lane] =
                    static_cast<float>(lane * (i + 1) % 11) - 5.0f;
            }
        }
        for (std::size_t i = 0; i < _positions.size(); ++i) {
            _positions[i] = static_cast<float>(i * 37 % 29) - 10.0f;
        }
        _blocks[0] = {_positions.data(), _positions.size() * sizeof(float)};
        _blocks[1] = {_colors.data(), _colors.size() * sizeof(float)};
        primitive.pUniforms = &_count;
        primitive.pBlocks = _blocks;
        input.pConstants = &_constants;
        input.pPrimitive = &primitive;
        for (std::size_t i = 0; i < _rows.size(); ++i) {
            input.pLanes[i] = _rows[i].data();
        }
    }

    void RunSetup(const Kernel& kernel, BatchOutput& output, KernelScratch& scratch) {
        kernel.RunSetup(input, _state.data(), output, scratch);
        primitive.pState = _state.data();
    }

    BatchInput input;
    PrimitiveBinding primitive;

private:
    std::vector<std::vector<float>> _rows;
    std::vector<float> _positions;
    std::vector<float> _colors;
    std::vector<std::uint32_t> _state;
    BlockView _blocks[2];
    BatchConstants _constants;
    std::int32_t _count = kLightCount;
};

void Shade(benchmark::State& state, const char* text) {
    auto instructionSet = static_cast<InstructionSet>(state.range(0));
    if (!IsSupported(instructionSet)) {
        state.SkipWithError("not on this machine");
        return;
    }
    std::unique_ptr<const Kernel> kernel =
        Kernel::Compile(*Link(text), KernelStage::Main, {}, nullptr);
    Scene scene(kernel->GetLayout());
    scene.input.laneCount = static_cast<int>(state.range(1));
    KernelScratch scratch(instructionSet);
    BatchOutput output;
    scene.RunSetup(*kernel, output, scratch);
    for (auto _ : state) {
        kernel->Run(scene.input, output, scratch);
        benchmark::DoNotOptimize(output.accumulates.begin());
    }
    state.SetLabel(GetName(instructionSet));
    auto invocations = static_cast<double>(state.range(1));
    state.counters["each"] = benchmark::Counter(
        invocations, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Compile(benchmark::State& state, const char* text) {
    std::shared_ptr<const LinkedProgram> program = Link(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Kernel::Compile(*program, KernelStage::Main, {}, nullptr));
    }
}

void Arguments(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"set", "lanes"});
    for (int instructionSet = 0; instructionSet < 3; ++instructionSet) {
        for (int lanes : {16, kMaxLanes}) {
            benchmark->Args({instructionSet, lanes});
        }
    }
}

BENCHMARK_CAPTURE(Shade, Noise, kNoise)->Apply(Arguments);
BENCHMARK_CAPTURE(Shade, Lights, kLights)->Apply(Arguments);
BENCHMARK_CAPTURE(Compile, Noise, kNoise)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Compile, Lights, kLights)->Unit(benchmark::kMicrosecond);

} // namespace
