#include "LocalParameterValueSingle.h"

#include "FacadeParameterValueSingle.h"
#include "ReferenceParameterValueSingle.h"

#include "effects/ElementSamples.h"
#include "effects/ParameterFixture.h"

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;

using Parameter = ParameterValueSingleSeparate;
using Listener = CountingListener<ILocalParameter>;

/// A reference that knows its parameter and is in no graph.
class LooseReference : public ReferenceParameterValueSingle {
public:
    explicit LooseReference(IParameter* parameter) : _pParameter(parameter) {}

    bool IsComplete(Result*) const override { return true; }
    bool Apply(IKLPrimitive*, IKLProgram*) override { return true; }
    IParameter* GetParameter() override { return _pParameter; }
    IGraph* GetGraph() override { return nullptr; }

private:
    IParameter* _pParameter;
};

class LocalParameterValueSingleTest : public ParameterFixture {};

template <class T>
class LocalParameterValueSingleTypedTest : public ParameterFixture {
protected:
    std::unique_ptr<Parameter> MakeTyped() {
        const char* keyword = TypeSpecifierToString(ElementType<T>::kSpecifier);
        return this->template Make<Parameter>(std::string("input ") + keyword + " x;");
    }

    const T _a = MakeSample<T>(1);
    const T _b = MakeSample<T>(2);
};
TYPED_TEST_SUITE(LocalParameterValueSingleTypedTest, ElementTypes, ElementTypeName);

TYPED_TEST(LocalParameterValueSingleTypedTest, Init_StartsWithTheSharedValueAndGoesItsOwnWay) {
    const auto parameter = this->MakeTyped();
    ASSERT_NE(parameter, nullptr);
    ASSERT_TRUE(parameter->Set(this->_a));
    LooseReference reference(parameter.get());
    LocalParameterValueSingle local;
    ASSERT_TRUE(local.Init(&this->_primitive, &reference));
    ILocalParameter& client = local;
    TypeParam value = TypeParam();

    EXPECT_TRUE(client.Get(value));
    EXPECT_EQ(value, this->_a);
    EXPECT_TRUE(client.Set(this->_b));
    EXPECT_TRUE(client.Get(value, 0));
    EXPECT_EQ(value, this->_b);
    EXPECT_TRUE(client.Set(this->_a, 0));
    EXPECT_TRUE(client.Set(&this->_b, 1));
    EXPECT_TRUE(client.Get(value));
    EXPECT_EQ(value, this->_b);
    EXPECT_FALSE(client.Set(this->_a, 1));
    EXPECT_FALSE(client.Get(value, 1));

    EXPECT_TRUE(parameter->Get(value));
    EXPECT_EQ(value, this->_a);
}

TYPED_TEST(LocalParameterValueSingleTypedTest, SetAndGet_OfAnyOtherType_AreRefused) {
    const auto parameter = this->MakeTyped();
    ASSERT_NE(parameter, nullptr);
    LooseReference reference(parameter.get());
    LocalParameterValueSingle local;
    ASSERT_TRUE(local.Init(&this->_primitive, &reference));
    ILocalParameter& client = local;

#define TOLEN_EXPECT_REFUSED(specifier, T, name, bytes)                                            \
    if constexpr (!std::is_same_v<T, TypeParam>) {                                                 \
        T other = MakeSample<T>(3);                                                                \
        EXPECT_FALSE(client.Set(other)) << name;                                                   \
        EXPECT_FALSE(client.Set(other, 0)) << name;                                                \
        EXPECT_FALSE(client.Set(&other, 1)) << name;                                               \
        EXPECT_FALSE(client.Get(other)) << name;                                                   \
    }
    TOLEN_ELEMENT_TYPES(TOLEN_EXPECT_REFUSED)
#undef TOLEN_EXPECT_REFUSED
    IShader* shader = nullptr;
    std::string text;
    EXPECT_FALSE(client.Set(shader));
    EXPECT_FALSE(client.Set(shader, 0));
    EXPECT_FALSE(client.Set(&shader, 1));
    EXPECT_FALSE(client.Get(shader));
    EXPECT_FALSE(client.Set(text));
    EXPECT_FALSE(client.Get(text));
}

TEST_F(LocalParameterValueSingleTest, Apply_WritesTheLocalValueAtTheLocation) {
    const auto parameter = Make<Parameter>("input vec3 x = vec3(1);");
    LooseReference reference(parameter.get());
    LocalParameterValueSingle local;
    ASSERT_TRUE(local.Init(&_primitive, &reference));
    local.Set(Vector3f(1, 2, 3));

    EXPECT_TRUE(local.Apply(&_primitive, nullptr, 5));

    EXPECT_THAT(_context.GetLog().GetLines("SetUniform"),
                ElementsAre("SetUniform primitive1 \"x\" @5 vec3 (1,2,3)"));
    EXPECT_EQ(local.GetKLPrimitive(), &_primitive);
    EXPECT_EQ(local.GetReferenceParameter(), &reference);
}

TEST_F(LocalParameterValueSingleTest, Init_OfATypeThatCantBeLocal_Fails) {
    for (const char* keyword : {"sampler3D", "samplerCube"}) {
        const auto parameter = Make<Parameter>(std::string("input ") + keyword + " x;");
        LooseReference reference(parameter.get());
        LocalParameterValueSingle local;
        _console.Clear();
        EXPECT_FALSE(local.Init(&_primitive, &reference)) << keyword;
        EXPECT_EQ(_console.GetGeneral(), "LocalParameterValueSingle::Init TypeSpecifier\n");
    }
}

TEST_F(LocalParameterValueSingleTest, Shutdown_TellsTheDeleteListenersOnce) {
    const auto parameter = Make<Parameter>("input float x;");
    LooseReference reference(parameter.get());
    Listener heard;
    Listener removed;
    {
        LocalParameterValueSingle local;
        ASSERT_TRUE(local.Init(&_primitive, &reference));
        EXPECT_TRUE(local.AddListenerDelete(heard.Get()));
        EXPECT_TRUE(local.AddListenerDelete(removed.Get()));
        EXPECT_TRUE(local.RemoveListenerDelete(removed.Get()));

        local.Shutdown();

        EXPECT_EQ(heard.GetCount(), 1);
        EXPECT_EQ(local.GetReferenceParameter(), nullptr);
        EXPECT_EQ(local.GetKLPrimitive(), nullptr);
        EXPECT_FALSE(local.Set(1.0f));
        EXPECT_FALSE(local.Apply(&_primitive, nullptr, 0));
    }
    EXPECT_EQ(heard.GetCount(), 1);
    EXPECT_EQ(removed.GetCount(), 0);
}

TEST_F(LocalParameterValueSingleTest, AcquireLocal_GivesOneForEachPrimitive) {
    const auto parameter = Make<Parameter>("input float x = 2;");
    LooseReference reference(parameter.get());
    Tolen::Tests::RecordingPrimitive other(_context);
    Listener deleted;

    ILocalParameter* local = reference.AcquireLocal(&_primitive);
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(reference.AcquireLocal(&_primitive), local);
    EXPECT_NE(reference.AcquireLocal(&other), local);
    local->AddListenerDelete(deleted.Get());
    reference.ReleaseLocal(local);

    EXPECT_EQ(deleted.GetCount(), 1);
}

} // namespace Tolen::Effects::Tests
