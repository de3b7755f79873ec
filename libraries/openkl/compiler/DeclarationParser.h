#pragma once

#include "compiler/ExpressionParser.h"
#include "compiler/Statements.h"

#include <optional>
#include <string_view>

namespace Tolen::OpenKL {

/// Reads what declarations at all levels have in common: types, lengths of arrays and
/// initialisers, and the local variables of functions.
class DeclarationParser {
public:
    DeclarationParser(CheckContext& context, TokenStream& tokens, ExpressionParser& expressions)
        : _context(context), _tokens(tokens), _expressions(expressions) {}

    /// Whether a declaration of a local variable starts at the next token.
    bool StartsLocal() const;

    /// Reads `highp`, `mediump` or `lowp`, if there is one, which means nothing here.
    void SkipPrecision();

    /// Reads a type, with a length behind it if there is one. A name that is no type is reported
    /// and gives void, for a variable of which nothing more will be said.
    /// @param takesVoid whether `void` may stand there
    /// @return nothing when no type stands there, after a message
    std::optional<Type> ParseType(bool takesVoid = false);

    /// Reads `[length]` behind a name, if there is one. Without a length, as in `[]`, the length of
    /// @p type becomes -1, to be settled by the initialiser.
    /// @return false when the tokens made no length
    bool ParseArrayPart(Type& type, std::string_view name);

    /// Holds the size of a variable to the limit. @return false after a message
    bool CheckSize(const Type& type, std::string_view name, int line);

    /// Reads an initialiser behind "=" for a variable of type @p type, whose open length it
    /// settles. @return false when the tokens made none
    bool ParseInitializer(Variable& variable, const Expression*& initializer);

    /// Reads a declaration of local variables without its ";".
    /// @return null when the tokens made none
    const Statement* ParseLocal();

    /// Reads `type name = value`, the declaration form of a condition.
    /// @param declaration takes what runs ahead of the loop
    /// @return the condition, which assigns and tests the variable
    ParsedExpression ParseCondition(const Statement*& declaration);

    /// A new variable of the arena.
    Variable* MakeVariable(const Token& name, const Type& type, Storage storage);
    /// Makes a local variable or parameter known in the current scope.
    void Declare(Variable* variable);

private:
    const Statement* _ParseLocalVariable(const Type& type, bool isConst);

    CheckContext& _context;
    TokenStream& _tokens;
    ExpressionParser& _expressions;
};

} // namespace Tolen::OpenKL
