#include "TolenOpenKLWrapper/Scoped.h"

#include "support/RecordingContext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tolen::Tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kRead = KLBufferMapping::kAccess_Read;
constexpr auto kWrite = KLBufferMapping::kAccess_Write;
constexpr auto kBlock = KLBufferMapping::kBindPoint_UniformBlock;

class ScopedTest : public testing::Test {
protected:
    IKLBuffer* _MakeBuffer(long bytes) {
        IKLBuffer* const buffer = context.CreateBuffer();
        buffer->Init(0, bytes);
        return buffer;
    }

    RecordingContext context;
};

TEST_F(ScopedTest, AutoBindKLPrimitive_BindsForItsScopeAndNests) {
    RecordingPrimitive primitive(context);
    {
        const AutoBindKLPrimitive outer(&primitive);
        const AutoBindKLPrimitive inner(&primitive);
        const AutoBindKLPrimitive none(nullptr);
        EXPECT_EQ(primitive.GetCountBound(), 2);
    }
    EXPECT_EQ(primitive.GetCountBound(), 0);
    EXPECT_THAT(context.GetLog().GetMisuses(), IsEmpty());
}

TEST_F(ScopedTest, AutoBindKLBuffer_RestoresTheEarlierBinding) {
    IKLBuffer* const first = _MakeBuffer(4);
    IKLBuffer* const second = _MakeBuffer(4);
    {
        const AutoBindKLBuffer outer(first, KL_UNIFORM_BUFFER);
        {
            const AutoBindKLBuffer inner(second, KL_UNIFORM_BUFFER);
            const AutoBindKLBuffer none(nullptr, KL_UNIFORM_BUFFER);
            EXPECT_EQ(first->GetBound(KL_UNIFORM_BUFFER), second);
            EXPECT_EQ(first->GetBound(KL_ARRAY_BUFFER), nullptr);
        }
        EXPECT_EQ(second->GetBound(KL_UNIFORM_BUFFER), first);
    }
    EXPECT_EQ(first->GetBound(KL_UNIFORM_BUFFER), nullptr);
}

TEST_F(ScopedTest, KLBufferMapping_GivesTheBytesForItsScope) {
    IKLBuffer* const buffer = _MakeBuffer(4);
    {
        const KLBufferMapping mapping(buffer, kWrite, kBlock);
        ASSERT_NE(mapping.GetMap(), nullptr);
        *static_cast<int*>(mapping.GetMap()) = 5;
        EXPECT_TRUE(context.GetBuffers()[0]->IsMapped());
    }
    EXPECT_FALSE(context.GetBuffers()[0]->IsMapped());
    EXPECT_THAT(context.GetBuffers()[0]->GetElements<int>(), ElementsAre(5));
    EXPECT_EQ(KLBufferMapping(nullptr, kRead, kBlock).GetMap(), nullptr);
    EXPECT_EQ(KLBufferMapping(context.CreateBuffer(), kRead, kBlock).GetMap(), nullptr);
    EXPECT_THAT(context.GetLog().GetMisuses(), IsEmpty());
}

TEST_F(ScopedTest, KLBufferSafeMapping_KnowsWhereItEnds) {
    const KLBufferSafeMapping<int> mapping(_MakeBuffer(11), kRead, kBlock);
    EXPECT_EQ(mapping.GetCount(), 2u);
    EXPECT_NE(mapping.Get(1), nullptr);
    EXPECT_EQ(mapping.Get(2), nullptr);
    EXPECT_EQ(KLBufferSafeMapping<int>(nullptr, kRead, kBlock).GetCount(), 0u);
}

TEST_F(ScopedTest, KLBufferMappingMultiple_MapsAllOrNone) {
    IKLBuffer* const first = _MakeBuffer(4);
    IKLBuffer* const second = _MakeBuffer(8);
    {
        const KLBufferMappingMultiple mapping({first, second}, kRead, kBlock);
        EXPECT_EQ(mapping.GetCount(), 2u);
        EXPECT_NE(mapping.GetMap(1), nullptr);
        EXPECT_EQ(mapping.GetMap(2), nullptr);
    }
    context.GetLog().FailNth("MapBuffer", 2);
    const KLBufferMappingMultiple mapping({first, second}, kRead, kBlock);
    EXPECT_EQ(mapping.GetCount(), 0u);
    EXPECT_FALSE(context.GetBuffers()[0]->IsMapped());
    EXPECT_FALSE(context.GetBuffers()[1]->IsMapped());
    EXPECT_THAT(context.GetLog().GetMisuses(), IsEmpty());
}

} // namespace
} // namespace Tolen::Tests
