#pragma once

/// @file
/// Small vectors of floats and signed integers, tightly packed, zero when new.

#include "TolenCore/Export.h"

#include <iosfwd>

namespace Tolen {

/// A vector of two floats, 8 bytes.
struct Vector2f {
    float x = 0.0f; ///< the first component
    float y = 0.0f; ///< the second component

    /// Zero.
    Vector2f() = default;
    /// A vector of these components.
    Vector2f(float x_, float y_) : x(x_), y(y_) {}
    /// Whether all components are equal, as numbers: 0 equals -0, and NaN equals nothing.
    bool operator==(const Vector2f&) const = default;
};

/// A vector of three floats, 12 bytes.
struct Vector3f {
    float x = 0.0f; ///< the first component
    float y = 0.0f; ///< the second component
    float z = 0.0f; ///< the third component

    /// Zero.
    Vector3f() = default;
    /// A vector of these components.
    Vector3f(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}
    /// Whether all components are equal, as numbers: 0 equals -0, and NaN equals nothing.
    bool operator==(const Vector3f&) const = default;
};

/// A vector of four floats, 16 bytes.
struct Vector4f {
    float x = 0.0f; ///< the first component
    float y = 0.0f; ///< the second component
    float z = 0.0f; ///< the third component
    float w = 0.0f; ///< the fourth component

    /// Zero.
    Vector4f() = default;
    /// A vector of these components.
    Vector4f(float x_, float y_, float z_, float w_) : x(x_), y(y_), z(z_), w(w_) {}
    /// Whether all components are equal, as numbers: 0 equals -0, and NaN equals nothing.
    bool operator==(const Vector4f&) const = default;
};

/// A vector of two signed integers, 8 bytes.
struct Vector2i {
    int x = 0; ///< the first component
    int y = 0; ///< the second component

    /// Zero.
    Vector2i() = default;
    /// A vector of these components.
    Vector2i(int x_, int y_) : x(x_), y(y_) {}
    /// Whether all components are equal.
    bool operator==(const Vector2i&) const = default;
};

/// A vector of three signed integers, 12 bytes.
struct Vector3i {
    int x = 0; ///< the first component
    int y = 0; ///< the second component
    int z = 0; ///< the third component

    /// Zero.
    Vector3i() = default;
    /// A vector of these components.
    Vector3i(int x_, int y_, int z_) : x(x_), y(y_), z(z_) {}
    /// Whether all components are equal.
    bool operator==(const Vector3i&) const = default;
};

/// A vector of four signed integers, 16 bytes.
struct Vector4i {
    int x = 0; ///< the first component
    int y = 0; ///< the second component
    int z = 0; ///< the third component
    int w = 0; ///< the fourth component

    /// Zero.
    Vector4i() = default;
    /// A vector of these components.
    Vector4i(int x_, int y_, int z_, int w_) : x(x_), y(y_), z(z_), w(w_) {}
    /// Whether all components are equal.
    bool operator==(const Vector4i&) const = default;
};

/// Writes the components as "(x,y)", in the form that the stream has for floats but with a point
/// whatever its locale is.
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Vector2f& value);
/// Writes the components as "(x,y,z)", as for two components.
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Vector3f& value);
/// Writes the components as "(x,y,z,w)", as for two components.
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Vector4f& value);

} // namespace Tolen
