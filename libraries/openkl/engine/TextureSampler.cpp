#include "engine/TextureSampler.h"

#include <algorithm>
#include <cmath>

namespace Tolen::OpenKL {

namespace {

/// Coordinates in texels beyond which neighbours are no longer told apart; it keeps conversions to
/// integers in range.
constexpr float kMaxTexels = 1.0e9f;

int Wrap(int texel, int size, TextureWrap wrap) {
    switch (wrap) {
    case TextureWrap::Clamp:
        return std::clamp(texel, 0, size - 1);
    case TextureWrap::Mirror: {
        int period = texel % (2 * size);
        period = period < 0 ? period + 2 * size : period;
        return period < size ? period : 2 * size - 1 - period;
    }
    case TextureWrap::Repeat:
        break;
    }
    int rest = texel % size;
    return rest < 0 ? rest + size : rest;
}

void ReadTexel(const TextureView& texture, const TextureLevel& level, int x, int y, float* pColor) {
    auto index = static_cast<std::size_t>(y) * static_cast<std::size_t>(level.width) +
                 static_cast<std::size_t>(x);
    const float* pTexel = level.pTexels + index * static_cast<std::size_t>(texture.components);
    pColor[0] = pColor[1] = pColor[2] = 0.0f;
    pColor[3] = 1.0f;
    for (int i = 0; i < std::min(texture.components, 4); ++i) {
        pColor[i] = pTexel[i];
    }
}

/// A coordinate in texels; the whole numbers are the lower edges of texels.
float ToTexels(float coordinate, int size) {
    float texels = coordinate * static_cast<float>(size);
    return std::isfinite(texels) ? std::clamp(texels, -kMaxTexels, kMaxTexels) : 0.0f;
}

void SampleNearest(const TextureView& texture, const TextureLevel& level, float u, float v,
                   float* pColor) {
    int x = static_cast<int>(std::floor(ToTexels(u, level.width)));
    int y = static_cast<int>(std::floor(ToTexels(v, level.height)));
    ReadTexel(texture, level, Wrap(x, level.width, texture.wrap),
              Wrap(y, level.height, texture.wrap), pColor);
}

void SampleLinear(const TextureView& texture, const TextureLevel& level, float u, float v,
                  float* pColor) {
    float x = ToTexels(u, level.width) - 0.5f;
    float y = ToTexels(v, level.height) - 0.5f;
    float left = std::floor(x);
    float low = std::floor(y);
    float fx = x - left;
    float fy = y - low;
    int column = static_cast<int>(left);
    int row = static_cast<int>(low);
    int columns[2] = {Wrap(column, level.width, texture.wrap),
                      Wrap(column + 1, level.width, texture.wrap)};
    int rows[2] = {Wrap(row, level.height, texture.wrap),
                   Wrap(row + 1, level.height, texture.wrap)};
    float corners[4][4];
    for (std::size_t i = 0; i < 4; ++i) {
        ReadTexel(texture, level, columns[i & 1], rows[i >> 1], corners[i]);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        float bottom = corners[0][i] * (1.0f - fx) + corners[1][i] * fx;
        float top = corners[2][i] * (1.0f - fx) + corners[3][i] * fx;
        pColor[i] = bottom * (1.0f - fy) + top * fy;
    }
}

void SampleLevel(const TextureView& texture, int index, TextureFilter filter, float u, float v,
                 float* pColor) {
    const TextureLevel& level = texture.pLevels[index];
    if (level.pTexels == nullptr || level.width <= 0 || level.height <= 0) {
        pColor[0] = pColor[1] = pColor[2] = 0.0f;
        pColor[3] = 1.0f;
    } else if (filter == TextureFilter::Nearest) {
        SampleNearest(texture, level, u, v, pColor);
    } else {
        SampleLinear(texture, level, u, v, pColor);
    }
}

} // namespace

float FindLevel(const TextureView& texture, float footprint, float bias) {
    float level = bias;
    if (footprint > 0.0f && texture.levelCount > 1) {
        int size = std::max(texture.pLevels[0].width, texture.pLevels[0].height);
        // The exponent and a linear mantissa are as close as levels need.
        int exponent = 0;
        float mantissa = std::frexp(footprint * static_cast<float>(size), &exponent);
        level += static_cast<float>(exponent - 1) + (2.0f * mantissa - 1.0f);
    }
    return level;
}

void SampleTexture(const TextureView& texture, float u, float v, float level, float* pColor) {
    if (texture.pLevels == nullptr || texture.levelCount <= 0) {
        pColor[0] = pColor[1] = pColor[2] = 0.0f;
        pColor[3] = 1.0f;
        return;
    }
    if (!(level > 0.0f)) {
        SampleLevel(texture, 0, texture.magnification, u, v, pColor);
        return;
    }
    auto last = static_cast<float>(texture.levelCount - 1);
    float clamped = std::min(level, last);
    float base = std::floor(clamped);
    float weight = clamped - base;
    int index = static_cast<int>(base);
    SampleLevel(texture, index, texture.minification, u, v, pColor);
    if (weight > 0.0f) {
        float coarse[4];
        SampleLevel(texture, index + 1, texture.minification, u, v, coarse);
        for (std::size_t i = 0; i < 4; ++i) {
            pColor[i] = pColor[i] * (1.0f - weight) + coarse[i] * weight;
        }
    }
}

} // namespace Tolen::OpenKL
