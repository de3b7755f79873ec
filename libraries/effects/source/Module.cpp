#include "TolenEffects/Module.h"

#include "StringTable.h"
#include "SyntaxSupport.h"

#include <algorithm>

namespace Tolen::Effects {

namespace {

/// Takes the first @p node out of @p list, if it is there. @return whether it was
template <class T>
bool RemoveFirst(std::vector<T*>& list, const T* node) {
    const auto it = std::find(list.begin(), list.end(), node);
    if (it == list.end()) {
        return false;
    }
    list.erase(it);
    return true;
}

/// Appends clones of all nodes of @p source to @p list.
template <class T>
void AppendClones(const std::vector<T*>& source, std::vector<T*>& list, Module* target) {
    // The number at the start counts, since the lists may be one and the same.
    const std::size_t count = source.size();
    list.reserve(list.size() + count);
    for (std::size_t i = 0; i < count; ++i) {
        list.push_back(source[i]->Clone(target));
    }
}

/// The first node of @p list whose @p nameOf has the text @p name, null if there is none.
template <class T, class NameOf>
T* FindByName(const std::vector<T*>& list, const std::string& name, NameOf nameOf) {
    const auto it = std::find_if(list.begin(), list.end(), [&](const T* node) {
        const String* own = nameOf(node);
        return own != nullptr && own->GetString() == name;
    });
    return it == list.end() ? nullptr : *it;
}

} // namespace

Module::Module() : _pStrings(std::make_unique<StringTable>()) {}

Module* Module::Create(AllocationDummy*) {
    return new Module;
}

Module::~Module() {
    // With the table empty, no node finds its names there; they live until all nodes are gone.
    StringTable strings;
    strings.Swap(*_pStrings);
    DisposeChildren(this, _variableDeclarations);
    DisposeChildren(this, _functionDeclarations);
    DisposeChildren(this, _functionDefinitions);
    DisposeChildren(this, _structDefinitions);
    DisposeChildren(this, _classDefinitions);
    _interfacesByName.clear();
    DisposeChildren(this, _interfaceDefinitions);
    DisposeChildren(this, _statements);
    DisposeChildren(this, _expressions);
}

Module* Module::Clone(Module* target) const {
    AppendClones(_variableDeclarations, target->_variableDeclarations, target);
    AppendClones(_functionDeclarations, target->_functionDeclarations, target);
    AppendClones(_functionDefinitions, target->_functionDefinitions, target);
    AppendClones(_structDefinitions, target->_structDefinitions, target);
    AppendClones(_classDefinitions, target->_classDefinitions, target);
    const std::size_t count = _interfaceDefinitions.size();
    for (std::size_t i = 0; i < count; ++i) {
        target->AddInterfaceDefinition(_interfaceDefinitions[i]->Clone(target));
    }
    target->SetRange(this);
    return target;
}

void Module::Dispose(Syntax* node) {
    if (node == nullptr) {
        return;
    }
    _condemned.push_back(node);
    if (_isDisposing) {
        return;
    }
    _isDisposing = true;
    while (!_condemned.empty()) {
        const Syntax* next = _condemned.back();
        _condemned.pop_back();
        delete next;
    }
    _isDisposing = false;
}

String* Module::CreateString(const char* text) {
    String* string = new String(text, ++_countStringsMade);
    _pStrings->Insert(string);
    return string;
}

void Module::DestroyString(String*& string) {
    if (_pStrings->Remove(string)) {
        delete string;
        string = nullptr;
    }
}

bool Module::RemoveString(String* string) {
    return _pStrings->Remove(string);
}

void Module::AddVariableDeclaration(DeclarationStatement* declaration) {
    _variableDeclarations.push_back(declaration);
}

void Module::RemoveVariableDeclaration(DeclarationStatement* declaration) {
    RemoveFirst(_variableDeclarations, declaration);
}

void Module::AddFunctionDeclaration(FunctionPrototype* prototype) {
    _functionDeclarations.push_back(prototype);
}

void Module::RemoveFunctionDeclaration(FunctionPrototype* prototype) {
    RemoveFirst(_functionDeclarations, prototype);
}

void Module::ClearFunctionDeclarations() {
    DisposeChildren(this, _functionDeclarations);
}

void Module::AddFunctionDefinition(FunctionDefinition* definition) {
    _functionDefinitions.push_back(definition);
}

void Module::RemoveFunctionDefinition(FunctionDefinition* definition) {
    RemoveFirst(_functionDefinitions, definition);
}

void Module::AddStructDefinition(StructDefinition* definition) {
    _structDefinitions.push_back(definition);
}

void Module::RemoveStructDefinition(StructDefinition* definition) {
    RemoveFirst(_structDefinitions, definition);
}

void Module::AddClassDefinition(ClassDefinition* definition) {
    _classDefinitions.push_back(definition);
}

void Module::RemoveClassDefinition(ClassDefinition* definition) {
    RemoveFirst(_classDefinitions, definition);
}

void Module::AddInterfaceDefinition(InterfaceDefinition* definition) {
    _interfaceDefinitions.push_back(definition);
    _interfacesByName[TextOf(definition->GetName())] = definition;
}

void Module::RemoveInterfaceDefinition(InterfaceDefinition* definition) {
    if (!RemoveFirst(_interfaceDefinitions, definition)) {
        return;
    }
    const auto it = _interfacesByName.find(TextOf(definition->GetName()));
    if (it != _interfacesByName.end() && it->second == definition) {
        _interfacesByName.erase(it);
    }
}

bool Module::AddStatement(Statement* statement) {
    _statements.push_back(statement);
    return true;
}

bool Module::AddExpression(Expression* expression) {
    _expressions.push_back(expression);
    return true;
}

ClassDefinition* Module::GetClassDefinition(const std::string& name) const {
    return FindByName(_classDefinitions, name,
                      [](const ClassDefinition* node) { return node->GetName(); });
}

StructDefinition* Module::GetStructDefinition(const std::string& name) const {
    return FindByName(_structDefinitions, name,
                      [](const StructDefinition* node) { return node->GetName(); });
}

FunctionDefinition* Module::GetFunctionDefinition(const std::string& name) const {
    return FindByName(_functionDefinitions, name, [](const FunctionDefinition* node) {
        return node->GetFunctionPrototype()->GetName();
    });
}

FunctionPrototype* Module::GetFunctionDeclaration(const std::string& name) const {
    return FindByName(_functionDeclarations, name,
                      [](const FunctionPrototype* node) { return node->GetName(); });
}

InterfaceDefinition* Module::GetInterfaceDefinition(const std::string& name) const {
    const auto it = _interfacesByName.find(name);
    return it == _interfacesByName.end() ? nullptr : it->second;
}

} // namespace Tolen::Effects
