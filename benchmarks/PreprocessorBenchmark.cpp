#include "MgrEffectsImpl.h"

#include "support/RecordingContext.h"
#include "support/ScopedAssets.h"

#include "TolenCore/Format.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

/// What the preprocessor makes of sources in a second, without the parser. The rates should hardly
/// depend on how many symbols are defined or how many files are included.

namespace Tolen::Effects {

namespace {

constexpr int kLines = 10000;

/// Drops the text that would be parsed.
class Preprocessor : public MgrEffectsImpl {
public:
    bool AddLibrary(const std::string&, const std::string& source, Result*) override {
        benchmark::DoNotOptimize(source.data());
        return true;
    }
    using MgrEffectsImpl::AddLibrary;
};

/// Shader code in which every line uses one of @p symbols symbols, if there are any.
std::string MakeCode(int symbols) {
    std::string code;
    for (int i = 0; i < kLines; ++i) {
        code += "    color = mix(color, texture2D(map, uv * 2.0).xyz, saturate(weight * ";
        code += symbols == 0 ? "0.5" : Format("SYMBOL_%d", i % symbols);
        code += ")); // blend\n";
    }
    return code;
}

/// Times the file main.ksl of the assets in force, which stands for @p bytes bytes.
void Run(benchmark::State& state, std::size_t bytes) {
    Tolen::Tests::RecordingContext context;
    context.SetDifferentialsEnabled(true);
    Preprocessor preprocessor;
    preprocessor.Init(&preprocessor, nullptr, &context, nullptr);
    for (auto _ : state) {
        if (!preprocessor.AddLibrary("main.ksl", nullptr)) {
            state.SkipWithError("the source failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

void PreprocessSymbols(benchmark::State& state) {
    const int symbols = static_cast<int>(state.range(0));
    std::string text;
    for (int i = 0; i < symbols; ++i) {
        text += Format("#define SYMBOL_%d %d.0\n", i, i);
    }
    text += MakeCode(symbols);
    Tolen::Tests::ScopedAssets assets;
    assets.Add("main.ksl", text);
    Run(state, text.size());
}
BENCHMARK(PreprocessSymbols)->Arg(0)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void PreprocessIncludes(benchmark::State& state) {
    const int files = static_cast<int>(state.range(0));
    const std::string code = MakeCode(0).substr(0, 20000);
    std::string text;
    for (int i = 0; i < files; ++i) {
        text += "#include \"code.ksl\"\n";
    }
    Tolen::Tests::ScopedAssets assets;
    assets.Add("code.ksl", code);
    assets.Add("main.ksl", text);
    Run(state, code.size() * static_cast<std::size_t>(files));
}
BENCHMARK(PreprocessIncludes)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

} // namespace

} // namespace Tolen::Effects
