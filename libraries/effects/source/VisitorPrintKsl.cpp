#include "TolenEffects/VisitorPrintKsl.h"

#include "LocationText.h"
#include "ModuleOrder.h"

#include "TolenEffects/Limits.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Result.h"

namespace Tolen::Effects {

namespace {

const char* PrecisionText(PrecisionQualifier precision) {
    switch (precision) {
    case kPrecisionQualifier_None:
        return "";
    case kPrecisionQualifier_High:
        return "highp ";
    case kPrecisionQualifier_Medium:
        return "mediump ";
    case kPrecisionQualifier_Low:
        return "lowp ";
    }
    return "";
}

const char* ParameterQualifierText(ParameterQualifier qualifier) {
    switch (qualifier) {
    case kParameterQualifier_In:
        return "";
    case kParameterQualifier_Out:
        return "out ";
    case kParameterQualifier_InOut:
        return "inout ";
    }
    return "";
}

/// The text of a name, empty for null.
std::string_view NameText(const String* name) {
    return name == nullptr ? std::string_view() : std::string_view(name->GetString());
}

} // namespace

VisitorPrintKsl::VisitorPrintKsl(Result* result, IMgrEffects* manager, bool useOutputIndices)
    : _pMgrEffects(manager), _pResult(result), _useOutputIndices(useOutputIndices) {}

VisitorPrintKsl::~VisitorPrintKsl() = default;

Syntax* VisitorPrintKsl::GetSyntaxForLine(int line) const {
    // The last entry belongs to the empty line behind the text.
    if (line < 1 || static_cast<std::size_t>(line) >= _lines.size()) {
        return _pModule;
    }
    return _lines[static_cast<std::size_t>(line) - 1];
}

bool VisitorPrintKsl::StartNewLine(Syntax* node) {
    if (_lines.empty()) {
        _lines.push_back(nullptr);
    }
    _lines.back() = node;
    return _AppendTabs();
}

bool VisitorPrintKsl::EndLine(Syntax* node) {
    if (!_Append("\n")) {
        return false;
    }
    _lines.push_back(node);
    return true;
}

bool VisitorPrintKsl::_Append(std::string_view text) {
    if (_isOverLimit) {
        return false;
    }
    if (text.size() > kLimitGeneratedText - _text.size()) {
        _isOverLimit = true;
        if (_pResult != nullptr) {
            const Syntax* node = _lines.empty() ? nullptr : _lines.back();
            const LocationRange range = node == nullptr ? LocationRange() : node->GetRange();
            _pResult->Add("%s: The generated text exceeds the limit of %zu bytes.",
                          LocationText(range).c_str(), kLimitGeneratedText);
        }
        return false;
    }
    _text += text;
    return true;
}

bool VisitorPrintKsl::_AppendTabs() {
    for (int i = 0; i < _indent; ++i) {
        if (!_Append("\t")) {
            return false;
        }
    }
    return true;
}

bool VisitorPrintKsl::_Print(Type* type) {
    return type == nullptr || type->AcceptVisitor(this);
}

bool VisitorPrintKsl::_Print(Declaration* declaration) {
    return declaration == nullptr || declaration->AcceptVisitor(this);
}

bool VisitorPrintKsl::Visit(Module* node) {
    _lines.clear();
    _text.clear();
    _outputsUsed.clear();
    _isOverLimit = false;
    _pModule = node;
    SortModule(node);
    _lines.push_back(node);
    for (StructDefinition* definition : node->GetStructDefinitions()) {
        if (!_Print(definition) || !EndLine(node)) {
            return false;
        }
    }
    if (!EndLine(node)) {
        return false;
    }
    for (DeclarationStatement* statement : node->GetVariableDeclarations()) {
        if (!_Print(statement)) {
            return false;
        }
    }
    if (!EndLine(node)) {
        return false;
    }
    for (FunctionPrototype* prototype : node->GetFunctionDeclarations()) {
        if (!_Print(prototype) || !_Append(";") || !EndLine(node)) {
            return false;
        }
    }
    if (!EndLine(node)) {
        return false;
    }
    for (FunctionDefinition* definition : node->GetFunctionDefinitions()) {
        if (!_Print(definition) || !EndLine(node)) {
            return false;
        }
    }
    for (ClassDefinition* definition : node->GetClassDefinitions()) {
        if (!_Print(definition) || !EndLine(node)) {
            return false;
        }
    }
    return !_useOutputIndices || _AppendUniforms();
}

bool VisitorPrintKsl::_AppendUniforms() {
    // Which outputs are used is known only now, but the uniforms must stand before their use.
    std::string body;
    body.swap(_text);
    for (const std::string& output : _outputsUsed) {
        if (!_Append("uniform int __outputAttachmentIndex_") || !_Append(output) ||
            !_Append(";\n")) {
            return false;
        }
    }
    _lines.insert(_lines.begin(), _outputsUsed.size() + 1, _pModule);
    return _Append("\n") && _Append(body);
}

bool VisitorPrintKsl::Visit(InterfaceDefinition*) {
    // Whatever was called through an interface has become a call of a function by now.
    return true;
}

bool VisitorPrintKsl::Visit(ClassDefinition* node) {
    // The names of a class are unique in the text, so its members stand there like all others.
    for (VariableDeclaration* variable : node->GetMemberVariables()) {
        if (!_Print(variable) || !_Append(";") || !EndLine(node)) {
            return false;
        }
    }
    for (FunctionDefinition* function : node->GetMemberFunctions()) {
        if (!_Print(function) || !EndLine(node)) {
            return false;
        }
    }
    return true;
}

bool VisitorPrintKsl::Visit(StructDefinition* node) {
    if (!_Append(node->IsUniform() ? "uniformblock" : "struct")) {
        return false;
    }
    if (node->GetName() != nullptr && (!_Append(" ") || !_Append(NameText(node->GetName())))) {
        return false;
    }
    if (!EndLine(node) || !_Append("{") || !EndLine(node)) {
        return false;
    }
    for (VariableDeclaration* variable : node->GetMemberVariables()) {
        if (!_Append("\t") || !_Print(variable) || !_Append(";") || !EndLine(node)) {
            return false;
        }
    }
    return _Append("};") && EndLine(node);
}

bool VisitorPrintKsl::Visit(FunctionParameter* node) {
    Type* type = node->GetType();
    if (!_Append(ParameterQualifierText(node->GetParameterQualifier())) || !_Print(type)) {
        return false;
    }
    if (node->GetName() != nullptr && (!_Append(" ") || !_Append(NameText(node->GetName())))) {
        return false;
    }
    return type == nullptr || !type->IsArray() ||
           (_Append("[") && _Print(type->GetLength()) && _Append("]"));
}

bool VisitorPrintKsl::Visit(FunctionDefinition* node) {
    FunctionPrototype* prototype = node->GetFunctionPrototype();
    if (node->GetOptimization() != OptimizationNone) {
        return _PrintRemoved("definition of", node->GetOptimization(), prototype->GetName()) &&
               EndLine(node);
    }
    return _Print(prototype) && EndLine(node) &&
           _Print(static_cast<Statement*>(node->GetCompoundStatement()));
}

bool VisitorPrintKsl::Visit(FunctionPrototype* node) {
    if (node->GetOptimization() != OptimizationNone) {
        return _PrintRemoved("prototype for", node->GetOptimization(), node->GetName());
    }
    if (!StartNewLine(node) || !_Print(node->GetReturnType()) || !_Append(" ") ||
        !_Append(NameText(node->GetName())) || !_Append("(")) {
        return false;
    }
    const char* separator = "";
    for (FunctionParameter* parameter : node->GetParameters()) {
        if (!_Append(separator) || !parameter->AcceptVisitor(this)) {
            return false;
        }
        separator = ", ";
    }
    return _Append(")");
}

bool VisitorPrintKsl::_PrintRemoved(const char* what, Optimization optimization,
                                    const String* name) {
    const char* kind = optimization == OptimizationNeverCalled ? "never-called" : "empty";
    return _Append("// optimizer removed ") && _Append(what) && _Append(" ") && _Append(kind) &&
           _Append(" function ") && _Append(NameText(name));
}

bool VisitorPrintKsl::Visit(VariableDeclaration* node) {
    Type* type = node->GetType();
    if (type == nullptr || type->GetTypeSpecifier() == kType_UserDefined) {
        // Interfaces and classes are no types of the API's language.
        return true;
    }
    const StorageQualifier qualifier = node->GetStorageQualifier();
    if (!_Append(node->IsStatic() ? "static " : "") || !_Append(node->IsConst() ? "const " : "")) {
        return false;
    }
    if (qualifier != kStorageQualifier_None &&
        (!_Append(StorageQualifierToString(qualifier)) || !_Append(" "))) {
        return false;
    }
    if (!_Print(type) || !_Append(" ") || !_Append(NameText(node->GetIdentifier()))) {
        return false;
    }
    if (type->GetLength() != nullptr &&
        (!_Append("[") || !_Print(type->GetLength()) || !_Append("]"))) {
        return false;
    }
    return node->GetInitializer() == nullptr || (_Append(" = ") && _Print(node->GetInitializer()));
}

bool VisitorPrintKsl::Visit(UserType* node) {
    return _Append(PrecisionText(node->GetPrecisionQualifier())) &&
           _Append(NameText(node->GetName()));
}

bool VisitorPrintKsl::Visit(Type* node) {
    const TypeSpecifier specifier = node->GetTypeSpecifier();
    return _Append(PrecisionText(node->GetPrecisionQualifier())) &&
           _Append(specifier == kType_UserDefined ? "<user-defined>"
                                                  : TypeSpecifierToString(specifier));
}

} // namespace Tolen::Effects
