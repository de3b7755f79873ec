#include "IParser.h"
#include "KslGrammar.h"
#include "KslParser.h"
#include "KslScanner.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/Syntax.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

/// How fast KLSL is read, in bytes of source. The scanner alone stands beside the parser, to show
/// where time goes.

namespace Tolen::Effects {
namespace {

/// A class as people write them, with comments and indentation. "@" stands for a number.
constexpr const char* kClass = R"(
// A layer of paint with a coat over it. The coat's weight follows the angle of view, so that the
// edges of things shine more than their fronts.
class Paint@ : ISurface
{
    coord vec3 P;
    normal vec3 N;
    coord vec2 uv;
    output vec4 o_color;

    input vec3 diffuseColor = vec3(0.8, 0.75, 0.7);
    input float roughness = 0.25;
    input float coatWeight = 1.0;
    input ITexture pattern = Checker();
    input ILight lights[];
    static const float kEpsilon = 1e-4;
    static const int kLevels[4] = int[4](1, 2, 4, 8);

    /* The share of light that a smooth surface throws back,
       as a polynomial of the cosine. */
    float fresnel(float cosine, float reflectance)
    {
        float m = clamp(1.0 - cosine, 0.0, 1.0);
        float m2 = m * m;
        return reflectance + (1.0 - reflectance) * m2 * m2 * m;
    }

    vec3 shade(vec3 position, vec3 view, in vec3 baseNormal)
    {
        vec3 facing = normalize(baseNormal);
        if (dot(facing, view) < 0.0)
            facing = -facing;
        vec3 sum = vec3(0.0);
        for (int i = 0; i < lights.length(); ++i) {
            vec3 direction = lights[i].direction(position);
            float cosine = max(dot(facing, direction), 0.0);
            if (cosine <= kEpsilon || lights[i].isOff()) {
                continue;
            }
            vec3 halfway = normalize(direction + view);
            float spread = pow(max(dot(facing, halfway), 0.0), 2.0 / (roughness * roughness) - 2.0);
            sum += lights[i].intensity(position) * (diffuseColor * pattern.value(uv * 4.0).rgb
                   * cosine + coatWeight * fresnel(dot(view, halfway), 0.04) * spread);
        }
        return sum;
    }

    void main()
    {
        vec3 view = normalize(-rl_InRay.direction);
        vec3 color = shade(P, view, N);
        float level = float(kLevels[int(@.0 * uv.x) % 4]);
        o_color = vec4(level > 2.0 ? color : color * level * 0.5, 1.0);
        accumulate(o_color.rgb);
    }
}

vec3 tint@(vec3 color, float amount)
{
    float luminance = 0.2126 * color.r + 0.7152 * color.g + 0.0722 * color.b;
    return mix(vec3(luminance), color, clamp(amount, 0.0, 2.0));
}
)";

std::string MakeSource(std::size_t bytes) {
    std::string source;
    for (int number = 0; source.size() < bytes; ++number) {
        for (const char* character = kClass; *character != '\0'; ++character) {
            source += *character == '@' ? std::to_string(number) : std::string(1, *character);
        }
    }
    return source;
}

const std::string& Source() {
    static const std::string source = MakeSource(1'000'000);
    return source;
}

void CountBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(Source().size()) *
                            static_cast<std::int64_t>(state.iterations()));
}

class TokenCounter : public IParser {
public:
    void ParseConstantBool(const LocationRange&, bool) override { ++count; }
    bool ParseConstantInt(const LocationRange&, long) override { return _Count(); }
    bool ParseConstantFloat(const LocationRange&, const char*, int) override { return _Count(); }
    bool ParseKeyword(const LocationRange&, int) override { return _Count(); }
    bool ParseIdentifier(const LocationRange&, const char*, int) override { return _Count(); }
    bool NewLine() override { return true; }

    std::size_t count = 0;

private:
    bool _Count() {
        ++count;
        return true;
    }
};

void BuildAutomaton(benchmark::State& state) {
    for (auto _ : state) {
        const KslAutomaton automaton(GetKslRules());
        benchmark::DoNotOptimize(automaton.GetCountStates());
    }
}
BENCHMARK(BuildAutomaton)->Unit(benchmark::kMicrosecond);

void Scan(benchmark::State& state) {
    TokenCounter counter;
    for (auto _ : state) {
        KslScanner scanner;
        scanner.Init(&counter, Source(), 0);
        benchmark::DoNotOptimize(scanner.Scan());
    }
    CountBytes(state);
    state.counters["bytesPerToken"] = static_cast<double>(Source().size()) *
                                      static_cast<double>(state.iterations()) /
                                      static_cast<double>(counter.count);
}
BENCHMARK(Scan)->Unit(benchmark::kMillisecond);

void Parse(benchmark::State& state) {
    const std::string file = "benchmark.ksl";
    for (auto _ : state) {
        std::vector<std::string> errors;
        std::unique_ptr<Module> module(Module::Create(nullptr));
        if (!KslParser::Parse(module.get(), errors, file, Source(), 0)) {
            state.SkipWithError(errors.front().c_str());
            break;
        }
        state.PauseTiming(); // for the destruction of the tree
        module.reset();
        state.ResumeTiming();
    }
    CountBytes(state);
}
BENCHMARK(Parse)->Unit(benchmark::kMillisecond);

void ParseAndDestroy(benchmark::State& state) {
    const std::string file = "benchmark.ksl";
    for (auto _ : state) {
        std::vector<std::string> errors;
        std::unique_ptr<Module> module(Module::Create(nullptr));
        benchmark::DoNotOptimize(
            KslParser::Parse(module.get(), errors, file, Source(), 0));
    }
    CountBytes(state);
}
BENCHMARK(ParseAndDestroy)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Tolen::Effects
