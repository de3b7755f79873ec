#include "TolenCore/Matrix.h"

#include <algorithm>
#include <cmath>
#include <locale>
#include <ostream>
#include <utility>

namespace Tolen {

namespace {

void SetDiagonal(float* m, int side, float diagonal) {
    for (int i = 0; i < side * side; ++i) {
        m[i] = i % (side + 1) == 0 ? diagonal : 0.0f;
    }
}

/// Swaps across the diagonal by way of a copy, so that source and target may be one.
template <class Matrix>
void TransposeInto(Matrix source, Matrix& out, int side) {
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            out(column, row) = source(row, column);
        }
    }
}

template <class Matrix>
std::ostream& WriteMatrix(std::ostream& stream, const Matrix& value, int side) {
    const std::locale previous = stream.imbue(std::locale::classic());
    for (int row = 0; row < side; ++row) {
        stream << (row == 0 ? "((" : ",(");
        for (int column = 0; column < side; ++column) {
            stream << (column == 0 ? "" : ",") << value(row, column);
        }
        stream << ')';
    }
    stream << ')';
    stream.imbue(previous);
    return stream;
}

} // namespace

Matrix33f::Matrix33f() : Matrix33f(1.0f) {}

Matrix33f::Matrix33f(float diagonal) { SetDiagonal(m, 3, diagonal); }

Matrix33f::Matrix33f(const float* columns) { std::copy_n(columns, 9, m); }

void Matrix33f::Transpose(Matrix33f& out) const { TransposeInto(*this, out, 3); }

Matrix44f::Matrix44f() : Matrix44f(1.0f) {}

Matrix44f::Matrix44f(float diagonal) { SetDiagonal(m, 4, diagonal); }

Matrix44f::Matrix44f(int diagonal) : Matrix44f(static_cast<float>(diagonal)) {}

Matrix44f::Matrix44f(const float* columns) { std::copy_n(columns, 16, m); }

void Matrix44f::Transpose(Matrix44f& out) const { TransposeInto(*this, out, 4); }

bool Matrix44f::Invert(Matrix44f& out) const {
    // Gauss-Jordan elimination with row pivots, beside the identity, in double precision.
    double rows[4][8];
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            rows[row][column] = static_cast<double>((*this)(row, column));
            rows[row][column + 4] = row == column ? 1.0 : 0.0;
        }
    }
    for (int step = 0; step < 4; ++step) {
        int pivot = step;
        for (int row = step + 1; row < 4; ++row) {
            if (std::fabs(rows[row][step]) > std::fabs(rows[pivot][step])) {
                pivot = row;
            }
        }
        // Accepts what is neither zero nor NaN.
        if (!(std::fabs(rows[pivot][step]) > 0.0)) {
            return false;
        }
        std::swap(rows[pivot], rows[step]);
        const double scale = 1.0 / rows[step][step];
        for (double& value : rows[step]) {
            value *= scale;
        }
        for (int row = 0; row < 4; ++row) {
            const double factor = rows[row][step];
            for (int column = 0; row != step && column < 8; ++column) {
                rows[row][column] -= factor * rows[step][column];
            }
        }
    }

    Matrix44f inverse;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            inverse(row, column) = static_cast<float>(rows[row][column + 4]);
            if (!std::isfinite(inverse(row, column))) {
                return false;
            }
        }
    }
    out = inverse;
    return true;
}

Matrix44f Matrix44f::operator*(const Matrix44f& right) const {
    Matrix44f product(0.0f);
    for (int column = 0; column < 4; ++column) {
        for (int k = 0; k < 4; ++k) {
            for (int row = 0; row < 4; ++row) {
                product(row, column) += (*this)(row, k) * right(k, column);
            }
        }
    }
    return product;
}

Vector4f Matrix44f::operator*(const Vector4f& right) const {
    const auto row = [&](int i) {
        return (*this)(i, 0) * right.x + (*this)(i, 1) * right.y + (*this)(i, 2) * right.z +
               (*this)(i, 3) * right.w;
    };
    return {row(0), row(1), row(2), row(3)};
}

std::ostream& operator<<(std::ostream& stream, const Matrix33f& value) {
    return WriteMatrix(stream, value, 3);
}

std::ostream& operator<<(std::ostream& stream, const Matrix44f& value) {
    return WriteMatrix(stream, value, 4);
}

} // namespace Tolen
