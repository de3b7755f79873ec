#pragma once

#include "Value.h"
#include "ValueBuffer.h"

#include "TolenCore/Vector.h"

#include <cstddef>
#include <vector>

/// How storages write elements into their value and read them back. The common case hands them on;
/// the overloads serve values that keep elements in another form.

namespace Tolen::Effects {

template <class ValueType, class T>
bool WriteElements(ValueType& value, const T* elements, int count) {
    return value.SetArray(elements, count);
}

/// A buffer of truth values holds integers, and takes arrays in that form.
inline bool WriteElements(ValueBuffer<bool>& value, const bool* elements, int count) {
    if (elements == nullptr || count < 0 || count > value.GetLength()) {
        return value.SetArray(nullptr, count);
    }
    const std::vector<int> widened(elements, elements + count);
    return value.SetArray(reinterpret_cast<const bool*>(widened.data()), count);
}

template <class ValueType, class T>
bool WriteElement(ValueType& value, const T& element, int index) {
    return value.Set(element, index);
}

template <class ValueType, class T>
bool ReadElement(ValueType& value, T& element, int index) {
    if (index < 0 || index >= value.GetLength()) {
        return false;
    }
    element = value.Get(index);
    return true;
}

/// Textures have no format of two channels: a third one stays zero.
inline bool WriteElements(Value<Vector3f>& value, const Vector2f* elements, int count) {
    if (elements == nullptr || count < 0 || count > value.GetLength()) {
        return value.SetArray(nullptr, count);
    }
    std::vector<Vector3f> widened;
    widened.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        widened.emplace_back(elements[i].x, elements[i].y, 0.0f);
    }
    return value.SetArray(widened.data(), count);
}

inline bool WriteElement(Value<Vector3f>& value, const Vector2f& element, int index) {
    return value.Set(Vector3f(element.x, element.y, 0.0f), index);
}

inline bool ReadElement(Value<Vector3f>& value, Vector2f& element, int index) {
    Vector3f widened;
    if (!ReadElement<Value<Vector3f>, Vector3f>(value, widened, index)) {
        return false;
    }
    element = Vector2f(widened.x, widened.y);
    return true;
}

} // namespace Tolen::Effects
