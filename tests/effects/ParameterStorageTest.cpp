#include "ParameterStorage.h"
#include "IValue.h"
#include "ParameterStorageBuffer.h"
#include "ParameterStorageTexture.h"
#include "ParameterValueArray.h"

#include "effects/ElementSamples.h"
#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"

#include <gmock/gmock.h>

#include <climits>

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Tolen::Tests::CapturedChecks;
using Tolen::Tests::CapturedConsole;
using Tolen::Tests::RecordingContext;
using Tolen::Tests::RecordingPrimitive;
using Tolen::Tests::RecordingTexImage2D;

/// An array parameter of which storages want the name only.
class NamedArray : public ParameterValueArray {
public:
    std::string GetNameMangled() override { return "x_k1"; }
};

/// Counts what a storage tells, and answers as it is told to.
struct StorageListener {
    int countValue = 0;
    std::vector<int> lengths;
    bool answer = true;

    bool OnChangeValue() {
        ++countValue;
        return answer;
    }
    bool OnChangeLength(int length) {
        lengths.push_back(length);
        return answer;
    }
    void Listen(IStorage& storage) {
        FastDelegate0<bool> onValue = MakeDelegate(this, &StorageListener::OnChangeValue);
        FastDelegate1<int, bool> onLength = MakeDelegate(this, &StorageListener::OnChangeLength);
        storage.AddListenerChangeValue(onValue);
        storage.AddListenerChangeLength(onLength);
    }
};

class StorageFixture {
protected:
    void ExpectNothingLeft() {
        EXPECT_EQ(_context.GetCountLive(), 0);
        EXPECT_THAT(_context.GetLog().GetMisuses(), IsEmpty());
    }

    CapturedConsole _console;
    RecordingContext _context;
    RecordingPrimitive _primitive{_context};
    NamedArray _parameter;
    StorageListener _listener;
};

enum Place { kPlace_Memory, kPlace_Buffer };
constexpr Place kPlaces[] = {kPlace_Memory, kPlace_Buffer};

/// Both families that serve every type.
template <class T>
class ParameterStorageTypedTest : public ::testing::Test, protected StorageFixture {
protected:
    ~ParameterStorageTypedTest() override { ExpectNothingLeft(); }

    std::unique_ptr<IStorage> Make(Place place, int length, bool resizable = false) {
        const TypeSpecifier specifier = ElementType<T>::kSpecifier;
        return place == kPlace_Memory
                   ? CreateParameterStorage(&_context, specifier, length, resizable)
                   : CreateParameterStorageBuffer(&_context, &_parameter, specifier, length,
                                                  resizable);
    }

    static std::vector<T> GetElements(IStorage& storage) {
        std::vector<T> elements;
        T element = T();
        while (storage.Get(element, static_cast<int>(elements.size()))) {
            elements.push_back(element);
        }
        return elements;
    }

    const T _a = MakeSample<T>(1);
    const T _b = MakeSample<T>(2);
};
TYPED_TEST_SUITE(ParameterStorageTypedTest, ElementTypes, ElementTypeName);

TYPED_TEST(ParameterStorageTypedTest, Set_OfAnElement_RoundTripsAndTells) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 2);
        StorageListener listener;
        listener.Listen(*storage);

        EXPECT_TRUE(storage->Set(this->_a, 1));

        EXPECT_THAT(this->GetElements(*storage), ElementsAre(TypeParam(), this->_a));
        EXPECT_EQ(listener.countValue, 1);
    }
}

TYPED_TEST(ParameterStorageTypedTest, Set_OfAnArray_RoundTripsAndTellsOnce) {
    const std::array<TypeParam, 2> values = {this->_a, this->_b};
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 3);
        StorageListener listener;
        listener.Listen(*storage);

        EXPECT_TRUE(storage->Set(values.data(), 2));

        EXPECT_THAT(this->GetElements(*storage), ElementsAre(this->_a, this->_b, TypeParam()));
        EXPECT_EQ(listener.countValue, 1);
    }
}

TYPED_TEST(ParameterStorageTypedTest, Set_ThatTheValueRefuses_ChangesAndTellsNothing) {
    const std::array<TypeParam, 3> values = {this->_a, this->_a, this->_a};
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 2);
        StorageListener listener;
        listener.Listen(*storage);

        EXPECT_FALSE(storage->Set(this->_a, 2));
        EXPECT_FALSE(storage->Set(this->_a, -1));
        EXPECT_FALSE(storage->Set(values.data(), 3));
        EXPECT_FALSE(storage->Set(values.data(), -1));
        EXPECT_FALSE(storage->Set(static_cast<const TypeParam*>(nullptr), 2));

        EXPECT_THAT(this->GetElements(*storage), ElementsAre(TypeParam(), TypeParam()));
        EXPECT_EQ(listener.countValue, 0);
    }
}

TYPED_TEST(ParameterStorageTypedTest, SetAndGet_OfAnyOtherType_AnswerFalse) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 1);
        StorageListener listener;
        listener.Listen(*storage);

#define TOLEN_EXPECT_REFUSED(specifier, T, name, bytes)                                            \
    if constexpr (!std::is_same_v<T, TypeParam>) {                                                 \
        T other = MakeSample<T>(3);                                                                \
        EXPECT_FALSE(storage->Set(other, 0)) << name;                                              \
        EXPECT_FALSE(storage->Set(&other, 1)) << name;                                             \
        EXPECT_FALSE(storage->Get(other, 0)) << name;                                              \
        EXPECT_EQ(other, MakeSample<T>(3)) << name;                                                \
    }
        TOLEN_ELEMENT_TYPES(TOLEN_EXPECT_REFUSED)
#undef TOLEN_EXPECT_REFUSED
        IShader* shader = nullptr;
        EXPECT_FALSE(storage->Set(shader, 0));
        EXPECT_FALSE(storage->Set(&shader, 1));
        EXPECT_FALSE(storage->Get(shader, 0));

        EXPECT_EQ(listener.countValue, 0);
        EXPECT_THAT(this->GetElements(*storage), ElementsAre(TypeParam()));
    }
}

TYPED_TEST(ParameterStorageTypedTest, Get_OutsideTheLength_LeavesTheArgument) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 1);
        TypeParam element = this->_b;

        EXPECT_FALSE(storage->Get(element, 1));
        EXPECT_FALSE(storage->Get(element, -1));
        EXPECT_FALSE(storage->Get(element, INT_MAX));

        EXPECT_EQ(element, this->_b);
    }
}

TYPED_TEST(ParameterStorageTypedTest, SetLength_KeepsTheElementsAndTellsTheLength) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 1, true);
        storage->Set(this->_a, 0);
        StorageListener listener;
        listener.Listen(*storage);

        EXPECT_TRUE(storage->SetLength(2));

        EXPECT_EQ(storage->GetLength(), 2);
        TypeParam element = this->_b;
        EXPECT_TRUE(storage->Get(element, 0));
        EXPECT_EQ(element, this->_a);
        EXPECT_THAT(listener.lengths, ElementsAre(2));
        EXPECT_EQ(listener.countValue, 0);
    }
}

TYPED_TEST(ParameterStorageTypedTest, SetLength_OfAFixedStorage_TellsNothing) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 1);
        StorageListener listener;
        listener.Listen(*storage);

        EXPECT_FALSE(storage->SetLength(2));

        EXPECT_EQ(storage->GetLength(), 1);
        EXPECT_THAT(listener.lengths, IsEmpty());
    }
}

TYPED_TEST(ParameterStorageTypedTest, Set_WhenAListenerAnswersFalse_AnswersFalseAndKeepsTheValue) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 1);
        StorageListener listener;
        listener.answer = false;
        listener.Listen(*storage);

        EXPECT_FALSE(storage->Set(this->_a, 0));

        EXPECT_THAT(this->GetElements(*storage), ElementsAre(this->_a));
    }
}

TYPED_TEST(ParameterStorageTypedTest, Shutdown_LeavesNothingBehindAndRepeats) {
    for (const Place place : kPlaces) {
        const auto storage = this->Make(place, 1);

        storage->Shutdown();
        storage->Shutdown();

        EXPECT_EQ(storage->GetValue(), nullptr);
        EXPECT_EQ(storage->GetLength(), 0);
        EXPECT_FALSE(storage->Set(this->_a, 0));
        EXPECT_FALSE(storage->SetLength(1));
        EXPECT_FALSE(storage->Apply(&this->_primitive, nullptr, "u", 0));
    }
}

TYPED_TEST(ParameterStorageTypedTest, Apply_InMemory_TakesTheFormOfTheLength) {
    for (const int length : {0, 1, 2}) {
        const auto storage = this->Make(kPlace_Memory, length);
        this->_context.GetLog().Clear();

        EXPECT_TRUE(storage->Apply(&this->_primitive, nullptr, "u", 4));

        EXPECT_EQ(this->_context.GetLog().GetCount("SetUniform"), length == 1);
        EXPECT_EQ(this->_context.GetLog().GetCount("SetUniformArray"), length != 1);
    }
}

class ParameterStorageTest : public ::testing::Test, protected StorageFixture {
protected:
    ~ParameterStorageTest() override { ExpectNothingLeft(); }

    std::unique_ptr<IStorage> MakeTexture(TypeSpecifier specifier, int length,
                                          bool resizable = true) {
        return CreateParameterStorageTexture(&_context, &_parameter, specifier, length, resizable);
    }
    RecordingTexImage2D& GetImage() { return *_context.GetImages().at(0); }
};

TEST_F(ParameterStorageTest, Apply_InMemory_WritesTheElements) {
    const auto single = CreateParameterStorage(&_context, kType_Vec2, 1, false);
    single->Set(Vector2f(1, 2), 0);
    const auto many = CreateParameterStorage(&_context, kType_Bool, 3, false);
    const bool values[] = {true, false, true};
    many->Set(values, 3);

    EXPECT_TRUE(single->Apply(&_primitive, nullptr, "single", 0));
    EXPECT_TRUE(many->Apply(&_primitive, nullptr, "many", 1));

    EXPECT_EQ(_primitive.GetUniform("single"), "vec2 (1,2)");
    EXPECT_EQ(_primitive.GetUniform("many"), "bool[3] true false true");
}

TEST_F(ParameterStorageTest, Apply_InMemory_OfANegativeLength_SendsNoElements) {
    const auto storage = CreateParameterStorage(&_context, kType_Int, -2, true);

    EXPECT_EQ(storage->GetLength(), -2);
    EXPECT_TRUE(storage->Apply(&_primitive, nullptr, "u", 0));

    EXPECT_EQ(_primitive.GetUniform("u"), "int[0]");
}

TEST_F(ParameterStorageTest, Apply_AtANegativeLocation_AnswersFalse) {
    const auto storage = CreateParameterStorage(&_context, kType_Int, 1, false);

    EXPECT_FALSE(storage->Apply(&_primitive, nullptr, "u", -1));
    EXPECT_FALSE(storage->Apply(nullptr, nullptr, "u", 0));
}

TEST_F(ParameterStorageTest, Apply_OfABuffer_PointsTheBlockAtItUnderTheMangledName) {
    const auto storage = CreateParameterStorageBuffer(&_context, &_parameter, kType_Int, 3, false);
    _context.GetLog().Clear();

    EXPECT_TRUE(storage->Apply(&_primitive, nullptr, "other", 2));

    EXPECT_THAT(_context.GetLog().GetLines(),
                ElementsAre("SetUniformBlock primitive1 \"x_k1\" @2 block buffer1"));
}

TEST_F(ParameterStorageTest, Apply_OfABuffer_ThatThePrimitiveRefuses_Reports) {
    const auto storage = CreateParameterStorageBuffer(&_context, &_parameter, kType_Int, 3, false);

    EXPECT_FALSE(storage->Apply(&_primitive, nullptr, "u", -1));

    EXPECT_EQ(_console.GetGeneral(),
              "ParameterStorageApplyBuffer::Apply: Set Uniform Block failed (x_k1)\n");
}

TEST_F(ParameterStorageTest, Apply_WithoutABuffer_ReportsAndAnswersTrue) {
    const auto storage = CreateParameterStorageBuffer(nullptr, &_parameter, kType_Int, 3, false);

    EXPECT_TRUE(storage->Apply(&_primitive, nullptr, "u", 0));

    EXPECT_EQ(_console.GetAll(), "ParameterStorageApplyBuffer::Apply: Set Uniform Block impossible "
                                 "(x_k1) (NULL buffer)\n");
}

TEST_F(ParameterStorageTest, CreateBuffer_ThatTheContextRefuses_GivesNull) {
    for (const char* operation : {"CreateBuffer", "BufferInit"}) {
        _context.GetLog().FailNth(operation);
        EXPECT_EQ(CreateParameterStorageBuffer(&_context, &_parameter, kType_Int, 3, false),
                  nullptr)
            << operation;
        EXPECT_EQ(_context.GetCountLive(), 0) << operation;
    }
}

TEST_F(ParameterStorageTest, SetLength_ThatTheBufferRefuses_TellsNothing) {
    const auto storage = CreateParameterStorageBuffer(&_context, &_parameter, kType_Int, 3, true);
    _listener.Listen(*storage);
    _context.GetLog().FailNth("BufferResize");

    EXPECT_FALSE(storage->SetLength(5));

    EXPECT_EQ(storage->GetLength(), 3);
    EXPECT_THAT(_listener.lengths, IsEmpty());
}

TEST_F(ParameterStorageTest, Bools_InABuffer_AreWidened) {
    const auto storage = CreateParameterStorageBuffer(&_context, &_parameter, kType_Bool, 4, false);
    const bool values[] = {true, false, true, true};

    EXPECT_TRUE(storage->Set(values, 4));

    EXPECT_THAT(_context.GetBuffers().at(0)->GetElements<int>(), ElementsAre(1, 0, 1, 1));
}

TEST_F(ParameterStorageTest, Create_OfATypeThatIsNoElement_GivesNull) {
    for (const TypeSpecifier specifier : {kType_Void, kType_BVec2, kType_Mat2, kType_UserDefined}) {
        EXPECT_EQ(CreateParameterStorage(&_context, specifier, 1, false), nullptr);
        EXPECT_EQ(CreateParameterStorageBuffer(&_context, &_parameter, specifier, 1, false),
                  nullptr);
        EXPECT_EQ(MakeTexture(specifier, 1), nullptr);
    }
}

TEST_F(ParameterStorageTest, Listener_MayDestroyTheStorage) {
    struct Killer {
        std::unique_ptr<IStorage> storage;
        bool OnChangeValue() {
            storage.reset();
            return true;
        }
    } killer;
    killer.storage = CreateParameterStorage(&_context, kType_Int, 1, false);
    FastDelegate0<bool> listener = MakeDelegate(&killer, &Killer::OnChangeValue);
    killer.storage->AddListenerChangeValue(listener);

    EXPECT_TRUE(killer.storage->Set(1, 0));

    EXPECT_EQ(killer.storage, nullptr);
}

TEST_F(ParameterStorageTest, Texture_HasTheGeometryOfItsLength) {
    struct Case {
        int length, width, height;
    };
    for (const Case& c : {Case{0, 1, 1}, Case{1, 1, 1}, Case{2, 2, 1}, Case{3, 4, 1}, Case{5, 8, 1},
                          Case{511, 512, 1}, Case{512, 512, 1}, Case{513, 512, 1},
                          Case{600, 512, 1}, Case{1023, 512, 1}, Case{1024, 512, 2},
                          Case{1100, 512, 2}, Case{1536, 512, 4}, Case{2049, 512, 4}}) {
        const auto storage = MakeTexture(kType_Float, c.length);
        ASSERT_NE(storage, nullptr) << c.length;
        EXPECT_EQ(GetImage().GetWidth(), c.width) << c.length;
        EXPECT_EQ(GetImage().GetHeight(), c.height) << c.length;
        EXPECT_EQ(storage->GetLength(), c.length);
        EXPECT_EQ(storage->GetValue()->GetLength(), c.width * c.height) << c.length;
    }
}

TEST_F(ParameterStorageTest, Texture_ThatIsTooLargeToCount_IsRefused) {
    EXPECT_FALSE(TextureGeometry::Of(INT_MAX));
    EXPECT_EQ(MakeTexture(kType_Float, INT_MAX), nullptr);
}

TEST_F(ParameterStorageTest, Texture_OfANegativeLength_FailsACheck) {
    const CapturedChecks checks;

    EXPECT_EQ(MakeTexture(kType_Float, -1), nullptr);

    EXPECT_TRUE(checks.Contains("nValues >= 0", "Source/ParameterStorageTexture"));
}

TEST_F(ParameterStorageTest, Texture_ShowsWritesInTheFormatOfItsType) {
    const auto scalars = MakeTexture(kType_Float, 2);
    const float numbers[] = {1, 2};
    EXPECT_TRUE(scalars->Set(numbers, 2));
    const auto pairs = MakeTexture(kType_Vec2, 2);
    const Vector2f twos[] = {Vector2f(1, 2), Vector2f(3, 4)};
    EXPECT_TRUE(pairs->Set(twos, 2));
    EXPECT_TRUE(pairs->Set(Vector2f(5, 6), 1));
    const auto triples = MakeTexture(kType_Vec3, 1);
    EXPECT_TRUE(triples->Set(Vector3f(1, 2, 3), 0));
    const auto quads = MakeTexture(kType_Vec4, 1);
    EXPECT_TRUE(quads->Set(Vector4f(1, 2, 3, 4), 0));

    const auto images = _context.GetImages();
    EXPECT_THAT(images.at(0)->GetTexels(), ElementsAre(1, 2));
    EXPECT_THAT(images.at(1)->GetTexels(), ElementsAre(1, 2, 0, 5, 6, 0));
    EXPECT_THAT(images.at(2)->GetTexels(), ElementsAre(1, 2, 3));
    EXPECT_THAT(images.at(3)->GetTexels(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(_context.GetLog().GetLines("TexImage2DInit"),
                ElementsAre("TexImage2DInit image1 2x1 format 6 wrap 0x2901 filters 0x2600 0x2600 "
                            "borrow",
                            "TexImage2DInit image2 2x1 format 4 wrap 0x2901 filters 0x2600 0x2600 "
                            "borrow",
                            "TexImage2DInit image3 1x1 format 4 wrap 0x2901 filters 0x2600 0x2600 "
                            "borrow",
                            "TexImage2DInit image4 1x1 format 5 wrap 0x2901 filters 0x2600 0x2600 "
                            "borrow"));
    Vector2f pair;
    EXPECT_TRUE(pairs->Get(pair, 1));
    EXPECT_EQ(pair, Vector2f(5, 6));
    EXPECT_FALSE(pairs->Get(pair, 2));
    EXPECT_FALSE(pairs->Set(twos, 3));
    EXPECT_FALSE(pairs->Set(Vector3f(), 0));
}

TEST_F(ParameterStorageTest, Texture_SetLengthWithinTheGeometry_ChangesAndTellsNothing) {
    const auto storage = MakeTexture(kType_Float, 3);
    _listener.Listen(*storage);

    EXPECT_TRUE(storage->SetLength(3));
    EXPECT_TRUE(storage->SetLength(4));

    EXPECT_EQ(storage->GetLength(), 3);
    EXPECT_THAT(_listener.lengths, IsEmpty());
    EXPECT_EQ(_context.GetLog().GetCount("CreateTexImage2D"), 1);
}

TEST_F(ParameterStorageTest, Texture_SetLengthToAnotherGeometry_MakesAnotherImage) {
    const auto storage = MakeTexture(kType_Float, 2);
    const float numbers[] = {1, 2};
    storage->Set(numbers, 2);
    _listener.Listen(*storage);

    EXPECT_TRUE(storage->SetLength(5));

    EXPECT_EQ(storage->GetLength(), 5);
    EXPECT_THAT(_listener.lengths, ElementsAre(5));
    EXPECT_THAT(GetImage().GetTexels(), ElementsAre(1, 2, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(_context.GetCountLive(), 1);
}

TEST_F(ParameterStorageTest, Texture_WhoseImageFails_ShutsDown) {
    for (const char* operation : {"CreateTexImage2D", "TexImage2DInit"}) {
        _context.GetLog().FailNth(operation);
        EXPECT_EQ(MakeTexture(kType_Float, 2), nullptr) << operation;
        EXPECT_EQ(_context.GetCountLive(), 0) << operation;

        const auto storage = MakeTexture(kType_Float, 2);
        _context.GetLog().FailNth(operation);
        EXPECT_FALSE(storage->SetLength(9)) << operation;
        EXPECT_EQ(storage->GetValue(), nullptr) << operation;
        EXPECT_EQ(storage->GetLength(), 0) << operation;
        EXPECT_EQ(_context.GetCountLive(), 0) << operation;
    }
}

TEST_F(ParameterStorageTest, Texture_ApplyWritesTheSamplerAndTheWidth) {
    const auto storage = MakeTexture(kType_Float, 3);
    IKLShader* shader = _context.CreateShader(IKLShader::kType_Ray);
    shader->SetString("uniform sampler2D x_k1; uniform int x_k1Width;", nullptr);
    IKLProgram* program = _context.CreateProgram();
    program->AddShader(shader);
    program->Link(nullptr);

    EXPECT_TRUE(storage->Apply(&_primitive, program, "u", 0));
    EXPECT_EQ(_primitive.GetUniform("x_k1"), "texture image1");
    EXPECT_EQ(_primitive.GetUniform("x_k1Width"), "int 4");

    EXPECT_FALSE(storage->Apply(&_primitive, program, "u", -1));
    EXPECT_EQ(_console.GetGeneral(), "ParameterStorageApplyTexture::Apply Set Uniform\n");
    _console.Clear();
    _context.SetUnused("x_k1Width");
    program->Link(nullptr);
    EXPECT_FALSE(storage->Apply(&_primitive, program, "u", 0));
    EXPECT_EQ(_console.GetAll(), "");

    _context.DestroyProgram(program);
    _context.DestroyShader(shader);
}

} // namespace Tolen::Effects::Tests
