#pragma once

#include "TolenOpenKLWrapper/IKLBuffer.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Tolen::OpenKL {

/// The content of a buffer. Uniform blocks share it; that of a buffer that died is empty.
struct BufferContent {
    std::vector<std::byte> bytes;
    std::uint64_t version = 0; ///< the stamp of the last change
};

/// Bytes in memory, up to a limit.
class Buffer : public IKLBuffer {
public:
    static constexpr std::int64_t kMaxBytes = std::int64_t{1} << 34;

    Buffer() : _pContent(std::make_shared<BufferContent>()) {}
    ~Buffer() override;
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    bool Init(long offset, long bytes) override;
    bool Resize(long offset, long bytes, bool keep) override;
    long GetSize() const override { return static_cast<long>(_pContent->bytes.size()); }
    bool Bind(int target) override;
    bool Unbind(int target) override;
    IKLBuffer* GetBound(int target) const override;
    void* Map(int access, int bindPoint) override;
    void Unmap() override;

    /// Writes inside the buffer; anything that reaches outside is dropped whole.
    void Write(long offset, long bytes, const void* data);

    const std::shared_ptr<BufferContent>& GetContent() const { return _pContent; }

private:
    bool _Store(long bytes, bool keep);

    std::shared_ptr<BufferContent> _pContent;
    int _maps = 0;
    bool _isMappedForWriting = false;
};

} // namespace Tolen::OpenKL
