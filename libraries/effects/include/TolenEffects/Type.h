#pragma once

/// @file
/// Types as they stand in the source.

#include "TolenEffects/Syntax.h"

namespace Tolen::Effects {

class Expression;

/// The type of a declaration, a parameter, a return value or a constructor. A UserType is one too.
class TOLEN_EXPORT Type : public Syntax {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_Type; }

    ~Type() override;
    Class GetClass() const override { return kClass_Type; }
    /// A deep copy in @p target that nobody owns yet; the length is copied for arrays only.
    virtual Type* Clone(Module* target) const;
    /// Whether @p other, which may be null, has the same specifier, precision and array length.
    virtual bool Equals(const Type* other) const;
    /// Calls the reading Visit of @p visitor for this kind of node. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor) const;
    /// Calls the mutating Visit of @p visitor for this kind of node. @return its answer
    virtual bool AcceptVisitor(Visitor* visitor);

    /// The module that the node belongs to.
    Module* GetModule() const { return _pModule; }

    /// The type of one element.
    TypeSpecifier GetTypeSpecifier() const { return _typeSpecifier; }
    /// The precision that is printed before the type.
    PrecisionQualifier GetPrecisionQualifier() const { return _precision; }
    /// Sets the precision.
    void SetPrecisionQualifier(PrecisionQualifier precision) { _precision = precision; }

    /// Whether this is the type of an array.
    bool IsArray() const { return _array; }
    /// Sets whether this is the type of an array; the length stays.
    void SetArray(bool array) { _array = array; }
    /// The elements of an array; null where the size was left out.
    Expression* GetLength() const { return _pLength.get(); }
    /// Takes @p length, which may be null, and deletes the length before. Whether the type is an
    /// array stays as it is. @return true
    bool SetLength(Expression* length);

protected:
    friend class Module;
    /// A node of @p module, which is borrowed.
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
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_UserType; }

    ~UserType() override;
    Class GetClass() const override { return kClass_UserType; }
    UserType* Clone(Module* target) const override;
    /// Always false, against itself too: user types are resolved by name elsewhere.
    bool Equals(const Type* other) const override;
    bool AcceptVisitor(Visitor* visitor) const override;
    bool AcceptVisitor(Visitor* visitor) override;

    /// The name in the source, which may be changed in place.
    String* GetName() const { return _pName; }
    /// Stores @p name and releases the one before.
    void SetName(String* name);

private:
    friend class Module;
    UserType(Module* module, String* name);

    String* _pName;
};

} // namespace Tolen::Effects
