#pragma once

#include "TolenCore/Export.h"

#include <iosfwd>

namespace Tolen {

/// Small vectors of floats and signed integers, tightly packed, zero when new.
/// The stream form is "(x,y)" with as many components as there are.

struct Vector2f {
    float x = 0.0f, y = 0.0f;
    Vector2f() = default;
    Vector2f(float x_, float y_) : x(x_), y(y_) {}
    bool operator==(const Vector2f&) const = default;
};

struct Vector3f {
    float x = 0.0f, y = 0.0f, z = 0.0f;
    Vector3f() = default;
    Vector3f(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}
    bool operator==(const Vector3f&) const = default;
};

struct Vector4f {
    float x = 0.0f, y = 0.0f, z = 0.0f, w = 0.0f;
    Vector4f() = default;
    Vector4f(float x_, float y_, float z_, float w_) : x(x_), y(y_), z(z_), w(w_) {}
    bool operator==(const Vector4f&) const = default;
};

struct Vector2i {
    int x = 0, y = 0;
    Vector2i() = default;
    Vector2i(int x_, int y_) : x(x_), y(y_) {}
    bool operator==(const Vector2i&) const = default;
};

struct Vector3i {
    int x = 0, y = 0, z = 0;
    Vector3i() = default;
    Vector3i(int x_, int y_, int z_) : x(x_), y(y_), z(z_) {}
    bool operator==(const Vector3i&) const = default;
};

struct Vector4i {
    int x = 0, y = 0, z = 0, w = 0;
    Vector4i() = default;
    Vector4i(int x_, int y_, int z_, int w_) : x(x_), y(y_), z(z_), w(w_) {}
    bool operator==(const Vector4i&) const = default;
};

TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Vector2f& value);
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Vector3f& value);
TOLEN_EXPORT std::ostream& operator<<(std::ostream& stream, const Vector4f& value);

} // namespace Tolen
