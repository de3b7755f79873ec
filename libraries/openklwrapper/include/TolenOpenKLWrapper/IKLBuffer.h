#pragma once

namespace Tolen {

/// Bytes on the side of the renderer.
class IKLBuffer {
public:
    virtual ~IKLBuffer() = default;

    /// Gives a new buffer its storage, filled with zeros.
    /// @param offset 0
    /// @param bytes  above 0
    virtual bool Init(long offset, long bytes) = 0;

    /// Changes the size of a buffer that has storage. With @p keep the old bytes stay as far as
    /// they fit and new ones are zero; without it all are zero.
    virtual bool Resize(long offset, long bytes, bool keep) = 0;

    virtual long GetSize() const = 0;

    /// Binds this buffer at a target, in place of the one that is there.
    virtual bool Bind(int target) = 0;
    /// Leaves nothing bound at a target.
    virtual bool Unbind(int target) = 0;
    /// The buffer of the same implementation that is bound at a target now, or null.
    virtual IKLBuffer* GetBound(int target) const = 0;

    /// Maps the content for reading (access 0) or writing (access 1).
    /// @param access    0 read, 1 write
    /// @param bindPoint 4 for uniform blocks; kept for the implementation's use
    /// @return the first byte; null when there is no storage
    virtual void* Map(int access, int bindPoint) = 0;
    virtual void Unmap() = 0;
};

} // namespace Tolen
