#include "scene/ImportanceTable.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace Tolen::Scene {

namespace {

// Enough for lamps of a degree; a number of such a cell is exact in a float.
constexpr int kMaxWidth = 512;
constexpr int kMaxHeight = 256;
// The part of the samples that is spread evenly, so that none is far too bright.
constexpr double kEven = 0.02;

double _GetLuminance(const Image& image, int x, int y) {
    const std::size_t texel = (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                               static_cast<std::size_t>(x)) *
                              4;
    constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
        const double value = static_cast<double>(image.rgba[texel + i]);
        sum += kWeights[i] * (std::isfinite(value) ? std::max(value, 0.0) : 0.0);
    }
    return sum;
}

/// The mean luminance of a cell and of the texels around it, from which interpolation carries light
/// into the cell.
double _GetLuminanceOfCell(const Image& image, int cellX, int cellY, int width, int height) {
    const auto begin = [](int cell, int cells, int texels) {
        return static_cast<int>(static_cast<long long>(cell) * texels / cells);
    };
    const int x0 = begin(cellX, width, image.width) - 1;
    const int x1 = begin(cellX + 1, width, image.width);
    const int y0 = begin(cellY, height, image.height) - 1;
    const int y1 = begin(cellY + 1, height, image.height);
    double sum = 0.0;
    for (int y = y0; y <= y1; ++y) {
        for (int x = x0; x <= x1; ++x) {
            sum += _GetLuminance(image, (x + image.width) % image.width,
                                 std::clamp(y, 0, image.height - 1));
        }
    }
    return sum / (static_cast<double>(x1 - x0 + 1) * static_cast<double>(y1 - y0 + 1));
}

/// Pairs each cell that is chosen too often with one that is chosen too seldom (Vose, "A Linear
/// Algorithm for Generating Random Numbers with a Given Distribution", 1991).
/// @param densities of mean 1
void _FillAliases(const std::vector<double>& densities, std::vector<float>& rgba) {
    std::vector<std::size_t> low;
    std::vector<std::size_t> high;
    std::vector<double> left = densities;
    for (std::size_t cell = 0; cell < left.size(); ++cell) {
        (left[cell] < 1.0 ? low : high).push_back(cell);
    }
    const auto write = [&](std::size_t cell, double kept, std::size_t other) {
        rgba[cell * 4] = static_cast<float>(kept);
        rgba[cell * 4 + 1] = static_cast<float>(other);
        rgba[cell * 4 + 2] = static_cast<float>(densities[cell]);
        rgba[cell * 4 + 3] = static_cast<float>(densities[other]);
    };
    while (!low.empty() && !high.empty()) {
        const std::size_t poor = low.back();
        const std::size_t rich = high.back();
        low.pop_back();
        write(poor, left[poor], rich);
        left[rich] -= 1.0 - left[poor];
        if (left[rich] < 1.0) {
            high.pop_back();
            low.push_back(rich);
        }
    }
    // What is left differs from 1 by rounding alone.
    for (const std::vector<std::size_t>* rest : {&low, &high}) {
        for (const std::size_t cell : *rest) {
            write(cell, 1.0, cell);
        }
    }
}

} // namespace

Image MakeImportanceTable(const Image& image) {
    Image table;
    // One column would be read as a texture that isn't there.
    table.width = std::clamp(image.width, 2, kMaxWidth);
    table.height = std::clamp(image.height, 1, kMaxHeight);
    const auto count =
        static_cast<std::size_t>(table.width) * static_cast<std::size_t>(table.height);
    std::vector<double> densities;
    densities.reserve(count);
    double sum = 0.0;
    double area = 0.0;
    std::vector<double> areas;
    for (int y = 0; y < table.height; ++y) {
        const double latitude = std::numbers::pi * ((y + 0.5) / table.height - 0.5);
        for (int x = 0; x < table.width; ++x) {
            areas.push_back(std::cos(latitude));
            area += areas.back();
            densities.push_back(areas.back() *
                                _GetLuminanceOfCell(image, x, y, table.width, table.height));
            sum += densities.back();
        }
    }
    const double cells = static_cast<double>(count);
    for (std::size_t cell = 0; cell < count; ++cell) {
        const double even = areas[cell] / area * cells;
        const double bright = sum > 0.0 ? densities[cell] / sum * cells : even;
        densities[cell] = kEven * even + (1.0 - kEven) * bright;
    }
    table.rgba.resize(count * 4);
    _FillAliases(densities, table.rgba);
    return table;
}

} // namespace Tolen::Scene
