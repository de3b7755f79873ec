#pragma once

namespace Tolen {

/// Bytes on the side of the renderer, which programs read as uniform blocks.
///
/// Made by IOpenKLContext::CreateBuffer, without storage. Operations answer false where they can't
/// do what is asked; they tell nobody why.
class IKLBuffer {
public:
    virtual ~IKLBuffer() = default;

    /// Gives a new buffer its storage, filled with zeros.
    /// @param offset 0
    /// @param bytes  above 0
    /// @return false, and no change, when there is storage already, when memory runs out, and for
    ///         other arguments
    virtual bool Init(long offset, long bytes) = 0;

    /// Changes the size of a buffer that has storage and is not mapped.
    /// @param offset 0
    /// @param bytes  above 0
    /// @param keep   true lets the old bytes stay as far as they fit, and new ones are zero; false
    ///               makes all zero
    /// @return false, and no change, when the buffer can't be resized now, when memory runs out,
    ///         and for other arguments
    virtual bool Resize(long offset, long bytes, bool keep) = 0;

    /// The bytes of the storage; 0 without any.
    virtual long GetSize() const = 0;

    /// Binds this buffer at a target, in place of the one that is there.
    /// @param target KL_UNIFORM_BUFFER or KL_ARRAY_BUFFER
    virtual bool Bind(int target) = 0;
    /// Leaves nothing bound at a target.
    virtual bool Unbind(int target) = 0;
    /// The buffer of the same implementation that is bound at a target now, or null.
    virtual IKLBuffer* GetBound(int target) const = 0;

    /// Maps the content. What a client writes counts from Unmap on at the latest.
    /// @param access    0 to read, 1 to write
    /// @param bindPoint 4 for uniform blocks; kept for the implementation's use
    /// @return the first byte, to be used until Unmap; null when there is no storage
    virtual void* Map(int access, int bindPoint) = 0;
    /// Ends one Map; without one nothing happens.
    virtual void Unmap() = 0;
};

} // namespace Tolen
