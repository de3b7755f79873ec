#include "Value.h"

#include "effects/ElementSamples.h"
#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"

#include <gmock/gmock.h>

#include <climits>
#include <memory>
#include <sstream>

namespace Tolen::Effects {

class IShader;

namespace Tests {

using ::testing::ElementsAre;
using Tolen::Tests::CapturedChecks;
using Tolen::Tests::CapturedConsole;

template <class T>
std::vector<T> GetElements(Value<T>& value) {
    std::vector<T> elements;
    elements.reserve(static_cast<std::size_t>(value.GetLength()));
    for (int i = 0; i < value.GetLength(); ++i) {
        elements.push_back(value.Get(i));
    }
    return elements;
}

template <class T>
class ValueTypedTest : public ::testing::Test {
protected:
    CapturedConsole _console;
    const T _a = MakeSample<T>(1);
    const T _b = MakeSample<T>(2);
};
TYPED_TEST_SUITE(ValueTypedTest, ElementTypes, ElementTypeName);

TYPED_TEST(ValueTypedTest, New_HoldsTheDefault) {
    Value<TypeParam> value(2, false, this->_a);

    EXPECT_EQ(value.GetLength(), 2);
    EXPECT_EQ(value.GetTypeSpecifier(), ElementType<TypeParam>::kSpecifier);
    EXPECT_STREQ(value.GetTypeName(), ElementType<TypeParam>::kName);
    EXPECT_THAT(GetElements(value), ElementsAre(this->_a, this->_a));
}

TYPED_TEST(ValueTypedTest, Set_ChangesOneElementAndLeavesItsNeighbours) {
    Value<TypeParam> value(3, false, this->_a);

    EXPECT_TRUE(value.Set(this->_b, 1));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_a, this->_b, this->_a));
    EXPECT_EQ(this->_console.GetAll(), "");
}

TYPED_TEST(ValueTypedTest, Set_AtTheLength_ReportsAndChangesNothing) {
    Value<TypeParam> value(1, false, this->_a);

    EXPECT_FALSE(value.Set(this->_b, 1));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_a));
    EXPECT_EQ(this->_console.GetErrors(), "Value::Set Index Out of Bounds\n");
}

TYPED_TEST(ValueTypedTest, Set_AtANegativeIndex_AnswersFalseInSilence) {
    Value<TypeParam> value(1, false, this->_a);

    EXPECT_FALSE(value.Set(this->_b, -1));
    EXPECT_FALSE(value.Set(this->_b, INT_MIN));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_a));
    EXPECT_EQ(this->_console.GetAll(), "");
}

TYPED_TEST(ValueTypedTest, SetArray_OverwritesTheFirstElementsOnly) {
    const std::array<TypeParam, 2> values = {this->_b, this->_b};
    Value<TypeParam> value(3, false, this->_a);

    EXPECT_TRUE(value.SetArray(values.data(), 2));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_b, this->_b, this->_a));
}

TYPED_TEST(ValueTypedTest, SetArray_OfMoreThanTheLength_ReportsAndChangesNothing) {
    const std::array<TypeParam, 2> values = {this->_b, this->_b};
    Value<TypeParam> value(1, false, this->_a);

    EXPECT_FALSE(value.SetArray(values.data(), 2));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_a));
    EXPECT_EQ(this->_console.GetErrors(), "Value::SetArray Array Out of Bounds\n");
}

TYPED_TEST(ValueTypedTest, SetArray_OfANegativeCountOrNothing_ChangesNothing) {
    Value<TypeParam> value(1, false, this->_a);

    EXPECT_FALSE(value.SetArray(&this->_b, -1));
    EXPECT_FALSE(value.SetArray(nullptr, 1));
    EXPECT_TRUE(value.SetArray(nullptr, 0));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_a));
}

TYPED_TEST(ValueTypedTest, SetLength_KeepsTheFirstElementsAndFillsWithTheDefault) {
    Value<TypeParam> value(0, true, this->_a);

    EXPECT_TRUE(value.SetLength(3));
    EXPECT_THAT(GetElements(value), ElementsAre(this->_a, this->_a, this->_a));
    EXPECT_TRUE(value.Set(this->_b, 0) && value.Set(this->_b, 1));
    EXPECT_TRUE(value.SetLength(1));
    EXPECT_TRUE(value.SetLength(2));

    EXPECT_THAT(GetElements(value), ElementsAre(this->_b, this->_a));
}

TYPED_TEST(ValueTypedTest, SetLength_OfAFixedValue_ReportsAndChangesNothing) {
    Value<TypeParam> value(1, false, this->_a);

    EXPECT_FALSE(value.SetLength(2));
    EXPECT_FALSE(value.SetLength(1));

    EXPECT_FALSE(value.IsResizable());
    EXPECT_EQ(value.GetLength(), 1);
    EXPECT_EQ(this->_console.GetErrors(),
              "Value::SetLength Not Resizable\nValue::SetLength Not Resizable\n");
}

TYPED_TEST(ValueTypedTest, CreateValue_MakesTheDefaultOfItsType) {
    const std::unique_ptr<IValue> made(
        CreateValue(nullptr, ElementType<TypeParam>::kSpecifier, 2, true));

    auto* value = dynamic_cast<Value<TypeParam>*>(made.get());
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(value->IsResizable());
    EXPECT_THAT(GetElements(*value), ElementsAre(TypeParam(), TypeParam()));
}

TYPED_TEST(ValueTypedTest, GetValueAsString_OutsideTheLength_AnswersFalse) {
    Value<TypeParam> value(1, false, this->_a);
    std::string text = "kept";

    EXPECT_FALSE(value.GetValueAsString(text, 1));
    EXPECT_EQ(this->_console.GetErrors(), "Value<T>::GetValueAsString Index Out of Bounds\n");
    EXPECT_FALSE(value.GetValueAsString(text, -1));

    EXPECT_EQ(text, "kept");
}

TEST(ValueTest, SetLength_ToTheSameLength_KeepsTheElements) {
    Value<int> value(2, true, 7);
    value.Set(3, 1);

    EXPECT_TRUE(value.SetLength(2));

    EXPECT_THAT(GetElements(value), ElementsAre(7, 3));
}

TEST(ValueTest, New_OfANegativeLength_KeepsTheLengthAndHasNoElements) {
    const CapturedConsole console;
    Value<int> value(-3, true, 7);

    EXPECT_EQ(value.GetLength(), -3);
    EXPECT_FALSE(value.Set(1, 0));
    EXPECT_FALSE(value.Set(1, -4));
    EXPECT_TRUE(value.SetLength(2));
    EXPECT_THAT(GetElements(value), ElementsAre(7, 7));
}

TEST(ValueTest, Copy_SharesTheElementsUntilOneOfTheTwoIsResized) {
    Value<int> original(2, true, 7);
    Value<int> copy(original);

    original.Set(1, 0);
    EXPECT_EQ(copy.Get(0), 1);
    EXPECT_EQ(copy.GetData(), original.GetData());

    EXPECT_TRUE(original.SetLength(1));
    original.Set(2, 0);
    EXPECT_THAT(GetElements(copy), ElementsAre(1, 7));
}

TEST(ValueTest, Copy_OutlivesItsOriginal) {
    auto original = std::make_unique<Value<std::string>>(1, false, "text");
    Value<std::string> copy(*original);
    original.reset();

    EXPECT_EQ(copy.Get(0), "text");
}

TEST(ValueTest, Strings_AreCopiedAndFilledByValue) {
    Value<std::string> value(1, true, "default");
    std::string text = "own";
    value.Set(text, 0);
    text = "changed";

    EXPECT_TRUE(value.SetLength(2));

    EXPECT_THAT(GetElements(value), ElementsAre("own", "default"));
    EXPECT_EQ(value.GetTypeSpecifier(), kType_UserDefined);
    EXPECT_STREQ(value.GetTypeName(), "string");
    EXPECT_TRUE(value.GetValueAsString(text, 1));
    EXPECT_EQ(text, "default");
}

TEST(ValueTest, Shaders_AreHeldByAddress) {
    int place = 0;
    auto* shader = reinterpret_cast<IShader*>(&place);
    Value<IShader*> value(2, false, nullptr);
    value.Set(shader, 1);

    EXPECT_THAT(GetElements(value), ElementsAre(nullptr, shader));
    EXPECT_EQ(value.GetTypeSpecifier(), kType_UserDefined);
    EXPECT_STREQ(value.GetTypeName(), "IShader");
    std::ostringstream expected;
    expected << static_cast<const void*>(shader);
    std::string text;
    EXPECT_TRUE(value.GetValueAsString(text, 1));
    EXPECT_EQ(text, expected.str());
}

template <class T>
std::string GetText(const T& element) {
    Value<T> value(1, false, element);
    std::string text = "before";
    EXPECT_TRUE(value.GetValueAsString(text));
    return text;
}

TEST(ValueTest, GetValueAsString_WritesEachTypeInItsForm) {
    EXPECT_EQ(GetText(1.5f), "1.5");
    EXPECT_EQ(GetText(-3), "-3");
    EXPECT_EQ(GetText(true), "1");
    EXPECT_EQ(GetText(false), "0");
    EXPECT_EQ(GetText(Vector2f(1, 2.5f)), "(1,2.5)");
    EXPECT_EQ(GetText(Vector3f(1, 2, 3)), "(1,2,3)");
    EXPECT_EQ(GetText(Vector4f(1, 2, 3, 4)), "(1,2,3,4)");
    EXPECT_EQ(GetText(Vector2i(1, 2)), "(1,2)");
    EXPECT_EQ(GetText(Vector3i(1, 2, 3)), "(1,2,3)");
    EXPECT_EQ(GetText(Vector4i(1, -2, 3, 4)), "(1,-2,3,4)");
    EXPECT_EQ(GetText(static_cast<KLprimitive>(7)), "7");
    EXPECT_EQ(GetText(static_cast<KLtexture>(nullptr)), "0");
    std::ostringstream expected;
    expected << Matrix33f(2.0f);
    EXPECT_EQ(GetText(Matrix33f(2.0f)), expected.str());
}

TEST(ValueTest, CreateValue_OfATypeThatIsNoElement_GivesNull) {
    for (const TypeSpecifier specifier :
         {kType_Void, kType_BVec2, kType_BVec3, kType_BVec4, kType_Mat2, kType_Sampler3D,
          kType_SamplerCube, kType_UserDefined, static_cast<TypeSpecifier>(99)}) {
        EXPECT_EQ(CreateValue(nullptr, specifier, 1, false), nullptr) << specifier;
    }
}

TEST(ValueTest, CreateValue_OfANegativeLength_FailsACheck) {
    const CapturedChecks checks;

    EXPECT_EQ(CreateValue(nullptr, kType_Int, -1, false), nullptr);

    EXPECT_TRUE(checks.Contains("nValues >=0", "Source/Value"));
}

} // namespace Tests
} // namespace Tolen::Effects
