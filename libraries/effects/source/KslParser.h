#pragma once

#include "IParser.h"
#include "KslMachine.h"
#include "Token.h"

#include "TolenEffects/Module.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Tolen::Effects {

/// Reads KLSL text into a Module.
///
/// A text is a sequence of free functions, interfaces and classes. The only checks beyond the
/// grammar are those for duplicates and the nesting limit; what names mean is found out later.
/// After an error the parser goes on, so that one run shows several. What an unfinished parse has
/// made of the tree so far stays in the module, which is good for nothing but deletion then.
class KslParser : public IParser {
public:
    /// Parses @p source into @p module.
    /// @param errors   takes one line for each error, with a line feed, when the parse fails
    /// @param fileName borrowed by the module, whose ranges point to it
    /// @param line     the number of lines before the first one of @p source; may be negative
    /// @return false if there was any error
    static bool Parse(Module* module, std::vector<std::string>& errors, const std::string& fileName,
                      const std::string& source, int line);

    KslParser() = default;
    ~KslParser() override = default;
    KslParser(const KslParser&) = delete;
    KslParser& operator=(const KslParser&) = delete;

    /// Makes the parsing machine; comes before Parse. @return true
    bool Init();
    /// Frees it. @return true
    bool Shutdown();

    /// Parses @p source into @p module, once. An illegal character ends the text in silence; a text
    /// beyond kLimitExpandedSource is an error as a whole.
    /// @return whether there were no errors
    bool Parse(Module* module, const std::string& fileName, const std::string& source, int line);

    /// The messages so far, each with file, line and line feed.
    const std::vector<std::string>& GetErrors() const { return _errors; }

    /// The token that came last.
    Token GetCurrentToken() const { return _currentToken; }

    /// Reports @p message, to which the current token is added.
    void Error(std::string& message);
    /// Reports @p message as it is. @param line not used: the place told is where the scanner is
    void Error(std::string& message, int line);

    /// Enter a definition in the module or, when there is one of this name, report and delete it.
    /// @{
    void AddClassDefinition(ClassDefinition* definition);
    void AddInterfaceDefinition(InterfaceDefinition* definition);
    void AddStructDefinition(StructDefinition* definition);
    /// @}

    void AddFunctionDefinition(FunctionDefinition* definition) {
        _pModule->AddFunctionDefinition(definition);
    }
    void AddStatement(Statement* statement) { _pModule->AddStatement(statement); }
    void AddExpression(Expression* expression) { _pModule->AddExpression(expression); }

    /// Gives a name that no node has taken back to the module.
    void DestroyString(String* string) { _pModule->DestroyString(string); }

    /// The factories of the module, each under its name and with its arguments.
    /// @{
#define TOLEN_FACTORY(name)                                                                        \
    template <class... Args>                                                                       \
    auto name(Args&&... args) {                                                                    \
        return _pModule->name(std::forward<Args>(args)...);                                        \
    }
    TOLEN_FACTORY(CreateAssignment)
    TOLEN_FACTORY(CreateBinaryOperator)
    TOLEN_FACTORY(CreateBoolConstant)
    TOLEN_FACTORY(CreateClassDefinition)
    TOLEN_FACTORY(CreateCompoundStatement)
    TOLEN_FACTORY(CreateCondition)
    TOLEN_FACTORY(CreateConditional)
    TOLEN_FACTORY(CreateDeclarationStatement)
    TOLEN_FACTORY(CreateDoWhileStatement)
    TOLEN_FACTORY(CreateEmptyStatement)
    TOLEN_FACTORY(CreateExpressionStatement)
    TOLEN_FACTORY(CreateFieldSelection)
    TOLEN_FACTORY(CreateFloatConstant)
    TOLEN_FACTORY(CreateForStatement)
    TOLEN_FACTORY(CreateFunctionCall)
    TOLEN_FACTORY(CreateFunctionDefinition)
    TOLEN_FACTORY(CreateFunctionParameter)
    TOLEN_FACTORY(CreateFunctionPrototype)
    TOLEN_FACTORY(CreateFunctionSelection)
    TOLEN_FACTORY(CreateIntConstant)
    TOLEN_FACTORY(CreateInterfaceDefinition)
    TOLEN_FACTORY(CreateJumpStatement)
    TOLEN_FACTORY(CreatePostOperator)
    TOLEN_FACTORY(CreateSelectionStatement)
    TOLEN_FACTORY(CreateStructDefinition)
    TOLEN_FACTORY(CreateSubscript)
    TOLEN_FACTORY(CreateType)
    TOLEN_FACTORY(CreateUnaryOperator)
    TOLEN_FACTORY(CreateUserType)
    TOLEN_FACTORY(CreateVariable)
    TOLEN_FACTORY(CreateVariableDeclaration)
    TOLEN_FACTORY(CreateWhileStatement)
#undef TOLEN_FACTORY
    /// @}

    void ParseConstantBool(const LocationRange& range, bool value) override;
    bool ParseConstantInt(const LocationRange& range, long value) override;
    bool ParseConstantFloat(const LocationRange& range, const char* text, int length) override;
    bool ParseKeyword(const LocationRange& range, int token) override;
    bool ParseIdentifier(const LocationRange& range, const char* text, int length) override;
    bool NewLine() override;

private:
    bool _ParseToken(int code, const LocationRange& range, Token::Value value);
    String* _CreateString(const char* text, int length);
    void _ReportDuplicate(const char* kind, const String* name, int line);

    const std::string* _pFileName = nullptr; ///< borrowed
    const std::string* _pSource = nullptr;   ///< borrowed while Parse runs
    std::unique_ptr<KslMachine> _pEngine;
    Module* _pModule = nullptr; ///< borrowed
    std::int32_t _currentTokenType = kToken_End;
    Token _currentToken;
    std::int32_t _line = 0; ///< lines before the one in work
    std::vector<std::string> _errors;
    std::int32_t _errorCount = 0;

    std::string_view _currentText; ///< of an identifier, in the source: its String may be gone
    std::string _buffer;           ///< for texts on their way to a String
    std::unordered_set<std::string> _classNames; ///< of the module's classes
};

} // namespace Tolen::Effects
