#pragma once

/// @file
/// The types of uniforms on the client's side.

#include "TolenOpenKLWrapper/kl.h"

#include "TolenCore/Matrix.h"
#include "TolenCore/Vector.h"

/// The thirteen types that a uniform can have on the client's side; X takes the C++ type.
#define TOLEN_UNIFORM_TYPES(X)                                                                     \
    X(KLprimitive)                                                                                 \
    X(KLtexture)                                                                                   \
    X(::Tolen::Matrix44f)                                                                          \
    X(::Tolen::Matrix33f)                                                                          \
    X(::Tolen::Vector4f)                                                                           \
    X(::Tolen::Vector3f)                                                                           \
    X(::Tolen::Vector2f)                                                                           \
    X(float)                                                                                       \
    X(::Tolen::Vector4i)                                                                           \
    X(::Tolen::Vector3i)                                                                           \
    X(::Tolen::Vector2i)                                                                           \
    X(int)                                                                                         \
    X(bool)
