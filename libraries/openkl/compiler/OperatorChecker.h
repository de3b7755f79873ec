#pragma once

#include "compiler/AccessChecker.h"
#include "compiler/Expressions.h"

#include <optional>
#include <string_view>

namespace Tolen::OpenKL {

struct CheckContext;

/// Checks operators against the types of their operands and makes the expressions for them.
///
/// Every operation answers null after a message, and null without a message when an operand is
/// null, since that was reported already.
class OperatorChecker {
public:
    OperatorChecker(CheckContext& context, AccessChecker& access)
        : _context(context), _access(access) {}

    /// @param text the operator as messages show it
    const Expression* Unary(UnaryOperator operation, std::string_view text, int line,
                            const Expression* operand);
    /// `+operand`.
    const Expression* Plus(int line, const Expression* operand);
    const Expression* Increment(int line, const Expression* target, bool isDecrement,
                                bool isPrefix);
    /// @param operation kBinary_Multiply for every product
    const Expression* Binary(BinaryOperator operation, std::string_view text, int line,
                             const Expression* left, const Expression* right);
    const Expression* Assign(int line, const Expression* target, const Expression* value);
    /// @param text with its "=", such as "+="
    const Expression* CompoundAssign(BinaryOperator operation, std::string_view text, int line,
                                     const Expression* target, const Expression* value);
    const Expression* Conditional(int line, const Expression* condition, const Expression* whenTrue,
                                  const Expression* whenFalse);
    const Expression* Comma(int line, const Expression* left, const Expression* right);

private:
    CheckContext& _context;
    AccessChecker& _access;
};

} // namespace Tolen::OpenKL
