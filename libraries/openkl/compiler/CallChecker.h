#pragma once

#include "compiler/AccessChecker.h"
#include "compiler/BuiltinTable.h"
#include "compiler/Expressions.h"
#include "compiler/Token.h"

#include <span>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

struct CheckContext;

/// Checks calls of functions and constructors and makes the expressions for them. Functions of the
/// text go first; where none of them fits, a function of the language of that name may.
///
/// Every operation answers null after a message, and null without a message when an argument is
/// null, since that was reported already.
class CallChecker {
public:
    using Arguments = std::span<const Expression* const>;

    CallChecker(CheckContext& context, AccessChecker& access)
        : _context(context), _access(access) {}

    /// `name(arguments)`: a function or the constructor of a struct.
    const Expression* Call(const Token& name, Arguments arguments);
    /// `type(arguments)`.
    const Expression* Construct(const Type& type, int line, Arguments arguments);

private:
    const Expression* _CallFunction(int line, Function* function, Arguments arguments);
    const Expression* _CallBuiltin(int line, const BuiltinSignature& signature,
                                   Arguments arguments);
    /// Converts arguments and notes which variables they write.
    bool _PassArguments(std::span<const ParameterShape> parameters,
                        std::vector<const Expression*>& arguments);
    void _ReportNoMatch(const Token& name, Arguments arguments,
                        std::span<const BuiltinSignature> builtins, bool isAmbiguous);
    void _ReportUnknown(const Token& name);

    const Expression* _ConstructScalar(const Type& type, int line, Arguments arguments);
    const Expression* _ConstructComponents(const Type& type, int line, Arguments arguments);
    const Expression* _ConstructMembers(const Type& type, int line, Arguments arguments);

    CheckContext& _context;
    AccessChecker& _access;
};

} // namespace Tolen::OpenKL
