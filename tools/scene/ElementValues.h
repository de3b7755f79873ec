#pragma once

#include "scene/JsonNode.h"
#include "scene/Transform.h"

#include "TolenEffects/ElementTypes.h"

#include <cmath>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace Tolen::Scene {

/// The numbers that one element of a type takes in a scene file; 0 for types without numbers.
/// Matrices are given row by row.
inline std::size_t CountNumbers(Effects::TypeSpecifier type) {
    return Effects::VisitElementType(type, std::size_t{0}, [](auto identity) -> std::size_t {
        using T = typename decltype(identity)::type;
        if constexpr (std::is_same_v<T, KLtexture> || std::is_same_v<T, KLprimitive>) {
            return 0;
        } else {
            return std::is_same_v<T, bool> ? 1 : sizeof(T) / sizeof(float);
        }
    });
}

/// Makes an element from as many numbers as CountNumbers tells.
template <class T>
T MakeElement(const double* numbers) {
    if constexpr (std::is_same_v<T, bool>) {
        return *numbers != 0.0;
    } else if constexpr (std::is_arithmetic_v<T>) {
        return static_cast<T>(*numbers);
    } else if constexpr (std::is_same_v<T, Matrix33f> || std::is_same_v<T, Matrix44f>) {
        constexpr int kEdge = std::is_same_v<T, Matrix33f> ? 3 : 4;
        T matrix;
        for (int row = 0; row < kEdge; ++row) {
            for (int column = 0; column < kEdge; ++column) {
                matrix(row, column) = static_cast<float>(numbers[row * kEdge + column]);
            }
        }
        return matrix;
    } else if constexpr (std::is_class_v<T>) {
        using Component = decltype(T::x);
        T vector;
        Component* const components = &vector.x;
        for (std::size_t i = 0; i < sizeof(T) / sizeof(Component); ++i) {
            components[i] = static_cast<Component>(numbers[i]);
        }
        return vector;
    } else {
        return T();
    }
}

/// Whether a value is a transform by its steps.
inline bool IsTransform(const JsonNode& node) {
    const nlohmann::json& value = node.GetValue();
    return value.is_array() && (value.empty() || value.front().is_object());
}

/// The numbers of one element in a scene file: a number, true or false, or a list; for a mat4 also
/// the steps of a transform.
inline std::vector<double> ReadElement(const JsonNode& node, Effects::TypeSpecifier type) {
    if (type == Effects::kType_Bool) {
        return {node.AsBool() ? 1.0 : 0.0};
    }
    if (type == Effects::kType_Int) {
        return {static_cast<double>(node.AsInt(-2147483647 - 1, 2147483647))};
    }
    if (type == Effects::kType_Mat4 && IsTransform(node)) {
        const Matrix44f matrix = ReadTransform(node);
        std::vector<double> numbers;
        numbers.reserve(16);
        for (int i = 0; i < 16; ++i) {
            numbers.push_back(static_cast<double>(matrix(i / 4, i % 4)));
        }
        return numbers;
    }
    const std::size_t count = CountNumbers(type);
    if (count == 0) {
        node.Fail(std::string("a ") + Effects::TypeSpecifierToString(type) +
                  " can't be given as numbers");
    }
    std::vector<double> numbers = node.AsNumbers(count);
    const bool isWhole = type >= Effects::kType_IVec2 && type <= Effects::kType_IVec4;
    for (const double number : numbers) {
        if (isWhole && (number != std::floor(number) || std::fabs(number) > 2147483647.0)) {
            node.Fail("expected whole numbers");
        }
    }
    return numbers;
}

/// Reads one element and hands it to @p set, a callable that takes every element type.
/// @return what @p set answers
template <class Set>
bool SetElement(const JsonNode& node, Effects::TypeSpecifier type, Set&& set) {
    const std::vector<double> numbers = ReadElement(node, type);
    return Effects::VisitElementType(type, false, [&](auto identity) {
        using T = typename decltype(identity)::type;
        return set(MakeElement<T>(numbers.data()));
    });
}

/// Reads a list of elements and hands it to @p set as pointer and count.
template <class Set>
bool SetElements(const JsonNode& node, Effects::TypeSpecifier type, Set&& set) {
    const std::vector<JsonNode> nodes = node.GetElements();
    return Effects::VisitElementType(type, false, [&](auto identity) {
        using T = typename decltype(identity)::type;
        const auto elements = std::make_unique<T[]>(nodes.size());
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            elements[i] = MakeElement<T>(ReadElement(nodes[i], type).data());
        }
        return set(static_cast<const T*>(elements.get()), static_cast<int>(nodes.size()));
    });
}

} // namespace Tolen::Scene
