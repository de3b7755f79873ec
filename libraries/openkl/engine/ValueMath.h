#pragma once

#include "engine/IrBuilder.h"

#include "compiler/Builtins.h"
#include "compiler/Type.h"

#include <vector>

namespace Tolen::OpenKL {

/// Vectors and matrices in terms of scalar operations. Where two operands go together, one of them
/// may be a single scalar, which then counts for every component of the other.
class ValueMath {
public:
    explicit ValueMath(IrBuilder& builder) : _builder(builder) {}

    Values Map(Operation operation, const Values& a);
    Values Map(Operation operation, const Values& a, const Values& b);
    Values Map(Operation operation, const Values& a, const Values& b, const Values& c);

    ValueId Dot(const Values& a, const Values& b);
    /// All of the masks, from the first on.
    ValueId All(const Values& masks);
    ValueId Any(const Values& masks);
    ValueId Not(ValueId mask);

    /// Matrices stand column by column, @p size by @p size.
    Values MatrixTimesMatrix(const Values& a, const Values& b, std::size_t size);
    Values MatrixTimesVector(const Values& matrix, const Values& vector);
    Values VectorTimesMatrix(const Values& vector, const Values& matrix);
    Values Transpose(const Values& matrix, std::size_t size);
    ValueId Determinant(const Values& matrix, std::size_t size);
    Values Inverse(const Values& matrix, std::size_t size);

    Values Convert(BaseType from, BaseType to, const Values& values);
    ValueId Equal(BaseType base, ValueId a, ValueId b);

    /// A function of the language that has no effect.
    /// @param base the base type of the first argument
    Values CallFunction(BuiltinFunction function, BaseType base, const Type& result,
                        const std::vector<Values>& arguments);

private:
    Values _CallGeometric(BuiltinFunction function, const std::vector<Values>& arguments);
    Values _CallCommon(BuiltinFunction function, BaseType base,
                       const std::vector<Values>& arguments);
    ValueId _Minor(const Values& matrix, std::size_t size, std::size_t column, std::size_t row);
    Values _Refract(const std::vector<Values>& arguments);

    IrBuilder& _builder;
};

} // namespace Tolen::OpenKL
