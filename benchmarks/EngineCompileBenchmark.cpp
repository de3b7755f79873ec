// How long the embedded OpenKL takes from a text to code that runs, as texts grow, and what it is
// to run what shader graphs make of many functions.

#include "engine/Kernel.h"

#include "compiler/LinkedProgram.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

using namespace Tolen::OpenKL;

namespace {

using MakeText = std::string (*)(int count);

std::string Name(int i) {
    return "Foo_Eval_k" + std::to_string(i);
}

/// Each function calls the next.
std::string MakeChain(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text += "float " + Name(i) + "(float x);\n";
    }
    for (int i = 1; i < count; ++i) {
        text += "float " + Name(i) + "(float x)\n{\n    return " + Name(i + 1) +
                "(x) * 0.5 + 1.0;\n}\n";
    }
    text += "float " + Name(count) + "(float x)\n{\n    return x;\n}\n";
    return text + "void main()\n{\n    accumulate(0, " + Name(1) + "(kl_HitDistance));\n}\n";
}

/// Each function calls the next twice, as where two inputs share a shader.
std::string MakeDiamonds(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text += "float " + Name(i) + "(float x);\nfloat scale_k" + std::to_string(i) + ";\n";
        text += "void __ctor__k" + std::to_string(i) + "();\n";
    }
    for (int i = 1; i < count; ++i) {
        const std::string n = std::to_string(i);
        const std::string next = std::to_string(i + 1);
        text += "void __ctor__k" + n + "()\n{\n    scale_k" + n + " = 0.5;\n    __ctor__k" + next +
                "();\n    __ctor__k" + next + "();\n}\n";
        text += "float " + Name(i) + "(float x)\n{\n    return " + Name(i + 1) + "(x) * scale_k" +
                n + " + " + Name(i + 1) + "(x);\n}\n";
    }
    text += "void __ctor__k" + std::to_string(count) + "()\n{\n}\n";
    text += "float " + Name(count) + "(float x)\n{\n    return x;\n}\n";
    return text + "void main()\n{\n    __ctor__k1();\n    accumulate(0, " + Name(1) +
           "(kl_HitDistance));\n}\n";
}

/// One function that calls all others, one behind the other.
std::string MakeSequence(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text += "float " + Name(i) + "(float x)\n{\n    float y = x * " + std::to_string(i) +
                ".0;\n    return y + sin(y);\n}\n";
    }
    text += "void main()\n{\n    float s = 0.0;\n";
    for (int i = 1; i <= count; ++i) {
        text += "    s += " + Name(i) + "(kl_HitDistance);\n";
    }
    return text + "    accumulate(0, s);\n}\n";
}

/// One function that calls one of the others.
std::string MakeDispatch(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text +=
            "float " + Name(i) + "(float x)\n{\n    return x * " + std::to_string(i) + ".0;\n}\n";
    }
    text += "float Foo_Eval_Switch(int iThis, float x)\n{\n";
    for (int i = 1; i <= count; ++i) {
        text +=
            "    if (iThis == " + std::to_string(i - 1) + ")\n        return " + Name(i) + "(x);\n";
    }
    text += "    return 0.000000000000000;\n}\n";
    return text + "void main()\n{\n    float s = 0.0;\n    for (int i = 0; i < 3; ++i)\n"
                  "        s += Foo_Eval_Switch(i, kl_HitDistance);\n    accumulate(0, s);\n}\n";
}

std::shared_ptr<const LinkedProgram> Link(const std::string& text) {
    std::string messages;
    LinkInput input{"text", CompileShader(kStage_Ray, text, messages)};
    std::shared_ptr<const LinkedProgram> program;
    if (input.shader != nullptr) {
        program = LinkProgram("benchmark", {&input, 1}, messages);
    }
    if (program == nullptr) {
        std::fprintf(stderr, "%s\n", messages.c_str());
        std::exit(1);
    }
    return program;
}

void Finish(benchmark::State& state) {
    state.SetComplexityN(state.range(0));
    state.counters["each"] = benchmark::Counter(static_cast<double>(state.range(0)),
                                                benchmark::Counter::kIsIterationInvariantRate |
                                                    benchmark::Counter::kInvert);
}

/// From the text to a linked program.
void Front(benchmark::State& state, MakeText makeText) {
    const std::string text = makeText(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Link(text));
    }
    Finish(state);
}

/// From the text to code.
void Whole(benchmark::State& state, MakeText makeText) {
    const std::string text = makeText(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::string error;
        auto kernel = Kernel::Compile(*Link(text), KernelStage::Main, {}, &error);
        if (kernel == nullptr) {
            state.SkipWithError(error.c_str());
            break;
        }
    }
    Finish(state);
}

void Counts(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)
        ->Range(10, 10000)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime()
        ->Complexity();
}

BENCHMARK_CAPTURE(Front, Chain, MakeChain)->Apply(Counts);
BENCHMARK_CAPTURE(Front, Sequence, MakeSequence)->Apply(Counts);
BENCHMARK_CAPTURE(Front, Dispatch, MakeDispatch)->Apply(Counts);
BENCHMARK_CAPTURE(Whole, Chain, MakeChain)->Apply(Counts);
BENCHMARK_CAPTURE(Whole, Diamonds, MakeDiamonds)->Apply(Counts);
BENCHMARK_CAPTURE(Whole, Sequence, MakeSequence)->Apply(Counts);
BENCHMARK_CAPTURE(Whole, Dispatch, MakeDispatch)->Apply(Counts);

} // namespace
