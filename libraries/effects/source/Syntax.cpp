#include "TolenEffects/Syntax.h"

#include "TolenEffects/Module.h"

namespace Tolen::Effects {

Syntax::~Syntax() = default;

void Syntax::SetRange(const LocationRange& first, const LocationRange& last) {
    // Both may be this node's own range.
    const LocationRange start = first;
    const LocationRange end = last;
    _range.file = end.file != nullptr ? end.file : start.file;
    _range.firstLine = start.firstLine;
    _range.firstColumn = start.firstColumn;
    _range.lastLine = end.lastLine;
    _range.lastColumn = end.lastColumn;
}

String::~String() = default;

String* String::Clone(Module* target) const {
    return target->CreateString(_text.c_str());
}

bool String::Equals(const String* other) const {
    return other != nullptr && _text == other->_text;
}

} // namespace Tolen::Effects
