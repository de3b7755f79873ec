#pragma once

#include "compiler/Expressions.h"
#include "compiler/Token.h"

#include <string>
#include <string_view>

namespace Tolen::OpenKL {

struct CheckContext;

/// Checks how code reaches variables and parts of values, and makes the expressions for it.
///
/// Operations that make an expression answer null after a message, and null without a message when
/// an operand is null, since that was reported already.
class AccessChecker {
public:
    explicit AccessChecker(CheckContext& context) : _context(context) {}

    const Expression* Name(const Token& name);
    /// `object.name`: a swizzle, a field, or the array of a uniform block.
    const Expression* Member(const Expression* object, const Token& name);
    /// `object[index]`.
    const Expression* Index(const Expression* object, const Expression* index, int line);
    /// `object.length()`.
    const Expression* Length(const Expression* object, int line);

    /// To be called with every operand that no subscript or selection follows: what a uniform block
    /// leaves there is no value.
    const Expression* Complete(const Expression* operand);

    /// Checks that code may write @p target and takes note of it.
    /// @param readsToo whether the old value matters
    /// @param action   what the message says of it, such as "assign to"
    bool Write(const Expression* target, bool readsToo, std::string_view action);

    /// The value as one of type @p type. @return null, without a message, when it can't be
    const Expression* Convert(const Expression* value, const Type& type);

    /// Checks that @p condition is a bool. @param what "the condition of 'if'"
    bool RequireBool(const Expression* condition, std::string_view what);

private:
    const Expression* _BuiltinVariable(const Token& name);
    const Expression* _Swizzle(const Expression* object, const Token& name);
    const Expression* _Field(const Expression* object, const Token& name);
    bool _CheckIndex(const Expression* index, int count, const Type& type);
    bool _RefuseWrite(int line, std::string_view action, const std::string& what);
    bool _CheckWritable(const Variable& variable, int line, std::string_view action);

    CheckContext& _context;
};

/// The variable that a target is made of; null when it is not made of one.
Variable* FindRootVariable(const Expression* target);

/// How messages speak of a kind of variable, such as "a uniform".
std::string_view StorageToString(Storage storage);

} // namespace Tolen::OpenKL
