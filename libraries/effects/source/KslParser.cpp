#include "KslParser.h"

#include "KslScanner.h"
#include "KslToken.h"

#include "TolenEffects/Limits.h"

namespace Tolen::Effects {

bool KslParser::Parse(Module* module, std::vector<std::string>& errors, const std::string& fileName,
                      const std::string& source, int line) {
    KslParser parser;
    parser.Init();
    const bool success = parser.Parse(module, fileName, source, line);
    if (!success) {
        errors.insert(errors.end(), parser._errors.begin(), parser._errors.end());
    }
    parser.Shutdown();
    return success;
}

bool KslParser::Init() {
    _pEngine = std::make_unique<KslMachine>(this);
    return true;
}

bool KslParser::Shutdown() {
    _pEngine.reset();
    return true;
}

bool KslParser::Parse(Module* module, const std::string& fileName, const std::string& source,
                      int line) {
    _pFileName = &fileName;
    _pSource = &source;
    _pModule = module;
    _line = line;
    _errorCount = 0;
    for (const ClassDefinition* definition : module->GetClassDefinitions()) {
        _classNames.insert(definition->GetName()->GetString());
    }

    if (source.size() > kLimitExpandedSource) {
        std::string message = "The source exceeds the limit of " +
                              std::to_string(kLimitExpandedSource) + " bytes.";
        Error(message, _line);
        return false;
    }

    // Where the scanner gives up, the text ends as if nothing had followed.
    KslScanner scanner;
    scanner.Init(this, source, line);
    scanner.Scan();
    _pEngine->Parse(kToken_End, _currentToken);

    _pSource = nullptr;
    _currentText = {};
    return _errorCount == 0;
}

void KslParser::Error(std::string& message) {
    message.append(" Near \"").append(TokenName(_currentTokenType)).append("\"");
    if (_currentTokenType == kToken_Identifier) {
        message.append(" ").append(_currentText);
    }
    Error(message, _line);
}

void KslParser::Error(std::string& message, int /*line*/) {
    ++_errorCount;
    _errors.push_back(*_pFileName + "(" + std::to_string(_line + 1) + ") : " + message + "\n");
}

void KslParser::AddClassDefinition(ClassDefinition* definition) {
    if (!_classNames.insert(definition->GetName()->GetString()).second) {
        _ReportDuplicate("class", definition->GetName(), definition->GetRange().firstLine);
        delete definition;
        return;
    }
    _pModule->AddClassDefinition(definition);
}

void KslParser::AddInterfaceDefinition(InterfaceDefinition* definition) {
    if (_pModule->GetInterfaceDefinition(definition->GetName()->GetString()) != nullptr) {
        _ReportDuplicate("interface", definition->GetName(), definition->GetRange().firstLine);
        delete definition;
        return;
    }
    _pModule->AddInterfaceDefinition(definition);
}

void KslParser::AddStructDefinition(StructDefinition* definition) {
    if (_pModule->GetStructDefinition(definition->GetName()->GetString()) != nullptr) {
        _ReportDuplicate("struct", definition->GetName(), definition->GetRange().firstLine);
        delete definition;
        return;
    }
    _pModule->AddStructDefinition(definition);
}

void KslParser::_ReportDuplicate(const char* kind, const String* name, int line) {
    std::string message =
        std::string("Duplicate ") + kind + " definition: \"" + name->GetString() + "\"";
    Error(message, line);
}

void KslParser::ParseConstantBool(const LocationRange& range, bool value) {
    _ParseToken(kToken_BoolConstant, range, {.boolean = value});
}

bool KslParser::ParseConstantInt(const LocationRange& range, long value) {
    return _ParseToken(kToken_IntConstant, range, {.integer = static_cast<std::int32_t>(value)});
}

bool KslParser::ParseConstantFloat(const LocationRange& range, const char* text, int length) {
    return _ParseToken(kToken_FloatConstant, range, {.string = _CreateString(text, length)});
}

bool KslParser::ParseKeyword(const LocationRange& range, int token) {
    return _ParseToken(token, range, {nullptr});
}

bool KslParser::ParseIdentifier(const LocationRange& range, const char* text, int length) {
    _currentText = {text, static_cast<std::size_t>(length)};
    return _ParseToken(kToken_Identifier, range, {.string = _CreateString(text, length)});
}

bool KslParser::NewLine() {
    ++_line;
    return true;
}

bool KslParser::_ParseToken(int code, const LocationRange& range, Token::Value value) {
    _currentTokenType = code;
    _currentToken.value = value;
    _currentToken.range = range;
    _currentToken.range.file = _pFileName;
    _pEngine->Parse(code, _currentToken);
    return true;
}

String* KslParser::_CreateString(const char* text, int length) {
    _buffer.assign(text, static_cast<std::size_t>(length));
    return _pModule->CreateString(_buffer.c_str());
}

} // namespace Tolen::Effects
