#include "render/Framebuffer.h"

#include <algorithm>
#include <exception>

namespace Tolen::OpenKL {

namespace {

bool IsAttachment(int index) {
    return index >= 0 && index < IFramebuffer::kAttachments;
}

} // namespace

Framebuffer::Framebuffer(int width, int height)
    : _width(width), _height(height),
      _sampleCounts(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

bool Framebuffer::Attach(int index) {
    if (!IsAttachment(index)) {
        return false;
    }
    Pixels& pixels = _attachments[static_cast<std::size_t>(index)];
    try {
        pixels.resize(_sampleCounts.size());
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

bool Framebuffer::Detach(int index) {
    if (!IsAttached(index)) {
        return false;
    }
    Pixels().swap(_attachments[static_cast<std::size_t>(index)]);
    return true;
}

bool Framebuffer::IsAttached(int index) const {
    return IsAttachment(index) && !_attachments[static_cast<std::size_t>(index)].empty();
}

void Framebuffer::Clear() {
    std::fill(_sampleCounts.begin(), _sampleCounts.end(), 0);
    for (Pixels& pixels : _attachments) {
        std::fill(pixels.begin(), pixels.end(), Pixels::value_type());
    }
}

std::int64_t Framebuffer::GetSampleCount(int x, int y) const {
    const bool isInside = x >= 0 && x < _width && y >= 0 && y < _height;
    return isInside ? _sampleCounts[_GetOffset(x, y)] : 0;
}

bool Framebuffer::Read(int index, float* rgba) const {
    if (!IsAttached(index) || rgba == nullptr) {
        return false;
    }
    const Pixels& pixels = _attachments[static_cast<std::size_t>(index)];
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        for (const ExactSum& component : pixels[i]) {
            *rgba++ = _sampleCounts[i] == 0 ? 0.0f : component.GetMean(_sampleCounts[i]);
        }
    }
    return true;
}

bool Framebuffer::Add(const IFramebuffer& other) {
    const auto* const from = dynamic_cast<const Framebuffer*>(&other);
    if (from == nullptr || from == this || from->_width != _width || from->_height != _height) {
        return false;
    }
    for (std::size_t i = 0; i < _sampleCounts.size(); ++i) {
        _sampleCounts[i] += from->_sampleCounts[i];
    }
    for (std::size_t a = 0; a < _attachments.size(); ++a) {
        // Either side may lack the attachment.
        const std::size_t count = std::min(_attachments[a].size(), from->_attachments[a].size());
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                _attachments[a][i][c].Add(from->_attachments[a][i][c]);
            }
        }
    }
    return true;
}

void Framebuffer::AddSamples(const PixelRegion& region, int samples) {
    for (int y = region.y; y < region.y + region.height; ++y) {
        for (int x = region.x; x < region.x + region.width; ++x) {
            _sampleCounts[_GetOffset(x, y)] += samples;
        }
    }
}

} // namespace Tolen::OpenKL
