#include "TolenEffects/Type.h"

#include "SyntaxSupport.h"

namespace Tolen::Effects {

Type::Type(Module* module, TypeSpecifier typeSpecifier)
    : _pModule(module), _typeSpecifier(typeSpecifier) {}

Type::~Type() {
    DisposeChild(_pModule, _pLength);
}

Type* Type::Clone(Module* target) const {
    Type* clone = target->CreateType(_typeSpecifier);
    _CopyTo(clone);
    return clone;
}

bool Type::Equals(const Type* other) const {
    return other != nullptr && _typeSpecifier == other->_typeSpecifier &&
           _precision == other->_precision && _array == other->_array &&
           AreEqual(_pLength, other->_pLength);
}

bool Type::SetLength(Expression* length) {
    return ReplaceChild(_pLength, length);
}

void Type::_CopyTo(Type* clone) const {
    clone->_precision = _precision;
    clone->_array = _array;
    if (_array) {
        clone->SetLength(CloneNode(_pLength, clone->_pModule));
    }
    clone->SetRange(this);
}

UserType::UserType(Module* module, String* name) : Type(module, kType_UserDefined), _pName(name) {}

UserType::~UserType() {
    _pModule->DestroyString(_pName);
}

UserType* UserType::Clone(Module* target) const {
    UserType* clone = target->CreateUserType(CloneNode(_pName, target));
    _CopyTo(clone);
    return clone;
}

bool UserType::Equals(const Type*) const {
    return false;
}

void UserType::SetName(String* name) {
    if (name != _pName) {
        _pModule->DestroyString(_pName);
        _pName = name;
    }
}

} // namespace Tolen::Effects
