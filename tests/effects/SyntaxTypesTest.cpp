#include "TolenEffects/SyntaxTypes.h"

#include <gtest/gtest.h>

#include <vector>

namespace Tolen::Effects {

namespace {

struct TypeCase {
    int value;
    const char* text;
    int channels;
    int bytes;
};

TEST(SyntaxTypesTest, TypeSpecifiers_HaveTheirTextsChannelsAndSizes) {
    const TypeCase cases[] = {
        {0, "void", 0, 0},         {1, "float", 1, 4},      {2, "int", 1, 4},
        {3, "bool", 1, 4},         {4, "vec2", 2, 8},       {5, "vec3", 3, 12},
        {6, "vec4", 4, 16},        {7, "bvec2", 2, 0},      {8, "bvec3", 3, 0},
        {9, "bvec4", 4, 0},        {10, "ivec2", 2, 8},     {11, "ivec3", 3, 12},
        {12, "ivec4", 4, 16},      {13, "mat2", 2, 0},      {14, "mat3", 3, 36},
        {15, "mat4", 4, 64},       {16, "sampler2D", 1, 8}, {17, "sampler3D", 1, 8},
        {18, "samplerCube", 1, 8}, {19, "primitive", 1, 4}, {20, "USERDEFINED", 0, 0},
        {21, "UNKNOWN", 0, 0},     {-1, "UNKNOWN", 0, 0},
    };
    for (const TypeCase& c : cases) {
        const TypeSpecifier type = static_cast<TypeSpecifier>(c.value);
        EXPECT_STREQ(TypeSpecifierToString(type), c.text) << c.value;
        EXPECT_EQ(TypeSpecifierToCountChannels(type), c.channels) << c.value;
        EXPECT_EQ(TypeSpecifierToSizeInBytes(type), c.bytes) << c.value;
    }
}

TEST(SyntaxTypesTest, ClassToString_KnowsAlsoTheClassesWithoutNodes) {
    EXPECT_STREQ(ClassToString(kClass_Expression), "Expression");
    EXPECT_STREQ(ClassToString(static_cast<Class>(28)), "Struct Field");
    EXPECT_STREQ(ClassToString(kClass_Module), "Module");
    EXPECT_STREQ(ClassToString(static_cast<Class>(42)), "Unknown");
    EXPECT_STREQ(ClassToString(static_cast<Class>(-1)), "Unknown");
}

TEST(SyntaxTypesTest, Classes_StandInTheOrderOfTheirNumbers) {
    int next = 0;
#define TOLEN_EXPECT_NEXT(name, value, text) EXPECT_EQ(static_cast<int>(name), next++) << text;
    TOLEN_SYNTAX_CLASSES(TOLEN_EXPECT_NEXT)
    EXPECT_EQ(next, 42);
    next = 0;
    TOLEN_OPERATORS(TOLEN_EXPECT_NEXT)
    EXPECT_EQ(next, 24);
    next = 0;
    TOLEN_STORAGE_QUALIFIERS(TOLEN_EXPECT_NEXT)
    EXPECT_EQ(next, 13);
#undef TOLEN_EXPECT_NEXT
}

TEST(SyntaxTypesTest, Operators_HaveTheirSpellings) {
    const std::vector<const char*> spellings = {"==", "!=", "*",  "/", "%",  "+",  "-",  "<<",
                                                ">>", "&",  "^",  "|", "++", "--", "!",  "~",
                                                "&&", "^^", "||", "<", ">",  "<=", ">=", ","};
    for (std::size_t i = 0; i < spellings.size(); ++i) {
        EXPECT_STREQ(OperatorToString(static_cast<Operator>(i)), spellings[i]) << i;
    }
    EXPECT_STREQ(OperatorToString(static_cast<Operator>(24)), "Unknown");
    EXPECT_EQ(kOperator_Assign, 0);
}

TEST(SyntaxTypesTest, StorageQualifiers_TwoHaveNoTextOfTheirOwn) {
    EXPECT_STREQ(StorageQualifierToString(kStorageQualifier_None), "");
    EXPECT_STREQ(StorageQualifierToString(static_cast<StorageQualifier>(3)), "Unknown");
    EXPECT_STREQ(StorageQualifierToString(static_cast<StorageQualifier>(5)),
                 "transformed invariant varying");
    EXPECT_STREQ(StorageQualifierToString(kStorageQualifier_Input), "input");
    EXPECT_STREQ(StorageQualifierToString(static_cast<StorageQualifier>(12)), "Unknown");
    EXPECT_STREQ(StorageQualifierToString(static_cast<StorageQualifier>(13)), "Unknown");
}

} // namespace

} // namespace Tolen::Effects
