#include "RenderFixture.h"

#include <cstring>
#include <limits>

namespace Tolen::OpenKL {
namespace {

TEST(Buffer, Init_GivesZerosOnce) {
    RenderFixture scene;
    IKLBuffer* const buffer = scene.pContext->CreateBuffer();
    EXPECT_EQ(0, buffer->GetSize());
    EXPECT_EQ(nullptr, buffer->Map(0, 4));
    EXPECT_FALSE(buffer->Init(0, 0));
    EXPECT_FALSE(buffer->Init(0, -4));
    EXPECT_FALSE(buffer->Init(4, 4));
    EXPECT_FALSE(buffer->Init(0, std::numeric_limits<long>::max()));
    EXPECT_FALSE(buffer->Resize(0, 8, true)) << "there is no storage yet";
    ASSERT_TRUE(buffer->Init(0, 8));
    EXPECT_FALSE(buffer->Init(0, 8));
    EXPECT_EQ(8, buffer->GetSize());
    const auto* const bytes = static_cast<const char*>(buffer->Map(0, 4));
    ASSERT_NE(nullptr, bytes);
    EXPECT_EQ(std::string(8, '\0'), std::string(bytes, 8));
    buffer->Unmap();
    buffer->Unmap();
}

TEST(Buffer, Resize_KeepsWhatFitsOrNothing) {
    RenderFixture scene;
    IKLBuffer* const buffer = scene.pContext->CreateBuffer();
    ASSERT_TRUE(buffer->Init(0, 4));
    const auto read = [&] {
        const KLBufferMapping map(buffer, KLBufferMapping::kAccess_Read,
                                  KLBufferMapping::kBindPoint_UniformBlock);
        return std::string(static_cast<const char*>(map.GetMap()),
                           static_cast<std::size_t>(buffer->GetSize()));
    };
    {
        const KLBufferMapping map(buffer, KLBufferMapping::kAccess_Write,
                                  KLBufferMapping::kBindPoint_UniformBlock);
        std::memcpy(map.GetMap(), "abcd", 4);
        EXPECT_FALSE(buffer->Resize(0, 8, true)) << "while it is mapped";
    }
    EXPECT_TRUE(buffer->Resize(0, 6, true));
    EXPECT_EQ(std::string("abcd\0\0", 6), read());
    EXPECT_TRUE(buffer->Resize(0, 2, true));
    EXPECT_EQ("ab", read());
    EXPECT_TRUE(buffer->Resize(0, 3, false));
    EXPECT_EQ(std::string(3, '\0'), read());
    EXPECT_FALSE(buffer->Resize(0, 0, true));
    EXPECT_FALSE(buffer->Resize(0, std::numeric_limits<long>::max(), true));
    EXPECT_EQ(3, buffer->GetSize());
}

TEST(Buffer, SubData_OutsideTheBuffer_IsDroppedWhole) {
    RenderFixture scene;
    IKLBuffer* const buffer = scene.pContext->CreateBuffer();
    ASSERT_TRUE(buffer->Init(0, 4));
    klBufferSubData(KL_UNIFORM_BUFFER, 0, 4, "none");
    const AutoBindKLBuffer bind(buffer, KL_UNIFORM_BUFFER);
    klBufferSubData(KL_ARRAY_BUFFER, 0, 4, "none");
    klBufferSubData(KL_UNIFORM_BUFFER, 0, 4, "good");
    klBufferSubData(KL_UNIFORM_BUFFER, 1, 4, "bad!");
    klBufferSubData(KL_UNIFORM_BUFFER, -1, 2, "bad!");
    klBufferSubData(KL_UNIFORM_BUFFER, 0, -1, "bad!");
    klBufferSubData(KL_UNIFORM_BUFFER, std::numeric_limits<long>::max(), 4, "bad!");
    klBufferSubData(KL_UNIFORM_BUFFER, 2, std::numeric_limits<long>::max(), "bad!");
    klBufferSubData(KL_UNIFORM_BUFFER, 0, 4, nullptr);
    klBufferSubData(KL_UNIFORM_BUFFER, 3, 1, "D");
    const auto* const bytes = static_cast<const char*>(buffer->Map(0, 4));
    EXPECT_EQ("gooD", std::string(bytes, 4));
    buffer->Unmap();
}

TEST(Buffer, Binds_NestAndEndWithTheBuffer) {
    RenderFixture scene;
    IKLBuffer* const a = scene.pContext->CreateBuffer();
    IKLBuffer* const b = scene.pContext->CreateBuffer();
    {
        const AutoBindKLBuffer bindA(a, KL_UNIFORM_BUFFER);
        {
            const AutoBindKLBuffer bindB(b, KL_UNIFORM_BUFFER);
            EXPECT_EQ(b, a->GetBound(KL_UNIFORM_BUFFER));
            EXPECT_EQ(nullptr, a->GetBound(KL_ARRAY_BUFFER));
        }
        EXPECT_EQ(a, b->GetBound(KL_UNIFORM_BUFFER));
    }
    EXPECT_EQ(nullptr, a->GetBound(KL_UNIFORM_BUFFER));
    b->Bind(KL_UNIFORM_BUFFER);
    scene.pContext->DestroyBuffer(b);
    EXPECT_EQ(nullptr, a->GetBound(KL_UNIFORM_BUFFER));
}

} // namespace
} // namespace Tolen::OpenKL
