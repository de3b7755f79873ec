#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/Vector.h"

#include <iosfwd>

namespace Tolen {

/// A 3x3 matrix of floats, 36 bytes, stored column by column as shading code sees it; a new one is
/// the identity. Vectors are columns: `M * v`.
struct TOLEN_EXPORT Matrix33f {
    float m[9];

    Matrix33f();
    /// @p diagonal on the diagonal, zero elsewhere.
    explicit Matrix33f(float diagonal);
    /// @param columns nine floats, column by column
    explicit Matrix33f(const float* columns);

    float& operator()(int row, int column) { return m[column * 3 + row]; }
    float operator()(int row, int column) const { return m[column * 3 + row]; }

    /// Writes the transposed matrix into @p out, which may be this one.
    void Transpose(Matrix33f& out) const;

    bool operator==(const Matrix33f&) const = default;
};

/// A 4x4 matrix of floats, 64 bytes, stored column by column; a new one is the identity.
struct TOLEN_EXPORT Matrix44f {
    float m[16];

    Matrix44f();
    Matrix44f(const Matrix44f&) = default;
    Matrix44f& operator=(const Matrix44f&) = default;
    /// @p diagonal on the diagonal, zero elsewhere.
    explicit Matrix44f(float diagonal);
    explicit Matrix44f(int diagonal);
    /// @param columns sixteen floats, column by column
    explicit Matrix44f(const float* columns);

    float& operator()(int row, int column) { return m[column * 4 + row]; }
    float operator()(int row, int column) const { return m[column * 4 + row]; }

    /// Writes the transposed matrix into @p out, which may be this one.
    void Transpose(Matrix44f& out) const;

    /// Writes the inverse into @p out. @return false, with @p out as it was, when there is none
    bool Invert(Matrix44f& out) const;

    Matrix44f operator*(const Matrix44f& right) const;
    Vector4f operator*(const Vector4f& right) const;

    bool operator==(const Matrix44f&) const = default;
};

/// The components row by row in parentheses, "((a,b,c),(d,e,f),(g,h,i))".
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix33f& value);
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix44f& value);

} // namespace Tolen
