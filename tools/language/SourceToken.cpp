#include "language/SourceToken.h"

#include "DirectiveLine.h"
#include "IParser.h"
#include "KslScanner.h"

#include "TolenEffects/Syntax.h"

#include <algorithm>
#include <array>
#include <string>

namespace Tolen::Language {

namespace {

using Effects::DirectiveLine;
using Effects::LocationRange;

bool IsBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r' && character != '\n');
}

/// The characters that can be part of code; no token holds another one, as there are no strings.
constexpr std::array<bool, 256> MakeCodeCharacters() {
    std::array<bool, 256> isCode{};
    for (unsigned char character = ' '; character < 0x7f; ++character) {
        isCode[character] = true;
    }
    for (const char none : {'"', '\'', '#', '$', '@', '\\', '`'}) {
        isCode[static_cast<unsigned char>(none)] = false;
    }
    for (const char blank : {'\t', '\v', '\f', '\r'}) {
        isCode[static_cast<unsigned char>(blank)] = true;
    }
    return isCode;
}

constexpr std::array<bool, 256> kCodeCharacters = MakeCodeCharacters();

bool IsCode(char character) {
    return kCodeCharacters[static_cast<unsigned char>(character)];
}

bool IsAscii(char character) {
    return static_cast<unsigned char>(character) < 0x80;
}

bool IsLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

/// Cuts a text into stretches, of which the library's scanner gets those of code: one line, without
/// comments, in which every character can be part of a token. What it finds it tells by the
/// columns, which on the first line count from the stretch's begin.
class Tokenizer : private Effects::IParser {
public:
    explicit Tokenizer(std::string_view text) : _text(text) {}

    std::vector<SourceToken> Run() {
        while (_at < _text.size()) {
            const char first = _text[_at];
            if (_isLineStart && _TakeDirective()) {
                continue;
            }
            if (first == '\n') {
                ++_at;
                _isLineStart = true;
            } else if (IsBlank(first)) {
                ++_at;
            } else if (_text.substr(_at, 2) == "//") {
                _Add(SourceToken::kKind_LineComment, _FindLineEnd(_at));
            } else if (_text.substr(_at, 2) == "/*") {
                _Add(SourceToken::kKind_BlockComment, _FindCommentEnd());
            } else if (!IsCode(first)) {
                _Add(SourceToken::kKind_Unknown, _FindUnknownEnd());
            } else {
                _Scan();
            }
        }
        return std::move(_tokens);
    }

private:
    void ParseConstantBool(const LocationRange& range, bool) override {
        _AddScanned(SourceToken::kKind_Keyword, range);
    }
    bool ParseConstantInt(const LocationRange& range, long) override {
        return _AddScanned(SourceToken::kKind_Number, range);
    }
    bool ParseConstantFloat(const LocationRange& range, const char*, int) override {
        return _AddScanned(SourceToken::kKind_Number, range);
    }
    bool ParseKeyword(const LocationRange& range, int) override {
        const char first = _stretch[static_cast<std::size_t>(range.firstColumn)];
        return _AddScanned(IsLetter(first) ? SourceToken::kKind_Keyword : SourceToken::kKind_Sign,
                           range);
    }
    bool ParseIdentifier(const LocationRange& range, const char*, int) override {
        return _AddScanned(SourceToken::kKind_Word, range);
    }
    bool NewLine() override { return true; }

    bool _AddScanned(SourceToken::Kind kind, const LocationRange& range) {
        _tokens.push_back({kind,
                           {_at + static_cast<std::size_t>(range.firstColumn),
                            _at + static_cast<std::size_t>(range.lastColumn)}});
        return true;
    }

    void _Add(SourceToken::Kind kind, std::size_t end) {
        _tokens.push_back({kind, {_at, end}});
        _at = end;
        _isLineStart = false;
    }

    /// The end of the line around @p offset, without a carriage return.
    std::size_t _FindLineEnd(std::size_t offset) const {
        const std::size_t end = std::min(_text.find('\n', offset), _text.size());
        return end > offset && _text[end - 1] == '\r' ? end - 1 : end;
    }

    /// @param begin of a line @return where its directive begins; npos when it has none
    std::size_t _FindDirective(std::size_t begin) const {
        std::size_t first = begin;
        while (first < _text.size() && IsBlank(_text[first])) {
            ++first;
        }
        if (first == _text.size() || _text[first] != '#') {
            return std::string_view::npos;
        }
        const DirectiveLine line =
            DirectiveLine::Parse(_text.substr(first, _FindLineEnd(first) - first));
        return line.directive == DirectiveLine::kDirective_None ? std::string_view::npos : first;
    }

    bool _TakeDirective() {
        _isLineStart = false;
        const std::size_t directive = _FindDirective(_at);
        if (directive == std::string_view::npos) {
            return false;
        }
        _at = directive;
        _Add(SourceToken::kKind_Directive, _FindLineEnd(directive));
        return true;
    }

    /// Lines with directives are taken out of comments as well, and end none.
    std::size_t _FindCommentEnd() const {
        std::size_t at = _at + 2;
        while (true) {
            const std::size_t lineFeed = std::min(_text.find('\n', at), _text.size());
            const std::size_t close = _text.substr(at, lineFeed - at).find("*/");
            if (close != std::string_view::npos) {
                return at + close + 2;
            }
            if (lineFeed == _text.size()) {
                return _text.size();
            }
            const std::size_t directive = _FindDirective(lineFeed + 1);
            at = directive == std::string_view::npos ? lineFeed + 1 : _FindLineEnd(directive);
        }
    }

    /// Letters of UTF-8 stay in one piece.
    std::size_t _FindUnknownEnd() const {
        std::size_t end = _at + 1;
        while (!IsAscii(_text[_at]) && end < _text.size() && !IsAscii(_text[end])) {
            ++end;
        }
        return end;
    }

    void _Scan() {
        std::size_t end = _at;
        while (end < _text.size() && IsCode(_text[end]) && _text.substr(end, 2) != "//" &&
               _text.substr(end, 2) != "/*") {
            ++end;
        }
        _stretch.assign(_text.substr(_at, end - _at));
        Effects::KslScanner scanner;
        scanner.Init(this, _stretch, 0);
        scanner.Scan();
        _at = end;
        _isLineStart = false;
    }

    std::string_view _text;
    std::size_t _at = 0; ///< what is before it is done
    bool _isLineStart = true;
    std::string _stretch; ///< that is being scanned
    std::vector<SourceToken> _tokens;
};

} // namespace

std::vector<SourceToken> Tokenize(std::string_view text) {
    return Tokenizer(text).Run();
}

} // namespace Tolen::Language
