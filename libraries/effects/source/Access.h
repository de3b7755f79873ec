#pragma once

#include "IAccess.h"

#include <string>

namespace Tolen::Effects {

class Expression;

/// What all forms of access know: the type of one element, the declared name, and the name that
/// takes its place in generated code.
class Access : public IAccess {
protected:
    void _InitNames(TypeSpecifier specifier, const std::string& name,
                    const std::string& nameMangled);

    TypeSpecifier _GetTypeSpecifier() const { return _specifier; }
    const std::string& _GetNameMangled() const { return _nameMangled; }
    /// Whether @p expression is a variable of the declared name.
    bool _IsReference(const Expression* expression) const;

private:
    TypeSpecifier _specifier = kType_Void;
    std::string _name;
    std::string _nameMangled;
};

} // namespace Tolen::Effects
