#pragma once

#include "render/ExactSum.h"

#include "TolenOpenKL/IFramebuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

/// A rectangle of pixels.
struct PixelRegion {
    int x = 0, y = 0, width = 0, height = 0;
};

/// Sums of samples for each pixel. Threads may add to different pixels at once.
class Framebuffer final : public IFramebuffer {
public:
    /// Throws std::bad_alloc. @param width, height above 0
    Framebuffer(int width, int height);
    virtual ~Framebuffer() = default;

    int GetWidth() const override { return _width; }
    int GetHeight() const override { return _height; }
    bool Attach(int index) override;
    bool Detach(int index) override;
    bool IsAttached(int index) const override;
    void Clear() override;
    std::int64_t GetSampleCount(int x, int y) const override;
    bool Read(int index, float* rgba) const override;
    bool Add(const IFramebuffer& other) override;

    /// Adds to what is attached at @p index, 0 to 15, if something is.
    /// @param components 1 adds the first value to red, green and blue, 3 adds to these, 4 to all
    void Accumulate(int index, int x, int y, int components, const float* values) {
        Pixels& pixels = _attachments[static_cast<std::size_t>(index)];
        if (pixels.empty()) {
            return;
        }
        std::array<ExactSum, 4>& pixel = pixels[_GetOffset(x, y)];
        const int last = components == 1 ? 3 : components;
        for (int i = 0; i < last; ++i) {
            pixel[static_cast<std::size_t>(i)].Add(values[components == 1 ? 0 : i]);
        }
    }

    void AddSamples(const PixelRegion& region, int samples);

private:
    using Pixels = std::vector<std::array<ExactSum, 4>>;

    std::size_t _GetOffset(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(_width) +
               static_cast<std::size_t>(x);
    }

    int _width;
    int _height;
    std::vector<std::int64_t> _sampleCounts;
    std::array<Pixels, kAttachments> _attachments; ///< empty where nothing is attached
};

} // namespace Tolen::OpenKL
