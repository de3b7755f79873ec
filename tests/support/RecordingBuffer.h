#pragma once

#include "TolenOpenKLWrapper/IKLBuffer.h"

#include <string>
#include <vector>

namespace Tolen::Tests {

class RecordingContext;

/// A buffer with real bytes.
class RecordingBuffer : public IKLBuffer {
public:
    RecordingBuffer(RecordingContext& context, const std::string& id)
        : _context(context), _id(id) {}
    ~RecordingBuffer() override;

    /// What the log calls this buffer, such as "buffer1".
    const std::string& GetId() const { return _id; }
    const std::vector<unsigned char>& GetBytes() const { return _bytes; }
    bool IsMapped() const { return _isMapped; }
    /// The content as elements; the rest of a last part is left out.
    template <class T>
    std::vector<T> GetElements() const {
        const T* first = reinterpret_cast<const T*>(_bytes.data());
        return std::vector<T>(first, first + _bytes.size() / sizeof(T));
    }

    bool Init(long offset, long bytes) override;
    bool Resize(long offset, long bytes, bool keep) override;
    long GetSize() const override { return static_cast<long>(_bytes.size()); }
    bool Bind(int target) override;
    bool Unbind(int target) override;
    IKLBuffer* GetBound(int target) const override;
    void* Map(int access, int bindPoint) override;
    void Unmap() override;

    /// What klBufferSubData does to the buffer it finds.
    void Write(long offset, long bytes, const void* data);

private:
    RecordingContext& _context;
    std::string _id;
    std::vector<unsigned char> _bytes;
    bool _hasStorage = false;
    bool _isMapped = false;
};

} // namespace Tolen::Tests
