#pragma once

#include "TolenOpenKLWrapper/kl.h"

namespace Tolen {

/// What the kinds of texture images share.
class IKLTexImage {
public:
    virtual ~IKLTexImage() = default;

    /// The handle that a sampler takes; null before Init.
    virtual KLtexture GetTexture() const = 0;
};

/// A two-dimensional image of floats that samplers read.
class IKLTexImage2D : public IKLTexImage {
public:
    /// Formats of the texels in memory.
    enum Format {
        kFormat_RGB32F = 4,  ///< three floats a texel
        kFormat_RGBA32F = 5, ///< four floats a texel
        kFormat_R32F = 6,    ///< one float a texel
    };

    /// Gives the image its texels, in place of those that it had.
    /// @param width, height  texels, above 0
    /// @param format         a Format
    /// @param wrap           KL_REPEAT, KL_CLAMP_TO_EDGE or KL_MIRRORED_REPEAT
    /// @param minification, magnification  KL_NEAREST or KL_LINEAR
    /// @param data           the texels, row by row from the lowest, first texel at texture
    ///                       coordinate 0,0
    /// @param borrow         true: @p data stays the image's storage, so that later writes to it
    ///                       show; it must outlive the image. false: the texels are copied
    /// @return false for other arguments, beyond the implementation's limits and when memory runs
    ///         out
    virtual bool Init(int width, int height, int format, int wrap, int minification,
                      int magnification, const void* data, bool borrow) = 0;

    /// Texels in a row; 0 before Init.
    virtual int GetWidth() const = 0;
    /// Rows; 0 before Init.
    virtual int GetHeight() const = 0;
};

} // namespace Tolen
