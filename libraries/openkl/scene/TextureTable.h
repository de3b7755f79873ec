#pragma once

#include "engine/TextureView.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Tolen::OpenKL {

class Context;

/// The images of a context as kernels sample them.
class TextureTable {
public:
    /// Brings the table up to date, mip levels included.
    void Update(const Context& context);

    const std::vector<TextureView>& GetViews() const { return _views; }
    /// What a sampler holds in a kernel: 1 + the index of the view; 0 for an image that is gone.
    std::uint32_t ToSampler(std::uint32_t number) const;
    /// The stamp of the last change that moves views.
    std::uint64_t GetVersion() const { return _version; }

private:
    std::vector<TextureView> _views;
    std::unordered_map<std::uint32_t, std::uint32_t> _samplers; ///< by the number of the image
    std::uint64_t _version = 0;
};

} // namespace Tolen::OpenKL
