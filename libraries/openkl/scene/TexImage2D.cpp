#include "scene/TexImage2D.h"

#include "scene/Context.h"
#include "scene/ObjectRegistry.h"

#include "TolenCore/Console.h"

#include <algorithm>
#include <cstring>
#include <exception>

namespace Tolen::OpenKL {

namespace {

int CountComponents(int format) {
    switch (format) {
    case IKLTexImage2D::kFormat_RGB32F:
        return 3;
    case IKLTexImage2D::kFormat_RGBA32F:
        return 4;
    case IKLTexImage2D::kFormat_R32F:
        return 1;
    default:
        return 0;
    }
}

bool ToWrap(int wrap, TextureWrap& out) {
    switch (wrap) {
    case KL_REPEAT:
        out = TextureWrap::Repeat;
        return true;
    case KL_CLAMP_TO_EDGE:
        out = TextureWrap::Clamp;
        return true;
    case KL_MIRRORED_REPEAT:
        out = TextureWrap::Mirror;
        return true;
    default:
        return false;
    }
}

bool ToFilter(int filter, TextureFilter& out) {
    out = filter == KL_NEAREST ? TextureFilter::Nearest : TextureFilter::Linear;
    return filter == KL_NEAREST || filter == KL_LINEAR;
}

std::int64_t CountTexels(const TextureLevel& level) {
    return std::int64_t{level.width} * level.height;
}

} // namespace

TexImage2D::~TexImage2D() {
    _Release();
}

void TexImage2D::_Release() {
    _context.ReleaseTextureBytes(_bytes);
    _bytes = 0;
}

KLtexture TexImage2D::GetTexture() const {
    // A number in the place of an address, so that the handle of a dead image is recognised.
    return reinterpret_cast<KLtexture>(static_cast<std::uintptr_t>(_number));
}

std::uint32_t TexImage2D::ToNumber(KLtexture texture) {
    const auto number = reinterpret_cast<std::uintptr_t>(texture);
    return number <= 0xffffffffu ? static_cast<std::uint32_t>(number) : 0;
}

bool TexImage2D::Init(int width, int height, int format, int wrap, int minification,
                      int magnification, const void* data, bool borrow) {
    TextureView view;
    view.components = CountComponents(format);
    if (width <= 0 || height <= 0 || view.components == 0 || !ToWrap(wrap, view.wrap) ||
        !ToFilter(minification, view.minification) ||
        !ToFilter(magnification, view.magnification) || data == nullptr) {
        return false;
    }
    const Limits& limits = _context.GetOptions().limits;
    if (width > limits.imageSide || height > limits.imageSide ||
        std::int64_t{width} * height > limits.imagePixels) {
        if (IMgrConsole* const console = GetMgrConsole()) {
            console->Error("OpenKL: an image of %d x %d texels is above the limit of %d along a "
                           "side and %lld in all\n",
                           width, height, limits.imageSide,
                           static_cast<long long>(limits.imagePixels));
        }
        return false;
    }

    _Release();
    _levels.clear();
    _view = view;
    _isBorrowed = borrow;
    if (!_Allocate(width, height)) {
        _levels.clear();
        _view = TextureView();
        return false;
    }
    if (borrow) {
        _levels.front().pTexels = static_cast<const float*>(data);
    } else {
        std::memcpy(_texels.data(), data,
                    static_cast<std::size_t>(CountTexels(_levels.front()) * view.components) *
                        sizeof(float));
    }
    _areLevelsFilled = false;
    _view.pLevels = _levels.data();
    _view.levelCount = static_cast<std::int32_t>(_levels.size());
    if (_number == 0) {
        _number = MakeHandle();
    }
    UpdateLevels();
    _context.OnTexturesChanged();
    return true;
}

/// Lists the levels and makes room for those that the image holds itself.
bool TexImage2D::_Allocate(int width, int height) {
    _levels.push_back({nullptr, width, height});
    while (_context.AreDifferentialsEnabled() && (width > 1 || height > 1)) {
        width = std::max(width / 2, 1);
        height = std::max(height / 2, 1);
        _levels.push_back({nullptr, width, height});
    }
    const std::size_t firstOwn = _isBorrowed ? 1 : 0;
    std::int64_t floats = 0;
    for (std::size_t i = firstOwn; i < _levels.size(); ++i) {
        floats += CountTexels(_levels[i]) * _view.components;
    }
    const auto bytes = floats * static_cast<std::int64_t>(sizeof(float));
    if (!_context.AcquireTextureBytes(bytes)) {
        return false;
    }
    _bytes = bytes;
    try {
        _texels.assign(static_cast<std::size_t>(floats), 0.0f);
    } catch (const std::exception&) {
        _Release();
        return false;
    }
    const float* pNext = _texels.data();
    for (std::size_t i = firstOwn; i < _levels.size(); ++i) {
        _levels[i].pTexels = pNext;
        pNext += CountTexels(_levels[i]) * _view.components;
    }
    return true;
}

void TexImage2D::UpdateLevels() {
    if (_areLevelsFilled && !_isBorrowed) {
        return;
    }
    for (std::size_t i = 1; i < _levels.size(); ++i) {
        _Fill(i);
    }
    _areLevelsFilled = true;
}

/// Averages the level before: each texel over the two by two, or up to three by three at odd sizes,
/// that it covers.
void TexImage2D::_Fill(std::size_t level) {
    const TextureLevel& from = _levels[level - 1];
    const TextureLevel& to = _levels[level];
    const int components = _view.components;
    float* const pTo = _texels.data() + (to.pTexels - _texels.data());
    for (int y = 0; y < to.height; ++y) {
        const int y0 = static_cast<int>(std::int64_t{y} * from.height / to.height);
        const int y1 = static_cast<int>((std::int64_t{y} + 1) * from.height / to.height);
        for (int x = 0; x < to.width; ++x) {
            const int x0 = static_cast<int>(std::int64_t{x} * from.width / to.width);
            const int x1 = static_cast<int>((std::int64_t{x} + 1) * from.width / to.width);
            const float scale = 1.0f / static_cast<float>((x1 - x0) * (y1 - y0));
            for (int c = 0; c < components; ++c) {
                float sum = 0.0f;
                for (int v = y0; v < y1; ++v) {
                    for (int u = x0; u < x1; ++u) {
                        sum += from.pTexels[(std::int64_t{v} * from.width + u) * components + c];
                    }
                }
                pTo[(std::int64_t{y} * to.width + x) * components + c] = sum * scale;
            }
        }
    }
}

} // namespace Tolen::OpenKL
