#pragma once

/// @file
/// Matrices as shading code has them.

#include "TolenCore/Export.h"
#include "TolenCore/Vector.h"

#include <iosfwd>

namespace Tolen {

/// A 3x3 matrix of floats, 36 bytes, stored column by column as shading code sees it; a new one is
/// the identity. Vectors are columns: `M * v`.
struct TOLEN_EXPORT Matrix33f {
    float m[9]; ///< column by column: the first three are the first column

    /// The identity.
    Matrix33f();
    /// @p diagonal on the diagonal, zero elsewhere.
    explicit Matrix33f(float diagonal);
    /// A copy of the elements.
    /// @param columns nine floats, column by column
    explicit Matrix33f(const float* columns);

    /// The element at @p row and @p column, both from 0 to 2.
    float& operator()(int row, int column) { return m[column * 3 + row]; }
    /// The value at @p row and @p column, both from 0 to 2.
    float operator()(int row, int column) const { return m[column * 3 + row]; }

    /// Writes the transposed matrix into @p out, which may be this one.
    void Transpose(Matrix33f& out) const;

    /// Whether all elements are equal, as numbers: 0 equals -0, and NaN equals nothing.
    bool operator==(const Matrix33f&) const = default;
};

/// A 4x4 matrix of floats, 64 bytes, stored column by column; a new one is the identity.
struct TOLEN_EXPORT Matrix44f {
    float m[16]; ///< column by column: the first four are the first column

    /// The identity.
    Matrix44f();
    /// A copy.
    Matrix44f(const Matrix44f&) = default;
    /// Takes over the elements.
    Matrix44f& operator=(const Matrix44f&) = default;
    /// @p diagonal on the diagonal, zero elsewhere.
    explicit Matrix44f(float diagonal);
    /// @p diagonal on the diagonal, zero elsewhere, so that `Matrix44f(1)` is no null pointer.
    explicit Matrix44f(int diagonal);
    /// A copy of the elements.
    /// @param columns sixteen floats, column by column
    explicit Matrix44f(const float* columns);

    /// The element at @p row and @p column, both from 0 to 3.
    float& operator()(int row, int column) { return m[column * 4 + row]; }
    /// The value at @p row and @p column, both from 0 to 3.
    float operator()(int row, int column) const { return m[column * 4 + row]; }

    /// Writes the transposed matrix into @p out, which may be this one.
    void Transpose(Matrix44f& out) const;

    /// Writes the inverse into @p out, which may be this one.
    /// @return false, with @p out as it was, when there is none or it can't be held in floats
    bool Invert(Matrix44f& out) const;

    /// The matrix that does what @p right does and then what this one does.
    Matrix44f operator*(const Matrix44f& right) const;
    /// The column vector @p right, transformed.
    Vector4f operator*(const Vector4f& right) const;

    /// Whether all elements are equal, as numbers: 0 equals -0, and NaN equals nothing.
    bool operator==(const Matrix44f&) const = default;
};

/// Writes the elements row by row in parentheses, "((a,b,c),(d,e,f),(g,h,i))", in the form that the
/// stream has for floats but with a point whatever its locale is.
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix33f& value);
/// Writes the elements as for the smaller matrix, four in each of four rows.
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix44f& value);

} // namespace Tolen
