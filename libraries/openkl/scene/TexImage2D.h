#pragma once

#include "engine/TextureView.h"

#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

class Context;

/// An image of floats in memory, its own or the client's, with mip levels where rays carry
/// differentials.
class TexImage2D : public IKLTexImage2D {
public:
    explicit TexImage2D(Context& context) : _context(context) {}
    ~TexImage2D() override;
    TexImage2D(const TexImage2D&) = delete;
    TexImage2D& operator=(const TexImage2D&) = delete;

    KLtexture GetTexture() const override;
    bool Init(int width, int height, int format, int wrap, int minification, int magnification,
              const void* data, bool borrow) override;
    int GetWidth() const override { return _levels.empty() ? 0 : _levels.front().width; }
    int GetHeight() const override { return _levels.empty() ? 0 : _levels.front().height; }

    /// The number that a sampler holds for this image; 0 before Init.
    std::uint32_t GetNumber() const { return _number; }
    /// Whether the client may change the texels behind the image's back.
    bool IsBorrowed() const { return _isBorrowed; }
    /// What kernels sample; good until the image changes.
    const TextureView& GetView() const { return _view; }
    /// Makes the mip levels that are missing, or all of them anew for a borrowed image.
    void UpdateLevels();

    /// The number behind a handle.
    static std::uint32_t ToNumber(KLtexture texture);

private:
    bool _Allocate(int width, int height);
    void _Fill(std::size_t level);
    void _Release();

    Context& _context;
    std::uint32_t _number = 0;
    bool _isBorrowed = false;
    bool _areLevelsFilled = false;
    std::vector<float> _texels; ///< of the levels that the image holds itself, one after the other
    std::int64_t _bytes = 0;    ///< that the context counts for this image
    std::vector<TextureLevel> _levels;
    TextureView _view;
};

} // namespace Tolen::OpenKL
