#include "TolenEffects/Declaration.h"

#include "SyntaxSupport.h"

namespace Tolen::Effects {

Declaration::~Declaration() = default;

VariableDeclaration::VariableDeclaration(Module* module, Type* type, String* identifier,
                                         Expression* initializer)
    : TPlainNode(module), _pType(type), _pIdentifier(identifier), _pInitializer(initializer) {}

VariableDeclaration::~VariableDeclaration() {
    DisposeChild(_pModule, _pType);
    _pModule->DestroyString(_pIdentifier);
    DisposeChild(_pModule, _pInitializer);
}

bool VariableDeclaration::SetType(Type* type) {
    return ReplaceChild(_pType, type);
}

bool VariableDeclaration::SetInitializer(Expression* initializer) {
    return ReplaceChild(_pInitializer, initializer);
}

FunctionParameter::FunctionParameter(Module* module, Type* type) : _pModule(module), _pType(type) {}

FunctionParameter::~FunctionParameter() {
    DisposeChild(_pModule, _pType);
    _pModule->DestroyString(_pName);
}

bool FunctionParameter::SetType(Type* type) {
    return ReplaceChild(_pType, type);
}

void FunctionParameter::SetName(String* name) {
    if (name != _pName) {
        _pModule->DestroyString(_pName);
        _pName = name;
    }
}

FunctionPrototype::FunctionPrototype(Module* module, FunctionQualifier qualifier, Type* returnType,
                                     String* name)
    : TPlainNode(module), _qualifier(qualifier), _pReturnType(returnType), _pName(name) {}

FunctionPrototype::~FunctionPrototype() {
    DisposeChild(_pModule, _pReturnType);
    _pModule->DestroyString(_pName);
    DisposeChildren(_pModule, _parameters);
}

bool FunctionPrototype::SetReturnType(Type* type) {
    return ReplaceChild(_pReturnType, type);
}

void FunctionPrototype::AddParameter(FunctionParameter* parameter) {
    _parameters.push_back(parameter);
}

FunctionDefinition::FunctionDefinition(Module* module, FunctionPrototype* prototype,
                                       CompoundStatement* statement)
    : TPlainNode(module), _pFunctionPrototype(prototype), _pCompoundStatement(statement) {}

FunctionDefinition::~FunctionDefinition() {
    DisposeChild(_pModule, _pFunctionPrototype);
    DisposeChild(_pModule, _pCompoundStatement);
}

bool FunctionDefinition::SetCompoundStatement(CompoundStatement* statement) {
    return ReplaceChild(_pCompoundStatement, statement);
}

StructDefinition::StructDefinition(Module* module) : TPlainNode(module) {}

StructDefinition::~StructDefinition() {
    _pModule->DestroyString(_pName);
    DisposeChildren(_pModule, _memberVariables);
}

void StructDefinition::AddMemberVariable(VariableDeclaration* variable) {
    _memberVariables.push_back(variable);
}

ClassDefinition::ClassDefinition(Module* module) : TPlainNode(module) {}

ClassDefinition::~ClassDefinition() {
    _pModule->DestroyString(_pName);
    _pModule->DestroyString(_pInterface);
    DisposeChildren(_pModule, _memberVariables);
    DisposeChildren(_pModule, _memberFunctions);
    for (const auto& [name, coord] : _coords) {
        _pModule->Dispose(coord);
    }
    // The keys order the map until the last entry is gone.
    const std::vector<Outputs::value_type> outputs(_outputs.begin(), _outputs.end());
    _outputs.clear();
    for (auto [name, type] : outputs) {
        String* key = name;
        _pModule->DestroyString(key);
        _pModule->Dispose(type);
    }
}

void ClassDefinition::AddMemberVariable(VariableDeclaration* variable) {
    _memberVariables.push_back(variable);
}

void ClassDefinition::AddMemberFunction(FunctionDefinition* function) {
    _memberFunctions.push_back(function);
}

bool ClassDefinition::AddCoord(VariableDeclaration* coord) {
    return _coords.emplace(TextOf(coord->GetIdentifier()), coord).second;
}

bool ClassDefinition::AddOutput(Type* type, String* name) {
    if (!_outputNames.insert(name->GetString()).second) {
        return false;
    }
    _outputs.emplace(name, type);
    return true;
}

InterfaceDefinition::InterfaceDefinition(Module* module) : TPlainNode(module) {}

InterfaceDefinition::~InterfaceDefinition() {
    _pModule->DestroyString(_pName);
    DisposeChildren(_pModule, _memberFunctions);
}

void InterfaceDefinition::AddMemberFunction(FunctionPrototype* function) {
    _memberFunctions.push_back(function);
}

} // namespace Tolen::Effects
