#include "engine/ValueMath.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

ValueId At(const Values& values, std::size_t i) {
    return values.size() == 1 ? values[0] : values[i];
}

/// Functions that are one operation for each component.
Operation GetFloatOperation(BuiltinFunction function) {
    switch (function) {
    case kFunction_Sin:
        return Operation::FSin;
    case kFunction_Cos:
        return Operation::FCos;
    case kFunction_Tan:
        return Operation::FTan;
    case kFunction_Asin:
        return Operation::FAsin;
    case kFunction_Acos:
        return Operation::FAcos;
    case kFunction_Atan:
        return Operation::FAtan;
    case kFunction_Sinh:
        return Operation::FSinh;
    case kFunction_Cosh:
        return Operation::FCosh;
    case kFunction_Tanh:
        return Operation::FTanh;
    case kFunction_Asinh:
        return Operation::FAsinh;
    case kFunction_Acosh:
        return Operation::FAcosh;
    case kFunction_Atanh:
        return Operation::FAtanh;
    case kFunction_Pow:
        return Operation::FPow;
    case kFunction_Exp:
        return Operation::FExp;
    case kFunction_Log:
        return Operation::FLog;
    case kFunction_Exp2:
        return Operation::FExp2;
    case kFunction_Log2:
        return Operation::FLog2;
    case kFunction_Sqrt:
        return Operation::FSqrt;
    case kFunction_InverseSqrt:
        return Operation::FInverseSqrt;
    case kFunction_Abs:
        return Operation::FAbs;
    case kFunction_Sign:
        return Operation::FSign;
    case kFunction_Floor:
        return Operation::FFloor;
    case kFunction_Trunc:
        return Operation::FTrunc;
    case kFunction_Round:
    case kFunction_RoundEven:
        return Operation::FRoundEven;
    case kFunction_Ceil:
        return Operation::FCeil;
    case kFunction_Fract:
        return Operation::FFract;
    case kFunction_Mod:
        return Operation::FMod;
    case kFunction_Min:
        return Operation::FMin;
    case kFunction_Max:
        return Operation::FMax;
    case kFunction_Clamp:
        return Operation::FClamp;
    case kFunction_IsNan:
        return Operation::FIsNan;
    case kFunction_IsInf:
        return Operation::FIsInf;
    case kFunction_MatrixCompMult:
        return Operation::FMul;
    default:
        return Operation::Count;
    }
}

Operation GetIntOperation(BuiltinFunction function) {
    switch (function) {
    case kFunction_Abs:
        return Operation::IAbs;
    case kFunction_Sign:
        return Operation::ISign;
    case kFunction_Min:
        return Operation::IMin;
    case kFunction_Max:
        return Operation::IMax;
    default:
        return Operation::Count;
    }
}

} // namespace

Values ValueMath::Map(Operation operation, const Values& a) {
    Values result;
    result.reserve(a.size());
    for (ValueId value : a) {
        result.push_back(_builder.Do(operation, value));
    }
    return result;
}

Values ValueMath::Map(Operation operation, const Values& a, const Values& b) {
    std::size_t count = std::max(a.size(), b.size());
    Values result;
    result.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        result.push_back(_builder.Do(operation, At(a, i), At(b, i)));
    }
    return result;
}

Values ValueMath::Map(Operation operation, const Values& a, const Values& b, const Values& c) {
    std::size_t count = std::max({a.size(), b.size(), c.size()});
    Values result;
    result.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        result.push_back(_builder.Do(operation, At(a, i), At(b, i), At(c, i)));
    }
    return result;
}

ValueId ValueMath::Dot(const Values& a, const Values& b) {
    ValueId sum = _builder.Do(Operation::FMul, a[0], b[0]);
    for (std::size_t i = 1; i < a.size(); ++i) {
        sum = _builder.Do(Operation::FMulAdd, a[i], b[i], sum);
    }
    return sum;
}

ValueId ValueMath::All(const Values& masks) {
    ValueId all = masks[0];
    for (std::size_t i = 1; i < masks.size(); ++i) {
        all = _builder.Do(Operation::IAnd, all, masks[i]);
    }
    return all;
}

ValueId ValueMath::Any(const Values& masks) {
    ValueId any = masks[0];
    for (std::size_t i = 1; i < masks.size(); ++i) {
        any = _builder.Do(Operation::IOr, any, masks[i]);
    }
    return any;
}

ValueId ValueMath::Not(ValueId mask) {
    return _builder.Do(Operation::INot, mask);
}

Values ValueMath::MatrixTimesMatrix(const Values& a, const Values& b, std::size_t size) {
    Values result;
    for (std::size_t column = 0; column < size; ++column) {
        auto first = b.begin() + static_cast<std::ptrdiff_t>(column * size);
        Values product =
            MatrixTimesVector(a, Values(first, first + static_cast<std::ptrdiff_t>(size)));
        result.insert(result.end(), product.begin(), product.end());
    }
    return result;
}

Values ValueMath::MatrixTimesVector(const Values& matrix, const Values& vector) {
    std::size_t size = vector.size();
    Values result;
    for (std::size_t row = 0; row < size; ++row) {
        Values line;
        for (std::size_t column = 0; column < size; ++column) {
            line.push_back(matrix[column * size + row]);
        }
        result.push_back(Dot(line, vector));
    }
    return result;
}

Values ValueMath::VectorTimesMatrix(const Values& vector, const Values& matrix) {
    std::size_t size = vector.size();
    Values result;
    for (std::size_t column = 0; column < size; ++column) {
        auto first = matrix.begin() + static_cast<std::ptrdiff_t>(column * size);
        result.push_back(Dot(vector, Values(first, first + static_cast<std::ptrdiff_t>(size))));
    }
    return result;
}

Values ValueMath::Transpose(const Values& matrix, std::size_t size) {
    Values result;
    for (std::size_t column = 0; column < size; ++column) {
        for (std::size_t row = 0; row < size; ++row) {
            result.push_back(matrix[row * size + column]);
        }
    }
    return result;
}

/// The determinant of what is left without one column and one row.
ValueId ValueMath::_Minor(const Values& matrix, std::size_t size, std::size_t column,
                          std::size_t row) {
    Values rest;
    for (std::size_t c = 0; c < size; ++c) {
        for (std::size_t r = 0; r < size; ++r) {
            if (c != column && r != row) {
                rest.push_back(matrix[c * size + r]);
            }
        }
    }
    return Determinant(rest, size - 1);
}

ValueId ValueMath::Determinant(const Values& matrix, std::size_t size) {
    if (size == 1) {
        return matrix[0];
    }
    if (size == 2) {
        ValueId crossed = _builder.Do(Operation::FMul, matrix[2], matrix[1]);
        return _builder.Do(Operation::FMulSub, matrix[0], matrix[3], crossed);
    }
    ValueId sum = _builder.Do(Operation::FMul, matrix[0], _Minor(matrix, size, 0, 0));
    for (std::size_t row = 1; row < size; ++row) {
        Operation operation = row % 2 == 0 ? Operation::FMulAdd : Operation::FNegMulAdd;
        sum = _builder.Do(operation, matrix[row], _Minor(matrix, size, 0, row), sum);
    }
    return sum;
}

/// By cofactors; the first column's give the determinant too.
Values ValueMath::Inverse(const Values& matrix, std::size_t size) {
    Values cofactors(size * size);
    for (std::size_t column = 0; column < size; ++column) {
        for (std::size_t row = 0; row < size; ++row) {
            ValueId minor = _Minor(matrix, size, column, row);
            bool isNegative = (column + row) % 2 != 0;
            cofactors[column * size + row] =
                isNegative ? _builder.Do(Operation::FNeg, minor) : minor;
        }
    }
    Values firstColumn(matrix.begin(), matrix.begin() + static_cast<std::ptrdiff_t>(size));
    Values firstCofactors(cofactors.begin(), cofactors.begin() + static_cast<std::ptrdiff_t>(size));
    ValueId scale =
        _builder.Do(Operation::FDiv, _builder.Float(1.0f), Dot(firstColumn, firstCofactors));
    return Map(Operation::FMul, Transpose(cofactors, size), {scale});
}

Values ValueMath::Convert(BaseType from, BaseType to, const Values& values) {
    if (from == to) {
        return values;
    }
    if (to == kBase_Bool) {
        Operation operation = from == kBase_Float ? Operation::FNotEqual : Operation::INotEqual;
        return Map(operation, values, {_builder.Int(0)});
    }
    if (from == kBase_Bool) {
        return Map(to == kBase_Float ? Operation::MaskToF : Operation::MaskToI, values);
    }
    return Map(to == kBase_Float ? Operation::IToF : Operation::FToI, values);
}

ValueId ValueMath::Equal(BaseType base, ValueId a, ValueId b) {
    return _builder.Do(base == kBase_Float ? Operation::FEqual : Operation::IEqual, a, b);
}

Values ValueMath::CallFunction(BuiltinFunction function, BaseType base, const Type& result,
                               const std::vector<Values>& arguments) {
    const Values& first = arguments[0];
    auto size = static_cast<std::size_t>(result.rows);
    switch (function) {
    case kFunction_Transpose:
        return Transpose(first, size);
    case kFunction_Inverse:
        return Inverse(first, size);
    case kFunction_Determinant: {
        std::size_t side = first.size() == 4 ? 2 : first.size() == 9 ? 3 : 4;
        return {Determinant(first, side)};
    }
    case kFunction_OuterProduct: {
        Values product;
        for (ValueId column : arguments[1]) {
            Values scaled = Map(Operation::FMul, first, {column});
            product.insert(product.end(), scaled.begin(), scaled.end());
        }
        return product;
    }
    case kFunction_Length:
    case kFunction_Distance:
    case kFunction_Dot:
    case kFunction_Cross:
    case kFunction_Normalize:
    case kFunction_FaceForward:
    case kFunction_Reflect:
    case kFunction_Refract:
        return _CallGeometric(function, arguments);
    default:
        return _CallCommon(function, base, arguments);
    }
}

Values ValueMath::_CallGeometric(BuiltinFunction function, const std::vector<Values>& arguments) {
    const Values& a = arguments[0];
    switch (function) {
    case kFunction_Length:
        return {_builder.Do(Operation::FSqrt, Dot(a, a))};
    case kFunction_Distance: {
        Values difference = Map(Operation::FSub, a, arguments[1]);
        return {_builder.Do(Operation::FSqrt, Dot(difference, difference))};
    }
    case kFunction_Dot:
        return {Dot(a, arguments[1])};
    case kFunction_Cross: {
        const Values& b = arguments[1];
        Values result;
        for (std::size_t i = 0; i < 3; ++i) {
            std::size_t j = (i + 1) % 3;
            std::size_t k = (i + 2) % 3;
            ValueId crossed = _builder.Do(Operation::FMul, a[k], b[j]);
            result.push_back(_builder.Do(Operation::FMulSub, a[j], b[k], crossed));
        }
        return result;
    }
    case kFunction_Normalize:
        return Map(Operation::FMul, a, {_builder.Do(Operation::FInverseSqrt, Dot(a, a))});
    case kFunction_FaceForward: {
        ValueId side = Dot(arguments[2], arguments[1]);
        ValueId isBehind = _builder.Do(Operation::FLess, side, _builder.Float(0.0f));
        return Map(Operation::Select, {isBehind}, a, Map(Operation::FNeg, a));
    }
    case kFunction_Reflect: {
        const Values& normal = arguments[1];
        ValueId along = Dot(normal, a);
        ValueId twice = _builder.Do(Operation::FAdd, along, along);
        return Map(Operation::FNegMulAdd, {twice}, normal, a);
    }
    default:
        return _Refract(arguments);
    }
}

Values ValueMath::_Refract(const std::vector<Values>& arguments) {
    const Values& incident = arguments[0];
    const Values& normal = arguments[1];
    ValueId eta = arguments[2][0];
    ValueId one = _builder.Float(1.0f);
    ValueId along = Dot(normal, incident);
    ValueId sine = _builder.Do(Operation::FNegMulAdd, along, along, one);
    ValueId squared = _builder.Do(Operation::FMul, eta, eta);
    ValueId k = _builder.Do(Operation::FNegMulAdd, squared, sine, one);
    ValueId isTotal = _builder.Do(Operation::FLess, k, _builder.Float(0.0f));
    ValueId bend = _builder.Do(Operation::FMulAdd, eta, along, _builder.Do(Operation::FSqrt, k));
    Values scaled = Map(Operation::FMul, incident, {eta});
    Values result = Map(Operation::FNegMulAdd, {bend}, normal, scaled);
    return Map(Operation::Select, {isTotal}, {_builder.Float(0.0f)}, result);
}

Values ValueMath::_CallCommon(BuiltinFunction function, BaseType base,
                              const std::vector<Values>& arguments) {
    const Values& a = arguments[0];
    bool isFloat = base == kBase_Float;
    Operation operation = isFloat ? GetFloatOperation(function) : GetIntOperation(function);
    if (function == kFunction_Atan && arguments.size() == 2) {
        operation = Operation::FAtan2;
    }
    if (operation != Operation::Count) {
        switch (arguments.size()) {
        case 1:
            return Map(operation, a);
        case 2:
            return Map(operation, a, arguments[1]);
        default:
            return Map(operation, a, arguments[1], arguments[2]);
        }
    }
    ValueId zero = _builder.Float(0.0f);
    ValueId one = _builder.Float(1.0f);
    switch (function) {
    case kFunction_Radians:
        return Map(Operation::FMul, a, {_builder.Float(0.017453292519943295f)});
    case kFunction_Degrees:
        return Map(Operation::FMul, a, {_builder.Float(57.29577951308232f)});
    case kFunction_Clamp: // of ints
        return Map(Operation::IMin, Map(Operation::IMax, a, arguments[1]), arguments[2]);
    case kFunction_Mix: {
        const Values& b = arguments[1];
        const Values& weight = arguments[2];
        Values rest = Map(Operation::FSub, {one}, weight);
        return Map(Operation::FMulAdd, b, weight, Map(Operation::FMul, a, rest));
    }
    case kFunction_Step:
        return Map(Operation::Select, Map(Operation::FLess, arguments[1], a), {zero}, {one});
    case kFunction_SmoothStep: {
        Values span = Map(Operation::FSub, arguments[1], a);
        Values offset = Map(Operation::FSub, arguments[2], a);
        Values t = Map(Operation::FClamp, Map(Operation::FDiv, offset, span), {zero}, {one});
        Values slope =
            Map(Operation::FNegMulAdd, {_builder.Float(2.0f)}, t, {_builder.Float(3.0f)});
        return Map(Operation::FMul, Map(Operation::FMul, t, t), slope);
    }
    case kFunction_FloatBitsToInt:
        // All NaNs look alike, since their bits depend on the order of operands.
        return Map(Operation::Select, Map(Operation::FIsNan, a), {_builder.Constant(0x7fc00000u)},
                   a);
    case kFunction_IntBitsToFloat:
        return a;
    case kFunction_Fma:
        return Map(Operation::FMulAdd, a, arguments[1], arguments[2]);
    case kFunction_LessThan:
        return Map(isFloat ? Operation::FLess : Operation::ILess, a, arguments[1]);
    case kFunction_LessThanEqual:
        return Map(isFloat ? Operation::FLessEqual : Operation::ILessEqual, a, arguments[1]);
    case kFunction_GreaterThan:
        return Map(isFloat ? Operation::FLess : Operation::ILess, arguments[1], a);
    case kFunction_GreaterThanEqual:
        return Map(isFloat ? Operation::FLessEqual : Operation::ILessEqual, arguments[1], a);
    case kFunction_VectorEqual:
        return Map(isFloat ? Operation::FEqual : Operation::IEqual, a, arguments[1]);
    case kFunction_VectorNotEqual:
        return Map(isFloat ? Operation::FNotEqual : Operation::INotEqual, a, arguments[1]);
    case kFunction_Any:
        return {Any(a)};
    case kFunction_All:
        return {All(a)};
    case kFunction_Not:
        return Map(Operation::INot, a);
    default:
        return Values(a.size(), zero);
    }
}

} // namespace Tolen::OpenKL
