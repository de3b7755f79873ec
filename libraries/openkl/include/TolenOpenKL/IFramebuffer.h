#pragma once

#include <cstdint>

namespace Tolen::OpenKL {

/// Pixels that samples are summed into, in up to 16 attachments of red, green, blue and alpha.
///
/// Sums are exact: the content after a number of samples does not depend on the order in which they
/// came, on threads, or on how they were divided among renders and framebuffers. Added components
/// are rounded to steps of 2^-56 and held to magnitudes of 2^44.
class IFramebuffer {
public:
    /// The number of attachments that a framebuffer can have.
    static constexpr int kAttachments = 16;

    /// Pixels in a row.
    virtual int GetWidth() const = 0;
    /// Rows.
    virtual int GetHeight() const = 0;

    /// Gives an attachment its storage, filled with zeros; what is attached already stays.
    /// @param index 0 to 15
    /// @return false for another index or when memory runs out
    virtual bool Attach(int index) = 0;
    /// Drops an attachment and its content. What programs accumulate there is dropped from then on.
    /// @return false when nothing is attached at @p index
    virtual bool Detach(int index) = 0;
    /// Whether the attachment @p index has storage; false for an index out of range.
    virtual bool IsAttached(int index) const = 0;

    /// Empties every attachment and forgets all samples.
    virtual void Clear() = 0;

    /// The samples that pixel @p x, @p y has got; 0 outside. Row 0 is the lowest.
    virtual std::int64_t GetSampleCount(int x, int y) const = 0;

    /// Reads the mean over the samples of each pixel; pixels without samples are 0.
    /// @param index 0 to 15
    /// @param rgba  takes width * height * 4 floats, row by row from the lowest
    /// @return false when nothing is attached at @p index or @p rgba is null
    virtual bool Read(int index, float* rgba) const = 0;

    /// Adds the samples of @p other, exactly. Attachments that this framebuffer lacks are passed
    /// over.
    /// @return false, and no change, when the sizes differ or @p other is this framebuffer
    virtual bool Add(const IFramebuffer& other) = 0;

protected:
    ~IFramebuffer() = default;
};

} // namespace Tolen::OpenKL
