#include "KslParsing.h"

#include "KslToken.h"

#include <gtest/gtest.h>

#include <random>

namespace Tolen::Effects {
namespace {

using namespace Tests;

using Random = std::mt19937;

std::size_t Below(Random& random, std::size_t end) { return random() % end; }

/// A text that uses the whole of the grammar.
const std::string kSource = R"(
// A surface with everything.
interface I { float Value(in vec2 uv, int n[3]); void Nothing(void); }
class Base : I {
    coord vec3 P; normal vec3 N; tangent vec4 T;
    output vec4 o_color; out vec3 o_normal;
    input float a = -1.5f; static input int b[2] = int[2](1, 2); input I c[]; input Foo d = Foo(1);
    static const float pi = 3.14; float table[] = float[](1.0, .5, 1e-3); bool on = true;
    float Value(in vec2 uv, int n[3]) { return uv.x + n[0] * a; }
    static void Nothing(void) {
        vec3 v = vec3(1.0); Foo foo; Foo foos[2]; int i; float w[];
        for (int k = 0; k < 3; ++k) { v += k == 1 ? v : v * 2.0; if (k > 1) break; else continue; }
        while (float x = Value(v.xy, n)) do { i <<= 1; } while (!on && ~i != 0 || i ^^ on);
        if (i == 1) return; else if ((i | 2 ^ 3 & 4) >= 5) ; else v = -v, foo.c[1].f(void)++;
        for (;;) ; 
    }
}
vec4 Free(inout sampler2D s, primitive p) { return texture(s, vec2(0x1F, 07)); }
[ a = b; ] { a + b }
)";

/// Parses @p source and takes the tree apart again. What matters is that nothing breaks, which the
/// sanitizers see best, and that success and messages agree.
void Exercise(const std::string& source) {
    const Parsed parsed = Parse(source);
    EXPECT_EQ(parsed.success, parsed.errors.empty()) << source;
    TreeText(*parsed.module, Ranges::Shown);
}

TEST(KslParserFuzz, WholeGrammar_Parses) {
    EXPECT_EQ(Parse(kSource).Errors(), "");
}

TEST(KslParserFuzz, EveryPrefix_IsHandled) {
    for (std::size_t length = 0; length <= kSource.size(); ++length) {
        Exercise(kSource.substr(0, length));
    }
}

TEST(KslParserFuzz, CharactersChangedAtRandom_AreHandled) {
    Random random(1);
    for (int round = 0; round < 1500; ++round) {
        std::string source = kSource;
        for (std::size_t changes = 1 + Below(random, 6); changes > 0; --changes) {
            const std::size_t position = Below(random, source.size());
            switch (random() % 3) {
            case 0:
                source.erase(position, 1 + Below(random, 10));
                break;
            case 1:
                source.insert(position, source.substr(Below(random, source.size()), 12));
                break;
            default:
                source[position] = static_cast<char>(' ' + Below(random, 95));
            }
        }
        Exercise(source);
    }
}

TEST(KslParserFuzz, RandomTokens_AreHandled) {
    Random random(2);
    for (int round = 0; round < 1500; ++round) {
        std::string source = round % 3 == 0 ? "class A { " : round % 3 == 1 ? "void f() { " : "";
        for (std::size_t count = Below(random, 80); count > 0; --count) {
            const std::size_t code = 1 + Below(random, kToken_Count - 1);
            const char* const kConstants[] = {"1", "2.5", "true", "name"};
            source += code % 5 == 0 ? kConstants[Below(random, 4)] : kTokenTexts[code];
            source += random() % 8 == 0 ? "\n" : " ";
        }
        Exercise(source);
    }
}

TEST(KslParserFuzz, RandomBytes_AreHandled) {
    Random random(3);
    for (int round = 0; round < 1000; ++round) {
        std::string source(Below(random, 200), '\0');
        for (char& character : source) {
            character = static_cast<char>(round % 2 == 0 ? random() : '(' + Below(random, 90));
        }
        Exercise(source);
    }
}

TEST(KslParserFuzz, Sequences_OfTheSameToken) {
    for (int code = 1; code < kToken_Count; ++code) {
        std::string source;
        for (int i = 0; i < 3000; ++i) {
            source += std::string(kTokenTexts[code]) + " ";
        }
        Exercise("void f() {" + source + "}");
        Exercise("class A {" + source + "}");
        Exercise(source);
    }
}

} // namespace
} // namespace Tolen::Effects
