#include "ValueBuffer.h"

#include "effects/ElementSamples.h"
#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"

#include <gmock/gmock.h>

#include <climits>
#include <memory>

namespace Tolen::Effects::Tests {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tolen::Tests::CapturedConsole;
using Tolen::Tests::RecordingBuffer;
using Tolen::Tests::RecordingContext;

template <class T>
std::vector<T> GetElements(const ValueBuffer<T>& value, int length) {
    std::vector<T> elements;
    elements.reserve(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
        elements.push_back(value.Get(i));
    }
    return elements;
}

template <class T>
class ValueBufferTypedTest : public ::testing::Test {
protected:
    ~ValueBufferTypedTest() override {
        EXPECT_EQ(_context.GetCountLive(), 0);
        EXPECT_THAT(_context.GetLog().GetMisuses(), IsEmpty());
    }

    static constexpr long kWidth = sizeof(typename ElementType<T>::Buffer);

    CapturedConsole _console;
    RecordingContext _context;
    const T _a = MakeSample<T>(1);
    const T _b = MakeSample<T>(2);
};
TYPED_TEST_SUITE(ValueBufferTypedTest, ElementTypes, ElementTypeName);

TYPED_TEST(ValueBufferTypedTest, New_WritesTheDefaultInOneGo) {
    ValueBuffer<TypeParam> value(&this->_context, 3, false, this->_a);

    EXPECT_EQ(value.GetLength(), 3);
    EXPECT_EQ(value.GetTypeSpecifier(), ElementType<TypeParam>::kSpecifier);
    EXPECT_STREQ(value.GetTypeName(), ElementType<TypeParam>::kName);
    EXPECT_EQ(value.GetBuffer()->GetSize(), 3 * this->kWidth);
    EXPECT_EQ(this->_context.GetLog().GetCount("BufferSubData"), 1);
    EXPECT_THAT(GetElements(value, 3), Each(this->_a));
}

TYPED_TEST(ValueBufferTypedTest, New_OfNoElements_HasRoomForOne) {
    ValueBuffer<TypeParam> value(&this->_context, 0, false, this->_a);

    EXPECT_EQ(value.GetLength(), 0);
    EXPECT_EQ(value.GetBuffer()->GetSize(), this->kWidth);
    EXPECT_EQ(this->_context.GetLog().GetCount("BufferSubData"), 0);
}

TYPED_TEST(ValueBufferTypedTest, Set_WritesOneElementWithoutMapping) {
    ValueBuffer<TypeParam> value(&this->_context, 3, false, this->_a);
    this->_context.GetLog().Clear();

    EXPECT_TRUE(value.Set(this->_b, 1));

    EXPECT_EQ(this->_context.GetLog().GetCount("BufferSubData"), 1);
    EXPECT_EQ(this->_context.GetLog().GetCount("MapBuffer"), 0);
    EXPECT_THAT(GetElements(value, 3), ElementsAre(this->_a, this->_b, this->_a));
}

TYPED_TEST(ValueBufferTypedTest, Set_OutsideTheLength_TellsTypeAndIndex) {
    ValueBuffer<TypeParam> value(&this->_context, 1, false, this->_a);
    const std::string head = std::string("ValueBuffer<") + ElementType<TypeParam>::kName;

    EXPECT_FALSE(value.Set(this->_b, -1));
    EXPECT_EQ(this->_console.GetErrors(), head + ">::Set Index (-1) Out of Bounds\n");
    this->_console.Clear();
    EXPECT_FALSE(value.Set(this->_b, 1));
    EXPECT_EQ(this->_console.GetErrors(), head + ">::Set Index (1) Out of Bounds\n");

    EXPECT_THAT(GetElements(value, 1), ElementsAre(this->_a));
}

TYPED_TEST(ValueBufferTypedTest, SetLength_OfAFixedValue_ReportsAndChangesNothing) {
    ValueBuffer<TypeParam> value(&this->_context, 1, false, this->_a);

    EXPECT_FALSE(value.SetLength(2));

    EXPECT_EQ(value.GetLength(), 1);
    EXPECT_EQ(this->_console.GetErrors(), std::string("ValueBuffer<") +
                                              ElementType<TypeParam>::kName +
                                              ">::SetLength Not Resizable\n");
}

TYPED_TEST(ValueBufferTypedTest, SetLength_KeepsTheFirstElements) {
    ValueBuffer<TypeParam> value(&this->_context, 2, true, this->_a);
    value.Set(this->_b, 1);

    EXPECT_TRUE(value.SetLength(3));

    EXPECT_EQ(value.GetLength(), 3);
    EXPECT_EQ(value.GetBuffer()->GetSize(), 3 * this->kWidth);
    EXPECT_THAT(GetElements(value, 2), ElementsAre(this->_a, this->_b));
}

TYPED_TEST(ValueBufferTypedTest, Get_WithoutABuffer_GivesTheDefaultOfTheType) {
    const ValueBuffer<TypeParam> value(nullptr, 1, false, this->_a);

    EXPECT_EQ(value.Get(0), TypeParam());
    EXPECT_EQ(this->_console.GetAll(), "");
}

TYPED_TEST(ValueBufferTypedTest, GetValueAsString_ReadsTheBuffer) {
    ValueBuffer<TypeParam> value(&this->_context, 1, false, this->_a);
    std::string text;

    EXPECT_TRUE(value.GetValueAsString(text));
    EXPECT_NE(text, "");
    EXPECT_FALSE(value.GetValueAsString(text, 1));
    EXPECT_EQ(this->_console.GetErrors(), "ValueBuffer<T>::GetValueAsString Index Out of Bounds\n");
    EXPECT_FALSE(value.GetValueAsString(text, -1));
}

class ValueBufferTest : public ::testing::Test {
protected:
    ~ValueBufferTest() override {
        EXPECT_EQ(_context.GetCountLive(), 0);
        EXPECT_THAT(_context.GetLog().GetMisuses(), IsEmpty());
    }

    CapturedConsole _console;
    RecordingContext _context;
};

TEST_F(ValueBufferTest, SetArray_AtAnOffset_IsCheckedAgainstTheLength) {
    ValueBuffer<int> value(&_context, 2, false, 0);
    const int values[] = {5, 6};

    EXPECT_TRUE(value.SetArray(values, 1, 1));
    EXPECT_FALSE(value.SetArray(values, 2, 1));

    EXPECT_THAT(GetElements(value, 2), ElementsAre(0, 5));
    EXPECT_EQ(_console.GetErrors(), "ValueBuffer<T>::SetArray Length Overflow\n");
}

TEST_F(ValueBufferTest, SetArray_OfAWholeRange_IsOneWrite) {
    ValueBuffer<float> value(&_context, 3, false, 0.0f);
    const float values[] = {1, 2, 3};
    _context.GetLog().Clear();

    EXPECT_TRUE(value.SetArray(values, 3));

    EXPECT_THAT(_context.GetLog().GetLines("BufferSubData"),
                ElementsAre("BufferSubData buffer1 0 12"));
    EXPECT_THAT(GetElements(value, 3), ElementsAre(1, 2, 3));
}

TEST_F(ValueBufferTest, SetArray_WithNegativeOrHugeNumbers_Overflows) {
    ValueBuffer<int> value(&_context, 2, false, 7);
    const int values[] = {1, 2};

    EXPECT_FALSE(value.SetArray(values, -1, 1));
    EXPECT_FALSE(value.SetArray(values, 1, -1));
    EXPECT_FALSE(value.SetArray(values, INT_MAX, INT_MAX));

    EXPECT_THAT(GetElements(value, 2), Each(7));
    EXPECT_EQ(_console.GetErrors(), "ValueBuffer<T>::SetArray Length Overflow\n"
                                    "ValueBuffer<T>::SetArray Length Overflow\n"
                                    "ValueBuffer<T>::SetArray Length Overflow\n");
}

TEST_F(ValueBufferTest, Bools_AreIntegersInTheBuffer) {
    ValueBuffer<bool> value(&_context, 2, false, true);
    value.Set(false, 0);

    const auto* buffer = static_cast<RecordingBuffer*>(value.GetBuffer());
    EXPECT_THAT(buffer->GetElements<int>(), ElementsAre(0, 1));
    const int values[] = {1, 0};
    EXPECT_TRUE(value.SetArray(reinterpret_cast<const bool*>(values), 2));
    EXPECT_THAT(buffer->GetElements<int>(), ElementsAre(1, 0));
    EXPECT_THAT(GetElements(value, 2), ElementsAre(true, false));
}

TEST_F(ValueBufferTest, Writes_LeaveWhatIsBoundAsItWas) {
    ValueBuffer<int> other(&_context, 1, false, 0);
    ValueBuffer<int> value(&_context, 1, false, 0);
    EXPECT_EQ(value.GetBuffer()->GetBound(KL_UNIFORM_BUFFER), nullptr);
    other.GetBuffer()->Bind(KL_UNIFORM_BUFFER);

    value.Set(1, 0);

    EXPECT_EQ(value.GetBuffer()->GetBound(KL_UNIFORM_BUFFER), other.GetBuffer());
}

TEST_F(ValueBufferTest, New_WhenTheContextGivesNoBuffer_ReportsAndHasNone) {
    _context.GetLog().FailNth("CreateBuffer");
    ValueBuffer<int> value(&_context, 2, true, 7);

    EXPECT_EQ(value.GetBuffer(), nullptr);
    EXPECT_EQ(value.GetLength(), 2);
    EXPECT_FALSE(value.Set(1, 0));
    EXPECT_EQ(_console.GetErrors(), "ValueBuffer<T>::_SetLength CreateBuffer\n");
}

TEST_F(ValueBufferTest, SetLength_AfterTheContextGaveNoBuffer_MakesOne) {
    _context.GetLog().FailNth("CreateBuffer");
    ValueBuffer<int> value(&_context, 2, true, 7);

    EXPECT_TRUE(value.SetLength(1));

    ASSERT_NE(value.GetBuffer(), nullptr);
    EXPECT_EQ(value.GetBuffer()->GetSize(), 4);
}

TEST_F(ValueBufferTest, New_WhenTheBufferRefusesTheSize_ReportsAndHasNone) {
    _context.GetLog().FailNth("BufferInit");
    ValueBuffer<int> value(&_context, 2, true, 7);

    EXPECT_EQ(value.GetBuffer(), nullptr);
    EXPECT_EQ(_console.GetErrors(), "ValueBuffer<T>::_SetLength Buffer Init\n");
}

TEST_F(ValueBufferTest, SetLength_WhenTheBufferRefusesTheSize_KeepsTheLength) {
    ValueBuffer<int> value(&_context, 2, true, 7);
    _context.GetLog().FailNth("BufferResize");

    EXPECT_FALSE(value.SetLength(4));

    EXPECT_EQ(value.GetLength(), 2);
    EXPECT_THAT(GetElements(value, 2), Each(7));
    EXPECT_EQ(_console.GetErrors(), "ValueBuffer<T>::_SetLength Buffer Init\n");
}

TEST_F(ValueBufferTest, SetLength_ToZero_KeepsRoomForOneElement) {
    ValueBuffer<int> value(&_context, 2, true, 7);

    EXPECT_TRUE(value.SetLength(0));

    EXPECT_EQ(value.GetLength(), 0);
    EXPECT_EQ(value.GetBuffer()->GetSize(), 4);
    EXPECT_FALSE(value.Set(1, 0));
}

TEST_F(ValueBufferTest, Get_WhenTheBufferCantBeMapped_GivesTheDefaultOfTheType) {
    const ValueBuffer<Matrix33f> value(&_context, 1, false, Matrix33f(2.0f));
    _context.GetLog().FailAll("MapBuffer");

    EXPECT_EQ(value.Get(0), Matrix33f());
    _context.GetLog().FailNone();
    EXPECT_EQ(value.Get(0), Matrix33f(2.0f));
}

} // namespace Tolen::Effects::Tests
