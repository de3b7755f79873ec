#pragma once

/// @file
/// The types of inputs on the client's side, and what is known of them.

#include "TolenEffects/SyntaxTypes.h"

#include "TolenOpenKLWrapper/UniformTypes.h"

#include <type_traits>

/// The thirteen types that an element of a parameter can have, in the order in which the families
/// of Set and Get operations declare them: X(specifier, C++ type, name of the C++ type, bytes of
/// one element in a buffer on the renderer's side). Every family over the types comes from here.
#define TOLEN_ELEMENT_TYPES(X)                                                                     \
    X(kType_Primitive, KLprimitive, "KLprimitive", 4)                                              \
    X(kType_Sampler2D, KLtexture, "KLtexture", 8)                                                  \
    X(kType_Mat4, ::Tolen::Matrix44f, "Matrix44f", 64)                                             \
    X(kType_Mat3, ::Tolen::Matrix33f, "Matrix33f", 36)                                             \
    X(kType_Vec4, ::Tolen::Vector4f, "Vector4f", 16)                                               \
    X(kType_Vec3, ::Tolen::Vector3f, "Vector3f", 12)                                               \
    X(kType_Vec2, ::Tolen::Vector2f, "Vector2f", 8)                                                \
    X(kType_Float, float, "float", 4)                                                              \
    X(kType_IVec4, ::Tolen::Vector4i, "Vector4i", 16)                                              \
    X(kType_IVec3, ::Tolen::Vector3i, "Vector3i", 12)                                              \
    X(kType_IVec2, ::Tolen::Vector2i, "Vector2i", 8)                                               \
    X(kType_Int, int, "int", 4)                                                                    \
    X(kType_Bool, bool, "bool", 4)

namespace Tolen::Effects {

/// What is known of an element type T.
///
/// - `kSpecifier`: the type in the shading language
/// - `kName`: the name of the C++ type
/// - `Buffer`: the form of one element in a buffer; `bool` becomes an `int` of 0 or 1
///
/// @tparam T one of TOLEN_ELEMENT_TYPES
template <class T>
struct ElementType;

/// Tells what is known of one type.
#define TOLEN_ELEMENT_TYPE(specifier, T, name, bytes)                                              \
    template <>                                                                                    \
    struct ElementType<T> {                                                                        \
        using Buffer = std::conditional_t<std::is_same_v<T, bool>, int, T>;                        \
        static constexpr TypeSpecifier kSpecifier = specifier;                                     \
        static constexpr const char* kName = name;                                                 \
        static_assert(sizeof(Buffer) == bytes && std::is_trivially_copyable_v<Buffer>);            \
    };
TOLEN_ELEMENT_TYPES(TOLEN_ELEMENT_TYPE)
#undef TOLEN_ELEMENT_TYPE

/// How the client's operations take one element: vectors and matrices by reference, all others by
/// value.
template <class T>
using ArgumentOf = std::conditional_t<std::is_class_v<T>, const T&, T>;

/// One case of VisitElementType().
#define TOLEN_VISIT_ELEMENT_TYPE(enumerator, T, name, bytes)                                       \
    case enumerator:                                                                               \
        return visit(std::type_identity<T>());

/// Calls @p visit with a `std::type_identity<T>` of the element type that has @p specifier.
/// @return the answer of @p visit, or @p unknown when no element type has the specifier
template <class Answer, class Visit>
Answer VisitElementType(TypeSpecifier specifier, Answer unknown, Visit&& visit) {
    switch (specifier) {
        TOLEN_ELEMENT_TYPES(TOLEN_VISIT_ELEMENT_TYPE)
    default:
        return unknown;
    }
}
#undef TOLEN_VISIT_ELEMENT_TYPE

} // namespace Tolen::Effects
