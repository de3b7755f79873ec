#include "language/Builtins.h"

#include "language/BuiltinTexts.h"

#include "KslKeywords.h"

#include "compiler/BuiltinTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace Tolen::Language {
namespace {

using testing::ElementsAre;

void ExpectBuiltin(std::string_view name, Builtin::Kind kind) {
    const Builtin* const builtin = FindBuiltin(std::string(name));
    ASSERT_NE(builtin, nullptr) << name;
    EXPECT_EQ(builtin->kind, kind) << name;
    EXPECT_GT(builtin->documentation.size(), 4u) << name;
}

TEST(Builtins, HoldAndDescribeAllThatTheCompilerAndTheScannerHave) {
    using namespace OpenKL;
    for (int i = 0; i < kFunction_Count; ++i) {
        const std::string_view name = BuiltinFunctionToString(static_cast<BuiltinFunction>(i));
        ExpectBuiltin(name, Builtin::kKind_Function);
        EXPECT_FALSE(FindBuiltin(std::string(name))->signatures.empty()) << name;
    }
    for (int i = 0; i < kVariable_Count; ++i) {
        const std::string_view name = BuiltinVariableToString(static_cast<BuiltinVariable>(i));
        ExpectBuiltin(name, Builtin::kKind_Variable);
        EXPECT_EQ(FindBuiltin(std::string(name))->signatures.size(), 1u) << name;
    }
    for (const Effects::KslKeyword& keyword : Effects::Detail::kKeywords) {
        if (!keyword.text.empty()) {
            const Builtin* const builtin = FindBuiltin(std::string(keyword.text));
            ASSERT_NE(builtin, nullptr) << keyword.text;
            ExpectBuiltin(keyword.text, builtin->kind);
            EXPECT_TRUE(builtin->kind == Builtin::kKind_Keyword ||
                        builtin->kind == Builtin::kKind_Type);
        }
    }
}

TEST(Builtins, TextsAreOfBuiltinsAlone_AndOnceOfEach) {
    std::set<std::string_view> names;
    for (const BuiltinText& text : GetBuiltinTexts()) {
        EXPECT_TRUE(names.insert(text.name).second) << text.name;
        EXPECT_NE(FindBuiltin(std::string(text.name)), nullptr) << text.name;
    }
    EXPECT_EQ(names.size(), GetBuiltins().size());
}

TEST(Builtins, NameEveryParameterOfEverySignature) {
    for (const Builtin& builtin : GetBuiltins()) {
        for (const std::string& signature : builtin.signatures) {
            std::size_t begin = signature.find('(');
            if (begin == std::string::npos || signature[begin + 1] == ')') {
                continue;
            }
            while (begin != std::string::npos) {
                const std::size_t next = signature.find(", ", begin + 1);
                const std::string parameter =
                    signature.substr(begin, next == std::string::npos ? next : next - begin);
                EXPECT_NE(parameter.find(' ', 2), std::string::npos) << signature;
                begin = next;
            }
        }
    }
}

TEST(Builtins, FoldSignaturesOfAllSizes) {
    EXPECT_THAT(FindBuiltin("dot")->signatures,
                ElementsAre("float dot(float a, float b)", "float dot(vec a, vec b)"));
    EXPECT_THAT(FindBuiltin("cross")->signatures, ElementsAre("vec3 cross(vec3 a, vec3 b)"));
    EXPECT_THAT(FindBuiltin("atan")->signatures,
                ElementsAre("float atan(float tangent)", "vec atan(vec tangent)",
                            "float atan(float y, float x)", "vec atan(vec y, vec x)"));
    EXPECT_THAT(FindBuiltin("step")->signatures,
                ElementsAre("float step(float edge, float x)", "vec step(vec edge, vec x)",
                            "vec step(float edge, vec x)"));
    EXPECT_THAT(FindBuiltin("modf")->signatures, ElementsAre("float modf(float x, out float whole)",
                                                             "vec modf(vec x, out vec whole)"));
    EXPECT_THAT(FindBuiltin("outerProduct")->signatures,
                ElementsAre("mat outerProduct(vec column, vec row)"));
    EXPECT_THAT(FindBuiltin("accumulate")->signatures,
                ElementsAre("void accumulate(int output, float value)",
                            "void accumulate(int output, vec3 value)",
                            "void accumulate(int output, vec4 value)"));
    EXPECT_THAT(FindBuiltin("random2")->signatures, ElementsAre("vec2 random2()"));
    EXPECT_THAT(FindBuiltin("texture2D")->signatures,
                ElementsAre("vec4 texture2D(sampler2D image, vec2 place)",
                            "vec4 texture2D(sampler2D image, vec2 place, float bias)"));
    EXPECT_THAT(FindBuiltin("kl_HitPosition")->signatures, ElementsAre("vec3 kl_HitPosition"));
}

TEST(Builtins, TellTheirStagesWhereTheyAreNotInAll) {
    EXPECT_EQ(FindBuiltin("sin")->stages, "");
    EXPECT_EQ(FindBuiltin("spawnRay")->stages, "frame, ray and prefix");
    EXPECT_EQ(FindBuiltin("discardRay")->stages, "prefix");
    EXPECT_EQ(FindBuiltin("kl_HitNormal")->stages, "ray and prefix");
    EXPECT_EQ(FindBuiltin("kl_Position")->stages, "vertex");
    EXPECT_EQ(FindBuiltin("Normal")->stages, "ray");
    EXPECT_EQ(FindBuiltin("vec3")->stages, "");
}

TEST(Builtins, Find_KnowsNoOtherNames) {
    for (const char* name : {"", "continuePath", "throughput", "RESERVED", "Vec3", "zzz", "\xff"}) {
        EXPECT_EQ(FindBuiltin(name), nullptr) << name;
    }
}

} // namespace
} // namespace Tolen::Language
