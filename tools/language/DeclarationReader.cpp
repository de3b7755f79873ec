#include "language/DeclarationReader.h"

#include "language/Spacing.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace Tolen::Language {

namespace {

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> candidates) {
    return std::find(candidates.begin(), candidates.end(), text) != candidates.end();
}

Symbol::Kind KindOf(std::string_view word) {
    return word == "input"                                 ? Symbol::kKind_Input
           : IsOneOf(word, {"coord", "normal", "tangent"}) ? Symbol::kKind_Coord
           : IsOneOf(word, {"output", "out"})              ? Symbol::kKind_Output
                                                           : Symbol::kKind_Member;
}

bool EndsStatement(std::string_view text) {
    return text.empty() || IsOneOf(text, {";", "{", "}"});
}

} // namespace

void DeclarationReader::Cursor::Take() {
    last = at + 1;
    at = reader.Next(at);
}

bool DeclarationReader::Cursor::Take(std::string_view text) {
    if (GetText() != text) {
        return false;
    }
    Take();
    return true;
}

std::size_t DeclarationReader::Next(std::size_t index) const {
    do {
        ++index;
    } while (index < _tokens.size() &&
             (_tokens[index].IsComment() || _tokens[index].kind == SourceToken::kKind_Directive));
    return std::min(index, _tokens.size());
}

bool DeclarationReader::BeginsContainer(std::size_t index) const {
    return IsOneOf(_GetText(index), {"class", "interface"});
}

bool DeclarationReader::BeginsForSure(std::size_t index) const {
    if (IsOneOf(_GetText(index), {"static", "input", "output", "coord", "normal", "tangent"})) {
        return true;
    }
    if (_tokens[index].kind != SourceToken::kKind_Keyword || !_IsType(index)) {
        return false;
    }
    const std::size_t name = Next(index);
    return _IsWord(name) && _GetText(Next(name)) == "(";
}

std::optional<Declaration> DeclarationReader::ReadContainer(std::size_t index) const {
    Cursor cursor{*this, index, index};
    Symbol symbol;
    symbol.kind = cursor.GetText() == "class" ? Symbol::kKind_Class : Symbol::kKind_Interface;
    cursor.Take();
    if (!_IsWord(cursor.at)) {
        return std::nullopt;
    }
    symbol.name = cursor.GetText();
    symbol.nameRange = _tokens[cursor.at].range;
    cursor.Take();
    if (symbol.kind == Symbol::kKind_Class && cursor.Take(":") && _IsWord(cursor.at)) {
        symbol.type = cursor.GetText();
        cursor.Take();
    }
    return _Finish(index, cursor, std::move(symbol));
}

std::optional<Declaration> DeclarationReader::ReadMember(std::size_t index,
                                                         bool isInContainer) const {
    Cursor cursor{*this, index, index};
    Symbol symbol;
    symbol.isStatic = cursor.Take("static");
    symbol.isConst = cursor.Take("const");
    symbol.kind = KindOf(cursor.GetText());
    if (symbol.kind != Symbol::kKind_Member) {
        cursor.Take();
    }
    if (!_ReadTypeAndName(cursor, symbol)) {
        return std::nullopt;
    }
    if (symbol.kind == Symbol::kKind_Member && cursor.GetText() == "(") {
        symbol.kind = isInContainer ? Symbol::kKind_Method : Symbol::kKind_Function;
        _ReadParameters(cursor, symbol);
        return _Finish(index, cursor, std::move(symbol));
    }
    _ReadBrackets(cursor, symbol);
    _ReadValue(cursor, symbol);
    if (!isInContainer || !_CanEnd(cursor)) {
        return std::nullopt;
    }
    return _Finish(index, cursor, std::move(symbol));
}

std::optional<Declaration> DeclarationReader::ReadLocal(std::size_t index) const {
    Cursor cursor{*this, index, index};
    Symbol symbol;
    symbol.kind = Symbol::kKind_Local;
    symbol.isConst = cursor.Take("const");
    const bool isKeyword =
        cursor.at < _tokens.size() && _tokens[cursor.at].kind == SourceToken::kKind_Keyword;
    if (!_ReadTypeAndName(cursor, symbol) ||
        !(IsOneOf(cursor.GetText(), {"=", ";", "["}) || (isKeyword && _CanEnd(cursor)))) {
        return std::nullopt;
    }
    _ReadBrackets(cursor, symbol);
    symbol.signature = JoinTokens(_text, &_tokens[index], _tokens.data() + cursor.last);
    _ReadValue(cursor, symbol);
    Declaration read = _Finish(index, cursor, std::move(symbol));
    read.symbol.bodyRange = read.symbol.range;
    return read;
}

std::string_view DeclarationReader::_GetText(std::size_t index) const {
    return index < _tokens.size() ? _text.GetText(_tokens[index].range) : std::string_view();
}

bool DeclarationReader::_IsWord(std::size_t index) const {
    return index < _tokens.size() && _tokens[index].kind == SourceToken::kKind_Word;
}

bool DeclarationReader::_IsType(std::size_t index) const {
    return _IsWord(index) || (index < _tokens.size() && IsTypeKeyword(_GetText(index)));
}

bool DeclarationReader::_CanEnd(const Cursor& cursor) const {
    if (EndsStatement(cursor.GetText())) {
        return true;
    }
    return _text.GetPlace(_tokens[cursor.last - 1].range.end).line <
           _text.GetPlace(_tokens[cursor.at].range.begin).line;
}

bool DeclarationReader::_ReadTypeAndName(Cursor& cursor, Symbol& symbol) const {
    if (!_IsType(cursor.at)) {
        return false;
    }
    symbol.type = cursor.GetText();
    cursor.Take();
    if (!_IsWord(cursor.at)) {
        return false;
    }
    symbol.name = cursor.GetText();
    symbol.nameRange = _tokens[cursor.at].range;
    cursor.Take();
    return true;
}

void DeclarationReader::_ReadBrackets(Cursor& cursor, Symbol& symbol) const {
    if (cursor.GetText() != "[") {
        return;
    }
    while (!EndsStatement(cursor.GetText()) && !IsOneOf(cursor.GetText(), {"=", ",", ")"})) {
        symbol.brackets += cursor.GetText();
        if (cursor.Take("]")) {
            return;
        }
        cursor.Take();
    }
}

/// Up to a semicolon, or what can't be part of a value.
void DeclarationReader::_ReadValue(Cursor& cursor, Symbol& symbol) const {
    if (!cursor.Take("=")) {
        return;
    }
    const std::size_t begin = cursor.at;
    std::size_t depth = 0;
    while (!EndsStatement(cursor.GetText()) && !BeginsForSure(cursor.at) &&
           !BeginsContainer(cursor.at)) {
        const std::string_view text = cursor.GetText();
        if (IsOneOf(text, {"(", "["})) {
            ++depth;
        } else if (IsOneOf(text, {")", "]"})) {
            if (depth == 0) {
                break;
            }
            --depth;
        }
        cursor.Take();
    }
    if (cursor.last > begin) {
        symbol.value =
            _text.GetText({_tokens[begin].range.begin, _tokens[cursor.last - 1].range.end});
    }
}

void DeclarationReader::_ReadParameters(Cursor& cursor, Symbol& symbol) const {
    cursor.Take("(");
    while (!EndsStatement(cursor.GetText()) && !BeginsForSure(cursor.at) &&
           !BeginsContainer(cursor.at)) {
        if (cursor.Take(")")) {
            return;
        }
        if (!cursor.Take(",")) {
            _ReadParameter(cursor, symbol);
        }
    }
}

/// Goes over one parameter at least, or over a token.
void DeclarationReader::_ReadParameter(Cursor& cursor, Symbol& symbol) const {
    const std::size_t first = cursor.at;
    Symbol parameter;
    parameter.kind = Symbol::kKind_Parameter;
    if (IsOneOf(cursor.GetText(), {"in", "out", "inout", "const"})) {
        cursor.Take();
    }
    if (!_ReadTypeAndName(cursor, parameter)) {
        if (cursor.at == first) {
            cursor.Take();
        }
        return;
    }
    _ReadBrackets(cursor, parameter);
    parameter.signature = JoinTokens(_text, &_tokens[first], _tokens.data() + cursor.last);
    parameter.range = {_tokens[first].range.begin, _tokens[cursor.last - 1].range.end};
    parameter.bodyRange = parameter.range;
    symbol.children.push_back(std::move(parameter));
}

/// Takes the semicolon, or tells that there is a body.
Declaration DeclarationReader::_Finish(std::size_t first, const Cursor& behind,
                                       Symbol symbol) const {
    Cursor cursor = behind;
    if (symbol.signature.empty()) {
        symbol.signature = JoinTokens(_text, &_tokens[first], _tokens.data() + cursor.last);
    }
    if (!symbol.IsContainer()) {
        cursor.Take(";");
    }
    symbol.range = {_tokens[first].range.begin, _tokens[cursor.last - 1].range.end};
    Declaration read;
    read.hasBody = (symbol.IsContainer() || symbol.IsFunction()) && cursor.GetText() == "{";
    read.symbol = std::move(symbol);
    read.last = cursor.last;
    read.end = cursor.at;
    return read;
}

} // namespace Tolen::Language
