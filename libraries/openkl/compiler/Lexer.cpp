#include "compiler/Lexer.h"

#include "compiler/Diagnostics.h"

#include "TolenCore/Format.h"

#include <array>
#include <charconv>
#include <limits>
#include <unordered_map>

namespace Tolen::OpenKL {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

const std::unordered_map<std::string_view, TokenKind>& GetKeywords() {
    static const std::unordered_map<std::string_view, TokenKind> keywords = {
#define TOLEN_OPENKL_ENTRY(name, spelling) {spelling, kToken_##name},
        TOLEN_OPENKL_KEYWORDS(TOLEN_OPENKL_ENTRY)
#undef TOLEN_OPENKL_ENTRY
    };
    return keywords;
}

struct Sign {
    std::string_view spelling;
    TokenKind kind;
};

/// The signs that start with each character, longest first.
class SignTable {
public:
    SignTable() {
        static constexpr Sign kSigns[] = {
#define TOLEN_OPENKL_ENTRY(name, spelling) {spelling, kToken_##name},
            TOLEN_OPENKL_SIGNS(TOLEN_OPENKL_ENTRY)
#undef TOLEN_OPENKL_ENTRY
        };
        for (std::size_t length = 3; length > 0; --length) {
            for (const Sign& sign : kSigns) {
                if (sign.spelling.size() == length) {
                    _signs[static_cast<unsigned char>(sign.spelling[0])].push_back(sign);
                }
            }
        }
    }

    /// The longest sign that @p text starts with, or null.
    const Sign* Find(std::string_view text) const {
        for (const Sign& sign : _signs[static_cast<unsigned char>(text[0])]) {
            if (text.starts_with(sign.spelling)) {
                return &sign;
            }
        }
        return nullptr;
    }

private:
    std::array<std::vector<Sign>, 256> _signs;
};

float ReadFloat(std::string_view digits) {
    float value = 0.0f;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (read.ec == std::errc()) {
        return value;
    }
    // Out of range: too large is infinite, too small is 0.
    return ParseFloat(std::string(digits).c_str()) > 1.0 ? std::numeric_limits<float>::infinity()
                                                         : 0.0f;
}

class Lexer {
public:
    Lexer(std::string_view text, Diagnostics& diagnostics)
        : _text(text), _diagnostics(diagnostics) {}

    std::vector<Token> Run() {
        _tokens.reserve(_text.size() / 4 + 1);
        while (_SkipBlanksAndComments()) {
            _ReadToken();
        }
        _Add(kToken_End, 0);
        return std::move(_tokens);
    }

private:
    char _Peek(std::size_t ahead = 0) const {
        return _at + ahead < _text.size() ? _text[_at + ahead] : '\0';
    }

    /// @return false at the end of the text
    bool _SkipBlanksAndComments() {
        while (_at < _text.size()) {
            const char c = _text[_at];
            if (c == '\n') {
                ++_line;
                ++_at;
            } else if (c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f') {
                ++_at;
            } else if (c == '/' && _Peek(1) == '/') {
                _at = std::min(_text.find('\n', _at), _text.size());
            } else if (c == '/' && _Peek(1) == '*') {
                _SkipBlockComment();
            } else {
                return true;
            }
        }
        return false;
    }

    void _SkipBlockComment() {
        const std::size_t end = _text.find("*/", _at + 2);
        if (end == std::string_view::npos) {
            _diagnostics.Error(_line, "comment has no end");
        }
        const std::size_t stop = end == std::string_view::npos ? _text.size() : end + 2;
        for (; _at < stop; ++_at) {
            _line += _text[_at] == '\n' ? 1 : 0;
        }
    }

    void _ReadToken() {
        const char c = _text[_at];
        if (IsLetter(c)) {
            _ReadWord();
        } else if (IsDigit(c) || (c == '.' && IsDigit(_Peek(1)))) {
            _ReadNumber();
        } else {
            _ReadSign();
        }
    }

    void _ReadWord() {
        std::size_t length = 1;
        while (IsLetter(_Peek(length)) || IsDigit(_Peek(length))) {
            ++length;
        }
        const auto keyword = GetKeywords().find(_text.substr(_at, length));
        _Add(keyword == GetKeywords().end() ? kToken_Identifier : keyword->second, length);
    }

    void _ReadNumber() {
        std::size_t length = 0;
        const auto skipDigits = [&] {
            while (IsDigit(_Peek(length))) {
                ++length;
            }
        };
        if (_Peek() == '0' && (_Peek(1) == 'x' || _Peek(1) == 'X') && IsHexDigit(_Peek(2))) {
            _ReadHexInt();
            return;
        }
        skipDigits();
        bool isFloat = false;
        if (_Peek(length) == '.') {
            isFloat = true;
            ++length;
            skipDigits();
        }
        if (_Peek(length) == 'e' || _Peek(length) == 'E') {
            const bool hasSign = _Peek(length + 1) == '+' || _Peek(length + 1) == '-';
            const std::size_t digits = length + (hasSign ? 2 : 1);
            if (IsDigit(_Peek(digits))) {
                isFloat = true;
                length = digits;
                skipDigits();
            }
        }
        const bool hasSuffix = _Peek(length) == 'f' || (isFloat && _Peek(length) == 'F');
        if (isFloat || hasSuffix) {
            Token& token = _Add(kToken_FloatConstant, length + (hasSuffix ? 1 : 0));
            token.value.f = ReadFloat(token.text.substr(0, length));
            _CheckEndOfNumber();
        } else {
            _ReadDecimalOrOctalInt(length);
        }
    }

    void _ReadHexInt() {
        std::size_t length = 2;
        while (IsHexDigit(_Peek(length))) {
            ++length;
        }
        _AddInt(length, 2, 16);
    }

    void _ReadDecimalOrOctalInt(std::size_t length) {
        const bool isOctal = length > 1 && _Peek() == '0';
        if (isOctal && _text.substr(_at, length).find_first_of("89") != std::string_view::npos) {
            _diagnostics.Error(_line, Quote(_text.substr(_at, length)) +
                                          " is no number: octal digits go from 0 to 7");
        }
        _AddInt(length, 0, isOctal ? 8 : 10);
    }

    void _AddInt(std::size_t length, std::size_t prefix, int base) {
        Token& token = _Add(kToken_IntConstant, length);
        const std::string_view digits = token.text.substr(prefix);
        std::uint32_t value = 0;
        const auto read =
            std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
        if (read.ec == std::errc::result_out_of_range) {
            _diagnostics.Error(_line, Quote(token.text) + " does not fit into 32 bits");
        }
        token.value.i = static_cast<std::int32_t>(value);
        _CheckEndOfNumber();
    }

    /// Reports letters that stick to a number, which would only make strange errors later.
    void _CheckEndOfNumber() {
        std::size_t length = 0;
        while (IsLetter(_Peek(length)) || IsDigit(_Peek(length))) {
            ++length;
        }
        if (length > 0) {
            _diagnostics.Error(_line, "unexpected " + Quote(_text.substr(_at, length)) +
                                          " behind the number " + Quote(_tokens.back().text));
            _at += length;
        }
    }

    void _ReadSign() {
        static const SignTable table;
        if (const Sign* sign = table.Find(_text.substr(_at))) {
            _Add(sign->kind, sign->spelling.size());
            return;
        }
        // One message for a run of the same character; a byte of UTF-8 takes the rest along.
        std::size_t length = 1;
        const bool isMultiByte = static_cast<unsigned char>(_text[_at]) >= 0x80;
        while (_at + length < _text.size() &&
               (isMultiByte ? static_cast<unsigned char>(_text[_at + length]) >= 0x80
                            : _text[_at + length] == _text[_at])) {
            ++length;
        }
        _diagnostics.Error(_line, "unexpected character " +
                                      Quote(_text.substr(_at, isMultiByte ? length : 1)));
        _at += length;
    }

    Token& _Add(TokenKind kind, std::size_t length) {
        Token& token = _tokens.emplace_back();
        token.kind = kind;
        token.line = _line;
        token.text = _text.substr(_at, length);
        _at += length;
        return token;
    }

    std::string_view _text;
    Diagnostics& _diagnostics;
    std::size_t _at = 0;
    int _line = 1;
    std::vector<Token> _tokens;
};

} // namespace

std::vector<Token> Tokenize(std::string_view text, Diagnostics& diagnostics) {
    return Lexer(text, diagnostics).Run();
}

std::string Describe(const Token& token) {
    return token.kind == kToken_End ? "the end of the text" : Quote(token.text);
}

} // namespace Tolen::OpenKL
