#include "ParameterValueExpression.h"

#include "IStorage.h"
#include "IValue.h"
#include "LocationText.h"

#include "TolenEffects/Expression.h"
#include "TolenEffects/Type.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/ParameterValueExpression";

void AddMessage(Result* result, const char* text) {
    if (result != nullptr) {
        result->Add("%s", text);
    }
}

void AddIndex(Result* result, std::size_t index) {
    if (result != nullptr) {
        result->Add("Index %zu", index);
    }
}

bool RefuseInitializer(Result* result, const Expression* expression) {
    if (result != nullptr) {
        result->Add("%s: Unsupported Initializer", LocationText(expression->GetRange()).c_str());
    }
    return false;
}

/// The scalars of which a type is made, in the order of its memory.
template <class T>
struct Channels {
    using Scalar = decltype(T::x);
    static constexpr std::size_t kCount = sizeof(T) / sizeof(Scalar);
    static T Spread(Scalar value) {
        std::array<Scalar, kCount> channels;
        channels.fill(value);
        return FromArray(channels);
    }
    static T FromArray(const std::array<Scalar, kCount>& channels) {
        return std::bit_cast<T>(channels);
    }
};

template <class T>
struct MatrixChannels {
    using Scalar = float;
    static constexpr std::size_t kCount = sizeof(T) / sizeof(Scalar);
    static T Spread(Scalar diagonal) { return T(diagonal); }
    static T FromArray(const std::array<Scalar, kCount>& channels) { return T(channels.data()); }
};

template <>
struct Channels<Matrix33f> : MatrixChannels<Matrix33f> {};
template <>
struct Channels<Matrix44f> : MatrixChannels<Matrix44f> {};

/// Conversions that cut off fractions and stay within what the target can hold.
void Convert(std::int32_t constant, int& value) {
    value = constant;
}
void Convert(std::int32_t constant, float& value) {
    value = static_cast<float>(constant);
}

void Convert(double constant, int& value) {
    constexpr int kLowest = std::numeric_limits<int>::lowest();
    constexpr int kHighest = std::numeric_limits<int>::max();
    if (std::isnan(constant)) {
        value = 0;
    } else if (constant <= kLowest) {
        value = kLowest;
    } else if (constant >= kHighest) {
        value = kHighest;
    } else {
        value = static_cast<int>(constant);
    }
}

void Convert(double constant, float& value) {
    if (std::abs(constant) > static_cast<double>(std::numeric_limits<float>::max())) {
        value = std::copysign(std::numeric_limits<float>::infinity(), constant < 0 ? -1.0f : 1.0f);
    } else {
        value = static_cast<float>(constant);
    }
}

int Negate(int value) {
    // The lowest number is its own negative.
    return static_cast<int>(0u - static_cast<unsigned int>(value));
}

float Negate(float value) {
    return -value;
}

/// Takes the minus signs off @p expression. @param negative whether their number is odd
/// @return false when another operator stands there
bool _GetExpressionValueUnaryOperator(Result* result, const Expression*& expression,
                                      bool& negative) {
    negative = false;
    while (expression != nullptr && expression->GetClass() == kClass_UnaryOperator) {
        const auto* unary = static_cast<const UnaryOperator*>(expression);
        if (unary->GetOperator() != kOperator_Subtract) {
            ConsolePrint("_GetExpressionValueUnaryOperator Unsupported Operator\n");
            AddMessage(result, OperatorToString(unary->GetOperator()));
            AddMessage(result, "Unsupported unary operator");
            return false;
        }
        negative = !negative;
        expression = unary->GetExpression();
    }
    return true;
}

/// Reads a constant number. @tparam T `int` or `float`
template <class T>
bool _GetExpressionValue(Result* result, T& value, const Expression* expression) {
    bool negative = false;
    if (!_GetExpressionValueUnaryOperator(result, expression, negative)) {
        return false;
    }
    const Class kind = expression == nullptr ? kClass_Expression : expression->GetClass();
    if (kind == kClass_IntConstant) {
        Convert(static_cast<const IntConstant*>(expression)->GetValue(), value);
    } else if (kind == kClass_FloatConstant) {
        Convert(static_cast<const FloatConstant*>(expression)->GetValue(), value);
    } else {
        ConsolePrint("_GetExpressionValue Unsupported Expression\n");
        AddMessage(result, ClassToString(kind));
        AddMessage(result, "Unsupported Expression");
        return false;
    }
    if (negative) {
        value = Negate(value);
    }
    return true;
}

/// Reads a constant truth value; numbers are none.
bool _GetExpressionValue(Result* result, bool& value, const Expression* expression) {
    const Class kind = expression == nullptr ? kClass_Expression : expression->GetClass();
    if (kind != kClass_BoolConstant) {
        ConsolePrint("_GetExpressionValue Unsupported Expression Bool\n");
        AddMessage(result, ClassToString(kind));
        AddMessage(result, "Unsupported boolean expression");
        return false;
    }
    value = static_cast<const BoolConstant*>(expression)->GetValue();
    return true;
}

/// The constructor of a built-in type that @p expression is; null when it is none.
const FunctionCall* GetConstructor(const Expression* expression) {
    if (expression->GetClass() != kClass_FunctionCall) {
        return nullptr;
    }
    const auto* call = static_cast<const FunctionCall*>(expression);
    const Type* const type = call->GetType();
    const bool isBuiltIn = type != nullptr && type->GetTypeSpecifier() != kType_UserDefined;
    return isBuiltIn ? call : nullptr;
}

template <class T>
bool SetValue(Result* result, IStorage* storage, const T& value, int index) {
    if (!storage->Set(value, index)) {
        AddMessage(result, "Value Set failed");
        return false;
    }
    return true;
}

/// `1`, `-1` or `float(1)`.
template <class T>
bool InitializeScalar(Result* result, IStorage* storage, int index, const Expression* expression) {
    T value = T();
    if (_GetExpressionValue(result, value, expression)) {
        return SetValue(result, storage, value, index);
    }
    const FunctionCall* const call = GetConstructor(expression);
    if (call != nullptr && call->GetCountParameters() == 1 &&
        _GetExpressionValue(result, value, call->GetParameters().front())) {
        return SetValue(result, storage, value, index);
    }
    return RefuseInitializer(result, expression);
}

/// `vec3(1, 2, 3)`.
template <class T>
bool InitializeFull(Result* result, IStorage* storage, int index,
                    const std::vector<Expression*>& aParameters) {
    using Of = Channels<T>;
    constexpr int nChannels = static_cast<int>(Of::kCount);
    if (!TOLEN_CHECK((int)aParameters.size() == nChannels, kSource)) {
        return false;
    }
    std::array<typename Of::Scalar, Of::kCount> channels;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (!_GetExpressionValue(result, channels[i], aParameters[i])) {
            AddIndex(result, i);
            return false;
        }
    }
    if (!storage->Set(Of::FromArray(channels), index)) {
        AddMessage(result, "Value Set Failed");
        AddIndex(result, channels.size());
        return false;
    }
    return true;
}

template <class T>
bool InitializeTuple(Result* result, IStorage* storage, int index, const Expression* pExpression) {
    using Scalar = typename Channels<T>::Scalar;
    if (!TOLEN_CHECK(pExpression->GetClass() == kClass_FunctionCall, kSource)) {
        return RefuseInitializer(result, pExpression);
    }
    const auto* pInitializer = static_cast<const FunctionCall*>(pExpression);
    if (pInitializer->GetType() == nullptr ||
        !TOLEN_CHECK(pInitializer->GetType()->GetTypeSpecifier() != kType_UserDefined, kSource)) {
        return RefuseInitializer(result, pExpression);
    }
    const std::vector<Expression*>& parameters = pInitializer->GetParameters();
    if (parameters.size() == Channels<T>::kCount) {
        return InitializeFull<T>(result, storage, index, parameters);
    }
    Scalar value = Scalar();
    if (parameters.size() == 1) {
        return _GetExpressionValue(result, value, parameters.front()) &&
               SetValue(result, storage, Channels<T>::Spread(value), index);
    }
    // Arguments that could not have been read either are told before their number.
    for (const Expression* parameter : parameters) {
        _GetExpressionValue(result, value, parameter);
    }
    ConsolePrint("_InitInitializerTypeTuple Parameter Count\n");
    AddMessage(result, "Parameter Count");
    return false;
}

} // namespace

bool IsArrayConstructor(const Expression* expression) {
    if (expression == nullptr || expression->GetClass() != kClass_FunctionCall) {
        return false;
    }
    const Type* const type = static_cast<const FunctionCall*>(expression)->GetType();
    return type != nullptr && type->IsArray();
}

int GetArrayConstructorLength(const Expression* expression) {
    if (!IsArrayConstructor(expression)) {
        return 0;
    }
    return static_cast<int>(static_cast<const FunctionCall*>(expression)->GetCountParameters());
}

bool _InitializeValue(Result* result, IStorage* storage, int index, TypeSpecifier specifier,
                      const Expression* expression) {
    if (expression == nullptr) {
        return false;
    }
    bool isSupported = false;
    const bool isInitialized =
        VisitElementType(specifier, false, [&]<class T>(std::type_identity<T>) {
            isSupported = std::is_arithmetic_v<T> || std::is_class_v<T>;
            if constexpr (std::is_arithmetic_v<T>) {
                return InitializeScalar<T>(result, storage, index, expression);
            } else if constexpr (std::is_class_v<T>) {
                return InitializeTuple<T>(result, storage, index, expression);
            } else {
                return false;
            }
        });
    if (!isSupported) {
        ConsolePrint("_InitializeValue Type\n");
        AddMessage(result, TypeSpecifierToString(specifier));
        AddMessage(result, "Unsupported initializer");
    }
    return isInitialized;
}

bool _InitializeValueArray(Result* result, IStorage* storage, TypeSpecifier specifier,
                           const Expression* expression) {
    if (expression == nullptr) {
        return false;
    }
    const bool isResizable = storage->GetValue()->IsResizable();
    if (!IsArrayConstructor(expression)) {
        const int length = isResizable ? 0 : storage->GetLength();
        for (int i = 0; i < length; ++i) {
            if (!_InitializeValue(result, storage, i, specifier, expression)) {
                return false;
            }
        }
        return true;
    }

    const auto& elements = static_cast<const FunctionCall*>(expression)->GetParameters();
    const int count = static_cast<int>(elements.size());
    if (isResizable) {
        if (!storage->SetLength(count)) {
            return false;
        }
    } else if (storage->GetLength() != count) {
        ConsolePrint("_InitializeValueArray Length\n");
        AddMessage(result, "Length Mismatch");
        AddMessage(result, "Initializer");
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (!_InitializeValue(result, storage, i, specifier,
                              elements[static_cast<std::size_t>(i)])) {
            return false;
        }
    }
    return true;
}

} // namespace Tolen::Effects
