#include "Value.h"

#include "ValueText.h"

#include "TolenEffects/ElementTypes.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>
#include <utility>

namespace Tolen::Effects {

class IShader;

namespace {

/// The names under which a value tells of its elements; texts and shaders have no element type of
/// the shading language.
template <class T>
struct ElementNames {
    static constexpr TypeSpecifier kSpecifier = ElementType<T>::kSpecifier;
    static constexpr const char* kName = ElementType<T>::kName;
};

template <>
struct ElementNames<std::string> {
    static constexpr TypeSpecifier kSpecifier = kType_UserDefined;
    static constexpr const char* kName = "string";
};

template <>
struct ElementNames<IShader*> {
    static constexpr TypeSpecifier kSpecifier = kType_UserDefined;
    static constexpr const char* kName = "IShader";
};

} // namespace

template <class T>
Value<T>::Value(int length, bool resizable, const T& defaultValue)
    : _isResizable(resizable), _defaultValue(defaultValue) {
    _Resize(length);
}

template <class T>
TypeSpecifier Value<T>::GetTypeSpecifier() {
    return ElementNames<T>::kSpecifier;
}

template <class T>
const char* Value<T>::GetTypeName() {
    return ElementNames<T>::kName;
}

template <class T>
bool Value<T>::SetLength(int length) {
    if (!_isResizable) {
        ConsoleError("Value::SetLength Not Resizable\n");
        return false;
    }
    _Resize(length);
    return _length == length;
}

template <class T>
bool Value<T>::GetValueAsString(std::string& out, int index) {
    if (index >= _length) {
        ConsoleError("Value<T>::GetValueAsString Index Out of Bounds\n");
        return false;
    }
    if (index < 0) {
        return false;
    }
    out = ElementToString(_elements[index]);
    return true;
}

template <class T>
bool Value<T>::GetValueAsString(std::string& out) {
    return GetValueAsString(out, 0);
}

template <class T>
bool Value<T>::Set(const T& value, int index) {
    if (index >= _length) {
        ConsoleError("Value::Set Index Out of Bounds\n");
        return false;
    }
    if (index < 0) {
        return false;
    }
    _elements[index] = value;
    return true;
}

template <class T>
bool Value<T>::SetArray(const T* values, int count) {
    if (count > _length) {
        ConsoleError("Value::SetArray Array Out of Bounds\n");
        return false;
    }
    if (count < 0 || (values == nullptr && count != 0)) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        _elements[i] = values[i];
    }
    return true;
}

template <class T>
void Value<T>::_Resize(int length) {
    const std::size_t size = length < 0 ? 0 : static_cast<std::size_t>(length);
    std::unique_ptr<T[]> elements(new (std::nothrow) T[size]);
    if (elements == nullptr) {
        return;
    }
    const int kept = std::max(0, std::min(length, _length));
    std::copy_n(_elements.get(), kept, elements.get());
    std::fill(elements.get() + kept, elements.get() + size, _defaultValue);
    _elements = std::move(elements);
    _length = length;
}

#define TOLEN_INSTANTIATE(specifier, T, name, bytes) template class TOLEN_EXPORT Value<T>;
TOLEN_ELEMENT_TYPES(TOLEN_INSTANTIATE)
#undef TOLEN_INSTANTIATE
template class TOLEN_EXPORT Value<std::string>;
template class TOLEN_EXPORT Value<IShader*>;

IValue* CreateValue(IOpenKLContext*, TypeSpecifier specifier, int length, bool resizable) {
    if (!TOLEN_CHECK_TEXT(length >= 0, "nValues >=0", "Source/Value")) {
        return nullptr;
    }
    const auto create = [=]<class T>(std::type_identity<T>) -> IValue* {
        return new Value<T>(length, resizable, T());
    };
    return VisitElementType(specifier, static_cast<IValue*>(nullptr), create);
}

} // namespace Tolen::Effects
