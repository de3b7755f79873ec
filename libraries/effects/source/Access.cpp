#include "Access.h"

#include "SyntaxPieces.h"

namespace Tolen::Effects {

void Access::_InitNames(TypeSpecifier specifier, const std::string& name,
                        const std::string& nameMangled) {
    _specifier = specifier;
    _name = name;
    _nameMangled = nameMangled;
}

bool Access::_IsReference(const Expression* expression) const {
    return IsVariable(expression, _name);
}

} // namespace Tolen::Effects
