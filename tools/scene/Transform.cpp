#include "scene/Transform.h"

#include <cmath>

namespace Tolen::Scene {

namespace {

Matrix44f _Translation(const std::vector<double>& by) {
    Matrix44f matrix;
    for (int row = 0; row < 3; ++row) {
        matrix(row, 3) = static_cast<float>(by[static_cast<std::size_t>(row)]);
    }
    return matrix;
}

Matrix44f _Scale(const JsonNode& node) {
    std::vector<double> by = node.AsNumbers();
    if (by.size() == 1) {
        by = {by[0], by[0], by[0]};
    }
    if (by.size() != 3 || by[0] == 0.0 || by[1] == 0.0 || by[2] == 0.0) {
        node.Fail("expected one or three numbers other than 0");
    }
    Matrix44f matrix;
    for (int axis = 0; axis < 3; ++axis) {
        matrix(axis, axis) = static_cast<float>(by[static_cast<std::size_t>(axis)]);
    }
    return matrix;
}

Matrix44f _Rotation(const JsonNode& node) {
    node.AllowOnly({"axis", "degrees"});
    const std::vector<double> axis = node.Get("axis").AsNumbers(3);
    const double length = std::hypot(axis[0], axis[1], axis[2]);
    if (!(length > 0.0)) {
        node.Get("axis").Fail("an axis needs a length");
    }
    const double angle = node.Get("degrees").AsNumber() * 3.14159265358979323846 / 180.0;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double n[3] = {axis[0] / length, axis[1] / length, axis[2] / length};
    const double cross[3][3] = {{0.0, -n[2], n[1]}, {n[2], 0.0, -n[0]}, {-n[1], n[0], 0.0}};
    Matrix44f matrix;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            matrix(row, column) = static_cast<float>((row == column ? c : 0.0) +
                                                     (1.0 - c) * n[row] * n[column] +
                                                     s * cross[row][column]);
        }
    }
    return matrix;
}

/// Turns -z to a direction, and y as far upwards as that allows.
Matrix44f _Aim(const JsonNode& node) {
    const std::vector<double> way = node.AsNumbers(3);
    const double length = std::hypot(way[0], way[1], way[2]);
    if (!(length > 0.0)) {
        node.Fail("a direction needs a length");
    }
    const double z[3] = {-way[0] / length, -way[1] / length, -way[2] / length};
    const double across = std::hypot(z[0], z[2]);
    // Straight up and down, y is put as by a turn about the x axis.
    const bool isSteep = across < 1e-6;
    const double x[3] = {isSteep ? 1.0 : z[2] / across, 0.0, isSteep ? 0.0 : -z[0] / across};
    Matrix44f matrix;
    for (int row = 0; row < 3; ++row) {
        const int next = (row + 1) % 3;
        const int last = (row + 2) % 3;
        matrix(row, 0) = static_cast<float>(x[row]);
        matrix(row, 1) = static_cast<float>(z[next] * x[last] - z[last] * x[next]);
        matrix(row, 2) = static_cast<float>(z[row]);
    }
    return matrix;
}

Matrix44f _Matrix(const JsonNode& node) {
    const std::vector<double> rows = node.AsNumbers(16);
    Matrix44f matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            matrix(row, column) = static_cast<float>(rows[static_cast<std::size_t>(row * 4 + column)]);
        }
    }
    return matrix;
}

} // namespace

Matrix44f ReadTransform(const JsonNode& node) {
    Matrix44f whole;
    for (const JsonNode& step : node.GetElements()) {
        step.AllowOnly({"translate", "rotate", "scale", "aim", "matrix"});
        const auto members = step.GetMembers();
        if (members.size() != 1) {
            step.Fail("expected one of translate, rotate, scale, aim, matrix in each step");
        }
        const auto& [kind, value] = members.front();
        const Matrix44f matrix = kind == "translate" ? _Translation(value.AsNumbers(3))
                                 : kind == "rotate"  ? _Rotation(value)
                                 : kind == "scale"   ? _Scale(value)
                                 : kind == "aim"     ? _Aim(value)
                                                     : _Matrix(value);
        whole = matrix * whole;
    }
    return whole;
}

} // namespace Tolen::Scene
