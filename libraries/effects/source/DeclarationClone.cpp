#include "TolenEffects/Declaration.h"

#include "SyntaxSupport.h"

#include <algorithm>

/// Deep copies, comparison and order of declarations.

namespace Tolen::Effects {

VariableDeclaration* VariableDeclaration::Clone(Module* target) const {
    Expression* initializer = CloneNode(_pInitializer, target);
    String* identifier = CloneNode(_pIdentifier, target);
    Type* type = CloneNode(_pType, target);
    VariableDeclaration* clone = target->CreateVariableDeclaration(type, identifier, initializer);
    clone->_static = _static;
    clone->_const = _const;
    clone->_storageQualifier = _storageQualifier;
    clone->_transformation = _transformation;
    return WithRangeOf(this, clone);
}

bool VariableDeclaration::Equals(const Declaration* other) const {
    const VariableDeclaration* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pInitializer, same->_pInitializer) &&
           AreEqual(_pType, same->_pType) && AreEqual(_pIdentifier, same->_pIdentifier) &&
           _static == same->_static && _const == same->_const &&
           _storageQualifier == same->_storageQualifier && _transformation == same->_transformation;
}

bool VariableDeclaration::operator<(const VariableDeclaration& other) const {
    if (GetClass() != other.GetClass()) {
        return GetClass() < other.GetClass();
    }
    if (_storageQualifier != other._storageQualifier) {
        return _storageQualifier < other._storageQualifier;
    }
    return TextOf(_pIdentifier) < TextOf(other._pIdentifier);
}

FunctionParameter* FunctionParameter::Clone(Module* target) const {
    FunctionParameter* clone = target->CreateFunctionParameter(CloneNode(_pType, target));
    clone->_pName = CloneNode(_pName, target);
    clone->_parameterQualifier = _parameterQualifier;
    return WithRangeOf(this, clone);
}

bool FunctionParameter::Equals(const FunctionParameter* other) const {
    return other != nullptr && AreEqual(_pType, other->_pType) && AreEqual(_pName, other->_pName) &&
           _parameterQualifier == other->_parameterQualifier;
}

bool FunctionParameter::operator<(const FunctionParameter& other) const {
    if (_pType->GetTypeSpecifier() != other._pType->GetTypeSpecifier()) {
        return _pType->GetTypeSpecifier() < other._pType->GetTypeSpecifier();
    }
    if (_parameterQualifier != other._parameterQualifier) {
        return _parameterQualifier < other._parameterQualifier;
    }
    return TextOf(_pName) < TextOf(other._pName);
}

FunctionPrototype* FunctionPrototype::Clone(Module* target) const {
    Type* returnType = CloneNode(_pReturnType, target);
    String* name = CloneNode(_pName, target);
    FunctionPrototype* clone = target->CreateFunctionPrototype(_qualifier, returnType, name);
    for (const FunctionParameter* parameter : _parameters) {
        clone->AddParameter(parameter->Clone(target));
    }
    return WithRangeOf(this, clone);
}

namespace {

/// Whether two prototypes agree in all but their parameters, and @p b has at least those of @p a.
bool AreHeadsEqual(const FunctionPrototype& a, const FunctionPrototype& b) {
    return a.GetQualifier() == b.GetQualifier() && AreEqual(a.GetReturnType(), b.GetReturnType()) &&
           AreEqual(a.GetName(), b.GetName()) && a.GetCountParameters() <= b.GetCountParameters();
}

TypeSpecifier ReturnSpecifier(const FunctionPrototype& prototype) {
    const Type* type = prototype.GetReturnType();
    return type == nullptr ? kType_Void : type->GetTypeSpecifier();
}

} // namespace

bool FunctionPrototype::Equals(const Declaration* other) const {
    const FunctionPrototype* same = SameClass(this, other);
    return same != nullptr && AreHeadsEqual(*this, *same) &&
           std::equal(_parameters.begin(), _parameters.end(), same->_parameters.begin(),
                      [](const FunctionParameter* a, const FunctionParameter* b) {
                          return a->Equals(b);
                      });
}

bool FunctionPrototype::Equivalent(const Declaration* other) const {
    const FunctionPrototype* same = SameClass(this, other);
    return same != nullptr && AreHeadsEqual(*this, *same) &&
           std::equal(_parameters.begin(), _parameters.end(), same->_parameters.begin(),
                      [](const FunctionParameter* a, const FunctionParameter* b) {
                          return a->GetParameterQualifier() == b->GetParameterQualifier() &&
                                 AreEqual(a->GetType(), b->GetType());
                      });
}

bool FunctionPrototype::operator<(const FunctionPrototype& other) const {
    if (GetClass() != other.GetClass()) {
        return GetClass() < other.GetClass();
    }
    if (_qualifier != other._qualifier) {
        return _qualifier < other._qualifier;
    }
    if (const int order = TextOf(_pName).compare(TextOf(other._pName)); order != 0) {
        return order < 0;
    }
    if (ReturnSpecifier(*this) != ReturnSpecifier(other)) {
        return ReturnSpecifier(*this) < ReturnSpecifier(other);
    }
    if (_parameters.size() != other._parameters.size()) {
        return _parameters.size() < other._parameters.size();
    }
    for (std::size_t i = 0; i < _parameters.size(); ++i) {
        if (!_parameters[i]->Equals(other._parameters[i])) {
            return *_parameters[i] < *other._parameters[i];
        }
    }
    return false;
}

FunctionDefinition* FunctionDefinition::Clone(Module* target) const {
    FunctionPrototype* prototype = CloneNode(_pFunctionPrototype, target);
    CompoundStatement* statement = CloneNode(_pCompoundStatement, target);
    return WithRangeOf(this, target->CreateFunctionDefinition(prototype, statement));
}

bool FunctionDefinition::Equals(const Declaration* other) const {
    const FunctionDefinition* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pFunctionPrototype, same->_pFunctionPrototype) &&
           AreEqual(_pCompoundStatement, same->_pCompoundStatement);
}

bool FunctionDefinition::operator<(const FunctionDefinition& other) const {
    return *_pFunctionPrototype < *other._pFunctionPrototype;
}

StructDefinition* StructDefinition::Clone(Module* target) const {
    StructDefinition* clone = target->CreateStructDefinition();
    clone->_pName = CloneNode(_pName, target);
    clone->_uniform = _uniform;
    for (const VariableDeclaration* variable : _memberVariables) {
        clone->AddMemberVariable(variable->Clone(target));
    }
    return WithRangeOf(this, clone);
}

bool StructDefinition::Equals(const Declaration* other) const {
    const StructDefinition* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pName, same->_pName) && _uniform == same->_uniform &&
           AreEqual(_memberVariables, same->_memberVariables);
}

bool StructDefinition::operator<(const StructDefinition& other) const {
    if (GetClass() != other.GetClass()) {
        return GetClass() < other.GetClass();
    }
    return TextOf(_pName) < TextOf(other._pName);
}

ClassDefinition* ClassDefinition::Clone(Module* target) const {
    ClassDefinition* clone = target->CreateClassDefinition();
    clone->_pName = CloneNode(_pName, target);
    clone->_pInterface = CloneNode(_pInterface, target);
    for (const VariableDeclaration* variable : _memberVariables) {
        clone->AddMemberVariable(variable->Clone(target));
    }
    for (const FunctionDefinition* function : _memberFunctions) {
        clone->AddMemberFunction(function->Clone(target));
    }
    for (const auto& [name, coord] : _coords) {
        // A coordinate that was renamed since may collide with another in the copy.
        VariableDeclaration* copy = coord->Clone(target);
        if (!clone->AddCoord(copy)) {
            delete copy;
        }
    }
    for (const auto& [name, type] : _outputs) {
        String* nameCopy = name->Clone(target);
        Type* typeCopy = type->Clone(target);
        if (!clone->AddOutput(typeCopy, nameCopy)) {
            delete typeCopy;
            target->DestroyString(nameCopy);
        }
    }
    return WithRangeOf(this, clone);
}

bool ClassDefinition::Equals(const Declaration*) const {
    return false;
}

InterfaceDefinition* InterfaceDefinition::Clone(Module* target) const {
    InterfaceDefinition* clone = target->CreateInterfaceDefinition();
    clone->_pName = CloneNode(_pName, target);
    for (const FunctionPrototype* function : _memberFunctions) {
        clone->AddMemberFunction(function->Clone(target));
    }
    return WithRangeOf(this, clone);
}

bool InterfaceDefinition::Equals(const Declaration* other) const {
    const InterfaceDefinition* same = SameClass(this, other);
    return same != nullptr && AreEqual(_memberFunctions, same->_memberFunctions);
}

} // namespace Tolen::Effects
