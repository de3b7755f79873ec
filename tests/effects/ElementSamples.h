#pragma once

#include "TolenEffects/ElementTypes.h"

#include "support/RecordingBindings.h"

#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <string>

namespace Tolen::Effects::Tests {

template <class, class... Ts>
struct TypesBehind {
    using Types = ::testing::Types<Ts...>;
};

/// The thirteen element types for typed tests.
#define TOLEN_LIST_TYPE(specifier, T, name, bytes) , T
using ElementTypes = TypesBehind<void TOLEN_ELEMENT_TYPES(TOLEN_LIST_TYPE)>::Types;
#undef TOLEN_LIST_TYPE

/// Names the typed tests after the C++ types.
struct ElementTypeName {
    template <class T>
    static std::string GetName(int) {
        return ElementType<T>::kName;
    }
};

/// A value of T that is no default; another one for each of three numbers, where T has so many.
template <class T>
T MakeSample(int number) {
    if constexpr (std::is_same_v<T, bool>) {
        return number % 2 == 1;
    } else if constexpr (std::is_same_v<T, KLtexture>) {
        static std::array<KLtextureRecord, 4> textures = {
            KLtextureRecord{"zero"}, KLtextureRecord{"one"}, KLtextureRecord{"two"},
            KLtextureRecord{"three"}};
        return &textures.at(static_cast<std::size_t>(number));
    } else if constexpr (std::is_same_v<T, Matrix33f> || std::is_same_v<T, Matrix44f>) {
        T matrix;
        std::iota(std::begin(matrix.m), std::end(matrix.m), static_cast<float>(number));
        return matrix;
    } else if constexpr (std::is_class_v<T>) {
        using Scalar = decltype(T::x);
        T vector;
        vector.x = static_cast<Scalar>(number);
        vector.y = static_cast<Scalar>(number + 10);
        if constexpr (requires { vector.z; }) {
            vector.z = static_cast<Scalar>(number + 20);
        }
        if constexpr (requires { vector.w; }) {
            vector.w = static_cast<Scalar>(number + 30);
        }
        return vector;
    } else {
        return static_cast<T>(number);
    }
}

} // namespace Tolen::Effects::Tests
