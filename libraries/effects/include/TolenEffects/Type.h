#pragma once

#include "TolenEffects/Syntax.h"

namespace Tolen::Effects {

class Expression;

/// The type of a declaration, a parameter, a return value or a constructor. A UserType is one too.
class TOLEN_EXPORT Type : public Syntax {
public:
    static constexpr Class ClassStatic() { return kClass_Type; }

    ~Type() override;
    Class GetClass() const override { return kClass_Type; }
    /// A deep copy in @p target that nobody owns yet; the length is copied for arrays only.
    virtual Type* Clone(Module* target) const;
    /// Whether @p other, which may be null, has the same specifier, precision and array length.
    virtual bool Equals(const Type* other) const;
    virtual bool AcceptVisitor(Visitor* visitor) const;
    virtual bool AcceptVisitor(Visitor* visitor);

    /// The module that the node belongs to.
    Module* GetModule() const { return _pModule; }

    TypeSpecifier GetTypeSpecifier() const { return _typeSpecifier; }
    PrecisionQualifier GetPrecisionQualifier() const { return _precision; }
    void SetPrecisionQualifier(PrecisionQualifier precision) { _precision = precision; }

    bool IsArray() const { return _array; }
    void SetArray(bool array) { _array = array; }
    /// The elements of an array; null where the size was left out.
    Expression* GetLength() const { return _pLength.get(); }
    /// Takes @p length, which may be null, and deletes the length before. Whether the type is an
    /// array stays as it is. @return true
    bool SetLength(Expression* length);

protected:
    friend class Module;
    Type(Module* module, TypeSpecifier typeSpecifier);
    Type(const Type&) = delete;

    /// Gives @p clone what this type has beyond its specifier.
    void _CopyTo(Type* clone) const;

    Module* _pModule; ///< borrowed

private:
    TypeSpecifier _typeSpecifier;
    PrecisionQualifier _precision = kPrecisionQualifier_None;
    bool _array = false;
    std::unique_ptr<Expression> _pLength;
};

/// A type named in the source: an interface, a class or a structure. Its specifier is always
/// kType_UserDefined.
class TOLEN_EXPORT UserType : public Type {
public:
    static constexpr Class ClassStatic() { return kClass_UserType; }

    ~UserType() override;
    Class GetClass() const override { return kClass_UserType; }
    UserType* Clone(Module* target) const override;
    /// Always false, against itself too: user types are resolved by name elsewhere.
    bool Equals(const Type* other) const override;
    bool AcceptVisitor(Visitor* visitor) const override;
    bool AcceptVisitor(Visitor* visitor) override;

    String* GetName() const { return _pName; }
    /// Stores @p name and releases the one before.
    void SetName(String* name);

private:
    friend class Module;
    UserType(Module* module, String* name);

    String* _pName;
};

} // namespace Tolen::Effects
