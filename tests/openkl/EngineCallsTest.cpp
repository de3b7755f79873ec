#include "EngineRig.h"

#include "effects/SmallStack.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>

/// Programs of many functions that call each other, and calls that are left out because they were
/// made before.
namespace Tolen::OpenKL::Testing {
namespace {

KernelOptions WithoutOptimization() {
    KernelOptions options;
    options.isOptimized = false;
    return options;
}

/// What main gives for a few lanes, bit by bit.
std::vector<std::uint32_t> RunLanes(const std::string& text, const KernelOptions& options) {
    EngineRig rig(text, kStage_Ray, options);
    for (std::size_t lane = 0; lane < 8; ++lane) {
        rig.GetLaneRow(kLaneInput_HitDistance)[lane] = ToWord(static_cast<float>(lane) - 3.0f);
        rig.GetLaneRow(kLaneInput_RayDepth)[lane] = static_cast<std::uint32_t>(lane * 5 % 7);
    }
    return ToBits(rig.Run(8));
}

float RunOne(const std::string& text, float distance) {
    EngineRig rig(text);
    rig.GetLaneRow(kLaneInput_HitDistance)[0] = ToWord(distance);
    return rig.Run().accumulates[0].value[0];
}

std::string Name(int i) {
    return "Foo_Eval_k" + std::to_string(i);
}

/// Functions 1 to @p count; each calls the next as @p body says, with N for the next one's name.
std::string MakeChain(int count, const std::string& body, const std::string& last) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text += "float " + Name(i) + "(float x);\n";
    }
    for (int i = 1; i <= count; ++i) {
        std::string lines = i < count ? body : last;
        for (std::size_t at; (at = lines.find('N')) != std::string::npos;) {
            lines.replace(at, 1, Name(i + 1));
        }
        text += "float " + Name(i) + "(float x) { " + lines + " }\n";
    }
    return text + "void main() { accumulate(0, " + Name(1) + "(kl_HitDistance)); }\n";
}

/// Constructors of a graph in which each node has two inputs that hold the next one.
std::string MakeConstructors(int count, const std::string& member) {
    std::string text;
    for (int i = 1; i <= count; ++i) {
        const std::string n = std::to_string(i);
        text += "float m_k" + n + "; float p_k" + n + "; void __ctor__k" + n + "();\n";
    }
    for (int i = 1; i <= count; ++i) {
        const std::string n = std::to_string(i);
        std::string lines = member;
        for (std::size_t at; (at = lines.find('#')) != std::string::npos;) {
            lines.replace(at, 1, n);
        }
        text += "void __ctor__k" + n + "() { " + lines;
        if (i < count) {
            const std::string next = "__ctor__k" + std::to_string(i + 1) + "();";
            text += next + " " + next;
        }
        text += " }\n";
    }
    return text + "void main() { __ctor__k1(); accumulate(0, m_k1 + p_k" + std::to_string(count) +
           "); }\n";
}

std::string GetError(const std::string& text) {
    std::string error;
    EXPECT_EQ(Kernel::Compile(*LinkText(text, kStage_Ray), KernelStage::Main, {}, &error), nullptr);
    return error;
}

/// Processor time, which other work on the machine leaves alone.
template <class Work>
double MeasureSeconds(const Work& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(EngineCalls, AChainOfTenThousand_RunsAlsoFromASmallStack) {
    struct {
        const char* body;
        const char* last;
        float expected;
    } const cases[] = {
        {"return N(x) * 0.5 + 1.0;", "return x;", 2.0f},
        {"return 1.0 + 0.5 * N(x);", "return x;", 2.0f},
        {"float y = N(x + 1.0); return y;", "return x;", 10002.0f},
        {"if (x > 0.0) return N(x); return 0.0;", "return x;", 3.0f},
        {"if (x < 0.0) { return 1.0; } else { return N(x) + 1.0; }", "return x;", 10002.0f},
    };
    for (const auto& c : cases) {
        const std::string text = MakeChain(10000, c.body, c.last);
        Effects::Tests::OnSmallStack([&] { EXPECT_EQ(RunOne(text, 3.0f), c.expected) << c.body; });
    }
}

TEST(EngineCalls, ChainsOfConstructors_RunInSetupAndMain) {
    const int count = 10000;
    std::string text;
    for (int i = 1; i <= count; ++i) {
        text += "float a_k" + std::to_string(i) + "; void __ctor__k" + std::to_string(i) + "();\n";
    }
    for (int i = 1; i <= count; ++i) {
        const std::string n = std::to_string(i);
        text += "void __ctor__k" + n + "() { a_k" + n + " = " + n + ".0; ";
        text += i < count ? "__ctor__k" + std::to_string(i + 1) + "(); }\n" : "}\n";
    }
    for (const char* entry :
         {"void setup() { __ctor__k1(); } void main() { ", "void main() { __ctor__k1(); "}) {
        const std::string whole = text + entry + "accumulate(0, a_k1 + a_k10000); }";
        Effects::Tests::OnSmallStack([&] { EXPECT_EQ(RunOne(whole, 0.0f), 10001.0f) << entry; });
    }
}

TEST(EngineCalls, ChainsUpToTheLimit_CompileAndLongerOnesNameItAndTheFunction) {
    // Each call takes two levels, main three and the last variable one.
    const int most = (65536 - 4) / 2;
    Effects::Tests::OnSmallStack([&] {
        EXPECT_EQ(RunOne(MakeChain(most, "return N(x) * 0.5 + 1.0;", "return x;"), 1.0f), 2.0f);
        for (const int count : {most + 1, 2 * most}) {
            EXPECT_EQ(GetError(MakeChain(count, "return N(x) * 0.5;", "return x;")),
                      "'main' nests deeper than the limit of 65536 levels once its calls are "
                      "inlined, which it reaches in 'Foo_Eval_k32766(float)'");
        }
    });
}

TEST(EngineCalls, VariablesUpToTheLimit_CompileAndOneMoreDoesNot) {
    const auto makeText = [](int last) {
        std::string text = "void main() { int k = kl_RayDepth; float s = 0.0;\n";
        for (int i = 0; i < 17; ++i) {
            const std::string name = "a" + std::to_string(i);
            text += "float " + name + "[" + std::to_string(i < 16 ? 16000 : last) + "]; " + name +
                    "[k] = kl_HitDistance; s += " + name + "[k];\n";
        }
        return text + "accumulate(0, s); }";
    };
    Effects::Tests::OnSmallStack([&] {
        const std::string error = GetError(makeText(10000));
        ASSERT_TRUE(error.starts_with("'main' needs ")) << error;
        const int most = 10000 - (std::stoi(error.substr(13)) - 262144);
        EngineRig rig(makeText(most));
        EXPECT_EQ(GetError(makeText(most + 1)), "'main' needs 262145 words for its variables, more "
                                                "than the limit of 262144");
    });
}

TEST(EngineCalls, Diamonds_RunLikeChains) {
    EXPECT_EQ(RunOne(MakeChain(40, "return N(x) * 0.5 + N(x) * 0.25 + 0.25;", "return x;"), 1.0f),
              1.0f);
    EXPECT_EQ(RunOne(MakeChain(40, "float a = N(x); float b = N(x); return 0.5 * (a + b);",
                               "return sin(x) * 0.0 + x;"),
                     3.0f),
              3.0f);
    EXPECT_EQ(
        RunOne(MakeChain(40, "if (x < 0.0) return 0.0; return 0.5 * (N(x) + N(x));", "return x;"),
               3.0f),
        3.0f);
    EXPECT_EQ(RunOne(MakeConstructors(40, "m_k# = #.0; p_k# = m_k# + 1.0; "), 0.0f), 42.0f);
    EXPECT_EQ(RunOne(MakeConstructors(40, ""), 0.0f), 0.0f);
}

TEST(EngineCalls, LayersThatAllShareTheNext_RunLikeChains) {
    // Each node writes a member ahead of and behind its children.
    std::string text;
    const int layers = 60;
    for (int i = layers; i >= 1; --i) {
        for (const char* side : {"a", "b"}) {
            const std::string n = side + std::to_string(i);
            const std::string next = std::to_string(i + 1);
            const std::string children =
                i < layers ? "__ctor__a" + next + "(); __ctor__b" + next + "(); " : "";
            text += "float m_" + n + ", q_" + n + "; void __ctor__" + n + "() { m_" + n + " = " +
                    std::to_string(i) + ".0; " + children + "q_" + n + " = m_" + n + "; }\n";
            text += "float Eval_" + n + "(float x) { return m_" + n + " * 0.0 + ";
            text += i < layers ? "0.5 * (Eval_a" + next + "(x) + Eval_b" + next + "(x)); }\n"
                               : "x; }\n";
        }
    }
    text += "void main() { __ctor__a1(); __ctor__b1(); accumulate(0, Eval_a1(kl_HitDistance) + "
            "q_b60); }";
    EXPECT_EQ(RunOne(text, 2.0f), 62.0f);
}

TEST(EngineCalls, DispatchAndSequences_RunLinearly) {
    const auto makeDispatch = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += "float " + Name(i) + "(float x) { return x + " + std::to_string(i) + ".0; }\n";
        }
        text += "float Foo_Eval(int iThis, float x) {\n";
        for (int i = 0; i < count; ++i) {
            text += "if (iThis == " + std::to_string(i) + ") return " + Name(i) + "(x);\n";
        }
        text += "return 0.000000000000000; }\nvoid main() { float s = 0.0;\n";
        for (int i = 0; i < count; ++i) {
            text += "s += " + Name(i) + "(0.0);\n";
        }
        return text + "accumulate(0, Foo_Eval(kl_RayDepth, kl_HitDistance) + s * 0.0); }";
    };
    EngineRig rig(makeDispatch(1000));
    for (std::size_t lane = 0; lane < 6; ++lane) {
        rig.GetLaneRow(kLaneInput_RayDepth)[lane] = static_cast<std::uint32_t>(lane * 250);
        rig.GetLaneRow(kLaneInput_HitDistance)[lane] = ToWord(0.5f);
    }
    rig.Run(6);
    const float expected[] = {0.5f, 250.5f, 500.5f, 750.5f, 0.0f, 0.0f};
    for (std::size_t lane = 0; lane < 6; ++lane) {
        EXPECT_EQ(rig.output.accumulates[lane].value[0], expected[lane]) << lane;
    }
    const std::string small = makeDispatch(500);
    const std::string large = makeDispatch(8000);
    const double fast = MeasureSeconds([&] { EngineRig compiled(small); });
    const double slow = MeasureSeconds([&] { EngineRig compiled(large); });
    EXPECT_LT(slow, 16 * fast * 6 + 0.3);
}

TEST(EngineCalls, WhatIsCalledAgain_GivesWhatItWould) {
    struct {
        const char* globals;
        const char* statements;
    } const cases[] = {
        {"int n; float f() { n++; return float(n); }", "s = f() + f() * 10.0;"},
        {"float g; float f() { return g; }", "g = 1.0; s = f(); g = d; s += f() * 10.0;"},
        {"float g; float f() { return g; }", "s = f(); if (d > 0.0) g = d; s += f() * 10.0;"},
        {"float g; float f() { return g; }",
         "s = f(); for (int i = 0; i < 4; ++i) { s += f() * 10.0; g += d; } s += f();"},
        {"float g; float f() { return g; }",
         "int i = 0; do { s += f(); if (i > 1) s += f() * 3.0; g = d; ++i; } while (i < 3 && f() < "
         "9.0);"},
        {"float g; float f() { g = d * 2.0; return g; }",
         "if (d > 0.0) { s = f(); } s += g; s += f(); s += g;"},
        {"float g; float h; void c() { g = 1.0; h = g * 2.0; }",
         "c(); g = 5.0; c(); s = g + h * 10.0; h = 7.0; s += h; c(); s += h;"},
        {"float g; void f(bool b) { if (b) g = 2.0; float r = g; g = r + 1.0; }",
         "f(d > 0.0); s = g; f(d > 0.0); s += g; f(d > 1.0); s += g;"},
        {"float a; float b; void f() { float t = a; a = b; b = t; }",
         "a = 1.0; b = d; f(); f(); f(); s = a + b * 10.0;"},
        {"float v; float w; void e() { v = 1.0; w = 2.0; } void f() { e(); v = 5.0; }",
         "f(); s = v; e(); s += v * 3.0; f(); s += v * 7.0; w = 9.0; f(); s += w;"},
        {"float v; float w; void f() { w = v; v = 5.0; }", "v = d; f(); s = w; f(); s += w * 3.0;"},
        {"float v; void f(float x, out float y, inout float z) { y = x + v; z += y; }",
         "float y; float z = 1.0; f(d, y, z); s = y; f(d, y, z); s += z; v = 3.0; f(d, y, v); s += "
         "v; f(d, y, v); s += v;"},
        {"float f(float x) { return x * random(); }", "s = f(d) - f(d); accumulate(1, f(d));"},
        {"void f(float x) { accumulate(1, x); }", "f(d); f(d); if (d > 0.0) f(d);"},
        {"float t[4]; float f(int i) { return t[i]; }",
         "int k = kl_RayDepth; t[k] = 1.0; s = f(k); t[k - 1] = 3.0; s += f(k) * 10.0; s += f(k - "
         "1);"},
        {"float t[4]; void f(int i) { t[i] = t[0] + 1.0; }",
         "int k = kl_RayDepth; f(k); s = t[0]; f(k); s += t[0] * 3.0; f(0); f(0); s += t[0];"},
        {"float g; void c() { g = 4.0; } float f(float x) { if (x < 0.0) return 1.0; c(); return "
         "2.0; }",
         "s = f(d); s += g * 3.0; c(); s += g * 10.0; s += f(d) * g;"},
        {"float u; float v; float g() { return u + v; } float f() { float r = g(); v = 2.0; return "
         "r; }",
         "v = 2.0; s = f(); s += f() * 3.0; u = d; s += f() * 10.0; s += f();"},
        {"float g; float h(float x) { return x * g; } float f(float x) { return h(x) + h(x); }",
         "g = 2.0; s = f(d) + h(d); for (int i = 0; i < 3; ++i) { s += h(d); g = h(d); s += f(d); "
         "}"},
        {"float g; float h() { return g; } float f() { return h() + 1.0; }",
         "g = 1.0; s = f(); g = d; s += f() * 10.0;"},
        {"float g; float h() { return g; } float f() { return h() + 1.0; }",
         "g = 1.0; s = h() + f(); g = d; s += f() * 10.0;"},
        {"float u; float v; float w; void h() { v = 1.0; w = u; } void f() { h(); v = 5.0; }",
         "f(); s = w; u = d; f(); s += w * 10.0 + v;"},
        {"int f(int x) { for (int i = 0; i < 3; ++i) { if (x > 4) return i; x += x; } return x; }",
         "s = float(f(kl_RayDepth) * 100 + f(kl_RayDepth)); s += f(1) == f(1) ? 1.0 : 0.0;"},
        {"float g; bool f() { g += 1.0; return g > 2.0; }",
         "if (f() && f() || f()) s = 1.0; s += g; bool b = f() ^^ f(); s += b ? f() ? 1.0 : 2.0 : "
         "g;"},
        {"float g; float f() { return g; } float e() { float r = f(); if (r > d) { g = r - 1.0; } "
         "return f() + r; }",
         "g = 3.0; s = e(); s += e() * 10.0; s += f(); g = 1.0; s += e();"},
    };
    for (const auto& c : cases) {
        const std::string text = "float d;\n" + std::string(c.globals) +
                                 "\nvoid main() { d = kl_HitDistance; float s = 0.0;\n" +
                                 c.statements + "\naccumulate(0, s); }";
        EXPECT_EQ(RunLanes(text, {}), RunLanes(text, WithoutOptimization())) << text;
    }
}

/// Writes programs whose functions read and write a few globals and call those ahead of them.
class CallProgram {
public:
    explicit CallProgram(unsigned seed) : _random(seed) {}

    std::string Write() {
        std::string text = "int a, b, c; int t[3];\n";
        for (_functions = 0; _functions < 6; ++_functions) {
            text += "int f" + std::to_string(_functions) + "(int x) {\n" + _WriteStatements(4, 2) +
                    "return " + _WriteValue() + "; }\n";
        }
        return text + "void main() { int x = kl_RayDepth; a = int(kl_HitDistance);\n" +
               _WriteStatements(8, 2) +
               "accumulate(0, vec3(a & 1023, b & 1023, c & 1023));\n"
               "accumulate(1, vec3(t[0] & 1023, t[1] & 1023, x & 1023)); }\n";
    }

private:
    int _Pick(int count) { return static_cast<int>(_random() % static_cast<unsigned>(count)); }

    std::string _WriteTarget() {
        const char* const names[] = {"a", "b", "c", "x", "t[x & 1]", "t[0]"};
        return names[_Pick(6)];
    }

    std::string _WriteValue() {
        switch (_Pick(_functions > 0 ? 7 : 4)) {
        case 0:
            return std::to_string(_Pick(4));
        case 1:
            return _WriteTarget() + " + " + _WriteTarget();
        case 2:
            return _WriteTarget() + " * 3 - " + _WriteTarget();
        case 3:
            return _WriteTarget();
        default:
            return "f" + std::to_string(_Pick(_functions)) + "(" +
                   (_Pick(2) == 0 ? "x" : std::to_string(_Pick(2))) + ")";
        }
    }

    std::string _WriteStatements(int count, int depth) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            const int kind = _Pick(depth > 0 ? 8 : 5);
            if (kind < 5) {
                text += _WriteTarget() + (_Pick(3) == 0 ? " += " : " = ") + _WriteValue() + ";\n";
            } else if (kind == 5) {
                text += "if ((" + _WriteValue() + ") > 1) {\n" + _WriteStatements(2, depth - 1) +
                        "} else {\n" + _WriteStatements(1, depth - 1) + "}\n";
            } else if (kind == 6) {
                const std::string counter = "i" + std::to_string(_counters++);
                text += "for (int " + counter + " = 0; " + counter + " < 2; ++" + counter +
                        ") {\n" + _WriteStatements(2, depth - 1) +
                        (_Pick(2) == 0 ? "if (x > 2) break;\n" : "") + "}\n";
            } else if (_functions < 6) {
                text += "if (" + _WriteTarget() + " == 2) return " + _WriteValue() + ";\n";
            }
        }
        return text;
    }

    std::mt19937 _random;
    int _functions = 0;
    int _counters = 0;
};

TEST(EngineCalls, RandomCalls_GiveWhatTheyWouldOneByOne) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        const std::string text = CallProgram(seed).Write();
        ASSERT_EQ(RunLanes(text, {}), RunLanes(text, WithoutOptimization())) << seed << "\n"
                                                                             << text;
    }
}

} // namespace
} // namespace Tolen::OpenKL::Testing
