#include "KslScanner.h"

#include "IParser.h"
#include "KslKeywords.h"

#include "TolenEffects/Syntax.h"

#include <array>
#include <cstring>
#include <string_view>

namespace Tolen::Effects {

namespace {

/// What a byte may be part of; bits.
enum CharacterClass : unsigned char {
    kCharacter_Blank = 1, ///< white space other than the line feed
    kCharacter_Letter = 2,
    kCharacter_Digit = 4,
    kCharacter_HexDigit = 8,
};

constexpr std::array<unsigned char, 256> MakeClasses() {
    std::array<unsigned char, 256> classes{};
    for (const char blank : {' ', '\t', '\v', '\f', '\r'}) {
        classes[static_cast<unsigned char>(blank)] = kCharacter_Blank;
    }
    for (unsigned char offset = 0; offset < 26; ++offset) {
        const unsigned char hex = offset < 6 ? kCharacter_HexDigit : 0;
        classes['a' + offset] = kCharacter_Letter | hex;
        classes['A' + offset] = kCharacter_Letter | hex;
    }
    classes['_'] = kCharacter_Letter;
    for (unsigned char digit = '0'; digit <= '9'; ++digit) {
        classes[digit] = kCharacter_Digit | kCharacter_HexDigit;
    }
    return classes;
}

constexpr std::array<unsigned char, 256> kClasses = MakeClasses();

bool Is(char character, int classes) {
    return (kClasses[static_cast<unsigned char>(character)] & classes) != 0;
}

/// The first position from @p position on whose character is in none of @p classes.
const char* Skip(const char* position, const char* end, int classes) {
    while (position != end && Is(*position, classes)) {
        ++position;
    }
    return position;
}

std::uint32_t DigitValue(char digit) {
    if (digit <= '9') {
        return static_cast<std::uint32_t>(digit - '0');
    }
    return static_cast<std::uint32_t>((digit | 0x20) - 'a') + 10;
}

} // namespace

bool KslScanner::Init(IParser* parser, const std::string& source, int line) {
    _pParser = parser;
    _tokenStart = nullptr;
    _tokenEnd = nullptr;
    _state = kState_Start;
    _cursor = source.data();
    _end = source.data() + source.size();
    const std::size_t lastLineFeed = source.rfind('\n');
    _lastLineFeed = lastLineFeed == std::string::npos ? nullptr : _cursor + lastLineFeed;
    _lineStart = _cursor;
    _line = line + 1;
    return true;
}

bool KslScanner::Scan() {
    if (_cursor == _end) {
        return false;
    }
    while (_cursor != _end && _state != kState_Error) {
        if (Is(*_cursor, kCharacter_Blank)) {
            ++_cursor;
        } else if (*_cursor == '\n') {
            _NewLine(_cursor++);
        } else {
            _tokenStart = _cursor;
            _ScanToken();
        }
    }
    return _state != kState_Error;
}

void KslScanner::_ScanToken() {
    const char first = *_cursor;
    const char second = _At(_cursor + 1);

    // An operator of one to three characters: alone, doubled, before "=", doubled before "=".
    const auto scan = [&](int alone, int doubled, int assign, int doubledAssign) {
        if (doubled != kToken_End && second == first) {
            if (doubledAssign != kToken_End && _At(_cursor + 2) == '=') {
                return _ScanOperator(doubledAssign, 3);
            }
            return _ScanOperator(doubled, 2);
        }
        if (assign != kToken_End && second == '=') {
            return _ScanOperator(assign, 2);
        }
        return _ScanOperator(alone, 1);
    };

    if (Is(first, kCharacter_Letter)) {
        return _ScanWord();
    }
    if (Is(first, kCharacter_Digit)) {
        return _ScanNumber();
    }
    switch (first) {
    case '.':
        return Is(second, kCharacter_Digit) ? _ScanNumber() : _ScanOperator(kToken_Dot, 1);
    case '/':
        return _ScanSlash();
    case '[':
        return _ScanOperator(kToken_LeftBracket, 1);
    case ']':
        return _ScanOperator(kToken_RightBracket, 1);
    case '{':
        return _ScanOperator(kToken_LeftBrace, 1);
    case '}':
        return _ScanOperator(kToken_RightBrace, 1);
    case '(':
        return _ScanOperator(kToken_LeftParenthesis, 1);
    case ')':
        return _ScanOperator(kToken_RightParenthesis, 1);
    case ':':
        return _ScanOperator(kToken_Colon, 1);
    case ';':
        return _ScanOperator(kToken_Semicolon, 1);
    case ',':
        return _ScanOperator(kToken_Comma, 1);
    case '?':
        return _ScanOperator(kToken_Question, 1);
    case '~':
        return _ScanOperator(kToken_Complement, 1);
    case '=':
        return scan(kToken_Assign, kToken_Equal, kToken_End, kToken_End);
    case '!':
        return scan(kToken_Not, kToken_End, kToken_NotEqual, kToken_End);
    case '+':
        return scan(kToken_Plus, kToken_Increment, kToken_AddAssign, kToken_End);
    case '-':
        return scan(kToken_Minus, kToken_Decrement, kToken_SubtractAssign, kToken_End);
    case '*':
        return scan(kToken_Multiply, kToken_End, kToken_MultiplyAssign, kToken_End);
    case '%':
        return scan(kToken_Modulo, kToken_End, kToken_ModuloAssign, kToken_End);
    case '<':
        return scan(kToken_Less, kToken_ShiftLeft, kToken_LessEqual, kToken_ShiftLeftAssign);
    case '>':
        return scan(kToken_Greater, kToken_ShiftRight, kToken_GreaterEqual,
                    kToken_ShiftRightAssign);
    case '&':
        return scan(kToken_And, kToken_LogicalAnd, kToken_AndAssign, kToken_End);
    case '^':
        return scan(kToken_Xor, kToken_LogicalXor, kToken_XorAssign, kToken_End);
    case '|':
        return scan(kToken_Or, kToken_LogicalOr, kToken_OrAssign, kToken_End);
    default:
        _state = kState_Error;
    }
}

void KslScanner::_ScanWord() {
    _tokenEnd = Skip(_cursor + 1, _end, kCharacter_Letter | kCharacter_Digit);
    _cursor = _tokenEnd;
    const std::string_view word(_tokenStart, static_cast<std::size_t>(_tokenEnd - _tokenStart));
    const KslToken token = TokenOfWord(word);
    if (token == kToken_Identifier) {
        _pParser->ParseIdentifier(_Location(), word.data(), static_cast<int>(word.size()));
    } else if (token == kToken_BoolConstant) {
        _pParser->ParseConstantBool(_Location(), word.front() == 't');
    } else {
        _pParser->ParseKeyword(_Location(), token);
    }
}

void KslScanner::_ScanNumber() {
    const char* const digitsEnd = Skip(_tokenStart, _end, kCharacter_Digit);
    const bool hasPoint = _At(digitsEnd) == '.';
    const char* position = hasPoint ? Skip(digitsEnd + 1, _end, kCharacter_Digit) : digitsEnd;

    // An exponent counts only with digits; the float suffix only without an exponent.
    if (_At(position) == 'e' || _At(position) == 'E') {
        const char* exponent = position + 1;
        if (_At(exponent) == '+' || _At(exponent) == '-') {
            ++exponent;
        }
        if (Is(_At(exponent), kCharacter_Digit)) {
            return _ScanFloat(Skip(exponent, _end, kCharacter_Digit));
        }
    } else if (_At(position) == 'f') {
        return _ScanFloat(position + 1);
    }
    if (hasPoint) {
        return _ScanFloat(position);
    }

    if (*_tokenStart != '0') {
        return _ScanInteger(digitsEnd, 10);
    }
    const char letter = _At(_tokenStart + 1);
    if ((letter == 'x' || letter == 'X') && Is(_At(_tokenStart + 2), kCharacter_HexDigit)) {
        return _ScanInteger(Skip(_tokenStart + 2, _end, kCharacter_HexDigit), 16);
    }
    const char* octalEnd = _tokenStart;
    while (octalEnd != digitsEnd && *octalEnd < '8') {
        ++octalEnd;
    }
    _ScanInteger(octalEnd, 8);
}

void KslScanner::_ScanInteger(const char* end, int base) {
    constexpr std::uint64_t kHighest = 4294967295;
    std::uint64_t value = 0;
    for (const char* digit = base == 16 ? _tokenStart + 2 : _tokenStart; digit != end; ++digit) {
        value = value * static_cast<std::uint64_t>(base) + DigitValue(*digit);
        if (value > kHighest) {
            value = kHighest;
            break;
        }
    }
    _tokenEnd = end;
    _cursor = end;
    _pParser->ParseConstantInt(_Location(), static_cast<std::int32_t>(value));
}

void KslScanner::_ScanFloat(const char* end) {
    _tokenEnd = end;
    _cursor = end;
    _pParser->ParseConstantFloat(_Location(), _tokenStart, static_cast<int>(end - _tokenStart));
}

void KslScanner::_ScanOperator(int token, int length) {
    _tokenEnd = _tokenStart + length;
    _cursor = _tokenEnd;
    _pParser->ParseKeyword(_Location(), token);
}

void KslScanner::_ScanSlash() {
    const char second = _At(_cursor + 1);
    if (second == '/' && _lastLineFeed != nullptr && _cursor < _lastLineFeed) {
        _SkipLineComment();
    } else if (second == '*') {
        _SkipBlockComment();
    } else if (second == '=') {
        _ScanOperator(kToken_DivideAssign, 2);
    } else {
        _ScanOperator(kToken_Divide, 1);
    }
}

void KslScanner::_SkipLineComment() {
    const void* lineFeed = std::memchr(_cursor, '\n', static_cast<std::size_t>(_end - _cursor));
    _cursor = static_cast<const char*>(lineFeed);
    _NewLine(_cursor++);
}

void KslScanner::_SkipBlockComment() {
    for (_cursor += 2; _cursor != _end; ++_cursor) {
        if (*_cursor == '\n') {
            _NewLine(_cursor);
        } else if (*_cursor == '*' && _At(_cursor + 1) == '/') {
            _cursor += 2;
            return;
        }
    }
}

void KslScanner::_NewLine(const char* lineFeed) {
    ++_line;
    _lineStart = lineFeed;
    _pParser->NewLine();
}

LocationRange KslScanner::_Location() const {
    LocationRange range;
    range.file = nullptr;
    range.firstLine = _line;
    range.firstColumn = static_cast<std::int32_t>(_tokenStart - _lineStart);
    range.lastLine = _line;
    range.lastColumn = static_cast<std::int32_t>(_tokenEnd - _lineStart);
    return range;
}

} // namespace Tolen::Effects
